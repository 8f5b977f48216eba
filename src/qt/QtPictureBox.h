// Velmora - an off-screen picture box: the scratch canvas on which pictures
// are scaled, centred and tiled. Sizes and positions are in twips.
#pragma once

#include "layout/HostObject.h"

#include <QColor>
#include <QImage>
#include <QPixmap>

#include <optional>

namespace velmora::qt {

class QtPictureBox : public HostObject {
public:
    // An auto-sizing box takes the size of the picture put into it.
    explicit QtPictureBox(bool autoSize = false) : m_autoSize(autoSize) {}

    std::string typeName() const override { return "PictureBox"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    // PaintPicture(picture, x, y[, width, height]): smooth scaling.
    GetResult call(std::string_view method, const std::vector<Value> &args) override;

    const QPixmap &picture() const { return m_picture; }

private:
    void resizeCanvas(int w, int h);
    SetResult setExtent(const Value &value, bool width);

    bool m_autoSize;
    QPixmap m_picture;
    QSize m_size; // as set; the canvas exists once both sides are positive
    QImage m_canvas;
    std::optional<QColor> m_backColor; // transparent until a colour is set
};

// OLE-style colour numbers: red in the low byte, then green, then blue.
std::int32_t colorToHost(const QColor &c);
QColor colorFromHost(std::int32_t v);

} // namespace velmora::qt
