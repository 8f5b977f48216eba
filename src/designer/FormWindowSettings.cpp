#include "FormWindowSettings.h"

#include "SheetPropertyCommand.h"
#include "UntranslatedText.h"

#include "control/VelmoraControl.h"

#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

#include <QMetaProperty>
#include <QUndoStack>

namespace velmora::designer::FormWindowSettings {

namespace {

// The indexed keys of one entry: the control key, then the ten switches.
const char *const EntryKeys[] = {
    "ControlFlagControlKey",     "ControlFlagDontScaleControl", "ControlFlagDontScaleFont",
    "ControlFlagDontScaleBorder", "ControlFlagDontScaleGraphic", "ControlFlagDontScaleLeft",
    "ControlFlagDontScaleTop",   "ControlFlagDontScaleWidth",   "ControlFlagDontScaleHeight",
    "ControlFlagDontScaleRight", "ControlFlagDontScaleBottom",
};

// Entry `index` of `c` under one of the keys above; a default value (an
// empty key, a switch that is off) comes back invalid, as the form leaves
// it out.
QVariant entryValue(const VelmoraControl &c, int key, int index)
{
    if (index > c.ControlFlagCount())
        return {};
    if (key == 0) {
        const QString text = c.ControlFlagControlKey(index);
        return text.isEmpty() ? QVariant() : QVariant(text);
    }
    using Getter = bool (VelmoraControl::*)(int, bool *) const;
    static const Getter getters[] = {
        &VelmoraControl::ControlFlagDontScaleControl, &VelmoraControl::ControlFlagDontScaleFont,
        &VelmoraControl::ControlFlagDontScaleBorder,  &VelmoraControl::ControlFlagDontScaleGraphic,
        &VelmoraControl::ControlFlagDontScaleLeft,    &VelmoraControl::ControlFlagDontScaleTop,
        &VelmoraControl::ControlFlagDontScaleWidth,   &VelmoraControl::ControlFlagDontScaleHeight,
        &VelmoraControl::ControlFlagDontScaleRight,   &VelmoraControl::ControlFlagDontScaleBottom,
    };
    return (c.*getters[key - 1])(index, nullptr) ? QVariant(true) : QVariant();
}

class Change {
public:
    Change(QDesignerFormWindowInterface *form, VelmoraControl *target)
        : m_form(form)
        , m_target(target)
    {
    }
    ~Change()
    {
        if (m_open)
            m_form->commandHistory()->endMacro();
    }
    bool changed() const { return m_open; }

    // A setting the property editor shows.
    void setProperty(const char *name, const QVariant &value)
    {
        begin();
        m_form->cursor()->setWidgetProperty(m_target, QLatin1String(name), value);
    }
    // One it hides, or a dynamic one.
    void setThroughSheet(const QString &name, const QVariant &value)
    {
        if (SheetPropertyCommand::valueIn(m_form, m_target, name) == value)
            return;
        begin();
        m_form->commandHistory()->push(new SheetPropertyCommand(m_form, m_target, name, value));
    }

private:
    void begin()
    {
        if (m_open)
            return;
        m_open = true;
        m_form->commandHistory()->beginMacro(
            QStringLiteral("Change Velmora properties of '%1'").arg(m_target->objectName()));
    }

    QDesignerFormWindowInterface *m_form;
    VelmoraControl *m_target;
    bool m_open = false;
};

} // namespace

bool write(QDesignerFormWindowInterface *form, VelmoraControl *target, const VelmoraControl &edited)
{
    if (!form || !target)
        return false;
    Change change(form, target);
    // The settings, in their published order.
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i) {
        const QMetaProperty p = mo.property(i);
        const QByteArray name = p.name();
        if (!p.isDesignable())
            continue; // the count below; the design sizes are the form's
        const QVariant want = p.read(&edited);
        if (p.read(target) != want)
            change.setProperty(name.constData(), want);
    }
    // The per-control options: a growing count first, so that the entries
    // land within it; a shrinking one last, once the entries beyond it are
    // gone from the form.
    const int before = target->ControlFlagCount(), after = edited.ControlFlagCount();
    if (after > before)
        change.setThroughSheet(QStringLiteral("ControlFlagCount"), after);
    for (int index = 1; index <= qMax(before, after); ++index)
        for (int key = 0; key < int(std::size(EntryKeys)); ++key)
            change.setThroughSheet(QLatin1String(EntryKeys[key]) + QString::number(index), entryValue(edited, key, index));
    if (after < before)
        change.setThroughSheet(QStringLiteral("ControlFlagCount"), after);
    // The cursor writes a text as translatable; the component's are not.
    UntranslatedText::markAll(qt_extension<QDesignerPropertySheetExtension *>(form->core()->extensionManager(), target));
    return change.changed();
}

} // namespace velmora::designer::FormWindowSettings
