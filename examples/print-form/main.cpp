// print-form: print an absolutely positioned form on an A4 page.
//
// The form is laid out for the page by its VelmoraControl (PrintSize), drawn
// into a PDF, and put back as it was. Usage: print-form [OUT.pdf]
#include <VelmoraControl>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPdfWriter>
#include <QPushButton>
#include <QTextEdit>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("form.pdf");

    // An invoice form, built the way a designer would place it.
    QWidget form;
    form.setWindowTitle(QStringLiteral("Invoice"));
    form.resize(420, 300);
    QPalette white = form.palette();
    white.setColor(QPalette::Window, Qt::white);
    form.setPalette(white);
    form.setAutoFillBackground(true);
    auto *title = new QLabel(QStringLiteral("Invoice 2026-117"), &form);
    title->setGeometry(20, 16, 300, 32);
    QFont big = title->font();
    big.setPointSize(16);
    big.setBold(true);
    title->setFont(big);
    (new QLabel(QStringLiteral("Customer:"), &form))->setGeometry(20, 64, 80, 24);
    (new QLineEdit(QStringLiteral("Northwind Traders"), &form))->setGeometry(110, 64, 290, 24);
    auto *lines = new QTextEdit(&form);
    lines->setGeometry(20, 100, 380, 140);
    lines->setPlainText(QStringLiteral("3 x Widget ........ 12.00\n1 x Gadget ........ 30.00\n\nTotal ............. 66.00"));
    (new QPushButton(QStringLiteral("Pay"), &form))->setGeometry(300, 252, 100, 32);

    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false);
    form.show();
    QCoreApplication::processEvents();

    // A4 in millimetres, the form hidden off-screen meanwhile.
    velmora->PrintSize(true, 210, 297, /* millimetres */ 6, /* Hide */ true);

    QPdfWriter pdf(out);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setResolution(96);
    QPainter painter(&pdf);
    // The form fills the page's width.
    const double scale = pdf.width() / double(form.width());
    painter.scale(scale, scale);
    form.render(&painter);
    const bool written = painter.end();
    std::printf("%s: the form at %dx%d pixels on one A4 page\n", qPrintable(out), form.width(), form.height());

    velmora->PrintSize(false);
    return written ? 0 : 1;
}
