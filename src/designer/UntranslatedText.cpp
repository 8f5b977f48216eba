#include "UntranslatedText.h"

#include <QtDesigner/QDesignerDynamicPropertySheetExtension>
#include <QtDesigner/QDesignerPropertySheetExtension>

#include <QMetaType>
#include <QVariant>

namespace velmora::designer::UntranslatedText {

namespace {

// Designer keeps a text property as its own value type, whose first member
// is the "translatable" mark (the property editor's check box). No public
// interface sets it, so the mark is set where the type keeps it, and only
// for that type, found by its registered name.
constexpr char StringValueType[] = "qdesigner_internal::PropertySheetStringValue";

} // namespace

bool isText(const QString &name)
{
    return name == QLatin1String("WindowName") || name == QLatin1String("ReplaceFontsWith")
        || name.startsWith(QLatin1String("ControlFlagControlKey"));
}

void mark(QDesignerPropertySheetExtension *sheet, int index)
{
    if (!sheet || index < 0)
        return;
    QVariant value = sheet->property(index);
    const QMetaType type = value.metaType();
    if (!type.isValid() || qstrcmp(type.name(), StringValueType) != 0 || type.sizeOf() <= qsizetype(sizeof(bool)))
        return;
    bool *translatable = static_cast<bool *>(value.data());
    if (!*translatable)
        return;
    *translatable = false;
    const bool changed = sheet->isChanged(index);
    sheet->setProperty(index, value);
    sheet->setChanged(index, changed);
}

int setDynamicText(QDesignerPropertySheetExtension *sheet, QDesignerDynamicPropertySheetExtension *dynamic,
                   const QString &name, const QString &text)
{
    if (!sheet || !dynamic)
        return -1;
    // A dynamic text holds Designer's text type (and with it the mark) only
    // as added; a value set on it later replaces the type by a plain
    // string. Added again, it keeps its place among the properties.
    int index = sheet->indexOf(name);
    if (index >= 0 && dynamic->isDynamicProperty(index) && sheet->isVisible(index))
        dynamic->removeDynamicProperty(index);
    index = dynamic->addDynamicProperty(name, text);
    if (index < 0)
        return -1;
    sheet->setChanged(index, true);
    mark(sheet, index);
    return index;
}

void markAll(QDesignerPropertySheetExtension *sheet)
{
    if (!sheet)
        return;
    for (int i = 0; i < sheet->count(); ++i)
        if (isText(sheet->propertyName(i)))
            mark(sheet, i);
}

} // namespace velmora::designer::UntranslatedText
