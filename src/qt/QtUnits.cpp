#include "qt/QtUnits.h"

#include <QWidget>

#include <algorithm>

#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <limits>

namespace velmora::qt {

QSize sizeOf(const QWidget *w)
{
    if (!w)
        return {};
    const QRect g = w->geometry();
    const auto side = [](qint64 from, qint64 to) { return int(std::clamp<qint64>(to - from + 1, 0, QWIDGETSIZE_MAX)); };
    return QSize(side(g.left(), g.right()), side(g.top(), g.bottom()));
}

double twipsPerPixel(Axis axis)
{
    constexpr double fallbackDpi = 96.0;
    double dpi = fallbackDpi;
    if (QGuiApplication::instance()) {
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            dpi = axis == Axis::X ? screen->logicalDotsPerInchX() : screen->logicalDotsPerInchY();
    }
    if (!(dpi > 0))
        dpi = fallbackDpi;
    return 1440.0 / dpi;
}

double twipsPerUnit(int mode, Axis axis)
{
    switch (mode) {
    case ScaleTwips:
        return 1.0;
    case ScalePoints:
        return 20.0;
    case ScalePixels:
        return twipsPerPixel(axis);
    case ScaleCharacters:
        return axis == Axis::X ? 120.0 : 240.0;
    case ScaleInches:
        return 1440.0;
    case ScaleMillimeters:
        return 1440.0 / 25.4;
    case ScaleCentimeters:
        return 14400.0 / 25.4;
    default:
        return 0.0;
    }
}

bool isValidScaleMode(int mode)
{
    return twipsPerUnit(mode, Axis::X) > 0.0;
}

bool convertUnits(double value, int from, int to, Axis axis, double &out)
{
    const double f = twipsPerUnit(from, axis);
    const double t = twipsPerUnit(to, axis);
    if (f <= 0.0 || t <= 0.0)
        return false;
    out = from == to ? value : value * f / t;
    return true;
}

UnitScale UnitScale::of(int mode)
{
    UnitScale s;
    s.mode = mode;
    for (const Axis a : {Axis::X, Axis::Y}) {
        s.perUnit[int(a)] = twipsPerUnit(mode, a);
        s.perPixel[int(a)] = twipsPerPixel(a);
    }
    return s;
}

double UnitScale::toUnits(int pixels, Axis axis) const
{
    if (mode == ScalePixels)
        return pixels;
    const double unit = perUnit[int(axis)];
    return unit > 0.0 ? pixels * perPixel[int(axis)] / unit : 0.0;
}

int UnitScale::toPixels(double units, Axis axis, bool *ok) const
{
    const double unit = perUnit[int(axis)];
    const double px = mode == ScalePixels ? units : units * unit / perPixel[int(axis)];
    const bool valid = unit > 0.0 && std::isfinite(px) && std::fabs(px) < std::numeric_limits<int>::max() / 2;
    if (ok)
        *ok = valid;
    return valid ? static_cast<int>(std::nearbyint(px)) : 0;
}

double pixelsToUnits(int pixels, int mode, Axis axis)
{
    return UnitScale::of(mode).toUnits(pixels, axis);
}

int unitsToPixels(double units, int mode, Axis axis, bool *ok)
{
    return UnitScale::of(mode).toPixels(units, axis, ok);
}

} // namespace velmora::qt
