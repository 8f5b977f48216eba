// The component as applications and form files see it: its settings and
// their defaults, its help texts, its saved settings (the property bag) in
// code and in .ui files, and the per-control options reaching the layout.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"
#include "SettingsTable.h"
#include "ui_settingsform.h"

#include <QBuffer>
#include <QFile>
#include <QLabel>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QtTest>

#include <algorithm>

namespace {

const velmora::ControlFlags *record(VelmoraControl *v, const char *key)
{
    return VelmoraControlPrivate::get(v)->engine.store().flags(key);
}

using routes::switches;

} // namespace

class tst_PublicSurface : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void defaults_data();
    void defaults();
    void helpTexts_data();
    void helpTexts();
    void enumerations();
    void publishedOrder();
    void bagRoundTrip();
    void hostileBags_data();
    void hostileBags();
    void designSizesOnlyAtDesignTime();
    void indexOutOfRange_data();
    void indexOutOfRange();
    void entriesBeforeTheirCount();
    void aBagReplacesTheSavedEntries();
    void uicAndUiLoaderAgree();
    void settingsWrittenIntoAUiComeBack();
    void locksReachTheLayout_data();
    void locksReachTheLayout();
    void removedOptionsLeaveThePass_data();
    void removedOptionsLeaveThePass();
    void optionsByWidget();
    void hostileSetters_data();
    void hostileSetters();
    void freshControlHasEntryZero();
    void hostileUiFiles_data();
    void hostileUiFiles();
    void classesThatExtendThemselves();
    void slotsMayDeleteTheControl_data();
    void slotsMayDeleteTheControl();
};

void tst_PublicSurface::defaults_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    for (const char *on : {"ScaleFonts", "ScaleControls", "ScaleBorders", "ResizeOnMouseUp", "ScaleGraphics"})
        QTest::newRow(on) << on << QVariant(true);
    for (const char *off : {"CenterX", "CenterY", "GradientFill", "StayOnTop", "SaveWindowState", "KeepOnScreen"})
        QTest::newRow(off) << off << QVariant(false);
    for (const char *zero : {"ScaleX", "ScaleY", "MinWidth", "MinHeight", "MaxWidth", "MaxHeight", "MdiChildWidth",
                             "MdiChildHeight", "ControlFlagCount", "FormPicture", "FormClose", "FormOpen"})
        QTest::newRow(zero) << zero << QVariant(0);
    QTest::newRow("GradientColour") << "GradientColour" << QVariant(16711680);
    QTest::newRow("ReplaceFontsWith") << "ReplaceFontsWith" << QVariant(QStringLiteral("<none>"));
    QTest::newRow("WindowName") << "WindowName" << QVariant(QString());
    QTest::newRow("FormOpenTime") << "FormOpenTime" << QVariant(1.0);
    QTest::newRow("FormCloseTime") << "FormCloseTime" << QVariant(1.0);
}

void tst_PublicSurface::defaults()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    VelmoraControl v;
    QVariant actual = v.property(property.toLatin1().constData());
    if (actual.metaType().flags() & QMetaType::IsEnumeration)
        actual = actual.toInt();
    QCOMPARE(actual, value);
    // A bag with nothing in it reads the same.
    v.readProperties({});
    QCOMPARE(v.writeProperties(), QVariantMap());
}

void tst_PublicSurface::helpTexts_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("text");
    const char *table[][2] = {
        {"ScaleFonts", "If True, scales all fonts of the controls on the form relative to the forms dimensions. ScaleControls must also be set to true."},
        {"CenterX", "Centers form in X dimension."},
        {"CenterY", "Centers form in Y dimension."},
        {"GradientFill", "If True, fills background of form with gradient fill"},
        {"GradientColour", "Sets the starting colour for the gradient fill"},
        {"ScaleControls", "If True, scales all controls on the form relative to the forms dimensions"},
        {"ScaleX", "sets a scale factor of the x dimension of the form as a percentage of  the screen width."},
        {"ScaleY", "Sets a scale factor of the Y dimension of the form as a percentage of  the screen height."},
        {"StayOnTop", "If True, the form will stay on top of all other forms on the screen."},
        {"MinWidth", "Sets Minimum Width for form."},
        {"MinHeight", "Sets Minimum Height for form."},
        {"MaxWidth", ""},
        {"MaxHeight", ""},
        {"ScaleBorders", "Scales the borders of controls with BorderWidth property, such as lines and shapes."},
        {"MdiChildWidth", "Sets initial Width of MDI Child Form. Overrides automatic setting by MDI Parent Form."},
        {"MdiChildHeight", "Sets initial Height of MDI Child Form. Overrides automatic setting by MDI Parent Form."},
        {"ResizeOnMouseUp", "Resizes form when mouse button is released, rater than continuously. This is useful for forms with a lot of controls on them."},
        {"ControlFlagCount", ""},
        {"ScaleGraphics", "If True, scales all the graphics of the controls on the form relative to the scaled dimensions of the controls. "},
        {"ReplaceFontsWith", "If not set to <none>, the control will replace all the form's control fonts with the specified font name.  Fully scaleable fonts should be used, so the controls will scale down to their minimum size."},
        {"SaveWindowState", "If true, saves window state, position, and size for next session. This feature used the Caption property of the form to store the settings in the registry. Use unique Captions, if using this feature."},
        {"WindowName", "Name for SaveWindowState to use when saving window settings in the registry (Default is Form.Caption)"},
        {"FormPicture", "Returns or sets a value indicating how the Picture object of a form is manipulated by QxVelmora\u00ae"},
        {"FormClose", "Defines effect to use when closing a Form"},
        {"FormCloseTime", "Defines duration of effect when closing a Form"},
        {"FormOpen", "Defines effect to use when opening a Form"},
        {"FormOpenTime", "Defines duration of effect when opening a Form"},
        {"ScalePicture", "Manually scale a picture object of a control to a ratio of current size."},
        {"SizePicture", "Manually scale a picture object of a control to specific size."},
        {"CenterPicture", "Centers Picture object within Container object"},
        {"TilePicture", "This function can be used to manually tile a picture within a container."},
        {"Reset", "Resets the reference for control, font, and graphic resizing. Reset sizes from the relationship of the objects to the current size of the form rather than the original size of the form (default)."},
        {"ShowAboutBox", "Shows information about Velmora"},
        {"PrintSize", "Prepares and shows the form at the required dimensions for printing."},
        {"SaveControlInfo", ""},
        {"ResizeStarted", "Event fired when Velmora has started it's resizing of the constituent controls."},
        {"ResizeDone", "Event fired when Velmora has completed it's resizing of the constituent controls."},
        {"Error", "Returns information about non-critical errors."},
        {"PrintCancelled", "This event is fired when the Cancel button is pressed on the \"Printing.....\" Dialog Box."},
        {"KeepOnScreen", "If True, a window restored off every screen is brought back onto the nearest one."},
        {"NoSuchMember", ""},
    };
    for (const auto &row : table)
        QTest::newRow(row[0]) << QString::fromLatin1(row[0]) << QString::fromUtf8(row[1]);
}

void tst_PublicSurface::helpTexts()
{
    QFETCH(QString, member);
    QFETCH(QString, text);
    QCOMPARE(VelmoraControl::helpText(member), text);
}

void tst_PublicSurface::enumerations()
{
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    const QList<QPair<const char *, QStringList>> expected = {
        {"FormPictureEffects", {"FpNone", "FpFit", "FpCenter", "FpTile"}},
        {"FormCloseEffects", {"FcNone", "FcWipeLeft", "FcWipeRight", "FcWipeUp", "FcWipeDown", "FcWipeVertical",
                              "FcWipeHorizontal", "FcFold"}},
        {"FormOpenEffects", {"FoNone", "FoWipeLeft", "FoWipeRight", "FoWipeUp", "FoWipeDown", "FoWipeVertical",
                             "FoWipeHorizontal", "FoFold"}},
        {"FormStates", {"fsNone", "fsLocked", "fsEnabled"}},
    };
    for (const auto &[name, keys] : expected) {
        const QMetaEnum e = mo.enumerator(mo.indexOfEnumerator(name));
        QVERIFY2(e.isValid(), name);
        QCOMPARE(e.keyCount(), keys.size());
        for (int i = 0; i < keys.size(); ++i) // each constant is its position
            QCOMPARE(e.keyToValue(keys[i].toLatin1().constData()), i);
    }
}

void tst_PublicSurface::publishedOrder()
{
    // Scripts and tools that list the component see its members in the
    // order it has always had.
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    QStringList properties, methods, signalNames;
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i)
        properties << QLatin1String(mo.property(i).name());
    for (int i = mo.methodOffset(); i < mo.methodCount(); ++i) {
        const QMetaMethod m = mo.method(i);
        QStringList &list = m.methodType() == QMetaMethod::Signal ? signalNames : methods;
        if (!list.contains(QLatin1String(m.name())))
            list << QLatin1String(m.name());
    }
    QCOMPARE(properties.mid(0, 27),
             QStringList({"ScaleFonts", "CenterX", "CenterY", "GradientFill", "GradientColour", "ScaleControls",
                          "ScaleX", "ScaleY", "StayOnTop", "MinWidth", "MinHeight", "MaxWidth", "MaxHeight",
                          "ScaleBorders", "MdiChildWidth", "MdiChildHeight", "ResizeOnMouseUp", "ControlFlagCount",
                          "ScaleGraphics", "ReplaceFontsWith", "SaveWindowState", "WindowName", "FormPicture",
                          "FormClose", "FormCloseTime", "FormOpen", "FormOpenTime"}));
    QCOMPARE(methods, QStringList({"ScalePicture", "SizePicture", "CenterPicture", "TilePicture", "Reset",
                                   "ShowAboutBox", "SaveControlInfo", "SaveControlFlags", "SaveWindowSettings",
                                   "LoadWindowSettings", "PrintSize", "AdjustPosition"}));
    QCOMPARE(signalNames.mid(0, 4), QStringList({"ResizeStarted", "ResizeDone", "Error", "PrintCancelled"}));
}

namespace {

void configure(VelmoraControl &v)
{
    v.setScaleFonts(false);
    v.setCenterY(true);
    v.setGradientColour(0x123456);
    v.setScaleY(75);
    v.setMaxHeight(12000);
    v.setScaleGraphics(false);
    v.setReplaceFontsWith(QStringLiteral("DejaVu Sans"));
    v.setSaveWindowState(true);
    v.setMdiChildWidth(6000);
    v.setFormOpen(VelmoraControl::FoFold);
    v.setFormOpenTime(2.5);
    v.setControlFlagCount(3);
    v.setControlFlagControlKey(1, QStringLiteral("lblName"));
    v.setControlFlagDontScaleLeft(1, true);
    v.setControlFlagControlKey(3, QStringLiteral("cmdOK"));
    v.setControlFlagDontScaleGraphic(3, true);
    v.setControlFlagDontScaleBottom(3, true);
}

} // namespace

void tst_PublicSurface::bagRoundTrip()
{
    VelmoraControl original;
    configure(original);
    const QVariantMap bag = original.writeProperties();
    // Defaults are left out; an entry with no switch on keeps its key only.
    QVERIFY(!bag.contains(QStringLiteral("ScaleControls")));
    QVERIFY(!bag.contains(QStringLiteral("ControlFlagControlKey2")));
    QCOMPARE(bag.value(QStringLiteral("ControlFlagDontScaleBottom3")), QVariant(true));
    QVERIFY(!bag.contains(QStringLiteral("ControlFlagDontScaleTop3")));

    VelmoraControl copy;
    copy.readProperties(bag);
    QCOMPARE(copy.writeProperties(), bag);
    for (const char *key : {"lblName", "cmdOK"})
        QCOMPARE(switches(record(&copy, key)), switches(record(&original, key)));
    QCOMPARE(switches(record(&copy, "cmdOK")), QStringLiteral("0001000001"));
    // A bag read resets what it does not mention.
    copy.readProperties({});
    QCOMPARE(copy.writeProperties(), QVariantMap());
}

void tst_PublicSurface::hostileBags_data()
{
    QTest::addColumn<QVariantMap>("bag");
    QTest::addColumn<QVariantMap>("expected"); // what writeProperties gives back
    QTest::addColumn<QString>("key");         // a record that must exist ...
    QTest::addColumn<QString>("flags");       // ... with these switches
    const QVariantMap kept{{"CenterX", true}, {"WindowName", "kept"}};
    const auto with = [&](QVariantMap m) {
        for (auto it = kept.begin(); it != kept.end(); ++it)
            m.insert(it.key(), it.value());
        return m;
    };
    QTest::newRow("wrong types")
        << with({{"ScaleFonts", "maybe"}, {"ScaleX", "abc"}, {"MinWidth", QVariantList{1, 2}}, {"ReplaceFontsWith", 12},
                 {"FormOpenTime", "soon"}})
        << kept << "" << "";
    QTest::newRow("numbers out of range")
        << with({{"ScaleX", 70000}, {"GradientColour", qint64(1) << 40}, {"FormOpen", 8}, {"FormCloseTime", qQNaN()},
                 {"DesignFormWidth", 1e300}})
        << kept << "" << "";
    QTest::newRow("count -5") << with({{"ControlFlagCount", -5}, {"ControlFlagControlKey1", "a"}}) << kept << "" << "";
    QTest::newRow("count 100000") << with({{"ControlFlagCount", 100000}}) << kept << "" << "";
    QTest::newRow("count as text") << with({{"ControlFlagCount", "1"}, {"ControlFlagControlKey1", "a"}})
                                   << with({{"ControlFlagCount", 1}, {"ControlFlagControlKey1", "a"}}) << "a"
                                   << "0000000000";
    QTest::newRow("gaps") << with({{"ControlFlagCount", 3}, {"ControlFlagControlKey3", "c"},
                                   {"ControlFlagDontScaleLeft3", true}})
                          << with({{"ControlFlagCount", 3}, {"ControlFlagControlKey3", "c"},
                                   {"ControlFlagDontScaleLeft3", true}})
                          << "c" << "0000100000";
    QTest::newRow("keys beyond the count") << with({{"ControlFlagCount", 1}, {"ControlFlagControlKey2", "b"}})
                                           << with({{"ControlFlagCount", 1}}) << "b" << "(none)";
    QTest::newRow("two entries, one key: the later wins")
        << with({{"ControlFlagCount", 2}, {"ControlFlagControlKey1", "x"}, {"ControlFlagDontScaleTop1", true},
                 {"ControlFlagControlKey2", "x"}, {"ControlFlagDontScaleLeft2", true}})
        << with({{"ControlFlagCount", 2}, {"ControlFlagControlKey1", "x"}, {"ControlFlagDontScaleTop1", true},
                 {"ControlFlagControlKey2", "x"}, {"ControlFlagDontScaleLeft2", true}})
        << "x" << "0000100000";
    QTest::newRow("an effect time absent reads 1, not 0") << with({{"FormOpenTime", 0.25}})
                                                          << with({{"FormOpenTime", 0.25f}}) << "" << "";
}

void tst_PublicSurface::hostileBags()
{
    QFETCH(QVariantMap, bag);
    QFETCH(QVariantMap, expected);
    QFETCH(QString, key);
    QFETCH(QString, flags);
    VelmoraControl v;
    configure(v); // whatever it held before is replaced
    v.readProperties(bag);
    QCOMPARE(v.writeProperties(), expected);
    QCOMPARE(v.FormCloseTime(), 1.0);
    if (!key.isEmpty())
        QCOMPARE(switches(record(&v, key.toLatin1().constData())), flags);
}

void tst_PublicSurface::designSizesOnlyAtDesignTime()
{
    QWidget form;
    form.resize(400, 300);
    auto *v = new VelmoraControl(&form);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    const QStringList sizes = {"DesignFormWidth", "DesignFormHeight", "DesignFormScaleWidth", "DesignFormScaleHeight"};
    for (const QString &k : sizes)
        QVERIFY(!v->writeProperties().contains(k));
    v->setDesignTime(true);
    const QVariantMap bag = v->writeProperties();
    QCOMPARE(bag.value(QStringLiteral("DesignFormScaleWidth")).toFloat(), 400.0f * 15);
    QCOMPARE(bag.value(QStringLiteral("DesignFormScaleHeight")).toFloat(), 300.0f * 15);
    QCOMPARE(bag.value(QStringLiteral("DesignFormWidth")).toFloat(), float(form.frameGeometry().width() * 15));
    QCOMPARE(bag.value(QStringLiteral("DesignFormHeight")).toFloat(), float(form.frameGeometry().height() * 15));
    // In an editor the properties read the form as it stands: what the
    // editor saves is its size at that moment, whatever was given before.
    v->setDesignFormScaleWidth(1234);
    form.resize(500, 300);
    QCOMPARE(v->DesignFormScaleWidth(), 500.0 * 15);
    QCOMPARE(v->property("DesignFormWidth").toDouble(), double(form.frameGeometry().width() * 15));
    v->setDesignTime(false);
    QCOMPARE(v->DesignFormScaleWidth(), 1234.0);
}

void tst_PublicSurface::indexOutOfRange_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("ok");
    QTest::newRow("0 exists, holds nothing") << 0 << true;
    QTest::newRow("the last entry") << 2 << true;
    QTest::newRow("one past the count") << 3 << false;
    QTest::newRow("negative") << -1 << false;
}

void tst_PublicSurface::indexOutOfRange()
{
    QFETCH(int, index);
    QFETCH(bool, ok);
    VelmoraControl v;
    v.setControlFlagCount(2);
    if (!ok)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("ControlFlagDontScaleLeft.*out of range 0..2"));
    bool reported = !ok;
    QCOMPARE(v.ControlFlagDontScaleLeft(index, &reported), false);
    QCOMPARE(reported, ok);
    if (!ok)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("setControlFlagControlKey.*out of range"));
    v.setControlFlagControlKey(index, QStringLiteral("k"), &reported);
    QCOMPARE(reported, ok);
    // Entry 0 is held but is no entry: no record for it.
    QCOMPARE(record(&v, "k") != nullptr, ok && index > 0);
}

void tst_PublicSurface::entriesBeforeTheirCount()
{
    // A form may give its entries before their count: they are read when
    // the count reaches them.
    VelmoraControl v;
    v.setProperty("ControlFlagControlKey2", QStringLiteral("late"));
    v.setProperty("ControlFlagDontScaleWidth2", true);
    QVERIFY(!record(&v, "late"));
    v.setControlFlagCount(2);
    QCOMPARE(v.ControlFlagControlKey(2), QStringLiteral("late"));
    QCOMPARE(switches(record(&v, "late")), QStringLiteral("0000001000"));
    // Set from code, a switch is kept as the dynamic property a form
    // builder saves, and left out again at its default.
    v.setControlFlagDontScaleTop(2, true);
    QCOMPARE(v.property("ControlFlagDontScaleTop2"), QVariant(true));
    v.setControlFlagDontScaleTop(2, false);
    QVERIFY(!v.property("ControlFlagDontScaleTop2").isValid());
}

void tst_PublicSurface::aBagReplacesTheSavedEntries()
{
    // The entries a bag gives are the saved ones (the keys a form builder
    // saves say the same), and an entry read before is gone for good: the
    // count growing again brings back no stale key.
    VelmoraControl v;
    v.setControlFlagCount(2);
    v.setControlFlagControlKey(2, QStringLiteral("lblOld"));
    v.setControlFlagDontScaleLeft(2, true);
    v.readProperties({{"ControlFlagCount", 1}, {"ControlFlagControlKey1", "lblNew"}, {"ControlFlagDontScaleFont1", true}});
    QCOMPARE(v.property("ControlFlagControlKey1"), QVariant(QStringLiteral("lblNew")));
    QCOMPARE(v.property("ControlFlagDontScaleFont1"), QVariant(true));
    QVERIFY(!v.property("ControlFlagControlKey2").isValid());
    v.setControlFlagCount(2);
    QCOMPARE(v.ControlFlagControlKey(2), QString());
    QVERIFY(!v.ControlFlagDontScaleLeft(2));
    v.initProperties();
    const auto names = v.dynamicPropertyNames();
    QVERIFY(std::none_of(names.cbegin(), names.cend(), [](const QByteArray &n) { return n.startsWith("ControlFlag"); }));
}

void tst_PublicSurface::uicAndUiLoaderAgree()
{
    QWidget compiled;
    Ui::SettingsForm ui;
    ui.setupUi(&compiled);

    VelmoraUiLoader loader;
    QFile file(QFINDTESTDATA("settingsform.ui"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    std::unique_ptr<QWidget> loaded(loader.load(&file));
    QVERIFY(loaded);
    auto *fromLoader = loaded->findChild<VelmoraControl *>(QStringLiteral("velmora"));
    QVERIFY(fromLoader);

    const QVariantMap expected{
        {"ScaleFonts", false}, {"CenterX", true}, {"GradientColour", 32768}, {"ScaleX", 40}, {"MinWidth", 3000},
        {"MaxWidth", 9000}, {"ResizeOnMouseUp", false}, {"ControlFlagCount", 2},
        {"ControlFlagControlKey1", "lblName"}, {"ControlFlagDontScaleFont1", true}, {"ControlFlagDontScaleLeft1", true},
        {"ControlFlagControlKey2", "cmdOK"}, {"ControlFlagDontScaleRight2", true},
        {"ControlFlagDontScaleBottom2", true}, {"ReplaceFontsWith", "DejaVu Serif"}, {"WindowName", "Settings form"},
        {"MdiChildHeight", 4500}, {"FormPicture", 3}, {"FormClose", 7}, {"FormCloseTime", 0.5f}, {"FormOpen", 4}};
    QCOMPARE(ui.velmora->writeProperties(), expected);
    QCOMPARE(fromLoader->writeProperties(), expected);
    for (VelmoraControl *v : {ui.velmora, fromLoader}) {
        QCOMPARE(switches(record(v, "lblName")), QStringLiteral("0100100000"));
        QCOMPARE(switches(record(v, "cmdOK")), QStringLiteral("0000000011"));
        QCOMPARE(v->DesignFormScaleWidth(), 6000.0);
    }
    // And they behave alike: the same places and fonts at a new size.
    const auto placed = [](QWidget *form) {
        QStringList out;
        for (const char *name : {"lblName", "cmdOK"}) {
            auto *w = form->findChild<QWidget *>(QLatin1String(name));
            out << QStringLiteral("%1 %2,%3 %4x%5 %6 %7")
                       .arg(QLatin1String(name)).arg(w->x()).arg(w->y()).arg(w->width()).arg(w->height())
                       .arg(w->font().family()).arg(w->font().pointSizeF());
        }
        return out;
    };
    for (QWidget *form : {&compiled, loaded.get()}) {
        form->show();
        auto *v = form->findChild<VelmoraControl *>();
        QVERIFY(QTest::qWaitFor([&] { return v->isFormReady(); }, 5000));
        form->resize(560, 380); // within its limits
    }
    QTRY_COMPARE(placed(loaded.get()), placed(&compiled));
    QCOMPARE(compiled.findChild<QWidget *>(QStringLiteral("lblName"))->x(), 20); // its left edge is locked
    QVERIFY(compiled.findChild<QWidget *>(QStringLiteral("cmdOK"))->x() > 300); // it keeps its right margin
    for (VelmoraControl *v : {ui.velmora, fromLoader}) {
        v->setDesignTime(true); // only now are the design sizes written
        QVERIFY(v->writeProperties().contains(QStringLiteral("DesignFormWidth")));
    }
}

void tst_PublicSurface::settingsWrittenIntoAUiComeBack()
{
    VelmoraControl original;
    configure(original);
    original.setWindowName(QStringLiteral("<A & B>")); // escaped on the way
    original.setFormClose(VelmoraControl::FcWipeHorizontal);
    const QVariantMap bag = original.writeProperties();
    const QString ui = QStringLiteral("<ui version=\"4.0\"><class>F</class><widget class=\"QWidget\" name=\"F\">"
                                      "<widget class=\"VelmoraControl\" name=\"velmora\">\n%1</widget></widget></ui>")
                           .arg(VelmoraUiLoader::settingsXml(bag));
    QVERIFY(ui.contains(QStringLiteral("<enum>VelmoraControl::FcWipeHorizontal</enum>")));
    QVERIFY(ui.contains(QStringLiteral("name=\"ControlFlagDontScaleBottom3\" stdset=\"0\"")));
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    QVERIFY2(form, qPrintable(loader.errorString()));
    auto *v = form->findChild<VelmoraControl *>();
    QVERIFY(v);
    QCOMPARE(v->writeProperties(), bag);
    QCOMPARE(switches(record(v, "cmdOK")), switches(record(&original, "cmdOK")));
}

void tst_PublicSurface::locksReachTheLayout_data()
{
    QTest::addColumn<int>("scaleMode");
    QTest::addColumn<QStringList>("locks");
    QTest::addColumn<QRect>("expected");
    // Designed at (100, 200, 300, 400) on 1000 x 1000, shown at 2000 x 1500.
    for (const int mode : {1, 3}) {
        const QByteArray unit = mode == 1 ? " (twips)" : " (pixels)";
        QTest::newRow("no locks" + unit) << mode << QStringList() << QRect(200, 300, 600, 600);
        QTest::newRow("left" + unit) << mode << QStringList{"Left"} << QRect(100, 300, 600, 600);
        QTest::newRow("right: keeps its right margin" + unit) << mode << QStringList{"Right"} << QRect(800, 300, 600, 600);
        QTest::newRow("left and right: stretches" + unit) << mode << QStringList{"Left", "Right"}
                                                          << QRect(100, 300, 1300, 600);
        QTest::newRow("bottom: keeps its bottom margin" + unit) << mode << QStringList{"Bottom"}
                                                                << QRect(200, 500, 600, 600);
        QTest::newRow("top and height" + unit) << mode << QStringList{"Top", "Height"} << QRect(200, 200, 600, 400);
    }
}

void tst_PublicSurface::locksReachTheLayout()
{
    QFETCH(int, scaleMode);
    QFETCH(QStringList, locks);
    QFETCH(QRect, expected);
    QWidget form;
    form.setProperty("ScaleMode", scaleMode);
    form.resize(1000, 1000);
    auto *target = new QFrame(&form);
    target->setObjectName(QStringLiteral("target"));
    target->setGeometry(100, 200, 300, 400);
    auto *v = new VelmoraControl(&form);
    v->setResizeOnMouseUp(false);
    v->setControlFlagCount(1);
    v->setControlFlagControlKey(1, QStringLiteral("target"));
    using Setter = void (VelmoraControl::*)(int, bool, bool *);
    const QHash<QString, Setter> setters{
        {"Left", &VelmoraControl::setControlFlagDontScaleLeft}, {"Top", &VelmoraControl::setControlFlagDontScaleTop},
        {"Right", &VelmoraControl::setControlFlagDontScaleRight},
        {"Bottom", &VelmoraControl::setControlFlagDontScaleBottom},
        {"Height", &VelmoraControl::setControlFlagDontScaleHeight}};
    for (const QString &lock : locks)
        (v->*setters.value(lock))(1, true, nullptr);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return v->isFormReady(); }, 2000));
    form.resize(2000, 1500);
    QTRY_COMPARE(target->geometry(), expected);
}

void tst_PublicSurface::removedOptionsLeaveThePass_data()
{
    // lblA locked on all four sides by entry 1; then the entries change.
    // Where lblA and lblB land when the 400 x 300 form doubles.
    QTest::addColumn<QString>("change");
    QTest::addColumn<QRect>("lblA");
    QTest::addColumn<QRect>("lblB");
    const QRect lockedA(20, 20, 100, 30), scaledA(40, 40, 200, 60);
    const QRect lockedB(20, 200, 100, 30), scaledB(40, 400, 200, 60);
    QTest::newRow("entry kept: locked") << "" << lockedA << scaledB;
    QTest::newRow("count set to 0") << "count 0" << scaledA << scaledB;
    QTest::newRow("re-keyed to lblB: only lblB locked") << "rekey" << scaledA << lockedB;
    QTest::newRow("key blanked") << "blank" << scaledA << scaledB;
    QTest::newRow("an empty bag read") << "read" << scaledA << scaledB;
    QTest::newRow("settings initialised") << "init" << scaledA << scaledB;
    QTest::newRow("its options cleared by widget") << "options" << scaledA << scaledB;
    QTest::newRow("a later entry for the same key") << "later" << scaledA << scaledB;
}

void tst_PublicSurface::removedOptionsLeaveThePass()
{
    QFETCH(QString, change);
    QFETCH(QRect, lblA);
    QFETCH(QRect, lblB);
    QWidget form;
    form.resize(400, 300);
    auto *a = new QLabel(QStringLiteral("A"), &form);
    a->setObjectName(QStringLiteral("lblA"));
    a->setGeometry(20, 20, 100, 30);
    auto *b = new QLabel(QStringLiteral("B"), &form);
    b->setObjectName(QStringLiteral("lblB"));
    b->setGeometry(20, 200, 100, 30);
    auto *c = new QLabel(QStringLiteral("C"), &form); // never locked: tells when the pass has run
    c->setGeometry(200, 100, 50, 20);
    auto *v = new VelmoraControl(&form);
    v->setResizeOnMouseUp(false);
    v->setControlFlagCount(1);
    v->setControlFlagControlKey(1, QStringLiteral("lblA"));
    for (auto setter : {&VelmoraControl::setControlFlagDontScaleLeft, &VelmoraControl::setControlFlagDontScaleTop,
                        &VelmoraControl::setControlFlagDontScaleWidth, &VelmoraControl::setControlFlagDontScaleHeight})
        (v->*setter)(1, true, nullptr);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return v->isFormReady(); }, 2000));
    if (change == QLatin1String("count 0")) {
        v->setControlFlagCount(0);
    } else if (change == QLatin1String("rekey")) {
        v->setControlFlagControlKey(1, QStringLiteral("lblB"));
    } else if (change == QLatin1String("blank")) {
        v->setControlFlagControlKey(1, QString());
    } else if (change == QLatin1String("read")) {
        v->readProperties({});
    } else if (change == QLatin1String("init")) {
        v->initProperties();
    } else if (change == QLatin1String("options")) {
        v->setOptions(a, VelmoraControl::NoOptions);
    } else if (change == QLatin1String("later")) {
        v->setControlFlagCount(2);
        v->setControlFlagControlKey(2, QStringLiteral("lblA"));
    }
    v->setResizeOnMouseUp(false);
    form.resize(800, 600);
    QTRY_COMPARE(c->geometry(), QRect(400, 200, 100, 40));
    QCOMPARE(a->geometry(), lblA);
    QCOMPARE(b->geometry(), lblB);
}

void tst_PublicSurface::optionsByWidget()
{
    QWidget form;
    form.resize(400, 300);
    auto *logo = new QLabel(&form);
    logo->setObjectName(QStringLiteral("logo"));
    logo->setGeometry(330, 10, 60, 40);
    auto *other = new QLabel(&form);
    other->setObjectName(QStringLiteral("other"));
    QWidget elsewhere;
    auto *v = new VelmoraControl(&form);
    v->setResizeOnMouseUp(false);
    // Before the form is served: an entry is added, the arrays keep step.
    QCOMPARE(v->options(logo), VelmoraControl::Options());
    v->setOptions(logo, VelmoraControl::DontScaleLeft | VelmoraControl::DontScaleWidth | VelmoraControl::DontScaleHeight
                            | VelmoraControl::DontScaleRight | VelmoraControl::DontScaleTop);
    QCOMPARE(v->ControlFlagCount(), 1);
    QCOMPARE(v->entryOf(QStringLiteral("logo")), 1);
    QCOMPARE(v->ControlFlagControlKey(1), QStringLiteral("logo"));
    QVERIFY(v->ControlFlagDontScaleRight(1) && !v->ControlFlagDontScaleBottom(1));
    QCOMPARE(v->property("ControlFlagDontScaleRight1"), QVariant(true)); // saved with the form
    // Setting again rewrites that entry, never adds one; no options and no
    // entry adds nothing.
    v->setOptions(logo, VelmoraControl::DontScaleWidth | VelmoraControl::DontScaleHeight | VelmoraControl::DontScaleRight
                            | VelmoraControl::DontScaleTop);
    v->setOptions(other, {});
    QCOMPARE(v->ControlFlagCount(), 1);
    QVERIFY(!v->ControlFlagDontScaleLeft(1));
    // Not a control of its form: refused.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("setOptions: .* is no control of the form"));
    v->setOptions(&elsewhere, VelmoraControl::DontScaleFont);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("setOptions: .* is no control of the form"));
    v->setOptions(&form, VelmoraControl::DontScaleFont);
    QCOMPARE(v->options(&elsewhere), VelmoraControl::Options());
    QCOMPARE(v->ControlFlagCount(), 1);
    QCOMPARE(v->entryOf(QStringLiteral("nobody")), 0);
    // The logo keeps its size and its distance to the top-right corner.
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return v->isFormReady(); }, 2000));
    form.resize(800, 600);
    QTRY_COMPARE(logo->geometry(), QRect(730, 10, 60, 40));
    // Once the form is served, too.
    v->setOptions(other, VelmoraControl::DontScaleFont);
    QCOMPARE(v->entryOf(QStringLiteral("other")), 2);
    QCOMPARE(v->options(other), VelmoraControl::Options(VelmoraControl::DontScaleFont));
}

void tst_PublicSurface::hostileSetters_data()
{
    // A value given to a setter, what the setting then holds, and the
    // warning that says why (empty: none).
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("held");
    QTest::addColumn<QString>("warning");
    QTest::newRow("FormPicture 50") << "FormPicture" << QVariant(50) << QVariant(0) << "names no constant";
    QTest::newRow("FormClose -1") << "FormClose" << QVariant(-1) << QVariant(0) << "names no constant";
    QTest::newRow("FormOpen 8") << "FormOpen" << QVariant(8) << QVariant(0) << "names no constant";
    QTest::newRow("FormOpenTime 0.1, exactly") << "FormOpenTime" << QVariant(0.1) << QVariant(0.1) << "";
    QTest::newRow("FormOpenTime to the millisecond") << "FormOpenTime" << QVariant(2.0004) << QVariant(2.0) << "";
    QTest::newRow("FormOpenTime 1e39") << "FormOpenTime" << QVariant(1e39) << QVariant(10.0) << "outside 0 to 10 s";
    QTest::newRow("FormCloseTime -0.5") << "FormCloseTime" << QVariant(-0.5) << QVariant(0.0) << "outside 0 to 10 s";
    QTest::newRow("FormCloseTime inf") << "FormCloseTime" << QVariant(qInf()) << QVariant(1.0) << "is no duration";
    QTest::newRow("FormCloseTime -inf") << "FormCloseTime" << QVariant(-qInf()) << QVariant(1.0) << "is no duration";
    QTest::newRow("FormCloseTime NaN") << "FormCloseTime" << QVariant(qQNaN()) << QVariant(1.0) << "is no duration";
    QTest::newRow("ControlFlagCount 40000") << "ControlFlagCount" << QVariant(40000) << QVariant(0) << "is no count";
    QTest::newRow("ControlFlagCount 2000000000") << "ControlFlagCount" << QVariant(2000000000) << QVariant(0)
                                                 << "is no count";
    QTest::newRow("ControlFlagCount -1") << "ControlFlagCount" << QVariant(-1) << QVariant(0) << "is no count";
    QTest::newRow("ControlFlagCount 32767") << "ControlFlagCount" << QVariant(32767) << QVariant(32767) << "";
    QTest::newRow("ScaleX 150") << "ScaleX" << QVariant(150) << QVariant(100) << "no percentage";
    QTest::newRow("MinHeight -3: no limit") << "MinHeight" << QVariant(-3) << QVariant(0) << "";
}

void tst_PublicSurface::hostileSetters()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(QVariant, held);
    QFETCH(QString, warning);
    VelmoraControl v;
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(warning)));
    QVERIFY(v.setProperty(name.toLatin1().constData(), value));
    const QVariant now = v.property(name.toLatin1().constData());
    QCOMPARE(now.metaType().id() == QMetaType::Double ? QVariant(now.toDouble()) : QVariant(now.toInt()), held);
    // And it reads back as it is held: the saved settings give the same.
    VelmoraControl copy;
    copy.readProperties(v.writeProperties());
    QCOMPARE(copy.property(name.toLatin1().constData()), now);
    // The same value in a bag reads as the setter holds it (or as the
    // default where the setter refused it).
    VelmoraControl fromBag;
    fromBag.readProperties({{name, value}});
    if (name == QLatin1String("ControlFlagCount") && value.toInt() > 0 && value.toInt() <= 32767)
        return;
    QCOMPARE(fromBag.property(name.toLatin1().constData()), now);
}

void tst_PublicSurface::freshControlHasEntryZero()
{
    // A control nobody has given a count: entry 0 exists and holds nothing.
    VelmoraControl v;
    bool ok = false;
    QCOMPARE(v.ControlFlagControlKey(0, &ok), QString());
    QVERIFY(ok);
    using Getter = bool (VelmoraControl::*)(int, bool *) const;
    for (Getter g : {&VelmoraControl::ControlFlagDontScaleControl, &VelmoraControl::ControlFlagDontScaleFont,
                     &VelmoraControl::ControlFlagDontScaleBorder, &VelmoraControl::ControlFlagDontScaleGraphic,
                     &VelmoraControl::ControlFlagDontScaleLeft, &VelmoraControl::ControlFlagDontScaleTop,
                     &VelmoraControl::ControlFlagDontScaleWidth, &VelmoraControl::ControlFlagDontScaleHeight,
                     &VelmoraControl::ControlFlagDontScaleRight, &VelmoraControl::ControlFlagDontScaleBottom}) {
        ok = false;
        QVERIFY(!(v.*g)(0, &ok));
        QVERIFY(ok);
    }
    v.setControlFlagDontScaleTop(0, true);
    v.setControlFlagControlKey(0, QStringLiteral("k"));
    QCOMPARE(v.ControlFlagCount(), 0);
    QCOMPARE(v.entryOf(QStringLiteral("k")), 0);
    QVERIFY(!record(&v, "k"));
}

void tst_PublicSurface::hostileUiFiles_data()
{
    QTest::addColumn<QString>("properties"); // the component's, in the .ui
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("held");
    QTest::newRow("a count of two thousand million")
        << "<property name=\"ControlFlagCount\"><number>2000000000</number></property>" << "ControlFlagCount"
        << QVariant(0);
    QTest::newRow("an effect no constant names")
        << "<property name=\"FormPicture\"><number>50</number></property>" << "FormPicture" << QVariant(0);
    QTest::newRow("a time that is no number")
        << "<property name=\"FormOpenTime\"><double>inf</double></property>" << "FormOpenTime" << QVariant(1.0);
}

void tst_PublicSurface::hostileUiFiles()
{
    QFETCH(QString, properties);
    QFETCH(QString, name);
    QFETCH(QVariant, held);
    const QString ui = QStringLiteral("<ui version=\"4.0\"><class>F</class><widget class=\"QWidget\" name=\"F\">"
                                      "<widget class=\"VelmoraControl\" name=\"velmora\">%1</widget></widget></ui>")
                           .arg(properties);
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("VelmoraControl::set"));
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    QVERIFY(form);
    auto *v = form->findChild<VelmoraControl *>();
    QVERIFY(v);
    const QVariant now = v->property(name.toLatin1().constData());
    QCOMPARE(now.metaType().id() == QMetaType::Double ? QVariant(now.toDouble()) : QVariant(now.toInt()), held);
}

void tst_PublicSurface::classesThatExtendThemselves()
{
    // A extends A, and A extends B extends A: Qt's loader asks for the base
    // of the base for ever. The public loader makes them plain widgets.
    QFile file(QFINDTESTDATA("../data/cyclic_bases.ui"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    VelmoraUiLoader loader;
    QTest::ignoreMessage(QtWarningMsg, "VelmoraUiLoader: the declared bases of SelfMade lead back to it; made as a QWidget");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("VelmoraUiLoader: the declared bases of P.ngWidget lead back"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QFormBuilder was unable to create"));
    QTest::failOnWarning(QRegularExpression("VelmoraUiLoader: the declared bases of SelfMade")); // once per class
    std::unique_ptr<QWidget> form(loader.load(&file));
    QVERIFY(form);
    auto *selfMade = form->findChild<QWidget *>(QStringLiteral("selfMade"));
    QVERIFY(selfMade);
    QCOMPARE(selfMade->geometry(), QRect(10, 10, 120, 80));
    QVERIFY(form->findChild<QLabel *>(QStringLiteral("selfMadeCaption")));
}

void tst_PublicSurface::slotsMayDeleteTheControl_data()
{
    // A call on the control of a shown form, and the setting whose change
    // notice deletes the control during it.
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("at"); // a setting, or the pass's signal the call raises
    QTest::newRow("setOptions: the count grows") << "setOptions" << "ControlFlagCount";
    QTest::newRow("setOptions: the entry gets its key") << "setOptions" << "ControlFlagControlKey";
    QTest::newRow("setOptions: the first switch") << "setOptions" << "ControlFlagDontScaleLeft";
    QTest::newRow("setOptions: a later switch") << "setOptions" << "ControlFlagDontScaleHeight";
    QTest::newRow("ScaleControls, after its pass") << "ScaleControls" << "ScaleControls";
    QTest::newRow("StayOnTop") << "StayOnTop" << "StayOnTop";
    QTest::newRow("CenterX") << "CenterX" << "CenterX";
    QTest::newRow("ScaleY") << "ScaleY" << "ScaleY";
    QTest::newRow("MinWidth") << "MinWidth" << "MinWidth";
    QTest::newRow("GradientFill") << "GradientFill" << "GradientFill";
    QTest::newRow("FormOpen, a setting that only stores") << "FormOpen" << "FormOpen";
    for (const char *limit : {"MinWidth", "MaxWidth", "MinHeight", "MaxHeight"})
        QTest::addRow("%s: in the pass it runs", limit) << limit << "ResizeStarted";
    QTest::newRow("PrintSize: in the pass it runs") << "PrintSize" << "ResizeStarted";
}

void tst_PublicSurface::slotsMayDeleteTheControl()
{
    QFETCH(QString, call);
    QFETCH(QString, at);
    QWidget form;
    form.resize(400, 300);
    auto *logo = new QLabel(&form);
    logo->setObjectName(QStringLiteral("logo"));
    QPointer<VelmoraControl> v = new VelmoraControl(&form);
    v->setResizeOnMouseUp(false);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return v->isFormReady(); }, 2000));
    connect(v, &VelmoraControl::PropertyChanged, v, [&](const QString &name) {
        if (name == at)
            delete v.data();
    });
    if (at == QLatin1String("ResizeStarted"))
        connect(v, &VelmoraControl::ResizeStarted, v, [&] { delete v.data(); });
    if (at == QLatin1String("ResizeDone"))
        connect(v, &VelmoraControl::ResizeDone, v, [&] { delete v.data(); });
    if (call == QLatin1String("setOptions"))
        v->setOptions(logo, VelmoraControl::DontScaleLeft | VelmoraControl::DontScaleTop | VelmoraControl::DontScaleHeight);
    else if (call == QLatin1String("ScaleControls"))
        v->setScaleControls(false);
    else if (call == QLatin1String("StayOnTop"))
        v->setStayOnTop(true);
    else if (call == QLatin1String("CenterX"))
        v->setCenterX(true);
    else if (call == QLatin1String("ScaleY"))
        v->setScaleY(50);
    else if (call == QLatin1String("MinWidth"))
        v->setMinWidth(3000);
    else if (call == QLatin1String("MaxWidth"))
        v->setMaxWidth(30000);
    else if (call == QLatin1String("MinHeight"))
        v->setMinHeight(3000);
    else if (call == QLatin1String("MaxHeight"))
        v->setMaxHeight(30000);
    else if (call == QLatin1String("FormOpen"))
        v->setFormOpen(VelmoraControl::FoWipeLeft);
    else if (call == QLatin1String("PrintSize"))
        v->PrintSize(true, 500, 400, 3);
    else
        v->setGradientFill(true);
    QVERIFY(!v);
    form.resize(500, 400); // the form lives on without it
    QTest::qWait(10);
}

QTEST_MAIN(tst_PublicSurface)
#include "tst_publicsurface.moc"
