// Velmora - the text that names one control uniquely on its form.
#pragma once

#include "layout/HostObject.h"

#include <string>

namespace velmora {

// Name, or Name(Index) for a member of a control array. A null control has
// the empty key.
std::string controlKey(HostObject *ctrl);

} // namespace velmora
