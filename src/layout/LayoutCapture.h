// Velmora - recording one control's design layout into its record.
#pragma once

#include "layout/HostObject.h"
#include "layout/LayoutStore.h"

#include <string>

namespace velmora {

// Captures ctrl (a control, or the form itself) into its ControlClass record,
// creating the record when its key has none. refScaleWidth/Height is the
// form's inner size at capture; it becomes the record's container size for a
// control sitting directly on the form. Every property access is attempted on
// its own: what the control lacks leaves the field as it was.
void saveControlInfo(LayoutStore &store, HostObject &ctrl, float refScaleWidth, float refScaleHeight);

// Makes sure the switches of ctrl exist (all False when new); existing ones
// are left untouched.
void saveControlFlags(LayoutStore &store, HostObject *ctrl);
// The same for a key given as text, as the persisted settings supply it.
void saveControlFlags(LayoutStore &store, const std::string &key);

// Whether the control's geometry can be read at all.
bool controlIsScaleable(HostObject &ctrl);
// Whether it carries a picture the engine can scale.
bool graphicIsScaleable(HostObject &ctrl);

} // namespace velmora
