#include "form/SizeLimitHooks.h"

#include "qt/QtUnits.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmora {

namespace {

struct HookRow {
    QPointer<QWidget> window;
    const QWidget *key; // the window's address, to find rows of a window that is gone
    QSize minimum, maximum; // what this row holds the window to, in pixels
    QSize previousMinimum, previousMaximum; // what it found
};

std::vector<HookRow> &table()
{
    static std::vector<HookRow> rows;
    return rows;
}

int toPixels(int twips, qt::Axis axis)
{
    const double px = std::nearbyint(twips / qt::twipsPerPixel(axis));
    return int(qBound(0.0, px, double(QWIDGETSIZE_MAX)));
}

void forgetTheGone()
{
    auto &rows = table();
    rows.erase(std::remove_if(rows.begin(), rows.end(), [](const HookRow &r) { return r.window.isNull(); }),
               rows.end());
}

} // namespace

void SizeLimitHooks::hookWindow(QWidget *window, int minWidth, int minHeight, int maxWidth, int maxHeight)
{
    if (!window)
        return;
    forgetTheGone();
    HookRow row{window, window,
                QSize(toPixels(minWidth, qt::Axis::X), toPixels(minHeight, qt::Axis::Y)),
                QSize(toPixels(maxWidth, qt::Axis::X), toPixels(maxHeight, qt::Axis::Y)),
                window->minimumSize(), window->maximumSize()};
    window->setMinimumSize(row.minimum);
    window->setMaximumSize(row.maximum.expandedTo(row.minimum));
    table().push_back(row);
}

void SizeLimitHooks::unhookWindow(QWidget *window)
{
    forgetTheGone();
    auto &rows = table();
    for (auto it = rows.rbegin(); it != rows.rend(); ++it) {
        if (it->key != window)
            continue;
        window->setMinimumSize(it->previousMinimum);
        window->setMaximumSize(it->previousMaximum);
        rows.erase(std::next(it).base());
        return;
    }
}

void SizeLimitHooks::forgetWindow(const QWidget *window)
{
    auto &rows = table();
    rows.erase(std::remove_if(rows.begin(), rows.end(), [window](const HookRow &r) { return r.key == window; }),
               rows.end());
}

int SizeLimitHooks::rowsFor(const QWidget *window)
{
    forgetTheGone();
    return int(std::count_if(table().begin(), table().end(), [window](const HookRow &r) { return r.key == window; }));
}

} // namespace velmora
