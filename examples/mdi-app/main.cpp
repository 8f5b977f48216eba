// mdi-app: an MDI application. The main window has a component of its own
// (its toolbar and status bar follow it); each child form has its own, and
// starts at the size MdiChildWidth / MdiChildHeight give it (in twips).
#include "ExampleRun.h"

#include <VelmoraControl>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>

namespace {

// A child form, built at 300 x 160 pixels.
QWidget *noteForm(const QString &name)
{
    auto *form = new QWidget;
    form->setObjectName(name);
    form->setWindowTitle(name);
    form->resize(300, 160);
    auto *title = new QLabel(QStringLiteral("Title"), form);
    title->setObjectName(name + QStringLiteral("Title"));
    title->setGeometry(16, 16, 60, 24);
    auto *edit = new QLineEdit(form);
    edit->setObjectName(name + QStringLiteral("Edit"));
    edit->setGeometry(84, 16, 200, 24);
    auto *save = new QPushButton(QStringLiteral("Save"), form);
    save->setObjectName(name + QStringLiteral("Save"));
    save->setGeometry(204, 116, 80, 28);
    auto *velmora = new VelmoraControl(form);
    velmora->setMdiChildWidth(400 * 15); // 400 x 200 pixels when it opens
    velmora->setMdiChildHeight(200 * 15);
    return form;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Notes"));
    auto *area = new QMdiArea;
    area->setObjectName(QStringLiteral("mdiArea"));
    window.setCentralWidget(area);
    QToolBar *tools = window.addToolBar(QStringLiteral("Tools"));
    tools->setObjectName(QStringLiteral("tbrTools"));
    tools->addAction(QStringLiteral("New"));
    window.statusBar()->setObjectName(QStringLiteral("staStatus"));
    window.statusBar()->showMessage(QStringLiteral("Ready"));
    new VelmoraControl(&window); // the MDI parent's own
    area->addSubWindow(noteForm(QStringLiteral("first")))->move(10, 10);
    area->addSubWindow(noteForm(QStringLiteral("second")))->move(220, 120);
    window.resize(800, 500);
    window.show();
    return runExample(app, &window);
}
