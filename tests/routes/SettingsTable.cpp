#include "SettingsTable.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"
#include "layout/ControlFlags.h"

namespace routes {

void configure(VelmoraControl &control)
{
    for (const Setting &s : nonDefaultSettings())
        control.setProperty(s.name, s.value);
    const auto list = entries();
    control.setControlFlagCount(int(list.size()));
    for (int i = 0; i < int(list.size()); ++i) {
        const int entry = i + 1;
        const char *flags = list[std::size_t(i)].flags;
        control.setControlFlagControlKey(entry, QString::fromUtf8(list[std::size_t(i)].key));
        control.setControlFlagDontScaleControl(entry, flags[0] == '1');
        control.setControlFlagDontScaleFont(entry, flags[1] == '1');
        control.setControlFlagDontScaleBorder(entry, flags[2] == '1');
        control.setControlFlagDontScaleGraphic(entry, flags[3] == '1');
        control.setControlFlagDontScaleLeft(entry, flags[4] == '1');
        control.setControlFlagDontScaleTop(entry, flags[5] == '1');
        control.setControlFlagDontScaleWidth(entry, flags[6] == '1');
        control.setControlFlagDontScaleHeight(entry, flags[7] == '1');
        control.setControlFlagDontScaleRight(entry, flags[8] == '1');
        control.setControlFlagDontScaleBottom(entry, flags[9] == '1');
    }
}

QString formWith(const QVariantMap &bag)
{
    return QStringLiteral(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ui version=\"4.0\">\n <class>RoutesForm</class>\n"
               " <widget class=\"QWidget\" name=\"RoutesForm\">\n"
               "  <property name=\"geometry\"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect>"
               "</property>\n"
               "  <widget class=\"QLabel\" name=\"lblName\">\n"
               "   <property name=\"geometry\"><rect><x>20</x><y>20</y><width>100</width><height>30</height></rect>"
               "</property>\n"
               "  </widget>\n"
               "  <widget class=\"QPushButton\" name=\"cmdOK\">\n"
               "   <property name=\"geometry\"><rect><x>280</x><y>240</y><width>100</width><height>30</height></rect>"
               "</property>\n"
               "  </widget>\n"
               "  <widget class=\"VelmoraControl\" name=\"velmora\">\n%1  </widget>\n"
               " </widget>\n"
               " <customwidgets>\n  <customwidget>\n   <class>VelmoraControl</class>\n   <extends>QWidget</extends>\n"
               "   <header>control/VelmoraControl.h</header>\n  </customwidget>\n </customwidgets>\n"
               " <resources/>\n <connections/>\n</ui>\n")
        .arg(VelmoraUiLoader::settingsXml(bag, 3));
}

QString switches(const velmora::ControlFlags *f)
{
    if (!f)
        return QStringLiteral("(none)");
    QString s;
    for (bool b : {f->DontScaleControl, f->DontScaleFont, f->DontScaleBorder, f->DontScaleGraphic, f->DontScaleLeft,
                   f->DontScaleTop, f->DontScaleWidth, f->DontScaleHeight, f->DontScaleRight, f->DontScaleBottom})
        s += b ? QLatin1Char('1') : QLatin1Char('0');
    return s;
}

} // namespace routes
