#include "qt/QtViewInterior.h"

#include "qt/QtUnits.h"

#include <QHeaderView>
#include <QListView>
#include <QTableView>
#include <QTreeView>

#include <algorithm>
#include <cmath>

namespace velmora::qt {

namespace {

// Sections the header sizes itself (stretched, fitted to their contents)
// are the header's to place.
bool sizedByHand(const QHeaderView *h, int logical)
{
    if (h->isSectionHidden(logical))
        return false;
    if (h->stretchLastSection() && h->visualIndex(logical) == h->count() - 1)
        return false;
    const auto mode = h->sectionResizeMode(logical);
    return mode == QHeaderView::Interactive || mode == QHeaderView::Fixed;
}

int times(int length, double factor)
{
    return factor == 1.0 ? length : std::max(1, int(std::lround(length * factor)));
}

} // namespace

std::unique_ptr<ViewInterior> ViewInterior::capture(QWidget *w, double designPoints)
{
    auto *view = qobject_cast<QAbstractItemView *>(w);
    if (!view || !(designPoints > 0))
        return nullptr;
    auto v = std::unique_ptr<ViewInterior>(new ViewInterior);
    v->m_view = view;
    v->m_size = sizeOf(view);
    v->m_points = designPoints;
    const auto take = [&](QHeaderView *h, bool byWidth) {
        if (!h)
            return;
        Sections s;
        s.header = h;
        s.byWidth = byWidth;
        s.defaultSize = h->defaultSectionSize();
        s.minimumSize = h->minimumSectionSize();
        for (int i = 0; i < h->count(); ++i)
            if (sizedByHand(h, i) && (byWidth || h->sectionSize(i) != s.defaultSize))
                s.sizes[i] = s.applied[i] = h->sectionSize(i);
        v->m_sections.push_back(std::move(s));
    };
    if (auto *table = qobject_cast<QTableView *>(view)) {
        take(table->horizontalHeader(), true);
        take(table->verticalHeader(), false);
    } else if (auto *tree = qobject_cast<QTreeView *>(view)) {
        take(tree->header(), true);
        v->m_indentation = tree->indentation();
    } else if (auto *list = qobject_cast<QListView *>(view)) {
        v->m_grid = list->gridSize();
        v->m_spacing = list->spacing();
    }
    return v;
}

void ViewInterior::follow(double points)
{
    QAbstractItemView *view = m_view;
    if (!view || !(points > 0))
        return;
    double byFont = points / m_points;
    if (std::abs(byFont - 1.0) < 1e-6)
        byFont = 1.0; // the design font, read back through a float
    const QSize now = sizeOf(view);
    const double byWidth = now == m_size || m_size.width() <= 0 ? 1.0 : double(now.width()) / m_size.width();
    for (Sections &s : m_sections)
        followSections(s, s.byWidth ? byWidth : byFont);
    if (auto *tree = qobject_cast<QTreeView *>(view); tree && m_indentation >= 0) {
        const int indentation = times(m_indentation, byFont);
        if (tree->indentation() != indentation)
            tree->setIndentation(indentation);
    } else if (auto *list = qobject_cast<QListView *>(view)) {
        if (m_grid.isValid()) {
            const QSize grid(times(m_grid.width(), byFont), times(m_grid.height(), byFont));
            if (list->gridSize() != grid)
                list->setGridSize(grid);
        }
        if (m_spacing > 0 && list->spacing() != times(m_spacing, byFont))
            list->setSpacing(times(m_spacing, byFont));
    }
}

void ViewInterior::followSections(Sections &s, double factor)
{
    QHeaderView *h = s.header;
    if (!h)
        return;
    // Sections resized since the last pass: their new size is their design
    // size at this pass's factor.
    const auto rebase = [&](int logical) {
        s.sizes[logical] = std::max(1, int(std::lround(h->sectionSize(logical) / s.factor)));
    };
    if (s.byWidth) {
        for (const auto &[logical, size] : s.applied)
            if (logical < h->count() && h->sectionSize(logical) != size && sizedByHand(h, logical))
                rebase(logical);
    } else if (s.lastDefault > 0 && h->length() != s.lastLength) {
        // Rows: any of them, most at the default size.
        for (int i = 0; i < h->count(); ++i) {
            const auto it = s.applied.find(i);
            if (h->sectionSize(i) != (it != s.applied.end() ? it->second : s.lastDefault) && sizedByHand(h, i))
                rebase(i);
        }
    }
    s.factor = factor;
    // A lower minimum before the default (which it would clamp), a higher
    // one after it.
    const int minimum = times(s.minimumSize, factor);
    if (minimum < h->minimumSectionSize())
        h->setMinimumSectionSize(minimum);
    if (!s.byWidth) {
        // Every row takes the default; the ones sized apart follow below.
        const int rows = times(s.defaultSize, factor);
        if (h->defaultSectionSize() != rows)
            h->setDefaultSectionSize(rows);
    }
    if (h->minimumSectionSize() != minimum)
        h->setMinimumSectionSize(minimum);
    s.applied.clear();
    for (const auto &[logical, size] : s.sizes) {
        if (logical >= h->count() || !sizedByHand(h, logical))
            continue;
        const int wanted = times(size, factor);
        if (h->sectionSize(logical) != wanted)
            h->resizeSection(logical, wanted);
        s.applied[logical] = h->sectionSize(logical);
    }
    s.lastDefault = h->defaultSectionSize();
    s.lastLength = h->length();
}

} // namespace velmora::qt
