// Every setting of VelmoraControl with a value other than its default, as
// code gives it and as `velmora-preview --set` takes it; and the form the
// routes tests carry it on.
#pragma once

#include <QString>
#include <QVariant>

#include <vector>

class VelmoraControl;

namespace velmora {
struct ControlFlags;
}

namespace routes {

struct Setting {
    const char *name;
    QVariant value; // what the property reads
    QString text;   // NAME=text for --set
};

inline std::vector<Setting> nonDefaultSettings()
{
    return {
        {"ScaleFonts", false, "false"},
        {"CenterX", true, "true"},
        {"CenterY", true, "true"},
        {"GradientFill", true, "true"},
        {"GradientColour", 0x123456, "0x123456"},
        {"ScaleControls", false, "false"},
        {"ScaleX", 40, "40"},
        {"ScaleY", 60, "60"},
        {"StayOnTop", true, "true"},
        {"MinWidth", 3000, "3000"},
        {"MinHeight", 2000, "2000"},
        {"MaxWidth", 9000, "9000"},
        {"MaxHeight", 8000, "8000"},
        {"ScaleBorders", false, "false"},
        {"MdiChildWidth", 6000, "6000"},
        {"MdiChildHeight", 4500, "4500"},
        {"ResizeOnMouseUp", false, "false"},
        {"ScaleGraphics", false, "false"},
        {"ReplaceFontsWith", QStringLiteral("DejaVu Serif"), "DejaVu Serif"},
        {"SaveWindowState", true, "true"},
        // Markup, quotes, a tab, a line feed and text beyond Latin-1.
        {"WindowName", QStringLiteral("Lab <1> & \"A\"\tB\nZ\u00e9\u4e2d"), "Lab <1> & \"A\"\tB\nZ\u00e9\u4e2d"},
        {"FormPicture", 3, "FpTile"},
        {"FormClose", 7, "FcFold"},
        {"FormCloseTime", 0.1, "0.1"},
        {"FormOpen", 4, "FoWipeDown"},
        {"FormOpenTime", 9.999, "9.999"},
        {"KeepOnScreen", true, "true"},
    };
}

// Per-control options: one entry per control of the form below, in its
// order (as the settings pages write them), the last with no switch on.
struct Entry {
    const char *key;
    const char *flags; // the ten switches, '1' for on, in their saved order
};

inline std::vector<Entry> entries()
{
    return {{"lblName", "0100100000"}, {"cmdOK", "0000000011"}, {"velmora", "0000000000"}};
}

// Settings that are not saved as such: the design reference is the form's
// size at the moment it is saved, and the count goes with the entries.
inline bool isSetting(const char *name)
{
    return !QString::fromLatin1(name).startsWith(QLatin1String("DesignForm"))
        && qstrcmp(name, "ControlFlagCount") != 0;
}

// Gives `control` every setting and entry above.
void configure(VelmoraControl &control);
// A form (400 x 300, two labels) whose component carries `bag`, as a .ui.
QString formWith(const QVariantMap &bag);
// A record's ten switches in their saved order, '1' for on; "(none)" for no
// record.
QString switches(const velmora::ControlFlags *flags);

} // namespace routes
