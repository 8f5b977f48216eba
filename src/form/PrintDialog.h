// Velmora - the small "Printing..." window shown while a form is held at its
// print size, with a Cancel button when the application allows one.
#pragma once

#include <QDialog>

class QPushButton;

namespace velmora {

class PrintDialog : public QDialog {
    Q_OBJECT
public:
    explicit PrintDialog(bool allowCancel, QWidget *parent = nullptr);
    QPushButton *cancelButton() const { return m_cancel; }

Q_SIGNALS:
    void cancelPressed();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QPushButton *m_cancel;
};

} // namespace velmora
