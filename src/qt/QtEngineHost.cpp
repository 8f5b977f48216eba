#include "qt/QtEngineHost.h"

#include <QCoreApplication>
#include <QEvent>

namespace velmora::qt {

HostObject &QtEngineHost::pictureBox(PictureBoxId id)
{
    switch (id) {
    case PictureBoxId::SizerSource:
        return m_source;
    case PictureBoxId::SizerCanvas:
        return m_canvas;
    case PictureBoxId::FormPic:
        break;
    }
    return m_formPic;
}

void QtEngineHost::processEvents()
{
    if (beforeProcessingEvents)
        beforeProcessingEvents();
    // What the engine waits for is the layouts answering the sizes it set
    // (a toolbar growing with its buttons). Painting and input wait for the
    // end of the pass, so nothing is drawn half placed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

} // namespace velmora::qt
