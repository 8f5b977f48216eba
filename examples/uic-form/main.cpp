// uic-form: a form drawn in Qt Designer, compiled by uic.
//
// orderform.ui holds a VelmoraControl like any other widget, its settings
// saved by Designer: the OK button keeps its size and its distance to the
// form's bottom right corner; everything else scales with the form.
#include "ui_orderform.h"

#include "ExampleRun.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWidget form;
    Ui::OrderForm ui;
    ui.setupUi(&form); // the component comes with the form
    form.show();
    return runExample(app, &form);
}
