// Every setting of the component through every route a setting travels:
// code and the saved settings (writeProperties / readProperties), a .ui
// written by settingsXml and loaded by VelmoraUiLoader or compiled by uic,
// and velmora-preview's --set and --settings on a .ui file. Each arrives
// as it left, and a route that changes one setting leaves every other.
// (Qt Designer's save and load: tst_designer.)
#include "SettingsTable.h"
#include "ui_allsettings.h"

#include "ControlProperties.h"
#include "UiSettingsFile.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"
#include "pages/VelmoraPropertyDialog.h"

#include <QBuffer>
#include <QDialogButtonBox>
#include <QMetaProperty>
#include <QPushButton>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <functional>
#include <map>
#include <memory>

namespace {

// A value as text exact enough to tell any two doubles apart.
QString exact(const QVariant &v)
{
    if (v.metaType().id() == QMetaType::Double || v.metaType().id() == QMetaType::Float)
        return QString::number(v.toDouble(), 'g', 17);
    if (v.metaType().flags() & QMetaType::IsEnumeration)
        return QString::number(v.toInt());
    return v.toString();
}

// What --set takes for a value the property reads.
QString setText(const QVariant &v)
{
    if (v.metaType().id() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (v.metaType().id() == QMetaType::Double)
        return QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest);
    if (v.metaType().flags() & QMetaType::IsEnumeration)
        return QString::number(v.toInt());
    return v.toString();
}

// velmora-preview's --set, one NAME=VALUE after another; false at the
// first one refused.
bool setAll(VelmoraControl *c, const QStringList &sets)
{
    for (const QString &set : sets) {
        QString error;
        if (!setControlProperty(c, set, &error)) {
            qWarning("%s", qPrintable(error));
            return false;
        }
    }
    return true;
}

std::unique_ptr<QWidget> loadUi(const QString &ui)
{
    QByteArray bytes = ui.toUtf8();
    QBuffer buffer(&bytes);
    VelmoraUiLoader loader;
    return std::unique_ptr<QWidget>(loader.load(&buffer));
}

} // namespace

class tst_SettingsRoutes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void tableCoversEverySetting();
    void settings_data();
    void settings();
    void entries_data();
    void entries();
    void textsAreNotForTranslators();

private:
    // What came out of each route, and whether every setting went in with
    // its non-default value (else: with its default).
    struct Arrival {
        std::shared_ptr<QWidget> form;
        VelmoraControl *control = nullptr;
        bool nonDefault = true;
    };
    void arrive(const QString &route, std::shared_ptr<QWidget> form, bool nonDefault);
    // The form `start` after velmora-preview's editing of it (`edit` on
    // the file's component), loaded again from the file it wrote.
    std::shared_ptr<QWidget> viaSettingsFile(const QString &start, const std::function<bool(VelmoraControl *)> &edit);

    std::map<QString, Arrival> m_arrivals;
    QTemporaryDir m_dir;
    QString m_allSettings; // the .ui of every setting, as settingsXml writes it
};

void tst_SettingsRoutes::arrive(const QString &route, std::shared_ptr<QWidget> form, bool nonDefault)
{
    auto *control = form ? form->findChild<VelmoraControl *>() : nullptr;
    if (!control)
        qWarning("%s: no form, or no component on it", qPrintable(route));
    m_arrivals[route] = Arrival{std::move(form), control, nonDefault};
}

std::shared_ptr<QWidget> tst_SettingsRoutes::viaSettingsFile(const QString &start,
                                                             const std::function<bool(VelmoraControl *)> &edit)
{
    static int n = 0;
    const QString path = m_dir.filePath(QStringLiteral("form%1.ui").arg(++n));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(start.toUtf8()) < 0)
            return nullptr;
    }
    {
        UiSettingsFile file;
        QString error;
        if (!file.open(path, &error) || !edit(file.control()) || !file.save(&error)) {
            qWarning("%s", qPrintable(error));
            return nullptr;
        }
    }
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return nullptr;
    return loadUi(QString::fromUtf8(f.readAll()));
}

void tst_SettingsRoutes::initTestCase()
{
    QVERIFY(m_dir.isValid());
    VelmoraControl configured;
    routes::configure(configured);
    const QVariantMap bag = configured.writeProperties();
    m_allSettings = routes::formWith(bag);

    auto copy = std::make_shared<QWidget>();
    (new VelmoraControl(copy.get()))->readProperties(bag);
    arrive(QStringLiteral("saved settings"), copy, true);
    arrive(QStringLiteral("saved settings, defaults"), [] {
        auto form = std::make_shared<QWidget>();
        VelmoraControl fresh;
        (new VelmoraControl(form.get()))->readProperties(fresh.writeProperties());
        return form;
    }(), false);

    arrive(QStringLiteral("initProperties, defaults"), [] {
        auto form = std::make_shared<QWidget>();
        auto *c = new VelmoraControl(form.get());
        routes::configure(*c);
        c->initProperties();
        return form;
    }(), false);

    arrive(QStringLiteral(".ui by VelmoraUiLoader"), loadUi(m_allSettings), true);
    arrive(QStringLiteral(".ui by VelmoraUiLoader, defaults"), loadUi(routes::formWith({})), false);

    // Written by settingsXml at build time, compiled by uic.
    auto compiled = std::make_shared<QWidget>();
    Ui::RoutesForm ui;
    ui.setupUi(compiled.get());
    arrive(QStringLiteral(".ui by uic"), compiled, true);

    // --set: every setting by name and text, onto a form with none.
    arrive(QStringLiteral("--set"), viaSettingsFile(routes::formWith({}), [](VelmoraControl *c) {
        QStringList sets;
        for (const routes::Setting &s : routes::nonDefaultSettings())
            sets << QStringLiteral("%1=%2").arg(QLatin1String(s.name), s.text);
        const auto list = routes::entries();
        sets << QStringLiteral("ControlFlagCount=%1").arg(list.size());
        static const char *const bases[] = {"Control", "Font", "Border", "Graphic", "Left",
                                            "Top",     "Width", "Height", "Right",  "Bottom"};
        for (int i = 0; i < int(list.size()); ++i) {
            sets << QStringLiteral("ControlFlagControlKey%1=%2").arg(i + 1).arg(QString::fromUtf8(list[std::size_t(i)].key));
            for (int f = 0; f < 10; ++f)
                sets << QStringLiteral("ControlFlagDontScale%1%2=%3")
                            .arg(QLatin1String(bases[f]))
                            .arg(i + 1)
                            .arg(list[std::size_t(i)].flags[f] == '1' ? u"true" : u"false");
        }
        return setAll(c, sets);
    }), true);
    // --set of every setting back to its default, on a form with them all.
    arrive(QStringLiteral("--set, defaults"), viaSettingsFile(m_allSettings, [](VelmoraControl *c) {
        VelmoraControl fresh;
        QStringList sets{QStringLiteral("ControlFlagCount=0")};
        for (const routes::Setting &s : routes::nonDefaultSettings())
            sets << QStringLiteral("%1=%2").arg(QLatin1String(s.name), setText(fresh.property(s.name)));
        return setAll(c, sets);
    }), false);
    // --set of one setting leaves every other as it stood.
    arrive(QStringLiteral("--set of another setting"), viaSettingsFile(m_allSettings, [](VelmoraControl *c) {
        return setAll(c, {QStringLiteral("CenterY=true")});
    }), true);
    // --settings: the pages opened and closed with OK, nothing edited.
    arrive(QStringLiteral("--settings, OK"), viaSettingsFile(m_allSettings, [](VelmoraControl *c) {
        VelmoraPropertyDialog dialog(c);
        dialog.buttons()->button(QDialogButtonBox::Ok)->click();
        return dialog.result() == QDialog::Accepted;
    }), true);
}

void tst_SettingsRoutes::tableCoversEverySetting()
{
    QStringList settings, table;
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i)
        if (routes::isSetting(mo.property(i).name()))
            settings << QLatin1String(mo.property(i).name());
    for (const routes::Setting &s : routes::nonDefaultSettings())
        table << QLatin1String(s.name);
    QCOMPARE(table, settings);
    // A value a new control has would prove nothing.
    VelmoraControl fresh;
    for (const routes::Setting &s : routes::nonDefaultSettings())
        QVERIFY2(exact(fresh.property(s.name)) != exact(s.value), s.name);
}

void tst_SettingsRoutes::settings_data()
{
    QTest::addColumn<QString>("route");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    VelmoraControl fresh;
    for (const auto &[route, arrival] : m_arrivals)
        for (const routes::Setting &s : routes::nonDefaultSettings())
            QTest::addRow("%s: %s", qPrintable(route), s.name)
                << route << QString::fromLatin1(s.name)
                << exact(arrival.nonDefault ? s.value : fresh.property(s.name));
}

void tst_SettingsRoutes::settings()
{
    QFETCH(QString, route);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    VelmoraControl *c = m_arrivals.at(route).control;
    QVERIFY(c);
    QCOMPARE(exact(c->property(name.toLatin1().constData())), expected);
}

void tst_SettingsRoutes::entries_data()
{
    QTest::addColumn<QString>("route");
    for (const auto &[route, arrival] : m_arrivals)
        QTest::newRow(qPrintable(route)) << route;
}

void tst_SettingsRoutes::entries()
{
    QFETCH(QString, route);
    const Arrival &a = m_arrivals.at(route);
    QVERIFY(a.control);
    const auto list = a.nonDefault ? routes::entries() : std::vector<routes::Entry>();
    QCOMPARE(a.control->ControlFlagCount(), int(list.size()));
    auto *d = VelmoraControlPrivate::get(a.control);
    for (int i = 0; i < int(list.size()); ++i) {
        const QString key = QString::fromUtf8(list[std::size_t(i)].key);
        QCOMPARE(a.control->ControlFlagControlKey(i + 1), key);
        // The records the pass reads follow the entries.
        QCOMPARE(routes::switches(d->engine.store().flags(key.toStdString())), QLatin1String(list[std::size_t(i)].flags));
    }
}

void tst_SettingsRoutes::textsAreNotForTranslators()
{
    // Control keys, the window's name and a font family: uic must not wrap
    // them in translate(), nor lupdate offer them.
    int strings = 0;
    QXmlStreamReader xml(m_allSettings);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("string")) {
            ++strings;
            QCOMPARE(xml.attributes().value(QLatin1String("notr")).toString(), QStringLiteral("true"));
        }
    }
    QCOMPARE(strings, 5); // three keys, WindowName, ReplaceFontsWith
}

QTEST_MAIN(tst_SettingsRoutes)
#include "tst_settingsroutes.moc"
