// Velmora - the engine's toolkit services on Qt: off-screen picture boxes
// and the event loop.
#pragma once

#include "engine/EngineHost.h"
#include "qt/QtPictureBox.h"

#include <functional>

namespace velmora::qt {

class QtEngineHost : public EngineHost {
public:
    HostObject &pictureBox(PictureBoxId id) override;
    void processEvents() override;
    // Brings what the pass holds back up to date before other code runs.
    std::function<void()> beforeProcessingEvents;

private:
    QtPictureBox m_source{true};
    QtPictureBox m_canvas;
    QtPictureBox m_formPic;
};

} // namespace velmora::qt
