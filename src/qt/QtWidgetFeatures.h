// Velmora - host members of particular Qt widget classes: label and button
// pictures, the tab widget's tab members, the calendar's extra fonts.
#pragma once

#include "layout/HostObject.h"

class QCalendarWidget;
class QTabWidget;
class QWidget;

namespace velmora::qt {

// Picture is a QLabel's pixmap or a button's icon; DownPicture and
// DisabledPicture are the icon's Active and Disabled modes.
GetResult getPicture(QWidget *w, std::string_view which);
SetResult setPicture(QWidget *w, std::string_view which, const Value &value);

// Tabs, TabHeight, TabMaxWidth, TabsPerRow, TabOrientation.
GetResult getTabMember(QTabWidget *tabs, std::string_view name);
SetResult setTabMember(QTabWidget *tabs, std::string_view name, const Value &value);
GetResult getTabPicture(QTabWidget *tabs, int index);
SetResult setTabPicture(QTabWidget *tabs, int index, const Value &value);
// Lets the tabs share the bar instead of scrolling once a maximum tab
// width is in force.
void applyTabMaxWidth(QTabWidget *tabs);

// DayFont (the weekday header), GridFont (the dates), TitleFont (the
// month and year bar); nullptr for a part the calendar does not have.
HostObjectPtr calendarFont(QCalendarWidget *calendar, std::string_view slot);

} // namespace velmora::qt
