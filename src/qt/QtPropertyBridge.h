// Velmora - host members backed by a widget's own Q_PROPERTY or dynamic
// property of the same (PascalCase) name. This is how custom widgets offer
// BorderWidth, extra fonts or pictures to the engine without an adapter.
#pragma once

#include "layout/HostObject.h"

#include <QVariant>

#include <functional>

class QObject;

namespace velmora::qt {

GetResult readQtProperty(QObject *object, std::string_view name);
// `beforeWrite` runs once the property is known to exist and to change.
SetResult writeQtProperty(QObject *object, std::string_view name, const Value &value,
                          const std::function<void()> &beforeWrite = {});

// The Q_PROPERTY or dynamic property `name` of object, or an invalid
// QVariant. Which properties a class declares is learnt once per class.
QVariant propertyIfAny(const QObject *object, std::string_view name);
bool classDeclares(const QMetaObject *mo, std::string_view name);
bool hasDynamicProperties(const QObject *object);

// Conversions between QVariant and host values; a QFont becomes a font
// object bound to the property it was read from.
GetResult valueFromVariant(const QVariant &v, QObject *owner, std::string_view property);
bool variantFromValue(const Value &value, QMetaType type, QVariant &out);

} // namespace velmora::qt
