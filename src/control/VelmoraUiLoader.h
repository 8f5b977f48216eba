// Velmora - a QUiLoader that creates Velmora's widgets (VelmoraControl,
// VelmoraLine, VelmoraShape) from .ui files without a Designer plugin.
#pragma once

#include "velmora_export.h"

#include <QUiLoader>

#include <memory>

class VelmoraUiLoaderPrivate;

class VELMORA_EXPORT VelmoraUiLoader : public QUiLoader {
    Q_OBJECT
public:
    explicit VelmoraUiLoader(QObject *parent = nullptr);
    ~VelmoraUiLoader() override;

    // A custom class whose declared bases lead back to itself (A extends
    // A, or A extends B extends A) is made a plain QWidget, with a warning,
    // where Qt's loader would recurse until the stack runs out.

    QWidget *createWidget(const QString &className, QWidget *parent = nullptr,
                          const QString &name = QString()) override;
    // A layout of a class Qt does not know (or of none) becomes a vertical
    // box layout, with a warning, where Qt's loader would crash.
    QLayout *createLayout(const QString &className, QObject *parent = nullptr,
                          const QString &name = QString()) override;

    // The Velmora classes this loader creates itself.
    static QStringList velmoraClasses();

    // A VelmoraControl's saved settings (VelmoraControl::writeProperties())
    // as the <property> elements of its <widget> in a .ui file: settings as
    // properties, the indexed per-control options as dynamic ones
    // (stdset="0"), so that uic and this loader both restore them. Texts
    // are marked not to be translated; a value no .ui can carry exactly (a
    // control character, a duration that is no number) is left out with a
    // warning.
    static QString settingsXml(const QVariantMap &bag, int indent = 3);

private:
    std::unique_ptr<VelmoraUiLoaderPrivate> d;
};
