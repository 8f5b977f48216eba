#include "control/VelmoraControl.h"

#include "control/VelmoraControl_p.h"
#include "control/FormClaims.h"
#include "qt/QtForm.h"
#include "qt/QtPicture.h"
#include "qt/QtUnits.h"

#include <QDynamicPropertyChangeEvent>
#include <QEvent>
#include <QMainWindow>
#include <QTabWidget>
#include <QToolBox>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QMdiArea>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPainter>

#include <cmath>

using velmora::HostObjectPtr;
using velmora::qt::QtPicture;

namespace {

// The classic automation numbers for what a host access can fail with.
VelmoraError errorObject(const velmora::HostError &error)
{
    using velmora::HostErrc;
    VelmoraError e;
    switch (error.code) {
    case HostErrc::NoSuchMember: e.Number = 438; break;
    case HostErrc::ReadOnly: e.Number = 383; break;
    case HostErrc::InvalidValue: e.Number = 380; break;
    case HostErrc::IndexOutOfRange: e.Number = 9; break;
    case HostErrc::NotAnObject: e.Number = 424; break;
    case HostErrc::Arithmetic: e.Number = 6; break;
    case HostErrc::Failed: e.Number = 5; break;
    }
    e.Description = QString::fromStdString(error.message());
    e.Source = QStringLiteral("Velmora");
    return e;
}

} // namespace

void VelmoraControlPrivate::changed(const char *name)
{
    // A slot of the first signal may delete the control, and with it the
    // last hold on these internals but this one.
    const auto self = shared_from_this();
    if (q)
        Q_EMIT q->PropertyChanged(QString::fromLatin1(name));
    if (q)
        Q_EMIT q->settingsChanged();
}

VelmoraControlPrivate::VelmoraControlPrivate(VelmoraControl *owner)
    : q(owner)
{
    // The application's handlers see the fonts the pass has given so far.
    const auto flushFonts = [this] {
        if (const auto &form = driver.hostForm())
            form->flushFonts();
    };
    engine.events.resizeStarted = [this, flushFonts] {
        flushFonts();
        if (q)
            Q_EMIT q->ResizeStarted();
    };
    engine.events.resizeDone = [this, flushFonts] {
        flushFonts();
        if (q)
            Q_EMIT q->ResizeDone();
    };
    engine.events.error = [this, flushFonts](const std::string &description, const velmora::HostError &error) {
        flushFonts();
        if (q)
            Q_EMIT q->Error(QString::fromStdString(description), errorObject(error));
    };
    host.beforeProcessingEvents = flushFonts;
    engine.events.warning = [](const std::string &text) { qWarning("Velmora: %s", text.c_str()); };
    driver.keepAlive = [this]() -> std::shared_ptr<void> { return shared_from_this(); };
    QObject::connect(&printing, &velmora::PrintSizing::printCancelled, q, [this] {
        if (q)
            Q_EMIT q->PrintCancelled();
    });
    QObject::connect(&printing, &velmora::PrintSizing::scaleModeError, q, [this](const velmora::HostError &error) {
        if (q)
            Q_EMIT q->Error(QStringLiteral("Error in ScaleMode"), errorObject(error));
    });
    QObject::connect(&driver, &velmora::FormDriver::trappedError, q, [owner](const QString &text) {
        VelmoraControl::trappedErrorHandler()(owner->window(), text);
    });
}

namespace {

void showTrappedError(QWidget *window, const QString &text)
{
    // OK only, under the application's own name.
    QMessageBox box(QMessageBox::Critical, QGuiApplication::applicationDisplayName(), text, QMessageBox::Ok, window);
    box.exec();
}

VelmoraControl::TrappedErrorHandler &handlerSlot()
{
    static VelmoraControl::TrappedErrorHandler handler = showTrappedError;
    return handler;
}

} // namespace

VelmoraControl::TrappedErrorHandler VelmoraControl::trappedErrorHandler()
{
    return handlerSlot();
}

VelmoraControl::TrappedErrorHandler VelmoraControl::setTrappedErrorHandler(TrappedErrorHandler handler)
{
    TrappedErrorHandler previous = handlerSlot();
    handlerSlot() = handler ? std::move(handler) : TrappedErrorHandler(showTrappedError);
    return previous;
}

namespace {

// The container whose page `page` is, when that container is a form's top
// widget (a window of its own, or a main window's central widget).
QWidget *pageHolder(QWidget *page)
{
    QWidget *up = page && !page->isWindow() ? page->parentWidget() : nullptr;
    QWidget *holder = nullptr;
    // (Asked while the page moves in: the tab widget or tool box may not
    // count it among its pages yet.)
    if (auto *stack = qobject_cast<QStackedWidget *>(up)) {
        auto *tabs = qobject_cast<QTabWidget *>(stack->parentWidget());
        holder = tabs ? static_cast<QWidget *>(tabs) : stack;
    } else if (qobject_cast<QSplitter *>(up)) {
        holder = up;
    } else if (auto *area = up ? qobject_cast<QScrollArea *>(up->parentWidget()) : nullptr;
               area && area->viewport() == up) {
        auto *box = qobject_cast<QToolBox *>(area->parentWidget());
        holder = box ? static_cast<QWidget *>(box) : area;
    }
    if (!holder)
        return nullptr;
    if (holder->isWindow())
        return holder;
    auto *main = qobject_cast<QMainWindow *>(holder->parentWidget());
    return main && main->centralWidget() == holder ? holder : nullptr;
}

} // namespace

QWidget *VelmoraControlPrivate::formFor(QWidget *parent)
{
    // On an MDI area (or its viewport) that is a main window's centre: the
    // main window is an MDI parent form.
    if (parent && !qobject_cast<QMdiArea *>(parent))
        if (auto *area = qobject_cast<QMdiArea *>(parent->parentWidget()); area && area->viewport() == parent)
            parent = area;
    if (auto *area = qobject_cast<QMdiArea *>(parent))
        if (auto *main = qobject_cast<QMainWindow *>(area->parentWidget()); main && main->centralWidget() == area)
            return main;
    // On a page of a form that is itself a tab widget, stacked widget,
    // tool box, scroll area or splitter: that is the form.
    if (QWidget *holder = pageHolder(parent))
        return holder;
    // Placed on a main window itself rather than on its central widget.
    if (auto *main = qobject_cast<QMainWindow *>(parent)) {
        if (velmora::qt::QtForm::mdiAreaOf(main))
            return main;
        return main->centralWidget() ? main->centralWidget() : main;
    }
    return parent;
}

namespace {

// Rebinds when the main window the component sits on is shown (by then it
// is assembled) or when its children change (a central widget set or
// replaced; asked for from the event loop, once the window has taken it),
// and when the widget it sits on moves (a page uic makes on its own and
// then gives to the tab widget that is the form).
class ParentWatch : public QObject {
public:
    ParentWatch(QWidget *parent, VelmoraControlPrivate *d)
        : QObject(parent)
        , m_d(d->weak_from_this())
        , m_main(qobject_cast<QMainWindow *>(parent))
    {
        parent->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Show:
            if (m_main)
                rebind();
            break;
        case QEvent::ParentChange:
            // At once: the form may be shown before the event loop runs.
            if (!m_main)
                rebind();
            break;
        case QEvent::ChildAdded:
        case QEvent::ChildRemoved:
            if (m_main && !m_queued) {
                m_queued = true;
                QMetaObject::invokeMethod(this, [this] {
                    m_queued = false;
                    rebind();
                }, Qt::QueuedConnection);
            }
            break;
        default:
            break;
        }
        return false;
    }

private:
    void rebind()
    {
        if (auto d = m_d.lock(); d && d->q)
            d->rebind();
    }

    std::weak_ptr<VelmoraControlPrivate> m_d;
    bool m_main;
    bool m_queued = false;
};

} // namespace

void VelmoraControlPrivate::rebind()
{
    // At design time the form is being edited, not used: nothing is hooked.
    QWidget *form = designTime || !q ? nullptr : formFor(q->parentWidget());
    driver.bind(velmora::FormClaims::claim(this, form));
}

void VelmoraControlPrivate::watchParent()
{
    QWidget *parent = q->parentWidget();
    if (parentWatch && parentWatch->parent() == parent)
        return;
    delete parentWatch.data();
    if (parent)
        parentWatch = new ParentWatch(parent, this);
}

HostObjectPtr VelmoraControlPrivate::hostFor(QWidget *w) const
{
    const auto &form = driver.hostForm();
    if (!form || !w)
        return nullptr;
    if (form->isFormWidget(w))
        return form;
    return form->adapterFor(w);
}

QPixmap VelmoraControlPrivate::pixmapOf(const HostObjectPtr &picture) const
{
    QPixmap pm;
    QtPicture::fromValue(velmora::Value(picture), pm);
    return pm;
}

VelmoraControl::VelmoraControl(QWidget *parent)
    : QWidget(parent)
    , d(std::make_shared<VelmoraControlPrivate>(this))
{
    setObjectName(QStringLiteral("VelmoraControl"));
    setFixedSize(32, 32);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QWidget::setVisible(false);
    d->rebind();
    d->watchParent();
}

VelmoraControl::~VelmoraControl()
{
    // A pass on the stack (this deletion came from one of its signals or
    // events) holds its own reference to d and stops at its next step.
    d->q = nullptr;
    // A parent deleting its children has already let go of the one it is
    // deleting: then the form is going too, not just the component.
    d->driver.componentGoing(parent() && !parent()->children().contains(this));
    delete d->parentWatch.data();
    velmora::FormClaims::release(d.get());
    d->driver.bind(nullptr);
}

bool VelmoraControl::event(QEvent *event)
{
    if (event->type() == QEvent::ParentChange) {
        d->rebind();
        d->watchParent();
    }
    // A form loaded from a .ui gives the per-control options as dynamic
    // properties.
    if (event->type() == QEvent::DynamicPropertyChange)
        d->dynamicPropertyChanged(static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName());
    return QWidget::event(event);
}

void VelmoraControl::setVisible(bool visible)
{
    // Nothing to show at run time; in a form editor, its icon.
    QWidget::setVisible(visible && d->designTime);
}

void VelmoraControl::paintEvent(QPaintEvent *)
{
    if (!d->designTime)
        return;
    QPainter p(this);
    VelmoraControlPrivate::paintIcon(p, QRectF(rect()));
}

void VelmoraControlPrivate::paintIcon(QPainter &p, const QRectF &bounds)
{
    // The component's icon: a form whose corner handle points outwards.
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    const qreal pen = bounds.height() >= 24 ? 2 : 1;
    const QRectF r = bounds.adjusted(pen * 0.75, pen * 0.75, -pen * 0.75, -pen * 0.75);
    p.setPen(QPen(QColor(0x1d, 0x4e, 0x89), pen));
    p.setBrush(QColor(0xe8, 0xf0, 0xfa));
    p.drawRoundedRect(r, r.height() / 8, r.height() / 8);
    QFont f = p.font();
    f.setBold(true);
    f.setPixelSize(qMax(6, int(bounds.height() * 0.55)));
    p.setFont(f);
    p.drawText(r, Qt::AlignCenter, QStringLiteral("V"));
    p.setPen(QPen(QColor(0xd9, 0x6c, 0x00), pen));
    const qreal step = r.height() / 10, e = r.right() - step, b = r.bottom() - step;
    p.drawLine(QPointF(e - 2 * step, b), QPointF(e, b));
    p.drawLine(QPointF(e, b - 2 * step), QPointF(e, b));
    p.restore();
}

QWidget *VelmoraControlPrivate::listedForm() const
{
    if (editedForm)
        return editedForm;
    return formFor(q->parentWidget());
}

bool VelmoraControl::isDesignTime() const { return d->designTime; }

void VelmoraControl::setDesignTime(bool on)
{
    if (d->designTime == on)
        return;
    d->designTime = on;
    // Shown as an icon where the form is edited, hidden where it runs.
    if (!on)
        QWidget::setVisible(false);
    else if (parentWidget()) // never a window of its own
        QWidget::setVisible(true);
    setAttribute(Qt::WA_TransparentForMouseEvents, !on);
    update();
    d->rebind();
}

bool VelmoraControl::ScaleControls() const { return d->driver.ScaleControls; }
void VelmoraControl::setScaleControls(bool on)
{
    // A pass may run, and one of its slots delete this control: what follows
    // it uses only the internals, which outlive the call.
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.ScaleControls != on;
    d->driver.ScaleControls = on;
    if (d->engine.FormReady)
        d->driver.FormResized();
    if (differs)
        d->changed("ScaleControls");
}
bool VelmoraControl::ScaleFonts() const { return d->engine.ScaleFonts; }
void VelmoraControl::setScaleFonts(bool on)
{
    const auto before = ScaleFonts();
    d->engine.ScaleFonts = on;
    if (ScaleFonts() != before)
        d->changed("ScaleFonts");
}
bool VelmoraControl::ScaleBorders() const { return d->engine.ScaleBorders; }
void VelmoraControl::setScaleBorders(bool on)
{
    const auto before = ScaleBorders();
    d->engine.ScaleBorders = on;
    if (ScaleBorders() != before)
        d->changed("ScaleBorders");
}
bool VelmoraControl::ScaleGraphics() const { return d->engine.ScaleGraphics; }
void VelmoraControl::setScaleGraphics(bool on)
{
    const auto before = ScaleGraphics();
    d->engine.ScaleGraphics = on;
    if (ScaleGraphics() != before)
        d->changed("ScaleGraphics");
}
bool VelmoraControl::ResizeOnMouseUp() const { return d->driver.ResizeOnMouseUp; }
void VelmoraControl::setResizeOnMouseUp(bool on)
{
    const auto before = ResizeOnMouseUp();
    d->driver.ResizeOnMouseUp = on;
    if (ResizeOnMouseUp() != before)
        d->changed("ResizeOnMouseUp");
}
bool VelmoraControl::GradientFill() const { return d->engine.GradientFill; }

void VelmoraControl::setGradientFill(bool on)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->engine.GradientFill != on;
    d->engine.GradientFill = on;
    if (on)
        d->driver.drawGradient();
    else if (const auto &form = d->driver.hostForm())
        form->call("Cls", {}); // the painted background, whatever else was drawn into it
    if (differs)
        d->changed("GradientFill");
}

int VelmoraControl::GradientColour() const { return int(d->driver.GradientColour); }

void VelmoraControl::setGradientColour(int colour)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.GradientColour != std::uint32_t(colour);
    d->driver.GradientColour = std::uint32_t(colour);
    if (d->engine.GradientFill)
        d->driver.drawGradient();
    if (differs)
        d->changed("GradientColour");
}

namespace {

// An enumeration setting takes the constants of its enumeration only.
bool acceptsEffect(const char *property, int value)
{
    if (velmora::settings::isEffectValue(property, value))
        return true;
    qWarning("VelmoraControl::set%s: %d names no constant of its enumeration; nothing changed", property, value);
    return false;
}

// An effect lasts 0 to 10 s, held to the millisecond; a time that is no
// number of seconds at all is refused.
bool effectTime(const char *property, double &seconds)
{
    if (!std::isfinite(seconds)) {
        qWarning("VelmoraControl::set%s: %g is no duration; nothing changed", property, seconds);
        return false;
    }
    const double held = velmora::settings::effectSeconds(seconds);
    if (seconds < 0 || seconds > velmora::settings::MaxEffectSeconds)
        qWarning("VelmoraControl::set%s: %g s is outside 0 to %g s; %g s is used", property, seconds,
                 velmora::settings::MaxEffectSeconds, held);
    seconds = held;
    return true;
}

// Below 1 is no limit; a ready form applies a new one at once.
void setLimit(VelmoraControlPrivate &d, int velmora::FormDriver::*field, int twips)
{
    d.driver.*field = velmora::settings::sizeLimit(twips);
    if (d.engine.FormReady)
        d.driver.FormResized();
}

} // namespace

namespace {

// The placement routines act on a form held at run time.
template <typename Apply>
void place(VelmoraControlPrivate &d, Apply apply)
{
    if (const auto &form = d.driver.hostForm(); form && d.driver.Loaded)
        apply(*form);
}

} // namespace

VelmoraControl::FormOpenEffects VelmoraControl::FormOpen() const { return FormOpenEffects(d->driver.FormOpen); }
void VelmoraControl::setFormOpen(FormOpenEffects effect)
{
    if (!acceptsEffect("FormOpen", int(effect)))
        return;
    const auto before = FormOpen();
    d->driver.FormOpen = effect;
    if (FormOpen() != before)
        d->changed("FormOpen");
}
double VelmoraControl::FormOpenTime() const { return d->driver.FormOpenTime; }
void VelmoraControl::setFormOpenTime(double seconds)
{
    if (!effectTime("FormOpenTime", seconds))
        return;
    const auto before = FormOpenTime();
    d->driver.FormOpenTime = seconds;
    if (FormOpenTime() != before)
        d->changed("FormOpenTime");
}
VelmoraControl::FormCloseEffects VelmoraControl::FormClose() const { return FormCloseEffects(d->driver.FormClose); }
void VelmoraControl::setFormClose(FormCloseEffects effect)
{
    if (!acceptsEffect("FormClose", int(effect)))
        return;
    const auto before = FormClose();
    d->driver.FormClose = effect;
    if (FormClose() != before)
        d->changed("FormClose");
}
double VelmoraControl::FormCloseTime() const { return d->driver.FormCloseTime; }
void VelmoraControl::setFormCloseTime(double seconds)
{
    if (!effectTime("FormCloseTime", seconds))
        return;
    const auto before = FormCloseTime();
    d->driver.FormCloseTime = seconds;
    if (FormCloseTime() != before)
        d->changed("FormCloseTime");
}

bool VelmoraControl::CenterX() const { return d->driver.placement.CenterX; }
void VelmoraControl::setCenterX(bool on)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.placement.CenterX != on;
    d->driver.placement.CenterX = on;
    place(*d, [&](velmora::qt::QtForm &f) { d->driver.placement.applyCenterX(f); });
    if (differs)
        d->changed("CenterX");
}
bool VelmoraControl::CenterY() const { return d->driver.placement.CenterY; }
void VelmoraControl::setCenterY(bool on)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.placement.CenterY != on;
    d->driver.placement.CenterY = on;
    place(*d, [&](velmora::qt::QtForm &f) { d->driver.placement.applyCenterY(f); });
    if (differs)
        d->changed("CenterY");
}
int VelmoraControl::ScaleX() const { return d->driver.placement.ScaleX; }
void VelmoraControl::setScaleX(int percent)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const int held = velmora::WindowPlacement::clampPercent(percent);
    const bool differs = d->driver.placement.ScaleX != held;
    d->driver.placement.ScaleX = held;
    if (held != percent)
        qWarning("VelmoraControl::setScaleX: %d is no percentage (0 to 100); %d is used", percent, held);
    place(*d, [&](velmora::qt::QtForm &f) {
        d->driver.placement.applyInitialSize(f);
        d->driver.placement.applyCenterX(f);
    });
    if (differs)
        d->changed("ScaleX");
}
int VelmoraControl::ScaleY() const { return d->driver.placement.ScaleY; }
void VelmoraControl::setScaleY(int percent)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const int held = velmora::WindowPlacement::clampPercent(percent);
    const bool differs = d->driver.placement.ScaleY != held;
    d->driver.placement.ScaleY = held;
    if (held != percent)
        qWarning("VelmoraControl::setScaleY: %d is no percentage (0 to 100); %d is used", percent, held);
    place(*d, [&](velmora::qt::QtForm &f) {
        d->driver.placement.applyInitialSize(f);
        d->driver.placement.applyCenterY(f);
    });
    if (differs)
        d->changed("ScaleY");
}
bool VelmoraControl::StayOnTop() const { return d->driver.placement.StayOnTop; }
void VelmoraControl::setStayOnTop(bool on)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.placement.StayOnTop != on;
    d->driver.placement.StayOnTop = on;
    if (d->designTime) {
        // At design time too, on the window being designed; a form edited
        // inside an editor's window (Qt Designer's) has none of its own,
        // and the editor's window is not the form's to put on top.
        QWidget *form = VelmoraControlPrivate::formFor(parentWidget());
        QWidget *window = velmora::qt::QtForm::windowOf(form);
        if (form && (window == form || window == form->parentWidget()))
            velmora::WindowPlacement::applyStayOnTop(window, on);
    } else if (!velmora::WindowPlacement::applyStayOnTop(d->driver.hostForm().get(), on)) {
        qWarning("VelmoraControl: StayOnTop: Type mismatch: an MDI parent form is not a plain form");
    }
    // Told once it has acted: a slot of the notice may delete the control.
    if (differs)
        d->changed("StayOnTop");
}
int VelmoraControl::MdiChildWidth() const { return d->driver.placement.MdiChildWidth; }
void VelmoraControl::setMdiChildWidth(int twips)
{
    const auto before = MdiChildWidth();
    d->driver.placement.MdiChildWidth = twips;
    if (MdiChildWidth() != before)
        d->changed("MdiChildWidth");
}
int VelmoraControl::MdiChildHeight() const { return d->driver.placement.MdiChildHeight; }
void VelmoraControl::setMdiChildHeight(int twips)
{
    const auto before = MdiChildHeight();
    d->driver.placement.MdiChildHeight = twips;
    if (MdiChildHeight() != before)
        d->changed("MdiChildHeight");
}

int VelmoraControl::MinWidth() const { return d->driver.MinWidth; }
void VelmoraControl::setMinWidth(int twips)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.MinWidth != velmora::settings::sizeLimit(twips);
    setLimit(*d, &velmora::FormDriver::MinWidth, twips);
    if (differs)
        d->changed("MinWidth");
}
int VelmoraControl::MinHeight() const { return d->driver.MinHeight; }
void VelmoraControl::setMinHeight(int twips)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.MinHeight != velmora::settings::sizeLimit(twips);
    setLimit(*d, &velmora::FormDriver::MinHeight, twips);
    if (differs)
        d->changed("MinHeight");
}
int VelmoraControl::MaxWidth() const { return d->driver.MaxWidth; }
void VelmoraControl::setMaxWidth(int twips)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.MaxWidth != velmora::settings::sizeLimit(twips);
    setLimit(*d, &velmora::FormDriver::MaxWidth, twips);
    if (differs)
        d->changed("MaxWidth");
}
int VelmoraControl::MaxHeight() const { return d->driver.MaxHeight; }
void VelmoraControl::setMaxHeight(int twips)
{
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const bool differs = d->driver.MaxHeight != velmora::settings::sizeLimit(twips);
    setLimit(*d, &velmora::FormDriver::MaxHeight, twips);
    if (differs)
        d->changed("MaxHeight");
}

bool VelmoraControl::SaveWindowState() const { return d->driver.SaveWindowState; }
void VelmoraControl::setSaveWindowState(bool on)
{
    const auto before = SaveWindowState();
    d->driver.SaveWindowState = on;
    if (SaveWindowState() != before)
        d->changed("SaveWindowState");
}
QString VelmoraControl::WindowName() const { return d->driver.WindowName; }
void VelmoraControl::setWindowName(const QString &name)
{
    const auto before = WindowName();
    d->driver.WindowName = name;
    if (WindowName() != before)
        d->changed("WindowName");
}
bool VelmoraControl::KeepOnScreen() const { return d->driver.KeepOnScreen; }
void VelmoraControl::setKeepOnScreen(bool on)
{
    const auto before = KeepOnScreen();
    d->driver.KeepOnScreen = on;
    if (KeepOnScreen() != before)
        d->changed("KeepOnScreen");
}
void VelmoraControl::SaveWindowSettings() { d->driver.SaveWindowSettings(); }
void VelmoraControl::LoadWindowSettings() { d->driver.LoadWindowSettings(); }

QString VelmoraControl::ReplaceFontsWith() const { return d->driver.ReplaceFontsWith; }
void VelmoraControl::setReplaceFontsWith(const QString &family)
{
    const auto before = ReplaceFontsWith();
    d->driver.ReplaceFontsWith = family;
    if (ReplaceFontsWith() != before)
        d->changed("ReplaceFontsWith");
}

VelmoraControl::FormPictureEffects VelmoraControl::FormPicture() const
{
    return static_cast<FormPictureEffects>(d->engine.FormPicture);
}

void VelmoraControl::setFormPicture(FormPictureEffects mode)
{
    if (!acceptsEffect("FormPicture", int(mode)))
        return;
    const auto before = FormPicture();
    d->engine.FormPicture = mode;
    if (FormPicture() != before)
        d->changed("FormPicture");
}

double VelmoraControl::DesignFormWidth() const
{
    const auto live = d->measuredDesignSizes();
    return live ? (*live)[0] : d->engine.DesignFormWidth;
}
void VelmoraControl::setDesignFormWidth(double v)
{
    d->engine.DesignFormWidth = static_cast<float>(v);
    d->driver.DesignSizeGiven = true;
}
double VelmoraControl::DesignFormHeight() const
{
    const auto live = d->measuredDesignSizes();
    return live ? (*live)[1] : d->engine.DesignFormHeight;
}
void VelmoraControl::setDesignFormHeight(double v)
{
    d->engine.DesignFormHeight = static_cast<float>(v);
    d->driver.DesignSizeGiven = true;
}
double VelmoraControl::DesignFormScaleWidth() const
{
    const auto live = d->measuredDesignSizes();
    return live ? (*live)[2] : d->engine.DesignFormScaleWidth;
}
void VelmoraControl::setDesignFormScaleWidth(double v)
{
    d->engine.DesignFormScaleWidth = static_cast<float>(v);
    d->driver.DesignSizeGiven = true;
}
double VelmoraControl::DesignFormScaleHeight() const
{
    const auto live = d->measuredDesignSizes();
    return live ? (*live)[3] : d->engine.DesignFormScaleHeight;
}
void VelmoraControl::setDesignFormScaleHeight(double v)
{
    d->engine.DesignFormScaleHeight = static_cast<float>(v);
    d->driver.DesignSizeGiven = true;
}

QWidget *VelmoraControl::form() const
{
    return d->driver.form();
}

bool VelmoraControl::isFormReady() const
{
    return d->engine.FormReady;
}

void VelmoraControl::Reset()
{
    d->driver.Reset();
}

QString VelmoraControl::version()
{
    return QStringLiteral(VELMORA_VERSION);
}

void VelmoraControl::ShowAboutBox()
{
    // Not modal to the application: it stays until the user closes it.
    auto *box = new QMessageBox(QMessageBox::Information, QStringLiteral("About Velmora"),
                                QStringLiteral("Velmora %1\n\nScales the controls of an absolutely positioned Qt "
                                               "form with the form.")
                                    .arg(version()),
                                QMessageBox::Ok, window());
    box->setObjectName(QStringLiteral("VelmoraAboutBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::NonModal);
    box->show();
}

int VelmoraControl::PrintSize(bool Enabled, double PrintWidth, double PrintHeight, int ScaleMode, bool Hide,
                              bool ShowDialog, bool AllowCancel)
{
    // Its pass, and a slot of its cancel, may delete this control.
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    if (d->designTime)
        return 0;
    return d->printing.PrintSize(Enabled, PrintWidth, PrintHeight, ScaleMode, Hide, ShowDialog, AllowCancel);
}

QPixmap VelmoraControl::ScalePicture(const QPixmap &picture, double xScale, double yScale)
{
    return d->pixmapOf(d->engine.pictures().ScalePicture(QtPicture::make(picture), xScale, yScale));
}

QPixmap VelmoraControl::SizePicture(const QPixmap &picture, int xSize, int ySize)
{
    // Qt code thinks in pixels; the engine in twips.
    using namespace velmora::qt;
    const auto x = static_cast<int>(pixelsToUnits(xSize, ScaleTwips, Axis::X));
    const auto y = static_cast<int>(pixelsToUnits(ySize, ScaleTwips, Axis::Y));
    return d->pixmapOf(d->engine.pictures().SizePicture(QtPicture::make(picture), x, y));
}

QPixmap VelmoraControl::CenterPicture(QWidget *container, const QPixmap &picture)
{
    auto host = d->hostFor(container);
    if (!host)
        return QPixmap();
    return d->pixmapOf(d->engine.pictures().CenterPicture(*host, QtPicture::make(picture)));
}

QPixmap VelmoraControl::TilePicture(QWidget *container, const QPixmap &picture)
{
    auto host = d->hostFor(container);
    if (!host)
        return QPixmap();
    return d->pixmapOf(d->engine.pictures().TilePicture(*host, QtPicture::make(picture)));
}

void VelmoraControl::SaveControlInfo(QWidget *control)
{
    if (auto host = d->hostFor(control))
        d->engine.SaveControlInfo(*host);
}

void VelmoraControl::SaveControlFlags(QWidget *control)
{
    if (auto host = d->hostFor(control))
        d->engine.SaveControlFlags(host.get());
}

void VelmoraControl::AdjustPosition(QWidget *control)
{
    if (auto host = d->hostFor(control))
        d->engine.AdjustPosition(*host);
}
