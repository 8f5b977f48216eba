// Velmora - one of Velmora's widgets as Qt Designer offers it.
#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QIcon>
#include <QObject>

#include <functional>

class VelmoraWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
public:
    struct Description {
        QString className;
        QString includeFile;
        QString toolTip;
        QString whatsThis;
        // Drawn when Designer first asks (it needs a running application).
        std::function<QIcon()> icon;
        // The widget's first <widget> element in the form (its size when
        // dropped, the settings it starts with).
        QString domXml;
        // designTime: made for a form being edited (not for a preview, nor
        // for an application's QUiLoader).
        std::function<QWidget *(QWidget *parent, bool designTime)> create;
        // Once per form editor, for the widget that brings editor services.
        std::function<void(QDesignerFormEditorInterface *core)> initialize;
    };

    explicit VelmoraWidgetPlugin(Description description, QObject *parent = nullptr);

    QString name() const override { return m_d.className; }
    QString group() const override;
    QString toolTip() const override { return m_d.toolTip; }
    QString whatsThis() const override { return m_d.whatsThis; }
    QString includeFile() const override { return m_d.includeFile; }
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override { return m_core != nullptr; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override { return m_d.domXml; }

private:
    Description m_d;
    QDesignerFormEditorInterface *m_core = nullptr;
    mutable QIcon m_icon;
};
