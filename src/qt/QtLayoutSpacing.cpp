#include "qt/QtLayoutSpacing.h"

#include "qt/QtUnits.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLayout>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace velmora::qt {

namespace {

// The spacing a layout has between its items, and whether it set it
// itself. The style's default is asked for the common case of two
// default controls when the layout leaves it to the style per pair.
std::pair<int, int> spacingOf(QLayout *layout, bool &ownH, bool &ownV)
{
    int h = -1, v = -1;
    if (auto *grid = qobject_cast<QGridLayout *>(layout)) {
        h = grid->horizontalSpacing();
        v = grid->verticalSpacing();
    } else if (auto *form = qobject_cast<QFormLayout *>(layout)) {
        h = form->horizontalSpacing();
        v = form->verticalSpacing();
    } else {
        h = v = layout->spacing();
    }
    ownH = h >= 0;
    ownV = v >= 0;
    QWidget *w = layout->parentWidget();
    QStyle *style = w ? w->style() : nullptr;
    if (h < 0 && style)
        h = style->layoutSpacing(QSizePolicy::DefaultType, QSizePolicy::DefaultType, Qt::Horizontal, nullptr, w);
    if (v < 0 && style)
        v = style->layoutSpacing(QSizePolicy::DefaultType, QSizePolicy::DefaultType, Qt::Vertical, nullptr, w);
    return {h, v};
}

void collect(QLayout *layout, std::vector<QLayout *> &out)
{
    if (!layout)
        return;
    out.push_back(layout);
    for (int i = 0; i < layout->count(); ++i)
        if (QLayoutItem *item = layout->itemAt(i))
            collect(item->layout(), out);
}

int times(int length, double ratio)
{
    return ratio == 1.0 || length <= 0 ? length : std::max(0, int(std::lround(length * ratio)));
}

// A developer's container: Qt's widgets that lay out their own parts (a
// toolbar, a status bar, a calendar, a tool box ...) keep their layouts.
bool holdsDevelopersLayout(const QWidget *w)
{
    const QMetaObject *mo = w->metaObject();
    while (mo && mo->className()[0] != 'Q') // a class of the application's: what it is based on
        mo = mo->superClass();
    return mo == &QWidget::staticMetaObject || mo == &QFrame::staticMetaObject || mo == &QGroupBox::staticMetaObject;
}

} // namespace

std::unique_ptr<LayoutSpacing> LayoutSpacing::capture(QWidget *container)
{
    if (!container || !container->layout() || !holdsDevelopersLayout(container))
        return nullptr;
    auto s = std::unique_ptr<LayoutSpacing>(new LayoutSpacing);
    s->m_design = sizeOf(container);
    std::vector<QLayout *> layouts;
    collect(container->layout(), layouts);
    for (QLayout *l : layouts) {
        Item item;
        item.layout = l;
        item.margins = l->contentsMargins();
        std::tie(item.horizontal, item.vertical) = spacingOf(l, item.ownHorizontal, item.ownVertical);
        s->m_items.push_back(item);
    }
    return s;
}

void LayoutSpacing::follow(const QSize &size)
{
    if (m_design.width() <= 0 || m_design.height() <= 0 || size.width() < 0 || size.height() < 0)
        return;
    double ratio = std::min(double(size.width()) / m_design.width(), double(size.height()) / m_design.height());
    if (size == m_design)
        ratio = 1.0;
    if (ratio == m_ratio)
        return;
    m_ratio = ratio;
    for (const Item &item : m_items)
        apply(item, ratio);
}

void LayoutSpacing::apply(const Item &item, double ratio) const
{
    QLayout *l = item.layout;
    if (!l)
        return;
    const QMargins m(times(item.margins.left(), ratio), times(item.margins.top(), ratio),
                     times(item.margins.right(), ratio), times(item.margins.bottom(), ratio));
    if (l->contentsMargins() != m)
        l->setContentsMargins(m);
    // At the design size a spacing the style gave goes back to the style.
    const bool design = ratio == 1.0;
    const int h = design && !item.ownHorizontal ? -1 : times(item.horizontal, ratio);
    const int v = design && !item.ownVertical ? -1 : times(item.vertical, ratio);
    if (auto *grid = qobject_cast<QGridLayout *>(l)) {
        grid->setHorizontalSpacing(h);
        grid->setVerticalSpacing(v);
    } else if (auto *form = qobject_cast<QFormLayout *>(l)) {
        form->setHorizontalSpacing(h);
        form->setVerticalSpacing(v);
    } else if (auto *box = qobject_cast<QBoxLayout *>(l)) {
        box->setSpacing(box->direction() == QBoxLayout::LeftToRight || box->direction() == QBoxLayout::RightToLeft ? h : v);
    } else {
        l->setSpacing(h);
    }
}

} // namespace velmora::qt
