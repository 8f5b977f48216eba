// Velmora - the per-control switches that exempt a control from parts of the
// scaling.
#pragma once

#include "layout/Value.h"

#include <string>

namespace velmora {

struct ControlFlags {
    HostObjectPtr Control;
    bool DontScaleBottom = false;  // keep the design distance to the container's bottom edge
    bool DontScaleRight = false;   // keep the design distance to the container's right edge
    bool DontScaleHeight = false;
    bool DontScaleWidth = false;
    bool DontScaleTop = false;
    bool DontScaleLeft = false;
    bool DontScaleGraphic = false;
    bool DontScaleBorder = false;
    std::string ControlKey;
    bool DontScaleFont = false;    // fonts are still reset to their recorded sizes
    // Edited and saved like the others, but deliberately consulted by no
    // run-time code: such a control is still placed and scaled.
    bool DontScaleControl = false;
};

} // namespace velmora
