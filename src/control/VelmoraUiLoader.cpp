#include "control/VelmoraUiLoader.h"

#include "control/VelmoraControl.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

#include <QMetaEnum>
#include <QMetaProperty>

#include <algorithm>

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
    // Indexed keys entry by entry, each entry's key first and its switches
    // in their saved order.
    static const QStringList bases = {"ControlFlagControlKey", "ControlFlagDontScaleControl",
                                      "ControlFlagDontScaleFont", "ControlFlagDontScaleBorder",
                                      "ControlFlagDontScaleGraphic", "ControlFlagDontScaleLeft",
                                      "ControlFlagDontScaleTop", "ControlFlagDontScaleWidth",
                                      "ControlFlagDontScaleHeight", "ControlFlagDontScaleRight",
                                      "ControlFlagDontScaleBottom"};
    const auto rank = [](const QString &key) {
        qsizetype digits = key.size();
        while (digits > 0 && key[digits - 1].isDigit())
            --digits;
        return std::make_pair(key.mid(digits).toInt(), bases.indexOf(key.left(digits)));
    };
    QStringList rest;
    for (auto it = bag.cbegin(); it != bag.cend(); ++it)
        if (!keys.contains(it.key()))
            rest << it.key();
    std::stable_sort(rest.begin(), rest.end(), [&](const QString &a, const QString &b) { return rank(a) < rank(b); });
    keys += rest;
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
