// The members of controls whose items show images: the image lists they are
// bound to, their item collections, and a toolbar's button size.
#include "qt/QtControl.h"

#include "layout/MemberNames.h"
#include "qt/QtForm.h"
#include "qt/QtItemCollection.h"
#include "qt/QtUnits.h"
#include "widgets/ImageListBinding.h"
#include "widgets/VelmoraImageList.h"

#include <QListWidget>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <cstring>

namespace velmora::qt {

using widgets::ImageListBinding;

namespace {

// The list property `name` stands for on this widget, or nullptr.
const char *listProperty(const QWidget *w, std::string_view name, ImageListBinding::Slot &slot)
{
    slot = name == member::SmallIcons ? ImageListBinding::SmallImages : ImageListBinding::Images;
    const char *property = ImageListBinding::propertyName(w, slot);
    if (!property || name != property)
        return nullptr;
    // Any widget naming a list in a dynamic property takes part, so custom
    // classes can be bound too.
    if (!ImageListBinding::bindable(w) && !w->property(property).isValid())
        return nullptr;
    return property;
}

QList<QToolButton *> toolButtons(QToolBar *bar)
{
    QList<QToolButton *> buttons;
    for (QAction *a : bar->actions())
        if (auto *b = qobject_cast<QToolButton *>(bar->widgetForAction(a)))
            buttons << b;
    return buttons;
}

// The members answered here; any other name is turned away before a
// widget is asked what it is (get and set fall through here for every
// member they do not know).
bool itemMember(std::string_view name)
{
    for (std::string_view m : {"ImageList", "Icons", "SmallIcons", "Buttons", "ButtonWidth", "ButtonHeight", "Nodes",
                               "ListItems", "Tabs"})
        if (name == m)
            return true;
    return false;
}

} // namespace

std::optional<GetResult> QtControl::getItemMember(std::string_view name)
{
    if (!itemMember(name))
        return std::nullopt;
    ImageListBinding::Slot slot;
    if (const char *property = listProperty(m_widget, name, slot)) {
        // Taken off for the time being, a control has no list.
        const ImageListBinding *binding = ImageListBinding::of(m_widget);
        if (binding && binding->suspended())
            return GetResult(Value());
        VelmoraImageList *list = VelmoraImageList::imageList(m_widget, property);
        QtForm *form = liveForm();
        if (!list || !form)
            return GetResult(Value());
        return GetResult(Value(form->adapterFor(list)));
    }
    if (auto *bar = qobject_cast<QToolBar *>(m_widget.data())) {
        if (name == member::Buttons)
            return GetResult(Value(QtItemCollection::buttons(bar)));
        if (name == member::ButtonWidth || name == member::ButtonHeight) {
            const bool width = name == member::ButtonWidth;
            int px = 0;
            for (QToolButton *b : toolButtons(bar)) {
                // Until the toolbar has laid its buttons out they have no size of their own.
                const QSize size = b->testAttribute(Qt::WA_Resized) ? b->size()
                                                                    : b->sizeHint().expandedTo(b->minimumSize());
                px = qMax(px, width ? size.width() : size.height());
            }
            return GetResult(Value(static_cast<float>(pixelsToUnits(px, ScaleTwips, width ? Axis::X : Axis::Y))));
        }
    }
    if (name == member::Nodes)
        if (auto *tree = qobject_cast<QTreeWidget *>(m_widget.data()))
            return GetResult(Value(QtItemCollection::nodes(tree)));
    if (name == member::ListItems)
        if (auto *list = qobject_cast<QListWidget *>(m_widget.data()))
            return GetResult(Value(QtItemCollection::listItems(list)));
    if (name == member::Tabs)
        if (auto *tabs = qobject_cast<QTabBar *>(m_widget.data()))
            return GetResult(Value(QtItemCollection::tabs(tabs)));
    return std::nullopt;
}

std::optional<SetResult> QtControl::setItemMember(std::string_view name, const Value &value)
{
    if (!itemMember(name))
        return std::nullopt;
    ImageListBinding::Slot slot;
    if (listProperty(m_widget, name, slot)) {
        HostObjectPtr object = value.toObject();
        if (!object) {
            // The control keeps the icons it shows until its list is back.
            if (!value.isEmpty() && !value.isObject())
                return SetResult(hostError(HostErrc::InvalidValue, "Type mismatch"));
            ImageListBinding *binding = ImageListBinding::of(m_widget);
            // Nothing in place of nothing (a list widget without small icons) changes nothing.
            if (binding && !binding->suspended() && binding->list(slot)) {
                binding->suspend();
                if (QtForm *form = liveForm())
                    form->bindingSuspended(m_widget);
            }
            return SetResult(Done{});
        }
        auto *adapter = dynamic_cast<QtControl *>(object.get());
        auto *list = adapter ? qobject_cast<VelmoraImageList *>(adapter->widget()) : nullptr;
        if (!list)
            return SetResult(hostError(HostErrc::InvalidValue, "Invalid object use"));
        ImageListBinding *binding = ImageListBinding::ensure(m_widget);
        willWrite();
        binding->assign(slot, list);
        binding->resume();
        return SetResult(Done{});
    }
    if (name == member::ButtonWidth || name == member::ButtonHeight) {
        auto *bar = qobject_cast<QToolBar *>(m_widget.data());
        if (!bar)
            return std::nullopt;
        const bool width = name == member::ButtonWidth;
        const auto twips = value.toDouble();
        bool ok = false;
        const int px = twips ? unitsToPixels(*twips, ScaleTwips, width ? Axis::X : Axis::Y, &ok) : 0;
        if (!ok || px < 0)
            return SetResult(hostError(HostErrc::InvalidValue, "Invalid property value"));
        // Qt sizes tool buttons from their icons and text, which scale; on a
        // toolbar the form places the button size is the least they get. A
        // main window's toolbar is left to its icons, scaled with the form:
        // it takes its size from the form beside it, which it would resize
        // in turn.
        if (state().managed) {
            if (m_design && m_design->iconSize.isValid())
                scaleIconSize();
            return SetResult(Done{});
        }
        for (QToolButton *b : toolButtons(bar)) {
            const QSize min = b->minimumSize();
            const QSize wanted = width ? QSize(px, min.height()) : QSize(min.width(), px);
            if (min != wanted) {
                willWrite();
                b->setMinimumSize(wanted);
            }
        }
        return SetResult(Done{});
    }
    if ((name == member::Buttons && qobject_cast<QToolBar *>(m_widget.data()))
        || (name == member::Nodes && qobject_cast<QTreeWidget *>(m_widget.data()))
        || (name == member::ListItems && qobject_cast<QListWidget *>(m_widget.data()))
        || (name == member::Tabs && qobject_cast<QTabBar *>(m_widget.data())))
        return SetResult(hostError(HostErrc::ReadOnly, "Property is read-only"));
    return std::nullopt;
}

bool QtControl::showsListImages() const
{
    const ImageListBinding *binding = ImageListBinding::of(m_widget);
    return binding && (binding->list(ImageListBinding::Images) || binding->list(ImageListBinding::SmallImages));
}

} // namespace velmora::qt
