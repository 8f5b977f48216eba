#include "pages/ScaleControls.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QListWidget>

namespace VelmoraPages {

using velmora::ControlFlagTable;

namespace {

constexpr ControlFlagTable::Flag Locks[] = {ControlFlagTable::DontScaleLeft,  ControlFlagTable::DontScaleTop,
                                            ControlFlagTable::DontScaleWidth, ControlFlagTable::DontScaleHeight,
                                            ControlFlagTable::DontScaleRight, ControlFlagTable::DontScaleBottom};

// The other two locks of a lock's axis.
std::pair<ControlFlagTable::Flag, ControlFlagTable::Flag> axisPartners(ControlFlagTable::Flag lock)
{
    switch (lock) {
    case ControlFlagTable::DontScaleLeft: return {ControlFlagTable::DontScaleWidth, ControlFlagTable::DontScaleRight};
    case ControlFlagTable::DontScaleWidth: return {ControlFlagTable::DontScaleLeft, ControlFlagTable::DontScaleRight};
    case ControlFlagTable::DontScaleRight: return {ControlFlagTable::DontScaleLeft, ControlFlagTable::DontScaleWidth};
    case ControlFlagTable::DontScaleTop: return {ControlFlagTable::DontScaleHeight, ControlFlagTable::DontScaleBottom};
    case ControlFlagTable::DontScaleHeight: return {ControlFlagTable::DontScaleTop, ControlFlagTable::DontScaleBottom};
    default: return {ControlFlagTable::DontScaleTop, ControlFlagTable::DontScaleHeight};
    }
}

} // namespace

ScaleControls::ScaleControls(QWidget *parent)
    : ControlOptionsPage(Kind::Controls, parent)
{
    auto *grid = static_cast<QGridLayout *>(layout());
    const auto make = [&](const char *name, const char *caption, int row, int column) {
        auto *box = new QCheckBox(QLatin1String(caption), this);
        box->setObjectName(QLatin1String(name));
        box->setEnabled(false);
        grid->addWidget(box, row, column);
        return box;
    };
    chkLockLeft = make("chkLockLeft", "Lock Left", 5, 0);
    chkLockTop = make("chkLockTop", "Lock Top", 5, 1);
    chkLockWidth = make("chkLockWidth", "Lock Width", 6, 0);
    chkLockHeight = make("chkLockHeight", "Lock Height", 6, 1);
    chkLockRight = make("chkLockRight", "Lock Right", 7, 0);
    chkLockBottom = make("chkLockBottom", "Lock Bottom", 7, 1);
    for (Flag lock : Locks)
        connect(box(lock), &QCheckBox::clicked, this, [this, lock] { lockClicked(lock); });
    Timer1.setObjectName(QStringLiteral("Timer1"));
    Timer1.setInterval(100);
    Timer1.setSingleShot(true);
    connect(&Timer1, &QTimer::timeout, this, &ScaleControls::CheckIfAllDeselected);
}

QCheckBox *ScaleControls::box(Flag lock) const
{
    switch (lock) {
    case ControlFlagTable::DontScaleLeft: return chkLockLeft;
    case ControlFlagTable::DontScaleTop: return chkLockTop;
    case ControlFlagTable::DontScaleWidth: return chkLockWidth;
    case ControlFlagTable::DontScaleHeight: return chkLockHeight;
    case ControlFlagTable::DontScaleRight: return chkLockRight;
    default: return chkLockBottom;
    }
}

void ScaleControls::showLocks(const Entry *e)
{
    m_settingBoxes = true;
    for (Flag lock : Locks)
        box(lock)->setChecked(e && e->flags[lock]);
    m_settingBoxes = false;
}

void ScaleControls::currentChanged()
{
    ControlOptionsPage::currentChanged();
    const Entry *e = currentEntry();
    showLocks(e);
    const bool exempt = List1->currentItem() && List1->currentItem()->checkState() == Qt::Checked;
    for (Flag lock : Locks)
        box(lock)->setEnabled(exempt);
    // A line's ends are held by axis.
    const bool line = e && e->control->typeName() == "Line";
    chkLockLeft->setText(line ? QStringLiteral("Lock X Left") : QStringLiteral("Lock Left"));
    chkLockTop->setText(line ? QStringLiteral("Lock Y Top") : QStringLiteral("Lock Top"));
    chkLockWidth->setText(line ? QStringLiteral("Lock X Width") : QStringLiteral("Lock Width"));
    chkLockHeight->setText(line ? QStringLiteral("Lock Y Height") : QStringLiteral("Lock Height"));
    chkLockRight->setText(line ? QStringLiteral("Lock X Right") : QStringLiteral("Lock Right"));
    chkLockBottom->setText(line ? QStringLiteral("Lock Y Bottom") : QStringLiteral("Lock Bottom"));
}

void ScaleControls::itemChecked(QListWidgetItem *item)
{
    Entry *e = entryFor(item);
    if (!e || !isLoaded())
        return;
    // Exempt: held in place and size; no longer exempt: no lock at all.
    const bool on = item->checkState() == Qt::Checked;
    if (on) {
        for (Flag lock : {ControlFlagTable::DontScaleLeft, ControlFlagTable::DontScaleTop,
                          ControlFlagTable::DontScaleWidth, ControlFlagTable::DontScaleHeight})
            e->flags[lock] = true;
    } else {
        for (Flag lock : Locks)
            e->flags[lock] = false;
    }
    e->flags[ControlFlagTable::DontScaleControl] = on;
    if (item == List1->currentItem()) {
        showLocks(e);
        for (Flag lock : Locks)
            box(lock)->setEnabled(on);
    }
    markChanged();
}

void ScaleControls::lockClicked(Flag lock)
{
    if (m_settingBoxes)
        return;
    Entry *e = currentEntry();
    QCheckBox *b = box(lock);
    const auto [first, second] = axisPartners(lock);
    // At most two of an axis' three: a third cannot be held too.
    if (b->isChecked() && box(first)->isChecked() && box(second)->isChecked())
        b->setChecked(false);
    if (e)
        e->flags[lock] = b->isChecked();
    Timer1.start();
    markChanged();
}

void ScaleControls::CheckIfAllDeselected()
{
    for (Flag lock : Locks)
        if (box(lock)->isChecked())
            return;
    // Unchecking the item clears the control's exemption as well, so that
    // every mark matches what is stored.
    if (QListWidgetItem *item = List1->currentItem())
        item->setCheckState(Qt::Unchecked);
    for (Flag lock : Locks)
        box(lock)->setEnabled(false);
}

void ScaleControls::selectAll(bool on)
{
    // As if each line were checked or unchecked by hand.
    for (int i = 0; i < List1->count(); ++i) {
        QListWidgetItem *item = List1->item(i);
        if (Entry *e = entryFor(item)) {
            for (Flag lock : Locks)
                e->flags[lock] = on && lock != ControlFlagTable::DontScaleRight && lock != ControlFlagTable::DontScaleBottom;
            e->flags[ControlFlagTable::DontScaleControl] = on;
        }
        m_filling = true;
        item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        m_filling = false;
    }
    currentChanged();
    markChanged();
}

} // namespace VelmoraPages
