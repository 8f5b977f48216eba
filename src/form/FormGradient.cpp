#include "form/FormGradient.h"

#include "qt/QtUnits.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velmora {

using qt::Axis;

GradientChannels GradientChannels::fromColour(std::uint32_t colour)
{
    return {int(colour & 0xFF), int((colour & 0xFF00) >> 8), int((colour & 0xFF0000) >> 16)};
}

GradientBands::GradientBands(double outerWidthTwips, double outerHeightTwips, GradientChannels start)
    : m_width(outerWidthTwips)
    , m_band(std::nearbyint(outerHeightTwips / Count)) // the default rounding: halves to even
    , m_start(start)
{
}

GradientChannels GradientBands::colour(int k) const
{
    // Down by 4 a band; a channel below 1 is 0 from then on.
    const auto step = [k](int start) {
        int c = start;
        for (int i = 0; i < k; ++i)
            c = c - 4 < 1 ? 0 : c - 4;
        return c;
    };
    return {step(m_start.red), step(m_start.green), step(m_start.blue)};
}

QPixmap GradientBands::paint(const QSize &pixels) const
{
    QPixmap canvas(pixels.expandedTo(QSize(1, 1)));
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    const int right = qt::unitsToPixels(m_width, qt::ScaleTwips, Axis::X);
    for (int k = 0; k < Count; ++k) {
        const int y0 = qt::unitsToPixels(top(k), qt::ScaleTwips, Axis::Y);
        const int y1 = qt::unitsToPixels(bottom(k), qt::ScaleTwips, Axis::Y);
        if (y0 >= canvas.height())
            break;
        const GradientChannels c = colour(k);
        // The box includes its far edge, as a filled box drawn in the form does.
        painter.fillRect(QRect(QPoint(0, y0), QPoint(right, y1)), QColor(c.red, c.green, c.blue));
    }
    return canvas;
}

} // namespace velmora
