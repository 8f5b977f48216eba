#include "RenameFollower.h"

#include "UntranslatedText.h"

#include "control/VelmoraControl.h"

#include <QtDesigner/QDesignerDynamicPropertySheetExtension>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

namespace velmora::designer {

namespace {

// The key the component files a widget under: its name, and its "(Index)"
// when it is an element of a control array.
QString keyOf(const QObject *widget, const QString &name)
{
    bool ok = false;
    const int index = widget->property("Index").toInt(&ok);
    return ok && index >= 0 ? QStringLiteral("%1(%2)").arg(name).arg(index) : name;
}

} // namespace

RenameFollower::RenameFollower(QObject *parent)
    : QObject(parent)
{
}

void RenameFollower::watch(QWidget *widget)
{
    if (!widget || m_names.contains(widget))
        return;
    m_names.insert(widget, widget->objectName());
    connect(widget, &QObject::objectNameChanged, this, [this, widget] { renamed(widget); });
    connect(widget, &QObject::destroyed, this, [this](QObject *gone) { m_names.remove(gone); });
}

void RenameFollower::renamed(QWidget *widget)
{
    const QString before = m_names.value(widget), after = widget->objectName();
    m_names.insert(widget, after);
    if (before.isEmpty() || before == after)
        return;
    QDesignerFormWindowInterface *form = QDesignerFormWindowInterface::findFormWindow(widget);
    QWidget *root = form ? form->mainContainer() : nullptr;
    if (!root)
        return;
    const QString oldKey = keyOf(widget, before), newKey = keyOf(widget, after);
    // A widget of the form that still answers to the old key keeps the
    // entries (a pasted copy is renamed away from its original's name).
    for (QWidget *w : root->findChildren<QWidget *>())
        if (w != widget && form->isManaged(w) && keyOf(w, w->objectName()) == oldKey)
            return;
    QExtensionManager *manager = form->core()->extensionManager();
    for (VelmoraControl *c : root->findChildren<VelmoraControl *>()) {
        auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(manager, c);
        auto *dynamic = qt_extension<QDesignerDynamicPropertySheetExtension *>(manager, c);
        if (!sheet || !dynamic)
            continue;
        bool any = false;
        for (int i = 1; i <= c->ControlFlagCount(); ++i) {
            if (c->ControlFlagControlKey(i) != oldKey)
                continue;
            // Through the sheet, so that the form saves it; the component
            // reads its entry from the property.
            any = UntranslatedText::setDynamicText(sheet, dynamic, QStringLiteral("ControlFlagControlKey%1").arg(i),
                                                   newKey) >= 0
                || any;
        }
        if (any)
            if (QDesignerPropertyEditorInterface *editor = form->core()->propertyEditor())
                if (editor->object() == c)
                    editor->setObject(c);
    }
}

} // namespace velmora::designer
