// Forms as they come from real projects: custom classes nobody can create,
// widgets with minimum and maximum sizes, and group boxes laid out on pages
// that are not showing. Each is read from a small .ui file written for it.
#include "PlaceholderWidget.h"
#include "PreviewLoader.h"
#include "control/VelmoraControl.h"
#include "qt/QtControl.h"

#include <QFile>
#include <QTabWidget>
#include <QXmlStreamReader>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

// What the file says about one widget.
struct Declared {
    QString name, parent;
    QRect geometry; // null when the file gives none (a page, a laid-out widget)
    int pointSize = -1;
    QString styleSheet;
};

QList<Declared> readDeclared(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    QList<Declared> out;
    QStringList open; // names of the enclosing <widget>s
    QList<int> index;
    QString property;
    int rect[4] = {0, 0, 0, 0};
    while (!xml.atEnd()) {
        xml.readNext();
        const auto name = xml.name();
        if (xml.isStartElement()) {
            if (name == QLatin1String("widget")) {
                out.append({xml.attributes().value("name").toString(), open.value(open.size() - 1), {}, -1, {}});
                open << out.last().name;
                index << int(out.size() - 1);
            } else if (name == QLatin1String("property")) {
                property = xml.attributes().value("name").toString();
            } else if (!index.isEmpty()) {
                Declared &d = out[index.last()];
                static const QStringList edges{"x", "y", "width", "height"};
                if (property == QLatin1String("geometry") && edges.contains(name.toString()))
                    rect[edges.indexOf(name.toString())] = xml.readElementText().toInt();
                else if (property == QLatin1String("font") && name == QLatin1String("pointsize"))
                    d.pointSize = xml.readElementText().toInt();
                else if (property == QLatin1String("styleSheet") && name == QLatin1String("string"))
                    d.styleSheet = xml.readElementText();
                if (property == QLatin1String("geometry") && name == QLatin1String("height"))
                    d.geometry = QRect(rect[0], rect[1], rect[2], rect[3]);
            }
        } else if (xml.isEndElement()) {
            if (name == QLatin1String("widget")) {
                open.removeLast();
                index.removeLast();
            } else if (name == QLatin1String("property")) {
                property.clear();
            }
        }
    }
    return out;
}

QWidget *byName(QWidget *root, const QString &name)
{
    return root->objectName() == name ? root : root->findChild<QWidget *>(name);
}

// The widget whose ratio places `w`: the nearest ancestor of its own, with
// tab pages giving way to their tab widget; the form itself as nullptr.
QWidget *containerOf(QWidget *w, QWidget *form)
{
    for (QWidget *p = w->parentWidget(); p && p != form; p = p->parentWidget()) {
        if (p->objectName().startsWith(QLatin1String("qt_")))
            continue;
        if (p->parentWidget() && qobject_cast<QTabWidget *>(p->parentWidget()->parentWidget()))
            continue; // a page of a tab widget
        return p;
    }
    return nullptr;
}

struct Loaded {
    std::unique_ptr<QWidget> form;
    QStringList warnings;
    QString error;
};

Loaded load(const QString &path)
{
    PreviewLoader loader;
    Loaded l;
    l.form.reset(loader.loadFile(path, nullptr, &l.error));
    l.warnings = loader.warnings();
    return l;
}

// Puts a VelmoraControl on the form, passes at once, and shows it.
bool showScaled(QWidget *form)
{
    auto *velmora = new VelmoraControl(form);
    velmora->setResizeOnMouseUp(false);
    form->show();
    return QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000);
}

} // namespace

class tst_RealForms : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyDeclaredWidgetLoads_data();
    void everyDeclaredWidgetLoads();
    void controlsLandWhereRatiosPutThem_data();
    void controlsLandWhereRatiosPutThem();
    void limitsScaleWithTheirWidget();
    void barsThatFollowTheFormSettle();
    void extremeFilesLoadAndScale_data();
    void extremeFilesLoadAndScale();
};

void tst_RealForms::everyDeclaredWidgetLoads_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("placeholders");
    QTest::addColumn<int>("warnings"); // one per unknown class

    QTest::newRow("unknown classes, no customwidgets, nested")
        << "unknown_classes.ui"
        << QStringList{"heading", "detailPanel", "itemEdit", "pricesFrame", "priceEdit", "priceGrid", "cancelButton"}
        << 6;
    QTest::newRow("declared bases: direct, chained, cyclic, unknown")
        << "custom_bases.ui" << QStringList{"cyclic", "chart"} << 4;
    QTest::newRow("bases Qt knows") << "big_form.ui" << QStringList{} << 3;
}

void tst_RealForms::everyDeclaredWidgetLoads()
{
    QFETCH(QString, file);
    QFETCH(QStringList, placeholders);
    QFETCH(int, warnings);
    const QString path = QFINDTESTDATA("../data/" + file);
    const Loaded l = load(path);
    QVERIFY2(l.form, qPrintable(l.error));
    QCOMPARE(l.warnings.size(), warnings);

    const QList<Declared> declared = readDeclared(path);
    QVERIFY(declared.size() > 5);
    QStringList madePlaceholders;
    for (const Declared &d : declared) {
        QWidget *w = byName(l.form.get(), d.name);
        QVERIFY2(w, qPrintable(d.name + " is missing"));
        // Same place in the tree: its nearest declared ancestor is the one
        // the file puts it in.
        if (!d.parent.isEmpty()) {
            QWidget *p = w->parentWidget();
            while (p && p != l.form.get() && p->objectName().startsWith(QLatin1String("qt_")))
                p = p->parentWidget();
            QCOMPARE(p ? p->objectName() : QString(), d.parent);
            if (!d.geometry.isNull())
                QCOMPARE(w->geometry(), d.geometry);
        }
        if (d.pointSize > 0)
            QCOMPARE(w->font().pointSize(), d.pointSize);
        QCOMPARE(w->styleSheet(), d.styleSheet);
        if (!PlaceholderWidget::placeholderClass(w).isEmpty())
            madePlaceholders << d.name;
    }
    QCOMPARE(madePlaceholders, placeholders);
}

void tst_RealForms::controlsLandWhereRatiosPutThem_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");
    for (const char *file : {"limits_form.ui", "hidden_page_layout.ui"}) {
        QTest::addRow("%s at 0.6 x 0.8", file) << file << 0.6 << 0.8;
        QTest::addRow("%s at 2.0 x 1.5", file) << file << 2.0 << 1.5;
    }
}

void tst_RealForms::controlsLandWhereRatiosPutThem()
{
    QFETCH(QString, file);
    QFETCH(double, rx);
    QFETCH(double, ry);
    const QString path = QFINDTESTDATA("../data/" + file);
    const Loaded l = load(path);
    QVERIFY2(l.form, qPrintable(l.error));
    QWidget *form = l.form.get();
    QVERIFY(showScaled(form));
    auto *tabs = form->findChild<QTabWidget *>();

    // Every page in turn shows what its widgets look like at design size;
    // the form itself is captured with only the first page showing.
    const QSize designForm = form->size();
    QHash<QWidget *, QRect> design;
    const auto record = [&](QHash<QWidget *, QRect> &into) {
        for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
            if (tabs)
                tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            for (const Declared &d : readDeclared(path))
                if (QWidget *w = byName(form, d.name); w && w != form && w->isVisible())
                    into.insert(w, w->geometry());
        }
        if (tabs)
            tabs->setCurrentIndex(0);
        QCoreApplication::processEvents();
    };
    record(design);
    form->resize(qRound(designForm.width() * rx), qRound(designForm.height() * ry));
    QCoreApplication::processEvents();
    QHash<QWidget *, QRect> scaled;
    record(scaled);

    const double fx = double(form->width()) / designForm.width(), fy = double(form->height()) / designForm.height();
    int checked = 0;
    for (auto it = design.cbegin(); it != design.cend(); ++it) {
        QWidget *w = it.key();
        if (velmora::qt::QtControl::geometryManaged(w) || qobject_cast<VelmoraControl *>(w))
            continue;
        double cx = fx, cy = fy;
        if (QWidget *c = containerOf(w, form)) {
            cx = double(scaled[c].width()) / design[c].width();
            cy = double(scaled[c].height()) / design[c].height();
        }
        const QRect d = it.value(), s = scaled[w];
        const QRectF expected(d.x() * cx, d.y() * cy, d.width() * cx, d.height() * cy);
        const bool near = qAbs(s.x() - expected.x()) <= 1 && qAbs(s.y() - expected.y()) <= 1
            && qAbs(s.width() - expected.width()) <= 1 && qAbs(s.height() - expected.height()) <= 1;
        QVERIFY2(near, qPrintable(QStringLiteral("%1 at %2,%3 %4x%5, expected %6,%7 %8x%9")
                                      .arg(w->objectName())
                                      .arg(s.x()).arg(s.y()).arg(s.width()).arg(s.height())
                                      .arg(expected.x()).arg(expected.y()).arg(expected.width())
                                      .arg(expected.height())));
        ++checked;
    }
    QVERIFY(checked >= 6);
}

void tst_RealForms::limitsScaleWithTheirWidget()
{
    const Loaded l = load(QFINDTESTDATA("../data/limits_form.ui"));
    QVERIFY2(l.form, qPrintable(l.error));
    QWidget *form = l.form.get();
    QVERIFY(showScaled(form));
    const auto limits = [&](const char *name) {
        QWidget *w = form->findChild<QWidget *>(name);
        return std::make_pair(w->minimumSize(), w->maximumSize());
    };
    const QSize unset(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);

    form->resize(250, 200); // half the design size
    QCoreApplication::sendPostedEvents();
    QCOMPARE(limits("minLabel"), std::make_pair(QSize(40, 8), unset));
    QCOMPARE(limits("maxLabel"), std::make_pair(QSize(0, 0), QSize(50, 10)));
    QCOMPARE(limits("fixedButton"), std::make_pair(QSize(45, 15), QSize(45, 15)));
    // Only the axes that were set are limited.
    QCOMPARE(limits("widthOnlyCombo"), std::make_pair(QSize(55, 0), QSize(QWIDGETSIZE_MAX, 12)));

    form->resize(1000, 800);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(limits("minLabel"), std::make_pair(QSize(160, 30), unset));
    QCOMPARE(limits("fixedButton"), std::make_pair(QSize(180, 60), QSize(180, 60)));

    form->resize(500, 400); // back to design: the limits the form was designed with
    QCoreApplication::sendPostedEvents();
    QCOMPARE(limits("minEdit"), std::make_pair(QSize(150, 24), unset));
    QCOMPARE(limits("widthOnlyCombo"), std::make_pair(QSize(110, 0), QSize(QWIDGETSIZE_MAX, 24)));
}

void tst_RealForms::barsThatFollowTheFormSettle()
{
    // Scaled far beyond its size, the form's fonts make the toolbar beside
    // it taller, which makes the form shorter, which shrinks the fonts: at a
    // pixel's rounding that went on for ever. It settles.
    const Loaded l = load(QFINDTESTDATA("../data/bars_follow_fonts.ui"));
    QVERIFY2(l.form, qPrintable(l.error));
    QVERIFY(showScaled(l.form.get()));
    QWidget *form = l.form->findChild<QWidget *>(QStringLiteral("centralWidget"));
    int passes = 0;
    auto *velmora = l.form->findChild<VelmoraControl *>();
    connect(velmora, &VelmoraControl::ResizeStarted, this, [&] {
        if (++passes == 100)
            QTimer::singleShot(0, velmora, [velmora] { velmora->setScaleControls(false); }); // to end it, and fail
    });
    for (const QSize &size : {QSize(1, 1), QSize(1600, 480), QSize(1744, 450), QSize(900, 300)}) {
        for (int round = 0; round < 4 && form->size() != size; ++round) {
            passes = 0;
            l.form->resize(size + (l.form->size() - form->size()));
            for (int i = 0; i < 3; ++i)
                QCoreApplication::processEvents();
            QVERIFY2(passes < 100, qPrintable(QStringLiteral("%1 passes at %2x%3").arg(passes).arg(size.width()).arg(size.height())));
        }
    }
}

void tst_RealForms::extremeFilesLoadAndScale_data()
{
    // Files no editor writes, which Qt's loader or plain int arithmetic
    // would not survive: they load, scale both ways and come back.
    QTest::addColumn<QByteArray>("widgets"); // inside a 300 x 200 form
    QTest::addColumn<QString>("warning");
    QTest::newRow("a layout of no class") << QByteArray("<widget class=\"QWidget\"><layout></layout></widget>")
                                          << "no layout class \"\"";
    QTest::newRow("a layout of a class Qt does not know")
        << QByteArray("<widget class=\"QFrame\"><layout class=\"FlowLayout\"><item><widget class=\"QLabel\"/>"
                      "</item></layout></widget>")
        << "no layout class \"FlowLayout\"";
    QTest::newRow("a geometry at the end of the int range")
        << QByteArray("<widget class=\"QLabel\" name=\"far\"><property name=\"geometry\"><rect><x>2147483000</x>"
                      "<y>10</y><width>2147483647</width><height>20</height></rect></property></widget>")
        << QString();
    QTest::newRow("a line from one end of the int range to the other")
        << QByteArray("<widget class=\"VelmoraLine\" name=\"line\"><property name=\"X1\"><number>-2147483648</number>"
                      "</property><property name=\"X2\"><number>2147483647</number></property><property "
                      "name=\"BorderWidth\"><number>2147483647</number></property></widget>")
        << QString();
}

void tst_RealForms::extremeFilesLoadAndScale()
{
    QFETCH(QByteArray, widgets);
    QFETCH(QString, warning);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("extreme.ui"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<ui version=\"4.0\"><class>F</class><widget class=\"QWidget\" name=\"F\"><property "
               "name=\"geometry\"><rect><x>0</x><y>0</y><width>300</width><height>200</height></rect></property>"
               + widgets + "</widget></ui>");
    file.close();
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(warning)));
    const Loaded l = load(path);
    QVERIFY2(l.form, qPrintable(l.error));
    QVERIFY(showScaled(l.form.get()));
    for (const QSize &size : {QSize(600, 400), QSize(150, 100), QSize(300, 200)}) {
        l.form->resize(size);
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCOMPARE(l.form->size(), size);
    }
}

QTEST_MAIN(tst_RealForms)
#include "tst_realforms.moc"
