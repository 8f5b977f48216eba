// The settings pages on real widgets, driven as a developer drives them.
#include "control/VelmoraControl.h"
#include "pages/FormEffects.h"
#include "pages/General.h"
#include "pages/ReplaceFontsWith.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QListWidget>
#include <QtTest>

using namespace VelmoraPages;

class tst_Pages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void generalFillsOnce();
    void generalApplies_data();
    void generalApplies();
    void durationsWhileTyping_data();
    void durationsWhileTyping();
    void effectsShowAndApply();
    void fontList_data();
    void fontList();
};

void tst_Pages::generalFillsOnce()
{
    VelmoraControl first, second;
    first.setScaleX(40);
    first.setCenterY(true);
    first.setWindowName(QStringLiteral("Main"));
    first.setScaleFonts(false);
    second.setScaleX(70);
    General page;
    QSignalSpy changed(&page, &VelmoraPropertyPage::changedChanged);
    page.selectionChanged({&first});
    QCOMPARE(page.txtScaleX->text(), QStringLiteral("40"));
    QCOMPARE(page.txtWindowName->text(), QStringLiteral("Main"));
    QVERIFY(page.chkCenterY->isChecked());
    QVERIFY(!page.chkScaleFonts->isChecked());
    QVERIFY(page.chkScaleControls->isChecked());
    QCOMPARE(page.chkScaleControls->text(), QStringLiteral("ScaleControls"));
    QVERIFY(!page.isChanged()); // filling is no edit
    QCOMPARE(changed.count(), 0);
    // Another selection leaves the fields as they are.
    page.selectionChanged({&second});
    QCOMPARE(page.txtScaleX->text(), QStringLiteral("40"));
    // A click is an edit.
    QTest::mouseClick(page.chkCenterX, Qt::LeftButton);
    QVERIFY(page.isChanged());
}

void tst_Pages::generalApplies_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("applied");
    QTest::addColumn<QString>("shown"); // the box's text after applying
    QTest::newRow("not a number: 0") << "txtScaleX" << "abc" << "ScaleX" << 0 << "0";
    QTest::newRow("a percentage above 100 is the setting's to clamp") << "txtScaleY" << "150" << "ScaleY" << 100 << "150";
    QTest::newRow("a fraction: halves to even") << "txtMinWidth" << "2500.5" << "MinWidth" << 2500 << "2500.5";
    QTest::newRow("an empty box: 0") << "txtMdiChildHeight" << "" << "MdiChildHeight" << 0 << "0";
    QTest::newRow("the maximum is not checked: not applied") << "txtMaxWidth" << "wide" << "MaxWidth" << 9000 << "wide";
    QTest::newRow("a size") << "txtMaxHeight" << "7200" << "MaxHeight" << 7200 << "7200";
}

void tst_Pages::generalApplies()
{
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, property);
    QFETCH(int, applied);
    QFETCH(QString, shown);
    VelmoraControl v;
    v.setMaxWidth(9000);
    v.setMdiChildHeight(3000);
    General page;
    page.selectionChanged({&v});
    auto *edit = page.findChild<QLineEdit *>(box);
    QVERIFY(edit);
    edit->selectAll();
    QTest::keyClicks(edit, typed);
    if (typed.isEmpty())
        edit->clear();
    QVERIFY(page.isChanged());
    QTest::mouseClick(page.chkGradientFill, Qt::LeftButton);
    page.applyChanges();
    QCOMPARE(v.property(property.toLatin1().constData()).toInt(), applied);
    QCOMPARE(edit->text(), shown);
    QVERIFY(v.GradientFill());
    QVERIFY(!page.isChanged());
}

void tst_Pages::durationsWhileTyping_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("caret");
    QTest::addColumn<double>("applied");
    QTest::newRow("a point: 0.") << "." << "0." << 2 << 0.0;
    QTest::newRow("a point then digits") << ".5" << "0.5" << 3 << 0.5;
    QTest::newRow("12: 10") << "12" << "10" << 2 << 10.0;
    QTest::newRow("-3: 0") << "-3" << "0" << 1 << 0.0;
    QTest::newRow("in range") << "2.5" << "2.5" << 3 << 2.5;
    QTest::newRow("not a number is none") << "a" << "a" << 1 << 0.0;
}

void tst_Pages::durationsWhileTyping()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(int, caret);
    QFETCH(double, applied);
    VelmoraControl v;
    FormEffects page;
    page.selectionChanged({&v});
    QCOMPARE(page.txtFormCloseTime->text(), QStringLiteral("1"));
    page.txtFormCloseTime->clear();
    QTest::keyClicks(page.txtFormCloseTime, typed);
    QCOMPARE(page.txtFormCloseTime->text(), shown);
    QCOMPARE(page.txtFormCloseTime->cursorPosition(), caret);
    page.applyChanges();
    QCOMPARE(v.FormCloseTime(), applied);
}

void tst_Pages::effectsShowAndApply()
{
    VelmoraControl v;
    v.setFormPicture(VelmoraControl::FpCenter);
    v.setFormOpen(VelmoraControl::FoFold);
    FormEffects page;
    page.selectionChanged({&v});
    QCOMPARE(page.cmbFormPicture->currentText(), QStringLiteral("Center in Form"));
    QCOMPARE(page.cmbFormOpen->currentText(), QStringLiteral("Fold"));
    QCOMPARE(page.cmbFormClose->count(), 8);
    QCOMPARE(page.cmbFormClose->itemText(6), QStringLiteral("Wipe Horizontal"));
    QVERIFY(!page.isChanged());
    // Emptied and left: 0.
    page.txtFormOpenTime->setFocus();
    page.txtFormOpenTime->clear();
    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(page.txtFormOpenTime, &out);
    QCOMPARE(page.txtFormOpenTime->text(), QStringLiteral("0"));
    page.cmbFormClose->setCurrentIndex(3);
    page.applyChanges();
    QCOMPARE(v.FormClose(), VelmoraControl::FcWipeUp);
    QCOMPARE(v.FormPicture(), VelmoraControl::FpCenter);
    QCOMPARE(v.FormOpenTime(), 0.0);
}

void tst_Pages::fontList_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("current"); // empty: nothing current
    QTest::newRow("<none> is the first item") << "<none>" << "<none>";
    QTest::newRow("an installed family") << "DejaVu Sans" << "DejaVu Sans";
    QTest::newRow("a family not installed here") << "No Such Face" << "";
}

void tst_Pages::fontList()
{
    QFETCH(QString, stored);
    QFETCH(QString, current);
    if (!QFontDatabase::families().contains(QStringLiteral("DejaVu Sans")))
        QSKIP("fonts-dejavu-core is not installed (scripts/bootstrap.sh installs it)");
    VelmoraControl v;
    v.setReplaceFontsWith(stored);
    ReplaceFontsWith page;
    page.selectionChanged({&v});
    QCOMPARE(page.List1->item(0)->text(), QStringLiteral("<none>"));
    QCOMPARE(page.List1->count(), QFontDatabase::families().size() + 1);
    QCOMPARE(page.List1->currentItem() ? page.List1->currentItem()->text() : QString(), current);
    QVERIFY(!page.isChanged());
    page.applyChanges();
    QCOMPARE(v.ReplaceFontsWith(), current); // what is current is what is stored
    // A click is an edit.
    QTest::mouseClick(page.List1->viewport(), Qt::LeftButton, {},
                      page.List1->visualItemRect(page.List1->item(0)).center());
    QVERIFY(page.isChanged());
    page.applyChanges();
    QCOMPARE(v.ReplaceFontsWith(), QStringLiteral("<none>"));
}

QTEST_MAIN(tst_Pages)
#include "tst_pages.moc"
