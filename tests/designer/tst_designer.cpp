// The Qt Designer plugin, loaded from the build tree as Designer loads it,
// in a real form editor (Designer's own components, without its main
// window): the widget box, the settings dialog writing through the form
// window, undo, and the .ui it saves.
//
// The plugin carries its own copy of Velmora, so the widgets it makes are
// reached through QObject's properties and Qt's widget classes only.
#include "SettingsTable.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"

#include <QtDesigner/QDesignerComponents>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QDesignerWidgetBoxInterface>
#include <QtDesigner/QExtensionManager>

#include <QBuffer>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPluginLoader>
#include <QPushButton>
#include <QTabWidget>
#include <QUiLoader>
#include <QUndoStack>
#include <QXmlStreamReader>
#include <QtTest>

#include <functional>
#include <memory>

class tst_Designer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void widgets_data();
    void widgets();
    void widgetBoxGroup();
    void uiLoaderMakesRunningWidgets();
    void savesDesignReference_data();
    void savesDesignReference();
    void pagesWriteThroughTheFormWindow_data();
    void pagesWriteThroughTheFormWindow();
    void undoAndRedo();
    void savedFormScales();
    void optionsFollowTheirControl_data();
    void optionsFollowTheirControl();
    void everySettingSurvivesTheEditor_data();
    void everySettingSurvivesTheEditor();

private:
    QDesignerFormWindowInterface *openForm(const QString &ui);
    void closeForms();
    QDesignerCustomWidgetCollectionInterface *m_collection = nullptr;
    QDesignerFormEditorInterface *m_core = nullptr;
    // As Designer tears itself down: forms, tool windows, then the editor.
    std::unique_ptr<QObject> m_editorOwner;
    std::unique_ptr<QWidget> m_top;
    QList<QDesignerFormWindowInterface *> m_forms;
};

namespace {

QString designedForm()
{
    QFile file(QStringLiteral(DESIGNED_FORM));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The <property> elements of one widget in a .ui, by name, as text.
QMap<QString, QString> savedProperties(const QString &ui, const QString &widget)
{
    QMap<QString, QString> out;
    QXmlStreamReader xml(ui);
    int depth = 0, widgetDepth = -1;
    QString property;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            ++depth;
            if (xml.name() == QLatin1String("widget") && xml.attributes().value(QLatin1String("name")) == widget)
                widgetDepth = depth;
            else if (widgetDepth > 0 && depth == widgetDepth + 1 && xml.name() == QLatin1String("property"))
                property = xml.attributes().value(QLatin1String("name")).toString();
            else if (!property.isEmpty() && depth == widgetDepth + 2)
                out.insert(property, xml.readElementText(QXmlStreamReader::IncludeChildElements).simplified()), --depth;
        } else if (xml.isEndElement()) {
            if (depth == widgetDepth)
                widgetDepth = -1;
            if (depth == widgetDepth + 1)
                property.clear();
            --depth;
        }
    }
    return out;
}

// The notr attribute of every <string> the component's properties hold.
QMap<QString, QString> untranslated(const QString &ui)
{
    QMap<QString, QString> out;
    QXmlStreamReader xml(ui);
    bool inVelmora = false;
    QString property;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("widget"))
            inVelmora = xml.attributes().value(QLatin1String("class")) == QLatin1String("VelmoraControl");
        else if (inVelmora && xml.name() == QLatin1String("property"))
            property = xml.attributes().value(QLatin1String("name")).toString();
        else if (inVelmora && xml.name() == QLatin1String("string"))
            out.insert(property, xml.attributes().value(QLatin1String("notr")).toString());
    }
    return out;
}

QMap<QString, QString> velmoraOf(QDesignerFormWindowInterface *form)
{
    return savedProperties(form->contents(), QStringLiteral("velmora"));
}

QWidget *velmoraIn(QDesignerFormWindowInterface *form)
{
    return form->mainContainer()->findChild<QWidget *>(QStringLiteral("velmora"));
}

// Triggers the control's "Velmora Properties..." and, once its dialog is
// up, lets `drive` work it; the dialog is closed with `button`.
bool editSettings(QDesignerFormEditorInterface *core, QWidget *velmora, QDialogButtonBox::StandardButton button,
                  const std::function<void(QDialog *)> &drive)
{
    auto *menu = qt_extension<QDesignerTaskMenuExtension *>(core->extensionManager(), velmora);
    if (!menu || menu->taskActions().size() != 1 || menu->preferredEditAction() != menu->taskActions().first()
        || menu->preferredEditAction()->text() != QLatin1String("Velmora Properties..."))
        return false;
    bool shown = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        shown = true;
        drive(dialog);
        if (button == QDialogButtonBox::Apply) {
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Apply)->click();
            button = QDialogButtonBox::Cancel;
        }
        dialog->findChild<QDialogButtonBox *>()->button(button)->click();
    });
    menu->preferredEditAction()->trigger();
    return shown;
}

QWidget *page(QDialog *dialog, const char *name)
{
    return dialog->findChild<QTabWidget *>()->findChild<QWidget *>(QLatin1String(name));
}

void check(QWidget *page, const QString &item)
{
    auto *list = page->findChild<QListWidget *>(QStringLiteral("List1"));
    const auto found = list->findItems(item, Qt::MatchExactly);
    QVERIFY2(!found.isEmpty(), qPrintable(item));
    list->setCurrentItem(found.first());
    found.first()->setCheckState(Qt::Checked);
}

} // namespace

void tst_Designer::initTestCase()
{
    // As Designer finds it: in the designer folder of a plugin path.
    QCoreApplication::addLibraryPath(QStringLiteral(VELMORA_PLUGIN_DIR));
    QPluginLoader loader(QStringLiteral(VELMORA_PLUGIN_DIR "/designer/libvelmoradesigner.so"));
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    m_collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY(m_collection);

    QDesignerComponents::initializeResources();
    m_editorOwner = std::make_unique<QObject>();
    m_top = std::make_unique<QWidget>();
    m_core = QDesignerComponents::createFormEditor(m_editorOwner.get());
    m_core->setTopLevel(m_top.get());
    m_core->setWidgetBox(QDesignerComponents::createWidgetBox(m_core, m_top.get()));
    QDesignerComponents::initializePlugins(m_core);
    QDesignerComponents::createTaskMenu(m_core, m_top.get());
    m_core->setPropertyEditor(QDesignerComponents::createPropertyEditor(m_core, m_top.get()));
    m_core->setObjectInspector(QDesignerComponents::createObjectInspector(m_core, m_top.get()));
    new QDesignerIntegration(m_core, m_top.get());
    m_core->widgetBox()->load();
}

void tst_Designer::cleanupTestCase()
{
    closeForms();
    m_top.reset();
    m_editorOwner.reset();
}

void tst_Designer::closeForms()
{
    for (QDesignerFormWindowInterface *old : std::as_const(m_forms)) {
        m_core->formWindowManager()->removeFormWindow(old);
        delete old;
    }
    m_forms.clear();
}

QDesignerFormWindowInterface *tst_Designer::openForm(const QString &ui)
{
    QDesignerFormWindowManagerInterface *manager = m_core->formWindowManager();
    closeForms();
    QDesignerFormWindowInterface *form = manager->createFormWindow(m_top.get());
    m_forms << form;
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QString error;
    if (!form->setContents(&buffer, &error)) {
        qWarning("%s", qPrintable(error));
        return nullptr;
    }
    manager->setActiveFormWindow(form);
    return form;
}

void tst_Designer::widgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("header");
    QTest::addColumn<bool>("visibleWhenRunning");
    QTest::newRow("the component") << "VelmoraControl" << "control/VelmoraControl.h" << false;
    QTest::newRow("line") << "VelmoraLine" << "widgets/VelmoraLine.h" << true;
    QTest::newRow("shape") << "VelmoraShape" << "widgets/VelmoraShape.h" << true;
    QTest::newRow("image list") << "VelmoraImageList" << "widgets/VelmoraImageList.h" << false;
}

void tst_Designer::widgets()
{
    QFETCH(QString, name);
    QFETCH(QString, header);
    QFETCH(bool, visibleWhenRunning);
    QDesignerCustomWidgetInterface *widget = nullptr;
    for (QDesignerCustomWidgetInterface *w : m_collection->customWidgets())
        if (w->name() == name)
            widget = w;
    QVERIFY(widget);
    QCOMPARE(widget->group(), QStringLiteral("Velmora"));
    QCOMPARE(widget->includeFile(), header);
    QVERIFY(!widget->isContainer());
    QVERIFY(!widget->toolTip().isEmpty());
    QVERIFY(widget->whatsThis().contains(name));
    // Drawn at the widget box's sizes, not scaled from one.
    QVERIFY(widget->icon().availableSizes().contains(QSize(16, 16)));
    QVERIFY(widget->icon().availableSizes().contains(QSize(32, 32)));
    QVERIFY(!widget->icon().pixmap(22, 22).toImage().isNull());
    QXmlStreamReader xml(widget->domXml());
    while (xml.readNextStartElement() && xml.name() != QLatin1String("widget")) {
    }
    QCOMPARE(xml.attributes().value(QLatin1String("class")).toString(), name);

    // Made for a running form (as an application's QUiLoader makes it):
    // the component and the image list stay hidden.
    QWidget form;
    QWidget *made = widget->createWidget(&form);
    QVERIFY(made);
    QCOMPARE(QLatin1String(made->metaObject()->className()), name);
    made->show();
    form.show();
    QCOMPARE(made->isVisible(), visibleWhenRunning);
    delete made;
}

void tst_Designer::widgetBoxGroup()
{
    QDesignerWidgetBoxInterface *box = m_core->widgetBox();
    QStringList names;
    for (int i = 0; i < box->categoryCount(); ++i) {
        const auto category = box->category(i);
        if (category.name() == QLatin1String("Velmora"))
            for (int j = 0; j < category.widgetCount(); ++j)
                names << category.widget(j).name();
    }
    QCOMPARE(names, QStringList({"VelmoraControl", "VelmoraLine", "VelmoraShape", "VelmoraImageList"}));
}

void tst_Designer::uiLoaderMakesRunningWidgets()
{
    // An application's plain QUiLoader finds the plugin on its plugin path
    // and makes the component through it: at run time, scaling the form.
    QUiLoader loader;
    QVERIFY(loader.availableWidgets().contains(QStringLiteral("VelmoraControl")));
    QByteArray bytes = designedForm().toUtf8();
    QBuffer buffer(&bytes);
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    QVERIFY(form);
    QWidget *velmora = form->findChild<QWidget *>(QStringLiteral("velmora"));
    QVERIFY(velmora);
    QCOMPARE(velmora->metaObject()->className(), "VelmoraControl");
    auto *label = form->findChild<QLabel *>(QStringLiteral("lblName"));
    form->show();
    QVERIFY(!velmora->isVisible());
    form->resize(800, 600);
    QTRY_COMPARE(label->geometry(), QRect(40, 40, 240, 48));
}

void tst_Designer::savesDesignReference_data()
{
    QTest::addColumn<QString>("formChange");
    QTest::addColumn<QSize>("editorSize"); // the form's size when saved; empty: as loaded
    QTest::addColumn<QStringList>("expected"); // DesignFormWidth, Height, ScaleWidth, ScaleHeight
    QTest::newRow("as loaded, in twips") << QString() << QSize() << QStringList({"6000", "4500", "6000", "4500"});
    QTest::newRow("resized in the editor") << QString() << QSize(600, 450) << QStringList({"9000", "6750", "9000", "6750"});
    QTest::newRow("a form in pixels")
        << R"(<property name="ScaleMode" stdset="0"><number>3</number></property>)" << QSize()
        << QStringList({"6000", "4500", "400", "300"});
    QTest::newRow("a form in millimetres")
        << R"(<property name="ScaleMode" stdset="0"><number>6</number></property>)" << QSize(480, 360)
        << QStringList({"7200", "5400", "127", "95.25"});
}

void tst_Designer::savesDesignReference()
{
    QFETCH(QString, formChange);
    QFETCH(QSize, editorSize);
    QFETCH(QStringList, expected);
    QString ui = designedForm();
    ui.replace(QLatin1String("<string>Designed form</string>\n  </property>"),
               QLatin1String("<string>Designed form</string>\n  </property>\n  ") + formChange);
    QDesignerFormWindowInterface *form = openForm(ui);
    QVERIFY(form);
    if (editorSize.isValid())
        form->cursor()->setWidgetProperty(form->mainContainer(), QStringLiteral("geometry"),
                                          QRect(QPoint(0, 0), editorSize));
    const auto saved = velmoraOf(form);
    QStringList sizes;
    for (const char *name : {"DesignFormWidth", "DesignFormHeight", "DesignFormScaleWidth", "DesignFormScaleHeight"})
        sizes << QString::number(saved.value(QLatin1String(name)).toDouble());
    QCOMPARE(sizes, expected);
    // The rest as it was given, the count too (which the property editor
    // does not show).
    QCOMPARE(saved.value(QStringLiteral("ScaleBorders")), QStringLiteral("false"));
    QCOMPARE(saved.value(QStringLiteral("ControlFlagCount")), QStringLiteral("2"));
    QCOMPARE(saved.value(QStringLiteral("ControlFlagControlKey2")), QStringLiteral("lblDeleted"));
    // A form written when keys were translatable is saved with them not.
    QCOMPARE(untranslated(form->contents()).value(QStringLiteral("ControlFlagControlKey2")), QStringLiteral("true"));
    // Saved, not shown: the pages edit the count, the form is the design.
    auto *sheet = qt_extension<QDesignerPropertySheetExtension *>(m_core->extensionManager(), velmoraIn(form));
    for (const char *hidden : {"ControlFlagCount", "DesignFormWidth", "DesignFormHeight", "DesignFormScaleWidth",
                               "DesignFormScaleHeight"}) {
        const int index = sheet->indexOf(QLatin1String(hidden));
        QVERIFY(index >= 0 && !sheet->isVisible(index));
    }
    QVERIFY(sheet->isVisible(sheet->indexOf(QStringLiteral("ScaleBorders"))));
}

void tst_Designer::pagesWriteThroughTheFormWindow_data()
{
    QTest::addColumn<QDialogButtonBox::StandardButton>("button");
    QTest::addColumn<bool>("edit");
    QTest::addColumn<bool>("written");
    QTest::newRow("OK writes the edits") << QDialogButtonBox::Ok << true << true;
    QTest::newRow("Apply writes them, a later Cancel keeps them") << QDialogButtonBox::Apply << true << true;
    QTest::newRow("Cancel writes nothing") << QDialogButtonBox::Cancel << true << false;
    QTest::newRow("OK without an edit still drops the entry of a deleted control")
        << QDialogButtonBox::Ok << false << true;
}

void tst_Designer::pagesWriteThroughTheFormWindow()
{
    QFETCH(QDialogButtonBox::StandardButton, button);
    QFETCH(bool, edit);
    QFETCH(bool, written);
    QDesignerFormWindowInterface *form = openForm(designedForm());
    QVERIFY(form);
    QWidget *velmora = velmoraIn(form);
    const auto before = velmoraOf(form);
    const int history = form->commandHistory()->count();
    QVERIFY(editSettings(m_core, velmora, button, [&](QDialog *dialog) {
        QVERIFY(dialog->windowTitle().contains(QLatin1String("velmora")));
        if (!edit)
            return;
        page(dialog, "General")->findChild<QCheckBox *>(QStringLiteral("chkCenterX"))->click();
        auto *minWidth = page(dialog, "General")->findChild<QLineEdit *>(QStringLiteral("txtMinWidth"));
        minWidth->setText(QStringLiteral("4500"));
        QWidget *controls = page(dialog, "ScaleControls");
        check(controls, QStringLiteral("cmdGo")); // all four of its sides locked
        // Its left edge free, its right kept: at most two locks of an axis.
        controls->findChild<QCheckBox *>(QStringLiteral("chkLockLeft"))->click();
        controls->findChild<QCheckBox *>(QStringLiteral("chkLockRight"))->click();
        check(page(dialog, "ScaleBorders"), QStringLiteral("shpBox"));
    }));
    const auto after = velmoraOf(form);
    const int steps = form->commandHistory()->count() - history;
    if (!written) {
        QCOMPARE(after, before);
        QCOMPARE(steps, 0);
        return;
    }
    QCOMPARE(steps, 1); // one undoable step, whatever it changed
    // The entries follow the form's controls, in its order: lblName keeps
    // its font exemption, the deleted label's entry is gone.
    QCOMPARE(after.value(QStringLiteral("ControlFlagControlKey1")), QStringLiteral("lblName"));
    QCOMPARE(after.value(QStringLiteral("ControlFlagDontScaleFont1")), QStringLiteral("true"));
    QVERIFY(!after.values().contains(QStringLiteral("lblDeleted")));
    if (!edit) {
        // One entry per control of the form, in its order.
        QCOMPARE(after.value(QStringLiteral("ControlFlagCount")), QStringLiteral("4"));
        QVERIFY(!after.contains(QStringLiteral("ControlFlagDontScaleFont2")));
        return;
    }
    QCOMPARE(after.value(QStringLiteral("CenterX")), QStringLiteral("true"));
    QCOMPARE(after.value(QStringLiteral("MinWidth")), QStringLiteral("4500"));
    // lblName, cmdGo, shpBox and the component itself.
    QCOMPARE(after.value(QStringLiteral("ControlFlagCount")), QStringLiteral("4"));
    QCOMPARE(after.value(QStringLiteral("ControlFlagControlKey2")), QStringLiteral("cmdGo"));
    for (const char *flag : {"Control", "Top", "Width", "Height", "Right"})
        QCOMPARE(after.value(QStringLiteral("ControlFlagDontScale%1%2").arg(QLatin1String(flag)).arg(2)),
                 QStringLiteral("true"));
    QVERIFY(!after.contains(QStringLiteral("ControlFlagDontScaleLeft2")));
    QVERIFY(!after.contains(QStringLiteral("ControlFlagDontScaleBottom2")));
    QCOMPARE(after.value(QStringLiteral("ControlFlagControlKey3")), QStringLiteral("shpBox"));
    QCOMPARE(after.value(QStringLiteral("ControlFlagDontScaleBorder3")), QStringLiteral("true"));
    // The control itself follows, as the form's editor shows it.
    QCOMPARE(velmora->property("CenterX"), QVariant(true));
    QCOMPARE(velmora->property("ControlFlagCount"), QVariant(4));
}

void tst_Designer::undoAndRedo()
{
    QDesignerFormWindowInterface *form = openForm(designedForm());
    QVERIFY(form);
    QWidget *velmora = velmoraIn(form);
    const auto before = velmoraOf(form);
    QVERIFY(editSettings(m_core, velmora, QDialogButtonBox::Ok, [](QDialog *dialog) {
        page(dialog, "General")->findChild<QCheckBox *>(QStringLiteral("chkStayOnTop"))->click();
        check(page(dialog, "ScaleFonts"), QStringLiteral("cmdGo"));
        check(page(dialog, "ScaleControls"), QStringLiteral("lblName"));
    }));
    const auto edited = velmoraOf(form);
    QVERIFY(edited != before);
    QVERIFY(form->isDirty());
    QUndoStack *history = form->commandHistory();
    QVERIFY(history->undoText().contains(QLatin1String("velmora")));
    history->undo();
    QCOMPARE(velmoraOf(form), before);
    QCOMPARE(velmora->property("StayOnTop"), QVariant(false));
    QCOMPARE(velmora->property("ControlFlagCount"), QVariant(2));
    history->redo();
    QCOMPARE(velmoraOf(form), edited);
    // Designer's form is no window of its own: the editor stays where it is.
    QVERIFY(!(m_top->windowFlags() & Qt::WindowStaysOnTopHint));
}

void tst_Designer::savedFormScales()
{
    // What the editor saves, loaded as an application loads it: the
    // options set on the pages act on the running form.
    QDesignerFormWindowInterface *form = openForm(designedForm());
    QVERIFY(form);
    QVERIFY(editSettings(m_core, velmoraIn(form), QDialogButtonBox::Ok, [](QDialog *dialog) {
        QWidget *controls = page(dialog, "ScaleControls");
        check(controls, QStringLiteral("cmdGo"));
        auto *borders = page(dialog, "General")->findChild<QCheckBox *>(QStringLiteral("chkScaleBorders"));
        QVERIFY(!borders->isChecked());
        borders->click();
        check(page(dialog, "ScaleBorders"), QStringLiteral("shpBox"));
    }));
    form->cursor()->setWidgetProperty(form->mainContainer(), QStringLiteral("geometry"), QRect(0, 0, 500, 400));
    QByteArray bytes = form->contents().toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> running(loader.load(&buffer));
    QVERIFY(running);
    auto *velmora = running->findChild<VelmoraControl *>();
    QVERIFY(velmora);
    QCOMPARE(velmora->DesignFormScaleWidth(), 7500.0);
    QCOMPARE(velmora->DesignFormScaleHeight(), 6000.0);
    auto *label = running->findChild<QLabel *>(QStringLiteral("lblName"));
    auto *go = running->findChild<QPushButton *>(QStringLiteral("cmdGo"));
    auto *shape = running->findChild<QWidget *>(QStringLiteral("shpBox"));
    const QFont labelFont = label->font();
    // Shown at its saved size, then twice as large: the design reference is
    // 500 x 400.
    running->resize(500, 400);
    running->show();
    QTRY_VERIFY(velmora->isFormReady());
    running->resize(1000, 800);
    QTRY_COMPARE(label->geometry(), QRect(40, 40, 240, 48));
    QCOMPARE(label->font(), labelFont); // its font exemption came from the .ui
    QCOMPARE(go->geometry(), QRect(20, 60, 100, 30)); // exempt as a whole
    QCOMPARE(shape->geometry(), QRect(400, 200, 200, 120));
    QCOMPARE(shape->property("BorderWidth"), QVariant(2));
}

void tst_Designer::optionsFollowTheirControl_data()
{
    // lblName exempt from scaling (its four locks) on the pages; then, in
    // the editor, what happens to it; then another page edited and OK.
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("key");      // lblName's key afterwards
    QTest::newRow("brought to front") << "raise" << "lblName";
    QTest::newRow("sent to back") << "lower" << "lblName";
    QTest::newRow("renamed") << "rename" << "lblTitle";
    QTest::newRow("renamed, and the rename undone") << "rename undo" << "lblName";
    QTest::newRow("renamed, undone and redone") << "rename undo redo" << "lblTitle";
}

void tst_Designer::optionsFollowTheirControl()
{
    QFETCH(QString, change);
    QFETCH(QString, key);
    QDesignerFormWindowInterface *form = openForm(designedForm());
    QVERIFY(form);
    QVERIFY(editSettings(m_core, velmoraIn(form), QDialogButtonBox::Ok,
                         [](QDialog *dialog) { check(page(dialog, "ScaleControls"), QStringLiteral("lblName")); }));
    auto *lbl = form->mainContainer()->findChild<QLabel *>(QStringLiteral("lblName"));
    QUndoStack *history = form->commandHistory();
    for (const QString &step : change.split(u' ')) {
        if (step == QLatin1String("raise"))
            lbl->raise();
        else if (step == QLatin1String("lower"))
            lbl->lower();
        else if (step == QLatin1String("rename"))
            form->cursor()->setWidgetProperty(lbl, QStringLiteral("objectName"), QStringLiteral("lblTitle"));
        else if (step == QLatin1String("undo"))
            history->undo();
        else if (step == QLatin1String("redo"))
            history->redo();
    }
    QCOMPARE(lbl->objectName(), key);
    // Another page edited: every option stays with its own control.
    QVERIFY(editSettings(m_core, velmoraIn(form), QDialogButtonBox::Ok,
                         [](QDialog *dialog) { check(page(dialog, "ScaleFonts"), QStringLiteral("cmdGo")); }));
    const auto saved = velmoraOf(form);
    const auto optionsOf = [&](const QString &control) {
        QStringList on;
        for (auto it = saved.cbegin(); it != saved.cend(); ++it) {
            if (it.key().startsWith(QLatin1String("ControlFlagControlKey")) && it.value() == control) {
                const QString n = it.key().mid(int(qstrlen("ControlFlagControlKey")));
                for (const char *flag : {"Control", "Font", "Left", "Top", "Width", "Height", "Right", "Bottom"})
                    if (saved.value(QStringLiteral("ControlFlagDontScale%1%2").arg(QLatin1String(flag), n))
                        == QLatin1String("true"))
                        on << QLatin1String(flag);
            }
        }
        return on;
    };
    QCOMPARE(optionsOf(key), QStringList({"Control", "Font", "Left", "Top", "Width", "Height"}));
    QCOMPARE(optionsOf(QStringLiteral("cmdGo")), QStringList{"Font"});
    QCOMPARE(optionsOf(QStringLiteral("velmora")), QStringList());
    // Names of controls are nothing for a translator.
    for (auto it = saved.cbegin(); it != saved.cend(); ++it)
        if (it.key().startsWith(QLatin1String("ControlFlagControlKey")))
            QCOMPARE(untranslated(form->contents()).value(it.key()), QStringLiteral("true"));
}

void tst_Designer::everySettingSurvivesTheEditor_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("opened and saved") << "save";
    QTest::newRow("Velmora Properties..., OK without an edit") << "ok";
    QTest::newRow("Velmora Properties..., Cancel") << "cancel";
}

void tst_Designer::everySettingSurvivesTheEditor()
{
    QFETCH(QString, how);
    VelmoraControl configured;
    routes::configure(configured);
    QDesignerFormWindowInterface *form = openForm(routes::formWith(configured.writeProperties()));
    QVERIFY(form);
    if (how != QLatin1String("save"))
        QVERIFY(editSettings(m_core, velmoraIn(form),
                             how == QLatin1String("ok") ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel,
                             [](QDialog *) {}));
    const QString ui = form->contents();
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> loaded(loader.load(&buffer));
    QVERIFY(loaded);
    auto *v = loaded->findChild<VelmoraControl *>();
    QVERIFY(v);
    for (const routes::Setting &s : routes::nonDefaultSettings())
        QVERIFY2(v->property(s.name) == configured.property(s.name),
                 qPrintable(QStringLiteral("%1: %2, not %3")
                                .arg(QLatin1String(s.name), v->property(s.name).toString(),
                                     configured.property(s.name).toString())));
    QCOMPARE(v->ControlFlagCount(), configured.ControlFlagCount());
    for (int i = 1; i <= v->ControlFlagCount(); ++i)
        QCOMPARE(v->ControlFlagControlKey(i), configured.ControlFlagControlKey(i));
    // Saved by the editor, the texts stay out of translators' hands.
    const auto notr = untranslated(ui);
    for (const char *name : {"WindowName", "ReplaceFontsWith", "ControlFlagControlKey1"})
        QCOMPARE(notr.value(QLatin1String(name)), QStringLiteral("true"));
}

QTEST_MAIN(tst_Designer)
#include "tst_designer.moc"
