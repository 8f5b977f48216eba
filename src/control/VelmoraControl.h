// Velmora - drop one VelmoraControl onto an absolutely positioned form and
// every other widget on it scales with the form.
//
// At run time the control has no visible surface. It binds to the widget it
// is placed on (for a QMainWindow, its central widget), takes the layout the
// form has when it first shows (or the design size stored in its
// DesignForm* properties) as the design layout, and rescales positions,
// sizes, fonts, border widths and pictures whenever the form is resized.
#pragma once

#include "velmora_export.h"

#include "control/VelmoraError.h"

#include <QPixmap>
#include <QVariantMap>
#include <QWidget>

#include <functional>
#include <memory>

class VelmoraControlPrivate;

class VELMORA_EXPORT VelmoraControl : public QWidget {
    Q_OBJECT
    // In the order the component has always published them.
    Q_PROPERTY(bool ScaleFonts READ ScaleFonts WRITE setScaleFonts NOTIFY settingsChanged)
    Q_PROPERTY(bool CenterX READ CenterX WRITE setCenterX NOTIFY settingsChanged)
    Q_PROPERTY(bool CenterY READ CenterY WRITE setCenterY NOTIFY settingsChanged)
    Q_PROPERTY(bool GradientFill READ GradientFill WRITE setGradientFill NOTIFY settingsChanged)
    Q_PROPERTY(int GradientColour READ GradientColour WRITE setGradientColour NOTIFY settingsChanged)
    Q_PROPERTY(bool ScaleControls READ ScaleControls WRITE setScaleControls NOTIFY settingsChanged)
    Q_PROPERTY(int ScaleX READ ScaleX WRITE setScaleX NOTIFY settingsChanged)
    Q_PROPERTY(int ScaleY READ ScaleY WRITE setScaleY NOTIFY settingsChanged)
    Q_PROPERTY(bool StayOnTop READ StayOnTop WRITE setStayOnTop NOTIFY settingsChanged)
    Q_PROPERTY(int MinWidth READ MinWidth WRITE setMinWidth NOTIFY settingsChanged)
    Q_PROPERTY(int MinHeight READ MinHeight WRITE setMinHeight NOTIFY settingsChanged)
    Q_PROPERTY(int MaxWidth READ MaxWidth WRITE setMaxWidth NOTIFY settingsChanged)
    Q_PROPERTY(int MaxHeight READ MaxHeight WRITE setMaxHeight NOTIFY settingsChanged)
    Q_PROPERTY(bool ScaleBorders READ ScaleBorders WRITE setScaleBorders NOTIFY settingsChanged)
    Q_PROPERTY(int MdiChildWidth READ MdiChildWidth WRITE setMdiChildWidth NOTIFY settingsChanged)
    Q_PROPERTY(int MdiChildHeight READ MdiChildHeight WRITE setMdiChildHeight NOTIFY settingsChanged)
    Q_PROPERTY(bool ResizeOnMouseUp READ ResizeOnMouseUp WRITE setResizeOnMouseUp NOTIFY settingsChanged)
    Q_PROPERTY(int ControlFlagCount READ ControlFlagCount WRITE setControlFlagCount NOTIFY settingsChanged
                   DESIGNABLE false)
    Q_PROPERTY(bool ScaleGraphics READ ScaleGraphics WRITE setScaleGraphics NOTIFY settingsChanged)
    Q_PROPERTY(QString ReplaceFontsWith READ ReplaceFontsWith WRITE setReplaceFontsWith NOTIFY settingsChanged)
    Q_PROPERTY(bool SaveWindowState READ SaveWindowState WRITE setSaveWindowState NOTIFY settingsChanged)
    Q_PROPERTY(QString WindowName READ WindowName WRITE setWindowName NOTIFY settingsChanged)
    Q_PROPERTY(FormPictureEffects FormPicture READ FormPicture WRITE setFormPicture NOTIFY settingsChanged)
    Q_PROPERTY(FormCloseEffects FormClose READ FormClose WRITE setFormClose NOTIFY settingsChanged)
    Q_PROPERTY(double FormCloseTime READ FormCloseTime WRITE setFormCloseTime NOTIFY settingsChanged)
    Q_PROPERTY(FormOpenEffects FormOpen READ FormOpen WRITE setFormOpen NOTIFY settingsChanged)
    Q_PROPERTY(double FormOpenTime READ FormOpenTime WRITE setFormOpenTime NOTIFY settingsChanged)
    // Beyond the classic set.
    Q_PROPERTY(bool KeepOnScreen READ KeepOnScreen WRITE setKeepOnScreen NOTIFY settingsChanged)
    // The design reference, saved with the form from the editor.
    Q_PROPERTY(double DesignFormWidth READ DesignFormWidth WRITE setDesignFormWidth DESIGNABLE false)
    Q_PROPERTY(double DesignFormHeight READ DesignFormHeight WRITE setDesignFormHeight DESIGNABLE false)
    Q_PROPERTY(double DesignFormScaleWidth READ DesignFormScaleWidth WRITE setDesignFormScaleWidth DESIGNABLE false)
    Q_PROPERTY(double DesignFormScaleHeight READ DesignFormScaleHeight WRITE setDesignFormScaleHeight
                   DESIGNABLE false)

public:
    // 32-bit, as they were always published: a value from a file or a
    // script that names no constant is a value of the type all the same,
    // and the setters refuse it.
    enum FormPictureEffects : int { FpNone = 0, FpFit = 1, FpCenter = 2, FpTile = 3 };
    Q_ENUM(FormPictureEffects)
    enum FormOpenEffects : int { FoNone = 0, FoWipeLeft, FoWipeRight, FoWipeUp, FoWipeDown, FoWipeVertical, FoWipeHorizontal, FoFold };
    Q_ENUM(FormOpenEffects)
    enum FormCloseEffects : int { FcNone = 0, FcWipeLeft, FcWipeRight, FcWipeUp, FcWipeDown, FcWipeVertical, FcWipeHorizontal, FcFold };
    Q_ENUM(FormCloseEffects)
    // Published with the others; no member takes or returns it.
    enum FormStates : int { fsNone = 0, fsLocked = 1, fsEnabled = 2 };
    Q_ENUM(FormStates)

    // What one control of the form is exempt from: the ten switches of its
    // entry in the per-control options.
    enum Option : int {
        NoOptions = 0,
        DontScaleControl = 0x001, // kept with the others; the pass scales such a control all the same
        DontScaleFont = 0x002,
        DontScaleBorder = 0x004,
        DontScaleGraphic = 0x008,
        DontScaleLeft = 0x010,
        DontScaleTop = 0x020,
        DontScaleWidth = 0x040,
        DontScaleHeight = 0x080,
        DontScaleRight = 0x100, // keeps its distance to the container's right edge
        DontScaleBottom = 0x200, // keeps its distance to the container's bottom edge
    };
    Q_DECLARE_FLAGS(Options, Option)
    Q_FLAG(Options)

    // The help text of a property, method or signal by name, as the
    // property pages and Designer show it; empty for a member without one.
    static QString helpText(const QString &member);

    explicit VelmoraControl(QWidget *parent = nullptr);
    ~VelmoraControl() override;

    // In a form editor (Qt Designer's plugin sets it) the control only
    // keeps its settings: it binds to nothing, and nothing on the form is
    // moved, resized, painted, masked or re-fonted. Off by default.
    bool isDesignTime() const;
    void setDesignTime(bool on);

    bool ScaleControls() const;
    void setScaleControls(bool on);
    bool ScaleFonts() const;
    void setScaleFonts(bool on);
    bool ScaleBorders() const;
    void setScaleBorders(bool on);
    bool ScaleGraphics() const;
    void setScaleGraphics(bool on);
    bool ResizeOnMouseUp() const;
    void setResizeOnMouseUp(bool on);
    FormPictureEffects FormPicture() const;
    void setFormPicture(FormPictureEffects mode);
    // With GradientFill the form's background is 63 bands growing darker
    // from GradientColour (0x00BBGGRR, as colour values are stored; the
    // default 0xFF0000 is blue), painted under its children and again after
    // every resize; turned off, the painted background is cleared.
    bool GradientFill() const;
    void setGradientFill(bool on);
    int GradientColour() const;
    void setGradientColour(int colour);
    // A font family every control of the form takes when it first comes up
    // (sizes and styles kept); "<none>", exactly, replaces nothing.
    QString ReplaceFontsWith() const;
    void setReplaceFontsWith(const QString &family);
    // With SaveWindowState the window reopens where the user left it: its
    // last normal rectangle and its state are kept in the per-user settings
    // of "Velmora", under WindowName (empty: the window's title, taken once),
    // written when the window closes and used once by the next set-up.
    // The wipe the window opens with (when first shown) and closes with
    // (when a close is accepted), and how long each takes: 0 to 10 seconds,
    // held to the millisecond (0: as fast as it goes). A time outside is
    // brought into that range with a warning; one that is no number, and an
    // effect no constant names, are refused with a warning.
    FormOpenEffects FormOpen() const;
    void setFormOpen(FormOpenEffects effect);
    double FormOpenTime() const;
    void setFormOpenTime(double seconds);
    FormCloseEffects FormClose() const;
    void setFormClose(FormCloseEffects effect);
    double FormCloseTime() const;
    void setFormCloseTime(double seconds);
    // Where the window first appears (unless a saved state places it):
    // centred on its screen (an MDI child: in its MDI area) and ScaleX /
    // ScaleY percent of it wide and high (0: as designed). Set on a shown
    // window, they act at once on a window in its normal state.
    bool CenterX() const;
    void setCenterX(bool on);
    bool CenterY() const;
    void setCenterY(bool on);
    int ScaleX() const;
    void setScaleX(int percent); // 0 to 100
    int ScaleY() const;
    void setScaleY(int percent);
    // Above other windows; changed without hiding or re-creating the window.
    bool StayOnTop() const;
    void setStayOnTop(bool on);
    // The size an MDI child form starts with, in twips (0: as designed).
    int MdiChildWidth() const;
    void setMdiChildWidth(int twips);
    int MdiChildHeight() const;
    void setMdiChildHeight(int twips);
    // The window's outer size limits, in twips (below 1: none). Dragged past
    // one, the window is set back to it, disabled for half a second, and
    // the user hears a beep; a minimum counts only with a maximum at least
    // as large, and a maximised or minimised window is left alone.
    int MinWidth() const;
    void setMinWidth(int twips);
    int MinHeight() const;
    void setMinHeight(int twips);
    int MaxWidth() const;
    void setMaxWidth(int twips);
    int MaxHeight() const;
    void setMaxHeight(int twips);
    bool SaveWindowState() const;
    void setSaveWindowState(bool on);
    QString WindowName() const;
    void setWindowName(const QString &name);
    // A window restored off every screen (a monitor went away) is brought
    // back onto the nearest one, shrunk to fit if need be. Off by default.
    bool KeepOnScreen() const;
    void setKeepOnScreen(bool on);

    // Shows what the set-up could not recover from ("QxVelmora Trapped
    // Error = " and the reason): a message box by default. Replaceable for
    // the whole process (tests record instead; nullptr restores the box);
    // returns the handler it replaced.
    using TrappedErrorHandler = std::function<void(QWidget *window, const QString &text)>;
    static TrappedErrorHandler trappedErrorHandler();
    static TrappedErrorHandler setTrappedErrorHandler(TrappedErrorHandler handler);

    // The form's outer size (twips) and inner size (its ScaleMode units) at
    // design time; all 0 means "the size the form first shows with".
    double DesignFormWidth() const;
    void setDesignFormWidth(double v);
    double DesignFormHeight() const;
    void setDesignFormHeight(double v);
    double DesignFormScaleWidth() const;
    void setDesignFormScaleWidth(double v);
    double DesignFormScaleHeight() const;
    void setDesignFormScaleHeight(double v);

    // The form this control serves, or nullptr.
    QWidget *form() const;
    // Whether the set-up after the form's first show has completed.
    bool isFormReady() const;

    // The methods, in the order the component has always published them.
    // Picture functions; a null pixmap when the source is empty. Sizes are
    // in pixels.
    Q_INVOKABLE QPixmap ScalePicture(const QPixmap &picture, double xScale, double yScale);
    Q_INVOKABLE QPixmap SizePicture(const QPixmap &picture, int xSize, int ySize);
    Q_INVOKABLE QPixmap CenterPicture(QWidget *container, const QPixmap &picture);
    Q_INVOKABLE QPixmap TilePicture(QWidget *container, const QPixmap &picture);
    // Takes the form as it is now as its design layout.
    Q_INVOKABLE void Reset();
    // A small box with the component's version.
    Q_INVOKABLE void ShowAboutBox();
    // Records one control's present layout as its design layout.
    Q_INVOKABLE void SaveControlInfo(QWidget *control);
    Q_INVOKABLE void SaveControlFlags(QWidget *control);
    Q_INVOKABLE void SaveWindowSettings();
    // Restores what was saved; anything missing or unusable leaves the
    // window where it is.
    Q_INVOKABLE void LoadWindowSettings();
    // Holds the form at a size for printing (PrintWidth x PrintHeight in
    // ScaleMode units, outer size; 0: its design size) so that the
    // application can render it, optionally off-screen (Hide) and with a
    // "Printing..." window (ShowDialog) whose Cancel (AllowCancel) puts the
    // form back and signals PrintCancelled; PrintSize(false) puts it back.
    // Does nothing at design time or on an MDI parent. Returns 0.
    Q_INVOKABLE int PrintSize(bool Enabled, double PrintWidth = 0, double PrintHeight = 0, int ScaleMode = 1,
                              bool Hide = false, bool ShowDialog = false, bool AllowCancel = false);
    // Places one recorded control for the form's present size.
    Q_INVOKABLE void AdjustPosition(QWidget *control);

    static QString version();

    // The saved settings as the form's description keeps them (a property
    // bag): values equal to their defaults are left out, the per-control
    // options are indexed keys ("ControlFlagControlKey1",
    // "ControlFlagDontScaleLeft12" ...), and the four design sizes are
    // written only at design time. Reading takes each key straight into the
    // control (nothing acts on the form); a missing or unusable value reads
    // as its default, and the rest still reads.
    QVariantMap writeProperties() const;
    void readProperties(const QVariantMap &bag);
    // Every setting back to its default, no per-control options.
    void initProperties();

    // The per-control options, entries 1 to ControlFlagCount (0 exists and
    // holds nothing). An index out of range reads false or empty, sets
    // nothing, warns, and says so through `ok`. A change reaches the resize
    // pass's switches for that control key at once.
    //
    // The count is 0 to 32767 (what a saved form holds); another is refused
    // with a warning and changes nothing.
    int ControlFlagCount() const;
    void setControlFlagCount(int count);
    bool ControlFlagDontScaleControl(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleControl(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleFont(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleFont(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleBorder(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleBorder(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleGraphic(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleGraphic(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleLeft(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleLeft(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleTop(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleTop(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleWidth(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleWidth(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleHeight(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleHeight(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleRight(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleRight(int index, bool on, bool *ok = nullptr);
    bool ControlFlagDontScaleBottom(int index, bool *ok = nullptr) const;
    void setControlFlagDontScaleBottom(int index, bool on, bool *ok = nullptr);
    QString ControlFlagControlKey(int index, bool *ok = nullptr) const;
    void setControlFlagControlKey(int index, const QString &key, bool *ok = nullptr);

    // The same options by widget rather than by index: what `control`, a
    // widget of the form, is exempt from. Setting them writes its entry
    // (the last one under its key), adding one at the end when it has none;
    // the indexed arrays above stay the saved form of it all. A widget that
    // is no control of the form reads NoOptions and is refused with a
    // warning.
    Options options(QWidget *control) const;
    void setOptions(QWidget *control, Options options);
    // The entry that holds the options of the control filed under `key`
    // (its objectName, with "(Index)" for an element of a control array):
    // the last entry naming it, or 0 when none does.
    int entryOf(const QString &key) const;

    void setVisible(bool visible) override;

Q_SIGNALS:
    void ResizeStarted();
    void ResizeDone();
    // A failure the pass absorbed: what failed, and the toolkit's error.
    void Error(const QString &Description, const VelmoraError &ErrorObject);
    // The "Printing..." window's Cancel was pressed (the form is back).
    void PrintCancelled();
    // A setting changed (its property name): the form's saved description
    // needs writing again.
    void PropertyChanged(const QString &name);
    void settingsChanged();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    friend class VelmoraControlPrivate;
    // Shared: a pass running when the component is deleted keeps it alive
    // until the pass has unwound.
    std::shared_ptr<VelmoraControlPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VelmoraControl::Options)
