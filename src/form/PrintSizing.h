// Velmora - holds a form at a print size (optionally off-screen, with a
// "Printing..." window that may cancel) so that the application can render
// it, and puts it back as it was.
#pragma once

#include "form/PrintDialog.h"
#include "layout/Value.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace velmora {

class FormDriver;

class ResizeEngine;


class PrintSizing : public QObject {
    Q_OBJECT
public:
    PrintSizing(FormDriver &driver, ResizeEngine &engine, QObject *parent = nullptr);
    ~PrintSizing() override;

    // Enabled: the form's outer size becomes PrintWidth x PrintHeight (in
    // ScaleMode units; 0: its design size), at its place or off-screen
    // (Hide), the controls laid out for it. Disabled: back to the saved
    // place, size and state. Always 0.
    int PrintSize(bool enabled, double printWidth, double printHeight, int scaleMode, bool hide, bool showDialog,
                  bool allowCancel);

    static constexpr float HiddenLeft = 32000; // twips: well off the screen
    static constexpr int HideCheckMs = 100;
    const QTimer &hideTimer() const { return m_tmrPrintHide; }
    PrintDialog *dialog() const { return m_dialog; }

Q_SIGNALS:
    void printCancelled();
    // The print size could not be converted from the given ScaleMode.
    void scaleModeError(const HostError &error);

private:
    void enable(double printWidth, double printHeight, int scaleMode, bool hide, bool showDialog, bool allowCancel);
    void disable();

    FormDriver &m_driver;
    ResizeEngine &m_engine;
    QTimer m_tmrPrintHide;
    QPointer<PrintDialog> m_dialog;
    int m_savedState = 0;
    float m_savedLeft = 0, m_savedTop = 0, m_savedWidth = 0, m_savedHeight = 0;
    bool m_saved = false;
};

} // namespace velmora
