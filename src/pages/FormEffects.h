// Velmora - the FormEffects page: the opening and closing wipes, their
// durations, and what becomes of the form's picture.
#pragma once

#include "pages/VelmoraPropertyPage.h"

class QComboBox;
class QLineEdit;

namespace VelmoraPages {

class FormEffects : public VelmoraPropertyPage {
    Q_OBJECT
public:
    explicit FormEffects(QWidget *parent = nullptr);

    void selectionChanged(const QList<VelmoraControl *> &selected) override;
    void applyChanges() override;

    QComboBox *cmbFormOpen, *cmbFormClose, *cmbFormPicture;
    QLineEdit *txtFormOpenTime, *txtFormCloseTime;

    static constexpr double LongestSeconds = 10;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void durationEdited(QLineEdit *box);
};

} // namespace VelmoraPages
