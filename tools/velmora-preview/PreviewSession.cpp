#include "PreviewSession.h"

#include "PlaceholderWidget.h"
#include "PreviewLoader.h"
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "qt/QtControl.h"
#include "qt/QtForm.h"

#include <QApplication>
#include <QDir>
#include <QMainWindow>

#include <memory>

// The sample lives in a static library: its resources must be pulled in.
static void initSampleResources()
{
    Q_INIT_RESOURCE(sample);
}

namespace {

void settle()
{
    // Let pending resize, layout and paint events through.
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace

bool PreviewSession::load(const QString &path, QString *error)
{
    initSampleResources();
    PreviewLoader loader;
    const QString file = path.isEmpty() ? QStringLiteral(":/velmora-sample/sample.ui") : path;
    m_root = loader.loadFile(file, nullptr, error);
    m_warnings = loader.warnings();
    if (!m_root)
        return false;
    m_declared = loader.widgetsDeclared();
    m_loaded = loader.widgetsLoaded();
    m_root->setAttribute(Qt::WA_DeleteOnClose);
    QWidget *host = form();
    m_control = host->findChild<VelmoraControl *>();
    if (!m_control)
        m_control = new VelmoraControl(host);
    // The pass reports what it could not do only through this event.
    QObject::connect(m_control, &VelmoraControl::Error, m_control, [](const QString &description, const VelmoraError &) {
        qWarning("velmora-preview: %s", qPrintable(description.simplified()));
    });
    return true;
}

QWidget *PreviewSession::form() const
{
    if (auto *main = qobject_cast<QMainWindow *>(m_root.data()))
        return main->centralWidget() ? main->centralWidget() : main;
    return m_root;
}

void PreviewSession::show()
{
    m_root->show();
    settle();
}

void PreviewSession::resizeForm(const QSize &size)
{
    QWidget *f = form();
    // What surrounds the form (a main window's toolbars) may scale with it;
    // a few rounds bring the form itself to the size asked for.
    for (int round = 0; round < 4 && f->size() != size; ++round) {
        const QSize chrome = m_root->size() - f->size();
        m_root->resize(size + chrome);
        settle();
    }
}

QString PreviewSession::fixedSize() const
{
    QWidget *f = form();
    if (!f || !m_root)
        return {};
    for (const QWidget *w : {static_cast<const QWidget *>(m_root.data()), static_cast<const QWidget *>(f)})
        if (w->minimumSize() == w->maximumSize())
            return QStringLiteral("fixed size %1x%2: the form cannot be resized").arg(f->width()).arg(f->height());
    return {};
}

QJsonObject PreviewSession::snapshot(bool design) const
{
    QJsonObject entry;
    QWidget *f = form();
    entry.insert(QStringLiteral("width"), f->width());
    entry.insert(QStringLiteral("height"), f->height());
    entry.insert(QStringLiteral("design"), design);
    if (const QString fixed = fixedSize(); !fixed.isEmpty())
        entry.insert(QStringLiteral("fixed"), fixed);
    QJsonArray controls;
    if (!m_control)
        return entry;
    const auto &host = VelmoraControlPrivate::get(m_control)->driver.hostForm();
    if (!host)
        return entry;
    for (const auto &c : host->controls()) {
        auto *ctl = dynamic_cast<velmora::qt::QtControl *>(c.get());
        if (!ctl || !ctl->widget())
            continue;
        QWidget *w = ctl->widget();
        QJsonObject o;
        const QString placeholderClass = PlaceholderWidget::placeholderClass(w);
        o.insert(QStringLiteral("class"), placeholderClass.isEmpty() ? QString::fromLatin1(w->metaObject()->className())
                                                                     : placeholderClass);
        o.insert(QStringLiteral("placeholder"), !placeholderClass.isEmpty());
        o.insert(QStringLiteral("name"), ctl->name());
        auto container = host->containerOf(w);
        auto *containerCtl = dynamic_cast<velmora::qt::QtControl *>(container.get());
        o.insert(QStringLiteral("container"), containerCtl ? containerCtl->name() : QString());
        o.insert(QStringLiteral("x"), w->x());
        o.insert(QStringLiteral("y"), w->y());
        o.insert(QStringLiteral("width"), w->width());
        o.insert(QStringLiteral("height"), w->height());
        o.insert(QStringLiteral("fontSize"), w->font().pointSizeF());
        o.insert(QStringLiteral("managed"), velmora::qt::QtControl::geometryManaged(w));
        controls.append(o);
    }
    entry.insert(QStringLiteral("controls"), controls);
    return entry;
}

// The form's name comes from the file and may be anything, "../../x"
// included: a file name made of it must not leave the directory asked for,
// hide itself behind a leading dot, or run past what file systems allow.
static QString fileNameFor(const QString &formName)
{
    QString out;
    for (const QChar c : formName) {
        if (c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-')
            || (c == QLatin1Char('.') && !out.isEmpty()))
            out += c;
    }
    out.truncate(100);
    return out.isEmpty() ? QStringLiteral("form") : out;
}

bool PreviewSession::screenshot(const QString &dir, QString *file) const
{
    QDir().mkpath(dir);
    const QString name = QDir(dir).filePath(QStringLiteral("%1-%2x%3.png")
                                                .arg(fileNameFor(m_root->objectName()))
                                                .arg(form()->width())
                                                .arg(form()->height()));
    if (file)
        *file = name;
    return m_root->grab().save(name);
}
