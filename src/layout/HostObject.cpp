#include "layout/HostObject.h"

namespace velmora {

bool HostObject::isKind(HostKind) const
{
    return false;
}

GetResult HostObject::getAt(std::string_view name, int)
{
    return noSuchMember(name);
}

SetResult HostObject::setAt(std::string_view name, int, const Value &)
{
    return noSuchMember(name);
}

GetResult HostObject::call(std::string_view method, const std::vector<Value> &)
{
    return noSuchMember(method);
}

HostError HostObject::noSuchMember(std::string_view name)
{
    return hostError(HostErrc::NoSuchMember, std::string(name));
}

} // namespace velmora
