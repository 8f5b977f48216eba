// Velmora - what the plugin looks after on every form Qt Designer edits:
// each widget on it, as it is dropped, pasted or loaded, is shown to the
// design reference (the form's components) and to the rename follower.
#pragma once

#include <QObject>

class QDesignerFormEditorInterface;
class QDesignerFormWindowInterface;

namespace velmora::designer {

class RenameFollower;

class FormWatch : public QObject {
    Q_OBJECT
public:
    // Once per form editor.
    static void install(QDesignerFormEditorInterface *core);

private:
    explicit FormWatch(QDesignerFormEditorInterface *core);
    void watch(QDesignerFormWindowInterface *form);
    void seen(QDesignerFormWindowInterface *form, QWidget *widget);

    RenameFollower *m_renames;
};

} // namespace velmora::designer
