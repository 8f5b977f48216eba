#include "BenchForms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

namespace bench {

namespace {

constexpr int CellW = 48, CellH = 20;

QWidget *mixedWidget(int n, QWidget *parent)
{
    QWidget *w = nullptr;
    switch (n % 5) {
    case 0: w = new QLabel(QStringLiteral("Label"), parent); break;
    case 1: w = new QLineEdit(QStringLiteral("text"), parent); break;
    case 2: w = new QPushButton(QStringLiteral("Go"), parent); break;
    case 3: w = new QCheckBox(QStringLiteral("On"), parent); break;
    default: {
        auto *combo = new QComboBox(parent);
        combo->addItems({QStringLiteral("one"), QStringLiteral("two")});
        w = combo;
        break;
    }
    }
    w->setObjectName(QStringLiteral("w%1").arg(n));
    return w;
}

// Blocks of 10 x 10 cells, each holding 100 widgets: a group box over the
// top-left 3 x 3 cells with 9 children, and 90 widgets in the other cells.
void buildMixed(Form &f, int count, bool grid)
{
    const int blocks = std::max(1, count / 100);
    const int blockCols = std::max(1, static_cast<int>(std::ceil(std::sqrt(blocks * 2.0))));
    QGridLayout *top = nullptr;
    if (grid) {
        top = new QGridLayout(f.form);
        top->setContentsMargins(0, 0, 0, 0);
        top->setSpacing(0);
    }
    int n = 0;
    const auto place = [&](QWidget *w, int row, int col, int rowSpan, int colSpan) {
        if (top) {
            w->setMinimumSize(1, 1);
            top->addWidget(w, row, col, rowSpan, colSpan);
        } else {
            w->setGeometry(col * CellW + 1, row * CellH + 1, colSpan * CellW - 2, rowSpan * CellH - 2);
        }
        f.widgets.push_back(w);
    };
    for (int b = 0; b < blocks; ++b) {
        const int row0 = (b / blockCols) * 10, col0 = (b % blockCols) * 10;
        auto *group = new QGroupBox(QStringLiteral("Group"), f.form);
        group->setObjectName(QStringLiteral("g%1").arg(b));
        place(group, row0, col0, 3, 3);
        QGridLayout *inner = nullptr;
        if (grid) {
            inner = new QGridLayout(group);
            inner->setContentsMargins(2, 14, 2, 2);
            inner->setSpacing(1);
        }
        for (int i = 0; i < 9; ++i) {
            QWidget *w = mixedWidget(n++, group);
            if (inner) {
                w->setMinimumSize(1, 1);
                inner->addWidget(w, i / 3, i % 3);
            } else {
                w->setGeometry(4 + (i % 3) * 46, 16 + (i / 3) * 14, 44, 12);
            }
            f.widgets.push_back(w);
        }
        for (int cell = 0; cell < 100 && n < (b + 1) * 99; ++cell) {
            const int r = cell / 10, c = cell % 10;
            if (r < 3 && c < 3)
                continue;
            place(mixedWidget(n++, f.form), row0 + r, col0 + c, 1, 1);
        }
    }
}

void buildFlat(Form &f, int count)
{
    const int cols = std::max(1, static_cast<int>(std::ceil(std::sqrt(count * 2.0))));
    for (int i = 0; i < count; ++i) {
        auto *w = new QFrame(f.form);
        w->setObjectName(QStringLiteral("f%1").arg(i));
        w->setGeometry((i % cols) * CellW + 1, (i / cols) * CellH + 1, CellW - 2, CellH - 2);
        f.widgets.push_back(w);
    }
}

void buildNested(Form &f, int count)
{
    QWidget *parent = f.form;
    for (int i = 0; i < count; ++i) {
        auto *w = new QFrame(parent);
        w->setObjectName(QStringLiteral("f%1").arg(i));
        // Each frame fills the one it is in, less a pixel every tenth level.
        const int inset = (i % 10 == 0) ? 1 : 0;
        const QSize outer = parent->size();
        w->setGeometry(inset, inset, outer.width() - 2 * inset, outer.height() - 2 * inset);
        f.widgets.push_back(w);
        parent = w;
    }
}

QSize designSize(Shape shape, int count)
{
    switch (shape) {
    case Shape::Mixed: {
        const int blocks = std::max(1, count / 100);
        const int blockCols = std::max(1, static_cast<int>(std::ceil(std::sqrt(blocks * 2.0))));
        const int blockRows = (blocks + blockCols - 1) / blockCols;
        return {std::min(blocks, blockCols) * 10 * CellW, blockRows * 10 * CellH};
    }
    case Shape::Flat: {
        const int cols = std::max(1, static_cast<int>(std::ceil(std::sqrt(count * 2.0))));
        return {std::min(count, cols) * CellW, ((count + cols - 1) / cols) * CellH};
    }
    case Shape::Nested:
        return {800, 600};
    }
    return {800, 600};
}

} // namespace

const char *shapeName(Shape shape)
{
    switch (shape) {
    case Shape::Mixed: return "mixed";
    case Shape::Flat: return "flat frames";
    case Shape::Nested: return "nested frames";
    }
    return "";
}

Form makeForm(Shape shape, int count, bool child, bool gridLayout)
{
    Form f;
    f.window = std::make_unique<QWidget>();
    if (child) {
        auto *box = new QVBoxLayout(f.window.get());
        box->setContentsMargins(0, 0, 0, 0);
        f.form = new QWidget;
        f.form->setObjectName(QStringLiteral("form"));
        box->addWidget(f.form);
    } else {
        f.form = f.window.get();
    }
    f.form->resize(designSize(shape, count));
    f.window->resize(designSize(shape, count));
    switch (shape) {
    case Shape::Mixed: buildMixed(f, count, gridLayout); break;
    case Shape::Flat: buildFlat(f, count); break;
    case Shape::Nested: buildNested(f, count); break;
    }
    return f;
}

} // namespace bench
