#include "pages/VelmoraPropertyDialog.h"

#include "control/VelmoraControl.h"
#include "pages/ControlOptionsPage.h"
#include "pages/FormEffects.h"
#include "pages/General.h"
#include "pages/ReplaceFontsWith.h"
#include "pages/ScaleControls.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

VelmoraPropertyDialog::VelmoraPropertyDialog(VelmoraControl *control, QWidget *parent)
    : QDialog(parent)
    , m_control(control)
    , m_tabs(new QTabWidget(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this))
{
    setObjectName(QStringLiteral("VelmoraPropertyDialog"));
    setWindowTitle(control && !control->objectName().isEmpty()
                       ? QStringLiteral("%1 Properties").arg(control->objectName())
                       : QStringLiteral("Velmora Properties"));
    m_pages = {new VelmoraPages::General, new VelmoraPages::ScaleControls, new VelmoraPages::ScaleFonts,
               new VelmoraPages::ScaleBorders, new VelmoraPages::ScaleGraphics, new VelmoraPages::ReplaceFontsWith,
               new VelmoraPages::FormEffects};
    for (VelmoraPropertyPage *page : m_pages) {
        m_tabs->addTab(page, page->objectName());
        if (control)
            page->selectionChanged({control});
        connect(page, &VelmoraPropertyPage::changedChanged, this, &VelmoraPropertyDialog::updateApply);
    }
    // Every page's name in sight.
    m_tabs->setUsesScrollButtons(false);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, [this] {
        apply();
        accept();
    });
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &VelmoraPropertyDialog::apply);
    updateApply();
}

void VelmoraPropertyDialog::apply()
{
    if (!m_control)
        return;
    bool any = false;
    for (VelmoraPropertyPage *page : m_pages) {
        if (page->hasPendingChanges()) {
            page->applyChanges();
            any = true;
        }
    }
    updateApply();
    if (any)
        Q_EMIT applied();
}

void VelmoraPropertyDialog::updateApply()
{
    bool any = false;
    for (VelmoraPropertyPage *page : m_pages)
        any = any || page->isChanged();
    m_buttons->button(QDialogButtonBox::Apply)->setEnabled(any);
}
