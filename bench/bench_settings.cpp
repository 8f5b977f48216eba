// How long the saved settings take to arrive, for forms of many
// per-control entries: readProperties of a bag, and a .ui loaded by
// VelmoraUiLoader (Qt's own cost for the same dynamic properties on a
// plain QWidget beside it). Run offscreen; prints a table.
#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>

#include <cstdio>
#include <memory>

namespace {

// Entries 1..n, each with its key and one switch on.
QVariantMap bagOf(int n)
{
    QVariantMap bag{{"ControlFlagCount", n}};
    for (int i = 1; i <= n; ++i) {
        bag.insert(QStringLiteral("ControlFlagControlKey%1").arg(i), QStringLiteral("ctl%1").arg(i));
        bag.insert(QStringLiteral("ControlFlagDontScaleLeft%1").arg(i), true);
    }
    return bag;
}

double loadMs(const QString &ui)
{
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    QElapsedTimer t;
    t.start();
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    return t.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    std::printf("%8s %16s %16s %20s %20s\n", "entries", "readProperties", "writeProperties", ".ui, VelmoraControl",
                ".ui, plain QWidget");
    for (int n : {100, 1000, 4000, 16000, 32767}) {
        const QVariantMap bag = bagOf(n);
        VelmoraControl control;
        QElapsedTimer t;
        t.start();
        control.readProperties(bag);
        const double read = t.nsecsElapsed() / 1e6;
        t.restart();
        const QVariantMap written = control.writeProperties();
        const double write = t.nsecsElapsed() / 1e6;
        const QString ui = QStringLiteral("<ui version=\"4.0\"><class>F</class><widget class=\"QWidget\" name=\"F\">"
                                          "<widget class=\"%1\" name=\"velmora\">\n%2</widget></widget></ui>");
        const QString xml = VelmoraUiLoader::settingsXml(written);
        std::printf("%8d %13.1f ms %13.1f ms %17.1f ms %17.1f ms\n", n, read, write,
                    loadMs(ui.arg(QStringLiteral("VelmoraControl"), xml)), loadMs(ui.arg(QStringLiteral("QWidget"), xml)));
    }
    return 0;
}
