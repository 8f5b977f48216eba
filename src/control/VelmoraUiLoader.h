// Velmora - a QUiLoader that creates Velmora's widgets (VelmoraControl,
// VelmoraLine, VelmoraShape) from .ui files without a Designer plugin.
#pragma once

#include "velmora_export.h"

#include <QUiLoader>

class VELMORA_EXPORT VelmoraUiLoader : public QUiLoader {
    Q_OBJECT
public:
    explicit VelmoraUiLoader(QObject *parent = nullptr);

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr,
                          const QString &name = QString()) override;

    // The Velmora classes this loader creates itself.
    static QStringList velmoraClasses();

    // A VelmoraControl's saved settings (VelmoraControl::writeProperties())
    // as the <property> elements of its <widget> in a .ui file: settings as
    // properties, the indexed per-control options as dynamic ones
    // (stdset="0"), so that uic and this loader both restore them.
    static QString settingsXml(const QVariantMap &bag, int indent = 3);
};
