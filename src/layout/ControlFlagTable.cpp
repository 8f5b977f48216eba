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

void ControlFlagTable::setCount(int n)
{
    if (n < 0)
        throw std::invalid_argument("ControlFlagCount must not be negative");
    const auto size = static_cast<std::size_t>(n) + 1;
    for (auto &a : m_flags)
        a.resize(size, false);
    m_keys.resize(size);
    m_count = n;
    m_sized = true;
}

void ControlFlagTable::check(int index) const
{
    if (!m_sized || index < 0 || index > m_count)
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
    m_keys[static_cast<std::size_t>(index)] = key;
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
