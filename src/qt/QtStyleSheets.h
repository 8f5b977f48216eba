// Velmora - style sheets scaled with the form.
//
// A font size that a style sheet sets (on the widget, or on an ancestor:
// "QLabel { font: 10pt; }" on a main window) wins over QWidget::setFont, so
// the size the resize pass gives such a widget is pinned in the widget's
// own sheet instead: its original text, then one rule that matches only the
// widget (a dynamic property the widget alone carries) and sets the size.
// A widget's own sheet wins over every inherited one, so the pin decides.
//
// Pixel lengths that sheets give (padding, min-width, border widths ...,
// never font sizes: those follow the pins) scale with the form: every own
// sheet of the form's window is rewritten from its original text.
//
// At the design size, and whenever nothing is pinned or scaled, a widget's
// sheet is its original text again, exactly. A sheet the application sets
// meanwhile becomes the widget's new original. Forms without style sheets
// never reach this code beyond one size comparison per font write.
#pragma once

#include <QPointer>
#include <QString>

#include <optional>
#include <vector>

class QFont;
class QWidget;

namespace velmora::qt {

namespace StyleSheets {

// `sheet` with every length in px multiplied by `factor` (rounded to whole
// pixels; a length of at least 1px stays at least 1px), except in font
// declarations, comments, strings and url(...). A factor of 1 gives the
// text unchanged.
QString scaleLengths(const QString &sheet, double factor);

// Whether `sheet` is a bare list of declarations (no rule braces), as a
// widget's own sheet may be.
bool isBare(const QString &sheet);
// Whether `sheet` ends outside every comment, string, rule and bracket:
// text written after it is read on its own.
bool isClosed(const QString &sheet);

// After `font` was set on `widget`: pins the size where a style sheet
// overrode it, lifts the pin once the size is the one the sheet gives.
void followFont(QWidget *widget, const QFont &font);

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
    // Lengths at `factor` times the captured ones. True when a sheet changed.
    bool scale(double factor);
    bool empty() const { return m_widgets.empty(); }

private:
    std::vector<QPointer<QWidget>> m_widgets;
    std::vector<QPointer<QWidget>> m_holders; // the form and its ancestors up to the window
    // Each one's lengths at capture, relative to its original sheet.
    std::vector<double> m_bases;
};

} // namespace velmora::qt
