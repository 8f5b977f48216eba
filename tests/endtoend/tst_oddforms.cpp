// Forms as other people write them: a container as the top widget, rich
// text with sizes of its own, pixel fonts, item views with sized sections,
// rows laid out inside absolutely placed boxes. Each is a small .ui file
// written for the purpose, loaded the way an application loads it.
#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"

#include <QAbstractButton>
#include <QFile>
#include <QRegularExpression>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextBrowser>
#include <QToolBox>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

namespace {

QString dataFile(const QString &name)
{
    return QFINDTESTDATA("../data/odd/" + name);
}

std::unique_ptr<QWidget> loadForm(const QString &name)
{
    QFile file(dataFile(name));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    VelmoraUiLoader loader;
    return std::unique_ptr<QWidget>(loader.load(&file));
}

VelmoraControl *componentOf(QWidget *form)
{
    return form ? form->findChild<VelmoraControl *>() : nullptr;
}

// Shows the form and waits for its component to have taken the layout.
bool showReady(QWidget *form)
{
    VelmoraControl *velmora = componentOf(form);
    if (!velmora)
        return false;
    velmora->setResizeOnMouseUp(false);
    form->show();
    return QTest::qWaitFor([&] { return velmora->isFormReady(); }, 3000);
}

// Resizes the form and waits until its pass has run.
bool resizeTo(QWidget *form, const QSize &size)
{
    VelmoraControl *velmora = componentOf(form);
    QSignalSpy done(velmora, &VelmoraControl::ResizeDone);
    form->resize(size);
    return form->size() == size && (done.count() > 0 || done.wait(2000));
}

QSize scaled(const QSize &s, double fx, double fy)
{
    return QSize(qRound(s.width() * fx), qRound(s.height() * fy));
}

bool near(const QRect &a, const QRect &b, int slack = 1)
{
    return qAbs(a.left() - b.left()) <= slack && qAbs(a.top() - b.top()) <= slack
        && qAbs(a.width() - b.width()) <= slack && qAbs(a.height() - b.height()) <= slack;
}

QRect scaledRect(const QRect &r, double fx, double fy)
{
    return QRect(qRound(r.x() * fx), qRound(r.y() * fy), qRound(r.width() * fx), qRound(r.height() * fy));
}

// What the page (the container) gives its children, shown or not.
QSize pageArea(QWidget *page)
{
    return page->size();
}

} // namespace

class tst_OddForms : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void containerAsTheForm_data();
    void containerAsTheForm();
    void inlineSizesFollowTheFont_data();
    void inlineSizesFollowTheFont();
    void exemptFontsKeepTheirInlineSizes_data();
    void exemptFontsKeepTheirInlineSizes();
    void pixelFontsStayInPixels();
    void viewsScaleInside_data();
    void viewsScaleInside();
    void laidOutRowsKeepTheirProportions_data();
    void laidOutRowsKeepTheirProportions();
};

void tst_OddForms::containerAsTheForm_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("pages"); // what holds the widgets
    QTest::addColumn<double>("fx");
    QTest::addColumn<double>("fy");
    const QList<std::tuple<const char *, const char *, QStringList>> forms{
        {"tab widget", "top_tabwidget.ui", {"first", "second"}},
        {"stacked widget", "top_stackedwidget.ui", {"first", "second"}},
        {"tool box", "top_toolbox.ui", {"first", "second"}},
        {"scroll area", "top_scrollarea.ui", {"content"}},
        {"splitter", "top_splitter.ui", {"first", "second"}},
    };
    for (const auto &[name, file, pages] : forms) {
        QTest::addRow("%s, 0.6x0.8", name) << file << pages << 0.6 << 0.8;
        QTest::addRow("%s, 2x1.5", name) << file << pages << 2.0 << 1.5;
    }
}

// A form whose top widget is a container: what its pages hold scales with
// its page, shown or not, and comes back exactly.
void tst_OddForms::containerAsTheForm()
{
    QFETCH(QString, file);
    QFETCH(QStringList, pages);
    QFETCH(double, fx);
    QFETCH(double, fy);
    auto form = loadForm(file);
    QVERIFY(form);
    QVERIFY(showReady(form.get()));
    QCOMPARE(componentOf(form.get())->form(), form.get());
    const QSize design = form->size();

    struct Seen {
        QPointer<QWidget> widget;
        QPointer<QWidget> page;
        QRect geometry;
        QSize pageSize;
        double points;
    };
    QList<Seen> seen;
    const auto settlePages = [&] {
        // A page the form is not showing is measured when it shows.
        if (auto *tabs = qobject_cast<QTabWidget *>(form.get()))
            for (int i = tabs->count() - 1; i >= 0; --i)
                tabs->setCurrentIndex(i);
        if (auto *stack = qobject_cast<QStackedWidget *>(form.get()))
            for (int i = stack->count() - 1; i >= 0; --i)
                stack->setCurrentIndex(i);
        if (auto *box = qobject_cast<QToolBox *>(form.get()))
            for (int i = box->count() - 1; i >= 0; --i)
                box->setCurrentIndex(i);
        QApplication::processEvents();
    };
    settlePages();
    for (const QString &pageName : pages) {
        QWidget *page = form->findChild<QWidget *>(pageName);
        QVERIFY2(page, qPrintable(pageName));
        for (QWidget *w : page->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (qobject_cast<VelmoraControl *>(w))
                continue;
            seen.append({w, page, w->geometry(), pageArea(page), w->font().pointSizeF()});
        }
    }
    QVERIFY(seen.size() >= 3);
    // What shows the pages' titles: a tab widget's bar, a tool box's buttons.
    QWidget *titles = nullptr;
    if (auto *tabs = qobject_cast<QTabWidget *>(form.get()))
        titles = tabs->tabBar();
    else if (auto *box = qobject_cast<QToolBox *>(form.get()))
        titles = box->findChild<QAbstractButton *>(QStringLiteral("qt_toolbox_toolboxbutton"));
    const double tabPoints = titles ? titles->font().pointSizeF() : 0;

    QVERIFY(resizeTo(form.get(), scaled(design, fx, fy)));
    settlePages();
    for (const Seen &s : seen) {
        const QSize page = pageArea(s.page);
        const double px = double(page.width()) / s.pageSize.width();
        const double py = double(page.height()) / s.pageSize.height();
        QVERIFY2(qAbs(px - fx) < 0.15 && qAbs(py - fy) < 0.15,
                 qPrintable(QStringLiteral("%1: page %2x%3").arg(s.page->objectName()).arg(page.width()).arg(page.height())));
        const QRect want = scaledRect(s.geometry, px, py);
        QVERIFY2(near(s.widget->geometry(), want),
                 qPrintable(QStringLiteral("%1 at %2,%3 %4x%5, wanted %6,%7 %8x%9")
                                .arg(s.widget->objectName())
                                .arg(s.widget->x()).arg(s.widget->y()).arg(s.widget->width()).arg(s.widget->height())
                                .arg(want.x()).arg(want.y()).arg(want.width()).arg(want.height())));
        QVERIFY2(qAbs(s.widget->font().pointSizeF() - s.points * qMin(px, py)) < 0.1 * s.points + 0.5,
                 qPrintable(s.widget->objectName()));
    }
    if (titles) {
        const double f = qMin(fx, fy);
        QCOMPARE_LT(qAbs(titles->font().pointSizeF() - tabPoints * f), 0.05 * tabPoints * f + 0.3);
    }

    QVERIFY(resizeTo(form.get(), design));
    settlePages();
    for (const Seen &s : seen) {
        QVERIFY2(s.widget->geometry() == s.geometry,
                 qPrintable(QStringLiteral("%1 at %2,%3 %4x%5; page %6x%7, was %8x%9").arg(s.widget->objectName())
                                .arg(s.widget->x()).arg(s.widget->y()).arg(s.widget->width()).arg(s.widget->height())
                                .arg(s.page->width()).arg(s.page->height()).arg(s.pageSize.width()).arg(s.pageSize.height())));
        QCOMPARE(s.widget->font().pointSizeF(), s.points);
    }
    if (titles)
        QCOMPARE(titles->font().pointSizeF(), tabPoints);
}

namespace {

// The inline sizes of a widget's rich text, in order: "14pt", "20px" ...
QStringList inlineSizes(QWidget *w)
{
    QString html;
    if (auto *label = qobject_cast<QLabel *>(w))
        html = label->text();
    else if (auto *edit = qobject_cast<QTextEdit *>(w))
        html = edit->toHtml().section(QLatin1String("<body"), 1).section(u'>', 1); // not the body's own font
    static const QRegularExpression size(QStringLiteral("font-size:\\s*([\\d.]+(?:pt|px))"));
    QStringList out;
    for (auto it = size.globalMatch(html); it.hasNext();)
        out << it.next().captured(1);
    return out;
}

QString richTextOf(QWidget *w)
{
    if (auto *label = qobject_cast<QLabel *>(w))
        return label->text();
    return static_cast<QTextEdit *>(w)->toHtml();
}

} // namespace

void tst_OddForms::inlineSizesFollowTheFont_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QStringList>("atDouble"); // the sizes at twice the design size
    QTest::newRow("label, points") << "ptLabel" << QStringList{"28pt", "18pt"};
    QTest::newRow("label, pixels") << "pxLabel" << QStringList{"40px"};
    QTest::newRow("label, <font size>") << "sizeLabel" << QStringList{};
    QTest::newRow("text edit") << "log" << QStringList{"32pt", "24px"};
    QTest::newRow("text browser") << "notes" << QStringList{"32pt", "24px"};
}

// Sizes written inside rich text scale with the widget's font, come back
// byte for byte, and text the application sets becomes the original.
void tst_OddForms::inlineSizesFollowTheFont()
{
    QFETCH(QString, widget);
    QFETCH(QStringList, atDouble);
    auto form = loadForm(QStringLiteral("rich_text.ui"));
    QVERIFY(form);
    QWidget *w = form->findChild<QWidget *>(widget);
    QVERIFY(w);
    QVERIFY(showReady(form.get()));
    const QSize design = form->size();
    const QString original = richTextOf(w);
    const int designHeight = w->sizeHint().height();
    auto *edit = qobject_cast<QTextEdit *>(w);
    if (edit && !edit->isReadOnly()) {
        edit->textCursor().insertText(QStringLiteral("typed "));
        QVERIFY(edit->document()->isUndoAvailable());
    }
    const QString typed = richTextOf(w);

    QVERIFY(resizeTo(form.get(), design * 2));
    QCOMPARE(inlineSizes(w), atDouble);
    if (qobject_cast<QLabel *>(w)) // the text, not only the font, is bigger
        QCOMPARE_GE(w->sizeHint().height(), designHeight * 17 / 10);
    if (edit && !edit->isReadOnly()) {
        QVERIFY(edit->document()->isUndoAvailable()); // the user's typing is still theirs
        QVERIFY(!edit->document()->isModified() || typed != original);
    }

    QVERIFY(resizeTo(form.get(), design));
    QCOMPARE(richTextOf(w), typed);

    // What the application sets at another size is the text at design size.
    QVERIFY(resizeTo(form.get(), design * 2));
    if (auto *label = qobject_cast<QLabel *>(w))
        label->setText(QStringLiteral("<p><span style=\" font-size:10pt;\">new</span></p>"));
    else
        edit->setHtml(QStringLiteral("<p><span style=\" font-size:10pt;\">new</span></p>"));
    const QString set = richTextOf(w);
    QVERIFY(resizeTo(form.get(), design * 3));
    QCOMPARE(inlineSizes(w), QStringList{"30pt"});
    QVERIFY(resizeTo(form.get(), design));
    QCOMPARE(inlineSizes(w), QStringList{"10pt"});
    if (qobject_cast<QLabel *>(w))
        QCOMPARE(richTextOf(w), set);
}

void tst_OddForms::exemptFontsKeepTheirInlineSizes_data()
{
    QTest::addColumn<bool>("scaleFonts");
    QTest::addColumn<bool>("dontScaleFont");
    QTest::newRow("ScaleFonts off") << false << false;
    QTest::newRow("the label's DontScaleFont") << true << true;
}

// Inline sizes follow the font, so where the font stays they stay.
void tst_OddForms::exemptFontsKeepTheirInlineSizes()
{
    QFETCH(bool, scaleFonts);
    QFETCH(bool, dontScaleFont);
    auto form = loadForm(QStringLiteral("rich_text.ui"));
    QVERIFY(form);
    auto *label = form->findChild<QLabel *>(QStringLiteral("ptLabel"));
    VelmoraControl *velmora = componentOf(form.get());
    velmora->setScaleFonts(scaleFonts);
    if (dontScaleFont)
        velmora->setOptions(label, VelmoraControl::DontScaleFont);
    const QString original = label->text();
    QVERIFY(showReady(form.get()));
    const QSize design = form->size();
    QVERIFY(resizeTo(form.get(), design * 2));
    QCOMPARE(label->width(), 440);
    QCOMPARE(label->text(), original);
}

// A font given in pixels scales in pixels and is its design font again at
// the design size.
void tst_OddForms::pixelFontsStayInPixels()
{
    auto form = loadForm(QStringLiteral("rich_text.ui"));
    QVERIFY(form);
    auto *label = form->findChild<QLabel *>(QStringLiteral("pixelFont"));
    QFont f = label->font();
    f.setPixelSize(20);
    label->setFont(f);
    const QFont designFont = label->font();
    QVERIFY(showReady(form.get()));
    const QSize design = form->size();
    for (double factor : {2.0, 0.6, 1.5}) {
        QVERIFY(resizeTo(form.get(), scaled(design, factor, factor)));
        QCOMPARE(label->font().pixelSize(), qRound(20 * factor));
        QCOMPARE(label->font().pointSizeF(), -1.0);
    }
    QVERIFY(resizeTo(form.get(), design));
    QCOMPARE(label->font(), designFont);
}

void tst_OddForms::viewsScaleInside_data()
{
    QTest::addColumn<double>("fx");
    QTest::addColumn<double>("fy");
    QTest::newRow("0.6x0.8") << 0.6 << 0.8;
    QTest::newRow("2x1.5") << 2.0 << 1.5;
    QTest::newRow("1.25x2") << 1.25 << 2.0;
}

// Columns follow a view's width, rows, indentation and grid its font; a
// column resized by hand keeps its new width as its design width.
void tst_OddForms::viewsScaleInside()
{
    QFETCH(double, fx);
    QFETCH(double, fy);
    auto form = loadForm(QStringLiteral("views.ui"));
    QVERIFY(form);
    auto *table = form->findChild<QTableWidget *>(QStringLiteral("table"));
    auto *tree = form->findChild<QTreeWidget *>(QStringLiteral("tree"));
    auto *list = form->findChild<QListWidget *>(QStringLiteral("list"));
    QVERIFY(table && tree && list);
    QVERIFY(showReady(form.get()));
    const QSize design = form->size();
    const double points = table->font().pointSizeF();
    const int headerHeight = table->horizontalHeader()->height();

    QVERIFY(resizeTo(form.get(), scaled(design, fx, fy)));
    const double byWidth = table->width() / 200.0;
    const double byFont = table->font().pointSizeF() / points;
    QVERIFY(qAbs(byFont - qMin(fx, fy)) < 0.05);
    for (int c = 0; c < 2; ++c)
        QVERIFY2(qAbs(table->columnWidth(c) - 60 * byWidth) <= 1, qPrintable(QString::number(table->columnWidth(c))));
    for (int r = 0; r < 5; ++r)
        QVERIFY2(qAbs(table->rowHeight(r) - 24 * byFont) <= 1, qPrintable(QString::number(table->rowHeight(r))));
    QTRY_VERIFY2(qAbs(table->horizontalHeader()->height() - headerHeight * byFont) <= 0.5 * qAbs(headerHeight - headerHeight * byFont) + 2,
                 qPrintable(QString::number(table->horizontalHeader()->height())));
    QVERIFY(qAbs(tree->columnWidth(0) - 80 * tree->width() / 230.0) <= 1);
    QVERIFY(qAbs(tree->indentation() - 20 * byFont) <= 1);
    QVERIFY(qAbs(list->gridSize().width() - 64 * byFont) <= 1 && qAbs(list->gridSize().height() - 48 * byFont) <= 1);
    QVERIFY(qAbs(list->spacing() - 4 * byFont) <= 1);

    // By hand: a column made wider, a row taller.
    table->setColumnWidth(1, table->columnWidth(1) + 30);
    const int widened = table->columnWidth(1);
    table->setRowHeight(2, table->rowHeight(2) + 10);
    const int taller = table->rowHeight(2);

    QVERIFY(resizeTo(form.get(), design));
    QCOMPARE(table->columnWidth(0), 60);
    QCOMPARE(table->columnWidth(1), qRound(widened / byWidth));
    QCOMPARE(table->rowHeight(0), 24);
    QCOMPARE(table->rowHeight(2), qRound(taller / byFont));
    QCOMPARE(tree->columnWidth(0), 80);
    QCOMPARE(tree->indentation(), 20);
    QCOMPARE(list->gridSize(), QSize(64, 48));
    QCOMPARE(list->spacing(), 4);
    QTRY_COMPARE(table->horizontalHeader()->height(), headerHeight);
}

void tst_OddForms::laidOutRowsKeepTheirProportions_data()
{
    QTest::addColumn<double>("fx");
    QTest::addColumn<double>("fy");
    QTest::newRow("0.6x0.8") << 0.6 << 0.8;
    QTest::newRow("2x1.5") << 2.0 << 1.5;
}

// Rows a layout places inside an absolutely placed box: no two widgets that
// are apart at design overlap, the growth is shared as at design, and at
// the design size limits, margins and spacing are the design's exactly.
void tst_OddForms::laidOutRowsKeepTheirProportions()
{
    QFETCH(double, fx);
    QFETCH(double, fy);
    auto form = loadForm(QStringLiteral("laid_out_rows.ui"));
    QVERIFY(form);
    QVERIFY(showReady(form.get()));
    const QSize design = form->size();
    struct Seen {
        QPointer<QWidget> w;
        QRect geometry;
        QSize minimum, maximum;
    };
    QList<Seen> seen;
    for (const char *box : {"actions", "settings"})
        for (QWidget *w : form->findChild<QWidget *>(QLatin1String(box))->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            seen.append({w, w->geometry(), w->minimumSize(), w->maximumSize()});
    struct Spacing {
        QPointer<QLayout> layout;
        QMargins margins;
        int spacing;
    };
    QList<Spacing> spacings;
    for (QLayout *l : form->findChildren<QLayout *>())
        spacings.append({l, l->contentsMargins(), l->spacing()});
    const auto *start = form->findChild<QWidget *>(QStringLiteral("start"));
    const auto *stop = form->findChild<QWidget *>(QStringLiteral("stop"));
    const double shares = double(start->width()) / stop->width();

    QVERIFY(resizeTo(form.get(), scaled(design, fx, fy)));
    QApplication::processEvents(); // what the layouts make of it
    for (const Seen &a : seen)
        for (const Seen &b : seen) {
            if (a.w == b.w || a.w->parentWidget() != b.w->parentWidget() || a.geometry.intersects(b.geometry))
                continue;
            const QRect overlap = a.w->geometry().intersected(b.w->geometry());
            QVERIFY2(overlap.width() <= 1 || overlap.height() <= 1,
                     qPrintable(QStringLiteral("%1 and %2 overlap by %3x%4")
                                    .arg(a.w->objectName(), b.w->objectName())
                                    .arg(overlap.width()).arg(overlap.height())));
        }
    QVERIFY2(qAbs(double(start->width()) / stop->width() - shares) < 0.05,
             qPrintable(QStringLiteral("start %1, stop %2").arg(start->width()).arg(stop->width())));
    QVERIFY2(qAbs(start->width() - 120 * fx) <= qMax(2.0, 0.1 * 120 * fx) || start->width() > 120 * fx,
             qPrintable(QString::number(start->width())));

    QVERIFY(resizeTo(form.get(), design));
    QApplication::processEvents();
    for (const Seen &s : seen) {
        QCOMPARE(s.w->minimumSize(), s.minimum);
        QCOMPARE(s.w->maximumSize(), s.maximum);
        QCOMPARE(s.w->geometry(), s.geometry);
    }
    for (const Spacing &s : spacings) {
        QCOMPARE(s.layout->contentsMargins(), s.margins);
        QCOMPARE(s.layout->spacing(), s.spacing);
    }
}

QTEST_MAIN(tst_OddForms)
#include "tst_oddforms.moc"
