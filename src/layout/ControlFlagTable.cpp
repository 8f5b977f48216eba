#include "layout/ControlFlagTable.h"

#include <stdexcept>

namespace velmora {

const char *ControlFlagTable::flagName(Flag f)
{
    static const char *const names[FlagCount] = {
        "DontScaleControl", "DontScaleFont", "DontScaleBorder", "DontScaleGraphic",
        "DontScaleLeft",    "DontScaleTop",  "DontScaleWidth",  "DontScaleHeight",
        "DontScaleRight",   "DontScaleBottom"};
    return (f >= 0 && f < FlagCount) ? names[f] : "";
}

ControlFlagTable::ControlFlagTable()
{
    // Entry 0 exists from the start, so that index 0 reads as an empty
    // entry on a table nobody has sized.
    setCount(0);
}

void ControlFlagTable::setCount(int n)
{
    if (!isValidCount(n))
        throw std::invalid_argument("ControlFlagCount must be within 0..32767");
    for (int i = n + 1; i <= m_count; ++i)
        unindex(i);
    const auto size = static_cast<std::size_t>(n) + 1;
    for (auto &a : m_flags)
        a.resize(size, false);
    m_keys.resize(size);
    m_count = n;
}

void ControlFlagTable::check(int index) const
{
    if (index < 0 || index > m_count)
        throw std::out_of_range("Subscript out of range");
}

bool ControlFlagTable::flag(Flag f, int index) const
{
    check(index);
    return m_flags.at(static_cast<std::size_t>(f))[static_cast<std::size_t>(index)];
}

void ControlFlagTable::setFlag(Flag f, int index, bool value)
{
    check(index);
    m_flags.at(static_cast<std::size_t>(f))[static_cast<std::size_t>(index)] = value;
}

const std::string &ControlFlagTable::controlKey(int index) const
{
    check(index);
    return m_keys[static_cast<std::size_t>(index)];
}

void ControlFlagTable::setControlKey(int index, const std::string &key)
{
    check(index);
    if (index > 0)
        unindex(index);
    m_keys[static_cast<std::size_t>(index)] = key;
    // Entry 0 is held but is no entry: it speaks for no key.
    if (index > 0 && !key.empty())
        m_byKey[key].insert(index);
}

void ControlFlagTable::unindex(int index)
{
    const std::string &key = m_keys[static_cast<std::size_t>(index)];
    if (key.empty())
        return;
    auto it = m_byKey.find(key);
    if (it == m_byKey.end())
        return;
    it->second.erase(index);
    if (it->second.empty())
        m_byKey.erase(it);
}

int ControlFlagTable::entryOf(const std::string &key) const
{
    const auto it = m_byKey.find(key);
    return it == m_byKey.end() || it->second.empty() ? 0 : *it->second.rbegin();
}

void ControlFlagTable::applyTo(int index, ControlFlags &f) const
{
    f.DontScaleControl = flag(DontScaleControl, index);
    f.DontScaleFont = flag(DontScaleFont, index);
    f.DontScaleBorder = flag(DontScaleBorder, index);
    f.DontScaleGraphic = flag(DontScaleGraphic, index);
    f.DontScaleLeft = flag(DontScaleLeft, index);
    f.DontScaleTop = flag(DontScaleTop, index);
    f.DontScaleWidth = flag(DontScaleWidth, index);
    f.DontScaleHeight = flag(DontScaleHeight, index);
    f.DontScaleRight = flag(DontScaleRight, index);
    f.DontScaleBottom = flag(DontScaleBottom, index);
}

} // namespace velmora
