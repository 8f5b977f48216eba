#include "layout/LayoutStore.h"

namespace velmora {

ControlClass *LayoutStore::info(const std::string &key) const
{
    auto it = m_info.find(key);
    return it == m_info.end() ? nullptr : it->second.get();
}

ControlFlags *LayoutStore::flags(const std::string &key) const
{
    auto it = m_flags.find(key);
    return it == m_flags.end() ? nullptr : it->second.get();
}

void LayoutStore::discardInfoNotSeenIn(unsigned serial)
{
    for (auto it = m_info.begin(); it != m_info.end();)
        it = it->second->SeenInPass == serial ? std::next(it) : m_info.erase(it);
}

ControlClass &LayoutStore::ensureInfo(const std::string &key)
{
    auto &slot = m_info[key];
    if (!slot)
        slot = std::make_unique<ControlClass>();
    return *slot;
}

ControlFlags &LayoutStore::ensureFlags(const std::string &key)
{
    auto &slot = m_flags[key];
    if (!slot)
        slot = std::make_unique<ControlFlags>();
    return *slot;
}

} // namespace velmora
