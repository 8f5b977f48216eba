// Velmora - the ScaleControls page: controls left where they are, or held
// by some of their edges (at most two of an axis' three).
#pragma once

#include "pages/ControlOptionsPage.h"

#include <QTimer>

class QCheckBox;

namespace VelmoraPages {

class ScaleControls : public ControlOptionsPage {
    Q_OBJECT
public:
    explicit ScaleControls(QWidget *parent = nullptr);

    // With no lock left, the current control is no longer exempt.
    Q_INVOKABLE void CheckIfAllDeselected();

    QCheckBox *chkLockLeft, *chkLockTop, *chkLockWidth, *chkLockHeight, *chkLockRight, *chkLockBottom;
    // Runs CheckIfAllDeselected once a lock's click has been handled.
    QTimer Timer1;

protected:
    void currentChanged() override;
    void itemChecked(QListWidgetItem *item) override;
    void selectAll(bool on) override;

private:
    QCheckBox *box(Flag lock) const;
    void lockClicked(Flag lock);
    void showLocks(const Entry *e);
    bool m_settingBoxes = false;
};

} // namespace VelmoraPages
