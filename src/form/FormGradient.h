// Velmora - the gradient background of a form: 63 horizontal bands from a
// colour at the top, each 4 darker per channel than the one above.
#pragma once

#include <QPixmap>
#include <QSize>

#include <cstdint>

namespace velmora {

struct GradientChannels {
    int red = 0, green = 0, blue = 0;
    // A colour in the 0x00BBGGRR form of GradientColour; the high byte (a
    // system-colour marker) is dropped as it stands, not resolved.
    static GradientChannels fromColour(std::uint32_t colour);
};

class GradientBands {
public:
    static constexpr int Count = 63;

    // Bands for a form whose outer size is outerWidth x outerHeight twips:
    // each band as tall as the height / 63 rounded once (halves to even), so
    // the rounding adds up down the form.
    GradientBands(double outerWidthTwips, double outerHeightTwips, GradientChannels start);

    // Band k (from 0): its top and bottom in twips, and its colour.
    double top(int k) const { return k * m_band; }
    double bottom(int k) const { return (k + 1) * m_band; }
    GradientChannels colour(int k) const;

    // The bands drawn over a canvas of `pixels` (the form's client area);
    // what lies below it is cut off, and so is what they do not reach.
    QPixmap paint(const QSize &pixels) const;

private:
    double m_width, m_band;
    GradientChannels m_start;
};

} // namespace velmora
