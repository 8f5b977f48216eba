// Velmora - the settings of one VelmoraControl on seven pages, with OK,
// Cancel and Apply. Qt Designer's plugin shows it for the selected
// control; an application may show it at run time too.
#pragma once

#include "velmora_export.h"

#include <QDialog>
#include <QList>
#include <QPointer>

class QDialogButtonBox;
class QTabWidget;
class VelmoraControl;
class VelmoraPropertyPage;

class VELMORA_EXPORT VelmoraPropertyDialog : public QDialog {
    Q_OBJECT
public:
    explicit VelmoraPropertyDialog(VelmoraControl *control, QWidget *parent = nullptr);

    // The pages in their order: General, ScaleControls, ScaleFonts,
    // ScaleBorders, ScaleGraphics, ReplaceFontsWith, FormEffects.
    QList<VelmoraPropertyPage *> pages() const { return m_pages; }
    QTabWidget *tabs() const { return m_tabs; }
    QDialogButtonBox *buttons() const { return m_buttons; }

    // Applies every page with changes.
    void apply();

Q_SIGNALS:
    // Pages were applied to the control (by OK or Apply).
    void applied();

private:
    void updateApply();

    QPointer<VelmoraControl> m_control;
    QTabWidget *m_tabs;
    QDialogButtonBox *m_buttons;
    QList<VelmoraPropertyPage *> m_pages;
};
