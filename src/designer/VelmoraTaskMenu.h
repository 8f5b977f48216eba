// Velmora - "Velmora Properties..." on a VelmoraControl's context menu in
// Qt Designer (also its double-click action): the settings pages, applied
// to the form as one undoable change.
#pragma once

#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

#include <QPointer>

class QAction;
class QDesignerFormEditorInterface;
class VelmoraControl;

namespace velmora::designer {

class VelmoraTaskMenu : public QObject, public QDesignerTaskMenuExtension {
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)
public:
    VelmoraTaskMenu(VelmoraControl *control, QObject *parent);

    QAction *preferredEditAction() const override;
    QList<QAction *> taskActions() const override;

    // Shows the pages for the control (modal); OK and Apply write through
    // the form window's cursor.
    void editSettings();

private:
    QPointer<VelmoraControl> m_control;
    QAction *m_edit;
};

class VelmoraTaskMenuFactory : public QExtensionFactory {
    Q_OBJECT
public:
    using QExtensionFactory::QExtensionFactory;
    // Registers the factory with the editor's extension manager.
    static void install(QDesignerFormEditorInterface *core);

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;
};

} // namespace velmora::designer
