// Holding a form at a print size and putting it back; the about box.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

namespace {

struct Form {
    QWidget widget;
    QLabel *label = nullptr;
    VelmoraControl *velmora = nullptr;
    int cancelled = 0;
    QStringList errors;

    Form()
    {
        widget.resize(400, 300);
        label = new QLabel(QStringLiteral("label"), &widget);
        label->setGeometry(40, 30, 200, 30);
        velmora = new VelmoraControl(&widget);
        velmora->setResizeOnMouseUp(false);
        QObject::connect(velmora, &VelmoraControl::PrintCancelled, [this] { ++cancelled; });
        QObject::connect(velmora, &VelmoraControl::Error,
                         [this](const QString &d, const VelmoraError &e) { errors << d + u'|' + e.Description; });
    }
    bool show()
    {
        widget.move(50, 60);
        widget.show();
        return QTest::qWaitFor([&] { return velmora->isFormReady(); }, 3000);
    }
};

QWidget *printDialog()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmDialog") && w->isVisible())
            return w;
    return nullptr;
}

} // namespace

class tst_PrintSize : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void printSizes_data();
    void printSizes();
    void hiddenStaysOffScreen();
    void cancelRestoresOnce();
    void maximisedComesBackMaximised();
    void slotsOfTheCancel_data();
    void slotsOfTheCancel();
    void ownLimitsLiftedWhilePrinted_data();
    void ownLimitsLiftedWhilePrinted();
    void refusedWhereItDoesNotApply_data();
    void refusedWhereItDoesNotApply();
    void aboutBoxShowsTheVersion();
};

void tst_PrintSize::printSizes_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<int>("scaleMode");
    QTest::addColumn<QSize>("outer"); // pixels; empty: the design size
    QTest::newRow("no size: the design size") << 0.0 << 0.0 << 1 << QSize();
    QTest::newRow("twips") << 9000.0 << 12000.0 << 1 << QSize(600, 800);
    QTest::newRow("pixels") << 700.0 << 500.0 << 3 << QSize(700, 500);
    QTest::newRow("millimetres (A4)") << 210.0 << 297.0 << 6 << QSize(794, 1123);
    // The design size is twips read as the units asked for, literally: in
    // inches, a window no memory could draw. Held to 10000 pixels a side.
    QTest::newRow("no size, in inches: held") << 0.0 << 0.0 << 5 << QSize(10000, 10000);
    QTest::newRow("a size past any page: held") << 1e9 << 600.0 << 3 << QSize(10000, 600);
}

void tst_PrintSize::printSizes()
{
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(int, scaleMode);
    QFETCH(QSize, outer);
    Form f;
    QVERIFY(f.show());
    const QRect designed = f.widget.frameGeometry();
    if (outer.isEmpty())
        outer = designed.size();
    f.widget.resize(500, 350); // the user made it larger: the design size is still what prints
    QCoreApplication::processEvents();
    const QRect before = f.widget.frameGeometry();
    if (outer.width() == 10000)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("held to 10000 pixels a side")));
    QCOMPARE(f.velmora->PrintSize(true, width, height, scaleMode), 0);
    QVERIFY2(qAbs(f.widget.frameGeometry().width() - outer.width()) <= 1
                 && qAbs(f.widget.frameGeometry().height() - outer.height()) <= 1,
             qPrintable(QStringLiteral("%1x%2").arg(f.widget.frameGeometry().width()).arg(f.widget.frameGeometry().height())));
    QCOMPARE(f.widget.frameGeometry().topLeft(), before.topLeft()); // not hidden: where it was
    // Laid out for the print size at once, before the application renders.
    const double rx = double(f.widget.width()) / 400;
    QVERIFY2(qAbs(f.label->width() - 200 * rx) <= 1, qPrintable(QString::number(f.label->width())));
    QVERIFY(!printDialog());
    f.velmora->PrintSize(false);
    QCOMPARE(f.widget.frameGeometry(), before);
    QTRY_COMPARE(f.label->width(), qRound(200 * 500 / 400.0));
    QCOMPARE(f.cancelled, 0);
    QVERIFY(f.errors.isEmpty());
}

void tst_PrintSize::hiddenStaysOffScreen()
{
    // Off every screen of the desktop (the suite runs this once more on two
    // screens side by side, 4480 pixels wide): at 32000 twips where that is
    // past them all, further where it is not.
    int right = 0;
    for (const QScreen *screen : QGuiApplication::screens())
        right = qMax(right, screen->geometry().x() + screen->geometry().width());
    const int hidden = qMax(32000 / 15, right + 64);
    Form f;
    QVERIFY(f.show());
    const QRect before = f.widget.frameGeometry();
    const QRectF tracked = VelmoraControlPrivate::get(f.velmora)->driver.SavedWindowRect;
    f.velmora->PrintSize(true, 600, 400, 3, true);
    QCOMPARE(f.widget.frameGeometry().x(), hidden);
    QCOMPARE(f.widget.frameGeometry().y(), before.y());
    for (const QScreen *screen : QGuiApplication::screens())
        QVERIFY(!screen->geometry().intersects(f.widget.frameGeometry()));
    // Moved back by the application (or a window manager): off again.
    f.widget.move(10, 10);
    QTRY_COMPARE(f.widget.frameGeometry().x(), hidden);
    // The off-screen place is not one the window would reopen at.
    QCOMPARE(VelmoraControlPrivate::get(f.velmora)->driver.SavedWindowRect, tracked);
    f.velmora->PrintSize(false);
    QCOMPARE(f.widget.frameGeometry(), before);
    QTest::qWait(250);
    QCOMPARE(f.widget.frameGeometry(), before);
}

void tst_PrintSize::cancelRestoresOnce()
{
    Form f;
    QVERIFY(f.show());
    const QRect before = f.widget.frameGeometry();
    f.velmora->PrintSize(true, 700, 500, 3, false, true, true);
    QWidget *dialog = printDialog();
    QVERIFY(dialog);
    QVERIFY(dialog->windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(dialog->findChild<QLabel *>(QStringLiteral("lblPrinting")));
    QCOMPARE(dialog->findChild<QLabel *>(QStringLiteral("lblPrinting"))->text(), QStringLiteral("Printing..."));
    auto *cancel = dialog->findChild<QPushButton *>(QStringLiteral("cmdCancel"));
    QVERIFY(cancel && cancel->isVisible());
    QCOMPARE(cancel->text(), QStringLiteral("&Cancel"));
    QTest::mouseClick(cancel, Qt::LeftButton);
    QCOMPARE(f.cancelled, 1);
    QCOMPARE(f.widget.frameGeometry(), before);
    QTRY_VERIFY(!printDialog());
    f.velmora->PrintSize(false); // the application's own restore: nothing more to tell
    QCOMPARE(f.cancelled, 1);

    // Without AllowCancel the dialog has no button to press.
    f.velmora->PrintSize(true, 700, 500, 3, false, true, false);
    QVERIFY(printDialog());
    QVERIFY(!printDialog()->findChild<QPushButton *>(QStringLiteral("cmdCancel"))->isVisible());
    f.velmora->PrintSize(false);
    QTRY_VERIFY(!printDialog());
    QCOMPARE(f.cancelled, 1);
}

void tst_PrintSize::maximisedComesBackMaximised()
{
    Form f;
    QVERIFY(f.show());
    f.widget.showMaximized();
    QTRY_VERIFY(f.widget.isMaximized());
    f.velmora->PrintSize(true, 640, 480, 3);
    QVERIFY(!f.widget.isMaximized());
    QCOMPARE(f.widget.frameGeometry().size(), QSize(640, 480));
    f.velmora->PrintSize(false);
    QTRY_VERIFY(f.widget.isMaximized());
}

void tst_PrintSize::slotsOfTheCancel_data()
{
    QTest::addColumn<QString>("slot");
    QTest::newRow("ends the print size itself") << "restore";
    QTest::newRow("prints again") << "again";
    QTest::newRow("deletes the component") << "delete component";
    QTest::newRow("deletes the form") << "delete form";
}

void tst_PrintSize::slotsOfTheCancel()
{
    // One notice of the cancel, whatever its slot does.
    QFETCH(QString, slot);
    auto *f = new Form;
    QPointer<QWidget> form = &f->widget;
    QPointer<VelmoraControl> velmora = f->velmora;
    QVERIFY(f->show());
    const QRect before = f->widget.frameGeometry();
    int notices = 0;
    connect(velmora, &VelmoraControl::PrintCancelled, this, [&] {
        ++notices;
        if (slot == QLatin1String("restore"))
            velmora->PrintSize(false);
        else if (slot == QLatin1String("again"))
            velmora->PrintSize(true, 500, 400, 3);
        else if (slot == QLatin1String("delete component"))
            delete velmora.data();
        else
            delete f;
    });
    velmora->PrintSize(true, 700, 500, 3, false, true, true);
    auto *cancel = printDialog()->findChild<QPushButton *>(QStringLiteral("cmdCancel"));
    QTest::mouseClick(cancel, Qt::LeftButton);
    QCOMPARE(notices, 1);
    QTRY_VERIFY(!printDialog());
    if (slot == QLatin1String("delete form")) {
        QVERIFY(!form && !velmora);
        return;
    }
    if (slot == QLatin1String("again"))
        QCOMPARE(f->widget.frameGeometry().size(), QSize(500, 400));
    else
        QCOMPARE(f->widget.frameGeometry(), before);
    if (velmora)
        velmora->PrintSize(false);
    QCOMPARE(f->widget.frameGeometry(), before);
    QCOMPARE(notices, 1);
    delete f;
}

void tst_PrintSize::ownLimitsLiftedWhilePrinted_data()
{
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QSize>("print");
    QTest::newRow("larger than its maximum") << QSize(0, 0) << QSize(500, 400) << QSize(800, 1100);
    QTest::newRow("smaller than its minimum") << QSize(400, 300) << QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX)
                                              << QSize(200, 150);
    QTest::newRow("a fixed size") << QSize(400, 300) << QSize(400, 300) << QSize(600, 900);
}

void tst_PrintSize::ownLimitsLiftedWhilePrinted()
{
    // A print asks for a page's size: the form's own limits give way while
    // it is printed, and are its own again exactly afterwards.
    QFETCH(QSize, minimum);
    QFETCH(QSize, maximum);
    QFETCH(QSize, print);
    Form f;
    f.widget.setMinimumSize(minimum);
    f.widget.setMaximumSize(maximum);
    QVERIFY(f.show());
    const QRect before = f.widget.frameGeometry();
    f.velmora->PrintSize(true, print.width(), print.height(), 3);
    QCOMPARE(f.widget.frameGeometry().size(), print);
    QTRY_COMPARE(f.label->width(), qRound(200.0 * f.widget.width() / 400));
    f.velmora->PrintSize(false);
    QCOMPARE(f.widget.frameGeometry(), before);
    QCOMPARE(f.widget.minimumSize(), minimum);
    QCOMPARE(f.widget.maximumSize(), maximum);
}

void tst_PrintSize::refusedWhereItDoesNotApply_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("error");
    QTest::newRow("a scale mode that does not exist") << "form" << "Error in ScaleMode|Invalid scale mode";
    QTest::newRow("an MDI parent") << "mdi" << "";
    QTest::newRow("design time") << "design" << "";
}

void tst_PrintSize::refusedWhereItDoesNotApply()
{
    QFETCH(QString, where);
    QFETCH(QString, error);
    QStringList errors;
    std::unique_ptr<QWidget> window;
    VelmoraControl *v = nullptr;
    if (where == QLatin1String("mdi")) {
        auto *main = new QMainWindow;
        main->setCentralWidget(new QMdiArea);
        v = new VelmoraControl(main);
        window.reset(main);
    } else {
        window = std::make_unique<QWidget>();
        v = new VelmoraControl(window.get());
        v->setDesignTime(where == QLatin1String("design"));
    }
    QObject::connect(v, &VelmoraControl::Error,
                     [&](const QString &d, const VelmoraError &e) { errors << d + u'|' + e.Description; });
    window->resize(400, 300);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QCoreApplication::processEvents();
    const QRect before = window->frameGeometry();
    v->PrintSize(true, 700, 500, where == QLatin1String("form") ? 99 : 3, true, true, true);
    QCOMPARE(window->frameGeometry(), before);
    QVERIFY(!printDialog());
    QCOMPARE(errors, error.isEmpty() ? QStringList() : QStringList{error});
}

void tst_PrintSize::aboutBoxShowsTheVersion()
{
    QWidget form;
    auto *v = new VelmoraControl(&form);
    form.show();
    v->ShowAboutBox();
    QMessageBox *box = nullptr;
    QTRY_VERIFY((box = form.findChild<QMessageBox *>(QStringLiteral("VelmoraAboutBox"))) && box->isVisible());
    QVERIFY(box->text().contains(VelmoraControl::version()));
    QVERIFY(!VelmoraControl::version().isEmpty());
    box->close();
}

QTEST_MAIN(tst_PrintSize)
#include "tst_printsize.moc"
