// VelmoraImageList on its own, from Designer's properties and a .ui file, and
// under the resize engine: captured once, rebuilt at every new form size
// from the pictures it was designed with.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"
#include "widgets/VelmoraImageList.h"

#include <QBuffer>
#include <QListWidget>
#include <QTreeWidget>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QPixmap filled(int size, Qt::GlobalColor color)
{
    QPixmap pm(size, size);
    pm.fill(color);
    return pm;
}

QColor centre(const QPixmap &pm)
{
    const QImage image = pm.toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class tst_ImageList : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void adding_data();
    void adding();
    void designerProperties();
    void listDeletedWithItsControls();
    void loadedFromUi();
    void shownOnlyInAnEditor_data();
    void shownOnlyInAnEditor();
    void handedOutAtTheListSize_data();
    void handedOutAtTheListSize();
    void rebuiltFromTheDesignPictures_data();
    void rebuiltFromTheDesignPictures();

private:
    QTemporaryDir m_dir;
    QString m_red16, m_blue64;
};

void tst_ImageList::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_red16 = m_dir.filePath(QStringLiteral("red16.png"));
    m_blue64 = m_dir.filePath(QStringLiteral("blue64.png"));
    QVERIFY(filled(16, Qt::red).save(m_red16));
    QVERIFY(filled(64, Qt::blue).save(m_blue64));
}

void tst_ImageList::adding_data()
{
    // Each step: "key" appends, "key@N" inserts before position N.
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QList<int>>("results");
    QTest::addColumn<QStringList>("keys");

    QTest::newRow("appending") << QStringList{"a", "b", "c"} << QList<int>{0, 1, 2} << QStringList{"a", "b", "c"};
    QTest::newRow("inserting first") << QStringList{"a", "b", "c@0"} << QList<int>{0, 1, 0}
                                     << QStringList{"c", "a", "b"};
    QTest::newRow("a position past the end appends") << QStringList{"a", "b@7"} << QList<int>{0, 1}
                                                     << QStringList{"a", "b"};
    QTest::newRow("a key used twice is refused") << QStringList{"a", "b", "a"} << QList<int>{0, 1, -1}
                                                 << QStringList{"a", "b"};
    QTest::newRow("images without keys") << QStringList{"", "", "a"} << QList<int>{0, 1, 2}
                                         << QStringList{"", "", "a"};
}

void tst_ImageList::adding()
{
    QFETCH(QStringList, steps);
    QFETCH(QList<int>, results);
    QFETCH(QStringList, keys);
    VelmoraImageList list;
    QSignalSpy changed(&list, &VelmoraImageList::imagesChanged);
    QList<int> got;
    for (const QString &step : steps) {
        const QStringList parts = step.split(QLatin1Char('@'));
        got << list.add(filled(8, Qt::red), parts.at(0), parts.size() > 1 ? parts.at(1).toInt() : -1);
    }
    QCOMPARE(got, results);
    QStringList now;
    for (int i = 0; i < list.count(); ++i)
        now << list.key(i);
    QCOMPARE(now, keys);
    QCOMPARE(changed.count(), int(results.count(0) + std::count_if(results.begin(), results.end(), [](int r) { return r > 0; })));
    for (int i = 0; i < list.count(); ++i)
        if (!keys.at(i).isEmpty())
            QCOMPARE(list.indexOf(keys.at(i)), i);
    QCOMPARE(list.indexOf(QString()), -1);
}

void tst_ImageList::listDeletedWithItsControls()
{
    // Controls bound to a list may be its own children: they go while the
    // list is being deleted, and must not look at it as a list any more.
    auto *list = new VelmoraImageList;
    list->setImages({m_red16, m_blue64});
    for (const char *which : {"ImageList", "Icons", "SmallIcons"}) {
        QWidget *view = which[0] == 'I' && which[1] == 'm' ? static_cast<QWidget *>(new QTreeWidget(list))
                                                          : new QListWidget(list);
        VelmoraImageList::setImageList(view, list, which);
        QCOMPARE(VelmoraImageList::imageList(view, which), list);
    }
    auto *other = new QListWidget;
    VelmoraImageList::setImageList(other, list);
    QCoreApplication::processEvents();
    delete list;
    QCOMPARE(VelmoraImageList::imageList(other), nullptr);
    delete other;
}

void tst_ImageList::designerProperties()
{
    VelmoraImageList list;
    const QString missing = m_dir.filePath(QStringLiteral("missing.png"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot read image .*missing\\.png")));
    list.setImages({m_red16, missing, m_blue64});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("key \"r\" is used twice")));
    list.setImageKeys({QStringLiteral("r"), QString(), QStringLiteral("r"), QStringLiteral("later")});
    // The unreadable image keeps its place; the second "r" gets no key.
    QCOMPARE(list.count(), 3);
    QVERIFY(!list.icon(0).isNull());
    QVERIFY(list.icon(1).isNull());
    QCOMPARE(list.key(0), QStringLiteral("r"));
    QCOMPARE(list.key(2), QString());
    QCOMPARE(list.images(), QStringList({m_red16, missing, m_blue64}));
    // A key for an image not there yet is kept for when it comes.
    QCOMPARE(list.imageKeys().last(), QStringLiteral("later"));
    list.setImages({m_red16, missing, m_blue64, m_red16});
    QCOMPARE(list.key(3), QStringLiteral("later"));
}

void tst_ImageList::shownOnlyInAnEditor_data()
{
    QTest::addColumn<bool>("designTime");
    QTest::newRow("running form: never shown") << false;
    QTest::newRow("form being edited: an icon to select") << true;
}

void tst_ImageList::shownOnlyInAnEditor()
{
    QFETCH(bool, designTime);
    QWidget form;
    form.resize(200, 100);
    auto *list = new VelmoraImageList(&form);
    list->setGeometry(10, 10, 32, 32);
    list->setDesignTime(designTime);
    list->show();
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QCOMPARE(list->isVisible(), designTime);
    // An editor selects it by clicking it; a running form clicks through.
    QCOMPARE(list->testAttribute(Qt::WA_TransparentForMouseEvents), !designTime);
    QCOMPARE(form.childAt(26, 26) == list, designTime);
    if (designTime) {
        const QImage drawn = list->grab().toImage();
        QVERIFY(drawn.pixelColor(16, 16) != form.palette().color(QPalette::Window));
        // Out of the editor again, hidden.
        list->setDesignTime(false);
        QVERIFY(list->isHidden());
    }
}

void tst_ImageList::loadedFromUi()
{
    const QString ui = QStringLiteral(R"(<ui version="4.0"><class>F</class>
 <widget class="QWidget" name="F">
  <property name="geometry"><rect><x>0</x><y>0</y><width>200</width><height>100</height></rect></property>
  <widget class="VelmoraImageList" name="images">
   <property name="ImageWidth"><number>24</number></property>
   <property name="Images"><stringlist><string>%1</string><string>%2</string></stringlist></property>
   <property name="ImageKeys"><stringlist><string>red</string><string>blue</string></stringlist></property>
  </widget>
 </widget>
 <customwidgets><customwidget><class>VelmoraImageList</class><extends>QWidget</extends></customwidget></customwidgets>
</ui>)").arg(m_red16, m_blue64);
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    QVERIFY(form);
    auto *list = form->findChild<VelmoraImageList *>(QStringLiteral("images"));
    QVERIFY(list);
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->indexOf(QStringLiteral("blue")), 1);
    QCOMPARE(list->imageSize(), QSize(24, 16));
    form->show();
    QVERIFY(!list->isVisible());
}

void tst_ImageList::handedOutAtTheListSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("colour"); // which of the icon's sizes was used
    QTest::newRow("its small size") << QSize(16, 16) << QColor(Qt::red);
    QTest::newRow("between its sizes: the larger, scaled") << QSize(40, 40) << QColor(Qt::blue);
    QTest::newRow("its large size") << QSize(64, 64) << QColor(Qt::blue);
    QTest::newRow("stretched unevenly") << QSize(20, 60) << QColor(Qt::blue);
    QTest::newRow("larger than any of its sizes") << QSize(128, 128) << QColor(Qt::blue);
}

void tst_ImageList::handedOutAtTheListSize()
{
    QFETCH(QSize, size);
    QFETCH(QColor, colour);
    VelmoraImageList list;
    QIcon icon;
    icon.addFile(m_red16);
    icon.addFile(m_blue64);
    list.add(icon);
    list.setImageWidth(size.width());
    list.setImageHeight(size.height());
    const QPixmap pm = list.pixmap(0);
    QCOMPARE(pm.deviceIndependentSize().toSize(), size);
    QCOMPARE(centre(pm), colour);
    QVERIFY(list.pixmap(1).isNull());
}

void tst_ImageList::rebuiltFromTheDesignPictures_data()
{
    QTest::addColumn<bool>("scaleGraphics");
    QTest::addColumn<bool>("dontScaleGraphic");
    QTest::newRow("scaled with the form") << true << false;
    QTest::newRow("the list marked DontScaleGraphic") << true << true;
    QTest::newRow("ScaleGraphics off") << false << false;
}

void tst_ImageList::rebuiltFromTheDesignPictures()
{
    QFETCH(bool, scaleGraphics);
    QFETCH(bool, dontScaleGraphic);
    QWidget form;
    form.resize(400, 300);
    auto *list = new VelmoraImageList(&form);
    list->setObjectName(QStringLiteral("images"));
    QIcon both;
    both.addFile(m_red16);
    both.addFile(m_blue64);
    const QIcon designed[] = {both, QIcon(filled(16, Qt::green)), QIcon(m_red16)};
    list->add(designed[0], QStringLiteral("both"));
    list->add(designed[1], QStringLiteral("green"));
    list->add(designed[2]);
    list->add(QIcon(), QStringLiteral("unreadable")); // as Designer keeps a file it could not read
    list->setTag(1, QStringLiteral("a tag"));
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    velmora->setScaleGraphics(scaleGraphics);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));

    auto *d = VelmoraControlPrivate::get(velmora);
    const velmora::ControlClass *rec = d->engine.store().info("images");
    QVERIFY(rec);
    QCOMPARE(rec->SpecialControlType, int(velmora::SctImageList));
    QCOMPARE(rec->ImageListCount, 4);
    QCOMPARE(rec->ImageListKey(1), std::string("both"));
    QCOMPARE(rec->ImageListTag(2), std::string("a tag"));
    QCOMPARE(rec->ImageListWidth, 16.0f);
    d->engine.store().flags("images")->DontScaleGraphic = dontScaleGraphic;
    const bool rebuilt = scaleGraphics && !dontScaleGraphic;

    for (int round = 0; round < 20; ++round) {
        const double sx = round % 2 ? 2.0 : 0.5, sy = round % 2 ? 1.5 : 0.75;
        form.resize(qRound(400 * sx), qRound(300 * sy));
        QCoreApplication::sendPostedEvents(&d->driver);
        QCOMPARE(list->imageSize(), rebuilt ? QSize(qRound(16 * sx), qRound(16 * sy)) : QSize(16, 16));
        QCOMPARE(list->count(), 4);
        QCOMPARE(list->key(0), QStringLiteral("both"));
        QCOMPARE(list->key(3), QStringLiteral("unreadable"));
        QVERIFY(list->icon(3).isNull());
        QCOMPARE(list->tag(1), QStringLiteral("a tag"));
        // The very pictures it was designed with, never a scaled copy.
        for (int i = 0; i < 3; ++i)
            QCOMPARE(list->icon(i).cacheKey(), designed[i].cacheKey());
    }
    if (rebuilt)
        QCOMPARE(centre(list->pixmap(0)), QColor(Qt::blue)); // 32 x 24: from the 64-pixel image
}

QTEST_MAIN(tst_ImageList)
#include "tst_imagelist.moc"
