#include "FuzzCommon.h"

#include "control/VelmoraControl.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace fuzz {

namespace {

bool chatty = false;
// Set (VELMORA_FUZZ_REPORT_ONLY=1) to see every kind of failed check in one
// run, while a known one is being fixed: printed, and the input goes on.
bool reportOnly = false;

void quiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    // Warnings are the component's answer to hostile input, thousands a
    // second; only a fatal one matters (Qt aborts after it).
    if (chatty || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

QString &configDir()
{
    static QString dir;
    return dir;
}

} // namespace

void init(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    chatty = qEnvironmentVariableIntValue("VELMORA_FUZZ_VERBOSE") != 0;
    reportOnly = qEnvironmentVariableIntValue("VELMORA_FUZZ_REPORT_ONLY") != 0;
    qInstallMessageHandler(quiet);
    // Saved window states go to a folder of this process, never the user's.
    static QTemporaryDir *config = new QTemporaryDir(QDir::tempPath() + QStringLiteral("/velmora-fuzz-XXXXXX"));
    configDir() = config->path();
    std::atexit([] { config->remove(); });
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(configDir()));
    // Kept for the life of the process: Qt's own globals outlive any
    // input, and a QApplication destroyed at exit races them.
    static QApplication *app = new QApplication(*argc, *argv);
    Q_UNUSED(app);
    VelmoraControl::setTrappedErrorHandler([](QWidget *, const QString &) {});
}

bool verbose()
{
    return chatty;
}

QString settingsFile()
{
    return configDir() + QStringLiteral("/Velmora/Velmora.conf");
}

QString privatePath(const QString &name)
{
    return configDir() + u'/' + name;
}

void settle(int rounds)
{
    for (int i = 0; i < rounds; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void closeAll()
{
    for (int round = 0; round < 8; ++round) {
        QList<QPointer<QWidget>> windows;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (!w->parentWidget())
                windows.append(w);
        if (windows.isEmpty())
            break;
        for (const QPointer<QWidget> &w : windows)
            delete w.data();
        settle(1);
    }
    settle(1);
}

QByteArray Bytes::take(std::size_t most)
{
    const std::size_t n = std::min(most, left());
    QByteArray text(reinterpret_cast<const char *>(m_data + m_pos), qsizetype(n));
    m_pos += n;
    return text;
}

void fail(const char *file, int line, const char *cond, const QString &why)
{
    std::fprintf(stderr, "==FUZZ CHECK FAILED== %s:%d: %s\n  %s\n", file, line, cond, qPrintable(why));
    std::fflush(stderr);
    if (!reportOnly)
        std::abort();
}

} // namespace fuzz

// Every target starts the same way.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzz::init(argc, argv);
    return 0;
}
