// Velmora - host members backed by a widget's own Q_PROPERTY or dynamic
// property of the same (PascalCase) name. This is how custom widgets offer
// BorderWidth, extra fonts or pictures to the engine without an adapter.
#pragma once

#include "layout/HostObject.h"

#include <QVariant>

class QObject;

namespace velmora::qt {

GetResult readQtProperty(QObject *object, std::string_view name);
SetResult writeQtProperty(QObject *object, std::string_view name, const Value &value);

// Conversions between QVariant and host values; a QFont becomes a font
// object bound to the property it was read from.
GetResult valueFromVariant(const QVariant &v, QObject *owner, std::string_view property);
bool variantFromValue(const Value &value, QMetaType type, QVariant &out);

} // namespace velmora::qt
