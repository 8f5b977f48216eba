// Velmora - a named menu or menu command of the form's window, type "Menu".
// The engine never places menus; it only refreshes them.
#pragma once

#include "layout/HostObject.h"

#include <QPointer>

class QAction;
class QMenu;

namespace velmora::qt {

class QtMenuItem : public HostObject {
public:
    // A submenu is named by its QMenu, a command by its QAction.
    QtMenuItem(QMenu *menu, QAction *action);

    std::string typeName() const override { return "Menu"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;

private:
    QAction *action() const;

    QPointer<QMenu> m_menu;
    QPointer<QAction> m_action;
};

} // namespace velmora::qt
