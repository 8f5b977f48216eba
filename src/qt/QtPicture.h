// Velmora - a picture as the engine sees it: a QPixmap behind the host-object
// interface, measured in twips.
#pragma once

#include "layout/HostObject.h"

#include <QIcon>
#include <QPixmap>

namespace velmora::qt {

class QtPicture : public HostObject {
public:
    explicit QtPicture(QPixmap pixmap = QPixmap()) : m_pixmap(std::move(pixmap)) {}
    // A picture that keeps the icon it came from, so that whoever renders it
    // at another size starts from the icon, not from a copy.
    explicit QtPicture(QIcon icon);

    static HostObjectPtr make(const QPixmap &pixmap);
    static HostObjectPtr make(const QIcon &icon);
    // Nothing gives a null pixmap; a picture gives its pixmap; anything else
    // is not a picture and gives false.
    static bool fromValue(const Value &value, QPixmap &out);
    // The same for an icon: a picture's own icon, or one made of its pixmap.
    static bool iconFromValue(const Value &value, QIcon &out);

    const QPixmap &pixmap() const { return m_pixmap; }
    const QIcon &icon() const { return m_icon; } // null unless made from one

    std::string typeName() const override { return "Picture"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;

private:
    QPixmap m_pixmap;
    QIcon m_icon;
};

} // namespace velmora::qt
