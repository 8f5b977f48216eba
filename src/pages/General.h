// Velmora - the General page: the form-wide switches and sizes.
#pragma once

#include "pages/VelmoraPropertyPage.h"

class QCheckBox;
class QLineEdit;

namespace VelmoraPages {

class General : public VelmoraPropertyPage {
    Q_OBJECT
    // As the component has always described its pages (all but FormEffects).
    Q_CLASSINFO("Description", "Velmora Property Page")
public:
    explicit General(QWidget *parent = nullptr);

    void selectionChanged(const QList<VelmoraControl *> &selected) override;
    void applyChanges() override;

    QCheckBox *chkScaleControls, *chkScaleFonts, *chkScaleBorders, *chkScaleGraphics, *chkResizeOnMouseUp,
        *chkCenterX, *chkCenterY, *chkStayOnTop, *chkGradientFill, *chkSaveWindowState;
    QLineEdit *txtScaleX, *txtScaleY, *txtMinWidth, *txtMinHeight, *txtMaxWidth, *txtMaxHeight, *txtMdiChildWidth,
        *txtMdiChildHeight, *txtWindowName;
};

} // namespace VelmoraPages
