// VelmoraControl's saved settings: the property bag (what a form's saved
// description holds for the component) and the per-control options, kept
// as eleven parallel arrays that the bag stores and as the records the
// resize pass reads.
#include "control/VelmoraControl.h"

#include "control/VelmoraControl_p.h"
#include "layout/ControlFlagTable.h"
#include "qt/QtUnits.h"

#include <QMainWindow>

#include <QDynamicPropertyChangeEvent>
#include <QRegularExpression>

#include <cmath>
#include <limits>

using velmora::ControlFlagTable;

namespace {

const char *const KeyBase = "ControlFlagControlKey";

// The base names of the indexed keys in their saved order: the control key,
// then the ten switches.
QString flagBase(ControlFlagTable::Flag f)
{
    return QStringLiteral("ControlFlag") + QLatin1String(ControlFlagTable::flagName(f));
}

// Values of a bag as the host's typed store gives them: anything of another
// type, or out of the member's range, is unusable and reads as the default.
bool boolOf(const QVariant &v, bool fallback)
{
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return v.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return v.toLongLong() != 0;
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        const QString t = v.toString().trimmed().toLower();
        if (t == QLatin1String("true") || t == QLatin1String("-1") || t == QLatin1String("1"))
            return true;
        if (t == QLatin1String("false") || t == QLatin1String("0"))
            return false;
        return fallback;
    }
    default:
        return fallback;
    }
}

qint64 wholeOf(const QVariant &v, qint64 fallback, qint64 lowest, qint64 highest)
{
    bool ok = false;
    qint64 n = 0;
    switch (v.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        n = v.toLongLong(&ok);
        break;
    case QMetaType::ULongLong:
        ok = v.toULongLong() <= quint64(std::numeric_limits<qint64>::max());
        n = qint64(v.toULongLong());
        break;
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = v.toDouble();
        ok = std::isfinite(d) && d >= double(lowest) && d <= double(highest);
        n = ok ? qint64(std::llround(d)) : 0;
        break;
    }
    case QMetaType::QString:
    case QMetaType::QByteArray:
        n = v.toString().trimmed().toLongLong(&ok, 0);
        break;
    default:
        break;
    }
    return ok && n >= lowest && n <= highest ? n : fallback;
}

float singleOf(const QVariant &v, float fallback)
{
    bool ok = false;
    double d = 0;
    switch (v.metaType().id()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::QString:
    case QMetaType::QByteArray:
        d = v.toDouble(&ok);
        break;
    default:
        break;
    }
    return ok && std::isfinite(d) && std::abs(d) <= double(std::numeric_limits<float>::max()) ? float(d) : fallback;
}

QString textOf(const QVariant &v, const QString &fallback)
{
    const int type = v.metaType().id();
    return type == QMetaType::QString || type == QMetaType::QByteArray ? v.toString() : fallback;
}

constexpr qint64 Int16Min = std::numeric_limits<qint16>::min(), Int16Max = std::numeric_limits<qint16>::max();
constexpr qint64 Int32Min = std::numeric_limits<qint32>::min(), Int32Max = std::numeric_limits<qint32>::max();

} // namespace

void VelmoraControlPrivate::applyFlagEntry(int index)
{
    // The record the pass reads follows the entry, whatever its key.
    if (index < 1 || index > flagTable.count())
        return;
    const std::string &key = flagTable.controlKey(index);
    velmora::ControlFlags &record = engine.store().ensureFlags(key);
    record.ControlKey = key;
    flagTable.applyTo(index, record);
}

void VelmoraControlPrivate::readFlagEntry(int index, const QVariantMap &bag)
{
    const QString n = QString::number(index);
    flagTable.setControlKey(index, textOf(bag.value(QLatin1String(KeyBase) + n), QString()).toStdString());
    for (int f = 0; f < ControlFlagTable::FlagCount; ++f) {
        const auto flag = ControlFlagTable::Flag(f);
        flagTable.setFlag(flag, index, boolOf(bag.value(flagBase(flag) + n), false));
    }
    applyFlagEntry(index);
}

QVariantMap VelmoraControlPrivate::dynamicFlagBag() const
{
    QVariantMap bag;
    for (const QByteArray &name : q->dynamicPropertyNames())
        if (name.startsWith("ControlFlag"))
            bag.insert(QString::fromLatin1(name), q->property(name.constData()));
    return bag;
}

void VelmoraControlPrivate::mirrorFlag(const QString &key, const QVariant &value, bool isDefault)
{
    // Kept as a dynamic property of the same name, so that a form saved by
    // a form builder carries it; a default is left out, as in any bag.
    syncingDynamic = true;
    q->setProperty(key.toLatin1().constData(), isDefault ? QVariant() : value);
    syncingDynamic = false;
}

bool VelmoraControlPrivate::dynamicPropertyChanged(const QByteArray &name)
{
    if (syncingDynamic || !name.startsWith("ControlFlag"))
        return false;
    static const QRegularExpression indexed(QStringLiteral("^(ControlFlag[A-Za-z]+?)([1-9][0-9]*)$"));
    const auto m = indexed.match(QString::fromLatin1(name));
    if (!m.hasMatch())
        return false;
    bool ok = false;
    const int index = m.captured(2).toInt(&ok);
    // Beyond the count the key is kept on the object and read when the
    // count grows to it (a form may set the count after its entries).
    if (!ok || index > flagTable.count())
        return true;
    // Only this entry's keys: a form gives its entries one key at a time.
    QVariantMap entry;
    const QString n = QString::number(index);
    for (int f = -1; f < ControlFlagTable::FlagCount; ++f) {
        const QString key = (f < 0 ? QString::fromLatin1(KeyBase) : flagBase(ControlFlagTable::Flag(f))) + n;
        entry.insert(key, q->property(key.toLatin1().constData()));
    }
    readFlagEntry(index, entry);
    return true;
}

std::optional<std::array<float, 4>> VelmoraControlPrivate::measuredDesignSizes() const
{
    using namespace velmora::qt;
    if (!designTime)
        return std::nullopt;
    QWidget *form = formFor(q->parentWidget());
    if (!form)
        return std::nullopt;
    // Outer: what holds the form (a main window around its centre; a
    // window with its frame); inner: the form, in its own units.
    QWidget *holder = qobject_cast<QMainWindow *>(form->parentWidget()) ? form->parentWidget() : form;
    const QSize outer = holder->isWindow() ? holder->frameGeometry().size() : holder->size();
    bool ok = false;
    int mode = form->property("ScaleMode").toInt(&ok);
    if (!ok || !isValidScaleMode(mode))
        mode = ScaleTwips;
    return std::array<float, 4>{float(pixelsToUnits(outer.width(), ScaleTwips, Axis::X)),
                                float(pixelsToUnits(outer.height(), ScaleTwips, Axis::Y)),
                                float(pixelsToUnits(form->width(), mode, Axis::X)),
                                float(pixelsToUnits(form->height(), mode, Axis::Y))};
}

void VelmoraControlPrivate::mirrorAllFlags()
{
    // The object's indexed keys say what the table holds, nothing more: a
    // stale one would come back as an entry when the count next grows.
    syncingDynamic = true;
    for (const QByteArray &name : q->dynamicPropertyNames())
        if (name.startsWith("ControlFlag"))
            q->setProperty(name.constData(), QVariant());
    syncingDynamic = false;
    for (int i = 1; i <= flagTable.count(); ++i) {
        const QString n = QString::number(i);
        const QString key = QString::fromStdString(flagTable.controlKey(i));
        mirrorFlag(QLatin1String(KeyBase) + n, key, key.isEmpty());
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f) {
            const bool on = flagTable.flag(ControlFlagTable::Flag(f), i);
            mirrorFlag(flagBase(ControlFlagTable::Flag(f)) + n, on, !on);
        }
    }
}

void VelmoraControl::initProperties()
{
    auto &e = d->engine;
    auto &dr = d->driver;
    e.ScaleFonts = e.ScaleBorders = e.ScaleGraphics = true;
    dr.ScaleControls = dr.ResizeOnMouseUp = true;
    dr.placement = velmora::WindowPlacement();
    e.GradientFill = false;
    dr.GradientColour = 0xFF0000;
    dr.MinWidth = dr.MinHeight = dr.MaxWidth = dr.MaxHeight = 0;
    dr.ReplaceFontsWith = QStringLiteral("<none>");
    dr.SaveWindowState = false;
    dr.WindowName.clear();
    e.FormPicture = FpNone;
    dr.FormOpen = dr.FormClose = 0;
    dr.FormOpenTime = dr.FormCloseTime = 1;
    d->flagTable.setCount(0);
    d->mirrorAllFlags();
}

void VelmoraControl::readProperties(const QVariantMap &bag)
{
    // Straight into the fields, in the order the bag was always read:
    // nothing acts on the form while the settings arrive.
    auto &e = d->engine;
    auto &dr = d->driver;
    auto &pl = dr.placement;
    const auto b = [&](const char *key, bool def) { return boolOf(bag.value(QLatin1String(key)), def); };
    const auto w = [&](const char *key, qint64 def, qint64 lo, qint64 hi) {
        return wholeOf(bag.value(QLatin1String(key)), def, lo, hi);
    };
    e.ScaleFonts = b("ScaleFonts", true);
    pl.CenterX = b("CenterX", false);
    pl.CenterY = b("CenterY", false);
    e.GradientFill = b("GradientFill", false);
    dr.GradientColour = std::uint32_t(w("GradientColour", 0xFF0000, Int32Min, std::numeric_limits<quint32>::max()));
    dr.ScaleControls = b("ScaleControls", true);
    pl.ScaleX = int(w("ScaleX", 0, Int16Min, Int16Max));
    pl.ScaleY = int(w("ScaleY", 0, Int16Min, Int16Max));
    pl.StayOnTop = b("StayOnTop", false);
    dr.MinWidth = int(w("MinWidth", 0, Int32Min, Int32Max));
    dr.MinHeight = int(w("MinHeight", 0, Int32Min, Int32Max));
    dr.MaxWidth = int(w("MaxWidth", 0, Int32Min, Int32Max));
    dr.MaxHeight = int(w("MaxHeight", 0, Int32Min, Int32Max));
    e.ScaleBorders = b("ScaleBorders", true);
    dr.ResizeOnMouseUp = b("ResizeOnMouseUp", true);
    // A count that is no 16-bit count, or a negative one, is unusable: no
    // entries, rather than millions of empty ones.
    const int count = int(w("ControlFlagCount", 0, 0, Int16Max));
    d->flagTable.setCount(count);
    for (int i = 1; i <= count; ++i)
        d->readFlagEntry(i, bag);
    e.ScaleGraphics = b("ScaleGraphics", true);
    dr.ReplaceFontsWith = textOf(bag.value(QStringLiteral("ReplaceFontsWith")), QStringLiteral("<none>"));
    dr.SaveWindowState = b("SaveWindowState", false);
    dr.WindowName = textOf(bag.value(QStringLiteral("WindowName")), QString());
    pl.MdiChildWidth = int(w("MdiChildWidth", 0, Int32Min, Int32Max));
    pl.MdiChildHeight = int(w("MdiChildHeight", 0, Int32Min, Int32Max));
    e.DesignFormWidth = singleOf(bag.value(QStringLiteral("DesignFormWidth")), 0);
    e.DesignFormHeight = singleOf(bag.value(QStringLiteral("DesignFormHeight")), 0);
    e.DesignFormScaleWidth = singleOf(bag.value(QStringLiteral("DesignFormScaleWidth")), 0);
    e.DesignFormScaleHeight = singleOf(bag.value(QStringLiteral("DesignFormScaleHeight")), 0);
    dr.DesignSizeGiven = e.DesignFormWidth != 0 || e.DesignFormHeight != 0 || e.DesignFormScaleWidth != 0
        || e.DesignFormScaleHeight != 0;
    e.FormPicture = int(w("FormPicture", FpNone, FpNone, FpTile));
    dr.FormClose = int(w("FormClose", FcNone, FcNone, FcFold));
    dr.FormOpen = int(w("FormOpen", FoNone, FoNone, FoFold));
    dr.FormCloseTime = singleOf(bag.value(QStringLiteral("FormCloseTime")), 1);
    dr.FormOpenTime = singleOf(bag.value(QStringLiteral("FormOpenTime")), 1);
    d->mirrorAllFlags();
}

QVariantMap VelmoraControl::writeProperties() const
{
    QVariantMap bag;
    const auto put = [&](const char *key, const QVariant &value, const QVariant &def) {
        if (value != def)
            bag.insert(QLatin1String(key), value);
    };
    const auto &e = d->engine;
    const auto &dr = d->driver;
    const auto &pl = dr.placement;
    put("ScaleFonts", e.ScaleFonts, true);
    put("CenterX", pl.CenterX, false);
    put("CenterY", pl.CenterY, false);
    put("GradientFill", e.GradientFill, false);
    put("GradientColour", int(dr.GradientColour), 0xFF0000);
    put("ScaleControls", dr.ScaleControls, true);
    put("ScaleX", pl.ScaleX, 0);
    put("ScaleY", pl.ScaleY, 0);
    put("StayOnTop", pl.StayOnTop, false);
    put("MinWidth", dr.MinWidth, 0);
    put("MinHeight", dr.MinHeight, 0);
    put("MaxWidth", dr.MaxWidth, 0);
    put("MaxHeight", dr.MaxHeight, 0);
    put("ScaleBorders", e.ScaleBorders, true);
    put("ResizeOnMouseUp", dr.ResizeOnMouseUp, true);
    const ControlFlagTable &t = d->flagTable;
    put("ControlFlagCount", t.count(), 0);
    for (int i = 1; i <= t.count(); ++i) {
        const QString n = QString::number(i);
        if (!t.controlKey(i).empty())
            bag.insert(QLatin1String(KeyBase) + n, QString::fromStdString(t.controlKey(i)));
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
            if (t.flag(ControlFlagTable::Flag(f), i))
                bag.insert(flagBase(ControlFlagTable::Flag(f)) + n, true);
    }
    put("ScaleGraphics", e.ScaleGraphics, true);
    put("ReplaceFontsWith", dr.ReplaceFontsWith, QStringLiteral("<none>"));
    put("SaveWindowState", dr.SaveWindowState, false);
    put("WindowName", dr.WindowName, QString());
    put("MdiChildHeight", pl.MdiChildHeight, 0);
    put("MdiChildWidth", pl.MdiChildWidth, 0);
    put("FormPicture", e.FormPicture, int(FpNone));
    put("FormClose", dr.FormClose, int(FcNone));
    put("FormOpen", dr.FormOpen, int(FoNone));
    put("FormCloseTime", float(dr.FormCloseTime), 1.0f);
    put("FormOpenTime", float(dr.FormOpenTime), 1.0f);
    // The design reference is the form as it stands in the editor; a
    // running program never overwrites it.
    if (const auto sizes = d->measuredDesignSizes()) {
        put("DesignFormWidth", (*sizes)[0], 0.0f);
        put("DesignFormHeight", (*sizes)[1], 0.0f);
        put("DesignFormScaleWidth", (*sizes)[2], 0.0f);
        put("DesignFormScaleHeight", (*sizes)[3], 0.0f);
    }
    return bag;
}

int VelmoraControl::ControlFlagCount() const { return d->flagTable.count(); }

void VelmoraControl::setControlFlagCount(int count)
{
    if (count < 0) {
        qWarning("VelmoraControl::setControlFlagCount: %d is not a count", count);
        return;
    }
    const int before = d->flagTable.count();
    d->flagTable.setCount(count);
    // Entries the form gave before their count: read now.
    if (count > before) {
        const QVariantMap bag = d->dynamicFlagBag();
        for (int i = before + 1; i <= count; ++i)
            if (bag.contains(QLatin1String(KeyBase) + QString::number(i)))
                d->readFlagEntry(i, bag);
    }
    if (count != before)
        d->changed("ControlFlagCount");
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
    flagTable.setFlag(flag, index, on);
    if (index == 0)
        return; // held, but no entry
    applyFlagEntry(index);
    mirrorFlag(flagBase(flag) + QString::number(index), on, !on);
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
    d->flagTable.setControlKey(index, key.toStdString());
    if (index == 0)
        return;
    d->applyFlagEntry(index);
    d->mirrorFlag(QLatin1String(KeyBase) + QString::number(index), key, key.isEmpty());
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
