// What only a real window system shows: a window kept above others, a real
// minimise, a window frame around a saved position, a wipe's window shape.
// Run on an X server with a window manager (scripts/with-xvfb.sh); skipped
// anywhere else.
#include "control/VelmoraControl.h"

#include <QApplication>
#include <QLabel>
#include <QProcess>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QWindow>
#include <QtTest>

namespace {

struct Form {
    QWidget widget;
    QLabel *label = nullptr;
    VelmoraControl *velmora = nullptr;

    explicit Form(const QColor &colour, const std::function<void(VelmoraControl *)> &configure = {})
    {
        widget.resize(300, 200);
        widget.setAutoFillBackground(true);
        QPalette p = widget.palette();
        p.setColor(QPalette::Window, colour);
        widget.setPalette(p);
        label = new QLabel(QStringLiteral("label"), &widget);
        label->setGeometry(30, 20, 120, 30);
        velmora = new VelmoraControl(&widget);
        velmora->setResizeOnMouseUp(false);
        if (configure)
            configure(velmora);
    }
    bool show(const QPoint &at)
    {
        widget.move(at);
        widget.show();
        return QTest::qWaitForWindowExposed(&widget) && QTest::qWaitFor([&] { return velmora->isFormReady(); }, 8000);
    }
};

// What the screen shows at each point, read once by another X client (this
// program started again to sample): the application meanwhile goes on with
// its event loop as it would, and nothing here repaints it.
QList<QColor> sampledOnce(const QList<QPoint> &points)
{
    QStringList args{QStringLiteral("--sample")};
    for (const QPoint &p : points)
        args << QStringLiteral("%1,%2").arg(p.x()).arg(p.y());
    QProcess sampler;
    sampler.start(QCoreApplication::applicationFilePath(), args);
    if (!QTest::qWaitFor([&] { return sampler.state() == QProcess::NotRunning; }, 10000))
        return {};
    QList<QColor> colours;
    for (const QByteArray &name : sampler.readAllStandardOutput().split(' '))
        if (!name.trimmed().isEmpty())
            colours << QColor(QString::fromLatin1(name.trimmed()));
    return colours;
}

int sample(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    QTextStream out(stdout);
    for (int i = 2; i < argc; ++i) {
        const QStringList xy = QString::fromLatin1(argv[i]).split(u',');
        out << screen.pixelColor(xy.value(0).toInt(), xy.value(1).toInt()).name() << ' ';
    }
    return 0;
}

QString listed(const QList<QColor> &colours)
{
    QStringList names;
    for (const QColor &c : colours)
        names << c.name();
    return names.join(u' ');
}

QString frameOf(const QWidget &w)
{
    const QRect g = w.frameGeometry();
    return QStringLiteral("%1,%2 %3x%4").arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height());
}

// What the screen shows at a point, as the window system composed it.
QColor onScreen(const QPoint &p)
{
    QCoreApplication::processEvents();
    return QGuiApplication::primaryScreen()->grabWindow(0, p.x(), p.y(), 1, 1).toImage().pixelColor(0, 0);
}

bool settle(const std::function<bool()> &done)
{
    return QTest::qWaitFor(done, 8000);
}

} // namespace

class tst_WindowSystem : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void stayOnTop_data();
    void stayOnTop();
    void realMinimise();
    void savedPosition_data();
    void savedPosition();
    void centredWithItsFrame();
    void openingWipeShapesTheWindow();
    void wipedWindowsArePainted_data();
    void wipedWindowsArePainted();
    void printSizeOfAMaximisedForm();

private:
    QTemporaryDir m_settings;
};

void tst_WindowSystem::initTestCase()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        QSKIP("needs an X server with a window manager: run it through scripts/with-xvfb.sh");
    QVERIFY(m_settings.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
}

void tst_WindowSystem::stayOnTop_data()
{
    QTest::addColumn<bool>("onTop");
    QTest::newRow("on top: stays over the window raised after it") << true;
    QTest::newRow("not on top: goes under it") << false;
}

void tst_WindowSystem::stayOnTop()
{
    QFETCH(bool, onTop);
    Form top(Qt::red, [](VelmoraControl *v) { v->setStayOnTop(true); });
    QVERIFY(top.show(QPoint(100, 100)));
    const WId id = top.widget.winId();
    if (!onTop)
        top.velmora->setStayOnTop(false); // cleared on a shown window
    Form other(Qt::blue);
    QVERIFY(other.show(QPoint(200, 150)));
    other.widget.raise();
    other.widget.activateWindow();
    const QPoint overlap = other.widget.mapToGlobal(QPoint(50, 50));
    const QColor expected = onTop ? QColor(Qt::red) : QColor(Qt::blue);
    QVERIFY2(settle([&] { return onScreen(overlap) == expected; }), qPrintable(onScreen(overlap).name()));
    // The same window all along: never hidden or made anew.
    QCOMPARE(top.widget.winId(), id);
    QVERIFY(top.widget.isVisible());
}

void tst_WindowSystem::realMinimise()
{
    Form f(Qt::gray);
    QVERIFY(f.show(QPoint(80, 80)));
    // No pass runs for a window nobody sees.
    int passesWhileMinimised = 0;
    QObject::connect(f.velmora, &VelmoraControl::ResizeStarted, &f.widget, [&] {
        if (f.widget.isMinimized())
            ++passesWhileMinimised;
    });
    f.widget.showMinimized();
    QVERIFY(settle([&] { return f.widget.isMinimized(); }));
    // Sized while minimised (a window manager may restore a window an
    // application resizes, openbox does once it has iconified it; either
    // way no pass runs while it is minimised)...
    f.widget.resize(600, 400);
    QTest::qWait(200);
    QCOMPARE(passesWhileMinimised, 0);
    // ...and restored, the controls take the size it has.
    f.widget.showNormal();
    QVERIFY(settle([&] { return !f.widget.isMinimized(); }));
    QVERIFY2(settle([&] { return f.label->geometry() == QRect(60, 40, 240, 60); }),
             qPrintable(QStringLiteral("%1 %2").arg(f.label->width()).arg(f.label->height())));
    QCOMPARE(passesWhileMinimised, 0);
}

void tst_WindowSystem::savedPosition_data()
{
    QTest::addColumn<bool>("maximised");
    QTest::newRow("normal: reopens where it was left") << false;
    QTest::newRow("maximised: reopens maximised, restores to where it was") << true;
}

void tst_WindowSystem::savedPosition()
{
    QFETCH(bool, maximised);
    QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Velmora"), QStringLiteral("Velmora")).clear();
    const auto saving = [](VelmoraControl *v) {
        v->setSaveWindowState(true);
        v->setWindowName(QStringLiteral("Real window"));
    };
    QRect frame;
    {
        Form first(Qt::gray, saving);
        QVERIFY(first.show(QPoint(150, 120)));
        first.widget.resize(420, 260);
        // Framed, at its new size.
        QVERIFY(settle([&] {
            return first.widget.width() == 420 && first.widget.frameGeometry().width() > 420
                && first.widget.frameGeometry().height() > 260;
        }));
        frame = first.widget.frameGeometry();
        if (maximised) {
            first.widget.showMaximized();
            QVERIFY(settle([&] { return first.widget.isMaximized(); }));
        }
        QVERIFY(first.widget.close());
    }
    // Reopened by the application's next run (a process that has seen no
    // window frame yet), restored, closed again: the frame, decoration
    // included, where and as large as it was left, however often.
    for (int cycle = 0; cycle < 3; ++cycle) {
        QProcess next;
        next.start(QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--reopen"), m_settings.path(), maximised ? QStringLiteral("1") : QStringLiteral("0")});
        QVERIFY(QTest::qWaitFor([&] { return next.state() == QProcess::NotRunning; }, 30000));
        const QString seen = QString::fromLatin1(next.readAllStandardOutput()).trimmed();
        const QString was = QStringLiteral("%1,%2 %3x%4").arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height());
        QVERIFY2(seen == was, qPrintable(QStringLiteral("cycle %1: %2, was %3 (%4)").arg(cycle).arg(seen, was,
                                         QString::fromLocal8Bit(next.readAllStandardError()).right(300))));
    }
}

// The next run of the application: the saved window shown again (restored
// if it reopens maximised), its frame written out, closed as it was.
int reopen(int argc, char **argv)
{
    QApplication app(argc, argv);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromLocal8Bit(argv[2]));
    const bool maximised = qstrcmp(argv[3], "1") == 0;
    Form again(Qt::gray, [](VelmoraControl *v) {
        v->setSaveWindowState(true);
        v->setWindowName(QStringLiteral("Real window"));
    });
    if (!again.show(QPoint(10, 10)))
        return 1;
    if (maximised) {
        if (!settle([&] { return again.widget.isMaximized(); }))
            return 2;
        QTest::qWait(300);
        again.widget.showNormal();
        if (!settle([&] { return !again.widget.isMaximized(); }))
            return 3;
    }
    // Settled: framed, and the same for a while.
    QRect frame;
    settle([&] {
        const QRect now = again.widget.frameGeometry();
        const bool same = now == frame && now != again.widget.geometry();
        frame = now;
        QTest::qWait(400);
        return same;
    });
    QTextStream(stdout) << frameOf(again.widget);
    if (maximised) {
        again.widget.showMaximized();
        settle([&] { return again.widget.isMaximized(); });
        QTest::qWait(300);
    }
    again.widget.close();
    return 0;
}

void tst_WindowSystem::centredWithItsFrame()
{
    Form f(Qt::gray, [](VelmoraControl *v) {
        v->setScaleX(50);
        v->setCenterX(true);
        v->setCenterY(true);
    });
    QVERIFY(f.show(QPoint(5, 5)));
    const QRect screen = f.widget.screen()->geometry();
    // The frame, not the inside, is half the screen wide and centred.
    const auto placed = [&] {
        const QRect frame = f.widget.frameGeometry();
        return frame != f.widget.geometry() && qAbs(frame.width() - screen.width() / 2) <= 1
            && qAbs(frame.center().x() - screen.center().x()) <= 1 && qAbs(frame.center().y() - screen.center().y()) <= 1;
    };
    QVERIFY2(settle(placed), qPrintable(QStringLiteral("%1,%2 %3x%4").arg(f.widget.frameGeometry().x())
                                            .arg(f.widget.frameGeometry().y()).arg(f.widget.frameGeometry().width())
                                            .arg(f.widget.frameGeometry().height())));
}

void tst_WindowSystem::openingWipeShapesTheWindow()
{
    // Behind the window: the desktop's colour, to tell the window from it.
    const QPoint at(300, 300);
    const QColor desktop = onScreen(at + QPoint(40, 100));
    Form f(Qt::green, [](VelmoraControl *v) {
        v->setFormOpen(VelmoraControl::FoWipeRight);
        v->setFormOpenTime(1.5);
    });
    QTimer probe;
    bool seenHalf = false;
    // Part way through the wipe the window's left part shows and its right
    // part does not.
    QObject::connect(&probe, &QTimer::timeout, [&] {
        if (seenHalf || !f.widget.windowHandle() || !f.widget.windowHandle()->isExposed())
            return;
        const QPoint left = f.widget.mapToGlobal(QPoint(20, 100)), right = f.widget.mapToGlobal(QPoint(280, 100));
        seenHalf = onScreen(left) == QColor(Qt::green) && onScreen(right) != QColor(Qt::green);
    });
    probe.start(50);
    f.widget.move(at);
    f.widget.show();
    QVERIFY(QTest::qWaitFor([&] { return f.velmora->isFormReady(); }, 5000));
    QVERIFY(seenHalf);
    QVERIFY(f.widget.mask().isEmpty());
    QVERIFY2(settle([&] { return onScreen(f.widget.mapToGlobal(QPoint(280, 100))) == QColor(Qt::green); }),
             qPrintable(desktop.name()));
}

void tst_WindowSystem::wipedWindowsArePainted_data()
{
    QTest::addColumn<int>("open");
    QTest::addColumn<bool>("reshown"); // closed with a wipe and shown again
    QTest::newRow("wiped in from the right") << int(VelmoraControl::FoWipeLeft) << false;
    QTest::newRow("wiped in from the left") << int(VelmoraControl::FoWipeRight) << false;
    QTest::newRow("wiped in from the top") << int(VelmoraControl::FoWipeDown) << false;
    QTest::newRow("unfolded") << int(VelmoraControl::FoFold) << false;
    QTest::newRow("reshown after a closing wipe") << int(VelmoraControl::FoWipeRight) << true;
    QTest::newRow("reshown after a closing wipe, no opening wipe") << int(VelmoraControl::FoNone) << true;
}

void tst_WindowSystem::wipedWindowsArePainted()
{
    // Once the wipe is over the window shows its colour everywhere, seen
    // by another client a second later, not black where the wipe hid it.
    QFETCH(int, open);
    QFETCH(bool, reshown);
    Form f(Qt::green, [&](VelmoraControl *v) {
        v->setFormOpen(VelmoraControl::FormOpenEffects(open));
        v->setFormOpenTime(0.5);
        v->setFormClose(VelmoraControl::FcWipeLeft);
        v->setFormCloseTime(0.3);
    });
    QVERIFY(f.show(QPoint(300, 200)));
    if (reshown) {
        QTest::qWait(300);
        QVERIFY(f.widget.close());
        QTest::qWait(300);
        f.widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.widget));
        QVERIFY(settle([&] { return f.velmora->isFormReady() && f.widget.mask().isEmpty(); }));
    }
    QTest::qWait(1000);
    const QList<QPoint> points{f.widget.mapToGlobal(QPoint(20, 100)), f.widget.mapToGlobal(QPoint(150, 100)),
                               f.widget.mapToGlobal(QPoint(280, 180))};
    const QList<QColor> seen = sampledOnce(points);
    QCOMPARE(listed(seen), listed({QColor(Qt::green), QColor(Qt::green), QColor(Qt::green)}));
}

void tst_WindowSystem::printSizeOfAMaximisedForm()
{
    // Printed while maximised, it comes back maximised, and restoring it
    // gives the normal rectangle it had before.
    Form f(Qt::gray);
    f.widget.resize(400, 300);
    QVERIFY(f.show(QPoint(120, 90)));
    QVERIFY(settle([&] { return f.widget.frameGeometry() != f.widget.geometry(); }));
    QTest::qWait(200);
    const QRect normal = f.widget.frameGeometry();
    f.widget.showMaximized();
    QVERIFY(settle([&] { return f.widget.isMaximized(); }));
    QTest::qWait(200);
    f.velmora->PrintSize(true, 640, 480, 3);
    QTest::qWait(500);
    f.velmora->PrintSize(false);
    QVERIFY(settle([&] { return f.widget.isMaximized(); }));
    QTest::qWait(300);
    f.widget.showNormal();
    QVERIFY(settle([&] { return !f.widget.isMaximized(); }));
    QVERIFY2(settle([&] { return f.widget.frameGeometry() == normal; }),
             qPrintable(frameOf(f.widget) + QStringLiteral(", was %1x%2").arg(normal.width()).arg(normal.height())));
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--sample") == 0)
        return sample(argc, argv);
    if (argc > 3 && qstrcmp(argv[1], "--reopen") == 0)
        return reopen(argc, argv);
    QApplication app(argc, argv);
    tst_WindowSystem test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_windowsystem.moc"
