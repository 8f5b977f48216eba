// The picture functions on real pixmaps, and the form picture drawn under
// the form's children.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QListWidget>
#include <QTabBar>
#include <QToolBar>
#include <QTreeWidget>

#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QtTest>

namespace {

QPixmap solid(QSize size, QColor color)
{
    QPixmap pm(size);
    pm.fill(color);
    return pm;
}

struct Form {
    Form(QSize size = QSize(100, 50))
    {
        widget.resize(size);
        QPalette p = widget.palette();
        p.setColor(QPalette::Window, Qt::white);
        widget.setPalette(p);
        velmora = new VelmoraControl(&widget);
        velmora->setResizeOnMouseUp(false);
    }
    QWidget widget;
    VelmoraControl *velmora;
};

} // namespace

class tst_Pictures : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void scale_data();
    void scale();
    void centerCutsOffWhatDoesNotFit();
    void tile_data();
    void tile();
    void formPictureScalesUnderChildren();
    void scaledPicturesStayTransparent_data();
    void scaledPicturesStayTransparent();
    void wideFormsFitTheirPicture();
    void picturesNeverOutgrowTheirControl();
    void itemIconsFollowTheControl_data();
    void itemIconsFollowTheControl();
};

void tst_Pictures::scale_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QSize>("size");
    QTest::newRow("same size is a copy") << 1.0 << 1.0 << QSize(40, 30);
    QTest::newRow("stretched") << 2.0 << 0.5 << QSize(80, 15);
    QTest::newRow("rounded to whole pixels") << 1.37 << 1.0 << QSize(55, 30);
}

void tst_Pictures::scale()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(QSize, size);
    Form f;
    const QPixmap source = solid(QSize(40, 30), Qt::red);
    const QPixmap scaled = f.velmora->ScalePicture(source, x, y);
    QCOMPARE(scaled.size(), size);
    // The last row and column are covered, not left transparent.
    QCOMPARE(scaled.toImage().pixelColor(size.width() - 1, size.height() - 1), QColor(Qt::red));
    if (x == 1.0 && y == 1.0)
        QCOMPARE(scaled.toImage(), source.toImage().convertToFormat(scaled.toImage().format()));
    QVERIFY(f.velmora->ScalePicture(QPixmap(), 2, 2).isNull());
    QCOMPARE(f.velmora->SizePicture(source, 7, 9).size(), QSize(7, 9));
}

void tst_Pictures::centerCutsOffWhatDoesNotFit()
{
    Form f; // 100 x 50, white
    const QImage out = f.velmora->CenterPicture(&f.widget, solid(QSize(150, 20), Qt::blue)).toImage();
    QCOMPARE(out.size(), QSize(100, 50));
    // Wider than the container: from the left edge; shorter: centred.
    QCOMPARE(out.pixelColor(0, 14), QColor(Qt::white));
    QCOMPARE(out.pixelColor(0, 15), QColor(Qt::blue));
    QCOMPARE(out.pixelColor(99, 34), QColor(Qt::blue));
    QCOMPARE(out.pixelColor(99, 35), QColor(Qt::white));
}

void tst_Pictures::tile_data()
{
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<QPoint>("lastCovered");
    QTest::newRow("exactly the container's size: once") << QSize(100, 50) << QPoint(99, 49);
    QTest::newRow("repeated across and down") << QSize(30, 20) << QPoint(99, 49);
}

void tst_Pictures::tile()
{
    QFETCH(QSize, tile);
    QFETCH(QPoint, lastCovered);
    Form f;
    QPixmap pm(tile);
    pm.fill(Qt::green);
    QPainter(&pm).fillRect(0, 0, 1, 1, Qt::black); // marks each tile's corner
    const QImage out = f.velmora->TilePicture(&f.widget, pm).toImage();
    QCOMPARE(out.size(), QSize(100, 50));
    QCOMPARE(out.pixelColor(lastCovered), QColor(Qt::green));
    int corners = 0;
    for (int y = 0; y < out.height(); ++y)
        for (int x = 0; x < out.width(); ++x)
            corners += out.pixelColor(x, y) == QColor(Qt::black);
    QCOMPARE(corners, ((100 + tile.width() - 1) / tile.width()) * ((50 + tile.height() - 1) / tile.height()));
}

void tst_Pictures::formPictureScalesUnderChildren()
{
    Form f(QSize(200, 100));
    f.widget.setProperty("Picture", solid(QSize(40, 20), Qt::darkGreen));
    auto *label = new QLabel(QStringLiteral("over the picture"), &f.widget);
    label->setGeometry(150, 80, 40, 15);
    f.widget.show();
    QTRY_VERIFY(f.velmora->isFormReady());
    QCOMPARE(f.widget.grab().toImage().pixelColor(39, 19), QColor(Qt::darkGreen));

    f.widget.resize(400, 200);
    QCoreApplication::sendPostedEvents(); // the pass answers from the event loop
    const QImage shot = f.widget.grab().toImage();
    QCOMPARE(shot.pixelColor(79, 39), QColor(Qt::darkGreen));
    QCOMPARE(shot.pixelColor(85, 45), QColor(Qt::white));
}

void tst_Pictures::scaledPicturesStayTransparent_data()
{
    QTest::addColumn<int>("before"); // what used the shared canvas first
    QTest::newRow("nothing") << 0;
    QTest::newRow("after CenterPicture") << 1;
    QTest::newRow("after TilePicture") << 2;
}

void tst_Pictures::scaledPicturesStayTransparent()
{
    QFETCH(int, before);
    Form f; // white
    if (before == 1)
        f.velmora->CenterPicture(&f.widget, solid(QSize(10, 10), Qt::blue));
    else if (before == 2)
        f.velmora->TilePicture(&f.widget, solid(QSize(10, 10), Qt::blue));
    QPixmap icon(20, 20);
    icon.fill(Qt::transparent);
    QPainter(&icon).fillRect(5, 5, 10, 10, Qt::red);
    const QImage out = f.velmora->ScalePicture(icon, 2, 2).toImage();
    QCOMPARE(out.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(out.pixelColor(20, 20), QColor(Qt::red));
}

void tst_Pictures::wideFormsFitTheirPicture()
{
    // Wider than 32767 twips: an ordinary form on today's screens.
    Form f(QSize(2400, 300));
    f.velmora->setFormPicture(VelmoraControl::FpFit);
    f.widget.setProperty("Picture", solid(QSize(100, 50), Qt::darkGreen));
    f.widget.show();
    QTRY_VERIFY(f.velmora->isFormReady());
    const QImage shot = f.widget.grab().toImage();
    QCOMPARE(shot.pixelColor(2399, 299), QColor(Qt::darkGreen));
}

void tst_Pictures::picturesNeverOutgrowTheirControl()
{
    Form f(QSize(200, 100));
    auto *label = new QLabel(&f.widget);
    label->setObjectName(QStringLiteral("cutOff"));
    label->setGeometry(10, 10, 20, 20);
    label->setPixmap(solid(QSize(100, 100), Qt::red)); // cut off at design size
    f.widget.show();
    QTRY_VERIFY(f.velmora->isFormReady());
    QTest::ignoreMessage(QtWarningMsg, "Velmora: a scaled picture was limited to the size its control can show");
    for (const QSize s : {QSize(400, 200), QSize(600, 300)}) {
        f.widget.resize(s);
        QCoreApplication::sendPostedEvents();
        // No larger than the label, or than the picture was made.
        QCOMPARE(label->pixmap().size(), QSize(100, 100));
    }
}

void tst_Pictures::itemIconsFollowTheControl_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<double>("scale");
    QTest::addColumn<bool>("scaleGraphics");
    QTest::addColumn<bool>("dontScaleGraphic");
    QTest::newRow("icon view, four times the size") << "list" << 4.0 << true << false;
    QTest::newRow("icon view, half the size") << "list" << 0.5 << true << false;
    // Small on a plain screen; on a HiDPI one the large version is drawn.
    QTest::newRow("icon view, three quarters") << "list" << 0.75 << true << false;
    QTest::newRow("tree with the style's icon size, twice") << "tree" << 2.0 << true << false;
    QTest::newRow("toolbar, twice") << "toolbar" << 2.0 << true << false;
    QTest::newRow("tab bar, half") << "tabs" << 0.5 << true << false;
    QTest::newRow("push button, twice") << "button" << 2.0 << true << false;
    QTest::newRow("push button, half") << "button" << 0.5 << true << false;
    QTest::newRow("icon view marked DontScaleGraphic") << "list" << 4.0 << true << true;
    QTest::newRow("icon view, ScaleGraphics off") << "list" << 4.0 << false << false;
}

void tst_Pictures::itemIconsFollowTheControl()
{
    QFETCH(QString, kind);
    QFETCH(double, scale);
    QFETCH(bool, scaleGraphics);
    QFETCH(bool, dontScaleGraphic);
    // A small red and a large blue version of one icon: which one is drawn
    // shows whether the icon was rendered anew at the scaled size.
    QIcon icon;
    QPixmap red(16, 16), blue(64, 64);
    red.fill(Qt::red);
    blue.fill(Qt::blue);
    icon.addPixmap(red);
    icon.addPixmap(blue);

    QWidget form;
    form.resize(300, 200);
    QWidget *control = nullptr;
    if (kind == QLatin1String("list")) {
        auto *list = new QListWidget(&form);
        list->setViewMode(QListView::IconMode);
        list->setIconSize(QSize(16, 16));
        list->addItem(new QListWidgetItem(icon, QString()));
        control = list;
    } else if (kind == QLatin1String("tree")) {
        auto *tree = new QTreeWidget(&form);
        auto *item = new QTreeWidgetItem(tree);
        item->setIcon(0, icon);
        control = tree;
    } else if (kind == QLatin1String("toolbar")) {
        auto *bar = new QToolBar(&form);
        bar->setIconSize(QSize(24, 24));
        bar->addAction(icon, QStringLiteral("Go"));
        control = bar;
    } else if (kind == QLatin1String("button")) {
        auto *button = new QPushButton(icon, QString(), &form);
        button->setIconSize(QSize(16, 16));
        control = button;
    } else {
        auto *tabs = new QTabBar(&form);
        tabs->addTab(icon, QStringLiteral("One"));
        control = tabs;
    }
    control->setObjectName(QStringLiteral("control"));
    control->setGeometry(10, 10, 100, 80);
    const QSize design = control->property("iconSize").toSize().isValid()
        ? control->property("iconSize").toSize()
        : QSize(control->style()->pixelMetric(QStyle::PM_SmallIconSize), control->style()->pixelMetric(QStyle::PM_SmallIconSize));
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    velmora->setScaleGraphics(scaleGraphics);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    auto *d = VelmoraControlPrivate::get(velmora);
    d->engine.store().flags("control")->DontScaleGraphic = dontScaleGraphic;

    form.resize(qRound(300 * scale), qRound(200 * scale));
    QCoreApplication::sendPostedEvents(&d->driver);
    const bool scaled = scaleGraphics && !dontScaleGraphic;
    const QSize expected = scaled ? design * scale : design;
    const QSize now = control->property("iconSize").toSize();
    QVERIFY2(qAbs(now.width() - expected.width()) <= 1 && qAbs(now.height() - expected.height()) <= 1,
             qPrintable(QStringLiteral("icon size %1x%2, expected %3x%4")
                            .arg(now.width()).arg(now.height()).arg(expected.width()).arg(expected.height())));
    if (kind == QLatin1String("list") || kind == QLatin1String("button")) {
        // Drawn from the icon at the new size, in device pixels: the large
        // version, whole, once the small one would have to be stretched.
        const QImage shot = control->grab().toImage();
        const qreal dpr = shot.devicePixelRatio();
        int blues = 0, reds = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x) {
                blues += shot.pixelColor(x, y) == QColor(Qt::blue);
                reds += shot.pixelColor(x, y) == QColor(Qt::red);
            }
        const int side = qRound(expected.width() * dpr); // device pixels the icon covers
        if (side > 16) {
            QVERIFY2(blues >= (side - 4) * (side - 4) && reds == 0,
                     qPrintable(QStringLiteral("%1 blue, %2 red at %3 device pixels").arg(blues).arg(reds).arg(side)));
        } else {
            QCOMPARE(blues, 0);
            QVERIFY(reds > 0);
        }
    }
}

QTEST_MAIN(tst_Pictures)
#include "tst_pictures.moc"
