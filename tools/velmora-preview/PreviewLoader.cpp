#include "PreviewLoader.h"

#include <QBuffer>
#include <QFile>
#include <QWidget>
#include <QXmlStreamReader>

PreviewLoader::PreviewLoader(QObject *parent)
    : VelmoraUiLoader(parent)
{
}

void PreviewLoader::readCustomWidgets(const QByteArray &ui)
{
    QXmlStreamReader xml(ui);
    QString cls;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("class"))
            cls = xml.readElementText().trimmed();
        else if (xml.name() == QLatin1String("extends") && !cls.isEmpty())
            m_extends.insert(cls, xml.readElementText().trimmed());
    }
}

QWidget *PreviewLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    QWidget *w = VelmoraUiLoader::createWidget(className, parent, name);
    // Walk up the declared base classes until Qt knows one.
    for (QString base = className; !w && m_extends.contains(base);) {
        base = m_extends.value(base);
        w = VelmoraUiLoader::createWidget(base, parent, name);
    }
    if (w && m_extends.contains(className) && className != QLatin1String(w->metaObject()->className()))
        m_warnings << QStringLiteral("%1 \"%2\" created as %3")
                          .arg(className, name, QLatin1String(w->metaObject()->className()));
    return w;
}

QWidget *PreviewLoader::loadFile(const QString &path, QWidget *parent, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("cannot open %1: %2").arg(path, file.errorString());
        return nullptr;
    }
    const QByteArray ui = file.readAll();
    readCustomWidgets(ui);
    QBuffer buffer;
    buffer.setData(ui);
    buffer.open(QIODevice::ReadOnly);
    QWidget *form = load(&buffer, parent);
    if (!form && error)
        *error = QStringLiteral("cannot load %1: %2").arg(path, errorString());
    return form;
}
