// Velmora - VelmoraControl's internals. Not installed; tests and the tools
// of this repository may look inside.
#pragma once

#include "control/VelmoraControl.h"
#include "engine/ResizeEngine.h"
#include "form/FormDriver.h"
#include "qt/QtEngineHost.h"

class VelmoraControlPrivate : public std::enable_shared_from_this<VelmoraControlPrivate> {
public:
    explicit VelmoraControlPrivate(VelmoraControl *q);
    static VelmoraControlPrivate *get(VelmoraControl *control) { return control->d.get(); }

    // The widget a control placed on `parent` serves.
    static QWidget *formFor(QWidget *parent);
    void rebind();
    bool designTime = false;
    // A main window is often assembled after the component is placed on it,
    // and its central widget may be replaced: follow it.
    void watchMainWindow();
    velmora::HostObjectPtr hostFor(QWidget *w) const;
    QPixmap pixmapOf(const velmora::HostObjectPtr &picture) const;

    VelmoraControl *q; // nullptr once the component is deleted
    velmora::qt::QtEngineHost host;
    velmora::ResizeEngine engine{host};
    velmora::FormDriver driver{engine};
    QPointer<QObject> mainWindowWatch;
};
