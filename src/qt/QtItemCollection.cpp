#include "qt/QtItemCollection.h"

#include "layout/MemberNames.h"
#include "widgets/ImageListBinding.h"
#include "widgets/VelmoraImageList.h"

#include <QAction>
#include <QListWidget>
#include <QTabBar>
#include <QToolBar>
#include <QTreeWidget>

namespace velmora::qt {

namespace {

const char *const ImageProperty = "Image";

HostError outOfRange()
{
    return hostError(HostErrc::IndexOutOfRange, "Index out of bounds");
}

HostError itemGone()
{
    return hostError(HostErrc::Failed, "The item is gone");
}

void depthFirst(const QAbstractItemModel *model, const QModelIndex &parent, std::vector<QPersistentModelIndex> &out)
{
    const int rows = model->rowCount(parent);
    for (int r = 0; r < rows; ++r) {
        const QModelIndex index = model->index(r, 0, parent);
        out.emplace_back(index);
        depthFirst(model, index, out);
    }
}

// One item: an action, a view row or a tab, with the members the engine
// remembers and restores.
class QtItem : public HostObject {
public:
    QtItem(QAction *action) : m_action(action) {}
    QtItem(const QPersistentModelIndex &row) : m_row(row) {}
    QtItem(QTabBar *bar, int tab) : m_bar(bar), m_tab(tab) {}

    std::string typeName() const override
    {
        return m_action ? "Button" : m_row.isValid() ? "Node" : "Tab";
    }

    GetResult get(std::string_view name) override
    {
        const int role = roleOf(name);
        if (role < 0)
            return noSuchMember(name);
        QVariant ref;
        if (!read(role, ref))
            return itemGone();
        return QtItemCollection::fromReference(ref);
    }

    SetResult set(std::string_view name, const Value &value) override
    {
        const int role = roleOf(name);
        if (role < 0)
            return noSuchMember(name);
        QVariant ref;
        if (!QtItemCollection::toReference(value, ref))
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        QVariant now;
        if (!read(role, now))
            return itemGone();
        if (now == ref && now.metaType() == ref.metaType())
            return Done{};
        if (m_action) {
            m_action->setProperty(ImageProperty, ref);
        } else if (m_row.isValid()) {
            if (!const_cast<QAbstractItemModel *>(m_row.model())->setData(m_row, ref, role))
                return hostError(HostErrc::InvalidValue, "Invalid property value");
        } else {
            VelmoraImageList::setTabImage(m_bar, m_tab, ref);
        }
        return Done{};
    }

private:
    // Image on anything; Icon and SmallIcon on a view row (a list item).
    int roleOf(std::string_view name) const
    {
        if (name == member::Image)
            return VelmoraImageList::ImageRole;
        if (m_row.isValid() && name == member::Icon)
            return VelmoraImageList::ImageRole;
        if (m_row.isValid() && name == member::SmallIcon)
            return VelmoraImageList::SmallImageRole;
        return -1;
    }

    bool read(int role, QVariant &out) const
    {
        if (m_action) {
            out = m_action->property(ImageProperty);
            return true;
        }
        if (m_row.isValid()) {
            out = m_row.data(role);
            return true;
        }
        if (m_bar && m_tab < m_bar->count()) {
            out = m_bar->tabData(m_tab);
            return true;
        }
        return false;
    }

    QPointer<QAction> m_action;
    QPersistentModelIndex m_row;
    QPointer<QTabBar> m_bar;
    int m_tab = 0;
};

} // namespace

QtItemCollection::QtItemCollection(Kind kind, std::string typeName, QObject *owner)
    : m_kind(kind)
    , m_typeName(std::move(typeName))
    , m_owner(owner)
{
}

HostObjectPtr QtItemCollection::buttons(QToolBar *bar)
{
    std::shared_ptr<QtItemCollection> c(new QtItemCollection(Kind::Actions, "Buttons", bar));
    for (QAction *a : bar->actions())
        c->m_actions.emplace_back(a);
    return c;
}

HostObjectPtr QtItemCollection::nodes(QTreeWidget *tree)
{
    std::shared_ptr<QtItemCollection> c(new QtItemCollection(Kind::ModelItems, "Nodes", tree));
    depthFirst(tree->model(), QModelIndex(), c->m_rows);
    return c;
}

HostObjectPtr QtItemCollection::listItems(QListWidget *list)
{
    std::shared_ptr<QtItemCollection> c(new QtItemCollection(Kind::ModelItems, "ListItems", list));
    depthFirst(list->model(), QModelIndex(), c->m_rows);
    return c;
}

HostObjectPtr QtItemCollection::tabs(QTabBar *bar)
{
    return HostObjectPtr(new QtItemCollection(Kind::Tabs, "Tabs", bar));
}

GetResult QtItemCollection::get(std::string_view name)
{
    if (name != "Count")
        return noSuchMember(name);
    switch (m_kind) {
    case Kind::Actions:
        return Value(int(m_actions.size()));
    case Kind::ModelItems:
        return Value(int(m_rows.size()));
    case Kind::Tabs:
        if (auto *bar = qobject_cast<QTabBar *>(m_owner.data()))
            return Value(bar->count());
        return hostError(HostErrc::Failed, "The control is gone");
    }
    return noSuchMember(name);
}

SetResult QtItemCollection::set(std::string_view name, const Value &)
{
    if (name == member::Count)
        return hostError(HostErrc::ReadOnly, "Property is read-only");
    return noSuchMember(name);
}

GetResult QtItemCollection::getAt(std::string_view name, int index)
{
    if (name != "Item")
        return noSuchMember(name);
    const auto count = get("Count");
    if (!count)
        return count;
    if (index < 1 || index > *count->toLong())
        return outOfRange();
    const std::size_t i = std::size_t(index - 1);
    switch (m_kind) {
    case Kind::Actions:
        if (!m_actions[i])
            return itemGone();
        return Value(HostObjectPtr(std::make_shared<QtItem>(m_actions[i].data())));
    case Kind::ModelItems:
        if (!m_rows[i].isValid())
            return itemGone();
        return Value(HostObjectPtr(std::make_shared<QtItem>(m_rows[i])));
    case Kind::Tabs:
        return Value(HostObjectPtr(std::make_shared<QtItem>(qobject_cast<QTabBar *>(m_owner.data()), index - 1)));
    }
    return outOfRange();
}

Value QtItemCollection::fromReference(const QVariant &ref)
{
    if (!ref.isValid() || ref.isNull())
        return Value();
    if (widgets::ImageListBinding::isNumber(ref))
        return Value(ref.toInt());
    return Value(ref.toString().toStdString());
}

bool QtItemCollection::toReference(const Value &value, QVariant &out)
{
    if (value.isEmpty()) {
        out = QVariant();
        return true;
    }
    if (value.isText()) {
        out = QString::fromStdString(*value.toText());
        return true;
    }
    if (value.isNumber()) {
        out = *value.toLong();
        return true;
    }
    return false;
}

} // namespace velmora::qt
