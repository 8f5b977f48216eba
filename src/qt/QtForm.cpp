#include "qt/QtForm.h"

#include "layout/MemberNames.h"
#include "qt/QtFont.h"
#include "qt/QtPicture.h"
#include "qt/QtPictureBox.h"
#include "qt/QtUnits.h"
#include "widgets/ImageListBinding.h"

#include <QEvent>
#include <QIcon>
#include <QMainWindow>
#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QWindow>

namespace velmora::qt {

namespace {

QPixmap pictureFromProperty(const QVariant &v)
{
    switch (v.metaType().id()) {
    case QMetaType::QPixmap:
        return v.value<QPixmap>();
    case QMetaType::QImage:
        return QPixmap::fromImage(v.value<QImage>());
    case QMetaType::QIcon: {
        const QIcon icon = v.value<QIcon>();
        const auto sizes = icon.availableSizes();
        return sizes.isEmpty() ? QPixmap() : icon.pixmap(sizes.last());
    }
    case QMetaType::QString:
        return QPixmap(v.toString());
    default:
        return QPixmap();
    }
}

} // namespace

// Draws the form's picture at its top-left, over the background and under
// the children. On a plain form it paints first in the form's own paint
// event; an MDI area fills its viewport itself, so there it paints after.
class FormPictureLayer : public QObject {
public:
    FormPictureLayer(QWidget *form, QWidget *surface)
        : QObject(form)
        , m_surface(surface)
    {
        form->installEventFilter(this);
        if (surface != form)
            surface->installEventFilter(this);
    }

    QPixmap pixmap;
    QWidget *surface() const { return m_surface; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // The form's "Picture" property is its design picture, whenever it
        // is set.
        if (event->type() == QEvent::DynamicPropertyChange && watched == parent()
            && static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName() == "Picture") {
            pixmap = pictureFromProperty(watched->property("Picture"));
            if (m_surface)
                m_surface->update();
        }
        if (event->type() != QEvent::Paint || watched != m_surface || pixmap.isNull() || m_inPaint)
            return false;
        if (m_surface == parent()) {
            QPainter painter(m_surface);
            painter.drawPixmap(0, 0, pixmap);
            return false;
        }
        // Let the area paint its background, then draw on it.
        m_inPaint = true;
        QCoreApplication::sendEvent(m_surface, event);
        m_inPaint = false;
        if (m_surface) {
            QPainter painter(m_surface);
            painter.drawPixmap(0, 0, pixmap);
        }
        return true;
    }

private:
    QPointer<QWidget> m_surface;
    bool m_inPaint = false;
};

namespace {

const char *const ScaleModeProperty = "ScaleMode";

HostError typeMismatch()
{
    return hostError(HostErrc::InvalidValue, "Type mismatch");
}

} // namespace

std::shared_ptr<QtForm> QtForm::create(QWidget *form)
{
    return std::shared_ptr<QtForm>(new QtForm(form));
}

QMdiArea *QtForm::mdiAreaOf(const QWidget *w)
{
    auto *main = qobject_cast<const QMainWindow *>(w);
    return main ? qobject_cast<QMdiArea *>(main->centralWidget()) : nullptr;
}

QtForm::QtForm(QWidget *form)
    : m_form(form)
    , m_mdiArea(mdiAreaOf(form))
    , m_mdiParent(m_mdiArea != nullptr)
{
    if (form) {
        m_pictureLayer = new FormPictureLayer(form, m_mdiParent ? m_mdiArea->viewport() : form);
        m_pictureLayer->pixmap = pictureFromProperty(form->property("Picture"));
    }
}

QtForm::~QtForm()
{
    if (m_form && m_updatesOff)
        m_form->setUpdatesEnabled(true);
    delete m_pictureLayer.data();
}

QWidget *QtForm::windowOf(QWidget *form)
{
    if (!form)
        return nullptr;
    for (QWidget *w = form; w; w = w->parentWidget())
        if (qobject_cast<QMdiSubWindow *>(w))
            return w;
    return form->window();
}

namespace {
QMargins &learntDecoration()
{
    static QMargins margins;
    return margins;
}

bool framed(const QWidget *window)
{
    return window->frameGeometry() != window->geometry();
}
} // namespace

static QMargins actualDecoration(const QWidget *window)
{
    const QRect frame = window->frameGeometry(), inner = window->geometry();
    return QMargins(inner.left() - frame.left(), inner.top() - frame.top(), frame.right() - inner.right(),
                    frame.bottom() - inner.bottom());
}

QMargins QtForm::decorationOf(const QWidget *window) const
{
    if (!window || !window->isWindow())
        return QMargins();
    if (framed(window))
        return actualDecoration(window);
    return m_beforeScreen ? learntDecoration() : QMargins();
}

void QtForm::noteDecoration(const QWidget *window)
{
    if (!window || !window->isWindow() || !framed(window))
        return;
    // While the window manager reframes a window (maximising, restoring) its
    // frame and its inside can be read from different moments: only a frame
    // that looks like a frame is learnt.
    const QMargins m = actualDecoration(window);
    const auto plausible = [](int side) { return side >= 0 && side <= 64; };
    if (plausible(m.left()) && plausible(m.top()) && plausible(m.right()) && plausible(m.bottom()))
        learntDecoration() = m;
}

void QtForm::moveFrameTo(QWidget *window, const QPoint &topLeft) const
{
    const QMargins deco = decorationOf(window);
    window->move(framed(window) || !window->isWindow() ? topLeft : topLeft + QPoint(deco.left(), deco.top()));
}

int QtForm::scaleMode() const
{
    if (!m_form)
        return ScaleTwips;
    bool ok = false;
    const int mode = m_form->property(ScaleModeProperty).toInt(&ok);
    return ok && isValidScaleMode(mode) ? mode : ScaleTwips;
}

const QPixmap &QtForm::picture() const
{
    static const QPixmap none;
    return m_pictureLayer ? m_pictureLayer->pixmap : none;
}

void QtForm::setPicture(const QPixmap &pixmap)
{
    if (!m_pictureLayer || (pixmap.isNull() && m_pictureLayer->pixmap.isNull()))
        return;
    m_pictureLayer->pixmap = pixmap;
    if (QWidget *surface = m_pictureLayer->surface())
        surface->update();
}

void QtForm::beginPass()
{
    if (m_passDepth++ > 0)
        return;
    ++m_passSerial;
    m_formUnits = UnitScale::of(scaleMode());
    m_twipUnits = UnitScale::of(ScaleTwips);
}

void QtForm::endPass()
{
    if (m_passDepth == 0 || --m_passDepth > 0)
        return;
    flushFonts();
    resumeBindings();
    // Re-enabling updates schedules the one repaint of the whole pass.
    if (m_updatesOff) {
        m_updatesOff = false;
        if (m_form)
            m_form->setUpdatesEnabled(true);
    }
}

void QtForm::resumeBindings()
{
    std::vector<QPointer<QWidget>> suspended;
    suspended.swap(m_suspendedBindings);
    for (const QPointer<QWidget> &w : suspended)
        if (auto *binding = widgets::ImageListBinding::of(w); binding && binding->suspended())
            binding->resume();
}

void QtForm::holdUpdates()
{
    // A form the application froze itself stays frozen after the pass.
    if (m_form && m_form->updatesEnabled()) {
        m_form->setUpdatesEnabled(false);
        m_updatesOff = true;
    }
}

void QtForm::flushFonts()
{
    // Held back in the order of the walk, containers first.
    std::vector<std::shared_ptr<QtFont>> pending;
    pending.swap(m_pendingFonts);
    for (auto it = pending.rbegin(); it != pending.rend(); ++it)
        if (const auto font = (*it)->takePending()) {
            aboutToWrite();
            (*it)->applyNow(*font);
        }
}

const UnitScale &QtForm::formUnits()
{
    if (m_passDepth == 0)
        m_formUnits = UnitScale::of(scaleMode());
    return m_formUnits;
}

const UnitScale &QtForm::twipUnits()
{
    if (m_passDepth == 0)
        m_twipUnits = UnitScale::of(ScaleTwips);
    return m_twipUnits;
}

GetResult QtForm::get(std::string_view name)
{
    if (!m_form)
        return hostError(HostErrc::Failed, "The form is gone");
    QWidget *win = window();
    const QRect frame = win->geometry().marginsAdded(decorationOf(win));
    const int mode = scaleMode();
    if (name == member::Name) {
        auto *main = qobject_cast<QMainWindow *>(m_form->parentWidget());
        const bool central = main && main->centralWidget() == m_form;
        return Value((central ? main->objectName() : m_form->objectName()).toStdString());
    }
    if (m_mdiParent) {
        if (name == member::ScaleWidth || name == member::ScaleHeight || name == member::BackColor)
            return getMdiArea(name);
        if (name == member::ScaleMode || name == "MDIChild")
            return noSuchMember(name);
    }
    if (name == member::ScaleWidth)
        return Value(static_cast<float>(pixelsToUnits(m_form->width(), mode, Axis::X)));
    if (name == member::ScaleHeight)
        return Value(static_cast<float>(pixelsToUnits(m_form->height(), mode, Axis::Y)));
    if (name == member::ScaleMode)
        return Value(mode);
    if (name == member::Picture)
        return Value(QtPicture::make(picture()));
    if (name == member::BackColor)
        return Value(colorToHost(m_form->palette().color(m_form->backgroundRole())));
    if (name == member::Left)
        return Value(static_cast<float>(pixelsToUnits(frame.x(), ScaleTwips, Axis::X)));
    if (name == member::Top)
        return Value(static_cast<float>(pixelsToUnits(frame.y(), ScaleTwips, Axis::Y)));
    if (name == member::Width)
        return Value(static_cast<float>(pixelsToUnits(frame.width(), ScaleTwips, Axis::X)));
    if (name == member::Height)
        return Value(static_cast<float>(pixelsToUnits(frame.height(), ScaleTwips, Axis::Y)));
    if (name == "WindowState") {
        const Qt::WindowStates s = win->windowState();
        return Value(s & Qt::WindowMinimized ? 1 : (s & Qt::WindowMaximized ? 2 : 0));
    }
    if (name == "Caption")
        return Value(win->windowTitle().toStdString());
    if (name == "Visible")
        return Value(win->isVisible());
    if (name == "Enabled")
        return Value(win->isEnabled());
    if (name == "MDIChild")
        return Value(qobject_cast<QMdiSubWindow *>(win) != nullptr);
    if (name == member::Font)
        return Value(QtFont::ofWidget(m_form));
    return noSuchMember(name);
}

SetResult QtForm::set(std::string_view name, const Value &value)
{
    if (!m_form)
        return hostError(HostErrc::Failed, "The form is gone");
    QWidget *win = window();
    if (m_mdiParent && name == member::ScaleMode)
        return noSuchMember(name);
    if (name == member::ScaleMode) {
        const auto mode = value.toLong();
        if (!mode || !isValidScaleMode(*mode))
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        m_form->setProperty(ScaleModeProperty, static_cast<int>(*mode));
        return Done{};
    }
    if (name == member::Picture) {
        QPixmap pm;
        if (!QtPicture::fromValue(value, pm))
            return typeMismatch();
        setPicture(pm);
        return Done{};
    }
    if (name == member::Left || name == member::Top || name == member::Width || name == member::Height) {
        const auto twips = value.toDouble();
        const bool horizontal = name == member::Left || name == member::Width;
        bool ok = false;
        const int px = twips ? unitsToPixels(*twips, ScaleTwips, horizontal ? Axis::X : Axis::Y, &ok) : 0;
        if (!ok || ((name == member::Width || name == member::Height) && px < 0))
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        // The frame counts.
        const QMargins deco = decorationOf(win);
        const QRect frame = win->geometry().marginsAdded(deco);
        if (name == member::Left)
            moveFrameTo(win, QPoint(px, frame.y()));
        else if (name == member::Top)
            moveFrameTo(win, QPoint(frame.x(), px));
        else if (name == member::Width)
            win->resize(qMax(0, px - deco.left() - deco.right()), win->height());
        else
            win->resize(win->width(), qMax(0, px - deco.top() - deco.bottom()));
        return Done{};
    }
    if (name == "WindowState") {
        const auto s = value.toLong();
        if (!s || *s < 0 || *s > 2)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        const Qt::WindowStates keep = win->windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
        win->setWindowState(keep | (*s == 1 ? Qt::WindowMinimized : *s == 2 ? Qt::WindowMaximized : Qt::WindowNoState));
        return Done{};
    }
    if (name == "Caption") {
        const auto text = value.toText();
        if (!text)
            return typeMismatch();
        win->setWindowTitle(QString::fromStdString(*text));
        return Done{};
    }
    if (name == "Visible" || name == "Enabled") {
        const auto on = value.toBool();
        if (!on)
            return typeMismatch();
        if (name == "Visible")
            win->setVisible(*on);
        else
            win->setEnabled(*on);
        return Done{};
    }
    return noSuchMember(name);
}

GetResult QtForm::getMdiArea(std::string_view name) const
{
    if (!m_mdiArea)
        return hostError(HostErrc::Failed, "The MDI area is gone");
    if (name == member::BackColor)
        return Value(colorToHost(m_mdiArea->background().color()));
    // The client area, scroll bars included: they come and go with the
    // child windows, the area's size does not.
    const QSize inner = m_mdiArea->contentsRect().size();
    return name == member::ScaleWidth ? Value(static_cast<float>(pixelsToUnits(inner.width(), ScaleTwips, Axis::X)))
                                : Value(static_cast<float>(pixelsToUnits(inner.height(), ScaleTwips, Axis::Y)));
}

GetResult QtForm::call(std::string_view method, const std::vector<Value> &args)
{
    if (!m_form)
        return hostError(HostErrc::Failed, "The form is gone");
    if (m_mdiParent && (method == member::ScaleX || method == member::ScaleY))
        return noSuchMember(method); // no scale mode to convert from
    if (method == member::ScaleX || method == member::ScaleY) {
        if (args.size() != 3)
            return hostError(HostErrc::InvalidValue, "ScaleX and ScaleY take a value, a from-mode and a to-mode");
        const auto v = args[0].toDouble();
        const auto from = args[1].toLong();
        const auto to = args[2].toLong();
        double out = 0;
        if (!v || !from || !to || !convertUnits(*v, *from, *to, method == member::ScaleX ? Axis::X : Axis::Y, out))
            return hostError(HostErrc::InvalidValue, "Invalid scale mode");
        return Value(static_cast<float>(out));
    }
    if (method == member::Refresh) {
        m_form->update();
        return Value();
    }
    if (method == "Cls") { // what was painted into the form's background
        setPicture(QPixmap());
        return Value();
    }
    if (method == member::Hide || method == member::Show) {
        // An MDI parent is hidden and shown again only so that its client
        // area repaints: Qt repaints it in place, without taking the window
        // off the screen (the window manager would place it anew, and it
        // would flicker on every pass).
        if (m_mdiParent) {
            if (method == member::Show && m_mdiArea)
                m_mdiArea->viewport()->update();
            return Value();
        }
        window()->setVisible(method == member::Show);
        return Value();
    }
    return noSuchMember(method);
}

} // namespace velmora::qt
