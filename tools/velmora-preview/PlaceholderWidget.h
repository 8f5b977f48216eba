// Velmora - stands in for a widget whose class neither Qt nor the form's
// declared bases can make, so that it and everything inside it still show.
#pragma once

#include <QWidget>

class PlaceholderWidget : public QWidget {
    Q_OBJECT
public:
    PlaceholderWidget(const QString &className, QWidget *parent);

    QString className() const { return m_className; }
    // The class a widget was declared with when it is a placeholder, else empty.
    static QString placeholderClass(const QWidget *w);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_className;
};
