// Controls whose items show images from image lists, on real widgets: the
// binding itself, a form built by uic and by QUiLoader, the resize pass
// taking the controls off the lists it rebuilds and putting them back, the
// lists it leaves alone, the failure it reports, and toolbars.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"
#include "widgets/VelmoraImageList.h"

#include "ui_richform.h"

#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

namespace {

QPixmap solid(Qt::GlobalColor color, int side = 32)
{
    QPixmap pm(side, side);
    pm.fill(color);
    return pm;
}

QColor centre(const QIcon &icon, const QSize &size)
{
    if (icon.isNull())
        return QColor();
    const QImage image = icon.pixmap(size).toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

void settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

QSize iconSizeOf(const QWidget *w)
{
    return w->property("iconSize").toSize();
}

// What one control shows for its first item, whatever the control is.
QIcon firstItemIcon(QWidget *w)
{
    if (auto *bar = qobject_cast<QToolBar *>(w))
        return bar->actions().value(0) ? bar->actions().value(0)->icon() : QIcon();
    if (auto *button = qobject_cast<QToolButton *>(w))
        return button->icon();
    if (auto *tree = qobject_cast<QTreeWidget *>(w))
        return tree->topLevelItem(0) ? tree->topLevelItem(0)->icon(0) : QIcon();
    if (auto *list = qobject_cast<QListWidget *>(w))
        return list->item(0) ? list->item(0)->icon() : QIcon();
    if (auto *tabs = qobject_cast<QTabWidget *>(w))
        return tabs->tabIcon(0);
    if (auto *bar = qobject_cast<QTabBar *>(w))
        return bar->tabIcon(0);
    return QIcon();
}

// A control of one kind with a first item, referring to image `ref`.
QWidget *makeControl(const QString &kind, QWidget *parent, const QVariant &ref)
{
    QWidget *w = nullptr;
    if (kind == QLatin1String("toolbar")) {
        auto *bar = new QToolBar(parent);
        bar->addAction(QStringLiteral("Go"))->setProperty("Image", ref);
        w = bar;
    } else if (kind == QLatin1String("tool button")) {
        auto *button = new QToolButton(parent);
        button->setProperty("Image", ref);
        w = button;
    } else if (kind == QLatin1String("tree")) {
        auto *tree = new QTreeWidget(parent);
        (new QTreeWidgetItem(tree, {QStringLiteral("node")}))->setData(0, VelmoraImageList::ImageRole, ref);
        w = tree;
    } else if (kind.startsWith(QLatin1String("list"))) {
        auto *list = new QListWidget(parent);
        list->setViewMode(kind.endsWith(QLatin1String("icons")) ? QListView::IconMode : QListView::ListMode);
        auto *item = new QListWidgetItem(QStringLiteral("item"), list);
        item->setData(VelmoraImageList::ImageRole, ref);
        w = list;
    } else if (kind == QLatin1String("tab widget")) {
        auto *tabs = new QTabWidget(parent);
        auto *page = new QWidget;
        page->setProperty("Image", ref);
        tabs->addTab(page, QStringLiteral("page"));
        w = tabs;
    } else {
        auto *bar = new QTabBar(parent);
        bar->addTab(QStringLiteral("tab"));
        bar->setTabData(0, ref);
        w = bar;
    }
    w->setObjectName(QStringLiteral("control"));
    w->setGeometry(10, 10, 160, 100);
    return w;
}

struct ScaledForm {
    QWidget widget;
    VelmoraControl *velmora = nullptr;
    int errors = 0;
    QString description, reason;

    void start()
    {
        widget.resize(400, 300);
        velmora = new VelmoraControl(&widget);
        velmora->setResizeOnMouseUp(false);
        QObject::connect(velmora, &VelmoraControl::Error, &widget, [this](const QString &text, const VelmoraError &why) {
            ++errors;
            description = text;
            reason = why.Description;
        });
        widget.show();
        QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
        settle();
    }
    void scale(double factor)
    {
        widget.resize(qRound(400 * factor), qRound(300 * factor));
        settle();
    }
    velmora::ControlFlags *flags(const char *key)
    {
        return VelmoraControlPrivate::get(velmora)->engine.store().flags(key);
    }
};

} // namespace

class tst_RichControls : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void captureKnowsEachKind_data();
    void captureKnowsEachKind();
    void itemsShowTheirListImage_data();
    void itemsShowTheirListImage();
    void loadedForm_data();
    void loadedForm();
    void passKeepsReferencesAndRendersFromTheDesign_data();
    void passKeepsReferencesAndRendersFromTheDesign();
    void listMarkedDontScaleGraphicIsLeftAlone();
    void foreignFollowerEndsThePassWithError();
    void toolbarHeightFitEnds_data();
    void toolbarHeightFitEnds();
};

void tst_RichControls::captureKnowsEachKind_data()
{
    // Which of its items the pass will take off an image list and put back.
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("has"); // t tabs, b buttons, n nodes, i ImageList, 2 Icons and SmallIcons
    QTest::newRow("toolbar") << "toolbar" << "bi";
    QTest::newRow("tool button") << "tool button" << "i";
    QTest::newRow("tree") << "tree" << "ni";
    QTest::newRow("list widget") << "list icons" << "2";
    QTest::newRow("tab bar: a tab strip") << "tab bar" << "ti";
    QTest::newRow("tab widget: its tabs are its own") << "tab widget" << "i";
    QTest::newRow("anything else") << "label" << "";
}

void tst_RichControls::captureKnowsEachKind()
{
    QFETCH(QString, kind);
    QFETCH(QString, has);
    ScaledForm f;
    if (kind == QLatin1String("label"))
        (new QLabel(QStringLiteral("text"), &f.widget))->setObjectName(QStringLiteral("control"));
    else
        makeControl(kind, &f.widget, QStringLiteral("key"));
    f.start();
    if (QTest::currentTestFailed())
        return;
    const velmora::ControlClass *rec = VelmoraControlPrivate::get(f.velmora)->engine.store().info("control");
    QVERIFY(rec);
    QCOMPARE(rec->ControlHasTabs, has.contains(QLatin1Char('t')));
    QCOMPARE(rec->ControlHasButtons, has.contains(QLatin1Char('b')));
    QCOMPARE(rec->ControlHasNodes, has.contains(QLatin1Char('n')));
    QCOMPARE(rec->ControlHasImageList, has.contains(QLatin1Char('i')));
    QCOMPARE(rec->ControlHasTwoImageLists, has.contains(QLatin1Char('2')));
    if (rec->ControlHasButtons) // the size of its buttons, in twips
        QVERIFY(rec->ButtonWidth >= 15 * 16 && rec->ButtonHeight >= 15 * 16);
}

void tst_RichControls::itemsShowTheirListImage_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QVariant>("ref");
    QTest::addColumn<bool>("byName"); // bound the Designer way, by the list's objectName
    const char *kinds[] = {"toolbar", "tool button", "tree", "list icons", "list rows", "tab widget", "tab bar"};
    for (const char *kind : kinds) {
        QTest::addRow("%s, by key, named", kind) << QString::fromLatin1(kind) << QVariant(QStringLiteral("blue")) << true;
        QTest::addRow("%s, by number, from code", kind) << QString::fromLatin1(kind) << QVariant(2) << false;
    }
}

void tst_RichControls::itemsShowTheirListImage()
{
    QFETCH(QString, kind);
    QFETCH(QVariant, ref);
    QFETCH(bool, byName);
    QWidget form;
    auto *images = new VelmoraImageList(&form);
    images->setObjectName(QStringLiteral("images"));
    images->add(solid(Qt::red), QStringLiteral("red"));
    images->add(solid(Qt::blue), QStringLiteral("blue"));
    QWidget *control = makeControl(kind, &form, ref);
    const bool listWidget = kind.startsWith(QLatin1String("list"));
    const char *which = !listWidget ? "ImageList" : kind.endsWith(QLatin1String("icons")) ? "Icons" : "SmallIcons";
    if (byName)
        control->setProperty(which, QStringLiteral("images"));
    else
        VelmoraImageList::setImageList(control, images, which);
    form.show();
    settle();

    QCOMPARE(VelmoraImageList::imageList(control, which), images);
    QCOMPARE(centre(firstItemIcon(control), QSize(16, 16)), QColor(Qt::blue));
    QCOMPARE(iconSizeOf(control), QSize(16, 16));

    // The list grows: the control follows, at the new size.
    images->setImageWidth(40);
    images->setImageHeight(40);
    settle();
    QCOMPARE(iconSizeOf(control), QSize(40, 40));
    QCOMPARE(firstItemIcon(control).actualSize(QSize(40, 40)), QSize(40, 40));

    // A reference to an image the list does not have shows none.
    images->remove(1);
    settle();
    QVERIFY(firstItemIcon(control).isNull());
}

void tst_RichControls::loadedForm_data()
{
    QTest::addColumn<bool>("uic");
    QTest::newRow("compiled by uic") << true;
    QTest::newRow("loaded by QUiLoader") << false;
}

void tst_RichControls::loadedForm()
{
    QFETCH(bool, uic);
    QWidget holder;
    QWidget *form = nullptr;
    Ui::RichForm ui;
    if (uic) {
        form = new QWidget(&holder);
        ui.setupUi(form);
    } else {
        QFile file(QStringLiteral(":/richform/richform.ui"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        VelmoraUiLoader loader;
        form = loader.load(&file, &holder);
        QVERIFY2(form, qPrintable(loader.errorString()));
    }
    holder.resize(form->size());
    auto *velmora = new VelmoraControl(form);
    velmora->setResizeOnMouseUp(false);
    holder.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    settle();

    auto *tools = form->findChild<QToolBar *>(QStringLiteral("tools"));
    auto *tree = form->findChild<QTreeWidget *>(QStringLiteral("tree"));
    auto *list = form->findChild<QListWidget *>(QStringLiteral("list"));
    auto *tabs = form->findChild<QTabWidget *>(QStringLiteral("tabs"));
    auto *help = form->findChild<QToolButton *>(QStringLiteral("helpButton"));
    QVERIFY(tools && tree && list && tabs && help);

    // What each item shows, by key and by number, from Designer's properties.
    const auto check = [&](const QSize &small, const QSize &large) {
        QCOMPARE(centre(tools->actions().at(0)->icon(), small), QColor(Qt::red));
        QCOMPARE(centre(tools->actions().at(1)->icon(), small), QColor(Qt::blue));
        QCOMPARE(centre(tree->topLevelItem(0)->icon(0), small), QColor(Qt::blue));
        QCOMPARE(centre(tree->topLevelItem(0)->child(0)->icon(0), small), QColor(Qt::green));
        QCOMPARE(centre(tree->topLevelItem(1)->icon(0), small), QColor(Qt::red));
        QCOMPARE(centre(list->item(0)->icon(), large), QColor(Qt::green));
        QCOMPARE(centre(list->item(1)->icon(), large), QColor(Qt::red));
        QCOMPARE(centre(tabs->tabIcon(0), small), QColor(Qt::green));
        QCOMPARE(centre(tabs->tabIcon(1), small), QColor(Qt::blue));
        QCOMPARE(centre(help->icon(), large), QColor(Qt::red));
        for (QWidget *w : {static_cast<QWidget *>(tools), static_cast<QWidget *>(tree), static_cast<QWidget *>(tabs)})
            QCOMPARE(iconSizeOf(w), small);
        QCOMPARE(iconSizeOf(list), large);
        QCOMPARE(iconSizeOf(help), large);
    };
    check(QSize(16, 16), QSize(32, 32));
    if (QTest::currentTestFailed())
        return;

    holder.resize(form->size() * 2);
    form->resize(holder.size());
    settle();
    check(QSize(32, 32), QSize(64, 64));
    if (QTest::currentTestFailed())
        return;
    holder.resize(form->size() / 2);
    form->resize(holder.size());
    settle();
    check(QSize(16, 16), QSize(32, 32));
}

void tst_RichControls::passKeepsReferencesAndRendersFromTheDesign_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"toolbar", "tree", "list icons", "list rows", "tab bar", "tool button"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void tst_RichControls::passKeepsReferencesAndRendersFromTheDesign()
{
    QFETCH(QString, kind);
    // A picture with detail: a copy scaled from a scaled copy differs.
    QImage detail(64, 64, QImage::Format_ARGB32);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            detail.setPixelColor(x, y, QColor((x * 37) % 256, (y * 53) % 256, ((x ^ y) * 29) % 256));
    const QIcon design(QPixmap::fromImage(detail));

    ScaledForm f;
    auto *images = new VelmoraImageList(&f.widget);
    images->setObjectName(QStringLiteral("images"));
    images->add(solid(Qt::red), QStringLiteral("red"));
    images->add(design, QStringLiteral("detail"));
    images->setTag(1, QStringLiteral("kept"));
    QWidget *control = makeControl(kind, &f.widget, QStringLiteral("detail"));
    const char *which = kind == QLatin1String("list rows") ? "SmallIcons" : kind == QLatin1String("list icons") ? "Icons" : "ImageList";
    VelmoraImageList::setImageList(control, images, which);
    f.start();
    if (QTest::currentTestFailed())
        return;

    // An item added after the layout was taken keeps its reference too.
    QVariant lateRef;
    if (auto *tree = qobject_cast<QTreeWidget *>(control)) {
        (new QTreeWidgetItem(tree, {QStringLiteral("late")}))->setData(0, VelmoraImageList::ImageRole, 1);
        lateRef = 1;
    }

    for (int round = 0; round < 20; ++round) {
        const double factor = round % 2 ? 0.5 : 2.0;
        f.scale(factor);
        const QSize size(qRound(16 * factor), qRound(16 * factor));
        QCOMPARE(images->imageSize(), size);
        QCOMPARE(images->count(), 2);
        QCOMPARE(images->key(1), QStringLiteral("detail"));
        QCOMPARE(images->tag(1), QStringLiteral("kept"));
        // One direct scaling of the design picture, whatever came before,
        // in the screen's device pixels.
        const qreal dpr = f.widget.devicePixelRatioF();
        const QSize device = (QSizeF(size) * dpr).toSize();
        const QImage direct = design.pixmap(size, dpr).toImage().scaled(device).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(images->pixmap(1).toImage().convertToFormat(QImage::Format_ARGB32), direct);
        QCOMPARE(iconSizeOf(control), size);
        QCOMPARE(firstItemIcon(control).pixmap(size, dpr).toImage().convertToFormat(QImage::Format_ARGB32), direct);
    }
    QCOMPARE(f.errors, 0);
    if (auto *tree = qobject_cast<QTreeWidget *>(control)) {
        QCOMPARE(tree->topLevelItem(1)->data(0, VelmoraImageList::ImageRole), lateRef);
        QCOMPARE(centre(tree->topLevelItem(1)->icon(0), QSize(8, 8)), QColor(Qt::red));
    }
}

void tst_RichControls::listMarkedDontScaleGraphicIsLeftAlone()
{
    ScaledForm f;
    auto *images = new VelmoraImageList(&f.widget);
    images->setObjectName(QStringLiteral("images"));
    images->add(solid(Qt::red), QStringLiteral("red"));
    auto *bar = static_cast<QToolBar *>(makeControl(QStringLiteral("toolbar"), &f.widget, QStringLiteral("red")));
    VelmoraImageList::setImageList(bar, images);
    f.start();
    if (QTest::currentTestFailed())
        return;
    f.flags("images")->DontScaleGraphic = true;
    QSignalSpy changed(bar->actions().at(0), &QAction::changed);
    QSignalSpy rebuilt(images, &VelmoraImageList::imagesChanged);
    f.scale(2.0);
    QCOMPARE(rebuilt.count(), 0);
    QCOMPARE(changed.count(), 0); // never taken off and put back
    QCOMPARE(iconSizeOf(bar), QSize(16, 16));
}

void tst_RichControls::foreignFollowerEndsThePassWithError()
{
    ScaledForm f;
    auto *images = new VelmoraImageList(&f.widget);
    images->setObjectName(QStringLiteral("images"));
    images->add(solid(Qt::red), QStringLiteral("red"));
    images->add(solid(Qt::blue), QStringLiteral("blue"));
    QWidget *tree = makeControl(QStringLiteral("tree"), &f.widget, QStringLiteral("blue"));
    VelmoraImageList::setImageList(tree, images);
    f.start();
    if (QTest::currentTestFailed())
        return;

    // A control on another window follows the list: the pass cannot tell
    // it, and must not rebuild the list under it.
    auto foreign = std::make_unique<QToolBar>();
    VelmoraImageList::setImageList(foreign.get(), images);
    f.scale(2.0);
    QCOMPARE(f.errors, 1);
    QCOMPARE(f.description, QStringLiteral("images has a one or more controls bound to it that is not supported by "
                                           "QxVelmora\r\n See QxVelmora Help File for more information\r\n"));
    QVERIFY2(f.reason.contains(QLatin1String("bound")), qPrintable(f.reason));
    QCOMPARE(images->count(), 2); // as far as it was rebuilt: not at all
    // The form's own tree follows its list again.
    images->setImageWidth(24);
    images->setImageHeight(24);
    settle();
    QCOMPARE(iconSizeOf(tree), QSize(24, 24));

    // The failed pass kept its reference size; the next size runs whole.
    foreign.reset();
    f.scale(1.5);
    QCOMPARE(f.errors, 1);
    QCOMPARE(images->imageSize(), QSize(24, 24));
    QCOMPARE(iconSizeOf(tree), QSize(24, 24));
    QCOMPARE(centre(firstItemIcon(tree), QSize(24, 24)), QColor(Qt::blue));
}

void tst_RichControls::toolbarHeightFitEnds_data()
{
    QTest::addColumn<bool>("mainWindow");
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("scaleGraphics");
    for (const bool graphics : {true, false})
        for (const double factor : {2.0, 0.5}) {
            const char *g = graphics ? "ScaleGraphics" : "no ScaleGraphics";
            QTest::addRow("placed on the form, x%.1f, %s", factor, g) << false << factor << graphics;
            QTest::addRow("main window's, x%.1f, %s", factor, g) << true << factor << graphics;
        }
}

void tst_RichControls::toolbarHeightFitEnds()
{
    QFETCH(bool, mainWindow);
    QFETCH(double, factor);
    QFETCH(bool, scaleGraphics);
    static QStringList messages;
    messages.clear();
    const auto previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        if (!text.contains(QLatin1String("propagateSizeHints")))
            messages << text;
    });

    QMainWindow window;
    auto *form = new QWidget;
    window.setCentralWidget(form);
    QToolBar *bar = nullptr;
    if (mainWindow) {
        bar = window.addToolBar(QStringLiteral("tools"));
    } else {
        bar = new QToolBar(form);
        bar->setGeometry(10, 10, 200, 30);
    }
    bar->setObjectName(QStringLiteral("bar"));
    bar->setIconSize(QSize(16, 16));
    QIcon icon;
    icon.addPixmap(solid(Qt::red, 16));
    icon.addPixmap(solid(Qt::blue, 64));
    bar->addAction(icon, QStringLiteral("Go"));
    window.resize(400, 300);
    auto *velmora = new VelmoraControl(form);
    velmora->setResizeOnMouseUp(false);
    velmora->setScaleGraphics(scaleGraphics);
    int done = 0;
    connect(velmora, &VelmoraControl::ResizeDone, velmora, [&] { ++done; });
    window.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    settle();
    const int designHeight = bar->height();
    done = 0;

    window.resize(window.size() * factor);
    settle();
    qInstallMessageHandler(previous);
    QVERIFY(done >= 1);
    QVERIFY2(messages.isEmpty(), qPrintable(messages.join(QLatin1Char('\n'))));
    // The toolbar follows the form as far as it can.
    if (mainWindow && factor > 1)
        QVERIFY2(bar->height() >= designHeight * 3 / 2,
                 qPrintable(QStringLiteral("%1 -> %2").arg(designHeight).arg(bar->height())));
    else if (factor < 1)
        QVERIFY(bar->height() <= designHeight);
    if (mainWindow) // with the form's smaller ratio; the form is what the toolbar leaves of the window
        QVERIFY2(qAbs(bar->iconSize().height() - 16 * factor) <= 1,
                 qPrintable(QString::number(bar->iconSize().height())));
}

QTEST_MAIN(tst_RichControls)
#include "tst_richcontrols.moc"
