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
    void printFormWritesOneA4Page();
};

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
