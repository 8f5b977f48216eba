// VelmoraControl's per-control options: the eleven indexed arrays the form
// saves, the same options by widget, and the records of the resize pass
// that follow every change to them.
#include "control/VelmoraControl.h"

#include "control/VelmoraControl_p.h"
#include "layout/ControlKey.h"
#include "qt/QtForm.h"

#include <QRegularExpression>

#include <set>

using velmora::ControlFlagTable;

namespace {

const char *const KeyBase = "ControlFlagControlKey";

// The options are the switches in their saved order, one bit each.
VelmoraControl::Option optionOf(int f)
{
    return VelmoraControl::Option(1 << f);
}
static_assert(VelmoraControl::DontScaleControl == 1 << ControlFlagTable::DontScaleControl
                  && VelmoraControl::DontScaleLeft == 1 << ControlFlagTable::DontScaleLeft
                  && VelmoraControl::DontScaleBottom == 1 << ControlFlagTable::DontScaleBottom,
              "an option's bit is its switch's place in the saved order");

} // namespace

QString VelmoraControlPrivate::indexedKey(int f, int index)
{
    const QString base = f < 0 ? QLatin1String(KeyBase)
                               : QStringLiteral("ControlFlag") + QLatin1String(ControlFlagTable::flagName(ControlFlagTable::Flag(f)));
    return base + QString::number(index);
}

bool VelmoraControlPrivate::parseIndexedKey(const QString &name, int *f, int *index)
{
    static const QRegularExpression indexed(QStringLiteral("^ControlFlag([A-Za-z]+?)([0-9]+)$"));
    const auto m = indexed.match(name);
    if (!m.hasMatch())
        return false;
    const QString base = m.captured(1);
    *f = base == QLatin1String("ControlKey") ? -1 : ControlFlagTable::FlagCount;
    for (int i = 0; *f == ControlFlagTable::FlagCount && i < ControlFlagTable::FlagCount; ++i)
        if (base == QLatin1String(ControlFlagTable::flagName(ControlFlagTable::Flag(i))))
            *f = i;
    if (*f == ControlFlagTable::FlagCount)
        return false;
    bool ok = false;
    const QString digits = m.captured(2);
    *index = digits.startsWith(QLatin1Char('0')) ? -1 : digits.toInt(&ok);
    if (!ok)
        *index = -1;
    return true;
}

void VelmoraControlPrivate::refreshRecord(const std::string &key)
{
    if (key.empty())
        return;
    velmora::LayoutStore &store = engine.store();
    const int entry = flagTable.entryOf(key);
    if (entry > 0) {
        velmora::ControlFlags &record = store.ensureFlags(key);
        record.ControlKey = key;
        flagTable.applyTo(entry, record);
    } else if (velmora::ControlFlags *record = store.flags(key)) {
        // No entry names it any more: the control scales in every respect.
        velmora::LayoutStore::resetSwitches(*record);
    }
}

void VelmoraControlPrivate::refreshAllRecords()
{
    engine.store().resetSwitches();
    std::set<std::string> keys;
    for (int i = 1; i <= flagTable.count(); ++i)
        keys.insert(flagTable.controlKey(i));
    for (const std::string &key : keys)
        refreshRecord(key);
}

bool VelmoraControlPrivate::setFlagCount(int count, const char *member)
{
    if (!ControlFlagTable::isValidCount(count)) {
        qWarning("VelmoraControl::%s: %d is no count of entries (0 to %d); nothing changed", member, count,
                 ControlFlagTable::MaxCount);
        return false;
    }
    const int before = flagTable.count();
    if (count == before)
        return true;
    std::set<std::string> dropped;
    for (int i = count + 1; i <= before; ++i)
        dropped.insert(flagTable.controlKey(i));
    flagTable.setCount(count);
    for (const std::string &key : dropped)
        refreshRecord(key);
    if (count < before && !mirrorOff) {
        // The object's indexed keys say what the table holds, nothing more.
        syncingDynamic = true;
        for (const QByteArray &name : q->dynamicPropertyNames()) {
            int f = 0, index = 0;
            if (parseIndexedKey(QString::fromLatin1(name), &f, &index) && index > count) {
                q->setProperty(name.constData(), QVariant());
                mirrored = qMax(0, mirrored - 1);
            }
        }
        syncingDynamic = false;
    } else {
        // Entries the form gave before their count: read now.
        const QVariantMap bag = dynamicFlagBag();
        for (int i = before + 1; i <= count; ++i)
            if (bag.contains(indexedKey(-1, i)))
                readFlagEntry(i, bag);
    }
    changed("ControlFlagCount");
    return true;
}

void VelmoraControlPrivate::setFlagKey(int index, const std::string &key)
{
    const std::string old = flagTable.controlKey(index);
    flagTable.setControlKey(index, key);
    if (old != key)
        refreshRecord(old);
    refreshRecord(key);
}

QVariantMap VelmoraControlPrivate::dynamicFlagBag() const
{
    QVariantMap bag;
    for (const QByteArray &name : q->dynamicPropertyNames())
        if (name.startsWith("ControlFlag"))
            bag.insert(QString::fromLatin1(name), q->property(name.constData()));
    return bag;
}

void VelmoraControlPrivate::mirrorFlag(const QString &key, const QVariant &value, bool wasDefault, bool isDefault)
{
    // Kept as a dynamic property of the same name, so that a form saved by
    // a form builder carries it; a default is left out, as in any bag.
    if (mirrorOff || (wasDefault && isDefault))
        return;
    if (wasDefault && mirrored >= MirrorLimit) {
        stopMirroring(mirrored + 1);
        return;
    }
    syncingDynamic = true;
    q->setProperty(key.toLatin1().constData(), isDefault ? QVariant() : value);
    syncingDynamic = false;
    mirrored += wasDefault ? 1 : isDefault ? -1 : 0;
}

void VelmoraControlPrivate::dropMirror()
{
    syncingDynamic = true;
    for (const QByteArray &name : q->dynamicPropertyNames())
        if (name.startsWith("ControlFlag"))
            q->setProperty(name.constData(), QVariant());
    syncingDynamic = false;
    mirrored = 0;
}

void VelmoraControlPrivate::stopMirroring(int needed)
{
    dropMirror();
    mirrorOff = true;
    qWarning("VelmoraControl: %d per-control options are more than are kept as dynamic properties (%d); a form "
             "builder saving the form does not see them (writeProperties() has them all)",
             needed, MirrorLimit);
}

bool VelmoraControlPrivate::dynamicPropertyChanged(const QByteArray &name)
{
    if (syncingDynamic || !name.startsWith("ControlFlag"))
        return false;
    int f = 0, index = 0;
    if (!parseIndexedKey(QString::fromLatin1(name), &f, &index) || index < 1)
        return false;
    // Beyond the count the key is kept on the object and read when the
    // count grows to it (a form may set the count after its entries).
    // Within it, only the value that changed: a form gives its entries one
    // key at a time, and reading a dynamic property walks through all.
    if (index <= flagTable.count())
        readFlagValue(f, index, q->property(name.constData()));
    return true;
}

void VelmoraControlPrivate::mirrorAllFlags()
{
    int needed = 0;
    for (int i = 1; i <= flagTable.count(); ++i) {
        needed += flagTable.controlKey(i).empty() ? 0 : 1;
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
            needed += flagTable.flag(ControlFlagTable::Flag(f), i) ? 1 : 0;
    }
    if (needed > MirrorLimit) {
        stopMirroring(needed);
        return;
    }
    // The object's indexed keys say what the table holds, nothing more: a
    // stale one would come back as an entry when the count next grows.
    dropMirror();
    mirrorOff = false;
    for (int i = 1; i <= flagTable.count(); ++i) {
        const QString key = QString::fromStdString(flagTable.controlKey(i));
        mirrorFlag(indexedKey(-1, i), key, true, key.isEmpty());
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f) {
            const bool on = flagTable.flag(ControlFlagTable::Flag(f), i);
            mirrorFlag(indexedKey(f, i), on, true, !on);
        }
    }
}

bool VelmoraControlPrivate::flagIndexOk(const char *member, int index, bool *ok) const
{
    const bool inRange = index >= 0 && index <= flagTable.count();
    if (ok)
        *ok = inRange;
    if (!inRange)
        qWarning("VelmoraControl::%s(%d): index out of range 0..%d", member, index, flagTable.count());
    return inRange;
}

bool VelmoraControlPrivate::flag(int f, int index, bool *ok) const
{
    const auto flag = ControlFlagTable::Flag(f);
    return flagIndexOk(("ControlFlag" + std::string(ControlFlagTable::flagName(flag))).c_str(), index, ok)
        && flagTable.flag(flag, index);
}

void VelmoraControlPrivate::setFlag(int f, int index, bool on, bool *ok)
{
    const auto flag = ControlFlagTable::Flag(f);
    const std::string member = "setControlFlag" + std::string(ControlFlagTable::flagName(flag));
    if (!flagIndexOk(member.c_str(), index, ok))
        return;
    const bool before = flagTable.flag(flag, index);
    flagTable.setFlag(flag, index, on);
    if (index == 0 || before == on)
        return; // entry 0 is held, but is no entry
    refreshRecord(flagTable.controlKey(index));
    mirrorFlag(indexedKey(f, index), on, !before, !on);
    changed(member.c_str() + 3); // the property's own name, without "set"
}

std::string VelmoraControlPrivate::keyOf(QWidget *w) const
{
    const auto &form = driver.hostForm();
    // Not serving a form (yet, or in an editor): the form it sits on, as
    // the settings pages list it.
    QWidget *formWidget = form ? driver.form() : listedForm();
    if (!w || !formWidget || w == formWidget || !formWidget->isAncestorOf(w))
        return {};
    const auto view = form ? form : velmora::qt::QtForm::create(formWidget);
    return view ? velmora::controlKey(view->adapterFor(w).get()) : std::string();
}

int VelmoraControl::ControlFlagCount() const { return d->flagTable.count(); }

void VelmoraControl::setControlFlagCount(int count)
{
    d->setFlagCount(count, "setControlFlagCount");
}

QString VelmoraControl::ControlFlagControlKey(int index, bool *ok) const
{
    if (!d->flagIndexOk("ControlFlagControlKey", index, ok))
        return QString();
    return QString::fromStdString(d->flagTable.controlKey(index));
}

void VelmoraControl::setControlFlagControlKey(int index, const QString &key, bool *ok)
{
    if (!d->flagIndexOk("setControlFlagControlKey", index, ok))
        return;
    const std::string k = key.toStdString();
    const std::string old = d->flagTable.controlKey(index);
    if (old == k)
        return;
    if (index == 0) {
        d->flagTable.setControlKey(0, k);
        return;
    }
    d->setFlagKey(index, k);
    d->mirrorFlag(VelmoraControlPrivate::indexedKey(-1, index), key, old.empty(), key.isEmpty());
    d->changed("ControlFlagControlKey");
}

#define VELMORA_FLAG_ACCESSORS(Name)                                                                              \
    bool VelmoraControl::ControlFlag##Name(int index, bool *ok) const                                             \
    {                                                                                                             \
        return d->flag(ControlFlagTable::Name, index, ok);                                                        \
    }                                                                                                             \
    void VelmoraControl::setControlFlag##Name(int index, bool on, bool *ok)                                       \
    {                                                                                                             \
        d->setFlag(ControlFlagTable::Name, index, on, ok);                                                        \
    }

VELMORA_FLAG_ACCESSORS(DontScaleControl)
VELMORA_FLAG_ACCESSORS(DontScaleFont)
VELMORA_FLAG_ACCESSORS(DontScaleBorder)
VELMORA_FLAG_ACCESSORS(DontScaleGraphic)
VELMORA_FLAG_ACCESSORS(DontScaleLeft)
VELMORA_FLAG_ACCESSORS(DontScaleTop)
VELMORA_FLAG_ACCESSORS(DontScaleWidth)
VELMORA_FLAG_ACCESSORS(DontScaleHeight)
VELMORA_FLAG_ACCESSORS(DontScaleRight)
VELMORA_FLAG_ACCESSORS(DontScaleBottom)

#undef VELMORA_FLAG_ACCESSORS

int VelmoraControl::entryOf(const QString &key) const
{
    return d->flagTable.entryOf(key.toStdString());
}

VelmoraControl::Options VelmoraControl::options(QWidget *control) const
{
    const int entry = d->flagTable.entryOf(d->keyOf(control));
    Options out;
    if (entry > 0)
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
            out.setFlag(optionOf(f), d->flagTable.flag(ControlFlagTable::Flag(f), entry));
    return out;
}

void VelmoraControl::setOptions(QWidget *control, Options options)
{
    // A slot of PropertyChanged may delete this control: the internals stay
    // alive to the end of the call, and it stops there.
    const std::shared_ptr<VelmoraControlPrivate> d = this->d;
    const std::string key = d->keyOf(control);
    if (key.empty()) {
        qWarning("VelmoraControl::setOptions: %s is no control of the form; nothing changed",
                 control ? qPrintable(control->objectName()) : "a null widget");
        return;
    }
    int entry = d->flagTable.entryOf(key);
    if (entry == 0) {
        if (!options)
            return; // nothing to keep, and no entry to add for it
        if (!d->setFlagCount(d->flagTable.count() + 1, "setOptions") || !d->q)
            return;
        entry = d->flagTable.count();
        setControlFlagControlKey(entry, QString::fromStdString(key));
    }
    for (int f = 0; f < ControlFlagTable::FlagCount && d->q && entry <= d->flagTable.count(); ++f)
        d->setFlag(f, entry, options.testFlag(optionOf(f)), nullptr);
}
