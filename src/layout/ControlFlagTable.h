// Velmora - the flat, persistable form of the per-control switches: eleven
// parallel arrays indexed 0..ControlFlagCount, of which 1..ControlFlagCount
// are in use.
#pragma once

#include "layout/ControlFlags.h"

#include <array>
#include <set>
#include <string>
#include <unordered_map>
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

    // The count is a 16-bit Integer where it is saved: the table never
    // holds more entries than a saved form can give back.
    static constexpr int MaxCount = 32767;
    static bool isValidCount(int n) { return n >= 0 && n <= MaxCount; }

    ControlFlagTable();

    int count() const { return m_count; }
    // Resizes every array to indices 0..n, keeping what they hold. A count
    // outside 0..MaxCount is refused with std::invalid_argument.
    void setCount(int n);

    // Indices outside 0..count() throw std::out_of_range.
    bool flag(Flag f, int index) const;
    void setFlag(Flag f, int index, bool value);
    const std::string &controlKey(int index) const;
    void setControlKey(int index, const std::string &key);

    // The entry the resize pass takes a key's switches from: the last one
    // under that key (a later entry overrides an earlier one, as when a bag
    // is read), or 0 when no entry names the key.
    int entryOf(const std::string &key) const;

    // Copies entry `index` into a record's switches.
    void applyTo(int index, ControlFlags &flags) const;

private:
    void check(int index) const;
    void unindex(int index);

    int m_count = 0;
    std::array<std::vector<bool>, FlagCount> m_flags;
    std::vector<std::string> m_keys;
    // The entries under each non-empty key, so that a change to one entry
    // finds the entry that now speaks for its key without a scan.
    std::unordered_map<std::string, std::set<int>> m_byKey;
};

} // namespace velmora
