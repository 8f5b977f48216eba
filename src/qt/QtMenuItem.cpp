#include "qt/QtMenuItem.h"

#include "layout/MemberNames.h"

#include <QAction>
#include <QMenu>

namespace velmora::qt {

QtMenuItem::QtMenuItem(QMenu *menu, QAction *action)
    : m_menu(menu)
    , m_action(action)
{
}

QAction *QtMenuItem::action() const
{
    if (m_menu)
        return m_menu->menuAction();
    return m_action;
}

GetResult QtMenuItem::get(std::string_view name)
{
    QAction *a = action();
    if (!a)
        return hostError(HostErrc::Failed, "The menu is gone");
    if (name == member::Name)
        return Value((m_menu ? m_menu->objectName() : a->objectName()).toStdString());
    if (name == "Caption")
        return Value(a->text().toStdString());
    if (name == "Enabled")
        return Value(a->isEnabled());
    if (name == "Visible")
        return Value(a->isVisible());
    if (name == "Checked")
        return Value(a->isChecked());
    return noSuchMember(name);
}

SetResult QtMenuItem::set(std::string_view name, const Value &value)
{
    QAction *a = action();
    if (!a)
        return hostError(HostErrc::Failed, "The menu is gone");
    if (name == "Caption") {
        const auto text = value.toText();
        if (!text)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        a->setText(QString::fromStdString(*text));
        return Done{};
    }
    const auto on = value.toBool();
    if (name == "Enabled" || name == "Visible" || name == "Checked") {
        if (!on)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        if (name == "Enabled")
            a->setEnabled(*on);
        else if (name == "Visible")
            a->setVisible(*on);
        else
            a->setChecked(*on);
        return Done{};
    }
    return noSuchMember(name);
}

} // namespace velmora::qt
