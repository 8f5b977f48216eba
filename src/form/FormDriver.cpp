#include "form/FormDriver.h"

#include "form/FontReplacement.h"
#include "form/FormGradient.h"
#include "form/SizeLimitHooks.h"
#include "form/WindowSettings.h"
#include "form/WipeEffect.h"

#include "engine/ResizeEngine.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"
#include "qt/QtLayoutSettling.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QEvent>
#include <QWindowStateChangeEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <exception>
#include <vector>

namespace velmora {

namespace {

const QEvent::Type PassRequest = static_cast<QEvent::Type>(QEvent::registerEventType());

struct PassRequestEvent : QEvent {
    explicit PassRequestEvent(quint64 binding)
        : QEvent(PassRequest)
        , binding(binding)
    {
    }
    quint64 binding;
};

// Sees a dialog's close ahead of the dialog's own filters.
class CloseWatch : public QObject {
public:
    CloseWatch(QWidget *window, std::function<bool(QEvent *)> closing)
        : m_window(window)
        , m_closing(std::move(closing))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return watched == m_window && event->type() == QEvent::Close && m_closing(event);
    }

private:
    QObject *m_window;
    std::function<bool(QEvent *)> m_closing;
};

// Without its mask, all of the window shows; on X11 what the mask hid
// stays unpainted (black) unless the window is painted again.
void showWhole(QWidget *window)
{
    window->clearMask();
    window->update();
}

} // namespace

FormDriver::FormDriver(ResizeEngine &engine, QObject *parent)
    : QObject(parent)
    , m_engine(engine)
{
    m_tmrDelayResize.setSingleShot(true);
    m_tmrDelayResize.setInterval(DelayResizeMs);
    connect(&m_tmrDelayResize, &QTimer::timeout, this, &FormDriver::delayedResize);
    m_tmrScreenWait.setSingleShot(true);
    m_tmrScreenWait.setInterval(ScreenWaitMs);
    connect(&m_tmrScreenWait, &QTimer::timeout, this, [this] {
        const auto alive = hold();
        reachedScreen(false);
    });
    m_tmrRestoreFrame.setSingleShot(true);
    m_tmrRestoreFrame.setInterval(RestoreSettleMs);
    connect(&m_tmrRestoreFrame, &QTimer::timeout, this, [this] { correctRestoredFrame(); });
    m_tmrDisableResize.setSingleShot(true);
    m_tmrDisableResize.setInterval(DisableResizeMs);
    connect(&m_tmrDisableResize, &QTimer::timeout, this, [this] {
        if (m_hostForm)
            if (QWidget *window = m_hostForm->window())
                window->setEnabled(true);
    });
    beep = [] { QApplication::beep(); };
}

FormDriver::~FormDriver()
{
    delete m_closeWatch.data();
    // The window may be on its way out with us: its rows go, it is not touched.
    if (m_window)
        SizeLimitHooks::forgetWindow(m_window);
}

void FormDriver::bind(QWidget *form)
{
    if (m_passRunning) {
        m_engine.StopRequested = true;
        m_bindPending = true;
        m_pendingForm = form;
        return;
    }
    // The same main window becomes an MDI parent when an MDI area is made
    // its centre, and stops being one when it is replaced: a different form.
    if (form == m_form && (!m_hostForm || m_hostForm->mdiArea() == qt::QtForm::mdiAreaOf(form)))
        return;
    if (m_form)
        m_form->removeEventFilter(this);
    if (m_mdiArea)
        m_mdiArea->removeEventFilter(this);

    if (m_window)
        m_window->removeEventFilter(this);
    delete m_closeWatch.data();
    ++m_binding;
    m_passPosted = false;
    m_passAt[0] = m_passAt[1] = QSize();
    m_passResized[0] = m_passResized[1] = false;
    m_selfResizes = 0;
    m_restoreFrame = QRect();
    m_restoreTries = 0;
    m_tmrRestoreFrame.stop();
    m_tmrDelayResize.stop();
    if (m_screenWait)
        m_screenWait->removeEventFilter(this);
    m_screenWait = nullptr;
    m_tmrScreenWait.stop();
    m_openPending = false;
    m_placedFrame = QRect();
    m_form = form;
    m_hostForm = form ? qt::QtForm::create(form) : nullptr;
    m_builtSize = form && !form->isVisible() && form->testAttribute(Qt::WA_Resized) ? form->size() : QSize();
    Loaded = false;
    SettingUp = false;
    m_passPending = m_resetPending = false;
    // Nothing of another form carries over: its reference, its records, the
    // design size taken from it.
    m_engine.FormReady = false;
    m_engine.Initialised = false;
    m_engine.CurScaleWidth = m_engine.CurScaleHeight = 0;
    m_engine.RefScaleWidth = m_engine.RefScaleHeight = 0;
    m_engine.store().discardInfo();
    if (!DesignSizeGiven)
        m_engine.DesignFormWidth = m_engine.DesignFormHeight = m_engine.DesignFormScaleWidth =
            m_engine.DesignFormScaleHeight = 0;
    if (!form)
        return;
    form->installEventFilter(this);
    m_window = m_hostForm->window();
    if (m_window && m_window != form)
        m_window->installEventFilter(this);
    if (qobject_cast<QDialog *>(m_window))
        m_closeWatch = new CloseWatch(m_window, [this](QEvent *event) { return windowClosing(event); });
    // An MDI parent's inner size is its area's. It changes without the
    // window when a pass grows the toolbars and status bar around it; what
    // they hold settles in the pass that follows.
    m_mdiArea = m_hostForm->mdiArea();
    if (m_mdiArea)
        m_mdiArea->installEventFilter(this);
    // Bound to a form already on screen: load once the code that created us
    // has finished adding its widgets.
    if (form->isVisible()) {
        QMetaObject::invokeMethod(
            this,
            [this, guard = QPointer<QWidget>(form)] {
                const auto alive = hold();
                if (guard && guard == m_form && !Loaded) {
                    FormLoaded();
                    FormResized();
                }
            },
            Qt::QueuedConnection);
    }
}

bool FormDriver::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_screenWait && event->type() == QEvent::Expose && m_screenWait->isExposed()) {
        // Finished from the event loop, out of the window system's own
        // delivery, with the window painted once (masked to nothing).
        QMetaObject::invokeMethod(this, [this, guard = QPointer<QWindow>(m_screenWait)] {
            const auto alive = hold();
            if (guard && guard == m_screenWait)
                reachedScreen(true);
        }, Qt::QueuedConnection);
        return false;
    }
    // Called for every event of the form: what may end the driver holds it
    // itself, and nothing here touches it afterwards.
    if (watched == m_window && Loaded) {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
            if (m_engine.FormReady)
                rememberNormalRect();
            break;
        case QEvent::Show:
            if (m_unloaded) {
                m_unloaded = false;
                reopen();
            }
            break;
        case QEvent::Close:
            if (!m_closeWatch && windowClosing(event))
                return true; // delivered: its answer stands
            break;
        default:
            break;
        }
        if (m_restoreTries > 0 && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
            m_tmrRestoreFrame.start(); // not settled yet
    }
    if (watched == m_window && event->type() == QEvent::WindowStateChange && Loaded) {
        // Passes are skipped while minimised, and restoring sends no resize.
        const auto old = static_cast<QWindowStateChangeEvent *>(event)->oldState();
        if ((old & Qt::WindowMinimized) && !(m_window->windowState() & Qt::WindowMinimized))
            postPass();
        if (m_restoreFrame.isValid() && m_window->windowState() == Qt::WindowNoState) {
            // The window manager puts it back at the rectangle it was given
            // after this, and Qt learns its new frame later still: the frame
            // is given once the window has stopped moving.
            m_restoreTries = 2;
            m_tmrRestoreFrame.start();
        }
    }
    if (watched == m_mdiArea && event->type() == QEvent::Resize && Loaded && m_engine.FormReady)
        postPass();
    if (watched == m_form) {
        switch (event->type()) {
        case QEvent::Show:
            // By its first show the form has its laid-out size; the set-up
            // runs before the window reaches the screen.
            if (!Loaded) {
                FormLoaded();
                FormResized();
            }
            break;
        case QEvent::Resize:
            if (Loaded)
                postPass();
            break;
        default:
            break;
        }
    }
    return false;
}

bool FormDriver::windowClosing(QEvent *event)
{
    if (m_inClose || !Loaded)
        return false;
    const auto alive = hold();
    QPointer<QWidget> window = m_window;
    m_inClose = true;
    QCoreApplication::sendEvent(window, event);
    m_inClose = false;
    // The close effect plays while the window still shows.
    if (event->isAccepted() && window)
        FormUnloading();
    return true;
}

void FormDriver::reopen()
{
    if (!m_hostForm)
        return;
    if (QWidget *window = m_hostForm->window())
        window->clearMask(); // the closing wipe's last region
    m_tmrDelayResize.stop();
    m_engine.FormReady = false;
    SettingUp = false;
    WindowSettingsLoaded = false;
    m_openPending = false;
    FormLoaded();
    FormResized();
}

void FormDriver::correctRestoredFrame()
{
    QWidget *window = m_window;
    if (m_restoreTries <= 0 || !window || window->windowState() != Qt::WindowNoState)
        return;
    const QRect frame = window->frameGeometry(), inner = window->geometry();
    if (frame == inner) {
        m_tmrRestoreFrame.start(); // not framed yet
        return;
    }
    if (frame == m_restoreFrame || --m_restoreTries < 0) {
        // Where it belongs (or the window manager will not have it there):
        // from now on the window is the user's.
        m_restoreTries = 0;
        m_restoreFrame = QRect();
        return;
    }
    const QMargins decoration(inner.left() - frame.left(), inner.top() - frame.top(),
                              frame.right() - inner.right(), frame.bottom() - inner.bottom());
    window->setGeometry(m_restoreFrame - decoration);
    m_tmrRestoreFrame.start(); // and looked at again once it has settled
}

void FormDriver::postPass()
{
    if (m_passPosted)
        return;
    m_passPosted = true;
    QCoreApplication::postEvent(this, new PassRequestEvent(m_binding), Qt::HighEventPriority);
}

bool FormDriver::event(QEvent *event)
{
    if (event->type() != PassRequest)
        return QObject::event(event);
    // Asked for on a form served before the last bind: not this one's.
    if (static_cast<PassRequestEvent *>(event)->binding != m_binding)
        return true;
    m_passPosted = false;
    FormResized();
    return true;
}

void FormDriver::takeDesignSizeIfUnknown()
{
    ResizeEngine &e = m_engine;
    if (e.DesignFormWidth != 0 || e.DesignFormHeight != 0 || e.DesignFormScaleWidth != 0
        || e.DesignFormScaleHeight != 0)
        return;
    // Never saved at design time: the form scales from the size it was built
    // at, which is the size it first shows with.
    qt::QtForm &f = *m_hostForm;
    e.DesignFormWidth = getSingle(f, "Width").value_or(0);
    e.DesignFormHeight = getSingle(f, "Height").value_or(0);
    e.DesignFormScaleWidth = getSingle(f, "ScaleWidth").value_or(0);
    e.DesignFormScaleHeight = getSingle(f, "ScaleHeight").value_or(0);
}

void FormDriver::restoreBuiltSize()
{
    // A form built at a size of its own, without a layout, and put in an
    // MDI subwindow that nobody sized shows in a sliver of it (the
    // subwindow knows no size for such a form): give the form back the size
    // it was built at before that becomes its design size.
    if (!m_builtSize.isValid() || DesignSizeGiven || !m_form)
        return;
    auto *sub = qobject_cast<QMdiSubWindow *>(m_form->parentWidget());
    const QSize now = m_form->size();
    // A subwindow the application sized keeps its size; one still at the
    // size Qt gave it from its hint (a title bar's worth) was never sized.
    if (!sub || sub->widget() != m_form || sub->size() != sub->sizeHint()
        || (now.width() >= m_builtSize.width() && now.height() >= m_builtSize.height()))
        return;
    sub->resize(sub->size() + (m_builtSize - now).expandedTo(QSize(0, 0)));
    m_form->resize(m_form->size().expandedTo(m_builtSize));
}

void FormDriver::FormLoaded()
{
    restoreBuiltSize();
    takeDesignSizeIfUnknown();
    Loaded = true;
    WindowPlacement::applyStayOnTop(m_hostForm.get(), placement.StayOnTop);
    // Nothing of the window shows until its opening wipe starts.
    if (FormOpen > 0 && m_hostForm)
        if (QWidget *window = m_hostForm->window())
            window->setMask(QRegion(-2, -2, 1, 1));
}

bool FormDriver::minimised() const
{
    return m_hostForm && getLong(*m_hostForm, "WindowState").value_or(0) == 1;
}

bool FormDriver::collapsed() const
{
    return minimised() || !m_form || m_form->width() <= 0 || m_form->height() <= 0;
}

void FormDriver::runPass()
{
    if (!m_hostForm)
        return;
    if (m_passRunning) {
        m_passPending = true;
        return;
    }
    const auto alive = hold();
    m_passPending = false; // this pass answers any request made before it
    // The pass keeps the form it started on, whatever happens to m_hostForm.
    const std::shared_ptr<qt::QtForm> form = m_hostForm;
    // A main window's bars follow the fonts of the form they surround, and
    // the form's size follows the bars: at a pixel's rounding the form can
    // go back and forth between two sizes, each pass undoing the last. Back
    // where the pass before last ran, after two passes that each resized
    // the form themselves, the layout it has is the one to keep.
    const QSize startSize = m_form ? m_form->size() : QSize();
    if (m_engine.Initialised && m_engine.FormReady && m_form) {
        const QSize last = m_passAt[0], before = m_passAt[1];
        const bool bouncing = m_passResized[0] && m_passResized[1] && startSize == before && startSize != last
            && qAbs(startSize.width() - last.width()) <= 2 && qAbs(startSize.height() - last.height()) <= 2;
        m_passAt[1] = last;
        m_passAt[0] = startSize;
        m_passResized[1] = m_passResized[0];
        m_passResized[0] = false;
        // However it cycles, a form its own passes keep resizing stops
        // being chased after a few rounds; the next resize starts afresh.
        if (bouncing || m_selfResizes >= MaxSelfResizes) {
            m_selfResizes = 0;
            return;
        }
    }
    m_passRunning = true;
    // Containers placed by layouts are recorded at the size they will show
    // with, hidden pages included.
    if (!m_engine.Initialised)
        qt::settleLayouts(form->widget());
    form->beginPass();
    const bool capturing = !m_engine.Initialised;
    // Lengths first: a sheet's minimum sizes must not hold a control back
    // from the place the pass gives it.
    if (!capturing && ScaleControls && !m_styleSheets.empty())
        scaleStyleSheets(*form);
    m_engine.ResizeControls(*form);
    // At the size the layout was taken, every sheet is its own text again,
    // whatever widget the pass left unwritten (a font already at its size).
    if (!capturing && form->widget())
        if (const auto f = sheetFactors(*form); f && f->first == 1.0f && f->second == 1.0f)
            qt::StyleSheets::dropPins(form->widget()->window());
    if (capturing && m_engine.Initialised) {
        m_styleSheets.capture(form->widget());
        m_sheetWidth = m_engine.RefScaleWidth;
        m_sheetHeight = m_engine.RefScaleHeight;
    }
    form->endPass();
    // What the bars around a main window's form make of the pass.
    if (m_form && m_window && m_form != m_window && m_form->isVisible()) {
        QCoreApplication::sendPostedEvents(m_window, QEvent::LayoutRequest);
        m_passResized[0] = m_form && m_form->size() != startSize;
        m_selfResizes = m_passResized[0] ? m_selfResizes + 1 : 0;
    }
    // The bands follow the form's new size.
    if (m_engine.GradientFill && m_hostForm == form)
        drawGradient();
    m_passRunning = false;
    m_engine.StopRequested = false;
    runPending();
}

std::optional<std::pair<float, float>> FormDriver::sheetFactors(qt::QtForm &form) const
{
    if (m_sheetWidth <= 0 || m_sheetHeight <= 0)
        return std::nullopt;
    const auto w = getSingle(form, "ScaleWidth"), h = getSingle(form, "ScaleHeight");
    const auto tw = w ? ResizeEngine::twipsWidth(form, *w) : std::nullopt;
    const auto th = h ? ResizeEngine::twipsHeight(form, *h) : std::nullopt;
    if (!tw || !th || *tw <= 0 || *th <= 0)
        return std::nullopt;
    return std::make_pair(*tw / m_sheetWidth, *th / m_sheetHeight);
}

bool FormDriver::scaleStyleSheets(qt::QtForm &form)
{
    const auto f = sheetFactors(form);
    if (!f)
        return false;
    // A scaled minimum in a sheet resizes its widget at once: that size is
    // the pass's doing, not a move of the application's to keep.
    QWidget *top = form.widget();
    std::vector<std::pair<QPointer<QWidget>, QRect>> before;
    if (top)
        for (QWidget *c : top->findChildren<QWidget *>())
            before.emplace_back(c, c->geometry());
    const double factor = std::min(f->first, f->second);
    if (!m_styleSheets.scale(factor, m_engine.ScaleFonts ? factor : 1.0))
        return false;
    for (const auto &[c, geometry] : before)
        if (c && c->geometry() != geometry)
            if (const auto host = form.adapterFor(c))
                m_engine.takeCurrentGeometry(*host);
    return true;
}

void FormDriver::runPending()
{
    if (m_bindPending) {
        m_bindPending = false;
        m_passPending = m_resetPending = false;
        bind(m_pendingForm);
        return;
    }
    if (m_resetPending) {
        m_resetPending = m_passPending = false;
        Reset();
    } else if (m_passPending) {
        m_passPending = false;
        // A pass that resizes its own form (a main window's toolbars growing
        // with it, a handler of ResizeDone) settles in a round or two; one
        // that keeps doing it must not chase itself for ever.
        constexpr int MaxChainedPasses = 4;
        if (m_chainedPasses >= MaxChainedPasses) {
            QMetaObject::invokeMethod(this, [this] { FormResized(); }, Qt::QueuedConnection);
            return;
        }
        ++m_chainedPasses;
        FormResized();
        m_chainedPasses = 0;
    }
}

void FormDriver::FormResized()
{
    // A form resized before its load is not served yet.
    if (!m_hostForm || !Loaded)
        return;
    if (SettingUp) { // a resize from the events the set-up lets run
        m_passPending = true;
        return;
    }
    const auto alive = hold();
    try {
        // A slot of the pass may delete the component or move it to another
        // form: what follows a pass is for the form it ran on only.
        const std::shared_ptr<qt::QtForm> form = m_hostForm;
        const auto rebound = [&] { return m_hostForm != form; };
        if (!m_engine.FormReady) {
            SettingUp = true;
            // Placed before the window system has it: with the frame it will
            // most likely get.
            if (QWidget *window = form->window()) {
                const QWindow *handle = window->window()->windowHandle();
                form->setBeforeScreen(!handle || !handle->isExposed());
            }
            // Before the layout is taken, so that fonts scale from the new face.
            applyReplacementFont(*form, ReplaceFontsWith.toStdString());
            placement.applyMdiChildSize(*form);
            runPass(); // the first call of a lifetime captures the layout
            if (rebound())
                return;
            bool placingStateNormal = false;
            if (SaveWindowState) {
                LoadWindowSettings();
            } else {
                if (!WindowName.isEmpty())
                    WindowSettings::remove(WindowName); // a form that stops saving leaves nothing behind
                // Centred at the size it starts with.
                placingStateNormal = getLong(*form, "WindowState").value_or(-1) == 0;
                placement.applyInitialSize(*form);
                placement.applyCenterX(*form);
                placement.applyCenterY(*form);
            }
            if (rebound())
                return;
            if (!minimised())
                runPass(); // the first real pass, the gradient painted after it
            if (rebound())
                return;
            // The set-up runs as the window is shown, before the window
            // system has it: its frame is not known yet, and a wipe played
            // now would be seen by no one.
            const bool placed = WindowSettingsLoaded
                || (placingStateNormal
                    && (placement.ScaleX > 0 || placement.ScaleY >= 1 || placement.CenterX || placement.CenterY));
            if (waitForScreen(placed, FormOpen != 0 && !minimised()))
                return;
            finishSetUp(true);
        }
        if (LoadingWindowSettings)
            return;
        if (rebound())
            return;
        if (!minimised() && getLong(*form, "WindowState").value_or(0) == 0)
            applyLimits();
        // Nothing to show: the controls keep the layout they have, which is
        // the one the reference size stands for.
        if (collapsed())
            return;
        if (m_resetPending) {
            // Back from the collapse first: the layout to take is the one
            // the form has at this size.
            m_resetPending = false;
            if (ScaleControls)
                runPass();
            Reset();
            return;
        }
        const bool passNow = ScaleControls && !ResizeOnMouseUp;
        if (passNow)
            runPass(); // paints the bands after it
        else if (ScaleControls)
            m_tmrDelayResize.start(); // restarts: fires after the last resize
        // The bands cover the form at every size, whether or not its
        // controls follow now.
        if (!passNow && m_engine.GradientFill)
            drawGradient();
    } catch (const std::exception &e) {
        SettingUp = false;
        Q_EMIT trappedError(QStringLiteral("QxVelmora Trapped Error = ") + QString::fromUtf8(e.what()));
    }
}

bool FormDriver::waitForScreen(bool placed, bool opening)
{
    QWidget *window = m_hostForm->window();
    QWindow *handle = window ? window->window()->windowHandle() : nullptr;
    if (!handle || handle->isExposed() || !(placed || opening))
        return false;
    // Placed before it had a frame (with the one the last window had, if
    // any): the frame the window was given is given again if it differs once
    // the window manager has framed it.
    m_placedFrame = placed && window->isWindow() ? m_hostForm->frameOf(window) : QRect();
    m_openPending = opening;
    m_screenWait = handle;
    handle->installEventFilter(this);
    // A window that never reaches the screen (hidden again, or a window
    // manager that keeps it unmapped) opens without its wipe.
    m_tmrScreenWait.start();
    return opening;
}

void FormDriver::reachedScreen(bool exposed)
{
    if (m_screenWait)
        m_screenWait->removeEventFilter(this);
    m_screenWait = nullptr;
    m_tmrScreenWait.stop();
    if (exposed)
        applyPlacedFrame();
    if (m_openPending) {
        m_openPending = false;
        finishSetUpAndCatchUp(exposed);
    }
}

void FormDriver::applyPlacedFrame()
{
    QWidget *window = m_hostForm ? m_hostForm->window() : nullptr;
    const QRect placed = m_placedFrame;
    m_placedFrame = QRect();
    if (!window || !placed.isValid())
        return;
    // A maximised window keeps the normal rectangle it has: changing it now
    // would race the window manager's own maximising. It is given its frame
    // when it is restored.
    if (window->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) {
        if (window->isWindow())
            m_restoreFrame = placed;
        return;
    }
    // From now on windows are placed with this frame before they show; one
    // given its frame in advance is where it was meant to be.
    qt::QtForm::noteDecoration(window);
    const QRect frame = window->frameGeometry(), inner = window->geometry();
    if (frame == inner || frame == placed)
        return;
    const QMargins decoration(inner.left() - frame.left(), inner.top() - frame.top(),
                              frame.right() - inner.right(), frame.bottom() - inner.bottom());
    window->setGeometry(placed - decoration);
}

void FormDriver::finishSetUpAndCatchUp(bool playOpening)
{
    const auto alive = hold();
    finishSetUp(playOpening);
    // What resized the form meanwhile: the driver's usual answer to it.
    if (m_engine.FormReady && m_passPending) {
        m_passPending = false;
        FormResized();
    }
}

void FormDriver::finishSetUp(bool playOpening)
{
    if (!m_hostForm)
        return;
    m_hostForm->setBeforeScreen(false);
    if (playOpening)
        playEffect(true);
    else if (QWidget *window = m_hostForm->window())
        showWhole(window);
    if (!m_hostForm)
        return;
    m_engine.FormReady = true;
    SettingUp = false;
    rememberNormalRect(); // and from now on whenever the window moves or resizes
}

void FormDriver::delayedResize()
{
    const auto alive = hold();
    m_tmrDelayResize.stop();
    if (!collapsed() && ScaleControls)
        runPass();
}

QString FormDriver::windowName()
{
    // Taken from the title once, and kept: a later title does not move it.
    if (WindowName.isEmpty() && m_hostForm)
        WindowName = QString::fromStdString(getText(*m_hostForm, "Caption").value_or(std::string()));
    return WindowName;
}

void FormDriver::applyLimits()
{
    qt::QtForm &f = *m_hostForm;
    const auto correct = [&](const char *dimension, int limit) {
        if (QWidget *window = f.window())
            window->setEnabled(false);
        m_tmrDisableResize.start();
        f.set(dimension, float(limit));
        if (beep)
            beep();
    };
    const auto check = [&](const char *dimension, int minimum, int maximum) {
        if (minimum > maximum) // a minimum alone is not enforced
            return;
        if (const auto now = getSingle(f, dimension); now && minimum >= 1 && *now < minimum)
            correct(dimension, minimum);
        if (const auto now = getSingle(f, dimension); now && maximum >= 1 && *now > maximum)
            correct(dimension, maximum);
    };
    check("Width", MinWidth, MaxWidth);
    check("Height", MinHeight, MaxHeight);
}

void FormDriver::rememberNormalRect()
{
    if (!m_hostForm || !TrackWindowRect || getLong(*m_hostForm, "WindowState").value_or(-1) != 0)
        return;
    if (m_window) // a maximised window's frame may differ
        qt::QtForm::noteDecoration(m_window);
    qt::QtForm &f = *m_hostForm;
    const auto l = getSingle(f, "Left"), t = getSingle(f, "Top"), w = getSingle(f, "Width"), h = getSingle(f, "Height");
    if (l && t && w && h)
        SavedWindowRect = QRectF(*l, *t, *w, *h);
}

void FormDriver::SaveWindowSettings()
{
    // A window in its normal state is saved as it is now (Qt may have put
    // a new window's frame around it without telling it it moved).
    rememberNormalRect();
    const QString name = windowName();
    const int state = m_hostForm ? int(getLong(*m_hostForm, "WindowState").value_or(0)) : 0;
    WindowSettings::save(name, {SavedWindowRect, state});
}

void FormDriver::LoadWindowSettings()
{
    LoadingWindowSettings = true;
    const auto loaded = WindowSettings::load(windowName());
    if (!loaded || !m_hostForm) {
        WindowSettingsLoaded = LoadingWindowSettings = false;
        return;
    }
    SavedWindowRect = loaded->rect;
    qt::QtForm &f = *m_hostForm;
    f.set("WindowState", 0);
    f.set("Left", float(loaded->rect.left()));
    f.set("Top", float(loaded->rect.top()));
    f.set("Width", float(loaded->rect.width()));
    f.set("Height", float(loaded->rect.height()));
    if (KeepOnScreen)
        bringOnScreen();
    // Qt keeps a state given to a hidden window for when it shows: no need
    // to show it for a moment first.
    f.set("WindowState", loaded->windowState);
    // Used once: the next unload writes it again.
    WindowSettings::remove(windowName());
    WindowSettingsLoaded = true;
    LoadingWindowSettings = false;
}

void FormDriver::bringOnScreen()
{
    QWidget *window = m_hostForm ? m_hostForm->window() : nullptr;
    if (!window || !window->isWindow())
        return; // an MDI child stays within its area by itself
    const QRect frame = m_hostForm->frameOf(window);
    const QList<QScreen *> screens = QGuiApplication::screens();
    QScreen *nearest = nullptr;
    qint64 best = -1;
    for (QScreen *screen : screens) {
        const QRect area = screen->availableGeometry();
        if (area.intersects(frame))
            return; // the user can reach it
        const QPoint d = area.center() - frame.center();
        const qint64 distance = qint64(d.x()) * d.x() + qint64(d.y()) * d.y();
        if (!nearest || distance < best) {
            nearest = screen;
            best = distance;
        }
    }
    if (!nearest)
        return;
    const QRect area = nearest->availableGeometry();
    const QSize decoration = frame.size() - window->size();
    const QSize size = frame.size().boundedTo(area.size());
    window->resize((size - decoration).expandedTo(QSize(1, 1)));
    QRect placed(frame.topLeft(), size);
    placed.moveLeft(qBound(area.left(), placed.left(), area.right() - size.width() + 1));
    placed.moveTop(qBound(area.top(), placed.top(), area.bottom() - size.height() + 1));
    m_hostForm->moveFrameTo(window, placed.topLeft());
    rememberNormalRect();
}

void FormDriver::playEffect(bool opening)
{
    QPointer<QWidget> window = m_hostForm ? m_hostForm->window() : nullptr;
    const int kind = opening ? FormOpen : FormClose;
    if (!window)
        return;
    if (minimised() || kind == 0) {
        if (opening && kind != 0)
            showWhole(window); // it will not wipe in
        return;
    }
    const QRect frame = window->frameGeometry();
    // Regions count from the frame's corner; a widget's mask from its own.
    const QPoint inset = window->geometry().topLeft() - frame.topLeft();
    const WipeEffect wipe(opening, kind, frame, opening ? FormOpenTime : FormCloseTime);
    wipe.play(
        [&](const QRect &r) {
            if (window)
                window->setMask(r.isEmpty() ? QRegion(-2, -2, 1, 1) : QRegion(r.translated(-inset)));
        },
        [&] {
            QCoreApplication::processEvents();
            // Deleted or hidden meanwhile: the wipe ends with its window.
            return window && window->isVisible();
        });
    if (!window)
        return;
    if (opening)
        showWhole(window);
    WindowPlacement::applyStayOnTop(m_hostForm.get(), placement.StayOnTop);
}

void FormDriver::componentGoing(bool withTheForm)
{
    // Taken down with a form that was never closed (deleted by its owner):
    // the form unloads all the same, too late for a wipe.
    if (!withTheForm || !Loaded || m_unloaded || !m_window)
        return;
    m_unloaded = true;
    if (SaveWindowState)
        SaveWindowSettings();
    SizeLimitHooks::unhookWindow(m_window);
}

void FormDriver::FormUnloading()
{
    m_unloaded = true;
    if (SaveWindowState && Loaded)
        SaveWindowSettings();
    playEffect(false);
    if (m_hostForm)
        SizeLimitHooks::unhookWindow(m_hostForm->window()); // in case one is left
}

void FormDriver::drawGradient()
{
    if (!m_hostForm || !m_form || m_hostForm->isKind(HostKind::MDIForm))
        return;
    qt::QtForm &form = *m_hostForm;
    const auto width = getSingle(form, "Width"), height = getSingle(form, "Height");
    if (!width || !height)
        return;
    const GradientBands bands(*width, *height, GradientChannels::fromColour(GradientColour));
    form.setPicture(bands.paint(m_form->size()));
}

void FormDriver::Reset()
{
    if (!m_hostForm)
        return;
    // The records a running pass walks must outlive it; and a minimised or
    // collapsed form has no layout worth taking.
    if (m_passRunning || collapsed()) {
        m_resetPending = true;
        return;
    }
    const auto alive = hold();
    // The layout to take is the one the form shows at its present size: a
    // pass still waiting for its turn (the form was resized by the last one)
    // runs first.
    if (m_passPosted && m_engine.Initialised && m_engine.FormReady && ScaleControls) {
        m_passPosted = false;
        runPass();
        if (!m_hostForm)
            return;
    }
    m_engine.Initialised = false;
    // The reference is in twips, whatever units the form uses.
    auto &form = *m_hostForm;
    m_engine.RefScaleWidth = ResizeEngine::twipsWidth(form, getSingle(form, "ScaleWidth").value_or(0)).value_or(0);
    m_engine.RefScaleHeight = ResizeEngine::twipsHeight(form, getSingle(form, "ScaleHeight").value_or(0)).value_or(0);
    FormResized();
}

} // namespace velmora
