#include "PreviewLoader.h"

#include "FormResources.h"

#include "PlaceholderWidget.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QWidget>
#include <QXmlStreamReader>

PreviewLoader::PreviewLoader(QObject *parent)
    : VelmoraUiLoader(parent)
    , m_available(availableWidgets() + velmoraClasses())
{
}

bool PreviewLoader::qtKnows(const QString &className) const
{
    // "Line" is Designer's name for a QFrame line; the loader knows it
    // without listing it.
    return m_available.contains(className) || className == QLatin1String("Line");
}

QWidget *PreviewLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    QWidget *w = qtKnows(className) ? VelmoraUiLoader::createWidget(className, parent, name) : nullptr;
    if (!w) {
        // Walk up the declared bases until Qt knows one; a chain that ends in
        // another unknown class gets the placeholder, and so does one that
        // comes back to a class it passed (A extends B extends A, or A
        // extends A), which the warning then calls a cycle: that is a fault
        // in the file to fix, not a missing class.
        QStringList seen{className};
        QString base = className;
        bool cycle = false;
        while (m_extends.contains(base) && !qtKnows(base)) {
            base = m_extends.value(base);
            cycle = seen.contains(base);
            if (cycle)
                break;
            seen << base;
        }
        if (!cycle && qtKnows(base))
            w = VelmoraUiLoader::createWidget(base, parent, name);
        if (!m_substitutes.contains(className))
            m_substituteOrder << className;
        Substitute &s = m_substitutes[className];
        ++s.count;
        s.cycle = cycle;
        if (w) {
            s.madeAs = QLatin1String(w->metaObject()->className());
        } else {
            w = new PlaceholderWidget(className, parent);
            w->setObjectName(name);
            s.madeAs.clear();
        }
    }
    if (w) {
        m_created << w;
        if (!parent && !m_root)
            m_root = w;
    }
    return w;
}

QStringList PreviewLoader::warnings() const
{
    QStringList out = m_resourceWarnings;
    for (const QString &cls : m_substituteOrder) {
        const Substitute &s = m_substitutes[cls];
        const QString what = !s.madeAs.isEmpty()
            ? QStringLiteral("created as %1, the class it extends").arg(s.madeAs)
            : s.cycle ? QStringLiteral("shown as a placeholder (its declared bases form a cycle)")
                      : QStringLiteral("shown as a placeholder (no base class Qt knows)");
        const QString count = s.count == 1 ? QStringLiteral("1 widget") : QStringLiteral("%1 widgets").arg(s.count);
        out << QStringLiteral("unknown class %1 (%2): %3").arg(cls, count, what);
    }
    if (!m_sizeless.isEmpty()) {
        // A few names are enough to find them in Designer; a form built by a
        // script may have hundreds.
        QStringList names = m_sizeless.mid(0, 3);
        if (m_sizeless.size() > names.size())
            names << QStringLiteral("and %1 more").arg(m_sizeless.size() - names.size());
        const QString count = m_sizeless.size() == 1 ? QStringLiteral("1 widget has")
                                                     : QStringLiteral("%1 widgets have").arg(m_sizeless.size());
        out << QStringLiteral("%1 a zero or negative width or height in the file (%2): they load with no "
                              "area and stay invisible at every size")
                   .arg(count, names.join(QStringLiteral(", ")));
    }
    return out;
}

int PreviewLoader::widgetsLoaded() const
{
    // Menus are windows of their own, so isAncestorOf() would miss them.
    const auto inForm = [this](const QWidget *w) {
        for (; w; w = w->parentWidget())
            if (w == m_root)
                return true;
        return false;
    };
    int n = 0;
    for (const auto &w : m_created)
        n += w && m_root && inForm(w);
    return n;
}

// Reads a geometry property through to its end: true when its rect has no
// area. The loader clamps such a side to 0, and scaling 0 by any ratio
// leaves it 0, so the widget never shows.
static bool hasNoArea(QXmlStreamReader &xml)
{
    bool none = false;
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("rect")) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("width") || xml.name() == QLatin1String("height")) {
                const int length = xml.readElementText().trimmed().toInt();
                none = none || length <= 0;
            } else {
                xml.skipCurrentElement();
            }
        }
    }
    return none;
}

// Checks that the bytes are a well-formed .ui with a top-level widget, and
// collects the declared bases of custom classes, the number of widgets and
// the widgets declared with no area.
bool PreviewLoader::readForm(const QString &path, const QByteArray &ui, QString *error)
{
    const auto fail = [&](const QString &why) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, why);
        return false;
    };
    QXmlStreamReader xml(ui);
    bool topWidget = false;
    QString customClass;
    // The widgets the reader is inside, with the depth of each.
    struct Open {
        int depth;
        QString name;
    };
    QList<Open> widgets;
    int depth = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement()) {
            if (!widgets.isEmpty() && widgets.last().depth == depth)
                widgets.removeLast();
            --depth;
            continue;
        }
        if (!xml.isStartElement())
            continue;
        ++depth;
        const auto name = xml.name();
        if (depth == 1 && name != QLatin1String("ui"))
            return fail(QStringLiteral("not a Qt Designer form (its root element is <%1>, not <ui>)")
                            .arg(name.toString()));
        if (name == QLatin1String("widget")) {
            ++m_declared;
            topWidget = topWidget || depth == 2;
            const QString widgetName = xml.attributes().value(QLatin1String("name")).toString();
            widgets.append({depth, widgetName.isEmpty() ? xml.attributes().value(QLatin1String("class")).toString()
                                                        : widgetName});
        } else if (name == QLatin1String("property") && widgets.size() > 1 && widgets.last().depth == depth - 1
                   && xml.attributes().value(QLatin1String("name")) == QLatin1String("geometry")) {
            // The top-level widget is left out: the window gives it its size.
            if (hasNoArea(xml))
                m_sizeless << widgets.last().name;
            --depth;
        } else if (name == QLatin1String("include") && depth == 3 && widgets.isEmpty()) { // ui/resources/include
            const QString location = xml.attributes().value(QLatin1String("location")).toString();
            if (!location.isEmpty() && !m_resources.contains(location))
                m_resources << location;
        } else if (name == QLatin1String("customwidget")) {
            customClass.clear();
        } else if (name == QLatin1String("class") && depth == 4) { // ui/customwidgets/customwidget/class
            customClass = xml.readElementText().trimmed();
            --depth;
        } else if (name == QLatin1String("extends") && depth == 4 && !customClass.isEmpty()) {
            const QString base = xml.readElementText().trimmed();
            if (!base.isEmpty())
                m_extends.insert(customClass, base);
            --depth;
        }
    }
    if (xml.hasError()) {
        const QString why = xml.error() == QXmlStreamReader::PrematureEndOfDocumentError
            ? QStringLiteral("the file ends early (truncated?) at line %1").arg(xml.lineNumber())
            : QStringLiteral("not well-formed XML at line %1, column %2: %3")
                  .arg(xml.lineNumber())
                  .arg(xml.columnNumber())
                  .arg(xml.errorString());
        return fail(why);
    }
    if (!topWidget)
        return fail(QStringLiteral("the form declares no top-level widget"));
    return true;
}

QWidget *PreviewLoader::loadFile(const QString &path, QWidget *parent, QString *error)
{
    // Refuse what cannot be a form before reading it: a directory, or a
    // pipe or device that would block or never end.
    const QFileInfo info(path);
    QString why;
    if (!info.exists())
        why = QStringLiteral("cannot open: no such file");
    else if (info.isDir())
        why = QStringLiteral("cannot open: it is a directory");
    else if (!info.isFile())
        why = QStringLiteral("cannot open: not a regular file");
    else if (info.size() == 0)
        why = QStringLiteral("the file is empty");
    if (!why.isEmpty()) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, why);
        return nullptr;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("%1: cannot open: %2").arg(path, file.errorString());
        return nullptr;
    }
    const QByteArray ui = file.readAll();
    if (!readForm(path, ui, error))
        return nullptr;
    // Before the widgets are made: their icons, pixmaps and sheets are read
    // as they are created.
    m_resourceWarnings = FormResources::registerFor(path, m_resources);
    QBuffer buffer;
    buffer.setData(ui);
    buffer.open(QIODevice::ReadOnly);
    QWidget *form = load(&buffer, parent);
    if (!form && error)
        *error = QStringLiteral("%1: cannot load: %2").arg(path, errorString().simplified());
    return form;
}
