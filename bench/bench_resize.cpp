// How long one resize pass takes: for the preview's sample form and for a
// form of 1000 widgets built in code. Run offscreen; prints a table.
#include "PreviewSession.h"
#include "control/VelmoraControl.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// 1000 widgets: 100 group boxes of 9 children each (label, edit, button,
// check box, repeated), in a 10 x 10 grid.
std::unique_ptr<QWidget> bigForm()
{
    auto form = std::make_unique<QWidget>();
    form->resize(1600, 1200);
    int n = 0;
    for (int row = 0; row < 10; ++row) {
        for (int col = 0; col < 10; ++col) {
            auto *group = new QGroupBox(QStringLiteral("Group %1").arg(row * 10 + col), form.get());
            group->setObjectName(QStringLiteral("group%1").arg(n++));
            group->setGeometry(col * 160 + 4, row * 120 + 4, 152, 112);
            for (int i = 0; i < 9; ++i) {
                QWidget *w = nullptr;
                switch (i % 4) {
                case 0: w = new QLabel(QStringLiteral("Label"), group); break;
                case 1: w = new QLineEdit(group); break;
                case 2: w = new QPushButton(QStringLiteral("Go"), group); break;
                default: w = new QCheckBox(QStringLiteral("On"), group); break;
                }
                w->setObjectName(QStringLiteral("w%1").arg(n++));
                w->setGeometry(6 + (i % 3) * 48, 22 + (i / 3) * 28, 44, 24);
            }
        }
    }
    new VelmoraControl(form.get());
    return form;
}

struct Timing {
    double passMs;  // the resize and its pass
    double paintMs; // with the repaint that follows
};

Timing measure(QWidget *window, QWidget *form, int rounds)
{
    auto *velmora = form->findChild<VelmoraControl *>();
    velmora->setResizeOnMouseUp(false);
    window->show();
    QApplication::processEvents();
    const QSize base = form->size(), chrome = window->size() - form->size();
    std::vector<double> pass, paint;
    QElapsedTimer t;
    for (int i = 0; i < rounds; ++i) {
        const double f = (i % 2) ? 1.5 : 0.8;
        t.start();
        window->resize(QSize(qRound(base.width() * f), qRound(base.height() * f)) + chrome);
        pass.push_back(t.nsecsElapsed() / 1e6);
        QApplication::processEvents();
        paint.push_back(t.nsecsElapsed() / 1e6);
    }
    const auto median = [](std::vector<double> v) {
        std::sort(v.begin(), v.end());
        return v[v.size() / 2];
    };
    return {median(pass), median(paint)};
}

int countWidgets(QWidget *form)
{
    return static_cast<int>(form->findChildren<QWidget *>().size());
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(3, atoi(argv[1])) : 21;

    PreviewSession sample;
    QString error;
    if (!sample.load(QString(), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    const Timing s = measure(sample.root(), sample.form(), rounds);
    auto big = bigForm();
    const Timing b = measure(big.get(), big.get(), rounds);

    std::printf("form                 widgets  pass (ms)  pass+paint (ms)   median of %d\n", rounds);
    std::printf("sample form          %7d  %9.2f  %15.2f\n", countWidgets(sample.form()), s.passMs, s.paintMs);
    std::printf("1000-widget form     %7d  %9.2f  %15.2f\n", countWidgets(big.get()), b.passMs, b.paintMs);
    return 0;
}
