#include "SheetPropertyCommand.h"

#include "UntranslatedText.h"

#include <QtDesigner/QDesignerDynamicPropertySheetExtension>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

namespace velmora::designer {

namespace {

struct Sheets {
    QDesignerPropertySheetExtension *sheet = nullptr;
    QDesignerDynamicPropertySheetExtension *dynamic = nullptr;
    explicit operator bool() const { return sheet && dynamic; }

    bool isDynamic(const QString &name) const
    {
        const int index = sheet->indexOf(name);
        return index < 0 || dynamic->isDynamicProperty(index);
    }
    // The sheet keeps a removed dynamic property's index, hidden.
    int liveIndex(const QString &name) const
    {
        const int index = sheet->indexOf(name);
        if (index < 0 || (dynamic->isDynamicProperty(index) && !sheet->isVisible(index)))
            return -1;
        return index;
    }
};

Sheets sheetsOf(QDesignerFormWindowInterface *form, QWidget *widget)
{
    if (!form || !widget)
        return {};
    QExtensionManager *manager = form->core()->extensionManager();
    return {qt_extension<QDesignerPropertySheetExtension *>(manager, widget),
            qt_extension<QDesignerDynamicPropertySheetExtension *>(manager, widget)};
}

} // namespace

SheetPropertyCommand::SheetPropertyCommand(QDesignerFormWindowInterface *form, QWidget *widget, const QString &name,
                                           const QVariant &value)
    : m_form(form)
    , m_widget(widget)
    , m_name(name)
{
    m_before = state();
    m_after = {value, value.isValid()};
    setText(value.isValid() ? QStringLiteral("Set '%1'").arg(name) : QStringLiteral("Remove '%1'").arg(name));
}

QVariant SheetPropertyCommand::valueIn(QDesignerFormWindowInterface *form, QWidget *widget, const QString &name)
{
    const Sheets s = sheetsOf(form, widget);
    if (!s || s.liveIndex(name) < 0)
        return {};
    return widget->property(name.toLatin1().constData());
}

SheetPropertyCommand::State SheetPropertyCommand::state() const
{
    const Sheets s = sheetsOf(m_form, m_widget);
    const int index = s ? s.liveIndex(m_name) : -1;
    if (index < 0)
        return {};
    return {m_widget->property(m_name.toLatin1().constData()), s.sheet->isChanged(index)};
}

void SheetPropertyCommand::redo()
{
    set(m_after);
}

void SheetPropertyCommand::undo()
{
    set(m_before);
}

void SheetPropertyCommand::set(const State &state)
{
    const Sheets s = sheetsOf(m_form, m_widget);
    if (!s)
        return;
    int index = s.liveIndex(m_name);
    if (s.isDynamic(m_name)) {
        if (!state.value.isValid()) {
            if (index >= 0)
                s.dynamic->removeDynamicProperty(index);
        } else if (UntranslatedText::isText(m_name)) {
            UntranslatedText::setDynamicText(s.sheet, s.dynamic, m_name, state.value.toString());
        } else {
            if (index < 0)
                index = s.dynamic->addDynamicProperty(m_name, state.value);
            if (index >= 0) {
                s.sheet->setProperty(index, state.value);
                s.sheet->setChanged(index, true);
            }
        }
    } else if (index >= 0 && state.value.isValid()) {
        s.sheet->setProperty(index, state.value);
        s.sheet->setChanged(index, state.changed);
    }
    // The property editor lists dynamic properties as it found them.
    if (QDesignerPropertyEditorInterface *editor = m_form->core()->propertyEditor())
        if (editor->object() == m_widget)
            editor->setObject(m_widget);
}

} // namespace velmora::designer
