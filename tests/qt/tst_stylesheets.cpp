// Forms styled with style sheets scale too: a font size a sheet sets (on
// the widget or on an ancestor) follows the form like any other font, the
// pixel lengths sheets give follow the form, the rest of every sheet stays
// as written, and at the design size every sheet is its original text.
#include "control/VelmoraControl.h"
#include "qt/QtStyleSheets.h"

#include <QFontInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QTabBar>
#include <QTableWidget>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QtTest>

#include <memory>

using velmora::qt::StyleSheets::scaleLengths;

namespace {

// A main window whose central widget is the form: 400 x 300 at design, one
// label (20, 20, 120 x 24) in a group box or straight on the form.
struct StyledForm {
    QMainWindow window;
    QWidget *form = new QWidget;
    QGroupBox *group = nullptr;
    QLabel *label = nullptr;
    QPushButton *button = nullptr;
    VelmoraControl *velmora = nullptr;

    StyledForm()
    {
        window.setCentralWidget(form);
        group = new QGroupBox(QStringLiteral("Group"), form);
        group->setObjectName(QStringLiteral("grpMain"));
        group->setGeometry(10, 10, 200, 120);
        label = new QLabel(QStringLiteral("Name"), group);
        label->setObjectName(QStringLiteral("lblName"));
        label->setGeometry(20, 40, 120, 24);
        button = new QPushButton(QStringLiteral("Go"), form);
        button->setObjectName(QStringLiteral("cmdGo"));
        button->setGeometry(20, 200, 100, 30);
        velmora = new VelmoraControl(form);
        velmora->setResizeOnMouseUp(false);
    }
    bool show()
    {
        window.resize(400, 300);
        window.show();
        return QTest::qWaitForWindowExposed(&window) && QTest::qWaitFor([&] { return velmora->isFormReady(); });
    }
    // The form at `factor` times its design size.
    void scaleTo(double factor)
    {
        const QSize chrome = window.size() - form->size();
        window.resize(QSize(qRound(400 * factor), qRound(300 * factor)) + chrome);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
};

// The font the widget draws with, as the font system matched it (whole
// pixels), against a size in points.
bool drawsAt(const QWidget *w, double points)
{
    const double pixels = points * w->logicalDpiY() / 72.0;
    const QFont f = w->font();
    const double given = f.pointSizeF() > 0 ? f.pointSizeF() : f.pixelSize() * 72.0 / w->logicalDpiY();
    return qAbs(QFontInfo(f).pixelSize() - pixels) <= 0.5 && qAbs(given - points) < 0.01;
}

QString fontOf(const QWidget *w)
{
    return QStringLiteral("%1pt, drawn at %2px").arg(w->font().pointSizeF()).arg(QFontInfo(w->font()).pixelSize());
}

#define VERIFY_DRAWS_AT(w, points) QVERIFY2(drawsAt(w, points), qPrintable(fontOf(w) + QStringLiteral(" for %1pt").arg(points)))

// Height of the ink the label draws: the rendered text, not its font.
int inkHeight(QWidget *w)
{
    const QImage image = w->grab().toImage();
    const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
    int top = -1, bottom = -1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != background) {
                if (top < 0)
                    top = y;
                bottom = y;
                break;
            }
    return top < 0 ? 0 : bottom - top + 1;
}

} // namespace

class tst_StyleSheets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lengths_data();
    void lengths();
    void sheetFontsScale_data();
    void sheetFontsScale();
    void exemptFontsStay_data();
    void exemptFontsStay();
    void pixelLengthsScale();
    void applicationSheetsAreKept();
    void formSheetsNeverHoldTheForm();
    void tabPagesComeBack();
    void innerPartsFollow_data();
    void innerPartsFollow();
    void pseudoStateFontsScale();
    void sheetMinimumsComeBack_data();
    void sheetMinimumsComeBack();
    void designSizeGivesTheOriginals_data();
    void designSizeGivesTheOriginals();
    void sheetsThatWouldNotParseAreLeftAlone_data();
    void sheetsThatWouldNotParseAreLeftAlone();
};

void tst_StyleSheets::lengths_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<double>("fontFactor");
    QTest::newRow("bare declarations") << "padding: 4px; min-width: 80px" << 1.5 << "padding: 6px; min-width: 120px" << 1.0;
    QTest::newRow("rules, pseudo-states") << "QPushButton:hover { border: 2px solid red; margin: -3px }" << 2.0
                                          << "QPushButton:hover { border: 4px solid red; margin: -6px }" << 1.0;
    QTest::newRow("font sizes stay at a font factor of 1")
        << "QLabel { font: bold 12px; font-size: 14px; padding: 2px }" << 2.0
        << "QLabel { font: bold 12px; font-size: 14px; padding: 4px }" << 1.0;
    QTest::newRow("strings, urls and comments are names")
        << "QLabel { image: url(icons/12px.png); qproperty-text: \"3px\"; /* 5px */ padding: 5px }" << 2.0
        << "QLabel { image: url(icons/12px.png); qproperty-text: \"3px\"; /* 5px */ padding: 10px }" << 1.0;
    QTest::newRow("a pixel stays a pixel") << "border-width: 1px; spacing: 0px" << 0.3 << "border-width: 1px; spacing: 0px" << 1.0;
    QTest::newRow("fractions round") << "padding: 2.5px 3px" << 1.0 / 3 << "padding: 1px 1px" << 1.0;
    QTest::newRow("other units and names with px in them")
        << "QLabel#px2px { margin: 2em; width: 30%; border: 2pt solid }" << 2.0
        << "QLabel#px2px { margin: 2em; width: 30%; border: 2pt solid }" << 1.0;
    QTest::newRow("font sizes by their own factor")
        << "QLabel { font: bold 12px; font-size: 10.5pt; padding: 2px }" << 2.0
        << "QLabel { font: bold 18px; font-size: 15.75pt; padding: 4px }" << 1.5;
    QTest::newRow("sub-controls and pseudo-states")
        << "QTabBar::tab:selected { font-size: 14px; padding: 10px } QHeaderView::section { font: 9pt }" << 0.8
        << "QTabBar::tab:selected { font-size: 11px; padding: 8px } QHeaderView::section { font: 7.2pt }" << 0.8;
    QTest::newRow("a font stays at least a pixel") << "* { font-size: 2px }" << 0.1 << "* { font-size: 1px }" << 0.1;
    QTest::newRow("factor 1 gives the text as it is") << "padding:4px;/*x*/" << 1.0 << "padding:4px;/*x*/" << 1.0;
}

void tst_StyleSheets::lengths()
{
    QFETCH(QString, sheet);
    QFETCH(double, factor);
    QFETCH(QString, expected);
    QFETCH(double, fontFactor);
    QCOMPARE(scaleLengths(sheet, factor, fontFactor), expected);
}

void tst_StyleSheets::sheetFontsScale_data()
{
    QTest::addColumn<QString>("windowSheet");
    QTest::addColumn<QString>("groupSheet");
    QTest::addColumn<QString>("labelSheet");
    QTest::addColumn<double>("designPoints");
    QTest::newRow("no sheet (as always)") << "" << "" << "" << 0.0;
    QTest::newRow("the label's own sheet") << "" << "" << "font: 10pt; color: #c00000" << 10.0;
    QTest::newRow("a rule of the main window's sheet") << "QLabel { font: 10pt; }" << "" << "" << 10.0;
    QTest::newRow("a container's bare sheet") << "" << "font-size: 11pt" << "" << 11.0;
    QTest::newRow("a size in pixels") << "" << "" << "font-size: 16px" << 12.0;
    QTest::newRow("own rule by name, over an inherited one")
        << "QLabel { font: 9pt; }" << "" << "QLabel#lblName { font-size: 12pt }" << 12.0;
}

void tst_StyleSheets::sheetFontsScale()
{
    QFETCH(QString, windowSheet);
    QFETCH(QString, groupSheet);
    QFETCH(QString, labelSheet);
    QFETCH(double, designPoints);
    StyledForm f;
    f.window.setStyleSheet(windowSheet);
    f.group->setStyleSheet(groupSheet);
    f.label->setStyleSheet(labelSheet);
    QVERIFY(f.show());
    const double design = designPoints > 0 ? designPoints : f.label->font().pointSizeF();
    VERIFY_DRAWS_AT(f.label, design);
    const QPalette::ColorRole text = f.label->foregroundRole();
    const QColor colour = f.label->palette().color(text);
    const int designInk = inkHeight(f.label);

    f.scaleTo(2.0);
    QTRY_COMPARE(f.label->geometry(), QRect(40, 80, 240, 48));
    VERIFY_DRAWS_AT(f.label, 2 * design);
    // Drawn twice as tall, give or take the hinting of one line of text.
    QVERIFY2(qAbs(inkHeight(f.label) - 2 * designInk) <= 3,
             qPrintable(QStringLiteral("ink %1 at design, %2 scaled").arg(designInk).arg(inkHeight(f.label))));
    // The rest of the sheets still holds.
    QCOMPARE(f.label->palette().color(text), colour);

    f.scaleTo(1.5);
    QTRY_COMPARE(f.label->geometry(), QRect(30, 60, 180, 36));
    VERIFY_DRAWS_AT(f.label, 1.5 * design);

    // Back at the design size: every sheet exactly as written, nothing of
    // Velmora's left on the label.
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    VERIFY_DRAWS_AT(f.label, design);
    QCOMPARE(f.label->styleSheet(), labelSheet);
    QCOMPARE(f.group->styleSheet(), groupSheet);
    QCOMPARE(f.window.styleSheet(), windowSheet);
    QVERIFY(!f.label->property(velmora::qt::StyleSheets::PinProperty).isValid());
}

void tst_StyleSheets::exemptFontsStay_data()
{
    QTest::addColumn<bool>("scaleFonts");
    QTest::addColumn<bool>("dontScaleFont");
    QTest::newRow("ScaleFonts off") << false << false;
    QTest::newRow("the label's DontScaleFont") << true << true;
}

void tst_StyleSheets::exemptFontsStay()
{
    QFETCH(bool, scaleFonts);
    QFETCH(bool, dontScaleFont);
    StyledForm f;
    f.window.setStyleSheet(QStringLiteral("QLabel, QPushButton { font: 10pt; }"));
    f.velmora->setScaleFonts(scaleFonts);
    if (dontScaleFont) {
        f.velmora->setControlFlagCount(1);
        f.velmora->setControlFlagControlKey(1, QStringLiteral("lblName"));
        f.velmora->setControlFlagDontScaleFont(1, true);
    }
    QVERIFY(f.show());
    f.scaleTo(2.0);
    QTRY_COMPARE(f.label->geometry(), QRect(40, 80, 240, 48));
    VERIFY_DRAWS_AT(f.label, 10.0);
    // The button beside it scales unless fonts are off for the whole form.
    VERIFY_DRAWS_AT(f.button, scaleFonts ? 20.0 : 10.0);
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(f.label->styleSheet(), QString());
    QCOMPARE(f.window.styleSheet(), QStringLiteral("QLabel, QPushButton { font: 10pt; }"));
}

void tst_StyleSheets::pixelLengthsScale()
{
    StyledForm f;
    const QString windowSheet = QStringLiteral("QPushButton { min-height: 20px; padding: 0px 6px; }");
    const QString buttonSheet = QStringLiteral("QPushButton#cmdGo { border: 2px solid #1d4e89; min-width: 60px; }");
    f.window.setStyleSheet(windowSheet);
    f.button->setStyleSheet(buttonSheet);
    QVERIFY(f.show());
    const QSize designHint = f.button->sizeHint();
    f.scaleTo(2.0);
    QTRY_COMPARE(f.button->geometry(), QRect(40, 400, 200, 60));
    QCOMPARE(f.window.styleSheet(), QStringLiteral("QPushButton { min-height: 40px; padding: 0px 12px; }"));
    QCOMPARE(f.button->styleSheet().section(u'\n', 0, 0),
             QStringLiteral("QPushButton#cmdGo { border: 4px solid #1d4e89; min-width: 120px; }"));
    QVERIFY(f.button->sizeHint().width() >= 2 * designHint.width() - 4);
    QVERIFY(f.button->sizeHint().height() >= 2 * designHint.height() - 4);
    // A 2px border drawn 4px wide.
    const QImage drawn = f.button->grab().toImage();
    const int y = drawn.height() / 2;
    int border = 0;
    while (border < drawn.width() && QColor(drawn.pixel(border, y)) == QColor(0x1d, 0x4e, 0x89))
        ++border;
    QCOMPARE(border, 4);
    f.scaleTo(1.0);
    QTRY_COMPARE(f.button->geometry(), QRect(20, 200, 100, 30));
    QCOMPARE(f.window.styleSheet(), windowSheet);
    QCOMPARE(f.button->styleSheet(), buttonSheet);
}

void tst_StyleSheets::applicationSheetsAreKept()
{
    // A sheet the application sets on a scaled form is its sheet from then
    // on: scaled at the next pass, given back as written at the design size.
    StyledForm f;
    f.window.setStyleSheet(QStringLiteral("QLabel { font: 10pt; }"));
    QVERIFY(f.show());
    f.scaleTo(2.0);
    QTRY_VERIFY(drawsAt(f.label, 20.0));
    const QString mine = QStringLiteral("color: blue; padding: 2px");
    f.label->setStyleSheet(mine);
    f.scaleTo(1.5);
    QTRY_COMPARE(f.label->geometry(), QRect(30, 60, 180, 36));
    VERIFY_DRAWS_AT(f.label, 15.0);
    QVERIFY(f.label->styleSheet().contains(QLatin1String("color: blue; padding: 2px")));
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(f.label->styleSheet(), mine);
    VERIFY_DRAWS_AT(f.label, 10.0);
}

void tst_StyleSheets::tabPagesComeBack()
{
    // A tab bar whose tabs a sheet pads: after the form collapsed and grew
    // large, a page's controls are back where they were designed.
    StyledForm f;
    auto *tabs = new QTabWidget(f.form);
    tabs->setGeometry(200, 120, 190, 120);
    auto *page = new QWidget;
    tabs->addTab(page, QStringLiteral("Page"));
    auto *onPage = new QLabel(QStringLiteral("On a page"), page);
    onPage->setGeometry(10, 10, 150, 20);
    tabs->setStyleSheet(QStringLiteral("QTabBar::tab { min-width: 40px; padding: 2px; }"));
    QVERIFY(f.show());
    const QRect designed = onPage->geometry();
    const QSize chrome = f.window.size() - f.form->size();
    for (const QSize &size : {QSize(0, 0), QSize(800, 600)}) {
        f.window.resize(size);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(onPage->geometry(), designed);
    Q_UNUSED(chrome);
}

void tst_StyleSheets::innerPartsFollow_data()
{
    QTest::addColumn<QString>("formSheet");
    QTest::addColumn<double>("factor");
    const QList<std::pair<const char *, const char *>> sheets{
        {"everything", "* { font-size: 18px }"},
        {"tab sub-control", "QTabBar::tab { padding: 10px; font-size: 14px }"},
        {"selected tab", "QTabBar::tab:selected { font-size: 16px } QTabBar::tab { font-size: 12px }"},
        {"header sections", "QHeaderView::section { font-size: 15px; padding: 4px }"},
    };
    for (const auto &[name, sheet] : sheets)
        for (double factor : {0.6, 0.8, 2.0})
            QTest::addRow("%s, %g", name, factor) << sheet << factor;
}

// A tab widget's bar and a view's header follow the form under sheets that
// size their fonts: they keep fitting, and come back exactly.
void tst_StyleSheets::innerPartsFollow()
{
    QFETCH(QString, formSheet);
    QFETCH(double, factor);
    StyledForm f;
    auto *tabs = new QTabWidget(f.form);
    tabs->setObjectName(QStringLiteral("tabs"));
    // Room to spare at design: the style's own margins beside a tab's text
    // do not scale (yet), so a bar that just fits would not at 0.6.
    tabs->setGeometry(110, 20, 280, 150);
    for (const char *title : {"Alpha", "Beta", "Gamma"})
        tabs->addTab(new QWidget, QString::fromLatin1(title));
    auto *table = new QTableWidget(3, 2, f.form);
    table->setObjectName(QStringLiteral("table"));
    table->setGeometry(150, 180, 240, 110);
    table->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Value")});
    f.form->setStyleSheet(formSheet);
    QVERIFY(f.show());
    QTabBar *bar = tabs->tabBar();
    QHeaderView *header = table->horizontalHeader();
    const QRect designTab = bar->tabRect(1);
    const int designHeader = header->height();
    const auto tabsWidth = [&] {
        int w = 0;
        for (int i = 0; i < bar->count(); ++i)
            w += bar->tabRect(i).width();
        return w;
    };
    QVERIFY(tabsWidth() <= tabs->width());

    f.scaleTo(factor);
    QTRY_COMPARE(tabs->width(), qRound(280 * factor));
    // The text scales, the style's own margins around it (not yet): at
    // least half of the way to the scaled size.
    const auto near = [&](int now, int design) {
        return qAbs(now - design * factor) <= 0.5 * qAbs(design - design * factor) + 2;
    };
    QVERIFY2(near(bar->tabRect(1).height(), designTab.height()),
             qPrintable(QStringLiteral("tab height %1, designed %2").arg(bar->tabRect(1).height()).arg(designTab.height())));
    QVERIFY2(tabsWidth() <= tabs->width(), qPrintable(QStringLiteral("tabs %1 wide in %2").arg(tabsWidth()).arg(tabs->width())));
    QVERIFY(bar->geometry().bottom() < tabs->height());
    QTRY_VERIFY2(near(header->height(), designHeader),
             qPrintable(QStringLiteral("header %1, designed %2").arg(header->height()).arg(designHeader)));

    f.scaleTo(1.0);
    QTRY_COMPARE(tabs->geometry(), QRect(110, 20, 280, 150));
    QCOMPARE(bar->tabRect(1), designTab);
    QTRY_COMPARE(header->height(), designHeader);
    QCOMPARE(f.form->styleSheet(), formSheet);
}

// A label in a group box whose sheet sizes its font for a pseudo-state: its
// ratio differs from the form's by the rounding of the box, and the sheet
// alone still gives it its font, so that its hover rule stays in force (no
// rule of Velmora's after it).
void tst_StyleSheets::pseudoStateFontsScale()
{
    StyledForm f;
    const QString sheet = QStringLiteral("QLabel { font-size: 10pt } QLabel:hover { font-size: 16pt }");
    f.window.setStyleSheet(sheet);
    QVERIFY(f.show());
    for (double factor : {1.37, 2.0, 0.77}) {
        f.scaleTo(factor);
        QTRY_COMPARE(f.group->width(), qRound(200 * factor));
        VERIFY_DRAWS_AT(f.label, 10 * factor);
        QCOMPARE(f.label->styleSheet(), QString());
        QVERIFY(!f.label->property(velmora::qt::StyleSheets::PinProperty).isValid());
    }
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    VERIFY_DRAWS_AT(f.label, 10.0);
    QCOMPARE(f.window.styleSheet(), sheet);
}

void tst_StyleSheets::formSheetsNeverHoldTheForm()
{
    // The form's own sheet sizes the form: scaled, it would hold the form
    // at the size it grew to, and the form could never come back.
    QWidget form;
    form.setObjectName(QStringLiteral("frmMain"));
    const QString sheet = QStringLiteral("#frmMain { min-width: 400px; min-height: 300px; }");
    form.setStyleSheet(sheet);
    auto *button = new QPushButton(QStringLiteral("Go"), &form);
    button->setGeometry(20, 200, 100, 30);
    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    form.resize(400, 300);
    form.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }));
    form.resize(800, 600);
    QTRY_COMPARE(button->geometry(), QRect(40, 400, 200, 60));
    for (int i = 0; i < 3; ++i) {
        form.resize(400, 300);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    QCOMPARE(form.size(), QSize(400, 300));
    QTRY_COMPARE(button->geometry(), QRect(20, 200, 100, 30));
    QCOMPARE(form.styleSheet(), sheet);
}

void tst_StyleSheets::sheetMinimumsComeBack_data()
{
    QTest::addColumn<bool>("formSheet"); // the rule in the form's sheet, not the window's
    QTest::addColumn<QList<double>>("factors");
    QTest::newRow("the window's sheet, doubled") << false << QList<double>{2.0};
    QTest::newRow("the form's sheet, four times, then halved") << true << QList<double>{4.0, 0.5};
    QTest::newRow("the window's sheet, four times, then halved") << false << QList<double>{4.0, 0.5};
}

void tst_StyleSheets::sheetMinimumsComeBack()
{
    // A rule holds the form's buttons at a minimum: scaled with the form
    // and back, the buttons are as they were designed.
    QFETCH(bool, formSheet);
    QFETCH(QList<double>, factors);
    StyledForm f;
    const QString rule = QStringLiteral("QPushButton { min-width: 120px; min-height: 40px; }");
    (formSheet ? static_cast<QWidget *>(f.form) : &f.window)->setStyleSheet(rule);
    QVERIFY(f.show());
    const QRect designed = f.button->geometry();
    const QSize minimum = f.button->minimumSize();
    for (double factor : factors) {
        f.scaleTo(factor);
        QTRY_COMPARE(f.label->width(), qRound(120 * factor));
    }
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(f.button->geometry(), designed);
    QCOMPARE(f.button->minimumSize(), minimum);
}

void tst_StyleSheets::designSizeGivesTheOriginals_data()
{
    QTest::addColumn<QString>("groupSheet");
    QTest::addColumn<QString>("labelSheet");
    QTest::addColumn<QSize>("offBy"); // the form's size away from the design size first
    QTest::newRow("an ancestor's bare size in pixels, a pixel off")
        << "font-size: 2px" << "color: #c00000" << QSize(1, -1);
    QTest::newRow("an ancestor's bare size in pixels, doubled") << "font-size: 2px" << "color: #c00000" << QSize(400, 300);
    QTest::newRow("an ancestor's size in points, a pixel off") << "QLabel { font: 7pt; }" << "padding: 1px" << QSize(1, -1);
}

void tst_StyleSheets::designSizeGivesTheOriginals()
{
    QFETCH(QString, groupSheet);
    QFETCH(QString, labelSheet);
    QFETCH(QSize, offBy);
    StyledForm f;
    f.group->setStyleSheet(groupSheet);
    f.label->setStyleSheet(labelSheet);
    QVERIFY(f.show());
    const QSize chrome = f.window.size() - f.form->size();
    f.window.resize(QSize(400, 300) + offBy + chrome);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    f.scaleTo(1.0);
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(f.label->styleSheet(), labelSheet);
    QCOMPARE(f.group->styleSheet(), groupSheet);
    QVERIFY(!f.label->property(velmora::qt::StyleSheets::PinProperty).isValid());
}

void tst_StyleSheets::sheetsThatWouldNotParseAreLeftAlone_data()
{
    // Sheets a rule written after them could change or break: extended
    // only where Qt reads the result as the sheet plus that rule.
    QTest::addColumn<QString>("labelSheet");
    QTest::addColumn<bool>("extended");
    QTest::newRow("a declaration Qt skips, wrapped as Qt wraps it") << "c:(());." << true;
    QTest::newRow("an open comment") << "color: #c00000; /* left open" << false;
    QTest::newRow("an open string") << "color: #c00000; qproperty-text: \"open" << false;
    QTest::newRow("an open rule") << "QLabel { color: #c00000;" << false;
}

namespace {
QStringList parseWarnings;
void catchParseWarnings(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (text.contains(QLatin1String("Could not parse")))
        parseWarnings << text;
}
} // namespace

void tst_StyleSheets::sheetsThatWouldNotParseAreLeftAlone()
{
    QFETCH(QString, labelSheet);
    QFETCH(bool, extended);
    StyledForm f;
    // The window's sheet scales; the label keeps its size only through a
    // rule after its own sheet.
    f.window.setStyleSheet(QStringLiteral("QLabel { font: 10pt; }"));
    f.label->setStyleSheet(labelSheet);
    f.velmora->setControlFlagCount(1);
    f.velmora->setControlFlagControlKey(1, QStringLiteral("lblName"));
    f.velmora->setControlFlagDontScaleFont(1, true);
    QVERIFY(f.show());
    const QPalette::ColorRole text = f.label->foregroundRole();
    const QColor colour = f.label->palette().color(text);
    parseWarnings.clear();
    const QtMessageHandler previous = qInstallMessageHandler(catchParseWarnings);
    f.scaleTo(2.0);
    const bool placed = QTest::qWaitFor([&] { return f.label->geometry() == QRect(40, 80, 240, 48); });
    const QString scaled = f.label->styleSheet();
    const QColor scaledColour = f.label->palette().color(text);
    const bool drawnKept = drawsAt(f.label, 10.0);
    f.scaleTo(1.0);
    qInstallMessageHandler(previous);
    QVERIFY(placed);
    QCOMPARE(scaled != labelSheet, extended);
    QCOMPARE(drawnKept, extended);
    QCOMPARE(scaledColour, colour);
    QCOMPARE(parseWarnings, QStringList());
    QTRY_COMPARE(f.label->geometry(), QRect(20, 40, 120, 24));
    QCOMPARE(f.label->styleSheet(), labelSheet);
}

QTEST_MAIN(tst_StyleSheets)
#include "tst_stylesheets.moc"
