#include "form/PrintDialog.h"

#include "form/WindowPlacement.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace velmora {

PrintDialog::PrintDialog(bool allowCancel, QWidget *parent)
    : QDialog(parent)
    , m_cancel(new QPushButton(QStringLiteral("&Cancel"), this))
{
    setObjectName(QStringLiteral("frmDialog"));
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setAttribute(Qt::WA_DeleteOnClose);
    auto *label = new QLabel(QStringLiteral("Printing..."), this);
    label->setObjectName(QStringLiteral("lblPrinting"));
    label->setAlignment(Qt::AlignCenter);
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cancel->setVisible(allowCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_cancel, 0, Qt::AlignHCenter);
    connect(m_cancel, &QPushButton::clicked, this, &PrintDialog::cancelPressed);
    // Closing it by its title bar is no cancel: only the button is.
}

void PrintDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // Centred on the screen, above everything.
    if (const QScreen *screen = this->screen()) {
        const QRect area = screen->geometry();
        move(area.center() - QPoint(frameGeometry().width() / 2, frameGeometry().height() / 2));
    }
    WindowPlacement::applyStayOnTop(static_cast<QWidget *>(this), true);
}

} // namespace velmora
