// Velmora - a widget renamed in Qt Designer keeps its per-control options:
// the entries of the form's VelmoraControl under its old name take the new
// one. Undoing the rename names the widget back, and the entries follow it
// back, so the change is part of the rename's own step in the history.
#pragma once

#include <QHash>
#include <QObject>

namespace velmora::designer {

class RenameFollower : public QObject {
    Q_OBJECT
public:
    explicit RenameFollower(QObject *parent);
    // Follows the widget's renames from now on (once, however often asked).
    void watch(QWidget *widget);

private:
    void renamed(QWidget *widget);

    // The name each watched widget had when last seen.
    QHash<QObject *, QString> m_names;
};

} // namespace velmora::designer
