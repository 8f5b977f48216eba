// Velmora - the line and shape widgets that accompany the resizer on forms.
#include "VelmoraLine.h"
#include "VelmoraShape.h"

#include <QtTest>

namespace {

void makeWhite(QWidget &form)
{
    form.resize(240, 240);
    QPalette pal = form.palette();
    pal.setColor(QPalette::Window, Qt::white);
    pal.setColor(QPalette::WindowText, Qt::black);
    form.setPalette(pal);
    form.setAutoFillBackground(true);
}

// Antialiasing may share a thin diagonal between two pixels at half ink each.
bool isInked(const QImage &image, const QPoint &p)
{
    return qGray(image.pixel(p)) < 192;
}

bool isWhite(const QImage &image, const QPoint &p)
{
    return image.pixel(p) == qRgb(255, 255, 255);
}

// QRect::normalized() is off by one when inclusive corners come backwards.
QRect spanning(const QPoint &a, const QPoint &b)
{
    return QRect(QPoint(qMin(a.x(), b.x()), qMin(a.y(), b.y())), QPoint(qMax(a.x(), b.x()), qMax(a.y(), b.y())));
}

QPoint direction(const QPoint &d)
{
    return QPoint((d.x() > 0) - (d.x() < 0), (d.y() > 0) - (d.y() < 0));
}

void addDirections()
{
    QTest::addColumn<QPoint>("p1");
    QTest::addColumn<QPoint>("p2");
    QTest::newRow("left-to-right") << QPoint(20, 40) << QPoint(180, 40);
    QTest::newRow("right-to-left") << QPoint(180, 40) << QPoint(20, 40);
    QTest::newRow("top-to-bottom") << QPoint(60, 20) << QPoint(60, 200);
    QTest::newRow("bottom-to-top") << QPoint(60, 200) << QPoint(60, 20);
    QTest::newRow("diagonal-down-right") << QPoint(20, 30) << QPoint(180, 190);
    QTest::newRow("diagonal-up-left") << QPoint(180, 190) << QPoint(20, 30);
    QTest::newRow("diagonal-up-right") << QPoint(20, 190) << QPoint(180, 30);
}

} // namespace

class TestCompanionWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endPointsDefineGeometry_data() { addDirections(); }
    void endPointsDefineGeometry();
    void outsideGeometryCarriesLine_data() { addDirections(); }
    void outsideGeometryCarriesLine();
    void lineIsDrawnOnlyAlongItself_data() { addDirections(); }
    void lineIsDrawnOnlyAlongItself();
    void borderWidth_data();
    void borderWidth();
    void shapePainting_data();
    void shapePainting();
};

void TestCompanionWidgets::endPointsDefineGeometry()
{
    QFETCH(QPoint, p1);
    QFETCH(QPoint, p2);
    QWidget form;
    auto *line = new VelmoraLine(&form);
    line->setPoints(p1, p2);
    QCOMPARE(line->p1(), p1);
    QCOMPARE(line->p2(), p2);
    const int m = line->margin();
    QCOMPARE(line->geometry(), spanning(p1, p2).adjusted(-m, -m, m, m));

    line->setPoints(p1, p1);
    QVERIFY(!line->geometry().isEmpty());
    QCOMPARE(line->p2(), p1);

    // A loader sets the saved geometry before or after the end points, one
    // property at a time.
    const char *names[] = {"X1", "Y1", "X2", "Y2"};
    const int values[] = {p1.x(), p1.y(), p2.x(), p2.y()};
    const QRect saved = spanning(p1, p2).adjusted(-2, -2, 2, 2);
    for (bool geometryFirst : {true, false}) {
        QObject *loaded = new VelmoraLine(&form);
        if (geometryFirst)
            QVERIFY(loaded->setProperty("geometry", saved));
        for (int i = 0; i < 4; ++i)
            QVERIFY(loaded->setProperty(names[i], values[i]));
        if (!geometryFirst)
            QVERIFY(loaded->setProperty("geometry", saved));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(loaded->property(names[i]).toInt(), values[i]);
    }
}

void TestCompanionWidgets::outsideGeometryCarriesLine()
{
    QFETCH(QPoint, p1);
    QFETCH(QPoint, p2);
    // Still hidden, as under a loader: no move or resize events arrive yet.
    QWidget form;
    auto *line = new VelmoraLine(&form);
    line->setPoints(p1, p2);
    const QPoint delta(13, -7);
    line->move(line->pos() + delta);
    QCOMPARE(line->p1(), p1 + delta);
    QCOMPARE(line->p2(), p2 + delta);

    form.show();
    line->setGeometry(line->x() + 10, line->y() + 5, line->width() * 2, line->height() + 40);
    QCOMPARE(direction(line->p2() - line->p1()), direction(p2 - p1));
    const int m = line->margin();
    const QRect inner = line->geometry().adjusted(m, m, -m, -m);
    QVERIFY(inner.contains(line->p1()) && inner.contains(line->p2()));
    if (p1.x() != p2.x())
        QCOMPARE(qAbs(line->x2() - line->x1()), inner.width() - 1);
}

void TestCompanionWidgets::lineIsDrawnOnlyAlongItself()
{
    QFETCH(QPoint, p1);
    QFETCH(QPoint, p2);
    QWidget form;
    makeWhite(form);
    (new VelmoraLine(&form))->setPoints(p1, p2);
    const QImage image = form.grab().toImage();

    QVERIFY(isInked(image, (p1 + p2) / 2));
    QVERIFY(isInked(image, p1));
    QVERIFY(isInked(image, p2));
    // Inside the widget but away from the line the form must show through.
    const QPoint off = p1.x() == p2.x() ? (p1 + p2) / 2 + QPoint(20, 0)
                     : p1.y() == p2.y() ? (p1 + p2) / 2 + QPoint(0, 20)
                                        : QPoint(p2.x(), p1.y());
    QVERIFY(isWhite(image, off));
    if (p1.y() == p2.y()) {
        // A thin rule ends on its end pixels, not past them.
        QVERIFY(isWhite(image, QPoint(qMax(p1.x(), p2.x()) + 1, p1.y())));
        QVERIFY(isWhite(image, QPoint(qMin(p1.x(), p2.x()) - 1, p1.y())));
    }
}

void TestCompanionWidgets::borderWidth_data()
{
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("margin");
    QTest::newRow("zero-clamps") << 0 << 1 << 2;
    QTest::newRow("negative-clamps") << -4 << 1 << 2;
    QTest::newRow("three") << 3 << 3 << 3;
    QTest::newRow("nine") << 9 << 9 << 6;
}

void TestCompanionWidgets::borderWidth()
{
    QFETCH(int, requested);
    QFETCH(int, width);
    QFETCH(int, margin);
    QWidget form;
    auto *line = new VelmoraLine(&form);
    line->setPoints(QPoint(150, 90), QPoint(30, 20));
    line->setBorderWidth(requested);
    QCOMPARE(line->borderWidth(), width);
    QCOMPARE(line->p1(), QPoint(150, 90));
    QCOMPARE(line->geometry(), QRect(QPoint(30 - margin, 20 - margin), QPoint(150 + margin, 90 + margin)));
}

void TestCompanionWidgets::shapePainting_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("painted");
    // The widget is 100x60; its centred square spans x 20..80.
    QTest::newRow("circle-top-left") << "Circle" << QPoint(1, 1) << false;
    QTest::newRow("circle-beside-square") << "Circle" << QPoint(10, 30) << false;
    QTest::newRow("circle-centre") << "Circle" << QPoint(50, 30) << true;
    QTest::newRow("oval-left-edge") << "Oval" << QPoint(3, 30) << true;
    QTest::newRow("rectangle-far-corner") << "Rectangle" << QPoint(99, 59) << true;
    QTest::newRow("rounded-corner") << "RoundedRectangle" << QPoint(0, 0) << false;
    QTest::newRow("rounded-square-beside") << "RoundedSquare" << QPoint(90, 30) << false;
}

void TestCompanionWidgets::shapePainting()
{
    QFETCH(QString, shape);
    QFETCH(QPoint, at);
    QFETCH(bool, painted);
    QWidget form;
    makeWhite(form);
    QObject *item = new VelmoraShape(&form);
    // By name, the way a form loader sets them.
    QVERIFY(item->setProperty("geometry", QRect(20, 20, 100, 60)));
    QVERIFY(item->setProperty("Shape", shape));
    QVERIFY(item->setProperty("BorderWidth", 4));
    QVERIFY(item->setProperty("FillColor", QColor(Qt::blue)));
    const QImage image = form.grab().toImage();
    QCOMPARE(!isWhite(image, at + QPoint(20, 20)), painted);
}

QTEST_MAIN(TestCompanionWidgets)
#include "tst_companionwidgets.moc"
