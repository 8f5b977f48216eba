// Velmora - holds a form at a print size (optionally off-screen, with a
// "Printing..." window that may cancel) so that the application can render
// it, and puts it back as it was.
#pragma once

#include "form/PrintDialog.h"
#include "layout/Value.h"

#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>

#include <vector>

namespace velmora {

class FormDriver;

class ResizeEngine;


class PrintSizing : public QObject {
    Q_OBJECT
public:
    PrintSizing(FormDriver &driver, ResizeEngine &engine, QObject *parent = nullptr);
    ~PrintSizing() override;

    // Enabled: the form's outer size becomes PrintWidth x PrintHeight (in
    // ScaleMode units; 0: its design size), at its place or off-screen
    // (Hide), the controls laid out for it. Disabled: back to the saved
    // place, size and state. Always 0.
    int PrintSize(bool enabled, double printWidth, double printHeight, int scaleMode, bool hide, bool showDialog,
                  bool allowCancel);

    static constexpr float HiddenLeft = 32000; // twips: well off the screen...
    // ...or further, to be off every screen of the desktop.
    static float hiddenLeft();
    static constexpr int HideCheckMs = 100;
    static constexpr int MaxPrintPixels = 10000; // a side, however large the size asked for
    const QTimer &hideTimer() const { return m_tmrPrintHide; }
    PrintDialog *dialog() const { return m_dialog; }

Q_SIGNALS:
    void printCancelled();
    // The print size could not be converted from the given ScaleMode.
    void scaleModeError(const HostError &error);

private:
    void enable(double printWidth, double printHeight, int scaleMode, bool hide, bool showDialog, bool allowCancel);
    void disable();
    // The form's own size limits give way to the page's size while it is
    // printed, and are put back exactly afterwards.
    void liftLimits(QWidget *window);
    void restoreLimits();

    FormDriver &m_driver;
    ResizeEngine &m_engine;
    QTimer m_tmrPrintHide;
    QPointer<PrintDialog> m_dialog;
    int m_savedState = 0;
    float m_savedLeft = 0, m_savedTop = 0, m_savedWidth = 0, m_savedHeight = 0;
    bool m_saved = false;
    float m_hiddenLeft = HiddenLeft;
    struct Limits {
        QPointer<QWidget> widget;
        QSize minimum, maximum;
    };
    std::vector<Limits> m_limits; // while lifted
};

} // namespace velmora
