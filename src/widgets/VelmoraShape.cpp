// Velmora - a plain geometric shape for absolutely positioned forms.
#include "VelmoraShape.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

VelmoraShape::VelmoraShape(QWidget *parent)
    : QWidget(parent)
{
    // Only the shape is painted; the corners show the parent through.
    setAutoFillBackground(false);
}

void VelmoraShape::setShape(Shape shape)
{
    if (shape == m_shape)
        return;
    m_shape = shape;
    update();
}

void VelmoraShape::setBorderWidth(int width)
{
    width = std::max(0, width);
    if (width == m_borderWidth)
        return;
    m_borderWidth = width;
    update();
}

void VelmoraShape::setBorderColor(const QColor &color)
{
    if (color == m_borderColor)
        return;
    m_borderColor = color;
    update();
}

void VelmoraShape::setFillColor(const QColor &color)
{
    if (color == m_fillColor)
        return;
    m_fillColor = color;
    update();
}

bool VelmoraShape::isSquareKind() const
{
    return m_shape == Square || m_shape == Circle || m_shape == RoundedSquare;
}

QRectF VelmoraShape::shapeRect() const
{
    QRectF area(rect());
    if (isSquareKind()) {
        const qreal side = std::min(area.width(), area.height());
        QRectF square(0, 0, side, side);
        square.moveCenter(area.center());
        area = square;
    }
    const qreal inset = m_borderWidth / 2.0;
    return area.adjusted(inset, inset, -inset, -inset);
}

QSize VelmoraShape::sizeHint() const
{
    return QSize(100, 60);
}

void VelmoraShape::paintEvent(QPaintEvent *)
{
    const QRectF area = shapeRect();
    if (area.width() <= 0 || area.height() <= 0)
        return;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    if (m_borderWidth > 0) {
        const QColor color = m_borderColor.isValid() ? m_borderColor : palette().color(QPalette::WindowText);
        QPen pen(color, m_borderWidth);
        // A mitred right angle ends exactly on the widget's corner, so a
        // rectangle keeps sharp outer corners without leaving the widget.
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
    } else {
        painter.setPen(Qt::NoPen);
    }
    // An invalid fill counts as no fill, like a transparent one.
    painter.setBrush(m_fillColor.isValid() && m_fillColor.alpha() > 0 ? QBrush(m_fillColor) : QBrush(Qt::NoBrush));

    switch (m_shape) {
    case Rectangle:
    case Square:
        painter.drawRect(area);
        break;
    case Oval:
    case Circle:
        painter.drawEllipse(area);
        break;
    case RoundedRectangle:
    case RoundedSquare: {
        // The radius follows the shape's own proportions, not the pen, so a
        // thicker outline does not change how round the corners look.
        const QRectF outer = area.adjusted(-m_borderWidth / 2.0, -m_borderWidth / 2.0,
                                           m_borderWidth / 2.0, m_borderWidth / 2.0);
        const qreal radius = std::min(outer.width(), outer.height()) / 6.0;
        painter.drawRoundedRect(area, radius, radius);
        break;
    }
    }
}
