#include "layout/LayoutStore.h"

namespace velmora {

ControlClass *LayoutStore::info(const std::string &key) const
{
    auto it = m_info.find(key);
    return it == m_info.end() ? nullptr : const_cast<ControlClass *>(&it->second);
}

ControlFlags *LayoutStore::flags(const std::string &key) const
{
    auto it = m_flags.find(key);
    return it == m_flags.end() ? nullptr : const_cast<ControlFlags *>(&it->second);
}

void LayoutStore::discardInfoNotSeenIn(unsigned serial)
{
    for (auto it = m_info.begin(); it != m_info.end();)
        it = it->second.SeenInPass == serial ? std::next(it) : m_info.erase(it);
}

void LayoutStore::resetSwitches()
{
    for (auto &entry : m_flags)
        resetSwitches(entry.second);
}

void LayoutStore::resetSwitches(ControlFlags &record)
{
    ControlFlags off;
    off.Control = std::move(record.Control);
    off.ControlKey = std::move(record.ControlKey);
    record = std::move(off);
}

ControlClass &LayoutStore::ensureInfo(const std::string &key)
{
    return m_info[key];
}

ControlFlags &LayoutStore::ensureFlags(const std::string &key)
{
    return m_flags[key];
}

} // namespace velmora
