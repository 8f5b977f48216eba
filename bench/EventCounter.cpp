#include "EventCounter.h"

#include <QCoreApplication>

#include <algorithm>
#include <climits>

namespace bench {

EventCounter::EventCounter()
{
    QCoreApplication::instance()->installEventFilter(this);
}

EventCounter::~EventCounter()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

bool EventCounter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        ++m_paints[watched];
    else if (event->type() == QEvent::FontChange)
        ++m_fontChanges[watched];
    return false;
}

EventCounter::PerWidget EventCounter::of(const std::vector<QWidget *> &widgets) const
{
    PerWidget r;
    if (widgets.empty())
        return r;
    r.minPaints = INT_MAX;
    long paints = 0, fonts = 0;
    for (QWidget *w : widgets) {
        const int p = m_paints.value(w), f = m_fontChanges.value(w);
        paints += p;
        fonts += f;
        r.maxPaints = std::max(r.maxPaints, p);
        r.minPaints = std::min(r.minPaints, p);
        r.maxFontChanges = std::max(r.maxFontChanges, f);
    }
    r.paints = double(paints) / double(widgets.size());
    r.fontChanges = double(fonts) / double(widgets.size());
    return r;
}

} // namespace bench
