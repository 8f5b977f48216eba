// Velmora - the items of a control as the engine sees them: a toolbar's
// Buttons (its actions), a tree's Nodes (every item, depth first), a list
// widget's ListItems and a tab bar's Tabs, each a collection with Count and
// Item(i) from 1. An item's image reference is Image (Icon and SmallIcon
// for a list item): a key as text, a number, or nothing.
//
// The collection is what the control holds when it is asked for; items are
// kept by persistent reference, so one that goes away fails its own access.
#pragma once

#include "layout/HostObject.h"

#include <QPersistentModelIndex>
#include <QPointer>
#include <QVariant>

#include <vector>

class QAction;
class QTabBar;
class QToolBar;
class QTreeWidget;
class QListWidget;

namespace velmora::qt {

class QtItemCollection : public HostObject {
public:
    static HostObjectPtr buttons(QToolBar *bar);
    static HostObjectPtr nodes(QTreeWidget *tree);
    static HostObjectPtr listItems(QListWidget *list);
    static HostObjectPtr tabs(QTabBar *bar);

    std::string typeName() const override { return m_typeName; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    GetResult getAt(std::string_view name, int index) override;

    // An image reference between the engine and Qt: numbers stay numbers,
    // texts keys; nothing is an invalid QVariant.
    static Value fromReference(const QVariant &ref);
    static bool toReference(const Value &value, QVariant &out);

private:
    enum class Kind { Actions, ModelItems, Tabs };
    QtItemCollection(Kind kind, std::string typeName, QObject *owner);

    Kind m_kind;
    std::string m_typeName;
    QPointer<QObject> m_owner; // the control
    std::vector<QPointer<QAction>> m_actions;
    std::vector<QPersistentModelIndex> m_rows;
};

} // namespace velmora::qt
