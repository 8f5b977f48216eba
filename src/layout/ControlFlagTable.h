// Velmora - the flat, persistable form of the per-control switches: eleven
// parallel arrays indexed 0..ControlFlagCount, of which 1..ControlFlagCount
// are in use.
#pragma once

#include "layout/ControlFlags.h"

#include <array>
#include <string>
#include <vector>

namespace velmora {

class ControlFlagTable {
public:
    // The ten switches in their saved order.
    enum Flag {
        DontScaleControl,
        DontScaleFont,
        DontScaleBorder,
        DontScaleGraphic,
        DontScaleLeft,
        DontScaleTop,
        DontScaleWidth,
        DontScaleHeight,
        DontScaleRight,
        DontScaleBottom,
        FlagCount
    };
    static const char *flagName(Flag f); // "DontScaleLeft" ...

    int count() const { return m_count; }
    // Resizes every array to indices 0..n, keeping what they hold. A negative
    // count is refused with std::invalid_argument.
    void setCount(int n);

    // Out-of-range indices (or arrays never sized) throw std::out_of_range.
    bool flag(Flag f, int index) const;
    void setFlag(Flag f, int index, bool value);
    const std::string &controlKey(int index) const;
    void setControlKey(int index, const std::string &key);

    // Copies entry `index` into a record's switches.
    void applyTo(int index, ControlFlags &flags) const;

private:
    void check(int index) const;

    int m_count = 0;
    bool m_sized = false;
    std::array<std::vector<bool>, FlagCount> m_flags;
    std::vector<std::string> m_keys;
};

} // namespace velmora
