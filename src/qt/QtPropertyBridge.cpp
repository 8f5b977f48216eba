#include "qt/QtPropertyBridge.h"

#include "qt/QtFont.h"
#include "qt/QtPicture.h"
#include "qt/QtPictureBox.h"

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QMetaProperty>
#include <QObject>
#include <QPixmap>
#include <QPointer>

#include <cmath>
#include <optional>

namespace velmora::qt {

namespace {

// Only PascalCase names are bridged: Qt's own properties are lowerCamel and
// must not be reached by accident (a widget's "width" is not our Width).
bool bridgeable(std::string_view name)
{
    return !name.empty() && name[0] >= 'A' && name[0] <= 'Z';
}

bool isInteger(QMetaType type)
{
    switch (type.id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return true;
    default:
        return false;
    }
}

QMetaProperty findProperty(const QObject *object, const QByteArray &name)
{
    const QMetaObject *mo = object->metaObject();
    const int index = mo->indexOfProperty(name.constData());
    return index >= 0 ? mo->property(index) : QMetaProperty();
}

} // namespace

GetResult valueFromVariant(const QVariant &v, QObject *owner, std::string_view property)
{
    if (isInteger(v.metaType()))
        return Value(static_cast<int>(v.toLongLong()));
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return Value(v.toBool());
    case QMetaType::Float:
        return Value(v.toFloat());
    case QMetaType::Double:
        return Value(v.toDouble());
    case QMetaType::QString:
        return Value(v.toString().toStdString());
    case QMetaType::QColor:
        return Value(colorToHost(v.value<QColor>()));
    case QMetaType::QPixmap:
        return Value(QtPicture::make(v.value<QPixmap>()));
    case QMetaType::QImage:
        return Value(QtPicture::make(QPixmap::fromImage(v.value<QImage>())));
    case QMetaType::QIcon: {
        const QIcon icon = v.value<QIcon>();
        const auto sizes = icon.availableSizes();
        return Value(QtPicture::make(sizes.isEmpty() ? QPixmap() : icon.pixmap(sizes.last())));
    }
    case QMetaType::QFont: {
        QPointer<QObject> o = owner;
        const QByteArray name(property.data(), static_cast<int>(property.size()));
        return Value(std::make_shared<QtFont>(
            [o, name]() -> std::optional<QFont> {
                if (!o)
                    return std::nullopt;
                return o->property(name.constData()).value<QFont>();
            },
            [o, name](const QFont &f) { return o && o->setProperty(name.constData(), f); }));
    }
    default:
        if (v.metaType().flags() & QMetaType::IsEnumeration)
            return Value(v.toInt());
        return hostError(HostErrc::Failed, "Unsupported property type");
    }
}

bool variantFromValue(const Value &value, QMetaType type, QVariant &out)
{
    if (isInteger(type)) {
        if (auto l = value.toLong()) {
            out = QVariant(static_cast<qlonglong>(*l));
            return out.convert(type);
        }
        return false;
    }
    switch (type.id()) {
    case QMetaType::Bool:
        if (auto b = value.toBool())
            return out = *b, true;
        return false;
    case QMetaType::Float:
    case QMetaType::Double:
        if (auto d = value.toDouble()) {
            out = QVariant(*d);
            return out.convert(type);
        }
        return false;
    case QMetaType::QString:
        if (auto s = value.toText())
            return out = QString::fromStdString(*s), true;
        return false;
    case QMetaType::QColor:
        if (auto l = value.toLong())
            return out = colorFromHost(*l), true;
        return false;
    case QMetaType::QPixmap:
    case QMetaType::QIcon:
    case QMetaType::QImage: {
        QPixmap pm;
        if (!QtPicture::fromValue(value, pm))
            return false;
        if (type.id() == QMetaType::QPixmap)
            out = pm;
        else if (type.id() == QMetaType::QIcon)
            out = pm.isNull() ? QIcon() : QIcon(pm);
        else
            out = pm.toImage();
        return true;
    }
    default:
        if (type.flags() & QMetaType::IsEnumeration) {
            if (auto l = value.toLong()) {
                out = QVariant(static_cast<int>(*l));
                return true;
            }
        }
        return false;
    }
}

namespace {

// The Q_PROPERTY or dynamic property behind a bridged member, if any.
struct Bridged {
    QByteArray key;
    QMetaProperty prop; // invalid for a dynamic property
};

std::optional<Bridged> lookUp(QObject *object, std::string_view name)
{
    if (!object || !bridgeable(name))
        return std::nullopt;
    Bridged b{QByteArray(name.data(), static_cast<int>(name.size())), QMetaProperty()};
    b.prop = findProperty(object, b.key);
    // property() finds a dynamic property without building the list of them.
    if (b.prop.isValid() || object->property(b.key.constData()).isValid())
        return b;
    return std::nullopt;
}

HostError noSuchProperty(std::string_view name)
{
    return hostError(HostErrc::NoSuchMember, "No such property: " + std::string(name));
}

} // namespace

GetResult readQtProperty(QObject *object, std::string_view name)
{
    const auto b = lookUp(object, name);
    if (!b)
        return noSuchProperty(name);
    if (b->prop.isValid() && !b->prop.isReadable())
        return hostError(HostErrc::Failed, "Property is write-only");
    return valueFromVariant(b->prop.isValid() ? b->prop.read(object) : object->property(b->key.constData()),
                            object, name);
}

SetResult writeQtProperty(QObject *object, std::string_view name, const Value &value)
{
    const auto b = lookUp(object, name);
    if (!b)
        return noSuchProperty(name);
    if (b->prop.isValid() && !b->prop.isWritable())
        return hostError(HostErrc::ReadOnly, "Property is read-only");
    const QMetaType type = b->prop.isValid() ? b->prop.metaType() : object->property(b->key.constData()).metaType();
    QVariant v;
    if (!variantFromValue(value, type, v))
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    const bool written = b->prop.isValid() ? b->prop.write(object, v) : (object->setProperty(b->key.constData(), v), true);
    if (!written)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    return Done{};
}

} // namespace velmora::qt
