// Velmora - units of the host model on Qt: twips (1/1440 inch) measured
// against the primary screen's logical DPI, and the form scale modes.
#pragma once

#include <QSize>
#include <QtGlobal>

class QWidget;

namespace velmora::qt {

enum class Axis { X, Y };

// The form scale modes a form may declare in its "ScaleMode" property.
enum ScaleModeCode {
    ScaleTwips = 1,
    ScalePoints = 2,
    ScalePixels = 3,
    ScaleCharacters = 4,
    ScaleInches = 5,
    ScaleMillimeters = 6,
    ScaleCentimeters = 7
};

// A widget's size read wide: a geometry from a file can have its far edge
// past what an int holds, where QWidget::size() would overflow.
QSize sizeOf(const QWidget *w);

// 1440 / the primary screen's logical DPI (15 at 96 dpi).
double twipsPerPixel(Axis axis);
// How many twips one unit of `mode` is; 0 for an unknown mode.
double twipsPerUnit(int mode, Axis axis);
bool isValidScaleMode(int mode);

// value in `from` units expressed in `to` units; false for unknown modes.
bool convertUnits(double value, int from, int to, Axis axis, double &out);

// Pixels <-> units of `mode`. Rounding to pixels takes halves to even.
double pixelsToUnits(int pixels, int mode, Axis axis);
int unitsToPixels(double units, int mode, Axis axis, bool *ok = nullptr);

// The same conversions with the factors read once: a pass converts
// thousands of lengths against one screen and one ScaleMode.
struct UnitScale {
    int mode = ScaleTwips;
    double perUnit[2] = {1.0, 1.0};   // twips per unit, X and Y
    double perPixel[2] = {15.0, 15.0}; // twips per pixel, X and Y

    static UnitScale of(int mode);
    double toUnits(int pixels, Axis axis) const;
    int toPixels(double units, Axis axis, bool *ok = nullptr) const;
};

} // namespace velmora::qt
