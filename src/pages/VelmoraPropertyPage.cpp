#include "pages/VelmoraPropertyPage.h"

#include "control/VelmoraControl.h"

VelmoraPropertyPage::VelmoraPropertyPage(QWidget *parent)
    : QWidget(parent)
{
}

void VelmoraPropertyPage::markChanged()
{
    if (m_loaded)
        setChanged(true);
}

void VelmoraPropertyPage::setChanged(bool changed)
{
    if (m_changed == changed)
        return;
    m_changed = changed;
    Q_EMIT changedChanged(changed);
}

void VelmoraPropertyPage::select(const QList<VelmoraControl *> &selected)
{
    m_selected.clear();
    for (VelmoraControl *c : selected)
        m_selected << c;
}

VelmoraControl *VelmoraPropertyPage::control() const
{
    return m_selected.isEmpty() ? nullptr : m_selected.first().data();
}
