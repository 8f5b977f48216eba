// Velmora - a plain geometric shape for absolutely positioned forms.
//
// Forms use it for panels, badges and separators drawn behind other
// controls: a rectangle, square, oval, circle or rounded variant painted
// inside the widget's own rectangle, so resizing the widget resizes the
// shape and nothing is ever drawn outside it.
#pragma once

#include "velmora_export.h"

#include <QColor>
#include <QRectF>
#include <QWidget>

#include <memory>

class VelmoraShapePrivate;

class VELMORA_EXPORT VelmoraShape : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Shape Shape READ shape WRITE setShape DESIGNABLE true)
    Q_PROPERTY(int BorderWidth READ borderWidth WRITE setBorderWidth DESIGNABLE true)
    Q_PROPERTY(QColor BorderColor READ borderColor WRITE setBorderColor DESIGNABLE true)
    Q_PROPERTY(QColor FillColor READ fillColor WRITE setFillColor DESIGNABLE true)

public:
    enum Shape { Rectangle, Square, Oval, Circle, RoundedRectangle, RoundedSquare };
    Q_ENUM(Shape)

    explicit VelmoraShape(QWidget *parent = nullptr);
    ~VelmoraShape() override;

    Shape shape() const;
    void setShape(Shape shape);

    // 0 draws no outline at all.
    int borderWidth() const;
    void setBorderWidth(int width);

    // An invalid colour means the palette's WindowText colour.
    QColor borderColor() const;
    void setBorderColor(const QColor &color);

    // Fully transparent (the default) leaves whatever is behind visible.
    QColor fillColor() const;
    void setFillColor(const QColor &color);

    // The rectangle the outline is stroked along, in widget coordinates:
    // the squared-off part of the widget for the square kinds, pulled in by
    // half the pen so the whole stroke stays inside the widget.
    QRectF shapeRect() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isSquareKind() const;

    std::unique_ptr<VelmoraShapePrivate> d;
};
