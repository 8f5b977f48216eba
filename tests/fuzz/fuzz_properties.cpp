// Saved settings from hostile property bags. The input is lines
// "Key=Value"; a value's type comes from its prefix (b: bool, i: int,
// u: uint, l: qlonglong, L: qulonglong, d: double, f: float, s: string,
// y: byte array, t: string list, n: no value; none: string), and strings
// take \n \r \t \xHH \uHHHH escapes so that any character can be given.
//
// What must hold: readProperties then writeProperties gives a bag W that
// reads back to W (what was usable is kept, nothing else is lost), and W
// written into a .ui by settingsXml and loaded by VelmoraUiLoader gives W
// again, less the texts a .ui cannot carry (those are left out).
#include "FuzzCommon.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"

#include <QBuffer>
#include <QStringList>

#include <memory>

namespace {

constexpr int MostEntries = 2048;

QString unescape(const QByteArray &raw)
{
    QString out;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        if (c != '\\' || i + 1 >= raw.size()) {
            out += QLatin1Char(c);
            continue;
        }
        const char e = raw[++i];
        const auto hex = [&](int digits) {
            const ushort v = raw.mid(i + 1, digits).toUShort(nullptr, 16);
            i += digits;
            return QChar(v);
        };
        switch (e) {
        case 'n': out += u'\n'; break;
        case 'r': out += u'\r'; break;
        case 't': out += u'\t'; break;
        case 'x': out += hex(2); break;
        case 'u': out += hex(4); break; // a lone surrogate too
        default: out += QLatin1Char(e); break;
        }
    }
    return out;
}

QVariant typed(const QByteArray &value)
{
    const QByteArray rest = value.mid(2);
    const QString text = unescape(rest);
    if (value.size() < 2 || value[1] != ':')
        return unescape(value);
    switch (value[0]) {
    case 'b': return text == u"1" || text.compare(u"true", Qt::CaseInsensitive) == 0;
    case 'i': return text.toInt(nullptr, 0);
    case 'u': return text.toUInt(nullptr, 0);
    case 'l': return text.toLongLong(nullptr, 0);
    case 'L': return text.toULongLong(nullptr, 0);
    case 'd': return text.toDouble();
    case 'f': return text.toFloat();
    case 's': return text;
    case 'y': return rest;
    case 't': return text.split(u',');
    case 'n': return QVariant();
    default: return unescape(value);
    }
}

QString describe(const QVariantMap &bag)
{
    QStringList lines;
    for (auto it = bag.cbegin(); it != bag.cend(); ++it)
        lines << QStringLiteral("%1=%2 (%3)").arg(it.key(), it.value().toString(), QString::fromLatin1(it.value().typeName()));
    return lines.join(u'\n');
}

// What differs between two bags, for the report.
QString difference(const QVariantMap &want, const QVariantMap &got)
{
    QStringList out;
    QStringList keys = want.keys() + got.keys();
    keys.removeDuplicates();
    for (const QString &k : keys)
        if (want.value(k) != got.value(k) || want.contains(k) != got.contains(k))
            out << QStringLiteral("%1: wanted %2 (%3), got %4 (%5)")
                       .arg(k, want.value(k).toString(), QString::fromLatin1(want.value(k).typeName()),
                            got.value(k).toString(), QString::fromLatin1(got.value(k).typeName()));
    return out.join(u'\n');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QVariantMap bag;
    for (const QByteArray &line : QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)).split('\n')) {
        const qsizetype eq = line.indexOf('=');
        if (eq > 0)
            bag.insert(QString::fromLatin1(line.left(eq)), typed(line.mid(eq + 1)));
    }

    // Reading costs time in proportion to the count of entries: a count of
    // thousands makes an input take seconds under the sanitizers. Larger
    // counts up to the limit are the same code a thousand times more; the
    // limit itself and beyond stay in (refused, and cheap).
    const QVariant count = bag.value(QStringLiteral("ControlFlagCount"));
    bool whole = false;
    const qint64 n = count.toString().trimmed().toLongLong(&whole, 0);
    const double d = count.toDouble();
    if ((whole && n > MostEntries && n <= 32767) || (d > MostEntries && d < 32767.5))
        return 0;

    auto form = std::make_unique<QWidget>();
    auto *control = new VelmoraControl(form.get());
    control->readProperties(bag);
    const QVariantMap first = control->writeProperties();
    control->readProperties(first);
    const QVariantMap second = control->writeProperties();
    FUZZ_CHECK(first == second, "the saved settings do not read back:\n%s\nfrom the bag\n%s",
               qPrintable(difference(first, second)), qPrintable(describe(bag)));

    // The same settings through a .ui file.
    const QString ui = QStringLiteral("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"Form\">\n"
                                      "  <widget class=\"VelmoraControl\" name=\"velmora\">\n%1  </widget>\n"
                                      "</widget></ui>\n")
                           .arg(VelmoraUiLoader::settingsXml(first));
    QByteArray utf8 = ui.toUtf8();
    QBuffer buffer(&utf8);
    buffer.open(QIODevice::ReadOnly);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> loaded(loader.load(&buffer));
    FUZZ_CHECK(loaded, "settingsXml gave a .ui the loader refuses: %s\n%s", qPrintable(loader.errorString()),
               qPrintable(ui));
    auto *fromUi = loaded ? loaded->findChild<VelmoraControl *>() : nullptr;
    FUZZ_CHECK(fromUi, "no VelmoraControl in\n%s", qPrintable(ui));
    if (!fromUi)
        return 0;
    QVariantMap expected = first;
    for (auto it = expected.begin(); it != expected.end();)
        if (it->metaType().id() == QMetaType::QString && !velmora::settings::isUiText(it->toString()))
            it = expected.erase(it);
        else
            ++it;
    const QVariantMap viaUi = fromUi->writeProperties();
    FUZZ_CHECK(viaUi == expected, "settings through settingsXml and VelmoraUiLoader differ:\n%s\n.ui:\n%s",
               qPrintable(difference(expected, viaUi)), qPrintable(ui));
    return 0;
}
