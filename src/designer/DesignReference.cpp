#include "DesignReference.h"

#include "UntranslatedText.h"

#include "control/VelmoraControl.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

namespace velmora::designer {

void DesignReference::install(QDesignerFormEditorInterface *core)
{
    new DesignReference(core);
}

DesignReference::DesignReference(QDesignerFormEditorInterface *core)
    : QObject(core)
{
    QDesignerFormWindowManagerInterface *manager = core->formWindowManager();
    for (int i = 0; i < manager->formWindowCount(); ++i)
        watch(manager->formWindow(i));
    connect(manager, &QDesignerFormWindowManagerInterface::formWindowAdded, this, &DesignReference::watch);
}

void DesignReference::watch(QDesignerFormWindowInterface *form)
{
    const auto keepAll = [form] {
        if (QWidget *root = form->mainContainer())
            for (VelmoraControl *c : root->findChildren<VelmoraControl *>())
                keep(form, c);
    };
    // A control dropped or pasted onto the form, and a form given contents
    // (opened from a file, reloaded, an undone deletion).
    connect(form, &QDesignerFormWindowInterface::widgetManaged, this,
            [form](QWidget *w) { keep(form, w); });
    connect(form, &QDesignerFormWindowInterface::mainContainerChanged, this, keepAll);
    connect(form, &QDesignerFormWindowInterface::changed, this, keepAll);
    keepAll();
}

void DesignReference::keep(QDesignerFormWindowInterface *form, QWidget *widget)
{
    if (!form || !qobject_cast<VelmoraControl *>(widget))
        return;
    auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(form->core()->extensionManager(), widget);
    if (!sheet)
        return;
    for (const char *name : {"DesignFormWidth", "DesignFormHeight", "DesignFormScaleWidth", "DesignFormScaleHeight"}) {
        const int index = sheet->indexOf(QLatin1String(name));
        if (index >= 0 && !sheet->isChanged(index))
            sheet->setChanged(index, true);
    }
    // A form written before texts were kept from translators has them
    // translatable: saved again, they are not.
    UntranslatedText::markAll(sheet);
}

} // namespace velmora::designer
