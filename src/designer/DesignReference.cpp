#include "DesignReference.h"

#include "UntranslatedText.h"

#include "control/VelmoraControl.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

namespace velmora::designer::DesignReference {

void keep(QDesignerFormWindowInterface *form, QWidget *widget)
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

} // namespace velmora::designer::DesignReference
