// Velmora - font sizes written inside rich text follow the widget's font.
//
// Designer writes formatted label text as HTML with sizes of its own
// (<span style=" font-size:14pt;">); those win over the label's font, so
// they are scaled with it: a label's text is rewritten from its original,
// a text edit's document has the sizes of its character formats changed in
// place (its text, cursor and undo history stay). At the design font every
// text is its original again, byte for byte; text the application sets
// meanwhile becomes the new original.
#pragma once

#include <QString>

class QWidget;

namespace velmora::qt::RichText {

// `html` with every inline font size (font-size in pt or px) times `factor`:
// pixels whole, points to a hundredth. A factor of 1 gives it unchanged.
QString scaleSizes(const QString &html, double factor);

// Whether `widget` is of a kind whose rich text is followed.
bool follows(const QWidget *widget);

// After `widget`'s font became `factor` times its design font.
void followFont(QWidget *widget, double factor);

} // namespace velmora::qt::RichText
