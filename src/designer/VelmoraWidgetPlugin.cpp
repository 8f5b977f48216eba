#include "VelmoraWidgetPlugin.h"

#include <QtDesigner/QDesignerFormWindowInterface>

#include <utility>

VelmoraWidgetPlugin::VelmoraWidgetPlugin(Description description, QObject *parent)
    : QObject(parent)
    , m_d(std::move(description))
{
}

QString VelmoraWidgetPlugin::group() const
{
    return QStringLiteral("Velmora");
}

QIcon VelmoraWidgetPlugin::icon() const
{
    if (m_icon.isNull() && m_d.icon)
        m_icon = m_d.icon();
    return m_icon;
}

QWidget *VelmoraWidgetPlugin::createWidget(QWidget *parent)
{
    // Designer makes widgets for the form it edits and for its previews;
    // QUiLoader in an application makes them through this plugin as well
    // and never initialises it. Only the edited form's widgets are at
    // design time: a preview scales like the running form.
    const bool designTime = m_core && parent && QDesignerFormWindowInterface::findFormWindow(parent);
    return m_d.create(parent, designTime);
}

void VelmoraWidgetPlugin::initialize(QDesignerFormEditorInterface *core)
{
    if (m_core)
        return;
    m_core = core;
    if (m_d.initialize)
        m_d.initialize(core);
}
