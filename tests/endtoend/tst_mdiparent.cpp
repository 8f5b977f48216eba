// A main window whose centre is an MDI area is a form of its own kind: the
// component on it serves the main window's toolbars and status bar, measures
// the area, and leaves the child windows to their own components.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QWindow>
#include <QtTest>

namespace {

enum class Placed { OnMainWindow, OnArea, OnViewport, BeforeTheArea, AreaNotCentral };

struct MdiParent {
    QMainWindow main;
    QMdiArea *area = nullptr;
    QToolBar *tools = nullptr;
    QLabel *status = nullptr;
    QLabel *docked = nullptr;
    QLabel *childLabel = nullptr;
    QMdiSubWindow *sub = nullptr;
    VelmoraControl *velmora = nullptr;

    explicit MdiParent(Placed placed = Placed::OnMainWindow, const std::function<void(VelmoraControl *)> &configure = {})
    {
        main.setObjectName(QStringLiteral("frmMain"));
        main.setWindowTitle(QStringLiteral("MDI parent"));
        if (placed == Placed::BeforeTheArea)
            velmora = new VelmoraControl(&main);
        area = new QMdiArea;
        area->setObjectName(QStringLiteral("mdiArea"));
        if (placed == Placed::AreaNotCentral) {
            auto *centre = new QWidget;
            area->setParent(centre);
            area->setGeometry(10, 10, 300, 200);
            main.setCentralWidget(centre);
        } else {
            main.setCentralWidget(area);
        }
        main.menuBar()->addMenu(QStringLiteral("&File"))->setObjectName(QStringLiteral("mnuFile"));
        tools = main.addToolBar(QStringLiteral("Tools"));
        tools->setObjectName(QStringLiteral("tbTools"));
        tools->addAction(QStringLiteral("Open"))->setObjectName(QStringLiteral("actOpen"));
        status = new QLabel(QStringLiteral("Ready"));
        status->setObjectName(QStringLiteral("lblStatus"));
        main.statusBar()->setObjectName(QStringLiteral("sbMain"));
        main.statusBar()->addWidget(status);
        auto *dock = new QDockWidget(QStringLiteral("Palette"), &main);
        dock->setObjectName(QStringLiteral("dockPalette"));
        docked = new QLabel(QStringLiteral("Colours"));
        docked->setObjectName(QStringLiteral("lblColours"));
        dock->setWidget(docked);
        main.addDockWidget(Qt::LeftDockWidgetArea, dock);

        auto *child = new QWidget;
        child->setObjectName(QStringLiteral("frmChild"));
        child->resize(200, 120);
        childLabel = new QLabel(QStringLiteral("child"), child);
        childLabel->setObjectName(QStringLiteral("lblChild"));
        childLabel->setGeometry(10, 10, 100, 24);
        sub = area->addSubWindow(child);
        sub->setGeometry(5, 5, 220, 160);

        switch (placed) {
        case Placed::OnMainWindow:
            velmora = new VelmoraControl(&main);
            break;
        case Placed::OnArea:
            velmora = new VelmoraControl(area);
            break;
        case Placed::OnViewport:
        case Placed::AreaNotCentral:
            velmora = new VelmoraControl(area->viewport());
            break;
        case Placed::BeforeTheArea:
            break;
        }
        velmora->setResizeOnMouseUp(false);
        if (configure)
            configure(velmora);
        main.resize(800, 600);
    }
    bool show()
    {
        main.show();
        return QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000);
    }
    void resize(const QSize &size)
    {
        main.resize(size);
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
    velmora::qt::QtForm *hostForm() const { return VelmoraControlPrivate::get(velmora)->driver.hostForm().get(); }
};

QStringList controlNames(velmora::qt::QtForm &form)
{
    QStringList names;
    for (const auto &c : form.controls())
        if (c)
            names << QString::fromStdString(velmora::getText(*c, "Name").value_or("?"));
    names.sort();
    return names;
}

} // namespace

class tst_MdiParent : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void binding_data();
    void binding();
    void members();
    void scalesTheMainWindowsControls();
    void formServices_data();
    void formServices();
    void pictureBehindTheChildren();
};

void tst_MdiParent::binding_data()
{
    QTest::addColumn<Placed>("placed");
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("kind");
    QTest::newRow("on the main window") << Placed::OnMainWindow << "frmMain" << "MDIForm";
    QTest::newRow("on the area") << Placed::OnArea << "frmMain" << "MDIForm";
    QTest::newRow("on the area's viewport") << Placed::OnViewport << "frmMain" << "MDIForm";
    QTest::newRow("before the area is the centre") << Placed::BeforeTheArea << "frmMain" << "MDIForm";
    QTest::newRow("an area that is not the centre") << Placed::AreaNotCentral << "mdiArea" << "Form";
}

void tst_MdiParent::binding()
{
    QFETCH(Placed, placed);
    QFETCH(QString, form);
    QFETCH(QString, kind);
    MdiParent m(placed);
    QVERIFY(m.show());
    velmora::qt::QtForm *f = m.hostForm();
    QVERIFY(f);
    QCOMPARE(f->widget()->objectName(), form);
    QCOMPARE(QString::fromStdString(f->typeName()), kind);
    QCOMPARE(f->isKind(velmora::HostKind::MDIForm), kind == QLatin1String("MDIForm"));
    QCOMPARE(f->isKind(velmora::HostKind::Form), kind == QLatin1String("Form"));

    // A main window that stops being an MDI parent is a plain form again.
    if (placed == Placed::OnMainWindow) {
        auto *plain = new QWidget;
        plain->setObjectName(QStringLiteral("plainCentre"));
        m.main.setCentralWidget(plain);
        QTRY_VERIFY(m.hostForm() && m.hostForm()->widget() == plain);
        QCOMPARE(QString::fromStdString(m.hostForm()->typeName()), QStringLiteral("Form"));
    }
}

void tst_MdiParent::members()
{
    MdiParent m;
    QVERIFY(m.show());
    velmora::qt::QtForm &f = *m.hostForm();
    // The main window's own controls and menus; neither the area, nor the
    // menu bar, nor what the child windows hold.
    const QStringList names = controlNames(f);
    for (const char *expected : {"tbTools", "sbMain", "dockPalette", "lblColours", "mnuFile", "VelmoraControl"})
        QVERIFY2(names.contains(QLatin1String(expected)), qPrintable(names.join(u' ')));
    // What the status bar shows takes its font, as a toolbar's buttons do.
    for (const char *unexpected : {"mdiArea", "lblChild", "frmChild", "lblStatus"})
        QVERIFY2(!names.contains(QLatin1String(unexpected)), qPrintable(names.join(u' ')));
    for (const char *machinery : {"QMenuBar", "QSizeGrip"})
        QVERIFY2(!names.join(u' ').contains(QLatin1String(machinery)), qPrintable(names.join(u' ')));

    // Its inner size is the area's, in twips, with no scale mode to convert.
    const QSize inner = m.area->contentsRect().size();
    QCOMPARE(velmora::getSingle(f, "ScaleWidth").value_or(-1), float(inner.width() * 15));
    QCOMPARE(velmora::getSingle(f, "ScaleHeight").value_or(-1), float(inner.height() * 15));
    QVERIFY(!f.get("ScaleMode"));
    QVERIFY(!f.set("ScaleMode", velmora::Value(3)));
    QVERIFY(!f.call("ScaleX", {velmora::Value(1.0f), velmora::Value(3), velmora::Value(1)}));
    QVERIFY(!f.get("MDIChild"));
    QCOMPARE(velmora::getSingle(f, "Width").value_or(-1), float(m.main.frameGeometry().width() * 15));
    QCOMPARE(QString::fromStdString(velmora::getText(f, "Name").value_or("")), QStringLiteral("frmMain"));
    // Its repaint is not a hide: the window stays where it is, shown.
    const WId id = m.main.winId();
    QVERIFY(f.call("Hide", {}));
    QVERIFY(m.main.isVisible());
    QVERIFY(f.call("Show", {}));
    QVERIFY(m.main.isVisible());
    QCOMPARE(m.main.winId(), id);
}

void tst_MdiParent::scalesTheMainWindowsControls()
{
    MdiParent m;
    QVERIFY(m.show());
    const qreal statusPt = m.status->font().pointSizeF();
    QCOMPARE(m.tools->font().pointSizeF(), statusPt);
    const QRect childAt = m.childLabel->geometry();
    const QFont childFont = m.childLabel->font();
    const QRect subAt = m.sub->geometry();
    m.resize(QSize(1600, 1200));
    // Fonts follow the main window (placement is the main window's own).
    QVERIFY2(m.status->font().pointSizeF() > statusPt * 1.5, qPrintable(QString::number(m.status->font().pointSizeF())));
    QVERIFY(m.tools->font().pointSizeF() > statusPt * 1.5);
    // The child windows are forms of their own: untouched.
    QCOMPARE(m.sub->geometry(), subAt);
    QCOMPARE(m.childLabel->geometry(), childAt);
    QCOMPARE(m.childLabel->font(), childFont);
    // Back at its first size, within a point of where it started.
    m.resize(QSize(800, 600));
    QVERIFY2(qAbs(m.status->font().pointSizeF() - statusPt) < 1, qPrintable(QString::number(m.status->font().pointSizeF())));
}

void tst_MdiParent::formServices_data()
{
    QTest::addColumn<QString>("setting");
    QTest::newRow("half the screen, centred") << "scale";
    QTest::newRow("no gradient, no error") << "gradient";
    QTest::newRow("stays on top: refused") << "top";
    QTest::newRow("opening wipe on the main window") << "wipe";
    QTest::newRow("size limits on the main window") << "limits";
    QTest::newRow("one typeface for its controls, not the children's") << "font";
}

void tst_MdiParent::formServices()
{
    QFETCH(QString, setting);
    int errors = 0;
    const auto previous = VelmoraControl::setTrappedErrorHandler([&](QWidget *, const QString &) { ++errors; });
    MdiParent m(Placed::OnMainWindow, [&](VelmoraControl *v) {
        if (setting == QLatin1String("scale")) {
            v->setScaleX(50);
            v->setScaleY(50);
            v->setCenterX(true);
            v->setCenterY(true);
        } else if (setting == QLatin1String("gradient")) {
            v->setGradientFill(true);
        } else if (setting == QLatin1String("wipe")) {
            v->setFormOpen(VelmoraControl::FoWipeRight);
            v->setFormOpenTime(0.2);
        } else if (setting == QLatin1String("limits")) {
            v->setMinWidth(700 * 15);
            v->setMaxWidth(900 * 15);
        } else if (setting == QLatin1String("font")) {
            v->setReplaceFontsWith(QStringLiteral("DejaVu Serif"));
        }
    });
    QObject::connect(m.velmora, &VelmoraControl::Error, [&] { ++errors; });
    if (setting == QLatin1String("top")) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("StayOnTop.*MDI parent"));
        QVERIFY(m.show());
        m.velmora->setStayOnTop(true);
        QVERIFY(!(m.main.windowFlags() & Qt::WindowStaysOnTopHint));
    } else if (setting == QLatin1String("wipe")) {
        QVERIFY(!m.main.isVisible() || m.main.mask().isEmpty());
        QVERIFY(m.show());
        QVERIFY(m.main.mask().isEmpty()); // whole once it has opened
    } else {
        QVERIFY(m.show());
    }
    QCoreApplication::processEvents();
    if (setting == QLatin1String("scale")) {
        const QRect screen = m.main.screen()->geometry();
        const QRect outer = m.main.frameGeometry();
        QVERIFY(qAbs(outer.width() - screen.width() / 2) <= 1);
        QVERIFY(qAbs(outer.height() - screen.height() / 2) <= 1);
        QVERIFY(qAbs(outer.center().x() - screen.center().x()) <= 1);
    }
    if (setting == QLatin1String("limits")) {
        m.resize(QSize(1200, 600));
        QCOMPARE(m.main.frameGeometry().width(), 900);
        QVERIFY(!m.main.isEnabled()); // for a moment
        QTRY_VERIFY(m.main.isEnabled());
    }
    if (setting == QLatin1String("font")) {
        QCOMPARE(m.tools->font().family(), QStringLiteral("DejaVu Serif"));
        QVERIFY(m.childLabel->font().family() != QStringLiteral("DejaVu Serif"));
    }
    if (setting == QLatin1String("gradient")) {
        // Nothing painted behind the area: its own background shows.
        const QImage shot = m.area->viewport()->grab().toImage();
        QCOMPARE(shot.pixelColor(shot.width() - 5, shot.height() - 5).rgb(), m.area->background().color().rgb());
    }
    QCOMPARE(errors, 0);
    VelmoraControl::setTrappedErrorHandler(previous);
}

void tst_MdiParent::pictureBehindTheChildren()
{
    MdiParent m;
    QPixmap red(60, 40);
    red.fill(Qt::red);
    m.main.setProperty("Picture", red);
    QVERIFY(m.show());
    m.sub->setGeometry(30, 0, 100, 100); // over part of the picture
    QCoreApplication::processEvents();
    const QImage shot = m.area->viewport()->grab().toImage();
    QCOMPARE(shot.pixelColor(5, 30).rgb(), QColor(Qt::red).rgb());            // the picture, over the background
    QVERIFY(shot.pixelColor(50, 30).rgb() != QColor(Qt::red).rgb());           // the child window, over the picture
    QCOMPARE(shot.pixelColor(5, 60).rgb(), m.area->background().color().rgb()); // the background beyond it
}

QTEST_MAIN(tst_MdiParent)
#include "tst_mdiparent.moc"
