#include "layout/ControlKey.h"

#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

namespace velmora {

std::string controlKey(HostObject *ctrl)
{
    if (!ctrl)
        return {};
    std::string key = getText(*ctrl, member::Name).value_or(std::string());
    if (auto index = getLong(*ctrl, member::Index); index && *index >= 0)
        key += "(" + std::to_string(*index) + ")";
    return key;
}

} // namespace velmora
