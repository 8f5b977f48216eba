#include "FormResources.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>
#include <QResource>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

namespace FormResources {

namespace {

QString rccProgram()
{
    const QString beside = QDir(QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath)).filePath(QStringLiteral("rcc"));
    if (QFileInfo(beside).isExecutable())
        return beside;
    for (const char *name : {"rcc-qt6", "rcc"})
        if (const QString found = QStandardPaths::findExecutable(QString::fromLatin1(name)); !found.isEmpty())
            return found;
    return {};
}

// The compiled files live as long as the process: the resources are read
// from them for as long as they are registered.
QTemporaryDir &workDir()
{
    static QTemporaryDir dir;
    return dir;
}

} // namespace

QStringList registerFor(const QString &uiPath, const QStringList &locations)
{
    QStringList warnings;
    // A form that is itself a resource came with its resources compiled in.
    if (uiPath.startsWith(u':') || uiPath.startsWith(QLatin1String("qrc:")))
        return warnings;
    static QSet<QString> registered;
    const QDir base = QFileInfo(uiPath).absoluteDir();
    for (const QString &location : locations) {
        const QString qrc = QFileInfo(base.filePath(location)).absoluteFilePath();
        if (registered.contains(qrc))
            continue;
        const auto warn = [&](const QString &why) {
            warnings << QStringLiteral("resource file %1: %2; its \":/\" images and icons do not show").arg(location, why);
        };
        if (!QFileInfo(qrc).isFile()) {
            warn(QStringLiteral("not found (looked for %1)").arg(qrc));
            continue;
        }
        const QString rcc = rccProgram();
        if (rcc.isEmpty() || !workDir().isValid()) {
            warn(QStringLiteral("Qt's rcc is not installed (Debian: qt6-base-dev-tools)"));
            continue;
        }
        static int compiled = 0;
        const QString out = workDir().filePath(QStringLiteral("%1.rcc").arg(++compiled));
        QProcess p;
        p.setWorkingDirectory(QFileInfo(qrc).absolutePath());
        p.start(rcc, {QStringLiteral("--binary"), QStringLiteral("-o"), out, qrc});
        if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) {
            p.kill();
            const QString why = QString::fromLocal8Bit(p.readAllStandardError()).trimmed().section(u'\n', 0, 0);
            warn(QStringLiteral("cannot be compiled%1").arg(why.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(why)));
            continue;
        }
        if (!QResource::registerResource(out)) {
            warn(QStringLiteral("cannot be registered"));
            continue;
        }
        registered.insert(qrc);
    }
    return warnings;
}

} // namespace FormResources
