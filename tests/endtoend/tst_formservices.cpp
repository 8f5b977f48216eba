// What the component does to the form itself rather than to its controls:
// the gradient background and the one typeface for every control.
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "form/FormGradient.h"
#include "form/SizeLimitHooks.h"
#include "form/WipeEffect.h"
#include "widgets/VelmoraLine.h"

#include <QCalendarWidget>
#include <QDialog>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextCharFormat>
#include <QUrl>
#include "form/WindowSettings.h"

#include <QtTest>

namespace {

struct Form {
    QWidget widget;
    VelmoraControl *velmora = nullptr;

    explicit Form(const std::function<void(VelmoraControl *)> &configure = {})
    {
        widget.resize(400, 300);
        velmora = new VelmoraControl(&widget);
        velmora->setResizeOnMouseUp(false);
        if (configure)
            configure(velmora);
    }
    bool show()
    {
        widget.show();
        return QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000);
    }
    QColor at(int x, int y) { return widget.grab().toImage().pixelColor(x, y); }
};

QColor rgb(const velmora::GradientChannels &c)
{
    return QColor(c.red, c.green, c.blue);
}

} // namespace

class tst_FormServices : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bandColours_data();
    void bandColours();
    void gradientOnTheForm();
    void gradientFollowsTheSettings();
    void replacementFont_data();
    void replacementFont();
    void initTestCase();
    void savedStateRoundTrip_data();
    void savedStateRoundTrip();
    void namesStayOneGroup_data();
    void namesStayOneGroup();
    void namesNeverShareAGroup();
    void unusableSettingsLeaveTheWindow_data();
    void unusableSettingsLeaveTheWindow();
    void sizeLimits_data();
    void sizeLimits();
    void firstPlacement_data();
    void firstPlacement();
    void mdiChildPlacement();
    void mdiChildKeepsItsBuiltSize_data();
    void mdiChildKeepsItsBuiltSize();
    void stayOnTopKeepsTheWindow();
    void sizeLimitHooksChain();
    void keepOnScreen_data();
    void keepOnScreen();
    void trappedErrorsGoToTheHandler();
    void wipeRegions_data();
    void wipeRegions();
    void wipesOnAWindow_data();
    void wipesOnAWindow();
    void reshownIsANewStart();
    void dialogsUnloadWhenDone_data();
    void dialogsUnloadWhenDone();
    void wipeEndsWithItsWindow();
    void gradientFollowsEveryResize_data();
    void gradientFollowsEveryResize();
    void designTimeIsInert();

private:
    QTemporaryDir m_settings;
};

void tst_FormServices::initTestCase()
{
    // Never the user's own settings.
    QVERIFY(m_settings.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
}

namespace {

QSettings velmoraSettings()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Velmora"), QStringLiteral("Velmora"));
}

struct SavingForm : Form {
    explicit SavingForm(const QString &name)
        : Form([&](VelmoraControl *v) {
            v->setSaveWindowState(true);
            v->setWindowName(name);
        })
    {
    }
};

} // namespace

void tst_FormServices::savedStateRoundTrip_data()
{
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<bool>("closed");
    QTest::newRow("closed in its normal state") << false << true;
    QTest::newRow("closed maximised: reopens maximised, restores to the last normal rectangle") << true << true;
    QTest::newRow("deleted, never closed") << false << false;
}

void tst_FormServices::savedStateRoundTrip()
{
    QFETCH(bool, maximised);
    QFETCH(bool, closed);
    velmoraSettings().clear();
    QRect normal; // the window's outer rectangle, its frame included
    {
        SavingForm f(QStringLiteral("Round trip"));
        QVERIFY(f.show());
        f.widget.setGeometry(120, 90, 500, 350);
        QCoreApplication::processEvents();
        normal = f.widget.frameGeometry();
        if (maximised) {
            f.widget.showMaximized();
            QCoreApplication::processEvents();
        }
        if (closed) {
            QVERIFY(f.widget.close());
        } else {
            // The component alone going is no unload: its window lives on.
            delete f.velmora;
            QVERIFY(velmoraSettings().childGroups().isEmpty());
            f.velmora = new VelmoraControl(&f.widget);
            f.velmora->setSaveWindowState(true);
            f.velmora->setWindowName(QStringLiteral("Round trip"));
            QVERIFY(f.show());
            f.widget.setGeometry(120, 90, 500, 350);
            QCoreApplication::processEvents();
        }
    }
    QSettings s = velmoraSettings();
    QCOMPARE(s.childGroups(), QStringList{QStringLiteral("Round%20trip")});
    QCOMPARE(s.value(QStringLiteral("Round%20trip/WindowWidth")).toString(), QString::number(normal.width() * 15));
    QCOMPARE(s.value(QStringLiteral("Round%20trip/WindowState")).toString(), QString::number(maximised ? 2 : 0));

    SavingForm again(QStringLiteral("Round trip"));
    QVERIFY(again.show());
    QCoreApplication::processEvents();
    QCOMPARE(bool(again.widget.windowState() & Qt::WindowMaximized), maximised);
    if (maximised) {
        again.widget.showNormal();
        QCoreApplication::processEvents();
    }
    QCOMPARE(again.widget.frameGeometry(), normal);
    // Used once: gone until the window closes again.
    QVERIFY(velmoraSettings().childGroups().isEmpty());
}

void tst_FormServices::namesStayOneGroup_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title"); // the window's, for an empty name
    QTest::newRow("slashes") << "../Other App/settings" << "";
    QTest::newRow("backslashes") << "..\\..\\x" << "";
    QTest::newRow("spaces") << "  my  window  " << "";
    QTest::newRow("percent signs") << "%2F%2E" << "";
    QTest::newRow("empty: the title, kept") << "" << "Main/Window";
}

void tst_FormServices::namesStayOneGroup()
{
    QFETCH(QString, name);
    QFETCH(QString, title);
    velmoraSettings().clear();
    {
        SavingForm f(name);
        f.widget.setWindowTitle(title);
        QVERIFY(f.show());
        QVERIFY(f.widget.close());
        QCOMPARE(f.velmora->WindowName(), name.isEmpty() ? title : name);
    }
    QSettings s = velmoraSettings();
    QCOMPARE(s.childGroups().size(), 1);
    QVERIFY(s.childKeys().isEmpty());
    QCOMPARE(QUrl::fromPercentEncoding(s.childGroups().at(0).toLatin1()), name.isEmpty() ? title : name);
    s.beginGroup(s.childGroups().at(0));
    QCOMPARE(s.childGroups(), QStringList());
    QCOMPARE(s.childKeys().size(), 5);
}

void tst_FormServices::namesNeverShareAGroup()
{
    // Every distinct window name gets its own group: empty and NUL, a name
    // that looks encoded, and names UTF-8 cannot carry exactly.
    const QStringList names = {QString(),
                               QString(QChar(0)),
                               QStringLiteral("%00"),
                               QStringLiteral("%"),
                               QStringLiteral("%u"),
                               QString(QChar(0xD800)),
                               QString(QChar(0xFFFD)),
                               QString(QChar(0xDC00)) + QChar(0xD800),
                               QStringLiteral("a"),
                               QStringLiteral("A"),
                               QStringLiteral("a/b"),
                               QStringLiteral("a%2Fb")};
    QSet<QString> groups;
    for (const QString &name : names)
        groups.insert(velmora::WindowSettings::groupFor(name));
    QCOMPARE(groups.size(), names.size());
}

void tst_FormServices::unusableSettingsLeaveTheWindow_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("text") << "WindowLeft" << "left";
    QTest::newRow("NaN") << "WindowTop" << "nan";
    QTest::newRow("huge") << "WindowWidth" << "1e30";
    QTest::newRow("larger than any screen: 100000 pixels") << "WindowHeight" << "1500000";
    QTest::newRow("negative size") << "WindowHeight" << "-300";
    QTest::newRow("a state that is none") << "WindowState" << "7";
    QTest::newRow("missing") << "WindowWidth" << QString();
}

void tst_FormServices::unusableSettingsLeaveTheWindow()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    velmoraSettings().clear();
    {
        QSettings s = velmoraSettings();
        s.beginGroup(QStringLiteral("Hostile"));
        const QStringList keys{"WindowLeft", "WindowTop", "WindowWidth", "WindowHeight", "WindowState"};
        const QStringList good{"1500", "1500", "6000", "4500", "0"};
        for (int i = 0; i < keys.size(); ++i)
            s.setValue(keys.at(i), keys.at(i) == key ? value : good.at(i));
        if (value.isNull())
            s.remove(key);
        s.endGroup();
        s.setValue(QStringLiteral("Other/WindowLeft"), QStringLiteral("15")); // another window's
    }
    SavingForm f(QStringLiteral("Hostile"));
    f.widget.setGeometry(30, 40, 400, 300);
    QVERIFY(f.show());
    QCOMPARE(f.widget.geometry(), QRect(30, 40, 400, 300));
    QSettings s = velmoraSettings();
    QCOMPARE(s.value(QStringLiteral("Other/WindowLeft")).toString(), QStringLiteral("15"));
    // A failed load deletes nothing: the next close writes the group anew.
    QVERIFY(s.childGroups().contains(QStringLiteral("Hostile")));
}

void tst_FormServices::bandColours_data()
{
    QTest::addColumn<int>("colour"); // 0x00BBGGRR
    QTest::addColumn<QColor>("first");
    QTest::addColumn<QColor>("second");
    QTest::addColumn<QColor>("last");
    QTest::newRow("white ends at 7") << 0xFFFFFF << QColor(255, 255, 255) << QColor(251, 251, 251) << QColor(7, 7, 7);
    QTest::newRow("the default blue") << 0xFF0000 << QColor(0, 0, 255) << QColor(0, 0, 251) << QColor(0, 0, 7);
    QTest::newRow("a channel of 2 is 0 from the second band") << 0x000280 << QColor(128, 2, 0) << QColor(124, 0, 0)
                                                               << QColor(0, 0, 0);
    QTest::newRow("a channel of 5 goes 5, 1, 0") << 0x000005 << QColor(5, 0, 0) << QColor(1, 0, 0) << QColor(0, 0, 0);
    QTest::newRow("the high byte is dropped, not resolved") << int(0x80FF0000u) << QColor(0, 0, 255)
                                                             << QColor(0, 0, 251) << QColor(0, 0, 7);
}

void tst_FormServices::bandColours()
{
    QFETCH(int, colour);
    QFETCH(QColor, first);
    QFETCH(QColor, second);
    QFETCH(QColor, last);
    const velmora::GradientBands bands(6000, 4500, velmora::GradientChannels::fromColour(std::uint32_t(colour)));
    QCOMPARE(rgb(bands.colour(0)), first);
    QCOMPARE(rgb(bands.colour(1)), second);
    QCOMPARE(rgb(bands.colour(velmora::GradientBands::Count - 1)), last);
    // One rounding of the band height (halves to even), added up down the form.
    QCOMPARE(velmora::GradientBands(6000, 63 * 70.5, {}).bottom(0), 70.0);
    QCOMPARE(velmora::GradientBands(6000, 63 * 71.5, {}).bottom(62), 63 * 72.0);
}

void tst_FormServices::gradientOnTheForm()
{
    Form f([](VelmoraControl *v) {
        v->setGradientFill(true);
        v->setGradientColour(0xFFFFFF);
    });
    QVERIFY(f.show());
    QCoreApplication::processEvents();
    // Bands over the window's outer height (the frame included, so they
    // run on below the client area), band by band from white.
    const auto outer = [&] { return f.widget.frameGeometry().size() * 15; };
    const velmora::GradientBands bands(outer().width(), outer().height(),
                                       velmora::GradientChannels::fromColour(0xFFFFFF));
    int checked = 0;
    for (int k = 0; k < velmora::GradientBands::Count; k += 6) {
        const int y = qRound((bands.top(k) + bands.bottom(k)) / 2 / 15);
        if (y >= f.widget.height())
            break;
        QCOMPARE(f.at(5, y), rgb(bands.colour(k)));
        ++checked;
    }
    QVERIFY(checked >= 8);

    // Twice the size: the bands are painted again, twice as tall.
    f.widget.resize(800, 600);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    const velmora::GradientBands tall(outer().width(), outer().height(),
                                      velmora::GradientChannels::fromColour(0xFFFFFF));
    for (int k : {1, 30, 55})
        QCOMPARE(f.at(5, qRound((tall.top(k) + tall.bottom(k)) / 2 / 15)), rgb(tall.colour(k)));
}

void tst_FormServices::gradientFollowsTheSettings()
{
    Form f;
    QVERIFY(f.show());
    const QColor plain = f.at(5, 5);
    f.velmora->setGradientColour(0x0000FF); // no gradient yet: nothing painted
    QCoreApplication::processEvents();
    QCOMPARE(f.at(5, 5), plain);
    f.velmora->setGradientFill(true);
    QCoreApplication::processEvents();
    QCOMPARE(f.at(5, 2), QColor(255, 0, 0));
    f.velmora->setGradientColour(0x00FF00);
    QCoreApplication::processEvents();
    QCOMPARE(f.at(5, 2), QColor(0, 255, 0));
    // Off: the painted background is cleared, the form's own shows again.
    f.velmora->setGradientFill(false);
    QCoreApplication::processEvents();
    QCOMPARE(f.at(5, 5), plain);
}

void tst_FormServices::replacementFont_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<bool>("replaced");
    QTest::newRow("<none> replaces nothing") << "<none>" << false;
    QTest::newRow("<NONE> is a font name") << "<NONE>" << true;
    // Written as it stands; Qt's font keeps its face rather than take none.
    QTest::newRow("an empty name leaves the face") << "" << false;
    QTest::newRow("a family") << "DejaVu Serif" << true;
}

void tst_FormServices::replacementFont()
{
    QFETCH(QString, family);
    QFETCH(bool, replaced);
    Form f([&](VelmoraControl *v) { v->setReplaceFontsWith(family); });
    QFont designed(QStringLiteral("DejaVu Sans"));
    designed.setPointSizeF(11);
    designed.setBold(true);
    auto *first = new QLabel(QStringLiteral("first"), &f.widget);
    first->setObjectName(QStringLiteral("first"));
    first->setFont(designed);
    first->setGeometry(10, 10, 100, 20);
    // A control without a font holds up nothing after it.
    auto *line = new VelmoraLine(&f.widget);
    line->setObjectName(QStringLiteral("line"));
    line->setGeometry(10, 40, 100, 2);
    auto *calendar = new QCalendarWidget(&f.widget);
    calendar->setObjectName(QStringLiteral("calendar"));
    calendar->setGeometry(10, 50, 280, 200);
    calendar->setFont(designed);
    auto *last = new QLabel(QStringLiteral("last"), &f.widget);
    last->setObjectName(QStringLiteral("last"));
    last->setFont(designed);
    last->setGeometry(300, 10, 90, 20);
    QVERIFY(f.show());

    const QString expected = replaced ? family : designed.family();
    for (QWidget *w : {static_cast<QWidget *>(first), static_cast<QWidget *>(last), static_cast<QWidget *>(calendar)}) {
        QCOMPARE(w->font().family(), expected);
        QCOMPARE(w->font().pointSizeF(), 11.0); // the form is at its design size
        QVERIFY(w->font().bold());
    }
    // The calendar's own parts: its weekday header, dates and month bar.
    if (replaced)
        QCOMPARE(calendar->headerTextFormat().font().family(), expected);
    for (const char *part : {"qt_calendar_calendarview", "qt_calendar_navigationbar"})
        QCOMPARE(calendar->findChild<QWidget *>(QLatin1String(part))->font().family(), expected);
}

void tst_FormServices::sizeLimits_data()
{
    // Limits and sizes in pixels of the window's outer size (15 twips each).
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QSize>("dragTo");
    QTest::addColumn<bool>("maximise");
    QTest::addColumn<QSize>("expected");
    QTest::addColumn<int>("beeps");
    QTest::newRow("a minimum without a maximum is not enforced") << QSize(300, 0) << QSize(0, 0) << QSize(200, 300)
                                                                << false << QSize(200, 300) << 0;
    QTest::newRow("below the minimum: set back") << QSize(300, 0) << QSize(600, 0) << QSize(200, 300) << false
                                                 << QSize(300, 300) << 1;
    QTest::newRow("above the maximum: set back") << QSize(0, 0) << QSize(600, 0) << QSize(800, 300) << false
                                                 << QSize(600, 300) << 1;
    QTest::newRow("both dimensions") << QSize(300, 200) << QSize(600, 400) << QSize(900, 100) << false
                                     << QSize(600, 200) << 2;
    QTest::newRow("within the limits") << QSize(300, 200) << QSize(600, 400) << QSize(500, 300) << false
                                       << QSize(500, 300) << 0;
    QTest::newRow("a minimum above the maximum: neither") << QSize(700, 0) << QSize(600, 0) << QSize(900, 300)
                                                          << false << QSize(900, 300) << 0;
    QTest::newRow("maximised: left alone") << QSize(0, 0) << QSize(600, 0) << QSize(500, 300) << true << QSize()
                                           << 0;
}

void tst_FormServices::sizeLimits()
{
    QFETCH(QSize, minimum);
    QFETCH(QSize, maximum);
    QFETCH(QSize, dragTo);
    QFETCH(bool, maximise);
    QFETCH(QSize, expected);
    QFETCH(int, beeps);
    Form f;
    f.velmora->setMaxHeight(-10); // below 1 is no limit
    QCOMPARE(f.velmora->MaxHeight(), 0);
    int heard = 0;
    VelmoraControlPrivate::get(f.velmora)->driver.beep = [&] { ++heard; };
    QVERIFY(f.show());
    f.velmora->setMinWidth(minimum.width() * 15);
    f.velmora->setMinHeight(minimum.height() * 15);
    f.velmora->setMaxWidth(maximum.width() * 15);
    f.velmora->setMaxHeight(maximum.height() * 15);
    const QSize frame = f.widget.frameGeometry().size() - f.widget.size();
    if (maximise)
        f.widget.showMaximized();
    else
        f.widget.resize(dragTo - frame);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCOMPARE(heard, beeps);
    if (!expected.isValid())
        return;
    QCOMPARE(f.widget.frameGeometry().size(), expected);
    // Unusable for half a second after a correction.
    QCOMPARE(f.widget.isEnabled(), beeps == 0);
    QTRY_VERIFY_WITH_TIMEOUT(f.widget.isEnabled(), 2000);
}

void tst_FormServices::firstPlacement_data()
{
    QTest::addColumn<int>("scaleX");
    QTest::addColumn<int>("scaleY");
    QTest::addColumn<bool>("centre");
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<QSizeF>("share"); // of the screen, for the outer size; 0: as designed
    QTest::newRow("half as wide, centred") << 50 << 0 << true << false << QSizeF(0.5, 0);
    QTest::newRow("only the height") << 0 << 50 << false << false << QSizeF(0, 0.5);
    QTest::newRow("150 percent is 100") << 150 << 0 << true << false << QSizeF(1, 0);
    QTest::newRow("-5 percent is 0") << -5 << 0 << true << false << QSizeF(0, 0);
    QTest::newRow("maximised: neither sized nor centred") << 50 << 50 << true << true << QSizeF(0, 0);
}

void tst_FormServices::firstPlacement()
{
    QFETCH(int, scaleX);
    QFETCH(int, scaleY);
    QFETCH(bool, centre);
    QFETCH(bool, maximised);
    QFETCH(QSizeF, share);
    Form f([&](VelmoraControl *v) {
        v->setScaleX(scaleX);
        v->setScaleY(scaleY);
        v->setCenterX(centre);
        v->setCenterY(centre);
    });
    QCOMPARE(f.velmora->ScaleX(), qBound(0, scaleX, 100));
    f.widget.move(3, 4);
    if (maximised)
        f.widget.setWindowState(Qt::WindowMaximized);
    QVERIFY(f.show());
    QCoreApplication::processEvents();
    if (maximised) {
        QVERIFY(f.widget.isMaximized());
        f.widget.showNormal();
        QCoreApplication::processEvents();
        QCOMPARE(f.widget.pos(), QPoint(3, 4));
        return;
    }
    const QRect screen = f.widget.screen()->geometry();
    const QRect outer = f.widget.frameGeometry();
    const int frameW = outer.width() - f.widget.width(), frameH = outer.height() - f.widget.height();
    QVERIFY(qAbs(outer.width() - (share.width() > 0 ? screen.width() * share.width() : 400 + frameW)) <= 1);
    QVERIFY(qAbs(outer.height() - (share.height() > 0 ? screen.height() * share.height() : 300 + frameH)) <= 1);
    if (centre) {
        QVERIFY2(qAbs(outer.center().x() - screen.center().x()) <= 1, qPrintable(QString::number(outer.x())));
        QVERIFY(qAbs(outer.center().y() - screen.center().y()) <= 1);
    } else {
        QCOMPARE(outer.topLeft(), QPoint(3, 4));
    }
}

void tst_FormServices::mdiChildPlacement()
{
    QMdiArea area;
    area.resize(800, 600);
    area.show();
    auto *form = new QWidget;
    form->resize(200, 150);
    auto *velmora = new VelmoraControl(form);
    velmora->setResizeOnMouseUp(false);
    velmora->setMdiChildWidth(450 * 15);
    velmora->setMdiChildHeight(300 * 15);
    velmora->setCenterX(true);
    QMdiSubWindow *sub = area.addSubWindow(form);
    sub->show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    // Its own size, centred across the MDI area, not the screen.
    QCOMPARE(sub->frameGeometry().size(), QSize(450, 300));
    QVERIFY2(qAbs(sub->geometry().center().x() - area.viewport()->width() / 2) <= 1,
             qPrintable(QString::number(sub->x())));
}

void tst_FormServices::mdiChildKeepsItsBuiltSize_data()
{
    QTest::addColumn<QSize>("subwindow"); // as the application sized it; empty: never sized
    QTest::addColumn<QSize>("mdiChild");  // MdiChildWidth x MdiChildHeight in pixels; empty: none
    QTest::addColumn<QSize>("design");    // the form's design size
    // An MDI subwindow knows no size for a form without a layout: unsized,
    // it would show a title bar's worth of it, and that would be the design.
    QTest::newRow("never sized: the size it was built at") << QSize() << QSize() << QSize(300, 160);
    QTest::newRow("never sized, with an MDI child size") << QSize() << QSize(450, 300) << QSize(300, 160);
    QTest::newRow("sized by the application: that size") << QSize(208, 110) << QSize() << QSize();
}

void tst_FormServices::mdiChildKeepsItsBuiltSize()
{
    QFETCH(QSize, subwindow);
    QFETCH(QSize, mdiChild);
    QFETCH(QSize, design);
    QMdiArea area;
    area.resize(800, 600);
    area.show();
    auto *child = new QWidget;
    child->resize(300, 160);
    auto *ok = new QPushButton(QStringLiteral("OK"), child);
    ok->setGeometry(200, 120, 80, 24);
    auto *velmora = new VelmoraControl(child);
    velmora->setResizeOnMouseUp(false);
    if (mdiChild.isValid()) {
        velmora->setMdiChildWidth(mdiChild.width() * 15);
        velmora->setMdiChildHeight(mdiChild.height() * 15);
    }
    QMdiSubWindow *sub = area.addSubWindow(child);
    if (subwindow.isValid())
        sub->resize(subwindow);
    sub->show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    QCoreApplication::processEvents();
    if (subwindow.isValid()) {
        QCOMPARE(sub->size(), subwindow);
        QCOMPARE(ok->geometry(), QRect(200, 120, 80, 24)); // the form as shown is the design
        return;
    }
    if (mdiChild.isValid())
        QCOMPARE(sub->frameGeometry().size(), mdiChild);
    else
        QCOMPARE(child->size(), design);
    QCOMPARE(velmora->DesignFormScaleWidth(), design.width() * 15.0);
    QCOMPARE(velmora->DesignFormScaleHeight(), design.height() * 15.0);
    // Placed by the form's share of its design.
    const double fx = child->width() / 300.0, fy = child->height() / 160.0;
    QCOMPARE(ok->geometry(), QRect(qRound(200 * fx), qRound(120 * fy), qRound(80 * fx), qRound(24 * fy)));
}

void tst_FormServices::stayOnTopKeepsTheWindow()
{
    Form f;
    QVERIFY(f.show());
    const WId id = f.widget.winId();
    for (const bool on : {true, false}) {
        f.velmora->setStayOnTop(on);
        QCoreApplication::processEvents();
        QCOMPARE(bool(f.widget.windowHandle()->flags() & Qt::WindowStaysOnTopHint), on);
        QCOMPARE(bool(f.widget.windowFlags() & Qt::WindowStaysOnTopHint), on);
        QVERIFY(f.widget.isVisible());
        QCOMPARE(f.widget.winId(), id);
    }
}

void tst_FormServices::sizeLimitHooksChain()
{
    using velmora::SizeLimitHooks;
    QWidget window;
    window.setMinimumSize(10, 10);
    QWidget other;
    SizeLimitHooks::unhookWindow(&other); // never hooked: nothing happens
    QCOMPARE(SizeLimitHooks::rowsFor(&other), 0);

    // 32767 pixels: larger than any screen, so the window may grow past it.
    SizeLimitHooks::hookWindow(&window, 100 * 15, 50 * 15, 32767 * 15, 32767 * 15);
    QCOMPARE(window.minimumSize(), QSize(100, 50));
    QCOMPARE(window.maximumSize(), QSize(32767, 32767));
    SizeLimitHooks::hookWindow(&window, 22 * 15 + 7, 0, 400 * 15 + 8, 300 * 15); // 22.47 and 400.53 pixels
    QCOMPARE(window.minimumSize(), QSize(22, 0));
    QCOMPARE(window.maximumSize(), QSize(401, 300));
    QCOMPARE(SizeLimitHooks::rowsFor(&window), 2);
    // The last row goes first, each putting back what it found.
    SizeLimitHooks::unhookWindow(&window);
    QCOMPARE(window.minimumSize(), QSize(100, 50));
    SizeLimitHooks::unhookWindow(&window);
    QCOMPARE(window.minimumSize(), QSize(10, 10));
    QCOMPARE(window.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    QCOMPARE(SizeLimitHooks::rowsFor(&window), 0);

    // A window that goes away takes its rows with it.
    auto *gone = new QWidget;
    SizeLimitHooks::hookWindow(gone, 0, 0, 1500, 1500);
    delete gone;
    QCOMPARE(SizeLimitHooks::rowsFor(gone), 0);
}

void tst_FormServices::keepOnScreen_data()
{
    QTest::addColumn<bool>("keep");
    QTest::addColumn<QRect>("saved"); // pixels
    QTest::newRow("off screen, kept as saved") << false << QRect(5000, 4000, 300, 200);
    QTest::newRow("off screen, brought back") << true << QRect(5000, 4000, 300, 200);
    QTest::newRow("off screen and larger than it") << true << QRect(-9000, 100, 5000, 4000);
    QTest::newRow("partly on screen: left alone") << true << QRect(-100, 50, 300, 200);
}

void tst_FormServices::keepOnScreen()
{
    QFETCH(bool, keep);
    QFETCH(QRect, saved);
    velmoraSettings().clear();
    {
        QSettings s = velmoraSettings();
        s.beginGroup(QStringLiteral("Screens"));
        const int values[] = {saved.x() * 15, saved.y() * 15, saved.width() * 15, saved.height() * 15};
        const char *keys[] = {"WindowLeft", "WindowTop", "WindowWidth", "WindowHeight"};
        for (int i = 0; i < 4; ++i)
            s.setValue(QLatin1String(keys[i]), QString::number(values[i]));
        s.setValue(QStringLiteral("WindowState"), QStringLiteral("0"));
    }
    SavingForm f(QStringLiteral("Screens"));
    f.velmora->setKeepOnScreen(keep);
    QVERIFY(f.show());
    QCoreApplication::processEvents();
    const QRect frame = f.widget.frameGeometry();
    const QRect area = f.widget.screen()->availableGeometry();
    if (!keep || area.intersects(saved)) {
        // Where it was saved (give or take the frame the platform adds).
        QVERIFY((frame.topLeft() - saved.topLeft()).manhattanLength() <= 4);
        return;
    }
    QVERIFY2(area.contains(frame), qPrintable(QStringLiteral("%1,%2 %3x%4").arg(frame.x()).arg(frame.y())
                                                 .arg(frame.width()).arg(frame.height())));
    QCOMPARE(frame.size(), saved.size().boundedTo(area.size()));
}

void tst_FormServices::trappedErrorsGoToTheHandler()
{
    QStringList shown;
    const auto previous = VelmoraControl::setTrappedErrorHandler(
        [&](QWidget *window, const QString &text) { shown << window->objectName() + QLatin1Char(':') + text; });
    Form f;
    f.widget.setObjectName(QStringLiteral("form"));
    QVERIFY(f.show());
    Q_EMIT VelmoraControlPrivate::get(f.velmora)->driver.trappedError(QStringLiteral("QxVelmora Trapped Error = x"));
    VelmoraControl::setTrappedErrorHandler(previous);
    QCOMPARE(shown, QStringList{QStringLiteral("form:QxVelmora Trapped Error = x")});
}

void tst_FormServices::wipeRegions_data()
{
    // A window of 200 x 100 pixels wiping as fast as it goes: 100 steps of
    // 2 x 1 pixels; the fold strip is 90..110.
    using W = velmora::WipeEffect;
    QTest::addColumn<bool>("opening");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPoint>("at"); // the window's corner on the screen
    QTest::addColumn<int>("step");
    QTest::addColumn<QRect>("region"); // null: this step changes nothing
    const QPoint origin(0, 0);
    QTest::newRow("opening left") << true << int(W::WipeLeft) << origin << 25 << QRect(150, 0, 50, 100);
    QTest::newRow("opening right") << true << int(W::WipeRight) << origin << 25 << QRect(0, 0, 50, 100);
    QTest::newRow("opening up") << true << int(W::WipeUp) << origin << 25 << QRect(0, 75, 200, 25);
    QTest::newRow("opening down") << true << int(W::WipeDown) << origin << 25 << QRect(0, 0, 200, 25);
    QTest::newRow("opening vertical") << true << int(W::WipeVertical) << origin << 50 << QRect(50, 0, 100, 100);
    QTest::newRow("opening horizontal") << true << int(W::WipeHorizontal) << origin << 50 << QRect(0, 25, 200, 50);
    QTest::newRow("opening fold: the strip") << true << int(W::Fold) << origin << 10 << QRect(90, 40, 20, 20);
    QTest::newRow("opening fold: not wider than the strip") << true << int(W::Fold) << origin << 50 << QRect();
    QTest::newRow("opening fold: sideways") << true << int(W::Fold) << origin << 60 << QRect(80, 0, 40, 100);
    QTest::newRow("closing left") << false << int(W::WipeLeft) << origin << 25 << QRect(0, 0, 150, 100);
    QTest::newRow("closing right") << false << int(W::WipeRight) << origin << 25 << QRect(50, 0, 150, 100);
    QTest::newRow("closing up") << false << int(W::WipeUp) << origin << 25 << QRect(0, 0, 200, 75);
    QTest::newRow("closing down") << false << int(W::WipeDown) << origin << 25 << QRect(0, 25, 200, 75);
    QTest::newRow("closing vertical") << false << int(W::WipeVertical) << origin << 20 << QRect(20, 0, 160, 100);
    QTest::newRow("closing horizontal") << false << int(W::WipeHorizontal) << origin << 20 << QRect(0, 10, 200, 80);
    QTest::newRow("closing fold: the sides") << false << int(W::Fold) << origin << 10 << QRect(20, 0, 160, 100);
    QTest::newRow("closing fold: inside the strip") << false << int(W::Fold) << origin << 48 << QRect();
    QTest::newRow("closing fold: the strip") << false << int(W::Fold) << origin << 60 << QRect(90, 10, 20, 80);
    QTest::newRow("closing left, the last step shows nothing") << false << int(W::WipeLeft) << origin << 100
                                                               << QRect(0, 0, 0, 100);
    QTest::newRow("the far edges are the screen's, as they stand") << true << int(W::WipeRight) << QPoint(300, 200)
                                                                   << 25 << QRect(0, 0, 50, 300);
    QTest::newRow("no such wipe") << true << 9 << origin << 25 << QRect();
}

void tst_FormServices::wipeRegions()
{
    QFETCH(bool, opening);
    QFETCH(int, kind);
    QFETCH(QPoint, at);
    QFETCH(int, step);
    QFETCH(QRect, region);
    const velmora::WipeEffect wipe(opening, kind, QRect(at, QSize(200, 100)), 0);
    QCOMPARE(wipe.steps(), 100);
    const auto r = wipe.region(step);
    QCOMPARE(r.has_value(), !region.isNull());
    if (r)
        QCOMPARE(*r, region);
    // Half a second: 9 steps of about 55 ms.
    const velmora::WipeEffect timed(opening, kind, QRect(at, QSize(200, 100)), 0.5);
    QCOMPARE(timed.steps(), 9);
    QVERIFY(qAbs(timed.secondsPerStep() - 0.5 / 9) < 1e-9);
    // However long it is asked to take, a wipe lasts 10 s at most.
    for (double endless : {1e5, 2e8, 1e300})
        QCOMPARE(velmora::WipeEffect(opening, kind, QRect(at, QSize(200, 100)), endless).steps(), 180);
}

void tst_FormServices::wipesOnAWindow_data()
{
    QTest::addColumn<bool>("refuseClose");
    QTest::newRow("closed") << false;
    QTest::newRow("the window refuses to close: nothing plays") << true;
}

void tst_FormServices::wipesOnAWindow()
{
    QFETCH(bool, refuseClose);
    struct Window : QWidget {
        bool refuse = false;
        void closeEvent(QCloseEvent *e) override { e->setAccepted(!refuse); }
    } window;
    window.refuse = refuseClose;
    window.resize(200, 100);
    auto *velmora = new VelmoraControl(&window);
    velmora->setResizeOnMouseUp(false);
    velmora->setFormOpen(VelmoraControl::FoWipeDown);
    velmora->setFormOpenTime(0.1);
    velmora->setFormClose(VelmoraControl::FcWipeLeft);
    velmora->setFormCloseTime(0);
    velmora->setStayOnTop(true);
    window.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    QVERIFY(window.mask().isEmpty()); // opened: no mask
    QVERIFY(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);

    QCOMPARE(window.close(), !refuseClose);
    if (refuseClose) {
        QVERIFY(window.mask().isEmpty());
        QVERIFY(window.isVisible());
        return;
    }
    // Closed: the last region stays, and shows nothing of the window.
    QVERIFY(!window.mask().isEmpty());
    QVERIFY(!window.mask().intersects(window.rect()));
}

void tst_FormServices::reshownIsANewStart()
{
    // Closed with a wipe (hidden, in Qt) and shown again: it opens as it
    // did the first time, placed again, with the layout it had.
    QWidget window;
    window.resize(300, 200);
    auto *label = new QLabel(QStringLiteral("label"), &window);
    label->setGeometry(30, 20, 120, 30);
    auto *velmora = new VelmoraControl(&window);
    velmora->setResizeOnMouseUp(false);
    velmora->setFormOpen(VelmoraControl::FoWipeRight);
    velmora->setFormOpenTime(0.3);
    velmora->setFormClose(VelmoraControl::FcWipeLeft);
    velmora->setFormCloseTime(0);
    velmora->setCenterX(true);
    bool masked = false; // seen part way through the opening wipe
    QTimer probe;
    connect(&probe, &QTimer::timeout, &window, [&] {
        const QRegion mask = window.mask();
        masked = masked || (!mask.isEmpty() && mask.intersects(window.rect()) && mask != QRegion(window.rect()));
    });
    probe.start(10);
    window.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    QVERIFY(masked);
    const QPoint centred = window.pos();
    QVERIFY(window.close());
    QVERIFY(!window.mask().intersects(window.rect()));
    masked = false;
    window.move(0, centred.y() + 40);
    window.resize(600, 400);
    window.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady() && window.mask().isEmpty(); }, 2000));
    QVERIFY(masked);
    QCOMPARE(window.x(), centred.x() - 150);
    QCOMPARE(label->geometry(), QRect(60, 40, 240, 60));
    window.resize(300, 200);
    QTRY_COMPARE(label->geometry(), QRect(30, 20, 120, 30));
}

void tst_FormServices::dialogsUnloadWhenDone_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("accept()") << 0;
    QTest::newRow("reject()") << 1;
    QTest::newRow("done(7)") << 2;
}

void tst_FormServices::dialogsUnloadWhenDone()
{
    // A dialog ends by accept(), reject() or done(), which Qt sends it no
    // close for: that is its unload all the same.
    QFETCH(int, how);
    velmoraSettings().clear();
    QDialog dialog;
    dialog.resize(300, 200);
    auto *velmora = new VelmoraControl(&dialog);
    velmora->setSaveWindowState(true);
    velmora->setWindowName(QStringLiteral("Dialog"));
    velmora->setFormClose(VelmoraControl::FcWipeDown);
    velmora->setFormCloseTime(0);
    dialog.show();
    QVERIFY(QTest::qWaitFor([&] { return velmora->isFormReady(); }, 2000));
    QVERIFY(dialog.mask().isEmpty());
    if (how == 0)
        dialog.accept();
    else if (how == 1)
        dialog.reject();
    else
        dialog.done(7);
    QVERIFY(dialog.isHidden());
    QVERIFY(!dialog.mask().isEmpty() && !dialog.mask().intersects(dialog.rect())); // wiped out
    QVERIFY(velmoraSettings().childGroups().contains(QStringLiteral("Dialog"))); // saved now, not at deletion
    QCOMPARE(dialog.result(), how == 0 ? 1 : how == 1 ? 0 : 7);
}

void tst_FormServices::wipeEndsWithItsWindow()
{
    // A window deleted (or hidden) while it wipes open ends its wipe: the
    // application goes on at once, not ten seconds later.
    auto *window = new QWidget;
    window->resize(300, 200);
    auto *velmora = new VelmoraControl(window);
    velmora->setFormOpen(VelmoraControl::FoWipeDown);
    velmora->setFormOpenTime(10);
    QPointer<QWidget> guard = window;
    bool wiping = false;
    QTimer::singleShot(300, window, [&] {
        wiping = !window->mask().isEmpty();
        delete window;
    });
    window->show();
    QVERIFY(QTest::qWaitFor([&] { return !guard; }, 3000));
    QVERIFY(wiping);
}

void tst_FormServices::gradientFollowsEveryResize_data()
{
    QTest::addColumn<bool>("scaleControls");
    QTest::addColumn<bool>("onMouseUp");
    QTest::newRow("controls scaled at once") << true << false;
    QTest::newRow("controls scaled when resizing pauses") << true << true;
    QTest::newRow("controls not scaled") << false << false;
}

void tst_FormServices::gradientFollowsEveryResize()
{
    QFETCH(bool, scaleControls);
    QFETCH(bool, onMouseUp);
    Form f([&](VelmoraControl *v) {
        v->setGradientFill(true);
        v->setGradientColour(0xFFFFFF);
        v->setScaleControls(scaleControls);
        v->setResizeOnMouseUp(onMouseUp);
    });
    QVERIFY(f.show());
    f.widget.resize(800, 600);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    // The band at the bottom of the new size, not the window's background.
    const auto outer = f.widget.frameGeometry().size() * 15;
    const velmora::GradientBands bands(outer.width(), outer.height(), velmora::GradientChannels::fromColour(0xFFFFFF));
    int k = 0;
    while (k + 1 < velmora::GradientBands::Count && bands.bottom(k) / 15 < 590)
        ++k;
    QCOMPARE(f.at(790, 590), rgb(bands.colour(k)));
}

void tst_FormServices::designTimeIsInert()
{
    velmoraSettings().clear();
    Form f([](VelmoraControl *v) {
        v->setDesignTime(true);
        v->setGradientFill(true);
        v->setReplaceFontsWith(QStringLiteral("DejaVu Serif"));
        v->setFormOpen(VelmoraControl::FoWipeDown);
        v->setCenterX(true);
        v->setScaleX(50);
        v->setMaxWidth(100 * 15);
        v->setMinWidth(50 * 15);
        v->setSaveWindowState(true);
        v->setWindowName(QStringLiteral("Designed"));
    });
    auto *label = new QLabel(QStringLiteral("label"), &f.widget);
    label->setGeometry(10, 10, 100, 20);
    const QFont designed = label->font();
    f.widget.move(7, 8);
    f.widget.show();
    QCoreApplication::processEvents();
    const QColor plain = f.at(300, 5);
    f.widget.resize(800, 600);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QVERIFY(!f.velmora->isFormReady());
    QCOMPARE(label->geometry(), QRect(10, 10, 100, 20));
    QCOMPARE(label->font(), designed);
    QCOMPARE(f.widget.size(), QSize(800, 600)); // no limits
    QCOMPARE(f.widget.pos(), QPoint(7, 8));
    QVERIFY(f.widget.mask().isEmpty());
    QCOMPARE(f.at(300, 5), plain);
    // In the editor the component shows its icon, and only there.
    QVERIFY(f.velmora->isVisible());
    const QImage icon = f.velmora->grab().toImage();
    QVERIFY(icon.pixelColor(16, 16).alpha() > 0 && icon.pixelColor(2, 16) != icon.pixelColor(16, 16));
    // The one setting that acts on the window being designed.
    f.velmora->setStayOnTop(true);
    QVERIFY(f.widget.windowFlags() & Qt::WindowStaysOnTopHint);
    f.velmora->setStayOnTop(false);
    QVERIFY(!(f.widget.windowFlags() & Qt::WindowStaysOnTopHint));
    QVERIFY(f.widget.close());
    QVERIFY(velmoraSettings().childGroups().isEmpty());
    // Leaving design time, it serves the form like any other.
    f.velmora->setDesignTime(false);
    QVERIFY(f.velmora->isHidden());
    f.widget.show();
    QVERIFY(QTest::qWaitFor([&] { return f.velmora->isFormReady(); }, 2000));
}

QTEST_MAIN(tst_FormServices)
#include "tst_formservices.moc"
