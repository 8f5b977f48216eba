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
    using Setter = void (VelmoraControl::*)(int, bool, bool *);
    static const Setter setters[] = {
        &VelmoraControl::setControlFlagDontScaleControl, &VelmoraControl::setControlFlagDontScaleFont,
        &VelmoraControl::setControlFlagDontScaleBorder,  &VelmoraControl::setControlFlagDontScaleGraphic,
        &VelmoraControl::setControlFlagDontScaleLeft,    &VelmoraControl::setControlFlagDontScaleTop,
        &VelmoraControl::setControlFlagDontScaleWidth,   &VelmoraControl::setControlFlagDontScaleHeight,
        &VelmoraControl::setControlFlagDontScaleRight,   &VelmoraControl::setControlFlagDontScaleBottom,
    };
    for (int i = 0; i < int(list.size()); ++i) {
        control.setControlFlagControlKey(i + 1, QString::fromUtf8(list[std::size_t(i)].key));
        for (int f = 0; f < 10; ++f)
            (control.*setters[f])(i + 1, list[std::size_t(i)].flags[f] == '1', nullptr);
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
