#include "layout/HostAccess.h"

#include "layout/MemberNames.h"

namespace velmora {

std::optional<float> getSingle(HostObject &obj, std::string_view name)
{
    auto r = obj.get(name);
    return r ? r->toSingle() : std::nullopt;
}

std::optional<double> getDouble(HostObject &obj, std::string_view name)
{
    auto r = obj.get(name);
    return r ? r->toDouble() : std::nullopt;
}

std::optional<std::int32_t> getLong(HostObject &obj, std::string_view name)
{
    auto r = obj.get(name);
    return r ? r->toLong() : std::nullopt;
}

std::optional<std::string> getText(HostObject &obj, std::string_view name)
{
    auto r = obj.get(name);
    return r ? r->toText() : std::nullopt;
}

std::optional<HostObjectPtr> getObject(HostObject &obj, std::string_view name)
{
    auto r = obj.get(name);
    if (!r || !(r->isObject() || r->isEmpty()))
        return std::nullopt;
    return r->toObject();
}

std::optional<HostObjectPtr> getObjectAt(HostObject &obj, std::string_view name, int index)
{
    auto r = obj.getAt(name, index);
    if (!r || !(r->isObject() || r->isEmpty()))
        return std::nullopt;
    return r->toObject();
}

bool hasProperty(HostObject &obj, std::string_view name)
{
    return obj.get(name).ok();
}

static HostObjectPtr subObject(HostObject &obj, std::string_view objectName)
{
    auto o = getObject(obj, objectName);
    return o ? std::move(*o) : nullptr;
}

std::optional<float> getSubSingle(HostObject &obj, std::string_view objectName, std::string_view sub)
{
    if (auto o = subObject(obj, objectName))
        return getSingle(*o, sub);
    return std::nullopt;
}

std::optional<std::string> getSubText(HostObject &obj, std::string_view objectName, std::string_view sub)
{
    if (auto o = subObject(obj, objectName))
        return getText(*o, sub);
    return std::nullopt;
}

bool setSub(HostObject &obj, std::string_view objectName, std::string_view sub, const Value &value)
{
    if (auto o = subObject(obj, objectName))
        return o->set(sub, value).ok();
    return false;
}

std::optional<std::string> containerTypeName(HostObject &obj)
{
    if (auto c = subObject(obj, member::Container))
        return c->typeName();
    return std::nullopt;
}

bool containerIsKind(HostObject &obj, HostKind kind)
{
    auto c = subObject(obj, member::Container);
    return c && c->isKind(kind);
}

} // namespace velmora
