// What applications do from the component's signals and from the events a
// pass lets run: delete the component or its form, reset, resize again. The
// pass must end safely and, while the form lives, leave it working. Run
// under the sanitizer build, these catch any use of a dead record or object.
#include "control/VelmoraControl.h"

#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

namespace {

enum class When { ResizeStarted, ResizeDone, DuringPass };
enum class Action { DeleteControl, DeleteForm, ResetAndResize, ResizeAgain };

const QRect TargetDesign(40, 30, 100, 30);

struct Rig {
    QPointer<QWidget> form;
    QPointer<VelmoraControl> velmora;
    QPointer<QPushButton> target;
};

// A form whose pass lets events run: a custom widget with toolbar-like
// properties makes the pass fit its height, processing events as it goes.
Rig makeRig()
{
    Rig r;
    r.form = new QWidget;
    r.form->resize(400, 300);
    r.target = new QPushButton(QStringLiteral("Target"), r.form);
    r.target->setObjectName(QStringLiteral("target"));
    r.target->setGeometry(TargetDesign);
    auto *bar = new QWidget(r.form);
    bar->setObjectName(QStringLiteral("bar"));
    bar->setGeometry(10, 200, 200, 30);
    bar->setProperty("Buttons", 0);
    bar->setProperty("ButtonWidth", 10.0);
    bar->setProperty("ButtonHeight", 10.0);
    r.velmora = new VelmoraControl(r.form);
    r.velmora->setResizeOnMouseUp(false);
    r.velmora->setScaleGraphics(false);
    r.form->show();
    (void)QTest::qWaitFor([&] { return r.velmora->isFormReady(); }, 2000);
    return r;
}

} // namespace

Q_DECLARE_METATYPE(When)
Q_DECLARE_METATYPE(Action)

class tst_Lifetime : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void passEndsSafely_data();
    void passEndsSafely();
};

void tst_Lifetime::passEndsSafely_data()
{
    QTest::addColumn<When>("when");
    QTest::addColumn<Action>("action");
    const std::pair<const char *, When> whens[] = {{"in ResizeStarted", When::ResizeStarted},
                                                   {"in ResizeDone", When::ResizeDone},
                                                   {"in events the pass runs", When::DuringPass}};
    const std::pair<const char *, Action> actions[] = {{"delete the control", Action::DeleteControl},
                                                       {"delete the form", Action::DeleteForm},
                                                       {"Reset and resize", Action::ResetAndResize},
                                                       {"resize again", Action::ResizeAgain}};
    for (const auto &w : whens)
        for (const auto &a : actions)
            QTest::addRow("%s: %s", w.first, a.first) << w.second << a.second;
}

void tst_Lifetime::passEndsSafely()
{
    QFETCH(When, when);
    QFETCH(Action, action);
    Rig r = makeRig();
    QVERIFY(r.velmora && r.velmora->isFormReady());

    int fired = 0;
    const auto act = [&] {
        if (fired++)
            return;
        switch (action) {
        case Action::DeleteControl:
            delete r.velmora.data();
            break;
        case Action::DeleteForm:
            delete r.form.data();
            break;
        case Action::ResetAndResize:
            r.velmora->Reset();
            r.form->resize(700, 500);
            break;
        case Action::ResizeAgain:
            r.form->resize(700, 500);
            break;
        }
    };
    switch (when) {
    case When::ResizeStarted:
        connect(r.velmora, &VelmoraControl::ResizeStarted, r.form, act);
        break;
    case When::ResizeDone:
        connect(r.velmora, &VelmoraControl::ResizeDone, r.form, act);
        break;
    case When::DuringPass:
        QTimer::singleShot(0, r.form, act);
        break;
    }
    r.form->resize(800, 600);
    QCoreApplication::processEvents();
    QVERIFY(fired > 0);

    if (!r.form)
        return;
    // Still a working form, scaling as long as its component lives.
    const bool sameDesign = r.velmora && action == Action::ResizeAgain;
    r.form->resize(800, 600);
    QCoreApplication::processEvents();
    if (sameDesign)
        QCOMPARE(r.target->geometry(), QRect(80, 60, 200, 60));
    r.form->resize(400, 300);
    QCoreApplication::processEvents();
    if (sameDesign)
        QCOMPARE(r.target->geometry(), TargetDesign);
    delete r.form.data();
}

QTEST_MAIN(tst_Lifetime)
#include "tst_lifetime.moc"
