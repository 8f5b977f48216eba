// Velmora - the component's two keyed collections: one ControlClass record
// and one ControlFlags entry per control key.
#pragma once

#include "layout/ControlClass.h"
#include "layout/ControlFlags.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace velmora {

class LayoutStore {
public:
    // The item-exists test: nullptr when no record is filed under the key.
    ControlClass *info(const std::string &key) const;
    ControlFlags *flags(const std::string &key) const;

    // Returns the record under key, filing a new empty one when none exists.
    ControlClass &ensureInfo(const std::string &key);
    // Files a new all-False entry under key unless one exists; returns it.
    ControlFlags &ensureFlags(const std::string &key);

    // A capture starts from no records; the switches are kept.
    void discardInfo() { m_info.clear(); }
    void discardInfo(const std::string &key) { m_info.erase(key); }
    // Drops the records of controls the pass `serial` did not meet.
    void discardInfoNotSeenIn(unsigned serial);
    void discardFlags() { m_flags.clear(); }
    // Every record's switches back to off; keys and controls stay, so that
    // a pass holding a record meanwhile still holds a live one.
    void resetSwitches();
    static void resetSwitches(ControlFlags &record);

    std::size_t infoCount() const { return m_info.size(); }
    std::size_t flagsCount() const { return m_flags.size(); }

private:
    // Held in the nodes themselves: a node never moves, so the pointers
    // handed out stay valid until their entry is erased.
    std::unordered_map<std::string, ControlClass> m_info;
    std::unordered_map<std::string, ControlFlags> m_flags;
};

} // namespace velmora
