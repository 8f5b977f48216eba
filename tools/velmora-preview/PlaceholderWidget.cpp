#include "PlaceholderWidget.h"

#include <QPainter>
#include <QStyleOption>

PlaceholderWidget::PlaceholderWidget(const QString &className, QWidget *parent)
    : QWidget(parent)
    , m_className(className)
{
    setToolTip(className);
}

QString PlaceholderWidget::placeholderClass(const QWidget *w)
{
    auto *p = qobject_cast<const PlaceholderWidget *>(w);
    return p ? p->m_className : QString();
}

void PlaceholderWidget::paintEvent(QPaintEvent *)
{
    // A dashed outline and the class name: visibly not the real widget, and
    // quiet enough not to hide the children drawn over it.
    QPainter p(this);
    // The usual custom-widget idiom, so that the widget's style sheet
    // background still shows.
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &p, this);
    QPen pen(palette().color(QPalette::Mid));
    pen.setStyle(Qt::DashLine);
    p.setPen(pen);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    p.setPen(palette().color(QPalette::PlaceholderText));
    QFont f = font();
    f.setItalic(true);
    p.setFont(f);
    p.drawText(rect().adjusted(3, 1, -3, -1), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, m_className);
}
