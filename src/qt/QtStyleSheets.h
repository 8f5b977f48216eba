// Velmora - style sheets scaled with the form.
//
// Pixel lengths that sheets give (padding, min-width, border widths ...)
// scale with the form, and so do their font sizes, sub-control and
// pseudo-state rules and the inner parts of Qt's widgets (a tab widget's
// bar, a view's headers) included: every own sheet of the form's window is
// rewritten from its original text.
//
// A widget whose own font must still come out differently (its edges or
// its font are locked, or rounding differs) gets the size the resize pass
// gives it pinned in its own sheet: its original text, then one rule that
// matches only the widget (a dynamic property the widget alone carries)
// and sets the size. A widget's own sheet wins over every inherited one.
//
// At the design size, and whenever nothing is pinned or scaled, a widget's
// sheet is its original text again, exactly. A sheet the application sets
// meanwhile becomes the widget's new original. Forms without style sheets
// never reach this code beyond one size comparison per font write.
#pragma once

#include <QPointer>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QFont;
class QRegularExpression;
class QRegularExpressionMatch;
class QWidget;

namespace velmora::qt {

namespace StyleSheets {

// `sheet` with every length in px multiplied by `factor` (rounded to whole
// pixels; a length of at least 1px stays at least 1px), and every font size
// (px or pt, in font and font-size) by `fontFactor`; nothing in comments,
// strings and url(...). Factors of 1 give the text unchanged.
QString scaleLengths(const QString &sheet, double factor, double fontFactor = 1.0);

// `text` with each match of `re` replaced by what `by` makes of it.
QString replaced(const QString &text, const QRegularExpression &re,
                 const std::function<QString(const QRegularExpressionMatch &)> &by);
// A font size of `unit` ("px" or "pt") times `factor`, as sheets and rich
// text are written: whole pixels (as Qt reads them), points to a hundredth.
QString scaledFontSize(double size, const QString &unit, double factor);

// Whether `sheet` is a bare list of declarations (no rule braces), as a
// widget's own sheet may be.
bool isBare(const QString &sheet);
// Whether `sheet` ends outside every comment, string, rule and bracket:
// text written after it is read on its own.
bool isClosed(const QString &sheet);

// After `font` was set on `widget`: pins the size where a style sheet
// overrode it, lifts the pin once the size is the one the sheet gives.
// `designPoints`, the widget's design size where known, lets a scaling
// font take the scaled sheet's size when it is within rounding.
void followFont(QWidget *widget, const QFont &font, double designPoints = 0);

// Lifts every pin in `window` (the form is at its design size).
void dropPins(QWidget *window);

// The property that marks a widget whose font size is pinned.
constexpr const char *PinProperty = "velmoraFontPin";

} // namespace StyleSheets

// The own sheets of one form's window, for the pass to scale.
class FormStyleSheets {
public:
    // Takes the sheets as they stand as the layout's: what the form shows
    // now is the reference (after a Reset, scaled sheets stay as they are).
    void capture(QWidget *form);
    // Lengths at `factor` times the captured ones, font sizes at
    // `fontFactor` times. True when a sheet changed.
    bool scale(double factor, double fontFactor);
    bool empty() const { return m_widgets.empty(); }

private:
    std::vector<QPointer<QWidget>> m_widgets;
    std::vector<QPointer<QWidget>> m_holders; // the form and its ancestors up to the window
    // Each one's lengths at capture, relative to its original sheet.
    std::vector<double> m_bases, m_fontBases;
};

} // namespace velmora::qt
