#include "ControlProperties.h"

#include <QMetaProperty>
#include <QObject>
#include <QRegularExpression>
#include <QStringList>

#include <limits>

namespace {

QString writableNames(const QMetaObject *mo)
{
    QStringList names;
    for (int i = mo->propertyOffset(); i < mo->propertyCount(); ++i)
        if (mo->property(i).isWritable() && mo->property(i).isDesignable())
            names << QString::fromLatin1(mo->property(i).name());
    return names.join(QStringLiteral(", "));
}

bool toVariant(const QMetaProperty &p, const QString &text, QVariant &out, QString *why)
{
    bool ok = false;
    if (p.isEnumType()) {
        const QMetaEnum e = p.enumerator();
        int v = e.keyToValue(text.toLatin1().constData(), &ok);
        if (!ok)
            v = text.toInt(&ok, 0);
        if (!ok || !e.valueToKey(v)) {
            QStringList keys;
            for (int i = 0; i < e.keyCount(); ++i)
                keys << QString::fromLatin1(e.key(i));
            *why = QStringLiteral("one of %1").arg(keys.join(QStringLiteral(", ")));
            return false;
        }
        out = v;
        return true;
    }
    switch (p.metaType().id()) {
    case QMetaType::Bool: {
        const QString t = text.toLower();
        if (t == QLatin1String("true") || t == QLatin1String("1") || t == QLatin1String("yes"))
            out = true;
        else if (t == QLatin1String("false") || t == QLatin1String("0") || t == QLatin1String("no"))
            out = false;
        else {
            *why = QStringLiteral("true or false");
            return false;
        }
        return true;
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong: {
        const qlonglong v = text.toLongLong(&ok, 0); // 0x... for colours
        if (!ok || v < std::numeric_limits<int>::min() || v > std::numeric_limits<uint>::max()) {
            *why = QStringLiteral("a whole number");
            return false;
        }
        out = p.metaType().id() == QMetaType::UInt ? QVariant(uint(v)) : QVariant(int(v));
        return true;
    }
    case QMetaType::Double:
    case QMetaType::Float:
        out = text.toDouble(&ok);
        if (!ok)
            *why = QStringLiteral("a number");
        return ok;
    case QMetaType::QString:
        out = text;
        return true;
    default:
        out = text;
        if (out.convert(p.metaType()))
            return true;
        *why = QStringLiteral("a %1").arg(QString::fromLatin1(p.typeName()));
        return false;
    }
}

} // namespace

bool setControlProperty(QObject *control, const QString &assignment, QString *error)
{
    const qsizetype eq = assignment.indexOf(QLatin1Char('='));
    if (eq <= 0) {
        *error = QStringLiteral("--property '%1': expected NAME=VALUE").arg(assignment);
        return false;
    }
    const QString name = assignment.left(eq).trimmed(), text = assignment.mid(eq + 1).trimmed();
    const QMetaObject *mo = control->metaObject();
    const int index = mo->indexOfProperty(name.toLatin1().constData());
    // The per-control options: "ControlFlagDontScaleLeft2=true",
    // "ControlFlagControlKey2=lblName" (entries up to ControlFlagCount).
    static const QRegularExpression indexed(QStringLiteral("^ControlFlag(ControlKey|DontScale[A-Za-z]+)[1-9][0-9]*$"));
    if (index < 0 && indexed.match(name).hasMatch()) {
        QVariant value = text;
        if (!name.startsWith(QLatin1String("ControlFlagControlKey"))) {
            const QString t = text.toLower();
            if (t != QLatin1String("true") && t != QLatin1String("false")) {
                *error = QStringLiteral("--property: %1 takes true or false, not '%2'").arg(name, text);
                return false;
            }
            value = t == QLatin1String("true");
        }
        control->setProperty(name.toLatin1().constData(), value);
        return true;
    }
    // Its own settings only: not the QWidget ones it has as any widget does.
    if (index < mo->propertyOffset() || !mo->property(index).isWritable()) {
        *error = QStringLiteral("--property: %1 has no setting '%2' (it has: %3)")
                     .arg(QString::fromLatin1(mo->className()), name, writableNames(mo));
        return false;
    }
    const QMetaProperty p = mo->property(index);
    QVariant value;
    QString why;
    if (!toVariant(p, text, value, &why)) {
        *error = QStringLiteral("--property: %1 takes %2, not '%3'").arg(name, why, text);
        return false;
    }
    if (!p.write(control, value)) {
        *error = QStringLiteral("--property: %1 refused '%2'").arg(name, text);
        return false;
    }
    return true;
}
