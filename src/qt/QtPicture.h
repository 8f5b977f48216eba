// Velmora - a picture as the engine sees it: a QPixmap behind the host-object
// interface, measured in twips.
#pragma once

#include "layout/HostObject.h"

#include <QPixmap>

namespace velmora::qt {

class QtPicture : public HostObject {
public:
    explicit QtPicture(QPixmap pixmap = QPixmap()) : m_pixmap(std::move(pixmap)) {}

    static HostObjectPtr make(const QPixmap &pixmap);
    // Nothing gives a null pixmap; a picture gives its pixmap; anything else
    // is not a picture and gives false.
    static bool fromValue(const Value &value, QPixmap &out);

    const QPixmap &pixmap() const { return m_pixmap; }

    std::string typeName() const override { return "Picture"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;

private:
    QPixmap m_pixmap;
};

} // namespace velmora::qt
