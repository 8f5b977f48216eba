// Velmora - what the resize engine needs from its toolkit besides the form and
// its controls: scratch picture boxes and a way to let pending events run.
#pragma once

#include "layout/HostObject.h"

#include <functional>
#include <string>

namespace velmora {

enum class PictureBoxId {
    SizerSource, // holds the picture being scaled; sizes itself to it
    SizerCanvas, // sized, painted on, read back as the result
    FormPic      // holds the form's picture at its current size
};

class EngineHost {
public:
    virtual ~EngineHost() = default;
    // A picture box speaks Picture, Width, Height (twips), BackColor, Image
    // and PaintPicture(picture, x, y[, width, height]).
    virtual HostObject &pictureBox(PictureBoxId id) = 0;
    // Lets the toolkit process pending events (the toolbar height fit waits
    // for the toolbar to re-layout).
    virtual void processEvents() = 0;
};

// The events the engine raises to its owner.
struct EngineEvents {
    std::function<void()> resizeStarted;
    std::function<void()> resizeDone;
    std::function<void(const std::string &description, const HostError &error)> error;
    // Something the developer should know that is no error (said once).
    std::function<void(const std::string &text)> warning;
};

} // namespace velmora
