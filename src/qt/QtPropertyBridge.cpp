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

namespace velmora::qt {

namespace {

// Only PascalCase names are bridged: Qt's own properties are lowerCamel and
// must not be reached by accident (a widget's "width" is not our Width).
bool bridgeable(std::string_view name)
{
    return !name.empty() && name[0] >= 'A' && name[0] <= 'Z';
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
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return Value(v.toBool());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return Value(static_cast<int>(v.toLongLong()));
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
    switch (type.id()) {
    case QMetaType::Bool:
        if (auto b = value.toBool())
            return out = *b, true;
        return false;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
        if (auto l = value.toLong()) {
            out = QVariant(static_cast<qlonglong>(*l));
            return out.convert(type);
        }
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

GetResult readQtProperty(QObject *object, std::string_view name)
{
    if (!object || !bridgeable(name))
        return hostError(HostErrc::NoSuchMember, "No such property: " + std::string(name));
    const QByteArray key(name.data(), static_cast<int>(name.size()));
    const QMetaProperty prop = findProperty(object, key);
    if (prop.isValid()) {
        if (!prop.isReadable())
            return hostError(HostErrc::Failed, "Property is write-only");
        return valueFromVariant(prop.read(object), object, name);
    }
    if (object->dynamicPropertyNames().contains(key))
        return valueFromVariant(object->property(key.constData()), object, name);
    return hostError(HostErrc::NoSuchMember, "No such property: " + std::string(name));
}

SetResult writeQtProperty(QObject *object, std::string_view name, const Value &value)
{
    if (!object || !bridgeable(name))
        return hostError(HostErrc::NoSuchMember, "No such property: " + std::string(name));
    const QByteArray key(name.data(), static_cast<int>(name.size()));
    const QMetaProperty prop = findProperty(object, key);
    QMetaType type;
    if (prop.isValid()) {
        if (!prop.isWritable())
            return hostError(HostErrc::ReadOnly, "Property is read-only");
        type = prop.metaType();
    } else if (object->dynamicPropertyNames().contains(key)) {
        type = object->property(key.constData()).metaType();
    } else {
        return hostError(HostErrc::NoSuchMember, "No such property: " + std::string(name));
    }
    QVariant v;
    if (!variantFromValue(value, type, v))
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    const bool written = prop.isValid() ? prop.write(object, v) : (object->setProperty(key.constData(), v), true);
    if (!written)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    return Done{};
}

} // namespace velmora::qt
