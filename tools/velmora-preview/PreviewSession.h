// Velmora - one preview: a form loaded (or the built-in sample), a
// VelmoraControl on it, and, without a display, a run over a list of sizes
// producing screenshots and a machine-readable report.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStringList>

class QWidget;
class VelmoraControl;

class PreviewSession {
public:
    // Loads `path`, or the embedded sample form when it is empty.
    bool load(const QString &path, QString *error);

    QWidget *root() const { return m_root; }
    QWidget *form() const;
    VelmoraControl *control() const { return m_control; }
    const QStringList &warnings() const { return m_warnings; }
    // Widgets the form's file declares, and how many of them were loaded.
    int widgetsDeclared() const { return m_declared; }
    int widgetsLoaded() const { return m_loaded; }

    // Shows the form and makes sure a VelmoraControl serves it.
    void show();
    // Gives the form (its inner widget) this size in pixels and lets the
    // pass run.
    void resizeForm(const QSize &size);
    // "fixed size WxH: the form cannot be resized" for a form that cannot
    // be (its own or its window's minimum is its maximum); else empty.
    QString fixedSize() const;
    // Every control: class, name, container, geometry in pixels, font size.
    QJsonObject snapshot(bool design) const;
    bool screenshot(const QString &dir, QString *file) const;

private:
    QPointer<QWidget> m_root;
    QPointer<VelmoraControl> m_control;
    QStringList m_warnings;
    int m_declared = 0;
    int m_loaded = 0;
};
