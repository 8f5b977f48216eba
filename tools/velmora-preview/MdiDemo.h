// Velmora - the preview's MDI demo: an MDI parent window holding three
// child forms, the sample among them, each scaled by its own control.
#pragma once

#include "PreviewSession.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>

class QMdiArea;

class MdiDemo {
public:
    MdiDemo();
    ~MdiDemo();

    QMainWindow *window() const { return m_window; }
    void show();
    // Off for rendering: each resize is answered at once.
    void setResizeOnMouseUp(bool on);
    // The MDI parent at this outer size, its children's passes run.
    void resize(const QSize &size);
    bool screenshot(const QString &dir, QString *file) const;

private:
    QPointer<QMainWindow> m_window;
    QMdiArea *m_area = nullptr;
    PreviewSession m_sample;
};
