// Velmora - drives the resize engine from the events of the form it serves:
// the form's first show is its Load, the first resize after it runs the
// set-up, every later resize runs a pass at once or when resizing pauses.
#pragma once

#include "form/WindowPlacement.h"
#include "qt/QtStyleSheets.h"

#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace velmora {
class ResizeEngine;
namespace qt {
class QtForm;
}

class FormDriver : public QObject {
    Q_OBJECT
public:
    explicit FormDriver(ResizeEngine &engine, QObject *parent = nullptr);
    ~FormDriver() override;

    // Serve `form` (nullptr: serve nothing). Rebinding starts from scratch.
    // Asked for while a pass runs, it stops that pass and happens after it.
    void bind(QWidget *form);
    // What owns the driver, held for as long as a pass or an event of the
    // form is being handled: an application may delete the component or
    // its form from a slot or an event the pass lets run.
    std::function<std::shared_ptr<void>()> keepAlive;
    QWidget *form() const { return m_form; }
    const std::shared_ptr<qt::QtForm> &hostForm() const { return m_hostForm; }

    bool ScaleControls = true;
    bool ResizeOnMouseUp = true;
    bool Loaded = false;
    bool SettingUp = false;
    // The application gave the design sizes itself: they survive a rebind.
    bool DesignSizeGiven = false;
    std::uint32_t GradientColour = 0xFF0000;
    // The window reopens where it was left: saved when the form unloads,
    // restored (once) by the next set-up in place of the initial placement.
    // The window's outer size limits in twips (0: none). A drag past one is
    // set back to it, with a beep and the window disabled for a moment; a
    // minimum counts only together with a maximum at least as large.
    int MinWidth = 0, MinHeight = 0, MaxWidth = 0, MaxHeight = 0;
    static constexpr int DisableResizeMs = 500;
    // How a correction is heard; tests listen instead.
    std::function<void()> beep;
    WindowPlacement placement;
    // Wipes (WipeEffect kinds) the window opens and closes with, and how
    // long they take in seconds.
    int FormOpen = 0, FormClose = 0;
    double FormOpenTime = 1, FormCloseTime = 1;
    void playEffect(bool opening);
    bool SaveWindowState = false;
    QString WindowName; // empty: the window's title when first needed
    QRectF SavedWindowRect; // twips: the last rectangle of the window in its normal state
    bool TrackWindowRect = true; // off while print sizing holds the window off-screen
    // After a saved state is loaded: a window lying off every screen comes
    // back onto the nearest one, shrunk to fit it if need be.
    bool KeepOnScreen = false;
    bool WindowSettingsLoaded = false;
    bool LoadingWindowSettings = false;
    void SaveWindowSettings();
    void LoadWindowSettings();
    // WindowName, taken from the window's title the first time it is empty.
    QString windowName();
    QString ReplaceFontsWith = QStringLiteral("<none>");

    // Paints the gradient background into the form's picture layer (not on
    // an MDI parent, which has no surface of its own).
    void drawGradient();
    // The component is being deleted: if its form goes with it unclosed,
    // that is the form's unload.
    void componentGoing(bool withTheForm);
    // Takes the form as it is now as the new design layout.
    void Reset();
    // The driver's answer to a resize of the form.
    void FormResized();
    // One pass of the engine, painted once.
    void runPass();

    // The delayed pass waits this long after the last resize.
    static constexpr int DelayResizeMs = 100;
    const QTimer &delayTimer() const { return m_tmrDelayResize; }

Q_SIGNALS:
    // The set-up failed in a way the engine could not absorb.
    void trappedError(const QString &description);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    void FormLoaded();
    void FormUnloading();
    // Shown again after its unload (Qt's close only hides a window): a new
    // start, but with the layout record it has.
    void reopen();
    // The window decides on its close first; only a close it accepts
    // unloads the form. True: the event was delivered here.
    bool windowClosing(QEvent *event);
    // A window given its frame while maximised gets it once it is restored.
    void correctRestoredFrame();
    void rememberNormalRect();
    // The set-up ends with the opening wipe, which waits for the window to
    // reach the screen; resizes meanwhile are answered once it has played.
    bool waitForScreen(bool placed, bool opening);
    void reachedScreen(bool exposed);
    void applyPlacedFrame();
    void finishSetUp(bool playOpening);
    void finishSetUpAndCatchUp(bool playOpening);
    void applyLimits();
    void bringOnScreen();
    void takeDesignSizeIfUnknown();
    void restoreBuiltSize();
    void delayedResize();
    bool minimised() const;
    // Minimised, or shrunk to nothing: no layout to take or to scale from.
    bool collapsed() const;
    std::shared_ptr<void> hold() const { return keepAlive ? keepAlive() : nullptr; }
    void runPending();
    // True when a sheet changed.
    bool scaleStyleSheets(qt::QtForm &form);
    // The form's size now over its size when the sheets were taken, by
    // axis; nothing when either is unknown.
    std::optional<std::pair<float, float>> sheetFactors(qt::QtForm &form) const;
    // Answers a resize from the event loop, ahead of the repaint: never
    // inside the form's own event, which a handler may delete the form from.
    void postPass();

    ResizeEngine &m_engine;
    QPointer<QWidget> m_form;
    QSize m_builtSize; // the form's size before anything showed it
    QPointer<QWidget> m_window; // where the form's window-state changes arrive
    QPointer<QWidget> m_mdiArea; // an MDI parent's inner part
    std::shared_ptr<qt::QtForm> m_hostForm;
    // The own style sheets of the form's window, and the form's size (in
    // twips) when they were taken: their lengths scale with the form.
    qt::FormStyleSheets m_styleSheets;
    float m_sheetWidth = 0, m_sheetHeight = 0;
    QTimer m_tmrDelayResize;
    QTimer m_tmrDisableResize;
    QTimer m_tmrScreenWait;
    QPointer<QWindow> m_screenWait;
    bool m_openPending = false; // the set-up ends with the opening wipe, once the window shows
    QRect m_placedFrame; // the frame the set-up gave a window that had none yet
    QRect m_restoreFrame; // the same, for a window that showed maximised
    int m_restoreTries = 0;
    QTimer m_tmrRestoreFrame;
    static constexpr int RestoreSettleMs = 250;
    // A dialog ends (accept(), reject(), done()) with a close whose event Qt
    // gives its own filter first: this one sees it before.
    QPointer<QObject> m_closeWatch;
    quint64 m_binding = 0; // counts binds: a request made for one form never runs on another
    static constexpr int ScreenWaitMs = 2000;
    // Re-entry from events a pass lets run: one pass at a time; what is
    // asked for meanwhile runs once the pass is over.
    bool m_passRunning = false;
    QSize m_passAt[2]; // the form's size at the last two passes, latest first
    bool m_passResized[2] = {false, false}; // whether each resized the form itself
    int m_selfResizes = 0; // passes in a row that resized the form themselves
    static constexpr int MaxSelfResizes = 8;
    bool m_passPosted = false;
    bool m_passPending = false;
    int m_chainedPasses = 0; // passes run back to back because the last one resized the form
    bool m_resetPending = false;
    bool m_bindPending = false;
    bool m_unloaded = false;
    bool m_inClose = false; // delivering the window's close ourselves, to learn its answer
    QPointer<QWidget> m_pendingForm;
};

} // namespace velmora
