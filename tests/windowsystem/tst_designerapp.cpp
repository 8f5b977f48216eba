// Qt Designer itself, started with the plugin from the build tree on a real
// X server (scripts/with-xvfb.sh): its widget box shows the Velmora group,
// found on the screen by the four widgets' icons; a VelmoraControl dragged
// from there onto a form shows as its icon; a double-click on the form's
// VelmoraControl opens its settings pages. The screens are kept as
// PNGs (in VELMORA_SCREENSHOT_DIR, or the test's temporary folder) for
// people to look at; scripts/designer-screenshots.sh takes them for the
// README.
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <QPluginLoader>
#include <QProcess>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

// Where `icon` is drawn on `screen`, pixel for pixel wherever the icon is
// opaque (its soft edges blend with what is behind), or a null point.
QPoint find(const QImage &screen, const QImage &icon)
{
    struct Pixel {
        int x, y;
        QRgb rgb;
    };
    std::vector<Pixel> opaque;
    for (int y = 0; y < icon.height(); ++y)
        for (int x = 0; x < icon.width(); ++x)
            if (qAlpha(icon.pixel(x, y)) == 255)
                opaque.push_back({x, y, icon.pixel(x, y) & 0xffffff});
    if (opaque.size() < 20)
        return {};
    const auto near = [](QRgb a, QRgb b) {
        return qAbs(qRed(a) - qRed(b)) <= 6 && qAbs(qGreen(a) - qGreen(b)) <= 6 && qAbs(qBlue(a) - qBlue(b)) <= 6;
    };
    for (int y = 0; y + icon.height() <= screen.height(); ++y)
        for (int x = 0; x + icon.width() <= screen.width(); ++x)
            if (std::all_of(opaque.cbegin(), opaque.cend(),
                            [&](const Pixel &p) { return near(screen.pixel(x + p.x, y + p.y), p.rgb); }))
                return {x, y};
    return {};
}

QImage grabScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

bool xdotool(const QStringList &args, QByteArray *out = nullptr)
{
    QProcess p;
    p.start(QStringLiteral("xdotool"), args);
    if (!p.waitForFinished(10000) || p.exitCode() != 0)
        return false;
    if (out)
        *out = p.readAllStandardOutput();
    return true;
}

} // namespace

class tst_DesignerApp : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void widgetBoxShowsVelmora();
    void dropFromTheWidgetBox();
    void doubleClickOpensThePages();

private:
    QString keep(const QImage &screen, const char *name);
    QDesignerCustomWidgetCollectionInterface *m_collection = nullptr;
    std::unique_ptr<QTemporaryDir> m_home;
    QRect m_boxEntry; // VelmoraControl's icon in the widget box
    QProcess m_designer;
};

void tst_DesignerApp::initTestCase()
{
    if (!QFile::exists(QStringLiteral(DESIGNER)))
        QSKIP("Qt Designer (Debian's designer-qt6) is not installed");
    // The icons as the plugin gives them to Designer.
    QPluginLoader loader(QStringLiteral(VELMORA_PLUGIN_DIR "/designer/libvelmoradesigner.so"));
    m_collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY2(m_collection, qPrintable(loader.errorString()));

    // A Designer of its own: Qt's own groups closed, so that Velmora's shows
    // without scrolling.
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    {
        QSettings settings(m_home->filePath(QStringLiteral("QtProject/Designer.conf")), QSettings::IniFormat);
        settings.setValue(QStringLiteral("WidgetBox/Closed categories"),
                          QStringList({"Layouts", "Spacers", "Buttons", "Item Views (Model-Based)",
                                       "Item Widgets (Item-Based)", "Containers", "Input Widgets",
                                       "Display Widgets"}));
        settings.setValue(QStringLiteral("WidgetBox/View mode"), false);
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home->path());
    env.insert(QStringLiteral("HOME"), m_home->path());
    env.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(VELMORA_PLUGIN_DIR));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    m_designer.setProcessEnvironment(env);
    m_designer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // A copy: the pages may write, the test's form stays as it is.
    const QString form = m_home->filePath(QStringLiteral("designedform.ui"));
    QVERIFY(QFile::copy(QStringLiteral(DESIGNED_FORM), form));
    m_designer.start(QStringLiteral(DESIGNER), {form});
    QVERIFY2(m_designer.waitForStarted(), qPrintable(m_designer.errorString()));
}

void tst_DesignerApp::cleanupTestCase()
{
    m_designer.kill();
    m_designer.waitForFinished();
}

QString tst_DesignerApp::keep(const QImage &screen, const char *name)
{
    const QString dir = qEnvironmentVariableIsSet("VELMORA_SCREENSHOT_DIR") ? qEnvironmentVariable("VELMORA_SCREENSHOT_DIR")
                                                                            : m_home->path();
    const QString file = QDir(dir).filePath(QLatin1String(name));
    screen.save(file);
    qInfo("Designer's screen: %s", qPrintable(file));
    return file;
}

void tst_DesignerApp::widgetBoxShowsVelmora()
{
    // The four, at one of the sizes Designer draws icons at (its object
    // inspector shows the form's own at another), one under the other.
    QMap<QString, QPoint> found;
    QImage screen;
    const auto inWidgetBox = [&] {
        screen = grabScreen();
        for (int side : {16, 22, 24, 32}) {
            found.clear();
            for (QDesignerCustomWidgetInterface *w : m_collection->customWidgets()) {
                const QImage icon = w->icon().pixmap(side, side).toImage().convertToFormat(QImage::Format_ARGB32);
                const QPoint at = find(screen, icon);
                if (at.isNull())
                    break;
                found.insert(w->name(), at);
            }
            const QPoint first = found.value(QStringLiteral("VelmoraControl"));
            const bool column = found.size() == m_collection->customWidgets().size()
                && std::all_of(found.cbegin(), found.cend(), [&](const QPoint &at) {
                                    return at.x() == first.x() && qAbs(at.y() - first.y()) < 8 * side;
                                });
            if (column)
                return true;
        }
        return false;
    };
    const bool shown = QTest::qWaitFor([&] { return inWidgetBox() || m_designer.state() != QProcess::Running; }, 60000);
    keep(screen, "designer-widgetbox.png");
    QVERIFY2(m_designer.state() == QProcess::Running, "Designer ended before showing its widget box");
    QVERIFY2(shown && found.size() == 4, "the Velmora group is not on the screen");
    const QPoint at = found.value(QStringLiteral("VelmoraControl"));
    const int side = found.value(QStringLiteral("VelmoraLine")).y() - at.y() > 40 ? 32 : 22;
    m_boxEntry = QRect(at, QSize(side, side));
}

void tst_DesignerApp::dropFromTheWidgetBox()
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
        QSKIP("xdotool (to drag in Designer's window) is not installed");
    if (m_boxEntry.isNull())
        QSKIP("the widget box was not found");
    // The form's own component, at the form's top right (350, 10).
    const QImage onForm = m_collection->customWidgets().value(0)->icon().pixmap(32, 32).toImage().convertToFormat(
        QImage::Format_ARGB32);
    QPoint existing;
    QVERIFY(QTest::qWaitFor([&] { return !(existing = find(grabScreen(), onForm)).isNull(); }, 20000));
    // Dragged from the box to the form's empty lower left, it shows there as
    // a component being designed: its icon.
    const QPoint formOrigin = existing - QPoint(350, 10);
    const QPoint drop = formOrigin + QPoint(40, 220);
    const QPoint from = m_boxEntry.center();
    QVERIFY(xdotool({"mousemove", QString::number(from.x()), QString::number(from.y()), "mousedown", "1"}));
    for (int step = 1; step <= 10; ++step) {
        const QPoint p = from + (drop - from) * step / 10;
        QVERIFY(xdotool({"mousemove", QString::number(p.x()), QString::number(p.y()), "sleep", "0.05"}));
    }
    QVERIFY(xdotool({"mouseup", "1"}));
    // Selected, its handles cover its corners: select the form instead.
    const QPoint empty = formOrigin + QPoint(300, 270);
    QVERIFY(xdotool({"sleep", "0.3", "mousemove", QString::number(empty.x()), QString::number(empty.y()), "click", "1"}));
    QPoint placed;
    QVERIFY2(QTest::qWaitFor(
                 [&] {
                     const QImage lower = grabScreen().copy(QRect(formOrigin + QPoint(0, 100), QSize(400, 200)));
                     placed = find(lower, onForm);
                     return !placed.isNull();
                 },
                 20000),
             qPrintable(keep(grabScreen(), "designer-dropped.png")));
    keep(grabScreen(), "designer-dropped.png");
}

void tst_DesignerApp::doubleClickOpensThePages()
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
        QSKIP("xdotool (to click in Designer's window) is not installed");
    // The component on the form shows its icon at its own size.
    QDesignerCustomWidgetInterface *control = m_collection->customWidgets().value(0);
    QCOMPARE(control->name(), QStringLiteral("VelmoraControl"));
    const QImage icon = control->icon().pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32);
    QPoint at;
    QVERIFY(QTest::qWaitFor([&] { return !(at = find(grabScreen(), icon)).isNull(); }, 20000));
    const QPoint centre = at + QPoint(16, 16);
    QVERIFY(xdotool({"mousemove", QString::number(centre.x()), QString::number(centre.y()), "click", "--repeat", "2",
                     "--delay", "80", "1"}));
    const QStringList dialog = {"search", "--name", "^Velmora Properties - velmora"};
    QVERIFY2(QTest::qWaitFor([&] { return xdotool(dialog); }, 20000),
             "no settings dialog after a double-click on the component");
    QTest::qWait(500); // drawn
    keep(grabScreen(), "designer-pages.png");
    // The next page, as a keyboard user reaches it.
    QVERIFY(xdotool({"key", "Right"})); // the dialog opens with its tab bar focused
    QTest::qWait(500);
    keep(grabScreen(), "designer-scalecontrols.png");
    // Closed without a change: the dialog has the focus.
    QVERIFY(xdotool({"key", "Escape"}));
    QVERIFY(QTest::qWaitFor([&] { return !xdotool(dialog); }, 20000));
}

QTEST_MAIN(tst_DesignerApp)
#include "tst_designerapp.moc"
