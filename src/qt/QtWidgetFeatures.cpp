#include "qt/QtWidgetFeatures.h"

#include "layout/MemberNames.h"
#include "qt/QtFont.h"
#include "qt/QtPicture.h"
#include "qt/QtUnits.h"

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QIcon>
#include <QLabel>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTextCharFormat>

namespace velmora::qt {

namespace {

const char *const TabMaxWidthProperty = "TabMaxWidth";
const char *const TabsPerRowProperty = "TabsPerRow";

QIcon::Mode iconMode(std::string_view which)
{
    if (which == "DownPicture")
        return QIcon::Active;
    if (which == "DisabledPicture")
        return QIcon::Disabled;
    return QIcon::Normal;
}

// The pixmap an icon holds for a mode, at its largest stored size. Modes
// the icon only derives (no pixmap of their own) read as an empty picture.
QPixmap iconPixmap(const QIcon &icon, QIcon::Mode mode, const QSize &fallback)
{
    if (icon.isNull())
        return QPixmap();
    QList<QSize> sizes = icon.availableSizes(mode, QIcon::Off);
    if (sizes.isEmpty()) {
        if (mode != QIcon::Normal)
            return QPixmap();
        sizes = icon.availableSizes();
    }
    QSize best = fallback;
    for (const QSize &s : sizes)
        if (best.isEmpty() || s.width() * s.height() > best.width() * best.height())
            best = s;
    return best.isEmpty() ? QPixmap() : icon.pixmap(best, mode, QIcon::Off);
}

// A copy of `icon` with the pixmap of one mode replaced, every other stored
// mode and state kept.
QIcon replaceMode(const QIcon &icon, QIcon::Mode target, const QPixmap &pixmap)
{
    QIcon result;
    const QIcon::Mode modes[] = {QIcon::Normal, QIcon::Active, QIcon::Disabled, QIcon::Selected};
    const QIcon::State states[] = {QIcon::Off, QIcon::On};
    for (QIcon::Mode mode : modes) {
        for (QIcon::State state : states) {
            if (mode == target && state == QIcon::Off) {
                if (!pixmap.isNull())
                    result.addPixmap(pixmap, mode, state);
                continue;
            }
            for (const QSize &s : icon.availableSizes(mode, state))
                result.addPixmap(icon.pixmap(s, mode, state), mode, state);
        }
    }
    return result;
}

HostError typeMismatch()
{
    return hostError(HostErrc::InvalidValue, "Type mismatch");
}

} // namespace

GetResult getPicture(QWidget *w, std::string_view which)
{
    if (auto *label = qobject_cast<QLabel *>(w)) {
        if (which != "Picture")
            return hostError(HostErrc::NoSuchMember, std::string(which));
        return Value(QtPicture::make(label->pixmap()));
    }
    if (auto *button = qobject_cast<QAbstractButton *>(w))
        return Value(QtPicture::make(iconPixmap(button->icon(), iconMode(which), button->iconSize())));
    return hostError(HostErrc::NoSuchMember, std::string(which));
}

SetResult setPicture(QWidget *w, std::string_view which, const Value &value)
{
    QPixmap pm;
    if (!QtPicture::fromValue(value, pm))
        return typeMismatch();
    if (auto *label = qobject_cast<QLabel *>(w)) {
        if (which != "Picture")
            return hostError(HostErrc::NoSuchMember, std::string(which));
        // Clearing the pixmap of a label that shows text would wipe the text.
        if (!pm.isNull())
            label->setPixmap(pm);
        else if (!label->pixmap().isNull())
            label->clear();
        return Done{};
    }
    if (auto *button = qobject_cast<QAbstractButton *>(w)) {
        const QIcon::Mode mode = iconMode(which);
        const QIcon current = button->icon();
        if (pm.isNull() && (current.isNull() || current.availableSizes(mode, QIcon::Off).isEmpty()))
            return Done{};
        button->setIcon(replaceMode(current, mode, pm));
        // The icon size is what makes a scaled picture show scaled.
        if (mode == QIcon::Normal && !pm.isNull())
            button->setIconSize(pm.deviceIndependentSize().toSize());
        return Done{};
    }
    return hostError(HostErrc::NoSuchMember, std::string(which));
}

GetResult getTabMember(QTabWidget *tabs, std::string_view name)
{
    if (name == member::Tabs)
        return Value(tabs->count());
    if (name == member::TabOrientation)
        return Value(static_cast<int>(tabs->tabPosition()));
    if (name == member::TabsPerRow) {
        const int perRow = tabs->property(TabsPerRowProperty).toInt();
        return Value(perRow > 0 ? perRow : tabs->count());
    }
    if (name == member::TabMaxWidth)
        return Value(tabs->property(TabMaxWidthProperty).toFloat());
    if (name == member::TabHeight) {
        const QTabBar *bar = tabs->tabBar();
        const QSize size = bar->isVisible() ? bar->size() : bar->sizeHint();
        const bool vertical = tabs->tabPosition() == QTabWidget::West || tabs->tabPosition() == QTabWidget::East;
        return vertical ? Value(static_cast<float>(pixelsToUnits(size.width(), ScaleTwips, Axis::X)))
                        : Value(static_cast<float>(pixelsToUnits(size.height(), ScaleTwips, Axis::Y)));
    }
    return hostError(HostErrc::NoSuchMember, std::string(name));
}

SetResult setTabMember(QTabWidget *tabs, std::string_view name, const Value &value)
{
    if (name == member::Tabs)
        return hostError(HostErrc::ReadOnly, "Tabs are added through the tab widget");
    if (name == member::TabHeight) // the bar takes its height from its font and icon size
        return hostError(HostErrc::ReadOnly, "Qt sizes the tab bar itself");
    if (name == member::TabOrientation) {
        const auto v = value.toLong();
        if (!v || *v < 0 || *v > 3)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        tabs->setTabPosition(static_cast<QTabWidget::TabPosition>(*v));
        return Done{};
    }
    if (name == member::TabsPerRow) {
        const auto v = value.toLong();
        if (!v || *v < 1)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        tabs->setProperty(TabsPerRowProperty, static_cast<int>(*v));
        return Done{};
    }
    if (name == member::TabMaxWidth) {
        const auto v = value.toSingle();
        if (!v || *v < 0)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        tabs->setProperty(TabMaxWidthProperty, *v);
        return Done{};
    }
    return hostError(HostErrc::NoSuchMember, std::string(name));
}

void applyTabMaxWidth(QTabWidget *tabs)
{
    if (tabs->property(TabMaxWidthProperty).toFloat() > 0 && tabs->elideMode() == Qt::ElideNone)
        tabs->setElideMode(Qt::ElideRight);
}

GetResult getTabPicture(QTabWidget *tabs, int index)
{
    if (index < 0 || index >= tabs->count())
        return hostError(HostErrc::IndexOutOfRange, "Invalid tab index");
    return Value(QtPicture::make(iconPixmap(tabs->tabIcon(index), QIcon::Normal, tabs->iconSize())));
}

SetResult setTabPicture(QTabWidget *tabs, int index, const Value &value)
{
    if (index < 0 || index >= tabs->count())
        return hostError(HostErrc::IndexOutOfRange, "Invalid tab index");
    QPixmap pm;
    if (!QtPicture::fromValue(value, pm))
        return typeMismatch();
    if (pm.isNull() && tabs->tabIcon(index).isNull())
        return Done{};
    tabs->setTabIcon(index, pm.isNull() ? QIcon() : QIcon(pm));
    if (!pm.isNull())
        tabs->setIconSize(pm.deviceIndependentSize().toSize());
    return Done{};
}

HostObjectPtr calendarFont(QCalendarWidget *calendar, std::string_view slot)
{
    QPointer<QCalendarWidget> cal = calendar;
    if (slot == "DayFont") {
        return QtFont::make(
            [cal]() -> std::optional<QFont> {
                if (!cal)
                    return std::nullopt;
                // What the header format sets wins over the calendar's font.
                return cal->headerTextFormat().font().resolve(cal->font());
            },
            [cal](const QFont &font) {
                if (!cal)
                    return false;
                QTextCharFormat f = cal->headerTextFormat();
                f.setFont(font);
                cal->setHeaderTextFormat(f);
                return true;
            });
    }
    const char *child = slot == "GridFont"    ? "qt_calendar_calendarview"
                        : slot == "TitleFont" ? "qt_calendar_navigationbar"
                                              : nullptr;
    if (!child)
        return nullptr;
    QWidget *part = calendar->findChild<QWidget *>(QLatin1String(child));
    return part ? QtFont::ofWidget(part) : nullptr;
}

} // namespace velmora::qt
