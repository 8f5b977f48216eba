// Writes the form the uic route of tst_settingsroutes compiles: a
// component carrying every setting, as VelmoraUiLoader::settingsXml writes
// it. Run at build time, so that uic reads what the library writes today.
#include "SettingsTable.h"

#include "control/VelmoraControl.h"

#include <QApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_settings_ui OUT.ui\n");
        return 2;
    }
    VelmoraControl control;
    routes::configure(control);
    QFile out(QString::fromLocal8Bit(argv[1]));
    if (!out.open(QIODevice::WriteOnly) || out.write(routes::formWith(control.writeProperties()).toUtf8()) < 0) {
        std::fprintf(stderr, "make_settings_ui: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
