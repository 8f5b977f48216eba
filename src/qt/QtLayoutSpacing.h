// Velmora - the margins and spacing of a layout inside an absolutely placed
// container scale with the container.
//
// A group box placed by the form but holding a row laid out by Qt keeps
// its layout's margins and spacing otherwise: at 0.6x the row no longer
// fits, at 2x its widgets sit crowded in a large box. Taken when the layout
// is captured (the container's layout and the layouts nested in it), scaled
// by the container's smaller ratio, and exactly the design's again at the
// design size (spacing the style gave is the style's again).
#pragma once

#include <QMargins>
#include <QPointer>
#include <QSize>

#include <memory>
#include <vector>

class QLayout;
class QWidget;

namespace velmora::qt {

class LayoutSpacing {
public:
    // Nothing for a widget without a layout.
    static std::unique_ptr<LayoutSpacing> capture(QWidget *container);

    // The container is about to be `size` (the design size it was captured at, times its ratios).
    void follow(const QSize &size);

private:
    struct Item {
        QPointer<QLayout> layout;
        QMargins margins;
        int horizontal = -1, vertical = -1; // effective spacing at design
        bool ownHorizontal = false, ownVertical = false; // set on the layout, not the style's
    };
    void apply(const Item &item, double ratio) const;

    QSize m_design;
    double m_ratio = 1.0;
    std::vector<Item> m_items;
};

} // namespace velmora::qt
