// Velmora - a straight line for absolutely positioned forms.
#include "VelmoraLine.h"

#include <QLineF>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// A freshly dropped line has to be visible to be found again, so it starts as
// a short horizontal rule rather than a single point.
constexpr int DefaultLength = 100;

// Within what a widget's geometry can hold, margins included.
constexpr int MaxBorderWidth = 32767;
constexpr int Reach = std::numeric_limits<int>::max() / 2 - MaxBorderWidth;

QPoint bounded(const QPoint &p)
{
    return QPoint(std::clamp(p.x(), -Reach, Reach), std::clamp(p.y(), -Reach, Reach));
}

// Where the first point lies on one axis relative to the second.
enum class AxisOrder { Level, FirstLow, FirstHigh };

AxisOrder orderOf(int first, int second)
{
    if (first == second)
        return AxisOrder::Level;
    return first < second ? AxisOrder::FirstLow : AxisOrder::FirstHigh;
}

int coordinate(AxisOrder order, bool first, int low, int high)
{
    // Squeezed below its margins the widget has no room for a direction;
    // the line collapses onto the middle rather than poke outside.
    if (high <= low)
        return low + (high - low) / 2;
    switch (order) {
    case AxisOrder::Level:
        return low + (high - low) / 2;
    case AxisOrder::FirstLow:
        return first ? low : high;
    case AxisOrder::FirstHigh:
        return first ? high : low;
    }
    return low;
}

} // namespace

class VelmoraLinePrivate {
public:
    QPoint endPoint(const VelmoraLine *q, bool first) const;

    AxisOrder xOrder = AxisOrder::FirstLow;
    AxisOrder yOrder = AxisOrder::Level;
    int borderWidth = 1;
    QColor borderColor;
    Qt::PenStyle borderStyle = Qt::SolidLine;
};

VelmoraLine::~VelmoraLine() = default;

int VelmoraLine::borderWidth() const
{
    return d->borderWidth;
}

QColor VelmoraLine::borderColor() const
{
    return d->borderColor;
}

Qt::PenStyle VelmoraLine::borderStyle() const
{
    return d->borderStyle;
}

VelmoraLine::VelmoraLine(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<VelmoraLinePrivate>())
{
    setAutoFillBackground(false);
    setPoints(QPoint(0, 0), QPoint(DefaultLength, 0));
}

int VelmoraLine::margin() const
{
    return static_cast<int>(std::ceil(d->borderWidth / 2.0)) + 1;
}

QPoint VelmoraLinePrivate::endPoint(const VelmoraLine *q, bool first) const
{
    // The points sit on the corners of the geometry minus the margins; after
    // an outside resize that is the proportional place, and a level axis
    // stays level in the middle.
    const int m = q->margin();
    const QRect inner = q->geometry().adjusted(m, m, -m, -m);
    return QPoint(coordinate(xOrder, first, inner.left(), inner.right()),
                  coordinate(yOrder, first, inner.top(), inner.bottom()));
}

QPoint VelmoraLine::p1() const
{
    return d->endPoint(this, true);
}

QPoint VelmoraLine::p2() const
{
    return d->endPoint(this, false);
}

void VelmoraLine::setPoints(const QPoint &from, const QPoint &to)
{
    const QPoint p1 = bounded(from), p2 = bounded(to);
    d->xOrder = orderOf(p1.x(), p2.x());
    d->yOrder = orderOf(p1.y(), p2.y());
    const int m = margin();
    const QRect bounds(QPoint(std::min(p1.x(), p2.x()), std::min(p1.y(), p2.y())),
                       QPoint(std::max(p1.x(), p2.x()), std::max(p1.y(), p2.y())));
    const QRect wanted = bounds.adjusted(-m, -m, m, m);
    if (wanted != geometry())
        setGeometry(wanted);
    // The direction may have changed inside an unchanged rectangle.
    update();
}

void VelmoraLine::setX1(int x)
{
    setPoints(QPoint(x, y1()), p2());
}

void VelmoraLine::setY1(int y)
{
    setPoints(QPoint(x1(), y), p2());
}

void VelmoraLine::setX2(int x)
{
    setPoints(p1(), QPoint(x, y2()));
}

void VelmoraLine::setY2(int y)
{
    setPoints(p1(), QPoint(x2(), y));
}

void VelmoraLine::setBorderWidth(int width)
{
    width = std::clamp(width, 1, MaxBorderWidth);
    if (width == d->borderWidth)
        return;
    // The points must be read with the old margin before it changes.
    const QPoint a = p1();
    const QPoint b = p2();
    d->borderWidth = width;
    setPoints(a, b);
}

void VelmoraLine::setBorderColor(const QColor &color)
{
    if (color == d->borderColor)
        return;
    d->borderColor = color;
    update();
}

void VelmoraLine::setBorderStyle(Qt::PenStyle style)
{
    if (style == d->borderStyle)
        return;
    d->borderStyle = style;
    update();
}

QSize VelmoraLine::sizeHint() const
{
    return size();
}

void VelmoraLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const QColor color = d->borderColor.isValid() ? d->borderColor : palette().color(QPalette::WindowText);
    QPen pen(color, d->borderWidth, d->borderStyle);

    // An odd pen width is centred on the pixel, not on the grid line between
    // two pixels, or antialiasing would smear a one pixel line over two.
    const qreal half = (d->borderWidth % 2) ? 0.5 : 0.0;
    const QPoint a = p1() - pos();
    const QPoint b = p2() - pos();

    if (a == b) {
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        painter.drawPoint(QPointF(a) + QPointF(half, half));
        return;
    }

    // Flat ends meet neighbouring lines and frames squarely. A flat cap stops
    // at the end point itself, so the line runs on to the far edge of the
    // last pixel: both end pixels belong to it, as they do on a diagonal.
    if (a.y() == b.y()) {
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        const qreal y = a.y() + half;
        painter.drawLine(QLineF(std::min(a.x(), b.x()), y, std::max(a.x(), b.x()) + 1, y));
        return;
    }
    if (a.x() == b.x()) {
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        const qreal x = a.x() + half;
        painter.drawLine(QLineF(x, std::min(a.y(), b.y()), x, std::max(a.y(), b.y()) + 1));
        return;
    }

    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawLine(QLineF(QPointF(a) + QPointF(half, half), QPointF(b) + QPointF(half, half)));
}
