#include "qt/QtEngineHost.h"

#include <QCoreApplication>

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
    QCoreApplication::processEvents();
}

} // namespace velmora::qt
