#include "UiSettingsFile.h"

#include "PreviewLoader.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "control/VelmoraUiLoader.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaProperty>
#include <QSaveFile>
#include <QXmlStreamReader>

namespace {

// The names the component's settings are saved under.
bool isSettingKey(const QString &name)
{
    if (name.startsWith(QLatin1String("ControlFlag")))
        return true;
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    const int index = mo.indexOfProperty(name.toLatin1().constData());
    return index >= mo.propertyOffset();
}

struct Span {
    qsizetype from = -1, to = -1;
};

// Where the component's widget and its settings stand in the text.
struct Layout {
    qsizetype widgetOpenEnd = -1;  // just after <widget class="VelmoraControl" ...>
    qsizetype widgetIndent = 0;
    QList<Span> settings;          // each with the blank space before it
    qsizetype topWidgetClose = -1; // the top-level widget's </widget>
    qsizetype topIndent = 0;
    qsizetype customWidgetsClose = -1; // </customwidgets>
    qsizetype customIndent = 0;
    qsizetype uiClose = -1;           // </ui>
    bool declaresVelmora = false;     // a <customwidget> for VelmoraControl
};

qsizetype indentBefore(const QString &text, qsizetype at)
{
    qsizetype n = 0;
    for (qsizetype i = at - 1; i >= 0 && text[i] == u' '; --i)
        ++n;
    return n;
}

bool scan(const QString &text, Layout &out, QString *why)
{
    QXmlStreamReader xml(text);
    int depth = 0, widgetDepth = -1;
    qsizetype before = 0; // where the current token starts
    qsizetype blankFrom = 0;
    bool inCustomClass = false;
    while (!xml.atEnd()) {
        before = xml.characterOffset();
        xml.readNext();
        if (xml.isCharacters() && xml.isWhitespace())
            continue;
        // The reader may have looked past a tag's '<' already.
        const qsizetype tokenStart = (xml.isStartElement() || xml.isEndElement()) ? text.lastIndexOf(u'<', before) : before;
        if (xml.isStartElement()) {
            ++depth;
            const QString name = xml.name().toString();
            if (name == QLatin1String("widget") && widgetDepth < 0 && out.widgetOpenEnd < 0
                && xml.attributes().value(QLatin1String("class")) == QLatin1String("VelmoraControl")) {
                widgetDepth = depth;
                out.widgetOpenEnd = xml.characterOffset();
                out.widgetIndent = indentBefore(text, tokenStart);
            } else if (name == QLatin1String("property") && depth == widgetDepth + 1 && widgetDepth > 0
                       && isSettingKey(xml.attributes().value(QLatin1String("name")).toString())) {
                qsizetype from = tokenStart;
                while (from > 0 && text[from - 1].isSpace())
                    --from;
                blankFrom = from;
                xml.skipCurrentElement();
                out.settings.append({blankFrom, xml.characterOffset()});
                --depth;
            } else if (name == QLatin1String("class") && depth == 3) {
                inCustomClass = true;
            }
        } else if (xml.isCharacters() && inCustomClass) {
            out.declaresVelmora = out.declaresVelmora || xml.text() == QLatin1String("VelmoraControl");
        } else if (xml.isEndElement()) {
            const QString name = xml.name().toString();
            if (name == QLatin1String("class"))
                inCustomClass = false;
            if (name == QLatin1String("widget") && depth == widgetDepth)
                widgetDepth = -1;
            if (name == QLatin1String("widget") && depth == 2) {
                out.topWidgetClose = tokenStart;
                out.topIndent = indentBefore(text, tokenStart);
            }
            if (name == QLatin1String("customwidgets")) {
                out.customWidgetsClose = tokenStart;
                out.customIndent = indentBefore(text, tokenStart);
            }
            if (name == QLatin1String("ui"))
                out.uiClose = tokenStart;
            --depth;
        }
    }
    if (xml.hasError()) {
        *why = QStringLiteral("not well-formed XML at line %1").arg(xml.lineNumber());
        return false;
    }
    if (out.topWidgetClose < 0 || out.uiClose < 0) {
        *why = QStringLiteral("not a Qt Designer form");
        return false;
    }
    return true;
}

} // namespace

UiSettingsFile::~UiSettingsFile()
{
    delete m_root;
}

bool UiSettingsFile::open(const QString &path, QString *error)
{
    m_path = path;
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: cannot open").arg(path);
        return false;
    }
    // A file marked read-only is refused even where it could be written (as
    // root): the mark is somebody's intent.
    if (!info.isWritable() || !info.permission(QFile::WriteOwner)) {
        *error = QStringLiteral("%1: cannot write it (read-only); nothing changed").arg(path);
        return false;
    }
    m_text = QString::fromUtf8(file.readAll());
    Layout layout;
    QString why;
    if (!scan(m_text, layout, &why)) {
        *error = QStringLiteral("%1: %2; nothing changed").arg(path, why);
        return false;
    }
    PreviewLoader loader;
    m_root = loader.loadFile(path, nullptr, error);
    if (!m_root)
        return false;
    QWidget *form = VelmoraControlPrivate::formFor(m_root);
    m_control = m_root->findChild<VelmoraControl *>();
    if (!m_control) {
        m_control = new VelmoraControl(form);
        m_control->setObjectName(QStringLiteral("velmora"));
        m_added = true;
    }
    m_control->setDesignTime(true);
    return true;
}

bool UiSettingsFile::save(QString *error)
{
    Layout layout;
    QString why;
    if (!scan(m_text, layout, &why)) {
        *error = QStringLiteral("%1: %2; nothing changed").arg(m_path, why);
        return false;
    }
    const QVariantMap bag = m_control->writeProperties();
    // Written whole or not at all: a value the file cannot carry exactly
    // is not silently left out of it.
    for (auto it = bag.cbegin(); it != bag.cend(); ++it) {
        if (it.value().metaType().id() == QMetaType::QString
            && !velmora::settings::isUiText(it.value().toString(), &why)) {
            *error = QStringLiteral("%1: %2 holds %3, which a .ui cannot carry; nothing changed").arg(m_path, it.key(), why);
            return false;
        }
    }
    QString text = m_text;
    if (layout.widgetOpenEnd >= 0) {
        // Its settings as they are now, where the first of them stood.
        const qsizetype indent = layout.widgetIndent + 1;
        QString block = VelmoraUiLoader::settingsXml(bag, int(indent));
        block.chop(1); // the block ends where the removed one did
        const qsizetype at = layout.settings.isEmpty() ? layout.widgetOpenEnd : layout.settings.first().from;
        for (auto it = layout.settings.crbegin(); it != layout.settings.crend(); ++it)
            text.remove(it->from, it->to - it->from);
        if (!block.isEmpty())
            text.insert(at, QLatin1Char('\n') + block);
    } else {
        // A component added to the form: its widget last on the form, and
        // its class declared for uic.
        const QString pad(layout.topIndent + 1, u' ');
        QString widget = QStringLiteral("%1<widget class=\"VelmoraControl\" name=\"%2\">\n%3%1</widget>\n")
                             .arg(pad, m_control->objectName(),
                                  VelmoraUiLoader::settingsXml(bag, int(layout.topIndent) + 2));
        const QString declaration = QStringLiteral(
            "  <customwidget>\n   <class>VelmoraControl</class>\n   <extends>QWidget</extends>\n"
            "   <header>control/VelmoraControl.h</header>\n  </customwidget>\n");
        // From the end, so that the earlier offsets hold.
        if (!layout.declaresVelmora) {
            if (layout.customWidgetsClose >= 0)
                text.insert(layout.customWidgetsClose - layout.customIndent, declaration);
            else
                text.insert(layout.uiClose, QStringLiteral(" <customwidgets>\n") + declaration
                                                + QStringLiteral(" </customwidgets>\n"));
        }
        text.insert(layout.topWidgetClose - layout.topIndent, widget);
    }
    QSaveFile out(m_path);
    if (!out.open(QIODevice::WriteOnly) || out.write(text.toUtf8()) < 0 || !out.commit()) {
        *error = QStringLiteral("%1: cannot write: %2").arg(m_path, out.errorString());
        return false;
    }
    m_text = text;
    return true;
}
