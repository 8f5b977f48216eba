// Velmora - the resize engine: captures a form's design layout and brings
// every control to the form's present size.
//
// Toolkit-free: it sees the form and its controls only as HostObjects and
// reports through EngineEvents. One engine serves one form.
#pragma once

#include "engine/EngineHost.h"
#include "engine/PictureScaler.h"
#include "layout/LayoutStore.h"

namespace velmora {

class ResizeEngine {
public:
    explicit ResizeEngine(EngineHost &host);

    // Settings the engine reads (public properties of the component).
    bool ScaleFonts = true;
    bool ScaleBorders = true;
    bool ScaleGraphics = true;
    bool GradientFill = false;
    int FormPicture = FpNone;
    // The form's size as saved at design time: outer size and inner size in
    // the form's own ScaleMode units. 0 when never saved.
    float DesignFormWidth = 0, DesignFormHeight = 0;
    float DesignFormScaleWidth = 0, DesignFormScaleHeight = 0;

    // Run-time state shared with the form event driver.
    bool Initialised = false;
    bool FormReady = false;
    float RefScaleWidth = 0, RefScaleHeight = 0;
    float CurScaleWidth = 0, CurScaleHeight = 0;
    // The smaller of the last placed control's two scale ratios.
    float FontFactor = 0;
    // Set when what the pass serves is going away (from an event handler
    // the pass let run): the pass stops before the next control.
    bool StopRequested = false;

    EngineEvents events;

    // The host itself changed the control's geometry (not the application:
    // a style sheet scaled with the form gave it a new minimum): the next
    // pass takes it as the pass's own, not as a move to keep.
    void takeCurrentGeometry(HostObject &ctrl);

    LayoutStore &store() { return m_store; }
    const LayoutStore &store() const { return m_store; }
    PictureScaler &pictures() { return m_pictures; }

    // Captures one control (or the form) with the current reference size.
    void SaveControlInfo(HostObject &ctrl);
    void SaveControlFlags(HostObject *ctrl);

    // Places one recorded control for the current size and scales its fonts.
    // Fails, touching nothing, when the control has no record or switches.
    SetResult AdjustPosition(HostObject &ctrl);
    // The same, for a pass that has looked the control's record up already.
    void AdjustPosition(HostObject &ctrl, ControlClass &rec, const ControlFlags &flags);

    // The pass. Its first call after construction or Reset captures the
    // layout; every later call rescales the form if its size changed.
    void ResizeControls(HostForm &form);

    // The form's inner size in twips, through its own unit conversion (an
    // MDI form has no scale mode and is taken as it is).
    static std::optional<float> twipsWidth(HostObject &form, float value);
    static std::optional<float> twipsHeight(HostObject &form, float value);

private:
    void capture(HostForm &form);
    void detachImageLists(HostObject &ctrl, ControlClass &rec);
    bool placeControl(HostObject &ctrl, ControlClass &rec, ControlFlags &flags);
    void placeTabControl(HostObject &ctrl, ControlClass &rec, ControlFlags &flags);
    bool rebuildImageList(HostObject &ctrl, ControlClass &rec, HostError &failure);
    void scaleControlPictures(HostObject &ctrl, ControlClass &rec, ControlFlags &flags);
    void scaleToolbarButtons(HostObject &ctrl, ControlClass &rec, ControlFlags &flags);
    void fitToolbarHeight(HostObject &ctrl, ControlClass &rec, float fh);
    void drawFormPicture(HostForm &form);
    void reattachImageLists(HostObject &ctrl, ControlClass &rec, ControlFlags &flags);
    // Whether a bound image list asks for the control's lists to be rebuilt.
    bool rebuildWanted(const ControlClass &rec) const;
    void raiseDone();
    void pictureBounded();

    EngineHost &m_host;
    LayoutStore m_store;
    unsigned m_passSerial = 0;
    // Twips per unit of the form's ScaleMode, read at the start of a pass.
    float m_twipsPerUnitX = 1.0f, m_twipsPerUnitY = 1.0f;
    bool m_pictureBoundSaid = false;
    std::vector<Value> m_moveArgs;
    bool m_lastPassCollapsed = false;
    PictureScaler m_pictures;
};

// Stores the control's present geometry as the geometry the component gave it.
void storeLastGeometry(HostObject &ctrl, ControlClass &rec);

} // namespace velmora
