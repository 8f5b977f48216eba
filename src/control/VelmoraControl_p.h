// Velmora - VelmoraControl's internals. Not installed; tests and the tools
// of this repository may look inside.
#pragma once

#include "control/VelmoraControl.h"
#include "engine/ResizeEngine.h"
#include "form/FormDriver.h"
#include "form/PrintSizing.h"
#include "layout/ControlFlagTable.h"
#include "qt/QtEngineHost.h"

#include <array>
#include <optional>

class QPainter;

class VelmoraControlPrivate : public std::enable_shared_from_this<VelmoraControlPrivate> {
public:
    explicit VelmoraControlPrivate(VelmoraControl *q);
    static VelmoraControlPrivate *get(VelmoraControl *control) { return control->d.get(); }

    // The widget a control placed on `parent` serves.
    // Exported for the Designer plugin, like paintIcon().
    VELMORA_EXPORT static QWidget *formFor(QWidget *parent);
    void rebind();
    bool designTime = false;
    // A main window is often assembled after the component is placed on it,
    // and its central widget may be replaced: follow it.
    void watchMainWindow();
    velmora::HostObjectPtr hostFor(QWidget *w) const;
    QPixmap pixmapOf(const velmora::HostObjectPtr &picture) const;

    // Tells the host a setting changed, by its property name.
    void changed(const char *name);

    // The per-control options: the arrays the bag keeps, and the records
    // of the resize pass made to follow them.
    velmora::ControlFlagTable flagTable;
    void applyFlagEntry(int index);
    void readFlagEntry(int index, const QVariantMap &bag);
    bool flagIndexOk(const char *member, int index, bool *ok) const;
    bool flag(int f, int index, bool *ok) const;
    void setFlag(int f, int index, bool on, bool *ok);
    // The indexed keys kept on the component as dynamic properties (as a
    // form loaded from a .ui gives them, and as a form builder saves them).
    QVariantMap dynamicFlagBag() const;
    void mirrorFlag(const QString &key, const QVariant &value, bool isDefault);
    bool dynamicPropertyChanged(const QByteArray &name);
    void mirrorAllFlags();
    bool syncingDynamic = false;

    // At design time, the four design sizes of the form as it stands
    // (outer width and height in twips, inner in the form's units).
    std::optional<std::array<float, 4>> measuredDesignSizes() const;
    // A stand-in edited on a form's behalf (a form editor's settings
    // dialog works on a copy) lists that form's controls on its pages.
    QPointer<QWidget> editedForm;
    // The form whose controls the settings pages list.
    QWidget *listedForm() const;
    VELMORA_EXPORT static void paintIcon(QPainter &p, const QRectF &r);

    VelmoraControl *q; // nullptr once the component is deleted
    velmora::qt::QtEngineHost host;
    velmora::ResizeEngine engine{host};
    velmora::FormDriver driver{engine};
    QPointer<QObject> mainWindowWatch;
    velmora::PrintSizing printing{driver, engine};
};
