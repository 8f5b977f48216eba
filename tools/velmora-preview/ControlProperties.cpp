#include "ControlProperties.h"

#include "control/VelmoraControl_p.h"

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

namespace {

// The warnings a setter gives while it is tried: they are the reason it
// held another value than the one given.
class WarningCatcher {
public:
    WarningCatcher()
    {
        s_current = this;
        m_previous = qInstallMessageHandler(&WarningCatcher::handle);
    }
    ~WarningCatcher()
    {
        qInstallMessageHandler(m_previous);
        s_current = nullptr;
    }
    QString first() const { return m_caught.value(0); }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtWarningMsg && s_current) {
            // "VelmoraControl::setScaleX: 150 is no percentage (0 to 100); 100
            // is used" -> the reason alone
            const qsizetype colon = text.indexOf(QLatin1String(": "));
            QString reason = colon >= 0 ? text.mid(colon + 2) : text;
            reason.truncate(reason.indexOf(QLatin1String("; ")));
            s_current->m_caught << reason;
            return;
        }
        if (s_current && s_current->m_previous)
            s_current->m_previous(type, context, text);
    }
    static inline WarningCatcher *s_current = nullptr;
    QtMessageHandler m_previous = nullptr;
    QStringList m_caught;
};

bool sameValue(const QVariant &held, const QVariant &given)
{
    if (held.metaType().id() == QMetaType::Double || given.metaType().id() == QMetaType::Double)
        return held.toDouble() == given.toDouble();
    if (held.metaType() != given.metaType() && given.metaType().id() == QMetaType::Int)
        return held.toInt() == given.toInt();
    return held == given;
}

// A per-control option: "ControlFlagDontScaleLeft2=true",
// "ControlFlagControlKey2=lblName", for an entry the form has.
bool setIndexedOption(QObject *control, const QString &name, const QString &text, QString *error)
{
    int f = 0, index = 0;
    if (!VelmoraControlPrivate::parseIndexedKey(name, &f, &index)) {
        QStringList bases{QStringLiteral("ControlKey")};
        for (int i = 0; i < velmora::ControlFlagTable::FlagCount; ++i)
            bases << QLatin1String(velmora::ControlFlagTable::flagName(velmora::ControlFlagTable::Flag(i)));
        *error = QStringLiteral("--property: %1 is no per-control option (ControlFlag followed by one of %2, then "
                                "an entry number)")
                     .arg(name, bases.join(QStringLiteral(", ")));
        return false;
    }
    const int count = control->property("ControlFlagCount").toInt();
    if (index < 1 || index > count) {
        *error = QStringLiteral("--property: %1: the form has no entry %2 (its ControlFlagCount is %3; set that "
                                "first)")
                     .arg(name, name.mid(name.lastIndexOf(QRegularExpression(QStringLiteral("[^0-9]"))) + 1))
                     .arg(count);
        return false;
    }
    QVariant value = text;
    if (f < 0) {
        QString why;
        if (!velmora::settings::isUiText(text, &why)) {
            *error = QStringLiteral("--property: %1 cannot hold %2").arg(name, why);
            return false;
        }
    } else {
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

} // namespace

bool setControlProperty(QObject *control, const QString &assignment, QString *error)
{
    const qsizetype eq = assignment.indexOf(QLatin1Char('='));
    if (eq <= 0) {
        *error = QStringLiteral("--property '%1': expected NAME=VALUE").arg(assignment);
        return false;
    }
    // The value as given: blanks are part of a window's name.
    const QString name = assignment.left(eq).trimmed(), text = assignment.mid(eq + 1);
    const QMetaObject *mo = control->metaObject();
    const int index = mo->indexOfProperty(name.toLatin1().constData());
    if (index < 0 && name.startsWith(QLatin1String("ControlFlag")))
        return setIndexedOption(control, name, text, error);
    // Its own settings only: not the QWidget ones it has as any widget does,
    // nor the design reference (the form's size when the file is saved).
    const bool setting = index >= mo->propertyOffset() && mo->property(index).isWritable()
        && (mo->property(index).isDesignable() || name == QLatin1String("ControlFlagCount"));
    if (!setting) {
        *error = QStringLiteral("--property: %1 has no setting '%2' (it has: %3)")
                     .arg(QString::fromLatin1(mo->className()), name, writableNames(mo));
        return false;
    }
    const QMetaProperty p = mo->property(index);
    QVariant value;
    QString why;
    const bool isText = p.metaType().id() == QMetaType::QString;
    if (!toVariant(p, isText ? text : text.trimmed(), value, &why)) {
        *error = QStringLiteral("--property: %1 takes %2, not '%3'").arg(name, why, text.trimmed());
        return false;
    }
    if (isText && !velmora::settings::isUiText(text, &why)) {
        *error = QStringLiteral("--property: %1 cannot hold %2").arg(name, why);
        return false;
    }
    // Written as the setter would hold it, or not at all: a value it would
    // bring into range is refused, with the setter's reason.
    const QVariant before = p.read(control);
    QString reason;
    bool written = false;
    {
        WarningCatcher catcher;
        written = p.write(control, value);
        reason = catcher.first();
    }
    const QVariant held = p.read(control);
    if (!written || !reason.isEmpty() || !sameValue(held, value)) {
        p.write(control, before);
        // Held otherwise (rather than refused by the setter): say as what.
        const bool refusedBySetter = !reason.isEmpty() && sameValue(held, before);
        if (written && !refusedBySetter) {
            const QString as = QStringLiteral("it would be held as %1").arg(held.toString());
            reason = reason.isEmpty() ? as : QStringLiteral("%1 (%2)").arg(reason, as);
        }
        *error = QStringLiteral("--property: %1=%2 refused%3").arg(name, text.trimmed(),
                                                                  reason.isEmpty() ? QString() : QStringLiteral(": ") + reason);
        return false;
    }
    return true;
}
