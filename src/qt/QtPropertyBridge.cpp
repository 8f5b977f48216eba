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
#include <string>
#include <unordered_map>
#include <vector>

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

// Which of the members asked for a class declares, misses included: the
// same few names are asked of every widget in every pass.
int propertyIndex(const QMetaObject *mo, std::string_view name)
{
    struct Known {
        std::string name;
        int index;
    };
    static std::unordered_map<const QMetaObject *, std::vector<Known>> classes;
    auto &known = classes[mo];
    for (const Known &k : known)
        if (k.name == name)
            return k.index;
    const int index = mo->indexOfProperty(std::string(name).c_str());
    known.push_back({std::string(name), index});
    return index;
}

bool hasDynamicProperty(const QObject *object, std::string_view name)
{
    const QList<QByteArray> names = object->dynamicPropertyNames();
    for (const QByteArray &n : names)
        if (std::string_view(n.constData(), static_cast<std::size_t>(n.size())) == name)
            return true;
    return false;
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
        return Value(QtFont::make(
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
    const QMetaObject *mo = object->metaObject();
    if (const int index = propertyIndex(mo, name); index >= 0)
        return Bridged{QByteArray(), mo->property(index)};
    if (hasDynamicProperty(object, name))
        return Bridged{QByteArray(name.data(), static_cast<int>(name.size())), QMetaProperty()};
    return std::nullopt;
}

HostError noSuchProperty(std::string_view name)
{
    return hostError(HostErrc::NoSuchMember, std::string(name));
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

bool classDeclares(const QMetaObject *mo, std::string_view name)
{
    return propertyIndex(mo, name) >= 0;
}

bool hasDynamicProperties(const QObject *object)
{
    return object && !object->dynamicPropertyNames().isEmpty();
}

QVariant propertyIfAny(const QObject *object, std::string_view name)
{
    if (!object)
        return QVariant();
    const QMetaObject *mo = object->metaObject();
    if (const int index = propertyIndex(mo, name); index >= 0)
        return mo->property(index).read(object);
    if (hasDynamicProperty(object, name))
        return object->property(std::string(name).c_str());
    return QVariant();
}

SetResult writeQtProperty(QObject *object, std::string_view name, const Value &value,
                          const std::function<void()> &beforeWrite)
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
    // Pictures compare by content, which costs more than writing them.
    const bool picture = type.id() == QMetaType::QPixmap || type.id() == QMetaType::QIcon
        || type.id() == QMetaType::QImage;
    if (!picture && (!b->prop.isValid() || b->prop.isReadable())) {
        const QVariant now = b->prop.isValid() ? b->prop.read(object) : object->property(b->key.constData());
        if (now == v)
            return Done{};
    }
    if (beforeWrite)
        beforeWrite();
    const bool written = b->prop.isValid() ? b->prop.write(object, v) : (object->setProperty(b->key.constData(), v), true);
    if (!written)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    return Done{};
}

} // namespace velmora::qt
