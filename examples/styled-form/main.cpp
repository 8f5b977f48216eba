// styled-form: a form styled with style sheets. The fonts and pixel
// lengths the sheets set scale with the form like everything else; at the
// design size every sheet is as written here.
#include "ExampleRun.h"

#include <VelmoraControl>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Settings"));
    window.setStyleSheet(QStringLiteral(
        "QWidget#form { background: #f4f6fa; }"
        "QLabel { font: 11pt; color: #1d2b3a; }"
        "QLabel#lblHeading { font: bold 18pt; color: #1d4e89; }"
        "QPushButton { font: 10pt; padding: 4px 12px; border: 2px solid #1d4e89; border-radius: 6px;"
        "              background: white; min-height: 20px; }"
        "QCheckBox { spacing: 8px; }"));
    auto *form = new QWidget;
    form->setObjectName(QStringLiteral("form"));
    window.setCentralWidget(form);

    auto *heading = new QLabel(QStringLiteral("Settings"), form);
    heading->setObjectName(QStringLiteral("lblHeading"));
    heading->setGeometry(24, 16, 240, 36);
    auto *sync = new QCheckBox(QStringLiteral("Synchronise every hour"), form);
    sync->setObjectName(QStringLiteral("chkSync"));
    sync->setGeometry(24, 70, 260, 24);
    auto *note = new QLabel(QStringLiteral("Changes apply at once."), form);
    note->setObjectName(QStringLiteral("lblNote"));
    note->setGeometry(24, 104, 260, 24);
    auto *close = new QPushButton(QStringLiteral("Close"), form);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setGeometry(220, 150, 100, 32);
    QObject::connect(close, &QPushButton::clicked, &window, &QWidget::close);

    new VelmoraControl(form);
    window.resize(340, 200);
    window.show();
    return runExample(app, &window);
}
