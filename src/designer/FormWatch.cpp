#include "FormWatch.h"

#include "DesignReference.h"
#include "RenameFollower.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>

namespace velmora::designer {

void FormWatch::install(QDesignerFormEditorInterface *core)
{
    new FormWatch(core);
}

FormWatch::FormWatch(QDesignerFormEditorInterface *core)
    : QObject(core)
    , m_renames(new RenameFollower(this))
{
    QDesignerFormWindowManagerInterface *manager = core->formWindowManager();
    for (int i = 0; i < manager->formWindowCount(); ++i)
        watch(manager->formWindow(i));
    connect(manager, &QDesignerFormWindowManagerInterface::formWindowAdded, this, &FormWatch::watch);
}

void FormWatch::watch(QDesignerFormWindowInterface *form)
{
    const auto seeAll = [this, form] {
        if (QWidget *root = form->mainContainer())
            for (QWidget *w : root->findChildren<QWidget *>())
                if (form->isManaged(w))
                    seen(form, w);
    };
    // A widget dropped or pasted onto the form, and a form given contents
    // (opened from a file, reloaded, an undone deletion).
    connect(form, &QDesignerFormWindowInterface::widgetManaged, this, [this, form](QWidget *w) { seen(form, w); });
    connect(form, &QDesignerFormWindowInterface::mainContainerChanged, this, seeAll);
    connect(form, &QDesignerFormWindowInterface::changed, this, seeAll);
    seeAll();
}

void FormWatch::seen(QDesignerFormWindowInterface *form, QWidget *widget)
{
    DesignReference::keep(form, widget);
    m_renames->watch(widget);
}

} // namespace velmora::designer
