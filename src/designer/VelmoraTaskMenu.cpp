#include "VelmoraTaskMenu.h"

#include "FormWindowSettings.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "pages/VelmoraPropertyDialog.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QExtensionManager>

#include <QAction>

namespace velmora::designer {

VelmoraTaskMenu::VelmoraTaskMenu(VelmoraControl *control, QObject *parent)
    : QObject(parent)
    , m_control(control)
    , m_edit(new QAction(QStringLiteral("Velmora Properties..."), this))
{
    m_edit->setObjectName(QStringLiteral("velmoraProperties"));
    connect(m_edit, &QAction::triggered, this, &VelmoraTaskMenu::editSettings);
}

QAction *VelmoraTaskMenu::preferredEditAction() const
{
    return m_edit;
}

QList<QAction *> VelmoraTaskMenu::taskActions() const
{
    return {m_edit};
}

void VelmoraTaskMenu::editSettings()
{
    QDesignerFormWindowInterface *form = m_control ? QDesignerFormWindowInterface::findFormWindow(m_control) : nullptr;
    if (!form)
        return;
    // The pages edit a copy: the control itself changes only through the
    // form window, so that every change can be undone and is saved.
    VelmoraControl copy;
    copy.setObjectName(m_control->objectName());
    copy.setDesignTime(true);
    VelmoraControlPrivate::get(&copy)->editedForm = VelmoraControlPrivate::formFor(m_control->parentWidget());
    copy.readProperties(m_control->writeProperties());

    VelmoraPropertyDialog dialog(&copy, form);
    dialog.setWindowTitle(QStringLiteral("Velmora Properties - %1").arg(m_control->objectName()));
    const auto write = [&] {
        if (m_control)
            FormWindowSettings::write(form, m_control, copy);
    };
    connect(&dialog, &VelmoraPropertyDialog::applied, &dialog, write);
    // OK applies the pages that found entries to put right (a control
    // deleted, raised or lowered) even when none was edited: write them too.
    connect(&dialog, &QDialog::accepted, &dialog, write);
    dialog.exec();
}

void VelmoraTaskMenuFactory::install(QDesignerFormEditorInterface *core)
{
    QExtensionManager *manager = core->extensionManager();
    manager->registerExtensions(new VelmoraTaskMenuFactory(manager), Q_TYPEID(QDesignerTaskMenuExtension));
}

QObject *VelmoraTaskMenuFactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    if (iid != Q_TYPEID(QDesignerTaskMenuExtension))
        return nullptr;
    if (auto *control = qobject_cast<VelmoraControl *>(object))
        return new VelmoraTaskMenu(control, parent);
    return nullptr;
}

} // namespace velmora::designer
