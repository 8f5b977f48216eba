#include "form/PrintSizing.h"

#include "form/FormDriver.h"
#include "form/PrintDialog.h"
#include "form/SizeLimitHooks.h"

#include "engine/ResizeEngine.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"
#include "qt/QtUnits.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
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
        if (getSingle(*form, "Left").value_or(m_hiddenLeft) != m_hiddenLeft)
            form->set("Left", m_hiddenLeft);
    });
}

PrintSizing::~PrintSizing()
{
    delete m_dialog.data();
}

float PrintSizing::hiddenLeft()
{
    // A window's left edge is where its frame starts: past the right edge
    // of the rightmost screen, with room for a frame drawn beside it.
    int right = 0;
    for (const QScreen *screen : QGuiApplication::screens())
        right = std::max(right, screen->geometry().x() + screen->geometry().width());
    const float past = float(std::lround((right + 64) * qt::twipsPerPixel(qt::Axis::X)));
    return std::max(HiddenLeft, past);
}

void PrintSizing::liftLimits(QWidget *window)
{
    if (!m_limits.empty())
        return; // lifted by an earlier print size: what to put back is known
    for (QWidget *w : {window, m_driver.form()}) {
        if (!w || (!m_limits.empty() && m_limits.front().widget == w))
            continue;
        m_limits.push_back({w, w->minimumSize(), w->maximumSize()});
        w->setMinimumSize(0, 0);
        w->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
}

void PrintSizing::restoreLimits()
{
    for (const Limits &l : m_limits)
        if (l.widget) {
            l.widget->setMinimumSize(l.minimum);
            l.widget->setMaximumSize(l.maximum);
        }
    m_limits.clear();
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
    float twipsWide = tw->toSingle().value_or(0), twipsHigh = th->toSingle().value_or(0);
    // A window is drawn into memory of its own size: past a page at print
    // resolution that is gigabytes, for nothing a printer could take.
    const float mostWide = float(MaxPrintPixels * qt::twipsPerPixel(qt::Axis::X));
    const float mostHigh = float(MaxPrintPixels * qt::twipsPerPixel(qt::Axis::Y));
    if (!(twipsWide <= mostWide) || !(twipsHigh <= mostHigh)) {
        qWarning("VelmoraControl::PrintSize: %g x %g twips is larger than a window can be drawn; held to %d pixels "
                 "a side",
                 double(twipsWide), double(twipsHigh), MaxPrintPixels);
        twipsWide = std::isfinite(twipsWide) ? std::min(twipsWide, mostWide) : mostWide;
        twipsHigh = std::isfinite(twipsHigh) ? std::min(twipsHigh, mostHigh) : mostHigh;
    }

    // The place to come back to (an earlier print size's is overwritten).
    m_savedState = int(getLong(f, "WindowState").value_or(0));
    f.set("WindowState", 0);
    // A maximised window reaches its normal rectangle only once the window
    // system has restored it: the one it had last is the one to keep.
    const QRectF normal = m_driver.SavedWindowRect;
    if (m_savedState != 0 && normal.width() > 0 && normal.height() > 0) {
        m_savedLeft = float(normal.left());
        m_savedTop = float(normal.top());
        m_savedWidth = float(normal.width());
        m_savedHeight = float(normal.height());
    } else {
        m_savedLeft = getSingle(f, "Left").value_or(0);
        m_savedTop = getSingle(f, "Top").value_or(0);
        m_savedWidth = getSingle(f, "Width").value_or(0);
        m_savedHeight = getSingle(f, "Height").value_or(0);
    }
    m_saved = true;

    // Larger than the screen if need be, for as long as it is moved.
    QWidget *window = f.window();
    liftLimits(window);
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
        m_hiddenLeft = hiddenLeft();
        move(m_hiddenLeft);
        m_tmrPrintHide.start();
    } else {
        move(m_savedLeft);
    }
    SizeLimitHooks::unhookWindow(window);

    if (showDialog) {
        delete m_dialog.data();
        m_dialog = new PrintDialog(allowCancel);
        connect(m_dialog, &PrintDialog::cancelPressed, this, [this] {
            // Its notice may delete the component, and this with it.
            const auto alive = m_driver.keepAlive ? m_driver.keepAlive() : nullptr;
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
        restoreLimits();
        f.set("WindowState", m_savedState);
    }
    m_driver.TrackWindowRect = true;
    // Cleared before it is told: a slot may print again, or end it again.
    const bool cancelled = cancelPressed;
    cancelPressed = false;
    if (cancelled)
        Q_EMIT printCancelled();
}

} // namespace velmora
