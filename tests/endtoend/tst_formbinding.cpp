// Which form the component serves, and from what: main windows assembled in
// any order, a move to another form, a form minimised or collapsed while the
// application resizes or resets it.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QMainWindow>
#include <QMenuBar>
#include <QtTest>

namespace {

QLabel *addLabel(QWidget *form, const QRect &geometry)
{
    auto *label = new QLabel(QStringLiteral("label"), form);
    label->setObjectName(QStringLiteral("label"));
    label->setGeometry(geometry);
    return label;
}

void resizeAndSettle(QWidget *w, const QSize &size)
{
    w->resize(size);
    QCoreApplication::processEvents();
}

// A 400 x 300 form that is a child of its window: it can really collapse to
// nothing, and the window can be minimised around it.
struct ChildForm {
    ChildForm()
    {
        window.resize(900, 700);
        form = new QWidget(&window);
        form->setGeometry(0, 0, 400, 300);
        label = addLabel(form, QRect(40, 30, 100, 20));
        velmora = new VelmoraControl(form);
        velmora->setResizeOnMouseUp(false);
        window.show();
    }
    bool ready() { return QTest::qWaitFor([this] { return velmora->isFormReady(); }, 2000); }

    QWidget window;
    QWidget *form;
    QLabel *label;
    VelmoraControl *velmora;
};

} // namespace

class tst_FormBinding : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void mainWindowInAnyOrder_data();
    void mainWindowInAnyOrder();
    void rebindingStartsFromScratch_data();
    void rebindingStartsFromScratch();
    void oneComponentServesAForm();
    void setUpSurvivesItsSlots_data();
    void setUpSurvivesItsSlots();
    void restoringRunsThePass();
    void resetWaitsForARealSize();
    void recordsBelongToTheirWidget();
    void thousandsOfOneName();
    void newcomersWhileCollapsed();
};

enum Order { ControlFirst, CentralFirst, ControlAfterShow, CentralReplaced };

void tst_FormBinding::mainWindowInAnyOrder_data()
{
    QTest::addColumn<int>("order");
    QTest::newRow("control before the central widget") << int(ControlFirst);
    QTest::newRow("central widget before the control") << int(CentralFirst);
    QTest::newRow("control after show") << int(ControlAfterShow);
    QTest::newRow("central widget replaced") << int(CentralReplaced);
}

void tst_FormBinding::mainWindowInAnyOrder()
{
    QFETCH(int, order);
    QMainWindow main;
    QMenu *file = main.menuBar()->addMenu(QStringLiteral("File"));
    const QFont menuFont = main.menuBar()->font();
    VelmoraControl *velmora = nullptr;
    const auto place = [&] {
        velmora = new VelmoraControl(&main);
        velmora->setResizeOnMouseUp(false);
    };
    auto *central = new QWidget;
    if (order == ControlFirst)
        place();
    main.setCentralWidget(central);
    if (order == CentralFirst || order == CentralReplaced)
        place();
    if (order == CentralReplaced) {
        central = new QWidget;
        main.setCentralWidget(central);
    }
    QLabel *label = addLabel(central, QRect(50, 40, 200, 30));
    main.resize(600, 400);
    main.show();
    if (order == ControlAfterShow)
        place();
    QTRY_VERIFY(velmora->isFormReady());
    QCOMPARE(velmora->form(), central);

    const QSize before = central->size();
    resizeAndSettle(&main, main.size() + before);
    QCOMPARE(central->size(), before * 2);
    QCOMPARE(label->geometry(), QRect(100, 80, 400, 60));
    // The menu bar belongs to the window, not to the form.
    QCOMPARE(main.menuBar()->font(), menuFont);
    Q_UNUSED(file);
}

void tst_FormBinding::rebindingStartsFromScratch_data()
{
    QTest::addColumn<bool>("pending"); // moved while a pass for the first form waits
    QTest::addColumn<bool>("onMouseUp");
    QTest::addColumn<bool>("secondShown"); // before the move
    QTest::newRow("moved after its pass") << false << false << false;
    QTest::newRow("moved while a pass waits in the queue") << true << false << true;
    QTest::newRow("moved while a pass waits for resizing to pause") << true << true << true;
    QTest::newRow("moved while a pass waits, to a hidden form") << true << false << false;
}

void tst_FormBinding::rebindingStartsFromScratch()
{
    QFETCH(bool, pending);
    QFETCH(bool, onMouseUp);
    QFETCH(bool, secondShown);
    QWidget first, second;
    first.resize(400, 300);
    second.resize(800, 500);
    addLabel(&first, QRect(40, 30, 100, 20));
    QLabel *label = addLabel(&second, QRect(80, 50, 200, 40));
    auto *velmora = new VelmoraControl(&first);
    velmora->setResizeOnMouseUp(onMouseUp);
    first.show();
    if (secondShown)
        second.show();
    QTRY_VERIFY(velmora->isFormReady());
    if (pending) {
        first.resize(800, 600); // its pass not run yet
    } else {
        resizeAndSettle(&first, QSize(800, 600));
        QTRY_COMPARE(first.findChild<QLabel *>()->geometry(), QRect(80, 60, 200, 40));
    }

    // Moved to a form of another size: laid out from that form alone.
    velmora->setParent(&second);
    second.show();
    QTRY_VERIFY(velmora->isFormReady());
    QTest::qWait(150);
    QCOMPARE(label->geometry(), QRect(80, 50, 200, 40));
    resizeAndSettle(&second, QSize(1600, 1000));
    QTRY_COMPARE(label->geometry(), QRect(160, 100, 400, 80));
}

void tst_FormBinding::oneComponentServesAForm()
{
    // A second component on a form (dropped by mistake, or brought by a
    // piece of the form) stays passive, says so once, and takes over when
    // the first goes.
    QWidget form;
    form.resize(400, 300);
    QLabel *label = addLabel(&form, QRect(20, 20, 100, 30));
    QFont designFont = label->font();
    designFont.setPointSizeF(10);
    label->setFont(designFont);
    auto *first = new VelmoraControl(&form);
    first->setObjectName(QStringLiteral("firstVelmora"));
    first->setResizeOnMouseUp(false);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("secondVelmora.*firstVelmora|firstVelmora.*secondVelmora")));
    auto *second = new VelmoraControl;
    second->setObjectName(QStringLiteral("secondVelmora"));
    second->setResizeOnMouseUp(false);
    second->setParent(&form);
    second->setParent(nullptr); // and back: still said once
    second->setParent(&form);
    form.show();
    QTRY_VERIFY(first->isFormReady());
    QVERIFY(!second->isFormReady());
    resizeAndSettle(&form, QSize(800, 600));
    QTRY_COMPARE(label->geometry(), QRect(40, 40, 200, 60));
    QCOMPARE(label->font().pointSizeF(), 20.0);
    resizeAndSettle(&form, QSize(400, 300));
    QTRY_COMPARE(label->geometry(), QRect(20, 20, 100, 30));
    QCOMPARE(label->font().pointSizeF(), 10.0);

    delete first;
    QTRY_VERIFY(second->isFormReady());
    resizeAndSettle(&form, QSize(600, 450));
    QTRY_COMPARE(label->geometry(), QRect(30, 30, 150, 45));
}

void tst_FormBinding::setUpSurvivesItsSlots_data()
{
    QTest::addColumn<bool>("moveIt"); // or delete it
    QTest::addColumn<bool>("centred"); // the set-up places the window after its first pass
    QTest::newRow("deleted in the first pass") << false << false;
    QTest::newRow("deleted in the first pass, the window to be centred") << false << true;
    QTest::newRow("moved to another form in the first pass") << true << true;
}

void tst_FormBinding::setUpSurvivesItsSlots()
{
    // The set-up runs passes, and a slot of one may delete the component or
    // move it: the rest of the set-up is for the form it ran on only.
    QFETCH(bool, moveIt);
    QFETCH(bool, centred);
    QWidget form, other;
    form.resize(400, 300);
    other.resize(300, 200);
    QLabel *label = addLabel(&other, QRect(30, 20, 60, 20));
    addLabel(&form, QRect(40, 30, 100, 20));
    form.show();
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QPointer<VelmoraControl> velmora = new VelmoraControl(&form); // on a form already shown
    velmora->setResizeOnMouseUp(false);
    velmora->setCenterX(centred);
    velmora->setScaleX(centred ? 50 : 0);
    connect(velmora, &VelmoraControl::ResizeStarted, &form, [&] {
        if (moveIt)
            velmora->setParent(&other);
        else
            delete velmora.data();
    }, Qt::SingleShotConnection);
    QTest::qWait(50);
    QCOMPARE(bool(velmora), moveIt);
    if (!moveIt)
        return;
    QTRY_VERIFY(velmora->isFormReady());
    resizeAndSettle(&other, QSize(600, 400));
    QTRY_COMPARE(label->geometry(), QRect(60, 40, 120, 40));
}

void tst_FormBinding::restoringRunsThePass()
{
    ChildForm f;
    QVERIFY(f.ready());
    QWidget &window = f.window;
    QWidget *form = f.form;
    QLabel *label = f.label;

    window.setWindowState(Qt::WindowMinimized);
    resizeAndSettle(form, QSize(800, 600));
    QCOMPARE(label->geometry(), QRect(40, 30, 100, 20)); // no pass while minimised
    window.setWindowState(Qt::WindowNoState);
    QCoreApplication::processEvents();
    QCOMPARE(label->geometry(), QRect(80, 60, 200, 40));
}

void tst_FormBinding::resetWaitsForARealSize()
{
    ChildForm f;
    QVERIFY(f.ready());
    QWidget *form = f.form;
    QLabel *label = f.label;
    VelmoraControl *velmora = f.velmora;

    resizeAndSettle(form, QSize(0, 0));
    velmora->Reset(); // nothing to take at zero size: waits
    resizeAndSettle(form, QSize(400, 300));
    QCOMPARE(label->geometry(), QRect(40, 30, 100, 20));
    resizeAndSettle(form, QSize(800, 600));
    QCOMPARE(label->geometry(), QRect(80, 60, 200, 40));
}

void tst_FormBinding::recordsBelongToTheirWidget()
{
    QWidget form;
    form.resize(400, 300);
    auto *box = new QGroupBox(&form);
    box->setObjectName(QStringLiteral("box"));
    box->setGeometry(200, 150, 150, 100);
    box->setFont(QFont(box->font().family(), 30));
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    form.show();
    QTRY_VERIFY(velmora->isFormReady());
    const auto &store = VelmoraControlPrivate::get(velmora)->engine.store();
    const std::size_t records = store.infoCount();

    // Gone, and its name taken by a new widget of another kind.
    resizeAndSettle(&form, QSize(800, 600));
    delete box;
    auto *button = new QPushButton(QStringLiteral("new"), &form);
    button->setObjectName(QStringLiteral("box"));
    button->setGeometry(20, 20, 100, 30);
    button->setFont(QFont(button->font().family(), 9));
    button->show();
    resizeAndSettle(&form, QSize(1600, 1200));
    QCOMPARE(button->geometry(), QRect(40, 40, 200, 60));
    QCOMPARE(button->font().pointSizeF(), 18.0);

    // Deleted widgets leave nothing behind.
    for (int i = 0; i < 20; ++i) {
        auto *temp = new QLabel(&form);
        temp->setObjectName(QStringLiteral("temp%1").arg(i));
        resizeAndSettle(&form, QSize(1000 + i, 800));
        delete temp;
    }
    resizeAndSettle(&form, QSize(800, 600));
    QCOMPARE(store.infoCount(), records);
}

void tst_FormBinding::thousandsOfOneName()
{
    // Forms built in code repeat names; every widget still gets a key of
    // its own, and naming them stays linear.
    QWidget form;
    form.resize(1000, 1000);
    QList<QLabel *> labels;
    for (int i = 0; i < 3000; ++i) {
        labels << addLabel(&form, QRect(i % 100 * 10, i / 100 * 30, 8, 20));
    }
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    form.show();
    QTRY_VERIFY(velmora->isFormReady());
    resizeAndSettle(&form, QSize(2000, 2000));
    for (int i = 0; i < labels.size(); i += 97)
        QCOMPARE(labels[i]->geometry(), QRect(i % 100 * 20, i / 100 * 60, 16, 40));
}

void tst_FormBinding::newcomersWhileCollapsed()
{
    QWidget form;
    form.resize(400, 300);
    auto *box = new QGroupBox(&form);
    box->setObjectName(QStringLiteral("box"));
    box->setGeometry(100, 50, 200, 200);
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    form.show();
    QTRY_VERIFY(velmora->isFormReady());

    resizeAndSettle(&form, QSize(5, 5)); // the box is a pixel or two now
    QLabel *late = addLabel(box, QRect(10, 20, 100, 30));
    QPixmap icon(24, 24);
    icon.fill(Qt::red);
    late->setPixmap(icon);
    late->show();
    resizeAndSettle(&form, QSize(6, 6));
    resizeAndSettle(&form, QSize(400, 300));
    resizeAndSettle(&form, QSize(800, 600));
    // Recorded at a real size: it scales with its box, picture included.
    QCOMPARE(late->geometry(), QRect(20, 40, 200, 60));
    QVERIFY(late->pixmap().width() <= 200);
}

QTEST_MAIN(tst_FormBinding)
#include "tst_formbinding.moc"
