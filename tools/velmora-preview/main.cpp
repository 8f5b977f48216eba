// velmora-preview: open an absolutely positioned .ui form (or the built-in
// sample) with a VelmoraControl on it, resize it by hand, or render it at
// given sizes without a display.
#include "MdiDemo.h"
#include "PreviewSession.h"

#include "control/VelmoraControl.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QWidget>

#include <cstdio>

namespace {

// Larger windows need a backing store of gigabytes; when Qt cannot get one
// it does not fail cleanly but paints through a null engine and crashes.
constexpr int maxSide = 16384;

// Reads WxH into `out`; on failure returns why, in a few words.
QString parseSize(const QString &text, QSize &out)
{
    static const QRegularExpression re(QStringLiteral("^(\\d+)[xX](\\d+)$"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch())
        return QStringLiteral("expected WxH");
    bool wOk = false, hOk = false;
    out = QSize(m.captured(1).toInt(&wOk), m.captured(2).toInt(&hOk));
    // Digits that do not fit an int are too large as well.
    if (!wOk || !hOk || out.width() > maxSide || out.height() > maxSide)
        return QStringLiteral("too large: at most %1 pixels a side").arg(maxSide);
    if (out.width() <= 0 || out.height() <= 0)
        return QStringLiteral("expected a width and height above 0");
    return {};
}

// Tells what became of a screenshot; passes on whether it was written.
bool said(bool written, const QString &file)
{
    std::fprintf(stderr, written ? "velmora-preview: wrote %s\n" : "velmora-preview: cannot write %s\n",
                 qPrintable(file));
    return written;
}

bool wantsHeadless(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray a(argv[i]);
        if (a.startsWith("--size") || a.startsWith("--screenshot") || a == "--report")
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    // Rendering to files needs no display.
    if (wantsHeadless(argc, argv) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velmora-preview"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows an absolutely positioned Qt Designer form scaled by Velmora. Without FORM.ui, shows the "
        "built-in sample form."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FORM.ui"), QStringLiteral("The form to open."), QStringLiteral("[FORM.ui]"));
    QCommandLineOption sizeOption(QStringLiteral("size"),
                                  QStringLiteral("Render the form at WxH pixels (repeatable)."), QStringLiteral("WxH"));
    QCommandLineOption shotOption(QStringLiteral("screenshot"),
                                  QStringLiteral("Save a PNG of each size into DIR."), QStringLiteral("DIR"));
    QCommandLineOption reportOption(QStringLiteral("report"),
                                    QStringLiteral("Print every control's class, name, geometry and font size "
                                                   "per size, as JSON."));
    QCommandLineOption mdiOption(QStringLiteral("mdi"),
                                 QStringLiteral("Open an MDI window with three child forms (the sample among "
                                                "them), each scaled by its own control; --size is then the "
                                                "MDI window's."));
    parser.addOptions({sizeOption, shotOption, reportOption, mdiOption});
    parser.process(app);

    QList<QSize> sizes;
    for (const QString &s : parser.values(sizeOption)) {
        QSize size;
        const QString why = parseSize(s, size);
        if (!why.isEmpty()) {
            std::fprintf(stderr, "velmora-preview: bad size '%s' (%s)\n", qPrintable(s), qPrintable(why));
            return 2;
        }
        sizes << size;
    }
    const QStringList args = parser.positionalArguments();
    if (args.size() > 1) {
        std::fprintf(stderr, "velmora-preview: one form at a time\n");
        return 2;
    }

    if (parser.isSet(mdiOption)) {
        if (!args.isEmpty() || parser.isSet(reportOption)) {
            std::fprintf(stderr, "velmora-preview: --mdi shows its own forms, without a report\n");
            return 2;
        }
        MdiDemo demo;
        if (sizes.isEmpty() && !parser.isSet(shotOption)) {
            demo.show();
            return app.exec();
        }
        demo.setResizeOnMouseUp(false);
        demo.show();
        const auto shoot = [&] {
            QString file;
            return !parser.isSet(shotOption) || said(demo.screenshot(parser.value(shotOption), &file), file);
        };
        if (!shoot())
            return 1;
        for (const QSize &size : sizes) {
            demo.resize(size);
            if (!shoot())
                return 1;
        }
        return 0;
    }

    PreviewSession session;
    QString error;
    if (!session.load(args.value(0), &error)) {
        std::fprintf(stderr, "velmora-preview: %s\n", qPrintable(error));
        return 1;
    }
    for (const QString &w : session.warnings())
        std::fprintf(stderr, "velmora-preview: warning: %s\n", qPrintable(w));

    const bool headless = !sizes.isEmpty() || parser.isSet(shotOption) || parser.isSet(reportOption);
    if (!headless) {
        session.show();
        return app.exec();
    }

    // Passes run as each size is applied instead of after a pause.
    session.control()->setResizeOnMouseUp(false);
    session.show();
    QJsonArray report;
    const auto record = [&](bool design) {
        if (parser.isSet(reportOption))
            report.append(session.snapshot(design));
        QString file;
        return !parser.isSet(shotOption) || said(session.screenshot(parser.value(shotOption), &file), file);
    };
    if (!record(true))
        return 1;
    for (const QSize &size : sizes) {
        session.resizeForm(size);
        if (!record(false))
            return 1;
    }
    if (parser.isSet(reportOption)) {
        QJsonObject doc;
        doc.insert(QStringLiteral("form"), session.root()->objectName());
        doc.insert(QStringLiteral("widgetsDeclared"), session.widgetsDeclared());
        doc.insert(QStringLiteral("widgetsLoaded"), session.widgetsLoaded());
        doc.insert(QStringLiteral("sizes"), report);
        std::fputs(QJsonDocument(doc).toJson(QJsonDocument::Indented).constData(), stdout);
    }
    return 0;
}
