#include "pages/ReplaceFontsWith.h"

#include "control/VelmoraControl.h"

#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace VelmoraPages {

ReplaceFontsWith::ReplaceFontsWith(QWidget *parent)
    : VelmoraPropertyPage(parent)
    , List1(new QListWidget(this))
{
    setObjectName(QStringLiteral("ReplaceFontsWith"));
    List1->setObjectName(QStringLiteral("List1"));
    List1->setToolTip(VelmoraControl::helpText(QStringLiteral("ReplaceFontsWith")));
    auto *caption = new QLabel(QStringLiteral("ReplaceFontsWith"), this);
    caption->setBuddy(List1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(List1);
    // A click, or the arrow keys: any new current family is a choice.
    connect(List1, &QListWidget::itemClicked, this, &ReplaceFontsWith::markChanged);
    connect(List1, &QListWidget::currentItemChanged, this, &ReplaceFontsWith::markChanged);
}

void ReplaceFontsWith::fillFontList(QListWidget *list)
{
    list->clear();
    list->addItem(QStringLiteral("<none>"));
    list->addItems(QFontDatabase::families());
}

void ReplaceFontsWith::selectionChanged(const QList<VelmoraControl *> &selected)
{
    select(selected);
    VelmoraControl *c = control();
    if (isLoaded() || !c)
        return;
    fillFontList(List1);
    List1->setCurrentRow(-1);
    const QString family = c->ReplaceFontsWith();
    for (int i = 0; i < List1->count(); ++i)
        if (List1->item(i)->text() == family)
            List1->setCurrentRow(i);
    setLoaded();
}

void ReplaceFontsWith::applyChanges()
{
    VelmoraControl *c = control();
    if (!c)
        return;
    // A family not installed here is no item: what is stored is what is
    // current, nothing unless the developer picks one.
    QListWidgetItem *current = List1->currentItem();
    c->setReplaceFontsWith(current ? current->text() : QString());
    setChanged(false);
}

} // namespace VelmoraPages
