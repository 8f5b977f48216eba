// Velmora - loads any absolutely positioned .ui form for the preview. Custom
// classes Qt cannot make become the class they extend or, with no known
// base, a placeholder that keeps the widget's place and children. Files that
// are not forms are refused with a reason instead of showing an empty window.
#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QStringList>
#include "control/VelmoraUiLoader.h"

class PreviewLoader : public VelmoraUiLoader {
public:
    explicit PreviewLoader(QObject *parent = nullptr);

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr,
                          const QString &name = QString()) override;

    // Loads a form from a file; on failure returns nullptr and sets *error to
    // one line naming the file and the reason.
    QWidget *loadFile(const QString &path, QWidget *parent, QString *error);

    // One line per class that had to be made as something else, and one for
    // all the widgets the file gives no area.
    QStringList warnings() const;
    // Widgets the file declares, and how many of them the loaded form holds.
    int widgetsDeclared() const { return m_declared; }
    int widgetsLoaded() const;

private:
    bool readForm(const QString &path, const QByteArray &ui, QString *error);
    bool qtKnows(const QString &className) const;

    QHash<QString, QString> m_extends;
    QStringList m_available;
    // Unknown class -> what it became, and how many widgets it covered.
    struct Substitute {
        QString madeAs;
        int count = 0;
        bool cycle = false; // a placeholder because its chain of bases loops
    };
    QHash<QString, Substitute> m_substitutes;
    QStringList m_substituteOrder;
    // Widgets below the top one whose geometry in the file has no area.
    QStringList m_sizeless;
    // The .qrc files the form names, and what registering them said.
    QStringList m_resources, m_resourceWarnings;
    QList<QPointer<QWidget>> m_created;
    QPointer<QWidget> m_root;
    int m_declared = 0;
};
