#include "form/WindowSettings.h"

#include <QSettings>
#include <QUrl>

#include <cmath>

namespace velmora {

namespace {

const char *const Keys[] = {"WindowLeft", "WindowTop", "WindowWidth", "WindowHeight"};
// Twips of the largest coordinate Qt places a window at (QWIDGETSIZE_MAX
// pixels at 15 twips a pixel); anything beyond is not a saved position.
constexpr double MaxTwips = 16777215.0 * 15;
// Twips of the largest window side a saved state may give: a window is drawn
// into memory of its size, and no screen shows a larger one.
constexpr double MaxSideTwips = 10000.0 * 15;

QSettings store()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Velmora"),
                     QStringLiteral("Velmora"));
}

} // namespace

QString WindowSettings::groupFor(const QString &windowName)
{
    // Percent-encoding gives "%" only before two hex digits, so a group
    // that breaks that pattern is no encoded name: the empty name gets
    // "%", and a name UTF-8 cannot carry exactly (a lone surrogate) its
    // UTF-16 code units after "%u".
    if (windowName.isEmpty())
        return QStringLiteral("%");
    if (!windowName.isValidUtf16()) {
        QString units = QStringLiteral("%u");
        for (const QChar c : windowName)
            units += QString::number(c.unicode(), 16).rightJustified(4, QLatin1Char('0'));
        return units;
    }
    // Dots too: ".." must not read as anything but a name.
    return QString::fromLatin1(QUrl::toPercentEncoding(windowName, QByteArray(), QByteArrayLiteral(".~")));
}

void WindowSettings::save(const QString &windowName, const State &state)
{
    QSettings s = store();
    s.beginGroup(groupFor(windowName));
    const double values[] = {state.rect.left(), state.rect.top(), state.rect.width(), state.rect.height()};
    // Written as text, the same whatever the user's locale.
    for (int i = 0; i < 4; ++i)
        s.setValue(QLatin1String(Keys[i]), QString::number(float(values[i])));
    s.setValue(QStringLiteral("WindowState"), QString::number(state.windowState));
    s.endGroup();
    s.sync();
}

std::optional<WindowSettings::State> WindowSettings::load(const QString &windowName)
{
    QSettings s = store();
    s.beginGroup(groupFor(windowName));
    double values[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = s.value(QLatin1String(Keys[i])).toString().toDouble(&ok);
        if (!ok || !std::isfinite(values[i]) || std::fabs(values[i]) > (i >= 2 ? MaxSideTwips : MaxTwips)
            || (i >= 2 && values[i] < 0))
            return std::nullopt;
    }
    bool ok = false;
    const int windowState = s.value(QStringLiteral("WindowState")).toString().toInt(&ok);
    if (!ok || windowState < 0 || windowState > 2)
        return std::nullopt;
    return State{QRectF(values[0], values[1], values[2], values[3]), windowState};
}

void WindowSettings::remove(const QString &windowName)
{
    QSettings s = store();
    s.remove(groupFor(windowName));
    s.sync();
}

} // namespace velmora
