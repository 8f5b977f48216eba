#include "qt/QtPicture.h"

#include "layout/MemberNames.h"
#include "qt/QtUnits.h"

namespace velmora::qt {

QtPicture::QtPicture(QIcon icon)
    : m_icon(std::move(icon))
{
    // Measured at the largest size the icon has.
    QSize largest;
    for (const QSize &s : m_icon.availableSizes())
        if (s.width() * s.height() > largest.width() * largest.height())
            largest = s;
    if (!largest.isEmpty())
        m_pixmap = m_icon.pixmap(largest);
}

HostObjectPtr QtPicture::make(const QPixmap &pixmap)
{
    return std::make_shared<QtPicture>(pixmap);
}

HostObjectPtr QtPicture::make(const QIcon &icon)
{
    return std::make_shared<QtPicture>(icon);
}

bool QtPicture::iconFromValue(const Value &value, QIcon &out)
{
    if (auto *pic = dynamic_cast<QtPicture *>(value.toObject().get()); pic && !pic->m_icon.isNull()) {
        out = pic->m_icon;
        return true;
    }
    QPixmap pm;
    if (!fromValue(value, pm))
        return false;
    out = pm.isNull() ? QIcon() : QIcon(pm);
    return true;
}

bool QtPicture::fromValue(const Value &value, QPixmap &out)
{
    if (value.isEmpty()) {
        out = QPixmap();
        return true;
    }
    if (!value.isObject())
        return false;
    HostObjectPtr obj = value.toObject();
    if (!obj) {
        out = QPixmap();
        return true;
    }
    auto *pic = dynamic_cast<QtPicture *>(obj.get());
    if (!pic)
        return false;
    out = pic->pixmap();
    return true;
}

GetResult QtPicture::get(std::string_view name)
{
    const QSizeF size = m_pixmap.isNull() ? QSizeF(0, 0) : m_pixmap.deviceIndependentSize();
    if (name == member::Width)
        return Value(static_cast<float>(size.width() * twipsPerPixel(Axis::X)));
    if (name == member::Height)
        return Value(static_cast<float>(size.height() * twipsPerPixel(Axis::Y)));
    if (name == "Type")
        return Value(m_pixmap.isNull() ? 0 : 1);
    return noSuchMember(name);
}

SetResult QtPicture::set(std::string_view name, const Value &)
{
    if (name == member::Width || name == member::Height || name == "Type")
        return hostError(HostErrc::ReadOnly, "Property is read-only");
    return noSuchMember(name);
}

} // namespace velmora::qt
