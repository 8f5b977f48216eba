// What a pass does to the widgets it touches, counted in Qt's own events:
// one repaint and at most one font change per widget, nothing at all when
// the form's size did not change. And what holding the fonts back until the
// placements are done must not change: the sizes handlers see, fonts the
// application changed, widgets whose height follows their font.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>
#include <vector>

namespace {

// Paint and FontChange events per widget, application-wide.
class EventCounter : public QObject {
public:
    EventCounter() { qApp->installEventFilter(this); }
    ~EventCounter() override { qApp->removeEventFilter(this); }
    int paints(QObject *o) const { return m_paints.value(o); }
    int fontChanges(QObject *o) const { return m_fonts.value(o); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_paints[watched];
        else if (event->type() == QEvent::FontChange)
            ++m_fonts[watched];
        return false;
    }

private:
    QHash<QObject *, int> m_paints, m_fonts;
};

// A 400 x 300 form holding one of each common widget, a group box, and a
// chain of frames three deep, each holding the next and a label.
struct Form {
    explicit Form(bool child)
    {
        window.resize(400, 300);
        if (child) {
            auto *box = new QVBoxLayout(&window);
            box->setContentsMargins(0, 0, 0, 0);
            form = new QWidget;
            box->addWidget(form);
        } else {
            form = &window;
        }
        form->resize(400, 300);
        add(new QLabel(QStringLiteral("Label"), form), QRect(10, 10, 80, 20));
        add(new QLineEdit(QStringLiteral("text"), form), QRect(100, 10, 100, 22));
        add(new QPushButton(QStringLiteral("Go"), form), QRect(210, 10, 80, 26));
        add(new QCheckBox(QStringLiteral("On"), form), QRect(300, 10, 80, 20));
        combo = new QComboBox(form);
        combo->addItems({QStringLiteral("one"), QStringLiteral("two")});
        add(combo, QRect(10, 50, 120, 24));
        group = new QGroupBox(QStringLiteral("Group"), form);
        add(group, QRect(10, 90, 180, 100));
        groupLabel = new QLabel(QStringLiteral("In group"), group);
        add(groupLabel, QRect(10, 25, 100, 20));
        QWidget *parent = form;
        QRect frame(200, 90, 190, 200);
        for (int depth = 0; depth < 3; ++depth) {
            auto *f = new QFrame(parent);
            f->setFrameShape(QFrame::Box);
            add(f, frame);
            add(new QLabel(QStringLiteral("Depth %1").arg(depth), f), QRect(4, 4, 60, 16));
            parent = f;
            frame = QRect(10, 24, frame.width() - 20, frame.height() - 34);
        }
        velmora = new VelmoraControl(form);
        velmora->setResizeOnMouseUp(false);
        window.show();
    }

    void add(QWidget *w, const QRect &geometry)
    {
        w->setObjectName(QStringLiteral("w%1").arg(widgets.size()));
        w->setGeometry(geometry);
        widgets.push_back(w);
    }
    bool ready() { return QTest::qWaitFor([this] { return velmora->isFormReady(); }, 2000); }
    void resizeBy(double sx, double sy)
    {
        window.resize(qRound(400 * sx), qRound(300 * sy));
        QCoreApplication::sendPostedEvents(&VelmoraControlPrivate::get(velmora)->driver);
    }
    velmora::ControlFlags &flagsOf(QWidget *w)
    {
        auto *flags = VelmoraControlPrivate::get(velmora)->engine.store().flags(w->objectName().toStdString());
        Q_ASSERT(flags);
        return *flags;
    }

    QWidget window;
    QWidget *form = nullptr;
    QComboBox *combo = nullptr;
    QGroupBox *group = nullptr;
    QLabel *groupLabel = nullptr;
    VelmoraControl *velmora = nullptr;
    std::vector<QWidget *> widgets;
};

} // namespace

class tst_PassEvents : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onePaintAndFontChangePerWidget_data();
    void onePaintAndFontChangePerWidget();
    void unchangedSizeRepaintsNothing_data();
    void unchangedSizeRepaintsNothing();
    void handlersSeeTheScaledFonts();
    void fontsTheApplicationChangedAreReset_data();
    void fontsTheApplicationChangedAreReset();
    void comboBoxReachesAnyHeight_data();
    void comboBoxReachesAnyHeight();
    void frozenFormStaysFrozen();
};

void tst_PassEvents::onePaintAndFontChangePerWidget_data()
{
    QTest::addColumn<bool>("child");
    QTest::addColumn<double>("scale");
    // The first pass meets fonts every widget inherits from its container;
    // the second, fonts each widget holds itself.
    QTest::newRow("top-level form, growing") << false << 1.5;
    QTest::newRow("top-level form, shrinking") << false << 0.7;
    QTest::newRow("child form, growing") << true << 1.5;
    QTest::newRow("child form, shrinking") << true << 0.7;
}

void tst_PassEvents::onePaintAndFontChangePerWidget()
{
    QFETCH(bool, child);
    QFETCH(double, scale);
    Form f(child);
    QVERIFY(f.ready());
    QCoreApplication::processEvents();
    for (const double s : {scale, 1.0 / scale + 0.1}) {
        EventCounter counter;
        f.resizeBy(s, s);
        QCoreApplication::processEvents();
        for (QWidget *w : f.widgets) {
            QVERIFY2(counter.paints(w) == 1,
                     qPrintable(QStringLiteral("%1 (%2) painted %3 times at %4x")
                                    .arg(w->objectName(), w->metaObject()->className())
                                    .arg(counter.paints(w))
                                    .arg(s)));
            QVERIFY2(counter.fontChanges(w) <= 1,
                     qPrintable(QStringLiteral("%1 (%2) changed font %3 times at %4x")
                                    .arg(w->objectName(), w->metaObject()->className())
                                    .arg(counter.fontChanges(w))
                                    .arg(s)));
        }
    }
}

void tst_PassEvents::unchangedSizeRepaintsNothing_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("scaledFirst");
    QTest::newRow("pass at the design size") << QStringLiteral("pass") << false;
    QTest::newRow("pass at the size of the last pass") << QStringLiteral("pass") << true;
    QTest::newRow("Reset at the design size") << QStringLiteral("reset") << false;
    QTest::newRow("Reset after scaling") << QStringLiteral("reset") << true;
}

void tst_PassEvents::unchangedSizeRepaintsNothing()
{
    QFETCH(QString, how);
    QFETCH(bool, scaledFirst);
    Form f(false);
    QVERIFY(f.ready());
    if (scaledFirst)
        f.resizeBy(1.3, 1.2);
    QCoreApplication::processEvents();
    EventCounter counter;
    if (how == QLatin1String("reset"))
        f.velmora->Reset();
    else
        VelmoraControlPrivate::get(f.velmora)->driver.runPass();
    QCoreApplication::processEvents();
    for (QWidget *w : f.widgets) {
        QCOMPARE(counter.paints(w), 0);
        QCOMPARE(counter.fontChanges(w), 0);
    }
    QCOMPARE(counter.paints(&f.window), 0);
}

void tst_PassEvents::handlersSeeTheScaledFonts()
{
    Form f(false);
    QVERIFY(f.ready());
    const qreal design = f.groupLabel->font().pointSizeF();
    qreal seen = 0;
    connect(f.velmora, &VelmoraControl::ResizeDone, this, [&] { seen = f.groupLabel->font().pointSizeF(); });
    f.resizeBy(2.0, 2.0);
    QVERIFY(qAbs(seen - design * 2.0) < 0.05);
}

void tst_PassEvents::fontsTheApplicationChangedAreReset_data()
{
    QTest::addColumn<bool>("inGroup");
    QTest::addColumn<bool>("dontScaleFont");
    QTest::addColumn<qreal>("applicationSize"); // 0: the application leaves it

    QTest::newRow("locked label, enlarged by the application") << false << true << 20.0;
    QTest::newRow("scaled label, enlarged by the application") << false << false << 20.0;
    // Its size equals the one it inherits when the pass begins: it must
    // still end up holding it, not follow its growing group box.
    QTest::newRow("locked label in a scaled group box") << true << true << 0.0;
    QTest::newRow("scaled label in a scaled group box") << true << false << 0.0;
}

void tst_PassEvents::fontsTheApplicationChangedAreReset()
{
    QFETCH(bool, inGroup);
    QFETCH(bool, dontScaleFont);
    QFETCH(qreal, applicationSize);
    Form f(false);
    QVERIFY(f.ready());
    QWidget *label = inGroup ? static_cast<QWidget *>(f.groupLabel) : f.widgets.front();
    const qreal design = label->font().pointSizeF();
    f.flagsOf(label).DontScaleFont = dontScaleFont;
    for (const double scale : {1.5, 2.0}) {
        f.resizeBy(scale, scale);
        QCoreApplication::processEvents();
        const qreal expected = design * (dontScaleFont ? 1.0 : scale);
        QVERIFY2(qAbs(label->font().pointSizeF() - expected) < 0.05,
                 qPrintable(QStringLiteral("%1 pt at %2x, expected %3 pt")
                                .arg(label->font().pointSizeF())
                                .arg(scale)
                                .arg(expected)));
        if (applicationSize > 0) {
            QFont font = label->font();
            font.setPointSizeF(applicationSize);
            label->setFont(font);
        }
    }
}

void tst_PassEvents::comboBoxReachesAnyHeight_data()
{
    QTest::addColumn<double>("sx");
    QTest::addColumn<double>("sy");
    QTest::addColumn<bool>("dontScaleFont");
    QTest::newRow("a quarter of its height") << 1.0 << 0.25 << false;
    QTest::newRow("four times its height") << 1.0 << 4.0 << false;
    QTest::newRow("four times its height, font locked") << 1.0 << 4.0 << true;
    QTest::newRow("a tenth of its height, twice as wide") << 2.0 << 0.1 << false;
}

void tst_PassEvents::comboBoxReachesAnyHeight()
{
    QFETCH(double, sx);
    QFETCH(double, sy);
    QFETCH(bool, dontScaleFont);
    Form f(false);
    QVERIFY(f.ready());
    f.flagsOf(f.combo).DontScaleFont = dontScaleFont;
    f.resizeBy(sx, sy);
    QCoreApplication::processEvents();
    QVERIFY2(qAbs(f.combo->height() - 24 * sy) <= 1.0,
             qPrintable(QStringLiteral("height %1, expected %2").arg(f.combo->height()).arg(24 * sy)));
    QVERIFY(qAbs(f.combo->width() - 120 * sx) <= 1.0);
}

void tst_PassEvents::frozenFormStaysFrozen()
{
    Form f(false);
    QVERIFY(f.ready());
    f.form->setUpdatesEnabled(false);
    f.resizeBy(1.5, 1.5);
    QVERIFY(!f.form->updatesEnabled());
    QCOMPARE(f.widgets.front()->geometry(), QRect(15, 15, 120, 30));
}

QTEST_MAIN(tst_PassEvents)
#include "tst_passevents.moc"
