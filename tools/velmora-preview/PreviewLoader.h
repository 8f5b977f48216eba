// Velmora - loads .ui forms for the preview, and says so when a custom widget
// had to be created as the Qt class it extends.
#pragma once

#include <QHash>
#include <QStringList>
#include "control/VelmoraUiLoader.h"

class PreviewLoader : public VelmoraUiLoader {
public:
    explicit PreviewLoader(QObject *parent = nullptr);

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr,
                          const QString &name = QString()) override;

    // Loads a form from a file; on failure returns nullptr and sets *error.
    QWidget *loadFile(const QString &path, QWidget *parent, QString *error);

    // "class (name) created as base" lines, one per fallback.
    const QStringList &warnings() const { return m_warnings; }

private:
    void readCustomWidgets(const QByteArray &ui);

    QHash<QString, QString> m_extends;
    QStringList m_warnings;
};
