#include "DesignerIcons.h"

#include "control/VelmoraControl_p.h"
#include "widgets/VelmoraImageList.h"

#include <QPainter>
#include <QPixmap>

#include <functional>

namespace velmora::designer {

namespace {

// Drawn at each size rather than scaled from one: sharp in list and icon
// mode alike.
QIcon drawn(const std::function<void(QPainter &, const QRectF &)> &paint)
{
    QIcon icon;
    for (int side : {16, 22, 24, 32, 48}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        paint(p, QRectF(0, 0, side, side));
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

const QColor Ink(0x1d, 0x4e, 0x89);
const QColor Accent(0xd9, 0x6c, 0x00);

} // namespace

QIcon controlIcon()
{
    return drawn([](QPainter &p, const QRectF &r) { VelmoraControlPrivate::paintIcon(p, r); });
}

QIcon lineIcon()
{
    return drawn([](QPainter &p, const QRectF &r) {
        p.setRenderHint(QPainter::Antialiasing);
        const qreal m = r.width() / 6;
        p.setPen(QPen(Ink, qMax(1.5, r.width() / 12), Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(r.left() + m, r.bottom() - m), QPointF(r.right() - m, r.top() + m));
        p.setPen(Qt::NoPen);
        p.setBrush(Accent);
        const qreal dot = r.width() / 10;
        p.drawEllipse(QPointF(r.left() + m, r.bottom() - m), dot, dot);
        p.drawEllipse(QPointF(r.right() - m, r.top() + m), dot, dot);
    });
}

QIcon shapeIcon()
{
    return drawn([](QPainter &p, const QRectF &r) {
        p.setRenderHint(QPainter::Antialiasing);
        const qreal pen = qMax(1.0, r.width() / 16);
        p.setPen(QPen(Ink, pen));
        p.setBrush(QColor(0xe8, 0xf0, 0xfa));
        const QRectF box = r.adjusted(pen, r.height() / 5, -r.width() / 3, -pen);
        p.drawRoundedRect(box, box.height() / 5, box.height() / 5);
        p.setBrush(QColor(0xf4, 0xd0, 0x8a));
        const qreal d = r.width() * 0.5;
        p.drawEllipse(QRectF(r.right() - d - pen / 2, r.top() + pen / 2, d, d));
    });
}

QIcon imageListIcon()
{
    // The list as it shows on a form being edited.
    VelmoraImageList list;
    list.setDesignTime(true);
    QIcon icon;
    for (int side : {16, 22, 24, 32, 48}) {
        list.resize(side, side);
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        list.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace velmora::designer
