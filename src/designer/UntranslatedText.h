// Velmora - the texts of a VelmoraControl in Qt Designer (control keys,
// WindowName, ReplaceFontsWith) saved as not translatable: names of
// controls and windows and a font family are nothing for a translator,
// and uic would otherwise wrap them in translate().
#pragma once

class QDesignerDynamicPropertySheetExtension;
class QDesignerPropertySheetExtension;
class QString;

namespace velmora::designer::UntranslatedText {

// Marks the string property at `index` of `sheet` not translatable; a
// property that holds no text is left alone.
void mark(QDesignerPropertySheetExtension *sheet, int index);
// Gives the dynamic text property `name` the value `text`, adding it when
// the sheet has none, saved and marked not translatable; returns its index.
int setDynamicText(QDesignerPropertySheetExtension *sheet, QDesignerDynamicPropertySheetExtension *dynamic,
                   const QString &name, const QString &text);
// The same for every text setting and control key the sheet holds.
void markAll(QDesignerPropertySheetExtension *sheet);
// Whether a property of the component is one of those texts.
bool isText(const QString &name);

} // namespace velmora::designer::UntranslatedText
