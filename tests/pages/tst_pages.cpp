// The settings pages on real widgets, driven as a developer drives them.
#include "control/VelmoraControl.h"
#include "pages/ControlOptionsPage.h"
#include "pages/FormEffects.h"
#include "pages/ScaleControls.h"
#include "pages/VelmoraPropertyDialog.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"
#include "pages/General.h"
#include "pages/ReplaceFontsWith.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QTabWidget>
#include <QFontDatabase>
#include <QLineEdit>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
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
    void controlsListed_data();
    void controlsListed();
    void optionsFollowTheirControl_data();
    void optionsFollowTheirControl();
    void selectAllAndNone();
    void lockRules();
    void lineCaptions();
    void dialog_data();
    void dialog();
};

namespace {

// A form with one of each kind of control, its component at design time.
struct DesignedForm {
    QWidget form;
    VelmoraControl *velmora;
    DesignedForm()
    {
        form.resize(400, 300);
        (new QLabel(QStringLiteral("Name"), &form))->setObjectName(QStringLiteral("lblName"));
        (new QPushButton(QStringLiteral("Go"), &form))->setObjectName(QStringLiteral("cmdGo"));
        auto *line = new VelmoraLine(&form);
        line->setObjectName(QStringLiteral("linRule"));
        (new VelmoraShape(&form))->setObjectName(QStringLiteral("shpBox"));
        (new VelmoraImageList(&form))->setObjectName(QStringLiteral("imlIcons"));
        velmora = new VelmoraControl(&form);
        velmora->setDesignTime(true);
    }
};

QStringList items(const QListWidget *list, bool checkedOnly = false)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        if (!checkedOnly || list->item(i)->checkState() == Qt::Checked)
            out << list->item(i)->text();
    return out;
}

QListWidgetItem *itemNamed(QListWidget *list, const QString &text)
{
    const auto found = list->findItems(text, Qt::MatchExactly);
    return found.value(0);
}

} // namespace

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
    QTest::newRow("a tenth, exactly") << "0.1" << "0.1" << 3 << 0.1;
    QTest::newRow("held to the millisecond") << "2.3456" << "2.3456" << 6 << 2.346;
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
    // So is a choice made with the keyboard.
    QVERIFY(!page.isChanged());
    page.List1->setFocus();
    QTest::keyClick(page.List1, Qt::Key_Down);
    QVERIFY(page.isChanged());
    page.applyChanges();
    QCOMPARE(v.ReplaceFontsWith(), page.List1->item(1)->text());
}

void tst_Pages::controlsListed_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QStringList>("notListed");
    QTest::addColumn<QString>("label");
    QTest::newRow("ScaleBorders: what has a border width")
        << "ScaleBorders" << QStringList{"linRule", "shpBox"} << QStringList{"cmdGo", "imlIcons"}
        << "ScaleBorders = True (Set on General Tab) ";
    QTest::newRow("ScaleGraphics: image lists and pictures")
        << "ScaleGraphics" << QStringList{"imlIcons", "cmdGo", "lblName"} << QStringList{"shpBox", "linRule"}
        << "ScaleGraphics = True (Set on General Tab) ";
    QTest::newRow("ScaleFonts: what has a font") << "ScaleFonts" << QStringList{"lblName", "cmdGo"} << QStringList()
                                                 << "ScaleFonts = False (Set on General Tab) ";
    QTest::newRow("ScaleControls: what has a place, lines too")
        << "ScaleControls" << QStringList{"lblName", "cmdGo", "linRule", "shpBox"} << QStringList()
        << "ScaleControls = True (Set on General Tab) ";
}

void tst_Pages::controlsListed()
{
    QFETCH(QString, page);
    QFETCH(QStringList, listed);
    QFETCH(QStringList, notListed);
    QFETCH(QString, label);
    DesignedForm f;
    f.velmora->setScaleFonts(false);
    std::unique_ptr<ControlOptionsPage> p;
    if (page == QLatin1String("ScaleBorders"))
        p = std::make_unique<ScaleBorders>();
    else if (page == QLatin1String("ScaleGraphics"))
        p = std::make_unique<ScaleGraphics>();
    else if (page == QLatin1String("ScaleFonts"))
        p = std::make_unique<ScaleFonts>();
    else
        p = std::make_unique<ScaleControls>();
    p->selectionChanged({f.velmora});
    const QStringList shown = items(p->List1);
    for (const QString &name : listed)
        QVERIFY2(shown.contains(name), qPrintable(name + QStringLiteral(" missing from ") + shown.join(u' ')));
    for (const QString &name : notListed)
        QVERIFY2(!shown.contains(name), qPrintable(name + QStringLiteral(" listed")));
    QCOMPARE(p->lblScaleControls->text(), label);
    QCOMPARE(p->cmdSelectAll->text(), QStringLiteral("Select All"));
    QVERIFY(!p->isChanged());
    // Every control of the form gets an entry, listed or not.
    p->applyChanges();
    QVERIFY(f.velmora->ControlFlagCount() >= 6);
}

void tst_Pages::optionsFollowTheirControl_data()
{
    // Written in the form's order (lblName, cmdGo, linRule, shpBox, ...);
    // then the form changes under them, a page of the settings window is
    // edited, and the window is closed.
    QTest::addColumn<QString>("formChange"); // "raise X", "lower X" or nothing
    QTest::addColumn<QString>("closeWith");
    QTest::newRow("OK after nothing changed") << "" << "ok";
    QTest::newRow("OK after shpBox was raised") << "raise shpBox" << "ok";
    QTest::newRow("OK after lblName was raised") << "raise lblName" << "ok";
    QTest::newRow("Apply after cmdGo was lowered") << "lower cmdGo" << "apply";
    QTest::newRow("Cancel after lblName was raised") << "raise lblName" << "cancel";
}

void tst_Pages::optionsFollowTheirControl()
{
    QFETCH(QString, formChange);
    QFETCH(QString, closeWith);
    DesignedForm f;
    VelmoraControl *c = f.velmora;
    // lblName exempt from scaling as a whole (its four locks), shpBox from
    // border scaling and fonts, and an entry whose control has gone.
    auto *lbl = f.form.findChild<QWidget *>(QStringLiteral("lblName"));
    auto *shp = f.form.findChild<QWidget *>(QStringLiteral("shpBox"));
    c->setOptions(lbl, VelmoraControl::DontScaleControl | VelmoraControl::DontScaleLeft | VelmoraControl::DontScaleTop
                           | VelmoraControl::DontScaleWidth | VelmoraControl::DontScaleHeight);
    c->setControlFlagCount(c->ControlFlagCount() + 1);
    c->setControlFlagControlKey(c->ControlFlagCount(), QStringLiteral("deleted"));
    c->setControlFlagDontScaleFont(c->ControlFlagCount(), true);
    c->setOptions(shp, VelmoraControl::DontScaleBorder | VelmoraControl::DontScaleFont);
    const QVariantMap before = c->writeProperties();
    if (!formChange.isEmpty()) {
        auto *w = f.form.findChild<QWidget *>(formChange.section(u' ', 1));
        formChange.startsWith(QLatin1String("raise")) ? w->raise() : w->lower();
    }

    VelmoraPropertyDialog dialog(c);
    // Opening the window changes nothing on the control.
    QCOMPARE(c->writeProperties(), before);
    auto *graphics = static_cast<ScaleGraphics *>(dialog.pages().at(4));
    itemNamed(graphics->List1, QStringLiteral("imlIcons"))->setCheckState(Qt::Checked);
    auto *buttons = dialog.buttons();
    buttons->button(closeWith == QLatin1String("ok")       ? QDialogButtonBox::Ok
                    : closeWith == QLatin1String("apply") ? QDialogButtonBox::Apply
                                                          : QDialogButtonBox::Cancel)
        ->click();
    if (closeWith == QLatin1String("cancel")) {
        QCOMPARE(c->writeProperties(), before);
        return;
    }
    // Every control keeps its own options, wherever it now stands; the
    // entry of the control that has gone is dropped; the entries are the
    // form's controls in its present order.
    QCOMPARE(c->options(lbl), VelmoraControl::DontScaleControl | VelmoraControl::DontScaleLeft
                                  | VelmoraControl::DontScaleTop | VelmoraControl::DontScaleWidth
                                  | VelmoraControl::DontScaleHeight);
    QCOMPARE(c->options(shp), VelmoraControl::DontScaleBorder | VelmoraControl::DontScaleFont);
    QCOMPARE(c->options(f.form.findChild<QWidget *>(QStringLiteral("imlIcons"))),
             VelmoraControl::Options(VelmoraControl::DontScaleGraphic));
    QCOMPARE(c->entryOf(QStringLiteral("deleted")), 0);
    QStringList keys, order;
    for (int i = 1; i <= c->ControlFlagCount(); ++i)
        keys << c->ControlFlagControlKey(i);
    for (QObject *child : f.form.children())
        if (child->isWidgetType())
            order << child->objectName();
    QCOMPARE(keys, order);
}

void tst_Pages::selectAllAndNone()
{
    DesignedForm f;
    ScaleGraphics page;
    page.selectionChanged({f.velmora});
    QTest::mouseClick(page.cmdSelectAll, Qt::LeftButton);
    QCOMPARE(items(page.List1, true), items(page.List1));
    page.applyChanges();
    int exempt = 0;
    for (int i = 1; i <= f.velmora->ControlFlagCount(); ++i)
        exempt += f.velmora->ControlFlagDontScaleGraphic(i);
    QCOMPARE(exempt, page.List1->count());
    QTest::mouseClick(page.cmdSelectNone, Qt::LeftButton);
    QVERIFY(items(page.List1, true).isEmpty());
}

void tst_Pages::lockRules()
{
    DesignedForm f;
    ScaleControls page;
    page.show(); // the lock boxes are clicked as a developer clicks them
    page.selectionChanged({f.velmora});
    QListWidgetItem *item = itemNamed(page.List1, QStringLiteral("cmdGo"));
    page.List1->setCurrentItem(item);
    QVERIFY(!page.chkLockLeft->isEnabled());
    // Exempt: held by its left, top, width and height.
    item->setCheckState(Qt::Checked);
    QVERIFY(page.chkLockLeft->isChecked() && page.chkLockTop->isChecked() && page.chkLockWidth->isChecked()
            && page.chkLockHeight->isChecked());
    QVERIFY(!page.chkLockRight->isChecked() && page.chkLockLeft->isEnabled());
    // A third lock of an axis does not hold.
    QTest::mouseClick(page.chkLockRight, Qt::LeftButton);
    QVERIFY(!page.chkLockRight->isChecked());
    QTest::mouseClick(page.chkLockWidth, Qt::LeftButton); // width free: now right may hold
    QTest::mouseClick(page.chkLockRight, Qt::LeftButton);
    QVERIFY(page.chkLockRight->isChecked());
    page.applyChanges();
    const auto index = [&] {
        for (int i = 1; i <= f.velmora->ControlFlagCount(); ++i)
            if (f.velmora->ControlFlagControlKey(i) == QLatin1String("cmdGo"))
                return i;
        return 0;
    }();
    QVERIFY(index > 0);
    QVERIFY(f.velmora->ControlFlagDontScaleControl(index));
    QVERIFY(f.velmora->ControlFlagDontScaleLeft(index) && f.velmora->ControlFlagDontScaleRight(index));
    QVERIFY(!f.velmora->ControlFlagDontScaleWidth(index));
    // Every lock released: after a moment the control is no longer exempt.
    for (QCheckBox *box : {page.chkLockLeft, page.chkLockTop, page.chkLockHeight, page.chkLockRight})
        QTest::mouseClick(box, Qt::LeftButton);
    QTRY_COMPARE(item->checkState(), Qt::Unchecked);
    QVERIFY(!page.chkLockLeft->isEnabled());
    page.applyChanges();
    QVERIFY(!f.velmora->ControlFlagDontScaleControl(index));
}

void tst_Pages::lineCaptions()
{
    DesignedForm f;
    ScaleControls page;
    page.selectionChanged({f.velmora});
    page.List1->setCurrentItem(itemNamed(page.List1, QStringLiteral("linRule")));
    QCOMPARE(page.chkLockLeft->text(), QStringLiteral("Lock X Left"));
    QCOMPARE(page.chkLockBottom->text(), QStringLiteral("Lock Y Bottom"));
    QCOMPARE(page.lblControlType->text(), QStringLiteral("Line"));
    page.List1->setCurrentItem(itemNamed(page.List1, QStringLiteral("cmdGo")));
    QCOMPARE(page.chkLockHeight->text(), QStringLiteral("Lock Height"));
}

void tst_Pages::dialog_data()
{
    QTest::addColumn<QString>("closeWith");
    QTest::addColumn<bool>("applied");
    QTest::newRow("OK applies every changed page") << "ok" << true;
    QTest::newRow("Apply applies and stays open") << "apply" << true;
    QTest::newRow("Cancel applies nothing") << "cancel" << false;
}

void tst_Pages::dialog()
{
    QFETCH(QString, closeWith);
    QFETCH(bool, applied);
    DesignedForm f;
    VelmoraPropertyDialog dialog(f.velmora);
    QStringList names;
    for (int i = 0; i < dialog.tabs()->count(); ++i)
        names << dialog.tabs()->tabText(i);
    QCOMPARE(names, QStringList({"General", "ScaleControls", "ScaleFonts", "ScaleBorders", "ScaleGraphics",
                                 "ReplaceFontsWith", "FormEffects"}));
    for (VelmoraPropertyPage *page : dialog.pages()) {
        const QMetaObject *mo = page->metaObject();
        const int info = mo->indexOfClassInfo("Description");
        QCOMPARE(info < 0 ? QString() : QString::fromLatin1(mo->classInfo(info).value()),
                 page->objectName() == QLatin1String("FormEffects") ? QString() : QStringLiteral("Velmora Property Page"));
    }
    QSignalSpy appliedSpy(&dialog, &VelmoraPropertyDialog::applied);
    QPushButton *apply = dialog.buttons()->button(QDialogButtonBox::Apply);
    QVERIFY(!apply->isEnabled()); // nothing edited yet
    auto *general = static_cast<General *>(dialog.pages().at(0));
    auto *effects = static_cast<FormEffects *>(dialog.pages().at(6));
    auto *borders = static_cast<ScaleBorders *>(dialog.pages().at(3));
    QTest::mouseClick(general->chkCenterX, Qt::LeftButton);
    QVERIFY(apply->isEnabled());
    effects->cmbFormOpen->setCurrentIndex(2);
    Q_EMIT effects->cmbFormOpen->activated(2);
    itemNamed(borders->List1, QStringLiteral("shpBox"))->setCheckState(Qt::Checked);
    if (closeWith == QLatin1String("ok"))
        dialog.buttons()->button(QDialogButtonBox::Ok)->click();
    else if (closeWith == QLatin1String("apply"))
        apply->click();
    else
        dialog.buttons()->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(f.velmora->CenterX(), applied);
    QCOMPARE(f.velmora->FormOpen() == VelmoraControl::FoWipeRight, applied);
    bool exempt = false;
    for (int i = 1; i <= f.velmora->ControlFlagCount(); ++i)
        exempt = exempt || (f.velmora->ControlFlagControlKey(i) == QLatin1String("shpBox") && f.velmora->ControlFlagDontScaleBorder(i));
    QCOMPARE(exempt, applied);
    QVERIFY(!apply->isEnabled() || !applied);
    QCOMPARE(appliedSpy.count(), applied ? 1 : 0);
    QCOMPARE(dialog.result(), closeWith == QLatin1String("ok") ? int(QDialog::Accepted) : int(QDialog::Rejected));
}

QTEST_MAIN(tst_Pages)
#include "tst_pages.moc"
