// Style sheets on a small absolutely positioned form: scaled to two sizes
// and back to the design size, every sheet must be its original text byte
// for byte, and every control back at its design geometry and font size,
// rich text, a view's header font, rows and columns included.
//
// Input: one byte of options (bit 0: the form is a main window's central
// widget), two sizes (16-bit width and height each, 0 to 4000 pixels),
// then sheets separated by NUL bytes, each one's first byte choosing the
// widget it is set on (the window, the form, or one of the controls).
#include "FuzzCommon.h"

#include "control/VelmoraControl.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QHeaderView>
#include <QTabWidget>
#include <QTableWidget>

#include <memory>

namespace {

struct Design {
    QPointer<QWidget> widget;
    QRect geometry;
    qreal points;
};

QSize sizeFrom(fuzz::Bytes &in)
{
    const int w = in.u16() % 4001, h = in.u16() % 4001;
    return {w, h};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Bytes in(data, size);
    const bool inMainWindow = in.flag();
    const QSize first = sizeFrom(in), second = sizeFrom(in);
    const QList<QByteArray> chunks = in.take(size).split('\0');
    // Lengths the size of a screen or more make Qt's own windows (not the
    // component's doing) grow to gigabytes of backing store.
    static const QRegularExpression large(QStringLiteral("\\d{5}|[2-9]\\d{3}"));
    for (const QByteArray &c : chunks)
        if (large.match(QString::fromUtf8(c)).hasMatch())
            return 0;

    const QSize design(400, 300);
    std::unique_ptr<QWidget> root;
    QWidget *form;
    if (inMainWindow) {
        auto *main = new QMainWindow;
        form = new QWidget;
        form->setObjectName(QStringLiteral("centralWidget"));
        main->setCentralWidget(form);
        root.reset(main);
    } else {
        root = std::make_unique<QWidget>();
        form = root.get();
    }
    root->setObjectName(QStringLiteral("frmStyled"));
    root->resize(design);
    const auto place = [](QWidget *w, const char *name, int x, int y, int width, int height) {
        w->setObjectName(QLatin1String(name));
        w->setGeometry(x, y, width, height);
        return w;
    };
    auto *group = new QGroupBox(QStringLiteral("Options"), form);
    auto *tabs = new QTabWidget(form);
    auto *page = new QWidget;
    tabs->addTab(page, QStringLiteral("Page"));
    QList<QWidget *> targets = {
        root.get(),
        form,
        place(new QLabel(QStringLiteral("Title"), form), "lblTitle", 10, 10, 200, 24),
        place(new QPushButton(QStringLiteral("OK"), form), "cmdOk", 300, 250, 80, 30),
        place(new QLineEdit(QStringLiteral("text"), form), "txtName", 10, 40, 180, 24),
        place(group, "fraOptions", 10, 80, 180, 100),
        place(new QCheckBox(QStringLiteral("Check"), group), "chkOne", 10, 30, 120, 24),
        place(new QComboBox(form), "cboKind", 210, 40, 120, 24),
        place(new QSpinBox(form), "spnCount", 210, 80, 80, 24),
        place(tabs, "tabPages", 200, 120, 190, 120),
        place(new QLabel(QStringLiteral("On a page"), page), "lblPage", 10, 10, 150, 20),
        place(new QLabel(QStringLiteral("<p><span style=\" font-size:14pt;\">Rich</span> and "
                                        "<span style=\" font-size:9px;\">small</span></p>"),
                         form),
              "lblRich", 10, 190, 180, 40),
        place(new QTableWidget(3, 2, form), "tblData", 200, 250, 90, 45),
    };
    auto *rich = static_cast<QLabel *>(targets.at(targets.size() - 2));
    const QString richText = rich->text();
    auto *table = static_cast<QTableWidget *>(targets.last());
    for (const QByteArray &c : chunks)
        if (!c.isEmpty())
            targets[quint8(c[0]) % targets.size()]->setStyleSheet(QString::fromUtf8(c.mid(1)));

    auto *velmora = new VelmoraControl(form);
    velmora->setResizeOnMouseUp(false);
    root->show();
    for (int i = 0; i < 20 && !velmora->isFormReady(); ++i)
        fuzz::wait(1);
    fuzz::settle();
    FUZZ_CHECK(velmora->isFormReady(), "the form never got ready");

    // The window's own sheets: each one's text, as the application set it.
    QList<QPair<QPointer<QWidget>, QString>> sheets;
    sheets.append({root.get(), root->styleSheet()});
    for (QWidget *w : root->findChildren<QWidget *>())
        sheets.append({w, w->styleSheet()});
    QList<Design> designed;
    for (QWidget *w : targets.mid(2))
        designed.append({w, w->geometry(), w->font().pointSizeF()});
    const QSize chrome = root->size() - form->size();
    const QSize formDesign = form->size();
    const QFont headerFont = table->horizontalHeader()->font();
    const int rowHeight = table->rowHeight(1), columnWidth = table->columnWidth(1);

    for (const QSize &s : {first, second, formDesign}) {
        root->resize(s + chrome);
        fuzz::settle();
    }
    FUZZ_CHECK(form->size() == formDesign, "the form is %dx%d, not back at %dx%d", form->width(), form->height(),
               formDesign.width(), formDesign.height());
    for (const auto &[w, text] : sheets) {
        if (!w)
            continue;
        FUZZ_CHECK(w->styleSheet() == text, "%s's sheet at the design size is\n%s\nnot its original\n%s",
                   qPrintable(w->objectName()), qPrintable(w->styleSheet()), qPrintable(text));
    }
    FUZZ_CHECK(rich->text() == richText, "the rich label's text at the design size is\n%s\nnot\n%s",
               qPrintable(rich->text()), qPrintable(richText));
    FUZZ_CHECK(table->horizontalHeader()->font().pointSizeF() == headerFont.pointSizeF()
                   && table->horizontalHeader()->font().pixelSize() == headerFont.pixelSize(),
               "the header's font is %gpt/%dpx, designed %gpt/%dpx", table->horizontalHeader()->font().pointSizeF(),
               table->horizontalHeader()->font().pixelSize(), headerFont.pointSizeF(), headerFont.pixelSize());
    FUZZ_CHECK(table->rowHeight(1) == rowHeight && table->columnWidth(1) == columnWidth,
               "a row is %d high and a column %d wide, designed %d and %d", table->rowHeight(1),
               table->columnWidth(1), rowHeight, columnWidth);
    for (const Design &d : designed) {
        const QRect g = d.widget->geometry(), was = d.geometry;
        FUZZ_CHECK(qAbs(g.x() - was.x()) <= 1 && qAbs(g.y() - was.y()) <= 1 && qAbs(g.width() - was.width()) <= 1
                       && qAbs(g.height() - was.height()) <= 1,
                   "%s is at %d,%d %dx%d, designed at %d,%d %dx%d (sizes %dx%d then %dx%d)",
                   qPrintable(d.widget->objectName()), g.x(), g.y(), g.width(), g.height(), was.x(), was.y(),
                   was.width(), was.height(), first.width(), first.height(), second.width(), second.height());
        FUZZ_CHECK(qAbs(d.widget->font().pointSizeF() - d.points) <= 0.01, "%s's font is %gpt, designed %gpt",
                   qPrintable(d.widget->objectName()), d.widget->font().pointSizeF(), d.points);
    }
    root.reset();
    fuzz::closeAll();
    return 0;
}
