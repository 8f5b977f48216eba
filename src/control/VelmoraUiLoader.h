// Velmora - a QUiLoader that creates Velmora's widgets (VelmoraControl,
// VelmoraLine, VelmoraShape) from .ui files without a Designer plugin.
#pragma once

#include <QUiLoader>

class VelmoraUiLoader : public QUiLoader {
    Q_OBJECT
public:
    explicit VelmoraUiLoader(QObject *parent = nullptr);

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr,
                          const QString &name = QString()) override;

    // The Velmora classes this loader creates itself.
    static QStringList velmoraClasses();
};
