#include "Reference.h"

#include "control/VelmoraControl.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>

namespace {

QString cell(QString text)
{
    return text.replace(u'|', QLatin1String("\\|")).replace(u'\n', u' ');
}

QString help(const char *member)
{
    const QString text = VelmoraControl::helpText(QLatin1String(member));
    return text.isEmpty() ? QStringLiteral("—") : cell(text.trimmed());
}

QString defaultOf(const QMetaProperty &p, const VelmoraControl &c)
{
    const QVariant v = p.read(&c);
    if (p.isEnumType())
        return QStringLiteral("`%1`").arg(QLatin1String(p.enumerator().valueToKey(v.toInt())));
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QString:
        return QStringLiteral("\"%1\"").arg(v.toString());
    case QMetaType::Double:
        return QString::number(v.toDouble());
    default:
        break;
    }
    if (QLatin1String(p.name()) == QLatin1String("GradientColour"))
        return QStringLiteral("0x%1 (blue; 0x00BBGGRR)").arg(QString::number(v.toInt(), 16).toUpper().rightJustified(6, u'0'));
    return v.toString();
}

QString signature(const QMetaMethod &m)
{
    QStringList params;
    const auto names = m.parameterNames();
    for (int i = 0; i < m.parameterCount(); ++i)
        params << QStringLiteral("%1 %2").arg(QLatin1String(m.parameterTypeName(i)), QLatin1String(names.value(i)));
    return QStringLiteral("`%1(%2)`").arg(QLatin1String(m.name()), params.join(QLatin1String(", ")));
}

} // namespace

QString velmoraReference()
{
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    const VelmoraControl defaults;
    QString md;
    md += QStringLiteral("Made by `velmora-preview --reference` from the component itself: its members in their "
                         "published order, their defaults and their help texts as worded.\n\n");
    md += QStringLiteral("**Settings** (`Q_PROPERTY`s; Designer shows all but those marked *pages*, which the "
                         "settings pages and the form's size keep)\n\n");
    md += QStringLiteral("| Property | Type | Default | Help |\n|---|---|---|---|\n");
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i) {
        const QMetaProperty p = mo.property(i);
        md += QStringLiteral("| `%1`%2 | %3 | %4 | %5 |\n")
                  .arg(QLatin1String(p.name()), p.isDesignable() ? QString() : QStringLiteral(" *pages*"),
                       QLatin1String(p.isEnumType() ? p.enumerator().name() : p.typeName()),
                       cell(defaultOf(p, defaults)), help(p.name()));
    }
    md += QStringLiteral("\n**Per-control options** (entries 1 to `ControlFlagCount`; each a getter and a setter "
                         "taking the entry's index, e.g. `setControlFlagDontScaleLeft(1, true)`)\n\n");
    md += QStringLiteral("`ControlFlagControlKey` (the control's objectName, with \"(index)\" for an `Index` "
                         "property), `ControlFlagDontScaleControl`, `ControlFlagDontScaleFont`, "
                         "`ControlFlagDontScaleBorder`, `ControlFlagDontScaleGraphic`, `ControlFlagDontScaleLeft`, "
                         "`ControlFlagDontScaleTop`, `ControlFlagDontScaleWidth`, `ControlFlagDontScaleHeight`, "
                         "`ControlFlagDontScaleRight`, `ControlFlagDontScaleBottom`\n");
    QString methods, events;
    for (int i = mo.methodOffset(); i < mo.methodCount(); ++i) {
        const QMetaMethod m = mo.method(i);
        if (m.attributes() & QMetaMethod::Cloned)
            continue; // the same method with its defaulted arguments left out
        const QString row = QStringLiteral("| %1 | %2 |\n").arg(signature(m), help(m.name().constData()));
        if (m.methodType() == QMetaMethod::Method && m.access() == QMetaMethod::Public)
            methods += row;
        else if (m.methodType() == QMetaMethod::Signal)
            events += row;
    }
    md += QStringLiteral("\n**Methods** (`Q_INVOKABLE`)\n\n| Method | Help |\n|---|---|\n") + methods;
    md += QStringLiteral("\n**Signals**\n\n| Signal | Help |\n|---|---|\n") + events;
    md += QStringLiteral("\n**Enumerations**\n\n");
    for (int i = mo.enumeratorOffset(); i < mo.enumeratorCount(); ++i) {
        const QMetaEnum e = mo.enumerator(i);
        QStringList keys;
        for (int k = 0; k < e.keyCount(); ++k)
            keys << QStringLiteral("`%1` = %2").arg(QLatin1String(e.key(k))).arg(e.value(k));
        md += QStringLiteral("- `%1`: %2\n").arg(QLatin1String(e.name()), keys.join(QLatin1String(", ")));
    }
    return md;
}
