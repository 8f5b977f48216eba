// Velmora - statement-sized helpers over HostObject.
//
// Each helper is one host statement whose failure is reported as an empty
// optional or false, so engine code reads as a sequence of independent
// statements: `if (auto l = getSingle(c, member::Left)) rec.Left = *l;`.
#pragma once

#include "layout/HostObject.h"
#include "layout/MemberNames.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

std::optional<float> getSingle(HostObject &obj, std::string_view name);
std::optional<double> getDouble(HostObject &obj, std::string_view name);
std::optional<std::int32_t> getLong(HostObject &obj, std::string_view name);
std::optional<std::string> getText(HostObject &obj, std::string_view name);
// A readable property that holds an object (which may be "nothing").
std::optional<HostObjectPtr> getObject(HostObject &obj, std::string_view name);
std::optional<HostObjectPtr> getObjectAt(HostObject &obj, std::string_view name, int index);

// True when the property can be read at all.
bool hasProperty(HostObject &obj, std::string_view name);

// Sub-properties, e.g. Font then Size.
std::optional<float> getSubSingle(HostObject &obj, std::string_view objectName, std::string_view sub);
std::optional<std::string> getSubText(HostObject &obj, std::string_view objectName, std::string_view sub);
bool setSub(HostObject &obj, std::string_view objectName, std::string_view sub, const Value &value);

inline bool trySet(HostObject &obj, std::string_view name, const Value &value)
{
    return obj.set(name, value).ok();
}

// The type name of obj's Container, if it has one.
std::optional<std::string> containerTypeName(HostObject &obj);
bool containerIsKind(HostObject &obj, HostKind kind);

} // namespace velmora
