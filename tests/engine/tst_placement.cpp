// Placement of single controls: edge locks, font factor, lines, tab pages,
// re-basing of controls the application moved, and refused writes.
#include "EngineRig.h"
#include "layout/HostAccess.h"

#include <QtTest>

using velmora::Value;

class tst_Placement : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void edgeLocks_data();
    void edgeLocks();
    void fontFactor_data();
    void fontFactor();
    void lineKeepsDirection_data();
    void lineKeepsDirection();
    void hiddenTabPageStaysHidden();
    void movedByApplicationKeepsNewPlace();
    void pageSwitchIsNotAMove();
    void scalesByItsFrame();
    void refusedMoveFallsBackToSingleWrites();
    void zeroDesignSizeRestoresFonts();
    void missingRecordFailsWholeStep();
};

void tst_Placement::edgeLocks_data()
{
    // A control at 1000/2000 (position/extent) on a 10000 container; the
    // form grows to 20000 x 15000, so x scales by 2 and y by 1.5. The far
    // margin is 7000 on both axes.
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<bool>("lockPos");
    QTest::addColumn<bool>("lockExtent");
    QTest::addColumn<bool>("lockFar");
    QTest::addColumn<float>("pos");
    QTest::addColumn<float>("extent");
    const struct {
        const char *name;
        bool pos, ext, far;
        float xp, xe, yp, ye;
    } rows[] = {
        {"free", false, false, false, 2000, 4000, 1500, 3000},
        {"position locked", true, false, false, 1000, 4000, 1000, 3000},
        {"extent locked", false, true, false, 2000, 2000, 1500, 2000},
        {"position and extent locked", true, true, false, 1000, 2000, 1000, 2000},
        {"far edge locked: moves, keeps margin", false, false, true, 9000, 4000, 5000, 3000},
        {"extent and far edge locked", false, true, true, 11000, 2000, 6000, 2000},
        {"position and far edge locked: stretches", true, false, true, 1000, 12000, 1000, 7000},
        {"all locked: stretches", true, true, true, 1000, 12000, 1000, 7000},
    };
    for (const auto &r : rows) {
        QTest::addRow("x: %s", r.name) << false << r.pos << r.ext << r.far << r.xp << r.xe;
        QTest::addRow("y: %s", r.name) << true << r.pos << r.ext << r.far << r.yp << r.ye;
    }
}

void tst_Placement::edgeLocks()
{
    QFETCH(bool, vertical);
    QFETCH(bool, lockPos);
    QFETCH(bool, lockExtent);
    QFETCH(bool, lockFar);
    QFETCH(float, pos);
    QFETCH(float, extent);

    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    auto &flags = *rig.engine.store().flags("Text1");
    (vertical ? flags.DontScaleTop : flags.DontScaleLeft) = lockPos;
    (vertical ? flags.DontScaleHeight : flags.DontScaleWidth) = lockExtent;
    (vertical ? flags.DontScaleBottom : flags.DontScaleRight) = lockFar;
    rig.resizeTo(20000, 15000);

    QCOMPARE(c->num(vertical ? "Top" : "Left"), pos);
    QCOMPARE(c->num(vertical ? "Height" : "Width"), extent);
}

void tst_Placement::fontFactor_data()
{
    QTest::addColumn<float>("width");
    QTest::addColumn<float>("height");
    QTest::addColumn<bool>("dontScaleFont");
    QTest::addColumn<bool>("scaleFonts");
    QTest::addColumn<float>("size");
    QTest::newRow("wider than tall: height ratio") << 20000.f << 15000.f << false << true << 12.f;
    QTest::newRow("taller than wide: width ratio") << 15000.f << 20000.f << false << true << 12.f;
    QTest::newRow("shrunk") << 6000.f << 8000.f << false << true << 4.8f;
    QTest::newRow("font exempted") << 20000.f << 15000.f << true << true << 8.f;
    QTest::newRow("font scaling off") << 20000.f << 15000.f << false << false << 8.f;
}

void tst_Placement::fontFactor()
{
    QFETCH(float, width);
    QFETCH(float, height);
    QFETCH(bool, dontScaleFont);
    QFETCH(bool, scaleFonts);
    QFETCH(float, size);

    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1500, 3000, 4500, 6000, rig.form, 8));
    rig.setUp();
    rig.engine.store().flags("Text1")->DontScaleFont = dontScaleFont;
    rig.engine.ScaleFonts = scaleFonts;
    // Whatever the application did to the font, the recorded size is the base.
    velmora::setSub(*c, "Font", "Size", 30.0);
    rig.resizeTo(width, height);

    QCOMPARE(*velmora::getSubSingle(*c, "Font", "Size"), size);
}

void tst_Placement::lineKeepsDirection_data()
{
    QTest::addColumn<float>("x1");
    QTest::addColumn<float>("y1");
    QTest::addColumn<float>("x2");
    QTest::addColumn<float>("y2");
    QTest::newRow("left to right, down") << 1000.f << 1000.f << 3000.f << 2000.f;
    QTest::newRow("right to left, down") << 3000.f << 1000.f << 1000.f << 2000.f;
    QTest::newRow("left to right, up") << 1000.f << 2000.f << 3000.f << 1000.f;
    QTest::newRow("right to left, up") << 3000.f << 2000.f << 1000.f << 1000.f;
}

void tst_Placement::lineKeepsDirection()
{
    QFETCH(float, x1);
    QFETCH(float, y1);
    QFETCH(float, x2);
    QFETCH(float, y2);

    EngineRig rig;
    auto l = rig.add(fake::line("Line1", x1, y1, x2, y2, rig.form));
    rig.setUp();
    rig.resizeTo(20000, 15000);

    QCOMPARE(l->num("X1"), x1 * 2);
    QCOMPARE(l->num("X2"), x2 * 2);
    QCOMPARE(l->num("Y1"), y1 * 1.5f);
    QCOMPARE(l->num("Y2"), y2 * 1.5f);
    // Its border follows the smaller of the two ratios.
    QCOMPARE(l->num("BorderWidth"), 3.0f);
}

static fake::ObjectPtr tabControl(const fake::ObjectPtr &form)
{
    auto tabs = fake::control("SSTab1", 0, 0, 8000, 6000, form);
    tabs->type = "SSTab";
    return tabs;
}

void tst_Placement::hiddenTabPageStaysHidden()
{
    EngineRig rig;
    auto tabs = rig.add(tabControl(rig.form));
    auto hidden = rig.add(fake::control("Hidden", 1000 - 75000, 500, 2000, 400, tabs));
    auto shown = rig.add(fake::control("Shown", 1000, 500, 2000, 400, tabs));
    rig.setUp();
    rig.resizeTo(20000, 10000);

    QCOMPARE(rig.engine.store().info("Hidden")->SpecialControlType, int(velmora::SctOnTabPage));
    QCOMPARE(shown->num("Left"), 2000.f);
    QCOMPARE(hidden->num("Left"), 2000.f - 75000);
    QCOMPARE(hidden->num("Width"), 4000.f);
}

void tst_Placement::movedByApplicationKeepsNewPlace()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    rig.resizeTo(20000, 20000);
    // The application moves and widens it at 2x: that becomes its design
    // place, divided back to design scale.
    c->props["Left"] = Value(5000.f);
    c->props["Width"] = Value(6000.f);
    rig.resizeTo(30000, 30000);

    QCOMPARE(c->num("Left"), 7500.f);
    QCOMPARE(c->num("Width"), 9000.f);
    QCOMPARE(c->num("Top"), 3000.f);
}

void tst_Placement::pageSwitchIsNotAMove()
{
    EngineRig rig;
    auto tabs = rig.add(tabControl(rig.form));
    auto c = rig.add(fake::control("OnPage", 1000, 500, 2000, 400, tabs));
    rig.setUp();
    rig.resizeTo(20000, 10000);
    QCOMPARE(c->num("Left"), 2000.f);
    // Its page is hidden: the tab control shifts it, which is no move by the
    // application and must not change its design place.
    c->props["Left"] = Value(c->num("Left") - 75000);
    rig.resizeTo(30000, 10000);

    QCOMPARE(c->num("Left"), 3000.f - 75000);
    QCOMPARE(rig.engine.store().info("OnPage")->Left, 1000.f);
}

void tst_Placement::scalesByItsFrame()
{
    EngineRig rig;
    auto frame = rig.add(fake::control("Frame1", 1000, 1000, 4000, 4000, rig.form));
    frame->type = "Frame";
    auto child = rig.add(fake::control("Inner", 400, 400, 1000, 1000, frame));
    rig.setUp();
    // The frame's width is locked, so only its height follows the form.
    rig.engine.store().flags("Frame1")->DontScaleWidth = true;
    rig.resizeTo(20000, 20000);

    QCOMPARE(frame->num("Width"), 4000.f);
    QCOMPARE(frame->num("Height"), 8000.f);
    QCOMPARE(child->num("Left"), 400.f);
    QCOMPARE(child->num("Width"), 1000.f);
    QCOMPARE(child->num("Top"), 800.f);
    QCOMPARE(child->num("Height"), 2000.f);
}

void tst_Placement::refusedMoveFallsBackToSingleWrites()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Combo1", 1000, 1000, 2000, 300, rig.form));
    rig.setUp();
    c->refuseWrite.insert("Height"); // its height follows its font
    rig.resizeTo(20000, 20000);

    QCOMPARE(c->countOf("call Move"), 1);
    QCOMPARE(c->num("Left"), 2000.f);
    QCOMPARE(c->num("Top"), 2000.f);
    QCOMPARE(c->num("Width"), 4000.f);
    QCOMPARE(c->num("Height"), 300.f);
}

void tst_Placement::zeroDesignSizeRestoresFonts()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Flat", 1000, 1000, 2000, 0, rig.form, 9));
    rig.setUp();
    rig.resizeTo(20000, 20000);

    QCOMPARE(c->num("Width"), 4000.f);
    QCOMPARE(*velmora::getSubSingle(*c, "Font", "Size"), 9.f);
}

void tst_Placement::missingRecordFailsWholeStep()
{
    EngineRig rig;
    auto c = fake::control("Stranger", 1000, 1000, 2000, 2000, rig.form);
    QVERIFY(!rig.engine.AdjustPosition(*c));
    QVERIFY(c->log.empty());
}

QTEST_GUILESS_MAIN(tst_Placement)
#include "tst_placement.moc"
