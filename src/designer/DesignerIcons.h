// Velmora - the widget box icons of Velmora's widgets, drawn at the sizes
// Designer shows them, as the widgets look on a form.
#pragma once

#include <QIcon>

namespace velmora::designer {

QIcon controlIcon();
QIcon lineIcon();
QIcon shapeIcon();
QIcon imageListIcon();

} // namespace velmora::designer
