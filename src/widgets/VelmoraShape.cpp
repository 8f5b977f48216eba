// Velmora - a plain geometric shape for absolutely positioned forms.
#include "VelmoraShape.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

class VelmoraShapePrivate {
public:
    VelmoraShape::Shape shape = VelmoraShape::Rectangle;
    int borderWidth = 1;
    QColor borderColor;
    QColor fillColor = QColor(Qt::transparent);
};

VelmoraShape::VelmoraShape(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<VelmoraShapePrivate>())
{
    // Only the shape is painted; the corners show the parent through.
    setAutoFillBackground(false);
}

VelmoraShape::~VelmoraShape() = default;

VelmoraShape::Shape VelmoraShape::shape() const
{
    return d->shape;
}

int VelmoraShape::borderWidth() const
{
    return d->borderWidth;
}

QColor VelmoraShape::borderColor() const
{
    return d->borderColor;
}

QColor VelmoraShape::fillColor() const
{
    return d->fillColor;
}

void VelmoraShape::setShape(Shape shape)
{
    if (shape == d->shape)
        return;
    d->shape = shape;
    update();
}

void VelmoraShape::setBorderWidth(int width)
{
    width = std::max(0, width);
    if (width == d->borderWidth)
        return;
    d->borderWidth = width;
    update();
}

void VelmoraShape::setBorderColor(const QColor &color)
{
    if (color == d->borderColor)
        return;
    d->borderColor = color;
    update();
}

void VelmoraShape::setFillColor(const QColor &color)
{
    if (color == d->fillColor)
        return;
    d->fillColor = color;
    update();
}

bool VelmoraShape::isSquareKind() const
{
    return d->shape == Square || d->shape == Circle || d->shape == RoundedSquare;
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
    const qreal inset = d->borderWidth / 2.0;
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

    if (d->borderWidth > 0) {
        const QColor color = d->borderColor.isValid() ? d->borderColor : palette().color(QPalette::WindowText);
        QPen pen(color, d->borderWidth);
        // A mitred right angle ends exactly on the widget's corner, so a
        // rectangle keeps sharp outer corners without leaving the widget.
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
    } else {
        painter.setPen(Qt::NoPen);
    }
    // An invalid fill counts as no fill, like a transparent one.
    painter.setBrush(d->fillColor.isValid() && d->fillColor.alpha() > 0 ? QBrush(d->fillColor) : QBrush(Qt::NoBrush));

    switch (d->shape) {
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
        const QRectF outer = area.adjusted(-d->borderWidth / 2.0, -d->borderWidth / 2.0,
                                           d->borderWidth / 2.0, d->borderWidth / 2.0);
        const qreal radius = std::min(outer.width(), outer.height()) / 6.0;
        painter.drawRoundedRect(area, radius, radius);
        break;
    }
    }
}
