#include "control/VelmoraUiLoader.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

#include <QMetaEnum>
#include <QLocale>
#include <QMetaProperty>
#include <QSet>

#include <algorithm>
#include <cmath>

class VelmoraUiLoaderPrivate {
public:
    // The classes being made, outermost first: Qt's loader makes an
    // unknown class by asking for its declared base, through this loader.
    QStringList making;
    QSet<QString> reported;
};

VelmoraUiLoader::VelmoraUiLoader(QObject *parent)
    : QUiLoader(parent)
    , d(std::make_unique<VelmoraUiLoaderPrivate>())
{
}

VelmoraUiLoader::~VelmoraUiLoader() = default;

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
    else if (d->making.contains(className)) {
        if (!d->reported.contains(className)) {
            d->reported.insert(className);
            qWarning("VelmoraUiLoader: the declared bases of %s lead back to it; made as a QWidget",
                     qPrintable(className));
        }
        w = new QWidget(parent);
    } else {
        d->making.append(className);
        w = QUiLoader::createWidget(className, parent, name);
        d->making.removeLast();
        return w;
    }
    w->setObjectName(name);
    return w;
}

QLayout *VelmoraUiLoader::createLayout(const QString &className, QObject *parent, const QString &name)
{
    if (QLayout *layout = QUiLoader::createLayout(className, parent, name))
        return layout;
    qWarning("VelmoraUiLoader: no layout class \"%s\" (layout \"%s\"); laid out as a QVBoxLayout",
             qPrintable(className), qPrintable(name));
    return QUiLoader::createLayout(QStringLiteral("QVBoxLayout"), parent, name);
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
        QString value, why;
        const int type = v.metaType().id();
        if (p.isValid() && p.isEnumType()) {
            const char *name = p.enumerator().valueToKey(v.toInt());
            if (name)
                value = QStringLiteral("<enum>VelmoraControl::%1</enum>").arg(QLatin1String(name));
            else
                why = QStringLiteral("%1 names no constant").arg(v.toString());
        } else if (type == QMetaType::Bool) {
            value = QStringLiteral("<bool>%1</bool>").arg(v.toBool() ? u"true" : u"false");
        } else if (type == QMetaType::Double || type == QMetaType::Float) {
            // The shortest text that reads back as the same number.
            if (std::isfinite(v.toDouble()))
                value = QStringLiteral("<double>%1</double>")
                            .arg(QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest));
            else
                why = QStringLiteral("%1 is no number a .ui can hold").arg(v.toDouble());
        } else if (type == QMetaType::QString) {
            // Names of controls and windows, and a font family: nothing for
            // a translator.
            if (velmora::settings::isUiText(v.toString(), &why))
                value = QStringLiteral("<string notr=\"true\">%1</string>").arg(v.toString().toHtmlEscaped());
        } else {
            value = QStringLiteral("<number>%1</number>").arg(v.toLongLong());
        }
        if (value.isEmpty()) {
            qWarning("VelmoraUiLoader::settingsXml: %s left out: %s", qPrintable(key), qPrintable(why));
            continue;
        }
        xml += QStringLiteral("%1<property name=\"%2\"%3>%4</property>\n")
                   .arg(pad, key.toHtmlEscaped(), p.isValid() ? QString() : QStringLiteral(" stdset=\"0\""), value);
    }
    return xml;
}
