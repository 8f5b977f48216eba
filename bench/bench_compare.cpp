// Velmora against the hand-written alternatives, in one process:
//   floor       the final geometries and fonts applied by a loop, updates off
//   naive       the same loop with updates on
//   QGridLayout grid layouts placing the same widgets (no font scaling)
// Paired rounds alternate the window between 0.8x and 1.5x of its design
// size; every contender takes each round in turn and the ratios are taken
// within the round. Also: paint and font-change events per widget per pass,
// the cost per widget from 100 to 10 000 widgets, a deeply nested form, and
// the heap Velmora holds per control.
//
// Run offscreen: scripts/bench.sh, or bench_compare [--rounds N] with one of
//   --quick               the whole run without the 10 000-widget forms
//   --compare N [--child] one comparison, with its event counts
//   --profile SHAPE N     only Velmora's passes (mixed, flat, nested), for a profiler
//   --memory              only the heap held per control
#include "BenchForms.h"
#include "Contenders.h"
#include "EventCounter.h"

#include "control/VelmoraControl.h"

#include <QApplication>
#include <QElapsedTimer>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

using namespace bench;

namespace {

double median(std::vector<double> v)
{
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

struct Sample {
    double pass = 0, total = 0; // ms
};

Sample timeOne(Contender &c, double scale)
{
    QElapsedTimer t;
    t.start();
    c.resizeTo(scale);
    Sample s;
    s.pass = t.nsecsElapsed() / 1e6;
    QApplication::processEvents();
    s.total = t.nsecsElapsed() / 1e6;
    return s;
}

double scaleOfRound(int r)
{
    return (r % 2) ? 1.5 : 0.8;
}

struct Field {
    std::unique_ptr<VelmoraContender> velmora;
    std::unique_ptr<LoopContender> floor, naive;
    std::unique_ptr<GridContender> grid;
    std::vector<Contender *> all() const
    {
        std::vector<Contender *> v{velmora.get(), floor.get(), naive.get()};
        if (grid)
            v.push_back(grid.get());
        return v;
    }
};

Field makeField(Shape shape, int count, bool child, bool withGrid)
{
    Field f;
    f.velmora = std::make_unique<VelmoraContender>(makeForm(shape, count, child));
    f.floor = std::make_unique<LoopContender>(makeForm(shape, count, child), true);
    f.naive = std::make_unique<LoopContender>(makeForm(shape, count, child), false);
    if (withGrid)
        f.grid = std::make_unique<GridContender>(makeForm(shape, count, child, true));
    // The loops apply exactly what Velmora computes.
    f.velmora->show();
    for (double scale : {0.8, 1.5}) {
        f.velmora->resizeTo(scale);
        QApplication::processEvents();
        const Targets t = f.velmora->snapshot();
        f.floor->setTargets(scale, t);
        f.naive->setTargets(scale, t);
    }
    f.floor->prime();
    f.naive->prime();
    for (Contender *c : f.all()) {
        if (c != f.velmora.get())
            c->show();
        for (int r = 0; r < 2; ++r) // every widget has had its own font once
            timeOne(*c, scaleOfRound(r));
    }
    return f;
}

struct Result {
    std::vector<std::vector<Sample>> samples; // per contender, per round
    std::vector<std::string> names;
    int widgets = 0;
    double ratio(std::size_t c, bool total) const // median of per-round ratios to the floor
    {
        std::vector<double> r;
        for (std::size_t i = 0; i < samples[c].size(); ++i) {
            const double floor = total ? samples[1][i].total : samples[1][i].pass;
            r.push_back((total ? samples[c][i].total : samples[c][i].pass) / floor);
        }
        return median(r);
    }
    double ms(std::size_t c, bool total) const
    {
        std::vector<double> v;
        for (const Sample &s : samples[c])
            v.push_back(total ? s.total : s.pass);
        return median(v);
    }
    double naiveOverVelmora() const
    {
        std::vector<double> r;
        for (std::size_t i = 0; i < samples[0].size(); ++i)
            r.push_back(samples[2][i].pass / samples[0][i].pass);
        return median(r);
    }
};

Result compare(Field &field, int rounds)
{
    const auto contenders = field.all();
    Result res;
    res.widgets = static_cast<int>(field.velmora->form().widgets.size());
    res.samples.resize(contenders.size());
    for (Contender *c : contenders)
        res.names.push_back(c->name());
    for (int r = 0; r < rounds; ++r) {
        for (std::size_t k = 0; k < contenders.size(); ++k) {
            const std::size_t c = (k + static_cast<std::size_t>(r)) % contenders.size();
            res.samples[c].push_back(timeOne(*contenders[c], scaleOfRound(r)));
        }
    }
    return res;
}

void printComparison(const char *title, const Result &res, int rounds)
{
    std::printf("\n%s: %d widgets, median of %d paired rounds\n", title, res.widgets, rounds);
    std::printf("  %-12s %9s %8s %14s %8s %10s\n", "contender", "pass ms", "x floor", "pass+paint ms", "x floor",
                "us/widget");
    for (std::size_t c = 0; c < res.names.size(); ++c)
        std::printf("  %-12s %9.2f %8.2f %14.2f %8.2f %10.2f\n", res.names[c].c_str(), res.ms(c, false),
                    res.ratio(c, false), res.ms(c, true), res.ratio(c, true),
                    res.ms(c, false) * 1000.0 / res.widgets);
    std::printf("  naive / Velmora (pass): %.2f\n", res.naiveOverVelmora());
}

void printEvents(Field &field)
{
    std::printf("  events per widget per pass (one pass and its repaint):\n");
    for (Contender *c : field.all()) {
        timeOne(*c, 1.5);
        EventCounter counter;
        timeOne(*c, 0.8);
        const auto e = counter.of(c->form().widgets);
        std::printf("    %-12s paints %.2f (min %d, max %d)  font changes %.2f (max %d)\n", c->name().c_str(),
                    e.paints, e.minPaints, e.maxPaints, e.fontChanges, e.maxFontChanges);
    }
    EventCounter counter;
    QElapsedTimer t;
    t.start();
    field.velmora->passAtSameSize();
    const double ms = t.nsecsElapsed() / 1e6;
    QApplication::processEvents();
    const auto e = counter.of(field.velmora->form().widgets);
    std::printf("    Velmora pass at an unchanged size: %.3f ms, paints %.2f, font changes %.2f per widget\n", ms,
                e.paints, e.fontChanges);
}

// Median pass time per widget (us) of Velmora and the floor.
std::pair<double, double> perWidget(Shape shape, int count, int rounds)
{
    Field f = makeField(shape, count, false, false);
    const Result res = compare(f, rounds);
    return {res.ms(0, false) * 1000.0 / count, res.ms(1, false) * 1000.0 / count};
}

std::size_t heapInUse()
{
    return mallinfo2().uordblks;
}

// Heap Velmora holds for a form of `count` mixed widgets after its set-up
// and two passes: what deleting the component gives back, per control.
double bytesPerControl(int count)
{
    VelmoraContender c(makeForm(Shape::Mixed, count, false));
    c.show();
    c.resizeTo(0.8);
    c.resizeTo(1.5);
    QApplication::processEvents();
    const std::size_t before = heapInUse();
    delete c.control();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    const std::size_t after = heapInUse();
    return before > after ? double(before - after) / count : 0.0;
}

// Only Velmora's passes on one form, for a profiler: --profile SHAPE COUNT,
// SHAPE one of mixed, flat, nested.
int profile(const char *shape, int count, int rounds)
{
    const Shape s = !std::strcmp(shape, "nested") ? Shape::Nested : !std::strcmp(shape, "flat") ? Shape::Flat : Shape::Mixed;
    VelmoraContender v(makeForm(s, count, false));
    v.show();
    QElapsedTimer t;
    t.start();
    for (int r = 0; r < rounds; ++r)
        timeOne(v, scaleOfRound(r));
    std::printf("%d passes with their repaints: %.1f ms\n", rounds, t.nsecsElapsed() / 1e6);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    bool quick = false;
    int rounds = 21;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--quick"))
            quick = true;
        else if (!std::strcmp(argv[i], "--memory")) {
            for (int count : {1000, 3000})
                std::printf("%5d controls: %.0f bytes each\n", count, bytesPerControl(count));
            return 0;
        } else if (!std::strcmp(argv[i], "--compare") && i + 1 < argc) {
            // One comparison only: --compare COUNT [--child]
            const bool child = i + 2 < argc && !std::strcmp(argv[i + 2], "--child");
            Field f = makeField(Shape::Mixed, std::atoi(argv[i + 1]), child, true);
            printComparison("mixed widgets", compare(f, rounds), rounds);
            printEvents(f);
            return 0;
        } else if (!std::strcmp(argv[i], "--profile") && i + 2 < argc)
            return profile(argv[i + 1], std::atoi(argv[i + 2]), rounds);
        else if (!std::strcmp(argv[i], "--rounds") && i + 1 < argc)
            rounds = std::max(3, std::atoi(argv[++i]));
    }
    const int bigRounds = quick ? 3 : std::max(3, rounds / 3);
    QElapsedTimer clock;
    clock.start();
    const auto lap = [&clock](const char *what) {
        std::fprintf(stderr, "[%s: %.1f s]\n", what, clock.restart() / 1000.0);
    };

    std::printf("Velmora resize comparison (offscreen; windows alternate 0.8x / 1.5x of design size)\n");
    for (bool child : {false, true}) {
        for (int count : {1000, 10000}) {
            if (quick && count > 1000)
                continue;
            Field f = makeField(Shape::Mixed, count, child, true);
            const int n = count > 1000 ? bigRounds : rounds;
            const Result res = compare(f, n);
            printComparison(child ? "mixed widgets, child form" : "mixed widgets, top-level form", res, n);
            if (count == 1000)
                printEvents(f);
            lap("comparison");
        }
    }

    std::printf("\nCost per widget of one pass (us), top-level form of mixed widgets\n");
    std::printf("  %8s %10s %10s\n", "widgets", "Velmora", "floor");
    double first = 0, last = 0;
    for (int count : {100, 1000, 3000, 10000}) {
        if (quick && count > 3000)
            continue;
        const auto [v, fl] = perWidget(Shape::Mixed, count, count > 1000 ? bigRounds : rounds);
        std::printf("  %8d %10.2f %10.2f\n", count, v, fl);
        if (!first)
            first = v;
        last = v;
    }
    std::printf("  largest / smallest form, Velmora: %.2f\n", last / first);
    lap("cost per widget");

    std::printf("\nDepth: 2000 frames side by side against 2000 frames nested 2000 deep\n");
    const int depthRounds = quick ? 3 : 7;
    const auto [flatV, flatF] = perWidget(Shape::Flat, 2000, depthRounds);
    lap("flat");
    const auto [nestV, nestF] = perWidget(Shape::Nested, 2000, depthRounds);
    lap("nested");
    std::printf("  %-14s %12s %12s\n", "form", "Velmora us/w", "floor us/w");
    std::printf("  %-14s %12.2f %12.2f\n", "flat", flatV, flatF);
    std::printf("  %-14s %12.2f %12.2f\n", "nested", nestV, nestF);
    std::printf("  nested / flat, Velmora: %.2f\n", nestV / flatV);

    std::printf("\nHeap held per control (records, switches, the binding's objects)\n");
    for (int count : {1000, 3000})
        std::printf("  %5d controls: %.0f bytes each\n", count, bytesPerControl(count));
    return 0;
}
