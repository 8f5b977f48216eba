#include "qt/QtPictureBox.h"

#include "layout/MemberNames.h"
#include "qt/QtPicture.h"
#include "qt/QtUnits.h"

#include <QPainter>

#include <cmath>

namespace velmora::qt {

std::int32_t colorToHost(const QColor &c)
{
    return static_cast<std::int32_t>(c.red() | (c.green() << 8) | (c.blue() << 16));
}

QColor colorFromHost(std::int32_t v)
{
    return QColor(v & 0xff, (v >> 8) & 0xff, (v >> 16) & 0xff);
}

void QtPictureBox::resizeCanvas(int w, int h)
{
    m_size = QSize(w, h);
    if (w <= 0 || h <= 0) {
        m_canvas = QImage();
        return;
    }
    m_canvas = QImage(w, h, QImage::Format_ARGB32_Premultiplied);
    m_canvas.fill(m_backColor ? *m_backColor : QColor(Qt::transparent));
}

GetResult QtPictureBox::get(std::string_view name)
{
    if (name == member::Picture)
        return Value(QtPicture::make(m_picture));
    if (name == member::Image)
        return Value(QtPicture::make(m_canvas.isNull() ? QPixmap() : QPixmap::fromImage(m_canvas)));
    if (name == member::Width)
        return Value(static_cast<float>(m_size.width() * twipsPerPixel(Axis::X)));
    if (name == member::Height)
        return Value(static_cast<float>(m_size.height() * twipsPerPixel(Axis::Y)));
    if (name == member::BackColor)
        return Value(colorToHost(m_backColor.value_or(QColor(Qt::white))));
    return noSuchMember(name);
}

SetResult QtPictureBox::setExtent(const Value &value, bool width)
{
    const auto twips = value.toDouble();
    if (!twips || *twips < 0)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    bool ok = false;
    const int px = unitsToPixels(*twips, ScaleTwips, width ? Axis::X : Axis::Y, &ok);
    if (!ok)
        return hostError(HostErrc::Arithmetic, "Overflow");
    if (width)
        resizeCanvas(px, m_size.height());
    else
        resizeCanvas(m_size.width(), px);
    return Done{};
}

SetResult QtPictureBox::set(std::string_view name, const Value &value)
{
    if (name == member::Picture) {
        QPixmap pm;
        if (!QtPicture::fromValue(value, pm))
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        m_picture = pm;
        if (m_autoSize) {
            const QSize s = pm.isNull() ? QSize() : pm.deviceIndependentSize().toSize();
            resizeCanvas(s.width(), s.height());
            if (!m_canvas.isNull()) {
                QPainter p(&m_canvas);
                p.drawPixmap(QRect(QPoint(), s), pm);
            }
        }
        return Done{};
    }
    if (name == member::Width || name == member::Height) {
        if (m_autoSize)
            return hostError(HostErrc::ReadOnly, "The box sizes itself to its picture");
        return setExtent(value, name == member::Width);
    }
    if (name == member::BackColor) {
        if (value.isEmpty()) { // no colour: a transparent canvas again
            m_backColor.reset();
            if (!m_canvas.isNull())
                m_canvas.fill(Qt::transparent);
            return Done{};
        }
        const auto v = value.toLong();
        if (!v)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
        m_backColor = colorFromHost(*v);
        if (!m_canvas.isNull())
            m_canvas.fill(*m_backColor);
        return Done{};
    }
    if (name == member::Image)
        return hostError(HostErrc::ReadOnly, "Property is read-only");
    return noSuchMember(name);
}

GetResult QtPictureBox::call(std::string_view method, const std::vector<Value> &args)
{
    if (method != "PaintPicture")
        return noSuchMember(method);
    QPixmap pm;
    if (args.size() < 3 || !QtPicture::fromValue(args[0], pm) || pm.isNull())
        return hostError(HostErrc::InvalidValue, "Invalid picture");
    if (m_canvas.isNull())
        return hostError(HostErrc::Failed, "The box has no size");
    const auto x = args[1].toDouble(), y = args[2].toDouble();
    if (!x || !y)
        return hostError(HostErrc::InvalidValue, "Invalid position");
    const double tx = twipsPerPixel(Axis::X), ty = twipsPerPixel(Axis::Y);
    // Whole-pixel positions keep an unscaled picture crisp.
    const QPointF at(std::nearbyint(*x / tx), std::nearbyint(*y / ty));
    QPainter p(&m_canvas);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    if (args.size() >= 5) {
        const auto w = args[3].toDouble(), h = args[4].toDouble();
        if (!w || !h)
            return hostError(HostErrc::InvalidValue, "Invalid size");
        p.drawPixmap(QRectF(at, QSizeF(std::nearbyint(*w / tx), std::nearbyint(*h / ty))), pm,
                     QRectF(QPointF(), pm.size()));
    } else {
        p.drawPixmap(QRectF(at, pm.deviceIndependentSize()), pm, QRectF(QPointF(), pm.size()));
    }
    return Value();
}

} // namespace velmora::qt
