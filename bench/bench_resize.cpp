// How long one resize pass takes: for the preview's sample form and for a
// form of 1000 widgets built in code. Run offscreen; prints a table.
#include "PreviewSession.h"
#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// 1000 widgets: 100 group boxes of 9 children each (label, edit, button,
// check box, repeated), in a 10 x 10 grid; with `limits`, every child has a
// minimum and a maximum size to scale; `styled`, the form has a style sheet
// that sets the labels' and buttons' fonts and lengths in pixels.
std::unique_ptr<QWidget> bigForm(bool limits, bool styled = false)
{
    auto form = std::make_unique<QWidget>();
    form->resize(1600, 1200);
    if (styled)
        form->setStyleSheet(QStringLiteral("QLabel, QPushButton { font: 9pt; } QPushButton { padding: 1px 4px; } "
                                           "QLineEdit { border: 1px solid gray; padding: 2px; }"));
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
                if (limits) {
                    w->setMinimumSize(30, 16);
                    w->setMaximumSize(60, 30);
                }
            }
        }
    }
    new VelmoraControl(form.get());
    return form;
}

// 500 widgets on the four pages of a tab widget: on each page a grid layout
// places 25 group boxes, each holding 4 absolutely placed widgets. Three
// pages are hidden, so their layouts settle only when Velmora asks.
std::unique_ptr<QWidget> laidOutForm()
{
    auto form = std::make_unique<QWidget>();
    form->resize(1600, 1200);
    auto *tabs = new QTabWidget(form.get());
    tabs->setObjectName(QStringLiteral("tabs"));
    tabs->setGeometry(4, 4, 1592, 1192);
    int n = 0;
    for (int page = 0; page < 4; ++page) {
        auto *p = new QWidget;
        auto *grid = new QGridLayout(p);
        for (int cell = 0; cell < 25; ++cell) {
            auto *group = new QGroupBox(QStringLiteral("Group %1").arg(n));
            group->setObjectName(QStringLiteral("group%1").arg(n++));
            for (int i = 0; i < 4; ++i) {
                QWidget *w = i % 2 ? static_cast<QWidget *>(new QLineEdit(group)) : new QLabel(QStringLiteral("Label"), group);
                w->setObjectName(QStringLiteral("w%1").arg(n++));
                w->setGeometry(6 + (i % 2) * 120, 24 + (i / 2) * 30, 110, 24);
            }
            grid->addWidget(group, cell / 5, cell % 5);
        }
        tabs->addTab(p, QStringLiteral("Page %1").arg(page + 1));
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
    QObject *driver = &VelmoraControlPrivate::get(velmora)->driver;
    window->show();
    QApplication::processEvents();
    const QSize base = form->size(), chrome = window->size() - form->size();
    std::vector<double> pass, paint;
    QElapsedTimer t;
    for (int i = 0; i < rounds; ++i) {
        const double f = (i % 2) ? 1.5 : 0.8;
        t.start();
        window->resize(QSize(qRound(base.width() * f), qRound(base.height() * f)) + chrome);
        // The pass answers the resize from the event loop, ahead of the paint.
        QCoreApplication::sendPostedEvents(driver);
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
    // bench_resize ROUNDS big: the 1000-widget form alone (for callgrind).
    if (argc > 2 && QByteArray(argv[2]) == "big") {
        auto big = bigForm(false);
        const Timing b = measure(big.get(), big.get(), rounds);
        std::printf("1000-widget form     %7d  %9.2f  %15.2f\n", 1001, b.passMs, b.paintMs);
        return 0;
    }

    PreviewSession sample;
    QString error;
    if (!sample.load(QString(), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    const Timing s = measure(sample.root(), sample.form(), rounds);
    auto big = bigForm(false);
    const Timing b = measure(big.get(), big.get(), rounds);
    big.reset();
    auto limited = bigForm(true);
    const Timing l = measure(limited.get(), limited.get(), rounds);
    limited.reset();
    auto styled = bigForm(false, true);
    const Timing st = measure(styled.get(), styled.get(), rounds);
    styled.reset();
    auto laidOut = laidOutForm();
    const Timing o = measure(laidOut.get(), laidOut.get(), rounds);

    std::printf("form                 widgets  pass (ms)  pass+paint (ms)   median of %d\n", rounds);
    std::printf("sample form          %7d  %9.2f  %15.2f\n", countWidgets(sample.form()), s.passMs, s.paintMs);
    std::printf("1000-widget form     %7d  %9.2f  %15.2f\n", 1001, b.passMs, b.paintMs);
    std::printf("  with min/max sizes %7d  %9.2f  %15.2f\n", 1001, l.passMs, l.paintMs);
    std::printf("  with style sheets  %7d  %9.2f  %15.2f\n", 1001, st.passMs, st.paintMs);
    std::printf("laid-out containers  %7d  %9.2f  %15.2f\n", countWidgets(laidOut.get()), o.passMs, o.paintMs);
    return 0;
}
