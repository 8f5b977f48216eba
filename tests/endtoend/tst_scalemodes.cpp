// The form's units are its own business: under twips, pixels and
// millimetres the same form lands on the same pixels, edge locks, Reset and
// a fitted form picture included.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QPushButton>
#include <QtTest>

#include <memory>

namespace {

enum Scenario { Plain, FarEdgeLocks, ResetThenResize, FittedPicture };

void resizeAndSettle(QWidget *w, const QSize &size)
{
    w->resize(size);
    QCoreApplication::sendPostedEvents();
}

} // namespace

class tst_ScaleModes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void samePixelsInEveryUnit_data();
    void samePixelsInEveryUnit();
};

void tst_ScaleModes::samePixelsInEveryUnit_data()
{
    QTest::addColumn<int>("scaleMode");
    QTest::addColumn<int>("scenario");
    QTest::addColumn<QRect>("expected"); // the button after the last resize
    const std::pair<const char *, int> modes[] = {{"twips", 1}, {"pixels", 3}, {"millimetres", 6}};
    for (const auto &m : modes) {
        QTest::addRow("%s: plain", m.first) << m.second << int(Plain) << QRect(200, 300, 600, 600);
        // Width kept, distance to the right edge kept.
        QTest::addRow("%s: far-edge locks", m.first) << m.second << int(FarEdgeLocks) << QRect(1100, 300, 300, 600);
        QTest::addRow("%s: Reset, then resize", m.first) << m.second << int(ResetThenResize)
                                                        << QRect(100, 150, 300, 300);
        QTest::addRow("%s: picture fitted on the first pass", m.first) << m.second << int(FittedPicture)
                                                                       << QRect(100, 200, 300, 400);
    }
}

void tst_ScaleModes::samePixelsInEveryUnit()
{
    QFETCH(int, scaleMode);
    QFETCH(int, scenario);
    QFETCH(QRect, expected);
    auto form = std::make_unique<QWidget>();
    form->setProperty("ScaleMode", scaleMode);
    form->resize(1000, 1000);
    auto *target = new QPushButton(QStringLiteral("Target"), form.get());
    target->setObjectName(QStringLiteral("target"));
    target->setGeometry(100, 200, 300, 400);
    auto *velmora = new VelmoraControl(form.get());
    velmora->setResizeOnMouseUp(false);
    if (scenario == FittedPicture) {
        QPixmap picture(100, 50);
        picture.fill(Qt::darkGreen);
        form->setProperty("Picture", picture);
        velmora->setFormPicture(VelmoraControl::FpFit);
    }
    form->show();
    QTRY_VERIFY(velmora->isFormReady());

    switch (scenario) {
    case Plain:
        resizeAndSettle(form.get(), QSize(2000, 1500));
        break;
    case FarEdgeLocks: {
        auto &flags = VelmoraControlPrivate::get(velmora)->engine.store().ensureFlags("target");
        flags.DontScaleWidth = true;
        flags.DontScaleRight = true;
        resizeAndSettle(form.get(), QSize(2000, 1500));
        break;
    }
    case ResetThenResize:
        resizeAndSettle(form.get(), QSize(2000, 1500));
        velmora->Reset();
        resizeAndSettle(form.get(), QSize(1000, 750));
        break;
    case FittedPicture: {
        // Fitted to the whole form, whatever its units.
        const QImage shot = form->grab().toImage();
        QCOMPARE(shot.pixelColor(990, 990), QColor(Qt::darkGreen));
        break;
    }
    }
    QCOMPARE(target->geometry(), expected);
}

QTEST_MAIN(tst_ScaleModes)
#include "tst_scalemodes.moc"
