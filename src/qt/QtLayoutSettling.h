// Velmora - brings the geometry of layout-managed widgets up to date before
// it is read.
//
// Qt lays out lazily: a page of a tab or stacked widget that is not showing
// keeps whatever size it last had, and its layout has not run; a hidden
// splitter has not placed its panes. A group box laid out on such a page is
// still a legitimate container of absolutely placed children, and its size
// must be the one it will have when it shows.
#pragma once

class QWidget;

namespace velmora::qt {

// Every layout under `root`, hidden pages included.
void settleLayouts(QWidget *root);
// Only what decides `w`'s own geometry: its ancestors up to (not above) `top`.
void settleAncestors(QWidget *w, const QWidget *top);

} // namespace velmora::qt
