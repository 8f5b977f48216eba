// VelmoraControl's saved settings: the property bag (what a form's saved
// description holds for the component), and what each setting may hold
// whichever route it comes by.
#include "control/VelmoraControl.h"

#include "control/VelmoraControl_p.h"
#include "layout/ControlFlagTable.h"
#include "qt/QtUnits.h"

#include <QMainWindow>

#include <QMetaEnum>
#include <QMetaProperty>

#include <cmath>
#include <limits>

using velmora::ControlFlagTable;

namespace {

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

double doubleOf(const QVariant &v, double fallback)
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
    return ok && std::isfinite(d) ? d : fallback;
}

// The design sizes are Singles.
float singleOf(const QVariant &v, float fallback)
{
    const double d = doubleOf(v, fallback);
    return std::abs(d) <= double(std::numeric_limits<float>::max()) ? float(d) : fallback;
}

QString textOf(const QVariant &v, const QString &fallback)
{
    const int type = v.metaType().id();
    return type == QMetaType::QString || type == QMetaType::QByteArray ? v.toString() : fallback;
}

constexpr qint64 Int16Min = std::numeric_limits<qint16>::min(), Int16Max = std::numeric_limits<qint16>::max();
constexpr qint64 Int32Min = std::numeric_limits<qint32>::min(), Int32Max = std::numeric_limits<qint32>::max();

} // namespace

namespace velmora::settings {

double effectSeconds(double seconds)
{
    const double s = seconds < 0 ? 0 : seconds > MaxEffectSeconds ? MaxEffectSeconds : seconds;
    return std::round(s * 1000) / 1000;
}

bool isEffectValue(const char *property, int value)
{
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    const QMetaProperty p = mo.property(mo.indexOfProperty(property));
    return p.isEnumType() && p.enumerator().valueToKey(value) != nullptr;
}

bool isUiText(const QString &text, QString *why)
{
    const auto hex = [](char16_t c) { return QString::number(c, 16).rightJustified(4, QLatin1Char('0')).toUpper(); };
    const auto refuse = [&](const QString &reason) {
        if (why)
            *why = reason;
        return false;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == u'\r')
            return refuse(QStringLiteral("a carriage return (uic drops it)"));
        if (c < 0x20 && c != u'\t' && c != u'\n')
            return refuse(QStringLiteral("the control character U+%1, which XML 1.0 cannot hold").arg(hex(c)));
        if (c == 0xFFFE || c == 0xFFFF)
            return refuse(QStringLiteral("the noncharacter U+%1").arg(hex(c)));
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && QChar::isLowSurrogate(text[i + 1].unicode())) {
            ++i;
            continue;
        }
        if (QChar::isSurrogate(c))
            return refuse(QStringLiteral("half of a surrogate pair"));
    }
    return true;
}

} // namespace velmora::settings

void VelmoraControlPrivate::readFlagEntry(int index, const QVariantMap &bag)
{
    setFlagKey(index, textOf(bag.value(indexedKey(-1, index)), QString()).toStdString());
    for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
        flagTable.setFlag(ControlFlagTable::Flag(f), index, boolOf(bag.value(indexedKey(f, index)), false));
    refreshRecord(flagTable.controlKey(index));
}

void VelmoraControlPrivate::readFlagValue(int f, int index, const QVariant &value)
{
    if (f < 0) {
        setFlagKey(index, textOf(value, QString()).toStdString());
        return;
    }
    flagTable.setFlag(ControlFlagTable::Flag(f), index, boolOf(value, false));
    refreshRecord(flagTable.controlKey(index));
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
    dr.KeepOnScreen = false;
    d->flagTable.setCount(0);
    d->refreshAllRecords();
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
    pl.ScaleX = velmora::WindowPlacement::clampPercent(int(w("ScaleX", 0, Int16Min, Int16Max)));
    pl.ScaleY = velmora::WindowPlacement::clampPercent(int(w("ScaleY", 0, Int16Min, Int16Max)));
    pl.StayOnTop = b("StayOnTop", false);
    using velmora::settings::sizeLimit;
    dr.MinWidth = sizeLimit(int(w("MinWidth", 0, Int32Min, Int32Max)));
    dr.MinHeight = sizeLimit(int(w("MinHeight", 0, Int32Min, Int32Max)));
    dr.MaxWidth = sizeLimit(int(w("MaxWidth", 0, Int32Min, Int32Max)));
    dr.MaxHeight = sizeLimit(int(w("MaxHeight", 0, Int32Min, Int32Max)));
    e.ScaleBorders = b("ScaleBorders", true);
    dr.ResizeOnMouseUp = b("ResizeOnMouseUp", true);
    // A count that is no 16-bit count, or a negative one, is unusable: no
    // entries, rather than millions of empty ones.
    const int count = int(w("ControlFlagCount", 0, 0, ControlFlagTable::MaxCount));
    // The bag's entries are the saved ones: none read before survives.
    d->flagTable.setCount(0);
    d->refreshAllRecords();
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
    dr.FormCloseTime = velmora::settings::effectSeconds(doubleOf(bag.value(QStringLiteral("FormCloseTime")), 1));
    dr.FormOpenTime = velmora::settings::effectSeconds(doubleOf(bag.value(QStringLiteral("FormOpenTime")), 1));
    dr.KeepOnScreen = b("KeepOnScreen", false);
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
        if (!t.controlKey(i).empty())
            bag.insert(VelmoraControlPrivate::indexedKey(-1, i), QString::fromStdString(t.controlKey(i)));
        for (int f = 0; f < ControlFlagTable::FlagCount; ++f)
            if (t.flag(ControlFlagTable::Flag(f), i))
                bag.insert(VelmoraControlPrivate::indexedKey(f, i), true);
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
    put("FormCloseTime", dr.FormCloseTime, 1.0);
    put("FormOpenTime", dr.FormOpenTime, 1.0);
    // Beyond the classic keys.
    put("KeepOnScreen", dr.KeepOnScreen, false);
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

