// Velmora - the design reference of every VelmoraControl in Qt Designer:
// its four design sizes are saved with the form, read from the form's size
// at the moment it is saved, however the form was made or loaded.
#pragma once

class QDesignerFormWindowInterface;
class QWidget;

namespace velmora::designer::DesignReference {

// Marks the design sizes of a component of the form as properties to save
// (a property the form was not given is saved only so marked), and its
// texts as not translatable. Anything else is left alone.
void keep(QDesignerFormWindowInterface *form, QWidget *widget);

} // namespace velmora::designer::DesignReference
