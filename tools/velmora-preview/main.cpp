// velmora-preview: open an absolutely positioned .ui form (or the built-in
// sample) with a VelmoraControl on it, resize it by hand, or render it at
// given sizes without a display.
#include "ControlProperties.h"
#include "MdiDemo.h"
#include "UiSettingsFile.h"
#include "pages/VelmoraPropertyDialog.h"
#include "PreviewSession.h"
#include "Reference.h"

#include "control/VelmoraControl.h"

#include <QApplication>
#include <QHash>
#include <QScreen>
#include <QTimer>
#include <QWindow>
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

bool wantsHelp(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray a(argv[i]);
        if (a == "--help" || a == "-h" || a == "--help-all" || a == "-?" || a == "-v" || a == "--version")
            return true;
    }
    return false;
}

bool wantsHeadless(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray a(argv[i]);
        if (a.startsWith("--size") || a.startsWith("--screenshot") || a == "--report" || a == "--set" || a.startsWith("--set="))
            return true;
    }
    return false;
}

// Shows the form and grabs the screen `after` ms after the form's window
// first shows any of itself on it (an opening wipe starts from nothing):
// what the window system shows, effects included.
int grabScreen(PreviewSession &session, const QString &file, int after)
{
    QWidget *window = session.root()->window();
    int result = 1;
    QTimer grab;
    grab.setSingleShot(true);
    grab.setInterval(after);
    QObject::connect(&grab, &QTimer::timeout, [&] {
        const QPixmap shot = QGuiApplication::primaryScreen()->grabWindow(0);
        result = said(shot.save(file, "PNG"), file) ? 0 : 1;
        QCoreApplication::exit(result);
    });
    QTimer watch;
    watch.setInterval(5);
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const QWindow *handle = window->windowHandle();
        const QRegion mask = window->mask(); // empty: no mask, all of it shows
        if (!handle || !handle->isExposed() || !(mask.isEmpty() || mask.intersects(window->rect())))
            return;
        watch.stop();
        grab.start();
    });
    watch.start();
    session.show();
    QApplication::exec();
    return result;
}

// --set and --settings: the settings of FORM.ui's component, written back
// into the file and nowhere else.
int editSettings(const QStringList &args, const QStringList &assignments, bool withPages, bool otherOptions)
{
    if (args.size() != 1 || otherOptions) {
        std::fprintf(stderr, "velmora-preview: --set and --settings take one FORM.ui and no other option\n");
        return 2;
    }
    UiSettingsFile file;
    QString error;
    if (!file.open(args.first(), &error)) {
        std::fprintf(stderr, "velmora-preview: %s\n", qPrintable(error));
        return 1;
    }
    for (const QString &assignment : assignments) {
        if (!setControlProperty(file.control(), assignment, &error)) {
            std::fprintf(stderr, "velmora-preview: %s; nothing changed\n",
                         qPrintable(error.replace(QLatin1String("--property"), QLatin1String("--set"))));
            return 2;
        }
    }
    if (withPages) {
        VelmoraPropertyDialog dialog(file.control());
        if (dialog.exec() != QDialog::Accepted) {
            std::fprintf(stderr, "velmora-preview: cancelled; nothing changed\n");
            return 0;
        }
    }
    if (!file.save(&error)) {
        std::fprintf(stderr, "velmora-preview: %s\n", qPrintable(error));
        return 1;
    }
    std::fprintf(stderr, "velmora-preview: %s: settings written%s\n", qPrintable(args.first()),
                 file.controlAdded() ? " (a VelmoraControl was added to the form)" : "");
    return 0;
}

} // namespace

// A form whose sheet names a missing image has Qt say so at every paint of
// every widget the rule matches: each message is let through three times,
// then counted, and the count told once at the end.
struct RepeatedMessages {
    static constexpr int Shown = 3;
    QHash<QString, int> seen;
    QStringList order;
    QtMessageHandler next = nullptr;

    static RepeatedMessages &instance()
    {
        static RepeatedMessages r;
        return r;
    }
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        RepeatedMessages &r = instance();
        if (type == QtWarningMsg || type == QtDebugMsg || type == QtInfoMsg) {
            int &n = r.seen[text];
            if (++n > Shown) {
                if (n == Shown + 1)
                    r.order << text;
                return;
            }
        }
        if (r.next)
            r.next(type, context, text);
    }
    ~RepeatedMessages()
    {
        qInstallMessageHandler(next);
        for (const QString &text : std::as_const(order))
            std::fprintf(stderr, "velmora-preview: warning: %d more of: %s\n", seen.value(text) - Shown,
                         qPrintable(text));
    }
};

int main(int argc, char **argv)
{
    RepeatedMessages::instance().next = qInstallMessageHandler(&RepeatedMessages::handle);
    // Rendering to files needs no display.
    if ((wantsHeadless(argc, argv) || wantsHelp(argc, argv)) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without one Qt would abort with a page about plugins.
    // The reference needs no display.
    const bool reference = argc == 2 && qstrcmp(argv[1], "--reference") == 0;
    if (reference && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        std::fprintf(stderr, "velmora-preview: no display to show the form on (DISPLAY is not set); render it "
                             "with --size/--screenshot, or run on a private X server: scripts/with-xvfb.sh\n");
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("velmora-preview"));
    if (reference) {
        std::fputs(qPrintable(velmoraReference()), stdout);
        return 0;
    }

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
    QCommandLineOption propertyOption(QStringLiteral("property"),
                                      QStringLiteral("Give the form's VelmoraControl a setting before it shows, "
                                                     "e.g. GradientFill=true, GradientColour=0x804000, "
                                                     "FormOpen=FoWipeRight (repeatable)."),
                                      QStringLiteral("NAME=VALUE"));
    QCommandLineOption grabOption(QStringLiteral("grab-screen"),
                                  QStringLiteral("On a display: save the whole screen as FILE (PNG) "
                                                 "--grab-after milliseconds after the form first shows any of "
                                                 "itself (an opening wipe starts from nothing), then quit."),
                                  QStringLiteral("FILE"));
    QCommandLineOption grabAfterOption(QStringLiteral("grab-after"),
                                       QStringLiteral("When --grab-screen grabs (default 500)."), QStringLiteral("MS"),
                                       QStringLiteral("500"));
    QCommandLineOption setOption(QStringLiteral("set"),
                                 QStringLiteral("Write a setting of the form's VelmoraControl into FORM.ui (adding "
                                                "the control if the form has none), e.g. CenterX=true or "
                                                "ControlFlagDontScaleLeft1=true (repeatable)."),
                                 QStringLiteral("NAME=VALUE"));
    QCommandLineOption settingsOption(QStringLiteral("settings"),
                                      QStringLiteral("Edit the settings of the form's VelmoraControl on its pages; "
                                                     "OK writes them into FORM.ui."));
    QCommandLineOption referenceOption(QStringLiteral("reference"),
                                       QStringLiteral("Print VelmoraControl's members as a Markdown reference "
                                                      "(alone; no display needed)."));
    parser.addOptions({sizeOption, shotOption, reportOption, mdiOption, propertyOption, grabOption, grabAfterOption,
                       setOption, settingsOption, referenceOption});
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

    if (parser.isSet(setOption) || parser.isSet(settingsOption))
        return editSettings(args, parser.values(setOption), parser.isSet(settingsOption),
                            !sizes.isEmpty() || parser.isSet(shotOption) || parser.isSet(reportOption)
                                || parser.isSet(mdiOption) || parser.isSet(propertyOption));

    if (parser.isSet(mdiOption)) {
        if (!args.isEmpty() || parser.isSet(reportOption)) {
            std::fprintf(stderr, "velmora-preview: --mdi shows its own forms, without a report\n");
            return 2;
        }
        if (parser.isSet(propertyOption) || parser.isSet(grabOption)) {
            std::fprintf(stderr, "velmora-preview: --property and --grab-screen are for one form, not --mdi\n");
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

    for (const QString &assignment : parser.values(propertyOption)) {
        if (!setControlProperty(session.control(), assignment, &error)) {
            std::fprintf(stderr, "velmora-preview: %s\n", qPrintable(error));
            return 2;
        }
    }

    const bool headless = !sizes.isEmpty() || parser.isSet(shotOption) || parser.isSet(reportOption);
    if (parser.isSet(grabOption)) {
        bool ok = false;
        const int after = parser.value(grabAfterOption).toInt(&ok);
        if (headless || !ok || after < 0) {
            std::fprintf(stderr, "velmora-preview: --grab-screen FILE [--grab-after MS] takes the screen as it is: "
                                 "not with --size, --screenshot or --report\n");
            return 2;
        }
        if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
            std::fprintf(stderr, "velmora-preview: --grab-screen needs a display (try scripts/with-xvfb.sh)\n");
            return 2;
        }
        return grabScreen(session, parser.value(grabOption), after);
    }
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
    if (const QString fixed = session.fixedSize(); !fixed.isEmpty() && !sizes.isEmpty())
        std::fprintf(stderr, "velmora-preview: warning: %s\n", qPrintable(fixed));
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
