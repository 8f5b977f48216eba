// Velmora - a straight line for absolutely positioned forms.
//
// A form places a line by its two end points in the parent's pixel
// coordinates, the way it places every other control by its rectangle. The
// widget itself is only the canvas around the line: the bounding rectangle of
// the end points plus a margin that keeps the pen from being clipped.
//
// The end points are not stored. The widget keeps the line's direction on
// each axis and reads the points off its own geometry, so anything that moves
// or resizes the widget from outside (Qt Designer, a loader applying
// "geometry", the resize engine) carries the line with it without having to
// watch for move and resize events - which a hidden widget would only receive
// later, when it is shown.
#pragma once

#include "velmora_export.h"

#include <QColor>
#include <QPoint>
#include <QWidget>

#include <memory>

class VelmoraLinePrivate;

class VELMORA_EXPORT VelmoraLine : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int X1 READ x1 WRITE setX1 DESIGNABLE true)
    Q_PROPERTY(int Y1 READ y1 WRITE setY1 DESIGNABLE true)
    Q_PROPERTY(int X2 READ x2 WRITE setX2 DESIGNABLE true)
    Q_PROPERTY(int Y2 READ y2 WRITE setY2 DESIGNABLE true)
    Q_PROPERTY(int BorderWidth READ borderWidth WRITE setBorderWidth DESIGNABLE true)
    Q_PROPERTY(QColor BorderColor READ borderColor WRITE setBorderColor DESIGNABLE true)
    Q_PROPERTY(Qt::PenStyle BorderStyle READ borderStyle WRITE setBorderStyle DESIGNABLE true)

public:
    explicit VelmoraLine(QWidget *parent = nullptr);
    ~VelmoraLine() override;

    QPoint p1() const;
    QPoint p2() const;
    // Both points at once, so the widget changes its geometry only once.
    void setPoints(const QPoint &p1, const QPoint &p2);

    int x1() const { return p1().x(); }
    int y1() const { return p1().y(); }
    int x2() const { return p2().x(); }
    int y2() const { return p2().y(); }
    void setX1(int x);
    void setY1(int y);
    void setX2(int x);
    void setY2(int y);

    int borderWidth() const;
    void setBorderWidth(int width);

    // An invalid colour means the palette's WindowText colour.
    QColor borderColor() const;
    void setBorderColor(const QColor &color);

    Qt::PenStyle borderStyle() const;
    void setBorderStyle(Qt::PenStyle style);

    // Space kept around the end points on every side.
    int margin() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<VelmoraLinePrivate> d;
};
