// A seeded storm on the sample form: random sizes (none, tiny, beyond 32767
// twips), minimise and restore, widgets added, renamed and deleted, Reset,
// the component deleted and made anew. Nothing may crash (the sanitizer
// build runs this too), the widgets nobody touched must come back to their
// design layout, and no record may outlive its widget.
// VELMORA_STORM_SEED and VELMORA_STORM_STEPS replay or lengthen a storm.
#include "PreviewSession.h"
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "qt/QtControl.h"
#include "qt/QtForm.h"

#include <QLabel>
#include <QRandomGenerator>
#include <QtTest>

namespace {

struct Design {
    QPointer<QWidget> widget;
    QRect geometry;
    qreal pointSize;
};

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace

class tst_Storm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sampleFormSurvivesAStorm();
};

void tst_Storm::sampleFormSurvivesAStorm()
{
    const quint32 seed = qEnvironmentVariableIsSet("VELMORA_STORM_SEED")
        ? quint32(qEnvironmentVariableIntValue("VELMORA_STORM_SEED"))
        : 20261123u;
    const int steps = qEnvironmentVariableIsSet("VELMORA_STORM_STEPS") ? qEnvironmentVariableIntValue("VELMORA_STORM_STEPS")
                                                                        : 1600;
    const QByteArray where = "storm seed " + QByteArray::number(seed);
    QRandomGenerator rng(seed);

    PreviewSession session;
    QString error;
    QVERIFY2(session.load(QString(), &error), qPrintable(error));
    QWidget *root = session.root();
    QWidget *form = session.form();
    session.control()->setResizeOnMouseUp(false);
    session.show();
    QTRY_VERIFY(session.control()->isFormReady());
    const QSize designSize = form->size();
    const QSize chrome = root->size() - form->size();

    // What the untouched controls look like at design size.
    QList<Design> design;
    for (const auto &c : VelmoraControlPrivate::get(session.control())->driver.hostForm()->controls())
        if (auto *ctl = dynamic_cast<velmora::qt::QtControl *>(c.get()))
            if (QWidget *w = ctl->widget(); w && !qobject_cast<VelmoraControl *>(w))
                design.append({w, w->geometry(), w->font().pointSizeF()});

    QPointer<VelmoraControl> velmora = session.control();
    QList<QPointer<QWidget>> added;
    const auto toDesign = [&] {
        root->setWindowState(Qt::WindowNoState);
        root->resize(designSize + chrome);
        settle();
        // The main window's toolbar scales too: what surrounds the form is
        // not the same at every size.
        session.resizeForm(designSize);
        settle();
    };
    for (int step = 0; step < steps; ++step) {
        const int what = rng.bounded(100);
        if (what < 55) {
            const QSize sizes[] = {{0, 0}, {1, 5000}, {5, 5}, {3000, 2400}, designSize};
            const QSize s = what < 15 ? sizes[rng.bounded(5)] : QSize(rng.bounded(50, 2000), rng.bounded(50, 1500));
            root->resize(s + chrome);
        } else if (what < 62) {
            root->setWindowState(root->windowState() ^ Qt::WindowMinimized);
        } else if (what < 72) {
            auto *label = new QLabel(QStringLiteral("added"), form);
            label->setObjectName(QStringLiteral("added%1").arg(rng.bounded(8)));
            label->setGeometry(rng.bounded(400), rng.bounded(300), 1 + rng.bounded(200), 1 + rng.bounded(40));
            label->show();
            added.append(label);
        } else if (what < 80) {
            if (!added.isEmpty())
                delete added.takeAt(rng.bounded(int(added.size()))).data();
        } else if (what < 86) {
            if (!added.isEmpty())
                if (QWidget *w = added[rng.bounded(int(added.size()))])
                    w->setObjectName(QStringLiteral("renamed%1").arg(rng.bounded(8)));
        } else if (what < 93) {
            // Taken at design size, the design layout stays what it was.
            toDesign();
            velmora->Reset();
        } else {
            toDesign();
            delete velmora.data();
            velmora = new VelmoraControl(form);
            velmora->setResizeOnMouseUp(false);
        }
        settle();
    }

    toDesign();
    QVERIFY2(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000), where.constData());
    root->resize(designSize * 2 + chrome);
    settle();
    toDesign();
    for (const Design &d : design) {
        QVERIFY2(d.widget, where.constData());
        const QRect g = d.widget->geometry();
        const bool near = qAbs(g.x() - d.geometry.x()) <= 1 && qAbs(g.y() - d.geometry.y()) <= 1
            && qAbs(g.width() - d.geometry.width()) <= 1 && qAbs(g.height() - d.geometry.height()) <= 1;
        if (!velmora::qt::QtControl::geometryManaged(d.widget))
            QVERIFY2(near, qPrintable(QStringLiteral("%1: %2 is at %3,%4 %5x%6, designed at %7,%8 %9x%10")
                                          .arg(QString::fromLatin1(where), d.widget->objectName())
                                          .arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height())
                                          .arg(d.geometry.x()).arg(d.geometry.y())
                                          .arg(d.geometry.width()).arg(d.geometry.height())));
        QVERIFY2(qAbs(d.widget->font().pointSizeF() - d.pointSize) <= 0.01,
                 qPrintable(QStringLiteral("%1: %2 font %3, designed %4")
                                .arg(QString::fromLatin1(where), d.widget->objectName())
                                .arg(d.widget->font().pointSizeF()).arg(d.pointSize)));
    }

    // One record per control still on the form, and one for the form.
    auto *d = VelmoraControlPrivate::get(velmora);
    std::size_t live = 0;
    for (const auto &c : d->driver.hostForm()->controls())
        live += dynamic_cast<velmora::qt::QtControl *>(c.get()) != nullptr;
    QCOMPARE(d->engine.store().infoCount(), live + 1);
}

QTEST_MAIN(tst_Storm)
#include "tst_storm.moc"
