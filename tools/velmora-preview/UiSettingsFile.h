// velmora-preview: a .ui file's VelmoraControl settings, edited in place.
// Only the control's settings change; the rest of the file stays byte for
// byte as it was.
#pragma once

#include <QString>
#include <QVariantMap>

class QWidget;
class VelmoraControl;

class UiSettingsFile {
public:
    // Reads and loads the form; refuses (with one line of reason) a file it
    // cannot read, cannot write, or that is not a form.
    bool open(const QString &path, QString *error);
    ~UiSettingsFile();

    // The form's component (one is added to the form if it has none), at
    // design time: nothing on the form moves.
    VelmoraControl *control() const { return m_control; }
    bool controlAdded() const { return m_added; }
    QWidget *form() const { return m_root; }

    // Writes the component's settings back into the file.
    bool save(QString *error);

private:
    QString m_path;
    QString m_text;
    QWidget *m_root = nullptr;
    VelmoraControl *m_control = nullptr;
    bool m_added = false;
};
