// velmora-preview run as a user runs it, without a display: screenshots of
// the sample, and a report of a large absolutely positioned form showing
// that every control lands where the ratios put it.
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

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
    void bigFormLandsWhereRatiosPutIt_data();
    void bigFormLandsWhereRatiosPutIt();
    void badInputGivesClearErrors_data();
    void badInputGivesClearErrors();
};

void tst_Preview::rendersSampleWithoutDisplay()
{
    QTemporaryDir dir;
    const Run r = preview({"--size", "1080x780", "--screenshot", dir.path()});
    QCOMPARE(r.exitCode, 0);
    // Files are named by the form's inner size; the pictures show the whole
    // window, menu bar included.
    const QImage design(dir.filePath("SampleForm-720x520.png"));
    const QImage scaled(dir.filePath("SampleForm-1080x780.png"));
    QCOMPARE(design.width(), 720);
    QCOMPARE(scaled.width(), 1080);
    QCOMPARE(scaled.height() - 780, design.height() - 520);
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
    // Custom classes the loader cannot make fall back to their base, loudly.
    QVERIFY(r.err.count("created as") >= 6);

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

void tst_Preview::badInputGivesClearErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing file") << QStringList{"/nonexistent/form.ui", "--report"} << 1 << "cannot open";
    QTest::newRow("bad size") << QStringList{"--size", "12by40"} << 2 << "bad size";
    QTest::newRow("not a form") << QStringList{QFINDTESTDATA("tst_preview.cpp"), "--report"} << 1 << "cannot load";
}

void tst_Preview::badInputGivesClearErrors()
{
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    const Run r = preview(args);
    QCOMPARE(r.exitCode, exitCode);
    QVERIFY2(r.err.contains(message.toUtf8()), r.err.constData());
}

QTEST_GUILESS_MAIN(tst_Preview)
#include "tst_preview.moc"
