// The examples run as a user would run them, and do what they say.
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run {
    int exitCode = -1;
    QString out;
};

Run run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    Run r;
    if (p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit)
        r.exitCode = p.exitCode();
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    return r;
}

// The share of a band of the page that is not white.
double inked(const QImage &page, double top, double bottom)
{
    int ink = 0, all = 0;
    for (int y = int(page.height() * top); y < int(page.height() * bottom); ++y)
        for (int x = 0; x < page.width(); ++x, ++all)
            ink += qGray(page.pixel(x, y)) < 240;
    return all ? double(ink) / all : 0;
}

} // namespace

class tst_Examples : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void formsScale_data();
    void formsScale();
    void printFormWritesOneA4Page();
};

void tst_Examples::formsScale_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QRect>("expected"); // in its parent
    const QString uic = QStringLiteral(EXAMPLES_DIR "/uic-form/uic-form");
    const QString code = QStringLiteral(EXAMPLES_DIR "/code-form/code-form");
    const QString mdi = QStringLiteral(EXAMPLES_DIR "/mdi-app/mdi-app");
    const QString styled = QStringLiteral(EXAMPLES_DIR "/styled-form/styled-form");
    // 480 x 320 at design.
    QTest::newRow("uic: a field, twice as large") << uic << QSize(960, 640) << "txtCustomer" << QRect(260, 144, 660, 48);
    QTest::newRow("uic: OK keeps its size and corner") << uic << QSize(960, 640) << "cmdOK" << QRect(860, 600, 80, 28);
    // 360 x 200 at design.
    QTest::newRow("code: a field, 1.5 times") << code << QSize(540, 300) << "txtUser" << QRect(165, 45, 255, 36);
    QTest::newRow("code: the logo keeps its size, top and right margin")
        << code << QSize(540, 300) << "lblLogo" << QRect(480, 20, 40, 40);
    // The children open at 400 x 200 (outer); the parent's bars follow it.
    QTest::newRow("mdi: a child's field") << mdi << QSize(800, 500) << "firstEdit" << QRect(110, 17, 261, 26);
    QTest::newRow("mdi: the parent's toolbar") << mdi << QSize(1200, 750) << "tbrTools" << QRect(0, 0, 1200, 36);
    // 340 x 200 at design; the sheet's fonts and lengths follow.
    QTest::newRow("styled: the button") << styled << QSize(680, 400) << "cmdClose" << QRect(440, 300, 200, 64);
}

void tst_Examples::formsScale()
{
    QFETCH(QString, program);
    QFETCH(QSize, window);
    QFETCH(QString, widget);
    QFETCH(QRect, expected);
    QTemporaryDir dir;
    const QString shot = dir.filePath(QStringLiteral("window.png"));
    const Run example = run(program, {"--grab", QStringLiteral("%1x%2").arg(window.width()).arg(window.height()), shot});
    QCOMPARE(example.exitCode, 0);
    QCOMPARE(QImage(shot).size(), window);
    QRect placed;
    for (const QString &line : example.out.split(u'\n')) {
        const QStringList f = line.split(u' ');
        if (f.size() == 5 && f.at(0) == widget)
            placed = QRect(f.at(1).toInt(), f.at(2).toInt(), f.at(3).toInt(), f.at(4).toInt());
    }
    QCOMPARE(placed, expected);
}

void tst_Examples::printFormWritesOneA4Page()
{
    for (const char *tool : {"pdfinfo", "pdftoppm"})
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty(),
                 "poppler-utils is missing: scripts/bootstrap.sh installs it");
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("invoice.pdf"));
    const Run example = run(QStringLiteral(PRINT_FORM), {pdf});
    QCOMPARE(example.exitCode, 0);
    // Laid out at A4's proportions (210 x 297 mm at 96 dpi, less the frame).
    QVERIFY2(example.out.contains(QRegularExpression(QStringLiteral("at 79\\dx11[12]\\d pixels"))), qPrintable(example.out));

    const Run info = run(QStringLiteral("pdfinfo"), {pdf});
    QCOMPARE(info.exitCode, 0);
    QVERIFY2(info.out.contains(QRegularExpression(QStringLiteral("Pages:\\s+1\\n"))), qPrintable(info.out));
    QVERIFY2(info.out.contains(QStringLiteral("595 x 842 pts (A4)")), qPrintable(info.out));

    QCOMPARE(run(QStringLiteral("pdftoppm"), {"-png", "-r", "50", "-singlefile", pdf, dir.filePath("page")}).exitCode, 0);
    const QImage page(dir.filePath(QStringLiteral("page.png")));
    QVERIFY(!page.isNull());
    // The title at the top, the button at the bottom: the form fills the
    // page, not just the corner a 420 x 300 form would take.
    QVERIFY2(inked(page, 0.02, 0.12) > 0.01, "no title at the top of the page");
    QVERIFY2(inked(page, 0.85, 0.98) > 0.02, "no button at the bottom of the page");
    QVERIFY2(inked(page, 0.55, 0.75) < 0.01, "something where the page should be blank");
}

QTEST_MAIN(tst_Examples)
#include "tst_examples.moc"
