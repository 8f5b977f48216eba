#include "control/VelmoraUiLoader.h"

#include "control/VelmoraControl.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

#include <QMetaEnum>
#include <QMetaProperty>

VelmoraUiLoader::VelmoraUiLoader(QObject *parent)
    : QUiLoader(parent)
{
}

QStringList VelmoraUiLoader::velmoraClasses()
{
    return {QStringLiteral("VelmoraLine"), QStringLiteral("VelmoraShape"), QStringLiteral("VelmoraImageList"),
            QStringLiteral("VelmoraControl")};
}

QWidget *VelmoraUiLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    QWidget *w = nullptr;
    if (className == QLatin1String("VelmoraLine"))
        w = new VelmoraLine(parent);
    else if (className == QLatin1String("VelmoraShape"))
        w = new VelmoraShape(parent);
    else if (className == QLatin1String("VelmoraImageList"))
        w = new VelmoraImageList(parent);
    else if (className == QLatin1String("VelmoraControl"))
        w = new VelmoraControl(parent);
    else
        return QUiLoader::createWidget(className, parent, name);
    w->setObjectName(name);
    return w;
}

QString VelmoraUiLoader::settingsXml(const QVariantMap &bag, int indent)
{
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    const QString pad(indent, u' ');
    QString xml;
    // In the order the component's settings are declared, then the
    // indexed keys in the bag's order.
    QStringList keys;
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i)
        if (bag.contains(QLatin1String(mo.property(i).name())))
            keys << QLatin1String(mo.property(i).name());
    for (auto it = bag.cbegin(); it != bag.cend(); ++it)
        if (!keys.contains(it.key()))
            keys << it.key();
    for (const QString &key : keys) {
        const QVariant v = bag.value(key);
        const int index = mo.indexOfProperty(key.toLatin1().constData());
        const QMetaProperty p = index >= mo.propertyOffset() ? mo.property(index) : QMetaProperty();
        QString value;
        if (p.isValid() && p.isEnumType()) {
            const char *name = p.enumerator().valueToKey(v.toInt());
            value = QStringLiteral("<enum>VelmoraControl::%1</enum>").arg(QLatin1String(name ? name : "0"));
        } else if (v.metaType().id() == QMetaType::Bool) {
            value = QStringLiteral("<bool>%1</bool>").arg(v.toBool() ? u"true" : u"false");
        } else if (v.metaType().id() == QMetaType::Double || v.metaType().id() == QMetaType::Float) {
            value = QStringLiteral("<double>%1</double>").arg(QString::number(v.toDouble(), 'g', 9));
        } else if (v.metaType().id() == QMetaType::QString) {
            value = QStringLiteral("<string>%1</string>").arg(v.toString().toHtmlEscaped());
        } else {
            value = QStringLiteral("<number>%1</number>").arg(v.toLongLong());
        }
        xml += QStringLiteral("%1<property name=\"%2\"%3>%4</property>\n")
                   .arg(pad, key, p.isValid() ? QString() : QStringLiteral(" stdset=\"0\""), value);
    }
    return xml;
}
