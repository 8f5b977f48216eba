// velmora-preview run as a user runs it, without a display: screenshots of
// the sample, and a report of a large absolutely positioned form showing
// that every control lands where the ratios put it.
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

#include <sys/stat.h>

namespace {

struct Run {
    int exitCode = -1;
    QByteArray out, err;
};

Run preview(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral(VELMORA_PREVIEW), args);
    Run r;
    if (!p.waitForFinished(60000))
        return r;
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = p.readAllStandardOutput();
    r.err = p.readAllStandardError();
    return r;
}

QHash<QString, QJsonObject> byName(const QJsonObject &entry)
{
    QHash<QString, QJsonObject> out;
    for (const auto &c : entry.value("controls").toArray())
        out.insert(c.toObject().value("name").toString(), c.toObject());
    return out;
}

// Geometry is placed from unrounded values, each edge rounded on its own.
bool near(double actual, double expected)
{
    return qAbs(actual - expected) <= 1.0;
}

} // namespace

class tst_Preview : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rendersSampleWithoutDisplay();
    void mdiDemoScalesEveryChild();
    void bigFormLandsWhereRatiosPutIt_data();
    void bigFormLandsWhereRatiosPutIt();
    void badInputGivesClearErrors_data();
    void badInputGivesClearErrors();
    void reportShowsNothingWasLost();
    void settingsReachTheControl();
    void warningsNameTheFaultOnce_data();
    void warningsNameTheFaultOnce();
    void screenshotsStayInTheirDirectory_data();
    void screenshotsStayInTheirDirectory();
    void setWritesOnlyTheSettings_data();
    void setWritesOnlyTheSettings();
    void setRefusesAndLeavesTheFile_data();
    void setRefusesAndLeavesTheFile();
    void formResourcesShow_data();
    void formResourcesShow();
    void fixedFormsSaySo();
};

void tst_Preview::rendersSampleWithoutDisplay()
{
    QTemporaryDir dir;
    const Run r = preview({"--size", "1440x780", "--screenshot", dir.path()});
    QCOMPARE(r.exitCode, 0);
    // Files are named by the form's inner size, which is the size asked for
    // although the toolbar above it grew; the pictures show the whole
    // window, menu bar and toolbar included.
    const QImage design(dir.filePath("SampleForm-960x520.png"));
    const QImage scaled(dir.filePath("SampleForm-1440x780.png"));
    QCOMPARE(design.width(), 960);
    QCOMPARE(scaled.width(), 1440);
    QVERIFY(scaled.height() - 780 > design.height() - 520);
}

void tst_Preview::mdiDemoScalesEveryChild()
{
    QTemporaryDir dir;
    const Run r = preview({"--mdi", "--size", "1600x1100", "--screenshot", dir.path()});
    QCOMPARE(r.exitCode, 0);
    // Nothing the passes could not do (the sample's toolbar, in a main
    // window inside the MDI area, is still one of its controls).
    QVERIFY2(!r.err.contains("QxVelmora"), r.err.constData());
    QCOMPARE(QImage(dir.filePath("VelmoraMdiDemo-1600x1100.png")).size(), QSize(1600, 1100));
    QVERIFY(QFile::exists(dir.filePath("VelmoraMdiDemo-1100x760.png")));
}

void tst_Preview::bigFormLandsWhereRatiosPutIt_data()
{
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");
    QTest::newRow("2.0 x 1.5") << 2.0 << 1.5;
    QTest::newRow("0.6 x 0.8") << 0.6 << 0.8;
}

void tst_Preview::bigFormLandsWhereRatiosPutIt()
{
    QFETCH(double, rx);
    QFETCH(double, ry);
    const QString size = QStringLiteral("%1x%2").arg(qRound(1000 * rx)).arg(qRound(800 * ry));
    const Run r = preview({QFINDTESTDATA("../data/big_form.ui"), "--size", size, "--report"});
    QCOMPARE(r.exitCode, 0);
    // Custom classes the loader cannot make fall back to their base, loudly,
    // once per class.
    QCOMPARE(r.err.count("created as"), 3);

    const QJsonArray sizes = QJsonDocument::fromJson(r.out).object().value("sizes").toArray();
    QCOMPARE(sizes.size(), 2);
    const QJsonObject designEntry = sizes[0].toObject(), scaledEntry = sizes[1].toObject();
    QCOMPARE(designEntry.value("width").toInt(), 1000);
    const auto design = byName(designEntry), scaled = byName(scaledEntry);
    QVERIFY(design.size() >= 100);

    int checked = 0;
    for (auto it = design.cbegin(); it != design.cend(); ++it) {
        const QJsonObject d = it.value(), s = scaled.value(it.key());
        const QString cls = d.value("class").toString();
        // The component itself keeps its icon size; a line's box follows its
        // end points and pen, not a ratio.
        if (cls == "VelmoraControl" || cls == "VelmoraLine" || d.value("managed").toBool())
            continue;
        double cx = rx, cy = ry;
        const QString container = d.value("container").toString();
        if (!container.isEmpty()) {
            cx = scaled[container].value("width").toDouble() / design[container].value("width").toDouble();
            cy = scaled[container].value("height").toDouble() / design[container].value("height").toDouble();
        }
        const auto check = [&](const char *key, double ratio) {
            const double expected = d.value(key).toDouble() * ratio;
            if (!near(s.value(key).toDouble(), expected))
                QFAIL(qPrintable(QStringLiteral("%1.%2 is %3, expected %4").arg(it.key(), key).arg(
                    s.value(key).toDouble()).arg(expected)));
        };
        check("x", cx);
        check("y", cy);
        check("width", cx);
        check("height", cy);
        const double font = d.value("fontSize").toDouble() * qMin(cx, cy);
        if (qAbs(s.value("fontSize").toDouble() - font) > 0.02 * font)
            QFAIL(qPrintable(QStringLiteral("%1 font is %2, expected %3").arg(it.key()).arg(
                s.value("fontSize").toDouble()).arg(font)));
        ++checked;
    }
    QVERIFY(checked >= 100);
}

void tst_Preview::settingsReachTheControl()
{
    QTemporaryDir dir;
    const Run r = preview({"--property", "GradientFill=true", "--property", "GradientColour=0x0000FF", "--screenshot",
                           dir.path()});
    QCOMPARE(r.exitCode, 0);
    // A red gradient behind the controls, from the form's top edge down.
    const QImage shot(dir.filePath("SampleForm-960x520.png"));
    const QColor c = shot.pixelColor(4, shot.height() / 2);
    QVERIFY2(c.red() > 100 && c.green() == 0 && c.blue() == 0, qPrintable(c.name()));
}

void tst_Preview::badInputGivesClearErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    static QTemporaryDir dir;
    const auto write = [](const QString &name, const QByteArray &bytes) {
        QFile f(dir.filePath(name));
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return f.fileName();
    };
    QFile big(QFINDTESTDATA("../data/big_form.ui"));
    big.open(QIODevice::ReadOnly);
    const QByteArray form = big.readAll();
    const QString fifo = dir.filePath("fifo.ui");
    mkfifo(QFile::encodeName(fifo).constData(), 0600);

    QTest::newRow("missing file") << QStringList{"/nonexistent/form.ui"} << 1 << "/nonexistent/form.ui: cannot open: no such file";
    QTest::newRow("directory") << QStringList{dir.path()} << 1 << dir.path() + ": cannot open: it is a directory";
    QTest::newRow("pipe (must not hang)") << QStringList{fifo} << 1 << fifo + ": cannot open: not a regular file";
    const QString empty = write("empty.ui", {});
    QTest::newRow("empty") << QStringList{empty} << 1 << empty + ": the file is empty";
    const QString truncated = write("truncated.ui", form.left(form.size() / 2));
    QTest::newRow("truncated") << QStringList{truncated} << 1 << truncated + ": the file ends early";
    const QString notXml = QFINDTESTDATA("tst_preview.cpp");
    QTest::newRow("not XML") << QStringList{notXml} << 1 << notXml + ": not well-formed XML at line 1";
    const QString html = write("page.ui", "<html><body/></html>");
    QTest::newRow("XML, not a form") << QStringList{html} << 1 << html + ": not a Qt Designer form";
    const QString bare = write("bare.ui", "<ui version=\"4.0\"><class>Bare</class><resources/></ui>");
    QTest::newRow("no top widget") << QStringList{bare} << 1 << bare + ": the form declares no top-level widget";
    QTest::newRow("bad size") << QStringList{"--size", "12by40"} << 2 << "bad size";
    QTest::newRow("zero size") << QStringList{"--size", "0x100"} << 2 << "bad size '0x100'";
    // Qt crashes painting a window it cannot get a backing store for.
    QTest::newRow("size too large to paint") << QStringList{"--size", "99999x99999"} << 2 << "too large";
    QTest::newRow("size one past the limit") << QStringList{"--size", "100x16385"} << 2 << "too large";
    QTest::newRow("size past an int") << QStringList{"--size", "99999999999x100"} << 2 << "too large";
    QTest::newRow("setting without a value") << QStringList{"--property", "GradientFill"} << 2 << "expected NAME=VALUE";
    QTest::newRow("unknown setting") << QStringList{"--property", "Gradient=true"} << 2
                                     << "VelmoraControl has no setting 'Gradient' (it has: ScaleFonts, CenterX,";
    QTest::newRow("a QWidget property is not a setting") << QStringList{"--property", "enabled=false"} << 2
                                                         << "no setting 'enabled'";
    QTest::newRow("switch") << QStringList{"--property", "GradientFill=maybe"} << 2
                            << "GradientFill takes true or false, not 'maybe'";
    QTest::newRow("enumeration") << QStringList{"--property", "FormOpen=Wipe"} << 2
                                 << "FormOpen takes one of FoNone, FoWipeLeft,";
    QTest::newRow("number") << QStringList{"--property", "MinWidth=wide"} << 2 << "MinWidth takes a whole number";
    QTest::newRow("grab with a report") << QStringList{"--grab-screen", "x.png"} << 2 << "not with --size, --screenshot or --report";
}

void tst_Preview::badInputGivesClearErrors()
{
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    const Run r = preview(args + QStringList{"--report"});
    QCOMPARE(r.exitCode, exitCode);
    QVERIFY(r.out.isEmpty()); // no report of an empty form
    // One line of ours, naming the file and the reason.
    QList<QByteArray> ours;
    for (const QByteArray &line : r.err.split('\n'))
        if (line.startsWith("velmora-preview:"))
            ours << line;
    QCOMPARE(ours.size(), 1);
    QVERIFY2(ours[0].contains(message.toUtf8()), r.err.constData());
}

void tst_Preview::reportShowsNothingWasLost()
{
    const Run r = preview({QFINDTESTDATA("../data/unknown_classes.ui"), "--report"});
    QCOMPARE(r.exitCode, 0);
    const QJsonObject doc = QJsonDocument::fromJson(r.out).object();
    QCOMPARE(doc.value("widgetsDeclared").toInt(), 12); // the form and its 11 widgets
    QCOMPARE(doc.value("widgetsLoaded").toInt(), 12);
    QStringList placeholders;
    for (const auto &c : doc.value("sizes").toArray()[0].toObject().value("controls").toArray())
        if (c.toObject().value("placeholder").toBool())
            placeholders << c.toObject().value("class").toString() + ' ' + c.toObject().value("name").toString();
    placeholders.sort();
    QCOMPARE(placeholders, (QStringList{"OldButton cancelButton", "OldCaption heading", "OldFrame pricesFrame",
                                        "OldGrid priceGrid", "OldPanel detailPanel", "OldTextBox itemEdit",
                                        "OldTextBox priceEdit"}));
    // Menus are windows of their own; they count all the same.
    const QJsonObject sample = QJsonDocument::fromJson(preview({"--report"}).out).object();
    QVERIFY(sample.value("widgetsDeclared").toInt() > 40);
    QCOMPARE(sample.value("widgetsLoaded").toInt(), sample.value("widgetsDeclared").toInt());
    // One warning per class, not per widget.
    QCOMPARE(r.err.count("unknown class OldTextBox (2 widgets): shown as a placeholder"), 1);
    QCOMPARE(r.err.count("unknown class"), 6);
}

void tst_Preview::warningsNameTheFaultOnce_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("warning");
    const QString cycle = QStringLiteral("shown as a placeholder (its declared bases form a cycle)");
    QTest::newRow("class extends itself") << "cyclic_bases.ui" << "unknown class SelfMade (1 widget): " + cycle;
    QTest::newRow("classes extend each other") << "cyclic_bases.ui" << "unknown class PingWidget (1 widget): " + cycle;
    QTest::newRow("chain runs into a cycle") << "cyclic_bases.ui" << "unknown class RelayWidget (1 widget): " + cycle;
    QTest::newRow("zero and negative sizes")
        << "sizeless_widgets.ui"
        << "2 widgets have a zero or negative width or height in the file (flatLabel, backwardsEdit): they load "
           "with no area and stay invisible at every size";
}

void tst_Preview::warningsNameTheFaultOnce()
{
    QFETCH(QString, file);
    QFETCH(QString, warning);
    const Run r = preview({QFINDTESTDATA("../data/" + file), "--size", "600x400", "--report"});
    QCOMPARE(r.exitCode, 0);
    QCOMPARE(r.err.split('\n').count("velmora-preview: warning: " + warning.toUtf8()), 1);
}

void tst_Preview::screenshotsStayInTheirDirectory_data()
{
    QTest::addColumn<QString>("formName");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("parent path") << "../../escaped" << "escaped-200x100.png";
    QTest::newRow("absolute path") << "/tmp/escaped" << "tmpescaped-200x100.png";
    QTest::newRow("backslashes, spaces, newline") << "..\\a b&#10;c" << "abc-200x100.png";
    QTest::newRow("hidden file") << ".hidden" << "hidden-200x100.png";
    QTest::newRow("only dots") << ".." << "form-200x100.png";
    QTest::newRow("empty") << "" << "form-200x100.png";
    QTest::newRow("longer than a file name may be") << QString(300, 'a') << QString(100, 'a') + "-200x100.png";
}

void tst_Preview::screenshotsStayInTheirDirectory()
{
    QFETCH(QString, formName);
    QFETCH(QString, fileName);
    QFile original(QFINDTESTDATA("../data/escaping_name.ui"));
    QVERIFY(original.open(QIODevice::ReadOnly));
    QTemporaryDir tmp;
    QFile form(tmp.filePath("form.ui"));
    QVERIFY(form.open(QIODevice::WriteOnly));
    form.write(original.readAll().replace("name=\"../../escaped\"", "name=\"" + formName.toUtf8() + '"'));
    form.close();
    // Deep enough that "../.." would still land inside the temporary directory.
    const QString shots = tmp.filePath("out/shots");
    const Run r = preview({form.fileName(), "--screenshot", shots});
    QCOMPARE(r.exitCode, 0);
    QStringList written;
    QDirIterator it(tmp.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        written << QDir(tmp.path()).relativeFilePath(it.next());
    written.sort();
    QCOMPARE(written, (QStringList{"form.ui", "out/shots/" + fileName}));
}

namespace {

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The text before and after the component's <widget>: what --set must not touch.
QPair<QByteArray, QByteArray> around(const QByteArray &ui)
{
    const qsizetype start = ui.indexOf("<widget class=\"VelmoraControl\"");
    const qsizetype end = ui.indexOf("</widget>", start);
    return {ui.left(start), end < 0 ? QByteArray() : ui.mid(end)};
}

} // namespace

void tst_Preview::setWritesOnlyTheSettings_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QStringList>("sets");
    QTest::addColumn<QStringList>("written");
    QTest::addColumn<QStringList>("gone");
    QTest::newRow("a form with a component")
        << "../surface/settingsform.ui" << QStringList{"CenterY=true", "ScaleFonts=true", "FormOpen=FoFold"}
        << QStringList{"<property name=\"CenterY\"><bool>true</bool></property>",
                       "<property name=\"FormOpen\"><enum>VelmoraControl::FoFold</enum></property>",
                       "<property name=\"ControlFlagControlKey2\" stdset=\"0\"><string notr=\"true\">cmdOK</string></property>"}
        << QStringList{"name=\"ScaleFonts\""};
    QTest::newRow("a form without one: added")
        << "../data/limits_form.ui" << QStringList{"ScaleX=40", "ControlFlagCount=1", "ControlFlagControlKey1=x",
                                                   "ControlFlagDontScaleLeft1=true"}
        << QStringList{"<widget class=\"VelmoraControl\" name=\"velmora\">",
                       "<property name=\"ScaleX\"><number>40</number></property>",
                       "<property name=\"ControlFlagDontScaleLeft1\" stdset=\"0\"><bool>true</bool></property>",
                       "<class>VelmoraControl</class>", "DesignFormScaleWidth"}
        << QStringList();
}

void tst_Preview::setWritesOnlyTheSettings()
{
    QFETCH(QString, form);
    QFETCH(QStringList, sets);
    QFETCH(QStringList, written);
    QFETCH(QStringList, gone);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("form.ui"));
    QVERIFY(QFile::copy(QFINDTESTDATA(form), path));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray before = readAll(path);
    QStringList args{path};
    for (const QString &s : sets)
        args << QStringLiteral("--set") << s;
    const Run r = preview(args);
    QVERIFY2(r.exitCode == 0, r.err.constData());
    const QByteArray after = readAll(path);
    for (const QString &w : written)
        QVERIFY2(after.contains(w.toUtf8()), qPrintable(w + QStringLiteral(" missing:\n") + QString::fromUtf8(after)));
    for (const QString &g : gone)
        QVERIFY2(!after.contains(g.toUtf8()), qPrintable(g));
    if (before.contains("class=\"VelmoraControl\""))
        QCOMPARE(around(after), around(before)); // the rest, byte for byte
    // The file is still a form the preview opens.
    QCOMPARE(preview({path, "--report"}).exitCode, 0);
    // Writing the same settings again changes nothing.
    QCOMPARE(preview(args).exitCode, 0);
    QCOMPARE(readAll(path), after);
}

void tst_Preview::setRefusesAndLeavesTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QString>("set");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QFile good(QFINDTESTDATA("../surface/settingsform.ui"));
    QVERIFY(good.open(QIODevice::ReadOnly));
    const QByteArray form = good.readAll();
    QTest::newRow("read-only") << form << true << "CenterX=false" << 1 << "cannot write it (read-only); nothing changed";
    QTest::newRow("malformed") << form.left(form.size() / 2) << false << "CenterX=false" << 1 << "nothing changed";
    QTest::newRow("unknown setting") << form << false << "Centre=true" << 2 << "--set: VelmoraControl has no setting";
    QTest::newRow("bad value") << form << false << "ScaleX=wide" << 2 << "ScaleX takes a whole number";
    // What a .ui cannot carry exactly, and what the component would not hold
    // as given: refused, with the reason, rather than written otherwise.
    QTest::newRow("a control character") << form << false << QStringLiteral("WindowName=a\u0001b") << 2
                                         << "WindowName cannot hold the control character U+0001";
    QTest::newRow("a carriage return") << form << false << QStringLiteral("WindowName=a\rb") << 2
                                       << "WindowName cannot hold a carriage return";
    QTest::newRow("an option of an entry the form lacks") << form << false << "ControlFlagDontScaleLeft9=true" << 2
                                                          << "the form has no entry 9 (its ControlFlagCount is 2";
    QTest::newRow("an option of no such name") << form << false << "ControlFlagDontScaleBogus1=true" << 2
                                               << "ControlFlagDontScaleBogus1 is no per-control option";
    QTest::newRow("a time that is no number") << form << false << "FormOpenTime=inf" << 2
                                              << "FormOpenTime=inf refused: inf is no duration";
    QTest::newRow("a time beyond 10 s") << form << false << "FormCloseTime=12" << 2
                                        << "FormCloseTime=12 refused: 12 s is outside 0 to 10 s";
    QTest::newRow("a percentage beyond 100") << form << false << "ScaleX=150" << 2
                                             << "ScaleX=150 refused: 150 is no percentage";
    QTest::newRow("a count a saved form cannot hold") << form << false << "ControlFlagCount=40000" << 2
                                                      << "ControlFlagCount=40000 refused: 40000 is no count";
    QTest::newRow("an effect no constant names") << form << false << "FormPicture=50" << 2
                                                 << "FormPicture takes one of FpNone";
    QTest::newRow("the design reference") << form << false << "DesignFormWidth=100" << 2
                                          << "has no setting 'DesignFormWidth'";
}

void tst_Preview::setRefusesAndLeavesTheFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, readOnly);
    QFETCH(QString, set);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("form.ui"));
    {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    if (readOnly)
        QFile::setPermissions(path, QFile::ReadOwner);
    const Run r = preview({path, "--set", set});
    QCOMPARE(r.exitCode, exitCode);
    QVERIFY2(r.err.contains(message.toUtf8()), r.err.constData());
    QCOMPARE(readAll(path), content);
}

void tst_Preview::formResourcesShow_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("a .qrc beside the form") << "with_resources.ui" << QStringList{};
    QTest::newRow("a missing and a broken .qrc")
        << "missing_resources.ui"
        << QStringList{"resource file gone.qrc: not found", "resource file broken.qrc: cannot be compiled"};
}

// The resources a form names show in the preview; a .qrc that is missing
// or broken is one warning naming it, and the rest of the form still shows.
void tst_Preview::formResourcesShow()
{
    QFETCH(QString, file);
    QFETCH(QStringList, warnings);
    QTemporaryDir dir;
    const Run r = preview({QFINDTESTDATA("../data/odd/" + file), "--size", "600x400", "--screenshot", dir.path()});
    QCOMPARE(r.exitCode, 0);
    const QList<QByteArray> lines = r.err.split('\n');
    const auto count = [&](const QString &start) {
        return std::count_if(lines.cbegin(), lines.cend(), [&](const QByteArray &l) {
            return l.startsWith("velmora-preview: warning: " + start.toUtf8());
        });
    };
    QCOMPARE(count(QStringLiteral("resource file")), qsizetype(warnings.size()));
    for (const QString &w : warnings)
        QCOMPARE(count(w), qsizetype(1));
    // Qt says a missing image at every paint: three times, then counted.
    QVERIFY(lines.count("Could not create pixmap from :/gone/stripes.png") <= 3);
    // The label's pixmap comes from the form's own resources, at both sizes.
    for (const char *shot : {"Panel-300x200.png", "Panel-600x400.png"}) {
        const QImage image(QDir(dir.path()).filePath(QLatin1String(shot)));
        QVERIFY2(!image.isNull(), shot);
        const double f = image.width() / 300.0;
        const QColor lamp = image.pixelColor(qRound(36 * f), qRound(36 * f));
        QVERIFY2(lamp.red() > 180 && lamp.green() < 80 && lamp.blue() < 80, qPrintable(lamp.name()));
    }
}

// A form that cannot be resized says so once, and the report per size.
void tst_Preview::fixedFormsSaySo()
{
    const Run r = preview({QFINDTESTDATA("../data/odd/fixed_size.ui"), "--size", "600x400", "--size", "150x100", "--report"});
    QCOMPARE(r.exitCode, 0);
    const QByteArray said = "velmora-preview: warning: fixed size 300x200: the form cannot be resized";
    QCOMPARE(r.err.split('\n').count(said), 1);
    const QJsonArray sizes = QJsonDocument::fromJson(r.out).object().value("sizes").toArray();
    QCOMPARE(sizes.size(), 3);
    for (const auto &entry : sizes) {
        QCOMPARE(entry.toObject().value("fixed").toString(), QString::fromUtf8(said.mid(26)));
        QCOMPARE(entry.toObject().value("width").toInt(), 300);
    }
}

QTEST_GUILESS_MAIN(tst_Preview)
#include "tst_preview.moc"
