#include "qt/QtControl.h"

#include "layout/MemberNames.h"
#include "qt/QtLayoutSpacing.h"
#include "qt/QtViewInterior.h"

#include "qt/QtFont.h"
#include "qt/QtForm.h"
#include "qt/QtLayoutSettling.h"
#include "qt/QtPictureBox.h"
#include "qt/QtPropertyBridge.h"
#include "qt/QtUnits.h"
#include "qt/QtWidgetFeatures.h"
#include "qt/QtImageList.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QListView>
#include <QStyle>
#include <QTabBar>
#include <QToolBar>
#include <QCalendarWidget>
#include <QFrame>
#include <QLabel>
#include <QTabWidget>

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora::qt {

namespace {

constexpr std::string_view FontSlots[] = {"Font", "DayFont", "GridFont", "TitleFont", "HeadFont"};

int fontSlot(std::string_view name)
{
    for (int i = 0; i < 5; ++i)
        if (name == FontSlots[i])
            return i;
    return -1;
}

// Members the engine asks of every widget in every pass that most widgets
// lack; a miss is remembered for the rest of the pass.
constexpr std::string_view OptionalMembers[] = {"Index", "DayFont", "GridFont", "TitleFont", "HeadFont",
                                                "BorderWidth", "Picture", "DownPicture", "DisabledPicture"};

int optionalMember(std::string_view name)
{
    for (int i = 0; i < int(std::size(OptionalMembers)); ++i)
        if (name == OptionalMembers[i])
            return i;
    return -1;
}

// The icon size of a widget that draws its items' icons (views, toolbars,
// tab bars), as it is in effect; invalid for any other widget.
QSize itemIconSize(QWidget *w)
{
    if (auto *view = qobject_cast<QAbstractItemView *>(w)) {
        if (view->iconSize().isValid())
            return view->iconSize();
        auto *list = qobject_cast<QListView *>(w);
        const auto metric = list && list->viewMode() == QListView::IconMode ? QStyle::PM_IconViewIconSize
                                                                             : QStyle::PM_SmallIconSize;
        const int side = w->style()->pixelMetric(metric, nullptr, w);
        return QSize(side, side);
    }
    if (qobject_cast<QToolBar *>(w) || qobject_cast<QTabBar *>(w))
        return w->property("iconSize").toSize();
    if (auto *button = qobject_cast<QAbstractButton *>(w); button && !button->icon().isNull())
        return button->iconSize();
    return QSize();
}

} // namespace

QtControl::QtControl(std::weak_ptr<QtForm> form, QWidget *widget, QString name)
    : m_form(std::move(form))
    , m_formPtr(m_form.lock().get())
    , m_widget(widget)
    , m_keyedAs(widget ? widget->objectName() : QString())
{
    m_nameOverridden = !name.isEmpty();
    m_name = (m_nameOverridden ? name : m_keyedAs).toStdString();
    if (widget)
        for (int i = 0; i < int(std::size(OptionalMembers)); ++i)
            if (!classDeclares(widget->metaObject(), OptionalMembers[i]))
                m_classLacks |= 1u << i;
    static std::uint64_t adapters = 0;
    m_identity = ++adapters;
    if (qobject_cast<VelmoraLine *>(widget))
        m_kind = Kind::Line;
    else if (qobject_cast<VelmoraImageList *>(widget))
        m_kind = Kind::ImageList;
    else if (qobject_cast<QTabWidget *>(widget))
        m_kind = Kind::TabWidget;
    else if (qobject_cast<QCalendarWidget *>(widget))
        m_kind = Kind::Calendar;
    else if (qobject_cast<QLabel *>(widget))
        m_kind = Kind::Label;
    else if (qobject_cast<QAbstractButton *>(widget))
        m_kind = Kind::Button;
    else if (qobject_cast<QFrame *>(widget))
        m_kind = Kind::Frame;
    // The adapter is made when the layout is captured: what the widget has
    // now is the design's.
    takeDesign();
}

void QtControl::takeDesign()
{
    QWidget *widget = m_widget;
    m_design.reset();
    m_designSize = sizeOf(widget);
    m_view = ViewInterior::capture(widget, widget ? QtFont::pointSize(widget->font()) : 0.0);
    m_layout = LayoutSpacing::capture(widget);
    // The limits a form was designed with are the ones the widget has now.
    // The component's own fixed size is its icon's, not a limit of the design.
    if (widget && !widget->inherits("VelmoraControl")) {
        const QSize minimum = widget->minimumSize(), maximum = widget->maximumSize();
        if (!minimum.isNull() || maximum != QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX))
            m_design = std::make_unique<Design>(Design{sizeOf(widget), minimum, maximum, true, QSize(), QSize()});
        if (const QSize icons = itemIconSize(widget); icons.isValid()) {
            if (!m_design)
                m_design = std::make_unique<Design>(Design{sizeOf(widget), QSize(), QSize(), false, QSize(), QSize()});
            m_design->iconSize = icons;
            if (QtForm *form = liveForm(); form && geometryManaged(widget))
                m_design->formSize = sizeOf(form->widget());
        }
    }
}

QtControl::~QtControl() = default;

void QtControl::scaleIconSize()
{
    if (showsListImages())
        return; // its list is rebuilt at the new size, and sets it
    const Design &d = *m_design;
    // A widget its parent places (a main window's toolbar) has no size of
    // its own to go by: it follows the form.
    const bool followsForm = d.formSize.isValid() && state().managed && liveForm();
    const QSize design = followsForm ? d.formSize : d.size;
    const QSize now = followsForm ? sizeOf(liveForm()->widget()) : sizeOf(m_widget);
    if (design.width() <= 0 || design.height() <= 0)
        return;
    const double ratio = qMin(double(now.width()) / design.width(), double(now.height()) / design.height());
    const QSize scaled(qMax(1, qRound(d.iconSize.width() * ratio)), qMax(1, qRound(d.iconSize.height() * ratio)));
    const QSize current = m_widget->property("iconSize").toSize();
    // Beside the form, a pixel either way would resize the form, and the
    // form the widget, back and forth.
    if (followsForm && qAbs(current.width() - scaled.width()) <= 1 && qAbs(current.height() - scaled.height()) <= 1)
        return;
    if (current != scaled) {
        willWrite();
        m_widget->setProperty("iconSize", scaled);
    }
}

void QtControl::rekey(const QString &nameOverride)
{
    m_keyedAs = m_widget ? m_widget->objectName() : QString();
    m_nameOverridden = !nameOverride.isEmpty();
    m_name = (m_nameOverridden ? nameOverride : m_keyedAs).toStdString();
}

QString QtControl::name() const
{
    if (m_nameOverridden)
        return QString::fromStdString(m_name);
    return m_widget ? m_widget->objectName() : QString();
}

std::string QtControl::typeName() const
{
    switch (m_kind) {
    case Kind::TabWidget:
        return "SSTab";
    case Kind::Line:
        return "Line";
    case Kind::ImageList:
        return "ImageList";
    default:
        return m_widget ? m_widget->metaObject()->className() : "Nothing";
    }
}

bool QtControl::isKind(HostKind kind) const
{
    return kind == HostKind::Line && m_kind == Kind::Line;
}

const QtControl::PassState &QtControl::state() const
{
    QtForm *form = liveForm();
    if (form && form->inPass() && m_state.serial == form->passSerial())
        return m_state;
    PassState s;
    if (form && m_widget) {
        auto container = form->containerOf(m_widget);
        s.onForm = container.get() == form;
        s.container = container;
        s.units = s.onForm ? &form->formUnits() : &form->twipUnits();
        s.managed = geometryManaged(m_widget);
        s.dynamicProperties = hasDynamicProperties(m_widget);
        s.serial = form->inPass() ? form->passSerial() : 0;
    } else {
        static const UnitScale twips = UnitScale::of(ScaleTwips);
        s.units = &twips;
        s.managed = m_widget && geometryManaged(m_widget);
        s.dynamicProperties = hasDynamicProperties(m_widget);
    }
    m_state = std::move(s);
    return m_state;
}

void QtControl::willWrite() const
{
    if (QtForm *form = liveForm())
        form->aboutToWrite();
}

bool QtControl::lacksOptional(int member) const
{
    return (m_classLacks & (1u << member)) && !state().dynamicProperties;
}

bool QtControl::surelyLacks(std::string_view name) const
{
    const int optional = optionalMember(name);
    return optional >= 0 && lacksOptional(optional);
}

GetResult QtControl::readBridged(std::string_view name) const
{
    if (surelyLacks(name))
        return noSuchMember(name);
    return readQtProperty(m_widget, name);
}

SetResult QtControl::writeBridged(std::string_view name, const Value &value)
{
    if (surelyLacks(name))
        return noSuchMember(name);
    return writeQtProperty(m_widget, name, value, [this] { willWrite(); });
}

std::optional<SetResult> QtControl::setFontSize(int slot, double size)
{
    if (!m_widget || m_kind == Kind::Line || slot < 0 || slot >= int(std::size(FontSlots)))
        return std::nullopt;
    // What get() answers by name: most widgets lack the calendar's fonts.
    if (slot > 0 && m_kind != Kind::Calendar && lacksOptional(slot))
        return SetResult(noSuchMember(FontSlots[slot]));
    const HostObjectPtr f = font(slot);
    if (!f)
        return std::nullopt;
    return f->set(member::Size, Value(size));
}

HostObjectPtr QtControl::font(int slot)
{
    if (slot > 0 && m_kind == Kind::Calendar && !m_calendarFonts)
        m_calendarFonts = std::make_unique<std::array<HostObjectPtr, 4>>();
    HostObjectPtr *cached = slot == 0 ? &m_font : m_calendarFonts ? &(*m_calendarFonts)[std::size_t(slot - 1)] : nullptr;
    if (!cached)
        return nullptr;
    if (*cached)
        return *cached;
    HostObjectPtr made;
    if (slot == 0) {
        made = QtFont::ofWidget(m_widget);
    } else if (m_kind == Kind::Calendar) {
        made = calendarFont(static_cast<QCalendarWidget *>(m_widget.data()), FontSlots[slot]);
    }
    if (auto *font = dynamic_cast<QtFont *>(made.get()))
        font->deferTo(m_form);
    *cached = made;
    return made;
}

GetResult QtControl::getBorderWidth() const
{
    if (m_kind == Kind::Frame || m_kind == Kind::Label) {
        auto *frame = static_cast<QFrame *>(m_widget.data());
        if (frame->frameShape() != QFrame::NoFrame)
            return Value(frame->lineWidth());
    }
    return readBridged("BorderWidth");
}

SetResult QtControl::setBorderWidth(const Value &value)
{
    if (m_kind == Kind::Frame || m_kind == Kind::Label) {
        auto *frame = static_cast<QFrame *>(m_widget.data());
        if (frame->frameShape() != QFrame::NoFrame) {
            const auto width = value.toLong();
            if (!width || *width < 0)
                return hostError(HostErrc::InvalidValue, "Invalid property value");
            if (frame->lineWidth() != *width) {
                willWrite();
                frame->setLineWidth(*width);
            }
            return Done{};
        }
    }
    return writeBridged("BorderWidth", value);
}

GetResult QtControl::get(std::string_view name)
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    const bool line = m_kind == Kind::Line;
    if (name == member::Name)
        return Value(renamed() && !m_nameOverridden ? this->name().toStdString() : m_name);
    if (name == member::Index) {
        if (surelyLacks(name))
            return noSuchMember(name);
        const QVariant v = propertyIfAny(m_widget, "Index");
        bool ok = false;
        const int index = v.toInt(&ok);
        if (!v.isValid() || !ok || index < 0)
            return noSuchMember(name);
        return Value(index);
    }
    if (!line) {
        if (name == member::Left)
            return getEdge(Edge::Left);
        if (name == member::Top)
            return getEdge(Edge::Top);
        if (name == member::Width)
            return getEdge(Edge::Width);
        if (name == member::Height)
            return getEdge(Edge::Height);
    } else if (name == member::X1 || name == member::X2 || name == member::Y1 || name == member::Y2) {
        return lineEnd(name);
    }
    if (name == member::ScaleWidth || name == member::ScaleHeight) { // the inner size, in twips
        const QSize inner = m_widget->contentsRect().size();
        return name == member::ScaleWidth ? Value(static_cast<float>(pixelsToUnits(inner.width(), ScaleTwips, Axis::X)))
                                    : Value(static_cast<float>(pixelsToUnits(inner.height(), ScaleTwips, Axis::Y)));
    }
    if (name == member::Container) {
        QtForm *form = liveForm();
        if (!form)
            return hostError(HostErrc::Failed, "The form is gone");
        const PassState &st = state();
        HostObjectPtr container = st.container.lock();
        if (!container)
            return hostError(HostErrc::Failed, "The container is gone");
        if (st.onForm)
            return Value(std::move(container));
        // A child asks for its container to measure it: one laid out by its
        // parent must have the size its layouts give it now. Once a pass is
        // enough: the container and everything above it have had their turn
        // before its first child, and its children cannot change its size.
        auto *c = static_cast<QtControl *>(container.get()); // not the form: a control
        if (c && c->m_settledInPass != form->passSerial()) {
            c->m_settledInPass = form->passSerial();
            if (c->state().managed) {
                // Its layouts measure it with the fonts it will show.
                form->flushFonts();
                settleAncestors(c->widget(), form->widget());
            }
        }
        return Value(std::move(container));
    }
    if (const int slot = fontSlot(name); slot >= 0 && !line) {
        // Every pass asks every widget for the calendar's fonts, twice.
        static_assert(OptionalMembers[1] == FontSlots[1] && OptionalMembers[4] == FontSlots[4]);
        if (slot > 0 && m_kind != Kind::Calendar && lacksOptional(slot))
            return noSuchMember(name);
        if (auto f = font(slot))
            return Value(std::move(f));
        return readBridged(name);
    }
    if (name == member::BorderWidth)
        return getBorderWidth();
    if (m_kind == Kind::ImageList && name == member::ListImages)
        return Value(HostObjectPtr(std::make_shared<QtImageList>(static_cast<VelmoraImageList *>(m_widget.data()))));
    if (name == "Visible")
        return Value(m_widget->isVisibleTo(m_widget->parentWidget()));
    if (name == "Enabled")
        return Value(m_widget->isEnabled());
    if (name == member::BackColor)
        return Value(colorToHost(m_widget->palette().color(m_widget->backgroundRole())));
    if (name == member::Picture || name == member::DownPicture || name == member::DisabledPicture) {
        if (m_kind == Kind::Label || m_kind == Kind::Button)
            return getPicture(m_widget, name);
    }
    if (m_kind == Kind::TabWidget)
        if (auto r = getTabMember(static_cast<QTabWidget *>(m_widget.data()), name);
            r || r.error().code != HostErrc::NoSuchMember)
            return r;
    if (auto r = getItemMember(name))
        return std::move(*r);
    return readBridged(name);
}

SetResult QtControl::set(std::string_view name, const Value &value)
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    const bool line = m_kind == Kind::Line;
    if (name == member::Name || name == member::Container)
        return hostError(HostErrc::ReadOnly, "Property is read-only at run time");
    if (!line) {
        if (name == member::Left)
            return setEdge(Edge::Left, value);
        if (name == member::Top)
            return setEdge(Edge::Top, value);
        if (name == member::Width)
            return setEdge(Edge::Width, value);
        if (name == member::Height)
            return setEdge(Edge::Height, value);
    } else if (name == member::X1 || name == member::X2 || name == member::Y1 || name == member::Y2) {
        return setLineEnd(name, value);
    }
    if (name == member::BorderWidth)
        return setBorderWidth(value);
    if (name == "Visible" || name == "Enabled") {
        const auto on = value.toBool();
        if (!on)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        willWrite();
        if (name == "Visible")
            m_widget->setVisible(*on);
        else
            m_widget->setEnabled(*on);
        return Done{};
    }
    if (name == member::Picture && m_design && m_design->iconSize.isValid())
        scaleIconSize(); // the picture step of a widget whose items have icons
    if (name == member::Picture || name == member::DownPicture || name == member::DisabledPicture) {
        // Within a pass a button's icon stays whole, every size and mode of
        // it: its icon size is what scales.
        if (m_kind == Kind::Button && m_design && m_design->iconSize.isValid() && liveForm() && liveForm()->inPass())
            return Done{};
        if (m_kind == Kind::Label || m_kind == Kind::Button) {
            willWrite();
            return setPicture(m_widget, name, value);
        }
    }
    if (m_kind == Kind::TabWidget) {
        willWrite();
        if (auto r = setTabMember(static_cast<QTabWidget *>(m_widget.data()), name, value);
            r || r.error().code != HostErrc::NoSuchMember)
            return r;
    }
    if (auto r = setItemMember(name, value))
        return std::move(*r);
    return writeBridged(name, value);
}

GetResult QtControl::getAt(std::string_view name, int index)
{
    if (m_kind == Kind::TabWidget && name == member::TabPicture)
        return getTabPicture(static_cast<QTabWidget *>(m_widget.data()), index);
    return noSuchMember(name);
}

SetResult QtControl::setAt(std::string_view name, int index, const Value &value)
{
    if (m_kind == Kind::TabWidget && name == member::TabPicture) {
        willWrite();
        return setTabPicture(static_cast<QTabWidget *>(m_widget.data()), index, value);
    }
    return noSuchMember(name);
}

GetResult QtControl::call(std::string_view method, const std::vector<Value> &args)
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    if (method == member::Move) {
        auto r = move(args);
        if (!r)
            return r.error();
        return Value();
    }
    if (method == member::Refresh) {
        if (m_kind == Kind::TabWidget)
            applyTabMaxWidth(static_cast<QTabWidget *>(m_widget.data()));
        if (m_view) {
            // Placed by now; its font may still be on its way.
            const auto *f = dynamic_cast<const QtFont *>(m_font.get());
            const auto upcoming = f ? f->upcoming() : std::nullopt;
            m_view->follow(QtFont::pointSize(upcoming ? *upcoming : m_widget->font()));
        }
        // Within a pass whatever changed repaints once, when the pass ends;
        // what did not change needs no repaint.
        QtForm *form = liveForm();
        if (!form || !form->inPass())
            m_widget->update();
        return Value();
    }
    return noSuchMember(method);
}

} // namespace velmora::qt
