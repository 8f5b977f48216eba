#include "pages/ControlOptionsPage.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>

namespace VelmoraPages {

using velmora::ControlFlagTable;
using velmora::HostObject;

namespace {

const char *switchName(int kind)
{
    static const char *const names[] = {"ScaleFonts", "ScaleBorders", "ScaleGraphics", "ScaleControls"};
    return names[kind];
}

// The form the component serves, or (at design time, where it serves
// nothing) a view of the form it sits on or is edited for.
std::shared_ptr<velmora::qt::QtForm> formView(VelmoraControl *c)
{
    if (const auto &form = VelmoraControlPrivate::get(c)->driver.hostForm())
        return form;
    QWidget *form = VelmoraControlPrivate::get(c)->listedForm();
    return form ? velmora::qt::QtForm::create(form) : nullptr;
}

bool readable(HostObject &c, const char *name)
{
    return bool(c.get(name));
}

} // namespace

ControlOptionsPage::ControlOptionsPage(Kind kind, QWidget *parent)
    : VelmoraPropertyPage(parent)
    , List1(new QListWidget(this))
    , lblControlType(new QLabel(this))
    , lblScaleControls(new QLabel(this))
    , cmdSelectAll(new QPushButton(QStringLiteral("Select All"), this))
    , cmdSelectNone(new QPushButton(QStringLiteral("Select None"), this))
    , m_kind(kind)
{
    setObjectName(QLatin1String(switchName(int(kind))));
    List1->setObjectName(QStringLiteral("List1"));
    lblControlType->setObjectName(QStringLiteral("lblControlType"));
    lblScaleControls->setObjectName(QStringLiteral("lblScaleControls"));
    cmdSelectAll->setObjectName(QStringLiteral("cmdSelectAll"));
    cmdSelectNone->setObjectName(QStringLiteral("cmdSelectNone"));
    auto *grid = new QGridLayout(this);
    grid->addWidget(new QLabel(QStringLiteral("Exclude These Controls"), this), 0, 0, 1, 2);
    grid->addWidget(List1, 1, 0, 1, 2);
    grid->addWidget(cmdSelectAll, 2, 0);
    grid->addWidget(cmdSelectNone, 2, 1);
    grid->addWidget(lblControlType, 3, 0, 1, 2);
    grid->addWidget(lblScaleControls, 4, 0, 1, 2);
    connect(List1, &QListWidget::currentRowChanged, this, [this] { currentChanged(); });
    connect(List1, &QListWidget::itemChanged, this, [this](QListWidgetItem *item) {
        if (!m_filling)
            itemChecked(item);
    });
    connect(cmdSelectAll, &QPushButton::clicked, this, [this] { selectAll(true); });
    connect(cmdSelectNone, &QPushButton::clicked, this, [this] { selectAll(false); });
}

ControlOptionsPage::~ControlOptionsPage() = default;

std::vector<ControlOptionsPage::Flag> ControlOptionsPage::pageFlags() const
{
    switch (m_kind) {
    case Kind::Fonts:
        return {ControlFlagTable::DontScaleFont};
    case Kind::Borders:
        return {ControlFlagTable::DontScaleBorder};
    case Kind::Graphics:
        return {ControlFlagTable::DontScaleGraphic};
    case Kind::Controls:
        break;
    }
    return {ControlFlagTable::DontScaleControl, ControlFlagTable::DontScaleLeft, ControlFlagTable::DontScaleTop,
            ControlFlagTable::DontScaleWidth,   ControlFlagTable::DontScaleHeight, ControlFlagTable::DontScaleRight,
            ControlFlagTable::DontScaleBottom};
}

bool ControlOptionsPage::applies(HostObject &c) const
{
    switch (m_kind) {
    case Kind::Controls:
        return (readable(c, "Left") && readable(c, "Top") && readable(c, "Width") && readable(c, "Height"))
            || (readable(c, "X1") && readable(c, "X2") && readable(c, "Y1") && readable(c, "Y2"));
    case Kind::Fonts:
        for (const char *font : {"Font", "DayFont", "GridFont", "TitleFont"})
            if (velmora::getSubSingle(c, font, "Size"))
                return true;
        return false;
    case Kind::Borders:
        return readable(c, "BorderWidth");
    case Kind::Graphics:
        return c.typeName() == "ImageList" || readable(c, "Picture") || readable(c, "DownPicture")
            || readable(c, "DisabledPicture");
    }
    return false;
}

void ControlOptionsPage::selectionChanged(const QList<VelmoraControl *> &selected)
{
    select(selected);
    VelmoraControl *c = control();
    m_entries.clear();
    m_index.clear();
    m_filling = true;
    List1->clear();
    m_formView = c ? formView(c) : nullptr;
    if (!c || !m_formView) {
        m_filling = false;
        return;
    }
    // One entry per control of the form, in the form's order.
    for (const velmora::HostObjectPtr &k : m_formView->controls()) {
        if (!k)
            continue;
        const QString key = QString::fromStdString(velmora::controlKey(k.get()));
        if (m_index.contains(key))
            continue;
        m_index.insert(key, int(m_entries.size()));
        m_entries.push_back(Entry{k, key, {}});
    }
    // What the component holds for them, by key. Entries of controls that
    // have gone, and entries out of the form's order, are left as they are
    // until the page applies: the page works on its own copy, so that
    // Cancel changes nothing.
    const std::vector<Flag> flags = pageFlags();
    auto *d = VelmoraControlPrivate::get(c);
    for (Entry &e : m_entries)
        if (const int i = c->entryOf(e.key))
            for (Flag f : flags)
                e.flags[f] = d->flag(f, i, nullptr);
    m_tableOutdated = c->ControlFlagCount() != int(m_entries.size());
    for (int i = 1; !m_tableOutdated && i <= c->ControlFlagCount(); ++i)
        m_tableOutdated = c->ControlFlagControlKey(i) != m_entries[std::size_t(i - 1)].key;
    for (const Entry &e : m_entries) {
        if (!applies(*e.control))
            continue;
        auto *item = new QListWidgetItem(e.key, List1);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(e.flags[flags.front()] ? Qt::Checked : Qt::Unchecked);
    }
    const bool on = c->property(switchName(int(m_kind))).toBool();
    lblScaleControls->setText(QStringLiteral("%1 = %2 (Set on General Tab) ")
                                  .arg(QLatin1String(switchName(int(m_kind))), on ? u"True" : u"False"));
    m_filling = false;
    setLoaded();
}

ControlOptionsPage::Entry *ControlOptionsPage::entryFor(const QListWidgetItem *item)
{
    const auto it = item ? m_index.constFind(item->text()) : m_index.cend();
    return it == m_index.cend() ? nullptr : &m_entries[std::size_t(*it)];
}

ControlOptionsPage::Entry *ControlOptionsPage::currentEntry()
{
    return entryFor(List1->currentItem());
}

void ControlOptionsPage::currentChanged()
{
    const Entry *e = currentEntry();
    lblControlType->setText(e ? QString::fromStdString(e->control->typeName()) : QString());
}

void ControlOptionsPage::itemChecked(QListWidgetItem *item)
{
    if (Entry *e = entryFor(item)) {
        e->flags[pageFlags().front()] = item->checkState() == Qt::Checked;
        markChanged();
    }
}

void ControlOptionsPage::selectAll(bool on)
{
    m_filling = true;
    for (int i = 0; i < List1->count(); ++i) {
        QListWidgetItem *item = List1->item(i);
        item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        if (Entry *e = entryFor(item))
            e->flags[pageFlags().front()] = on;
    }
    m_filling = false;
    markChanged();
}

bool ControlOptionsPage::hasPendingChanges() const
{
    return isChanged() || m_tableOutdated;
}

void ControlOptionsPage::applyChanges()
{
    // A slot of the control's PropertyChanged may delete it.
    QPointer<VelmoraControl> c = control();
    if (!c)
        return;
    // The whole table is written again, one entry per control of the form
    // in the form's order. Every entry takes the switches its key holds
    // now (as other pages left them), and this page's own from the page:
    // so a control raised or lowered since, whose place in the order has
    // changed, keeps every option, and an entry whose control has gone is
    // dropped.
    auto *d = VelmoraControlPrivate::get(c);
    const std::vector<Flag> own = pageFlags();
    std::vector<std::array<bool, ControlFlagTable::FlagCount>> rows;
    rows.reserve(m_entries.size());
    for (const Entry &e : m_entries) {
        std::array<bool, ControlFlagTable::FlagCount> row{};
        if (const int i = c->entryOf(e.key))
            for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
                row[std::size_t(f)] = d->flag(f, i, nullptr);
        for (Flag f : own)
            row[f] = e.flags[f];
        rows.push_back(row);
    }
    c->setControlFlagCount(int(m_entries.size()));
    for (std::size_t n = 0; n < m_entries.size() && c; ++n) {
        const int i = int(n) + 1;
        c->setControlFlagControlKey(i, m_entries[n].key);
        for (int f = 0; f < ControlFlagTable::FlagCount && c; ++f)
            d->setFlag(f, i, rows[n][std::size_t(f)], nullptr);
    }
    m_tableOutdated = false;
    setChanged(false);
}

ScaleFonts::ScaleFonts(QWidget *parent)
    : ControlOptionsPage(Kind::Fonts, parent)
{
}

ScaleBorders::ScaleBorders(QWidget *parent)
    : ControlOptionsPage(Kind::Borders, parent)
{
}

ScaleGraphics::ScaleGraphics(QWidget *parent)
    : ControlOptionsPage(Kind::Graphics, parent)
{
}

} // namespace VelmoraPages
