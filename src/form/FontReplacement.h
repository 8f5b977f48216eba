// Velmora - one typeface for every control of a form, chosen once.
#pragma once

#include <string>

namespace velmora {

class HostForm;

// The value that replaces nothing, compared exactly.
inline constexpr const char *NoReplacementFont = "<none>";

// Writes `family` as the name of every font of every control of the form
// (Font, DayFont, GridFont, TitleFont, HeadFont, in that order), sizes and
// styles kept; each write stands on its own, so a control without one of
// the fonts holds up nothing. Does nothing for NoReplacementFont.
void applyReplacementFont(HostForm &form, const std::string &family);

} // namespace velmora
