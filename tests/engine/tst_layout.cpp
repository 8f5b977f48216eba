// The layout model on its own: control keys, the per-control switches in
// their persistable table form, and the capture of one control.
#include "FakeHost.h"
#include "layout/ControlFlagTable.h"
#include "layout/ControlKey.h"
#include "layout/LayoutCapture.h"

#include <QtTest>

using velmora::ControlFlagTable;
using velmora::Value;

class tst_Layout : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void controlKey_data();
    void controlKey();
    void flagTableKeepsEntriesAcrossResize();
    void flagTableIndexChecks_data();
    void flagTableIndexChecks();
    void flagTableEntryOfKey_data();
    void flagTableEntryOfKey();
    void saveControlFlagsKeepsExisting();
    void captureByKind_data();
    void captureByKind();
};

void tst_Layout::controlKey_data()
{
    QTest::addColumn<QVariant>("index"); // invalid: no Index member
    QTest::addColumn<QString>("key");
    QTest::newRow("plain control") << QVariant() << "Text1";
    QTest::newRow("array element 0") << QVariant(0) << "Text1(0)";
    QTest::newRow("array element 12") << QVariant(12) << "Text1(12)";
    QTest::newRow("negative index is no array") << QVariant(-1) << "Text1";
}

void tst_Layout::controlKey()
{
    QFETCH(QVariant, index);
    QFETCH(QString, key);
    auto c = fake::control("Text1", 0, 0, 10, 10, nullptr);
    if (index.isValid())
        c->props["Index"] = Value(index.toInt());
    QCOMPARE(QString::fromStdString(velmora::controlKey(c.get())), key);
    QCOMPARE(velmora::controlKey(nullptr), std::string());
}

void tst_Layout::flagTableKeepsEntriesAcrossResize()
{
    ControlFlagTable t;
    t.setCount(3);
    t.setControlKey(2, "Text1");
    t.setFlag(ControlFlagTable::DontScaleLeft, 2, true);
    t.setFlag(ControlFlagTable::DontScaleTop, 3, true);
    t.setCount(2);
    QCOMPARE(t.controlKey(2), std::string("Text1"));
    QVERIFY(t.flag(ControlFlagTable::DontScaleLeft, 2));
    t.setCount(4); // entry 3 was dropped; it comes back empty
    QVERIFY(!t.flag(ControlFlagTable::DontScaleTop, 3));
    QCOMPARE(t.controlKey(4), std::string());

    velmora::ControlFlags f;
    t.applyTo(2, f);
    QVERIFY(f.DontScaleLeft);
    QVERIFY(!f.DontScaleTop);
}

void tst_Layout::flagTableIndexChecks_data()
{
    QTest::addColumn<int>("count"); // -1: never sized
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("valid");
    QTest::newRow("never sized: entry 0 exists") << -1 << 0 << true;
    QTest::newRow("never sized: entry 1 does not") << -1 << 1 << false;
    QTest::newRow("index 0 exists") << 3 << 0 << true;
    QTest::newRow("last entry") << 3 << 3 << true;
    QTest::newRow("beyond the count") << 3 << 5 << false;
    QTest::newRow("negative") << 3 << -1 << false;
}

void tst_Layout::flagTableIndexChecks()
{
    QFETCH(int, count);
    QFETCH(int, index);
    QFETCH(bool, valid);
    ControlFlagTable t;
    if (count >= 0)
        t.setCount(count);
    bool threw = false;
    try {
        t.flag(ControlFlagTable::DontScaleTop, index);
    } catch (const std::out_of_range &) {
        threw = true;
    }
    QCOMPARE(threw, !valid);
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, t.setCount(-2));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, t.setCount(ControlFlagTable::MaxCount + 1));
}

void tst_Layout::flagTableEntryOfKey_data()
{
    // Operations on a table of three entries keyed a, b, a; then the entry
    // that speaks for each of the keys a, b, c.
    QTest::addColumn<QStringList>("ops");
    QTest::addColumn<QList<int>>("entries");
    QTest::newRow("the later of two entries wins") << QStringList() << QList<int>{3, 2, 0};
    QTest::newRow("re-keyed: the old key falls back") << QStringList{"key 3 c"} << QList<int>{1, 2, 3};
    QTest::newRow("blanked") << QStringList{"key 2 "} << QList<int>{3, 0, 0};
    QTest::newRow("count shrinks past an entry") << QStringList{"count 1"} << QList<int>{1, 0, 0};
    QTest::newRow("count 0 drops every key") << QStringList{"count 0"} << QList<int>{0, 0, 0};
    QTest::newRow("grown again: no stale key") << QStringList{"count 1", "count 3"} << QList<int>{1, 0, 0};
    QTest::newRow("entry 0 speaks for nobody") << QStringList{"key 0 c"} << QList<int>{3, 2, 0};
}

void tst_Layout::flagTableEntryOfKey()
{
    QFETCH(QStringList, ops);
    QFETCH(QList<int>, entries);
    ControlFlagTable t;
    t.setCount(3);
    t.setControlKey(1, "a");
    t.setControlKey(2, "b");
    t.setControlKey(3, "a");
    for (const QString &op : ops) {
        const QStringList w = op.split(QLatin1Char(' '));
        if (w[0] == QLatin1String("count"))
            t.setCount(w[1].toInt());
        else
            t.setControlKey(w[1].toInt(), w.value(2).toStdString());
    }
    QList<int> got;
    for (const char *key : {"a", "b", "c"})
        got << t.entryOf(key);
    QCOMPARE(got, entries);
    QCOMPARE(t.entryOf(""), 0);
}

void tst_Layout::saveControlFlagsKeepsExisting()
{
    velmora::LayoutStore store;
    auto c = fake::control("Text1", 0, 0, 10, 10, nullptr);
    velmora::saveControlFlags(store, c.get());
    store.flags("Text1")->DontScaleFont = true;
    velmora::saveControlFlags(store, c.get());
    velmora::saveControlFlags(store, std::string("Text1"));
    QCOMPARE(store.flagsCount(), std::size_t(1));
    QVERIFY(store.flags("Text1")->DontScaleFont);
}

void tst_Layout::captureByKind_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("code");
    QTest::addColumn<float>("left"); // recorded Left
    QTest::addColumn<float>("formWidth");
    QTest::newRow("on the form") << "form" << int(velmora::SctOrdinary) << 100.f << 5000.f;
    QTest::newRow("in a frame") << "frame" << int(velmora::SctOrdinary) << 100.f << 3000.f;
    QTest::newRow("on a tab page") << "tab" << int(velmora::SctOnTabPage) << 100.f << 3000.f;
    QTest::newRow("line: end points only") << "line" << int(velmora::SctLine) << 0.f << 5000.f;
}

void tst_Layout::captureByKind()
{
    QFETCH(QString, kind);
    QFETCH(int, code);
    QFETCH(float, left);
    QFETCH(float, formWidth);
    auto form = fake::form(5000, 4000);
    auto frame = fake::control("Frame1", 0, 0, 3000, 2000, form);
    if (kind == "tab")
        frame->type = "SSTab";
    const velmora::HostObjectPtr container = kind == "frame" || kind == "tab" ? frame : form;
    auto c = kind == "line" ? fake::line("Ctl", 10, 20, 30, 40, container)
                            : fake::control("Ctl", 100, 200, 300, 400, container);
    c->props["BorderWidth"] = Value(3.f);
    velmora::LayoutStore store;
    velmora::saveControlInfo(store, *c, 5000, 4000);

    const auto *rec = store.info("Ctl");
    QVERIFY(rec);
    QCOMPARE(rec->SpecialControlType, code);
    QCOMPARE(rec->Left, left);
    QCOMPARE(rec->LastLeft, left);
    QCOMPARE(rec->FormWidth, formWidth);
    QCOMPARE(rec->BorderWidth, 3.f);
    QVERIFY(rec->ControlIsScaleable);
    QCOMPARE(rec->X2, kind == "line" ? 30.f : 0.f);
}

QTEST_GUILESS_MAIN(tst_Layout)
#include "tst_layout.moc"
