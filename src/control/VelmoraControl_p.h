// Velmora - VelmoraControl's internals. Not installed; tests and the tools
// of this repository may look inside.
#pragma once

#include "control/VelmoraControl.h"
#include "engine/ResizeEngine.h"
#include "form/FormDriver.h"
#include "form/PrintSizing.h"
#include "form/WipeEffect.h"
#include "layout/ControlFlagTable.h"
#include "qt/QtEngineHost.h"

#include <array>
#include <optional>

class QPainter;

// What a setting may hold, the same for its setter, the saved settings and
// the pages: a value outside is brought into range (or refused) the same
// way whichever route it comes by.
namespace velmora::settings {
// The effects page's range; held to the millisecond (the effects' own
// resolution), so that a time reads back exactly from any saved form.
constexpr double MaxEffectSeconds = velmora::WipeEffect::MaxSeconds;
double effectSeconds(double seconds); // finite only
// Below 1 twip a size limit is no limit.
inline int sizeLimit(int twips) { return twips < 1 ? 0 : twips; }
// Whether `value` names a constant of the property's enumeration.
bool isEffectValue(const char *property, int value);
// Text a .ui file carries exactly through both uic and QUiLoader: no
// control character but tab and line feed (XML 1.0 holds no other C0
// control; uic drops carriage returns), no noncharacter, no lone surrogate.
bool isUiText(const QString &text, QString *why = nullptr);
} // namespace velmora::settings

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
    void watchParent();
    velmora::HostObjectPtr hostFor(QWidget *w) const;
    QPixmap pixmapOf(const velmora::HostObjectPtr &picture) const;

    // Tells the host a setting changed, by its property name.
    void changed(const char *name);

    // The per-control options: the arrays the bag keeps, and the records
    // of the resize pass made to follow them. Every change to the table
    // goes through these, so that no record outlives its entry.
    velmora::ControlFlagTable flagTable;
    // The record under `key` takes the switches of the entry that now
    // speaks for the key, or none when no entry names it.
    void refreshRecord(const std::string &key);
    void refreshAllRecords();
    bool setFlagCount(int count, const char *member);
    void setFlagKey(int index, const std::string &key);
    void readFlagEntry(int index, const QVariantMap &bag);
    // One value of entry `index` as a bag holds it (f as for indexedKey).
    void readFlagValue(int f, int index, const QVariant &value);
    // The saved name of entry `index` of one array: f is a
    // ControlFlagTable::Flag, or -1 for the keys ("ControlFlagControlKey3").
    static QString indexedKey(int f, int index);
    // The other way: the array (f as above) and entry of an indexed key.
    // False for a name that is none; index -1 for digits no saved form
    // writes (a leading zero, too many).
    static bool parseIndexedKey(const QString &name, int *f, int *index);
    bool flagIndexOk(const char *member, int index, bool *ok) const;
    bool flag(int f, int index, bool *ok) const;
    void setFlag(int f, int index, bool on, bool *ok);
    // The key the resize pass files `w` under, or empty when `w` is no
    // control of the form.
    std::string keyOf(QWidget *w) const;
    // The indexed keys kept on the component as dynamic properties (as a
    // form loaded from a .ui gives them, and as a form builder saves them).
    QVariantMap dynamicFlagBag() const;
    // A value going from or to its default adds or removes the property.
    void mirrorFlag(const QString &key, const QVariant &value, bool wasDefault, bool isDefault);
    bool dynamicPropertyChanged(const QByteArray &name);
    void mirrorAllFlags();
    void dropMirror();
    void stopMirroring(int needed);
    bool syncingDynamic = false;
    // Qt finds a dynamic property by a walk through all of them: past this
    // many, every change would cost a walk through thousands, and a form
    // of tens of thousands of entries would take minutes to read. Beyond it
    // the entries are kept in the table alone (writeProperties() still has
    // them all).
    static constexpr int MirrorLimit = 8192;
    int mirrored = 0; // the indexed keys set on the object, at most
    bool mirrorOff = false;

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
    QPointer<QObject> parentWatch;
    velmora::PrintSizing printing{driver, engine};
};
