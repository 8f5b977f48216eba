// Velmora - what an item view holds scales with the view, not only the view.
//
// A table's column widths follow the view's width; its row heights and a
// tree's indentation, a list's grid and spacing follow the view's font
// (they hold text). Taken when the layout is captured; exact again at the
// design size. A section the user or the application resized since the
// last pass keeps its new size as its design size, divided back.
#pragma once

#include <QPointer>
#include <QSize>

#include <map>
#include <memory>
#include <vector>

class QAbstractItemView;
class QHeaderView;
class QWidget;

namespace velmora::qt {

class ViewInterior {
public:
    // Nothing for a widget that is no item view.
    static std::unique_ptr<ViewInterior> capture(QWidget *w, double designPoints);

    // `points`: the size the view's font has (or is about to have).
    void follow(double points);

private:
    struct Sections {
        QPointer<QHeaderView> header;
        int defaultSize = 0, minimumSize = 0;
        std::map<int, int> sizes;   // logical index: design size, where not the default
        std::map<int, int> applied; // what the last pass gave them
        double factor = 1.0;        // of the last pass
        int lastDefault = 0, lastLength = -1; // what the last pass left
        bool byWidth = false;       // columns: by the view's width; rows: by its font
    };
    void followSections(Sections &s, double factor);

    QPointer<QAbstractItemView> m_view;
    QSize m_size;          // the view's, at design
    double m_points = 0;   // its font's, at design
    std::vector<Sections> m_sections;
    int m_indentation = -1;
    QSize m_grid;
    int m_spacing = -1;
};

} // namespace velmora::qt
