// Velmora - the design reference of every VelmoraControl in Qt Designer:
// its four design sizes are saved with the form, read from the form's size
// at the moment it is saved, however the form was made or loaded.
#pragma once

#include <QObject>

class QDesignerFormEditorInterface;
class QDesignerFormWindowInterface;

namespace velmora::designer {

class DesignReference : public QObject {
    Q_OBJECT
public:
    // Once per form editor.
    static void install(QDesignerFormEditorInterface *core);

    // Marks the design sizes of the form's components as properties to
    // save (a property the form was not given is saved only so marked).
    static void keep(QDesignerFormWindowInterface *form, QWidget *widget);

private:
    explicit DesignReference(QDesignerFormEditorInterface *core);
    void watch(QDesignerFormWindowInterface *form);
};

} // namespace velmora::designer
