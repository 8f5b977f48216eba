// Velmora - a VelmoraControl's settings written into the form Qt Designer
// edits: through the form window's cursor (the indexed per-control options
// through its dynamic properties), as one step of its undo history, so
// that the change can be undone and is saved into the .ui.
#pragma once

class QDesignerFormWindowInterface;
class VelmoraControl;

namespace velmora::designer {

namespace FormWindowSettings {

// Gives `target`, a control of `form`, every setting of `edited` that
// differs (the design sizes excepted: the form's size is what is saved).
// Returns whether anything changed.
bool write(QDesignerFormWindowInterface *form, VelmoraControl *target, const VelmoraControl &edited);

} // namespace FormWindowSettings

} // namespace velmora::designer
