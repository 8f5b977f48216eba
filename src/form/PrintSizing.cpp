#include "form/PrintSizing.h"

#include "form/FormDriver.h"
#include "form/PrintDialog.h"
#include "form/SizeLimitHooks.h"

#include "engine/ResizeEngine.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"
#include "qt/QtUnits.h"

#include <cmath>

namespace velmora {

namespace {

// Set by the dialog's Cancel, cleared by every call: one for the process,
// as there is one dialog on the screen at a time.
bool cancelPressed = false;

} // namespace

PrintSizing::PrintSizing(FormDriver &driver, ResizeEngine &engine, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_engine(engine)
{
    m_tmrPrintHide.setInterval(HideCheckMs);
    // Whatever moves a hidden form back (the application, the window
    // manager) does not bring it on screen while it is being printed.
    connect(&m_tmrPrintHide, &QTimer::timeout, this, [this] {
        const auto &form = m_driver.hostForm();
        if (!form || !m_driver.form())
            return;
        if (getSingle(*form, "Left").value_or(HiddenLeft) != HiddenLeft)
            form->set("Left", HiddenLeft);
    });
}

PrintSizing::~PrintSizing()
{
    delete m_dialog.data();
}

int PrintSizing::PrintSize(bool enabled, double printWidth, double printHeight, int scaleMode, bool hide,
                           bool showDialog, bool allowCancel)
{
    const auto &form = m_driver.hostForm();
    if (!form || !m_driver.Loaded || form->isKind(HostKind::MDIForm))
        return 0;
    if (enabled)
        enable(printWidth, printHeight, scaleMode, hide, showDialog, allowCancel);
    else
        disable();
    return 0;
}

void PrintSizing::enable(double printWidth, double printHeight, int scaleMode, bool hide, bool showDialog,
                         bool allowCancel)
{
    qt::QtForm &f = *m_driver.hostForm();
    cancelPressed = false;
    // No size given: the design size, taken in the given units as it stands.
    const double w = printWidth != 0 ? printWidth : m_engine.DesignFormWidth;
    const double h = printHeight != 0 ? printHeight : m_engine.DesignFormHeight;
    const auto tw = f.call("ScaleX", {Value(float(w)), Value(scaleMode), Value(1)});
    const auto th = tw ? f.call("ScaleY", {Value(float(h)), Value(scaleMode), Value(1)}) : tw;
    if (!tw || !th) {
        Q_EMIT scaleModeError(!tw ? tw.error() : th.error());
        return;
    }
    const float twipsWide = tw->toSingle().value_or(0), twipsHigh = th->toSingle().value_or(0);

    // The place to come back to (an earlier print size's is overwritten).
    m_savedState = int(getLong(f, "WindowState").value_or(0));
    f.set("WindowState", 0);
    m_savedLeft = getSingle(f, "Left").value_or(0);
    m_savedTop = getSingle(f, "Top").value_or(0);
    m_savedWidth = getSingle(f, "Width").value_or(0);
    m_savedHeight = getSingle(f, "Height").value_or(0);
    m_saved = true;

    // Larger than the screen if need be, for as long as it is moved.
    QWidget *window = f.window();
    const int most = 32767;
    SizeLimitHooks::hookWindow(window, m_driver.MinWidth, m_driver.MinHeight,
                               int(std::lround(most * qt::twipsPerPixel(qt::Axis::X))),
                               int(std::lround(most * qt::twipsPerPixel(qt::Axis::Y))));
    const auto move = [&](float left) {
        f.set("Left", left);
        f.set("Top", m_savedTop);
        f.set("Width", twipsWide);
        f.set("Height", twipsHigh);
    };
    if (hide) {
        // The off-screen rectangle is not one to reopen at.
        m_driver.TrackWindowRect = false;
        move(HiddenLeft);
        m_tmrPrintHide.start();
    } else {
        move(m_savedLeft);
    }
    SizeLimitHooks::unhookWindow(window);

    if (showDialog) {
        delete m_dialog.data();
        m_dialog = new PrintDialog(allowCancel);
        connect(m_dialog, &PrintDialog::cancelPressed, this, [this] {
            cancelPressed = true;
            PrintSize(false, 0, 0, 1, false, false, false);
        });
        m_dialog->show();
    }
    m_driver.runPass();
}

void PrintSizing::disable()
{
    m_tmrPrintHide.stop();
    if (m_dialog) {
        m_dialog->close(); // deletes itself
        m_dialog = nullptr;
    }
    qt::QtForm &f = *m_driver.hostForm();
    if (m_saved) {
        f.set("Left", m_savedLeft);
        f.set("Top", m_savedTop);
        f.set("Width", m_savedWidth);
        f.set("Height", m_savedHeight);
        f.set("WindowState", m_savedState);
    }
    m_driver.TrackWindowRect = true;
    if (cancelPressed)
        Q_EMIT printCancelled();
    cancelPressed = false;
}

} // namespace velmora
