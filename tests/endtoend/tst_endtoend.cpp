// Whole forms, built by uic, by QUiLoader and in code, scaled through a
// VelmoraControl as a user resizes them. A pass answers a resize from the
// event loop, so each resize is followed by delivering posted events.
#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"
#include "ui_scaleform.h"

#include <QCheckBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

enum class Builder { Uic, Loader, Code };

struct UicForm : QWidget {
    UicForm() { ui.setupUi(this); }
    Ui::ScaleForm ui;
};

// The same form three ways: 1000 x 1000 pixels, in ScaleMode pixels, with a
// button at (100, 200, 300, 400) and a check box inside a group box.
std::unique_ptr<QWidget> buildForm(Builder builder)
{
    switch (builder) {
    case Builder::Uic:
        return std::make_unique<UicForm>();
    case Builder::Loader: {
        VelmoraUiLoader loader;
        QFile file(QFINDTESTDATA("scaleform.ui"));
        if (!file.open(QIODevice::ReadOnly))
            return nullptr;
        return std::unique_ptr<QWidget>(loader.load(&file));
    }
    case Builder::Code:
        break;
    }
    auto form = std::make_unique<QWidget>();
    form->setProperty("ScaleMode", 3);
    // The control may come first, before the form has its size or widgets.
    auto *velmora = new VelmoraControl(form.get());
    velmora->setResizeOnMouseUp(false);
    form->resize(1000, 1000);
    QCoreApplication::sendPostedEvents();
    auto *target = new QPushButton(QStringLiteral("Target"), form.get());
    target->setObjectName("target");
    target->setGeometry(100, 200, 300, 400);
    QFont f = target->font();
    f.setPointSize(10);
    target->setFont(f);
    auto *group = new QGroupBox(form.get());
    group->setObjectName("group");
    group->setGeometry(500, 100, 400, 300);
    auto *check = new QCheckBox(group);
    check->setObjectName("inGroup");
    check->setGeometry(40, 60, 200, 30);
    return form;
}

VelmoraControl *showAndWait(QWidget *form)
{
    form->show();
    auto *velmora = form->findChild<VelmoraControl *>();
    if (velmora && !QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000))
        return nullptr;
    return velmora;
}

QPixmap detailedPixmap()
{
    QPixmap pm(80, 60);
    pm.fill(Qt::white);
    QPainter p(&pm);
    for (int i = 0; i < 80; i += 4)
        p.fillRect(i, (i * 7) % 60, 2, 9, QColor::fromHsv((i * 9) % 360, 255, 200));
    return pm;
}

} // namespace

Q_DECLARE_METATYPE(Builder)

class tst_EndToEnd : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void scalesWholeForm_data();
    void scalesWholeForm();
    void designSize_data();
    void designSize();
    void noDriftThroughOddSizes();
    void picturesNeverDegrade();
    void resizeOnMouseUpDefersThePass();
    void onePaintPerPass();
    void resetTakesPresentLayout();
    void controlAddedToShownForm();
    void mainWindowCentralWidgetIsTheForm();
};

void tst_EndToEnd::scalesWholeForm_data()
{
    QTest::addColumn<Builder>("builder");
    QTest::newRow("uic") << Builder::Uic;
    QTest::newRow("QUiLoader") << Builder::Loader;
    QTest::newRow("code") << Builder::Code;
}

void tst_EndToEnd::scalesWholeForm()
{
    QFETCH(Builder, builder);
    auto form = buildForm(builder);
    QVERIFY(form);
    QVERIFY(showAndWait(form.get()));
    auto *target = form->findChild<QPushButton *>("target");
    auto *group = form->findChild<QGroupBox *>("group");
    auto *check = form->findChild<QCheckBox *>("inGroup");

    form->resize(2000, 1500);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(target->geometry(), QRect(200, 300, 600, 600));
    QCOMPARE(target->font().pointSizeF(), 15.0);
    QCOMPARE(group->geometry(), QRect(1000, 150, 800, 450));
    QCOMPARE(check->geometry(), QRect(80, 90, 400, 45)); // by its group box

    form->resize(1000, 1000);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(target->geometry(), QRect(100, 200, 300, 400));
    QCOMPARE(target->font().pointSizeF(), 10.0);
}

void tst_EndToEnd::designSize_data()
{
    QTest::addColumn<QSize>("storedDesign"); // empty: none stored
    QTest::addColumn<QSize>("shownAt");
    QTest::addColumn<QRect>("target"); // right after the form is shown
    // Resizes before the first show are the form being built, not used.
    QTest::newRow("none stored: the size first shown with") << QSize() << QSize(500, 500)
                                                            << QRect(100, 200, 300, 400);
    QTest::newRow("stored: scaled at once") << QSize(1000, 1000) << QSize(2000, 1500)
                                            << QRect(200, 300, 600, 600);
}

void tst_EndToEnd::designSize()
{
    QFETCH(QSize, storedDesign);
    QFETCH(QSize, shownAt);
    QFETCH(QRect, target);
    auto form = buildForm(Builder::Code);
    auto *velmora = form->findChild<VelmoraControl *>();
    if (!storedDesign.isEmpty()) {
        velmora->setDesignFormScaleWidth(storedDesign.width());
        velmora->setDesignFormScaleHeight(storedDesign.height());
    }
    form->resize(shownAt);
    QCoreApplication::sendPostedEvents();
    QVERIFY(showAndWait(form.get()));
    auto *button = form->findChild<QPushButton *>("target");
    QCOMPARE(button->geometry(), target);

    form->resize(shownAt * 2);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(button->geometry(), QRect(target.topLeft() * 2, target.size() * 2));
}

void tst_EndToEnd::noDriftThroughOddSizes()
{
    auto form = buildForm(Builder::Code);
    QVERIFY(showAndWait(form.get()));
    auto *target = form->findChild<QPushButton *>("target");
    auto *check = form->findChild<QCheckBox *>("inGroup");
    // Each odd size rounds every edge to pixels; none of that may pile up
    // into the design layout.
    for (const QSize s : {QSize(1237, 911), QSize(733, 1291), QSize(1501, 777), QSize(997, 1003), QSize(611, 389)}) {
        form->resize(s);
        QCoreApplication::sendPostedEvents();
    }
    form->resize(1000, 1000);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(target->geometry(), QRect(100, 200, 300, 400));
    QCOMPARE(check->geometry(), QRect(40, 60, 200, 30));
    QCOMPARE(target->font().pointSizeF(), 10.0);
}

void tst_EndToEnd::picturesNeverDegrade()
{
    auto form = buildForm(Builder::Code);
    auto *label = new QLabel(form.get());
    label->setObjectName("picture");
    label->setGeometry(10, 10, 80, 60);
    const QPixmap original = detailedPixmap();
    label->setPixmap(original);
    auto *velmora = showAndWait(form.get());
    QVERIFY(velmora);

    for (int i = 0; i < 20; ++i) {
        form->resize(2000, 1500);
        QCoreApplication::sendPostedEvents();
        form->resize(500, 600);
        QCoreApplication::sendPostedEvents();
    }
    form->resize(2000, 1500);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(label->size(), QSize(160, 90));
    const QImage direct = velmora->ScalePicture(original, 2.0, 1.5).toImage();
    QCOMPARE(direct.size(), QSize(160, 90));
    QCOMPARE(label->pixmap().toImage().convertToFormat(direct.format()), direct);
}

void tst_EndToEnd::resizeOnMouseUpDefersThePass()
{
    auto form = buildForm(Builder::Code);
    auto *velmora = showAndWait(form.get());
    velmora->setResizeOnMouseUp(true);
    auto *target = form->findChild<QPushButton *>("target");
    QSignalSpy done(velmora, &VelmoraControl::ResizeDone);

    // A drag: several resizes in quick succession.
    form->resize(1200, 1100);
    QCoreApplication::sendPostedEvents();
    form->resize(1600, 1300);
    QCoreApplication::sendPostedEvents();
    form->resize(2000, 1500);
    QCoreApplication::processEvents();
    QCOMPARE(target->geometry(), QRect(100, 200, 300, 400));
    QCOMPARE(done.count(), 0);

    QTRY_COMPARE(target->geometry(), QRect(200, 300, 600, 600));
    QTest::qWait(200);
    QCOMPARE(done.count(), 1);
}

void tst_EndToEnd::onePaintPerPass()
{
    struct PaintCounter : QObject {
        int paints = 0;
        bool eventFilter(QObject *, QEvent *e) override
        {
            paints += e->type() == QEvent::Paint;
            return false;
        }
    } counter;
    auto form = buildForm(Builder::Code);
    QVERIFY(showAndWait(form.get()));
    auto *target = form->findChild<QPushButton *>("target");
    QTest::qWait(50);
    target->installEventFilter(&counter);
    form->resize(2000, 1500);
    QCoreApplication::sendPostedEvents();
    QTRY_VERIFY(counter.paints > 0);
    QTest::qWait(50);
    QCOMPARE(counter.paints, 1);
}

void tst_EndToEnd::resetTakesPresentLayout()
{
    auto form = buildForm(Builder::Code);
    form->setProperty("ScaleMode", 1);
    auto *velmora = showAndWait(form.get());
    auto *target = form->findChild<QPushButton *>("target");
    form->resize(2000, 1500);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(target->font().pointSizeF(), 15.0);

    velmora->Reset();
    form->resize(1000, 750);
    QCoreApplication::sendPostedEvents();
    // Scaled from the layout at Reset, not from the design.
    QCOMPARE(target->font().pointSizeF(), 7.5);
    QCOMPARE(target->geometry(), QRect(100, 150, 300, 300));
}

void tst_EndToEnd::controlAddedToShownForm()
{
    QWidget form;
    form.resize(400, 300);
    auto *label = new QLabel(QStringLiteral("late"), &form);
    label->setObjectName("label");
    label->setGeometry(40, 30, 100, 20);
    form.show();
    QCoreApplication::processEvents();

    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    QTRY_VERIFY(velmora->isFormReady());
    form.resize(800, 600);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(label->geometry(), QRect(80, 60, 200, 40));
}

void tst_EndToEnd::mainWindowCentralWidgetIsTheForm()
{
    QMainWindow main;
    main.menuBar()->addMenu("File")->setObjectName("mnuFile");
    auto *central = new QWidget;
    main.setCentralWidget(central);
    auto *label = new QLabel(QStringLiteral("in the centre"), central);
    label->setGeometry(50, 40, 200, 30);
    auto *velmora = new VelmoraControl(&main); // placed on the window itself
    velmora->setResizeOnMouseUp(false);
    main.resize(600, 400);
    main.show();
    QTRY_VERIFY(velmora->isFormReady());
    QCOMPARE(velmora->form(), central);

    const QSize before = central->size();
    main.resize(main.width() + before.width(), main.height() + before.height());
    QCoreApplication::sendPostedEvents();
    QCOMPARE(central->size(), before * 2);
    QCOMPARE(label->geometry(), QRect(100, 80, 400, 60));
}

QTEST_MAIN(tst_EndToEnd)
#include "tst_endtoend.moc"
