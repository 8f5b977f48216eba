#include "form/WipeEffect.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

int px(double v)
{
    return int(std::nearbyint(v)); // halves to even
}

// A rectangle by its corners, the far ones outside it, as a window region
// is given; empty when they cross.
QRect corners(double x1, double y1, double x2, double y2)
{
    return QRect(px(x1), px(y1), px(x2) - px(x1), px(y2) - px(y1));
}

} // namespace

WipeEffect::WipeEffect(bool opening, int kind, const QRect &window, double seconds)
    : m_opening(opening)
    , m_kind(kind)
{
    // However it was asked for: a wipe nobody can wait for is no wipe.
    seconds = seconds > 0 ? std::min(seconds, MaxSeconds) : 0;
    m_steps = seconds > 0 ? qMax(1, px(seconds * 18)) : 100;
    const double w = window.width(), h = window.height();
    m_stepX = w / m_steps;
    m_stepY = h / m_steps;
    m_stepT = (seconds > 0 ? seconds : 0) / m_steps;
    m_right = window.x() + w;
    m_bottom = window.y() + h;
    m_stripL = m_steps * m_stepX / 2 - (w / 10) / 2;
    m_stripR = m_steps * m_stepX / 2 + (w / 10) / 2;
}

std::optional<QRect> WipeEffect::region(int i) const
{
    const double n = m_steps, sx = m_stepX, sy = m_stepY;
    if (m_opening) {
        switch (m_kind) {
        case WipeLeft:
            return corners((n - i) * sx, 0, m_right, m_bottom);
        case WipeRight:
            return corners(0, 0, i * sx, m_bottom);
        case WipeUp:
            return corners(0, (n - i) * sy, m_right, m_bottom);
        case WipeDown:
            return corners(0, 0, m_right, i * sy);
        case WipeVertical:
            return corners(n * sx / 2 - i * sx / 2, 0, i * sx / 2 + n * sx / 2, m_bottom);
        case WipeHorizontal:
            return corners(0, n * sy / 2 - i * sy / 2, m_right, i * sy / 2 + n * sy / 2);
        case Fold:
            if (i < n / 2)
                return corners(m_stripL, n / 2 * sy - i * sy, m_stripR, i * sy + n / 2 * sy);
            if ((n - i) * sx < m_stripL)
                return corners((n - i) * sx, 0, i * sx, m_bottom);
            return std::nullopt;
        default:
            return std::nullopt;
        }
    }
    switch (m_kind) {
    case WipeLeft:
        return corners(0, 0, (n - i) * sx, m_bottom);
    case WipeRight:
        return corners(i * sx, 0, m_right, m_bottom);
    case WipeUp:
        return corners(0, 0, m_right, (n - i) * sy);
    case WipeDown:
        return corners(0, i * sy, m_right, m_bottom);
    case WipeVertical:
        return corners(i * sx / 2, 0, (n - i) * sx + i * sx / 2, m_bottom);
    case WipeHorizontal:
        return corners(0, i * sy / 2, m_right, (n - i) * sy + i * sy / 2);
    case Fold:
        if (i < n / 2)
            return i * sx < m_stripL ? std::optional<QRect>(corners(i * sx, 0, (n - i) * sx, m_bottom))
                                     : std::nullopt;
        return corners(m_stripL, (i - n / 2) * sy, m_stripR, (n - (i - n / 2)) * sy);
    default:
        return std::nullopt;
    }
}

void WipeEffect::play(const std::function<void(const QRect &)> &apply, const std::function<bool()> &idle) const
{
    // A monotonic clock: the wipe keeps its pace across midnight and clock changes.
    QElapsedTimer clock;
    clock.start();
    const auto now = [&] { return clock.nsecsElapsed() / 1e9; };
    double last = 0;
    const double time = m_stepT * m_steps;
    for (int i = 1; i <= m_steps; ++i) {
        // Drawn at its moment, or one step after the last, whichever comes first.
        while (time != 0 && last + m_stepT >= now() && i * m_stepT >= now())
            if (!idle())
                return;
        if (const auto r = region(i))
            apply(*r);
        last = now();
        if (!idle())
            return;
    }
}

} // namespace velmora
