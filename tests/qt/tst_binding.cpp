// The Qt binding against real widgets: units and rounding, containers, the
// list of controls, and members that fail one access at a time.
#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "qt/QtControl.h"
#include "qt/QtForm.h"
#include "qt/QtPicture.h"
#include "widgets/VelmoraLine.h"

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTabWidget>
#include <QtTest>

#include <set>

using namespace velmora;
using velmora::qt::QtForm;

namespace {

HostObjectPtr controlNamed(QtForm &form, const std::string &name)
{
    for (const auto &c : form.controls())
        if (getText(*c, "Name") == name)
            return c;
    return nullptr;
}

std::vector<std::string> names(QtForm &form)
{
    std::vector<std::string> out;
    for (const auto &c : form.controls())
        out.push_back(getText(*c, "Name").value_or("?"));
    return out;
}

template <typename W>
W *make(QWidget *parent, const char *name, QRect geometry = QRect(10, 10, 80, 24))
{
    auto *w = new W(parent);
    w->setObjectName(QLatin1String(name));
    w->setGeometry(geometry);
    return w;
}

} // namespace

class tst_Binding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void units_data();
    void units();
    void writesRoundToPixels_data();
    void writesRoundToPixels();
    void nestedControlsAreInTwips();
    void containers();
    void controlsOrderAndExclusions();
    void unnamedAndDuplicateWidgetsGetKeys();
    void absentMembersFailAlone();
    void layoutManagedGeometryIsRefused();
    void labelPictureNeverWipesText();
    void buttonPictureSetsIconSize();
    void lineEndsInContainerUnits();
    void tabWidgetMembers();
    void calendarFonts();
};

void tst_Binding::units_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("left"); // 100 px
    QTest::addColumn<double>("top");  // 48 px
    QTest::newRow("twips") << 1 << 1500.0 << 720.0;
    QTest::newRow("points") << 2 << 75.0 << 36.0;
    QTest::newRow("pixels") << 3 << 100.0 << 48.0;
    QTest::newRow("characters") << 4 << 12.5 << 3.0;
    QTest::newRow("inches") << 5 << 1500.0 / 1440 << 0.5;
    QTest::newRow("millimetres") << 6 << 1500.0 / 1440 * 25.4 << 12.7;
    QTest::newRow("centimetres") << 7 << 1500.0 / 1440 * 2.54 << 1.27;
}

void tst_Binding::units()
{
    QFETCH(int, mode);
    QFETCH(double, left);
    QFETCH(double, top);
    QWidget w;
    w.resize(960, 480);
    w.setProperty("ScaleMode", mode);
    make<QPushButton>(&w, "button", QRect(100, 48, 200, 30));
    auto form = QtForm::create(&w);
    auto button = controlNamed(*form, "button");
    QVERIFY(button);
    QVERIFY(qAbs(*getSingle(*button, "Left") - left) < 1e-4);
    QVERIFY(qAbs(*getSingle(*button, "Top") - top) < 1e-4);
    // The form's own size and conversion speak the same units.
    QVERIFY(qAbs(*getSingle(*form, "ScaleWidth") - left * 9.6) < 1e-3);
    auto twips = form->call("ScaleX", {Value(static_cast<float>(left)), Value(mode), Value(1)});
    QVERIFY(twips);
    QVERIFY(qAbs(*twips->toSingle() - 1500.f) < 1e-2);
}

void tst_Binding::writesRoundToPixels_data()
{
    QTest::addColumn<float>("value"); // in pixels (ScaleMode 3)
    QTest::addColumn<int>("pixels");
    QTest::newRow("down") << 123.4f << 123;
    QTest::newRow("up") << 123.6f << 124;
    QTest::newRow("half to even, down") << 100.5f << 100;
    QTest::newRow("half to even, up") << 101.5f << 102;
}

void tst_Binding::writesRoundToPixels()
{
    QFETCH(float, value);
    QFETCH(int, pixels);
    QWidget w;
    w.setProperty("ScaleMode", 3);
    auto *b = make<QPushButton>(&w, "button");
    auto form = QtForm::create(&w);
    auto button = controlNamed(*form, "button");
    QVERIFY(button->set("Left", value));
    QVERIFY(button->call("Move", {Value(10.f), Value(10.f), Value(value), Value(value)}));
    QCOMPARE(b->geometry(), QRect(10, 10, pixels, pixels));
    QVERIFY(button->set("Left", value));
    QCOMPARE(b->x(), pixels);
}

void tst_Binding::nestedControlsAreInTwips()
{
    QWidget w;
    w.setProperty("ScaleMode", 3);
    auto *group = make<QGroupBox>(&w, "group", QRect(20, 20, 300, 200));
    make<QCheckBox>(group, "check", QRect(10, 30, 100, 20));
    auto form = QtForm::create(&w);
    QCOMPARE(*getSingle(*controlNamed(*form, "group"), "Left"), 20.f);   // form units
    QCOMPARE(*getSingle(*controlNamed(*form, "check"), "Left"), 150.f);  // twips
    QCOMPARE(*getSingle(*controlNamed(*form, "group"), "Width"), 300.f); // what the check scales by
}

void tst_Binding::containers()
{
    QWidget w;
    auto *group = make<QGroupBox>(&w, "group", QRect(0, 0, 300, 200));
    make<QCheckBox>(group, "inGroup");
    auto *tabs = make<QTabWidget>(&w, "tabs", QRect(0, 220, 300, 200));
    auto *page = new QWidget;
    page->setObjectName("page1");
    tabs->addTab(page, "One");
    make<QLineEdit>(page, "onPage");
    auto *area = make<QScrollArea>(&w, "area", QRect(320, 0, 200, 200));
    auto *content = new QWidget;
    content->setObjectName("content");
    content->resize(400, 400);
    area->setWidget(content);
    make<QLabel>(content, "inArea");
    make<QLabel>(&w, "direct");

    auto form = QtForm::create(&w);
    const auto containerOf = [&](const char *name) {
        return getObject(*controlNamed(*form, name), "Container").value_or(nullptr);
    };
    QVERIFY(containerOf("direct")->isKind(HostKind::Form));
    QCOMPARE(containerOf("inGroup"), controlNamed(*form, "group"));
    QCOMPARE(containerOf("onPage"), controlNamed(*form, "tabs"));
    QCOMPARE(containerOf("onPage")->typeName(), std::string("SSTab"));
    QCOMPARE(containerOf("content"), controlNamed(*form, "area"));
    QCOMPARE(containerOf("inArea"), controlNamed(*form, "content"));
}

void tst_Binding::controlsOrderAndExclusions()
{
    QMainWindow main;
    main.setObjectName("main");
    auto *central = new QWidget;
    central->setObjectName("central");
    main.setCentralWidget(central);
    auto *fileMenu = main.menuBar()->addMenu("File");
    fileMenu->setObjectName("mnuFile");
    fileMenu->addAction("Open")->setObjectName("mnuOpen");
    fileMenu->addSeparator();
    fileMenu->addAction("Unnamed");

    auto *group = make<QGroupBox>(central, "group", QRect(0, 0, 300, 200));
    make<QCheckBox>(group, "check");
    make<QSpinBox>(central, "spin");
    auto *combo = make<QComboBox>(central, "combo");
    combo->setEditable(true);
    auto *tabs = make<QTabWidget>(central, "tabs", QRect(0, 220, 300, 200));
    for (const char *p : {"pageA", "pageB"}) {
        auto *page = new QWidget;
        page->setObjectName(p);
        tabs->addTab(page, p);
        make<QLineEdit>(page, p[4] == 'A' ? "editA" : "editB");
    }
    make<QLabel>(central, "last");

    auto form = QtForm::create(central);
    const std::vector<std::string> expected = {"group", "check", "spin", "combo", "tabs",
                                               "editA", "editB", "last", "mnuFile", "mnuOpen"};
    QCOMPARE(names(*form), expected);
    QCOMPARE(controlNamed(*form, "mnuFile")->typeName(), std::string("Menu"));
    QCOMPARE(*getText(*form, "Name"), std::string("main"));
}

void tst_Binding::unnamedAndDuplicateWidgetsGetKeys()
{
    QWidget w;
    make<QLabel>(&w, "twin");
    make<QLabel>(&w, "twin");
    new QPushButton(&w);
    auto *indexed = make<QLabel>(&w, "arr");
    indexed->setProperty("Index", 2);
    auto form = QtForm::create(&w);
    std::set<std::string> keys;
    for (const auto &c : form->controls())
        keys.insert(controlKey(c.get()));
    QCOMPARE(keys.size(), std::size_t(4));
    QVERIFY(keys.count("twin"));
    QVERIFY(keys.count("arr(2)"));
}

void tst_Binding::absentMembersFailAlone()
{
    QWidget w;
    make<QLineEdit>(&w, "edit", QRect(5, 6, 70, 20));
    auto form = QtForm::create(&w);
    auto edit = controlNamed(*form, "edit");
    QVERIFY(!edit->get("Tabs"));
    QCOMPARE(edit->get("Tabs").error().code, HostErrc::NoSuchMember);
    QVERIFY(!edit->get("BorderWidth"));
    QVERIFY(!edit->set("Picture", Value()));
    QVERIFY(!edit->get("Index"));
    QVERIFY(!edit->get("width")); // Qt's own lowerCamel properties are not ours
    QCOMPARE(*getSingle(*edit, "Left"), 75.f);
    QVERIFY(setSub(*edit, "Font", "Size", 12.0));
    QVERIFY(!setSub(*edit, "Font", "Size", 0.0));
    QCOMPARE(*getSubSingle(*edit, "Font", "Size"), 12.f);
}

void tst_Binding::layoutManagedGeometryIsRefused()
{
    QWidget w;
    auto *box = make<QWidget>(&w, "box", QRect(0, 0, 300, 100));
    auto *layout = new QHBoxLayout(box);
    auto *inLayout = make<QPushButton>(box, "inLayout");
    layout->addWidget(inLayout);
    auto form = QtForm::create(&w);
    auto c = controlNamed(*form, "inLayout");
    QVERIFY(c);
    QVERIFY(!c->call("Move", {Value(0.f), Value(0.f), Value(1500.f), Value(1500.f)}));
    QVERIFY(!c->set("Width", Value(1500.f)));
    QVERIFY(setSub(*c, "Font", "Size", 14.0)); // its font still scales
    QVERIFY(controlNamed(*form, "box")->set("Width", Value(6000.f)));
}

void tst_Binding::labelPictureNeverWipesText()
{
    QWidget w;
    auto *text = make<QLabel>(&w, "text");
    text->setText("Hello");
    auto *image = make<QLabel>(&w, "image");
    QPixmap pm(20, 10);
    pm.fill(Qt::red);
    image->setPixmap(pm);
    auto form = QtForm::create(&w);

    QVERIFY(controlNamed(*form, "text")->set("Picture", Value()));
    QCOMPARE(text->text(), QString("Hello"));
    auto pic = *getObject(*controlNamed(*form, "image"), "Picture");
    QCOMPARE(*getSingle(*pic, "Width"), 300.f);
    QVERIFY(controlNamed(*form, "image")->set("Picture", Value()));
    QVERIFY(image->pixmap().isNull());
}

void tst_Binding::buttonPictureSetsIconSize()
{
    QWidget w;
    auto *b = make<QPushButton>(&w, "ok");
    QPixmap small(16, 16);
    small.fill(Qt::green);
    b->setIcon(QIcon(small));
    auto form = QtForm::create(&w);
    auto ok = controlNamed(*form, "ok");
    // No pixmap of its own for the pressed state: it reads as empty.
    QCOMPARE(*getSingle(**getObject(*ok, "DownPicture"), "Width"), 0.f);
    QPixmap big(40, 40);
    big.fill(Qt::blue);
    QVERIFY(ok->set("Picture", Value(qt::QtPicture::make(big))));
    QCOMPARE(b->iconSize(), QSize(40, 40));
    QCOMPARE(b->icon().pixmap(40, 40).toImage().pixelColor(5, 5), QColor(Qt::blue));
}

void tst_Binding::lineEndsInContainerUnits()
{
    QWidget w;
    w.setProperty("ScaleMode", 3);
    auto *l = new VelmoraLine(&w);
    l->setObjectName("line");
    l->setPoints(QPoint(200, 50), QPoint(20, 90));
    auto form = QtForm::create(&w);
    auto line = controlNamed(*form, "line");
    QVERIFY(line->isKind(HostKind::Line));
    QCOMPARE(*getSingle(*line, "X1"), 200.f);
    QCOMPARE(*getSingle(*line, "Y2"), 90.f);
    QVERIFY(!line->get("Left")); // a line is its end points, nothing else
    QVERIFY(line->set("X2", Value(10.f)));
    QCOMPARE(l->p2(), QPoint(10, 90));
}

void tst_Binding::tabWidgetMembers()
{
    QWidget w;
    auto *tabs = make<QTabWidget>(&w, "tabs", QRect(0, 0, 300, 200));
    for (const char *t : {"One", "Two", "Three"})
        tabs->addTab(new QWidget, t);
    tabs->setTabPosition(QTabWidget::West);
    auto form = QtForm::create(&w);
    auto c = controlNamed(*form, "tabs");
    QCOMPARE(c->typeName(), std::string("SSTab"));
    QCOMPARE(*getLong(*c, "Tabs"), 3);
    QCOMPARE(*getLong(*c, "TabsPerRow"), 3);
    QCOMPARE(*getLong(*c, "TabOrientation"), 2);
    QVERIFY(c->set("TabsPerRow", Value(2)));
    QCOMPARE(*getLong(*c, "TabsPerRow"), 2);
    QVERIFY(!c->set("TabsPerRow", Value(0)));
    QVERIFY(getSingle(*c, "TabHeight").value_or(0) > 0);
    QVERIFY(!c->getAt("TabPicture", 3));
    QPixmap icon(24, 20);
    icon.fill(Qt::red);
    QVERIFY(c->setAt("TabPicture", 1, Value(qt::QtPicture::make(icon))));
    QCOMPARE(tabs->iconSize(), QSize(24, 20));
    QCOMPARE(*getSingle(**getObjectAt(*c, "TabPicture", 1), "Width"), 360.f);
}

void tst_Binding::calendarFonts()
{
    QWidget w;
    make<QCalendarWidget>(&w, "calendar", QRect(0, 0, 300, 200));
    auto form = QtForm::create(&w);
    auto c = controlNamed(*form, "calendar");
    QVERIFY(!c->get("HeadFont")); // Qt's calendar has no fourth font
    for (const char *font : {"DayFont", "GridFont", "TitleFont"}) {
        QVERIFY2(setSub(*c, font, "Size", 17.0), font);
        QCOMPARE(*getSubSingle(*c, font, "Size"), 17.f);
    }
    auto *view = w.findChild<QWidget *>("qt_calendar_calendarview");
    QCOMPARE(view->font().pointSizeF(), 17.0);
}

QTEST_MAIN(tst_Binding)
#include "tst_binding.moc"
