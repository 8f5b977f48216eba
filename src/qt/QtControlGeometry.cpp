// How a control's geometry is read and written: edges in its container's
// units, Move, limits that scale with it, what its parent's layout decides.
#include "qt/QtControl.h"

#include "layout/MemberNames.h"
#include "qt/QtForm.h"
#include "qt/QtLayoutSpacing.h"
#include "qt/QtUnits.h"
#include "widgets/VelmoraLine.h"

#include <QLayout>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <limits>

namespace velmora::qt {

namespace {

bool layoutHolds(const QLayout *layout, const QWidget *w)
{
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->widget() == w)
            return true;
        if (const QLayout *inner = item->layout(); inner && layoutHolds(inner, w))
            return true;
    }
    return false;
}

// One axis of a limit, scaled by the widget's own ratio on that axis and kept
// on the right side of the placed extent. Unset limits stay unset.
int scaledMinimum(int limit, int placed, int design)
{
    if (limit <= 0)
        return 0;
    const double scaled = design > 0 ? double(limit) * placed / design : limit;
    return qMin(qRound(qMin(scaled, double(QWIDGETSIZE_MAX))), placed);
}

int scaledMaximum(int limit, int placed, int design)
{
    if (limit >= QWIDGETSIZE_MAX)
        return QWIDGETSIZE_MAX;
    const double scaled = design > 0 ? double(limit) * placed / design : limit;
    return qBound(placed, qRound(qMin(scaled, double(QWIDGETSIZE_MAX))), QWIDGETSIZE_MAX);
}

HostError refusedGeometry()
{
    return hostError(HostErrc::ReadOnly, "The control's geometry is managed by its parent");
}

} // namespace

void QtControl::place(const QRect &rect)
{
    if (!m_design || !m_design->limits) {
        if (m_widget->geometry() != rect) {
            willWrite();
            m_widget->setGeometry(rect);
        }
        return;
    }
    const Design &l = *m_design;
    const QSize placed = rect.size().expandedTo(QSize(0, 0));
    const QSize minimum(scaledMinimum(l.minimum.width(), placed.width(), l.size.width()),
                        scaledMinimum(l.minimum.height(), placed.height(), l.size.height()));
    const QSize maximum(scaledMaximum(l.maximum.width(), placed.width(), l.size.width()),
                        scaledMaximum(l.maximum.height(), placed.height(), l.size.height()));
    // Loosen the limits around both the present and the new size first, so
    // that no limit clamps the move and setting one never resizes by itself.
    const QSize now = sizeOf(m_widget);
    if (m_widget->geometry() == rect && m_widget->minimumSize() == minimum && m_widget->maximumSize() == maximum)
        return;
    willWrite();
    const auto setLimits = [this](const QSize &min, const QSize &max) {
        if (m_widget->minimumSize() != min)
            m_widget->setMinimumSize(min);
        if (m_widget->maximumSize() != max)
            m_widget->setMaximumSize(max);
    };
    setLimits(minimum.boundedTo(now), maximum.expandedTo(now));
    m_widget->setGeometry(rect);
    setLimits(minimum, maximum);
}

QSize QtControl::sizeByContainer(const PassState &st, const QSize &fallback) const
{
    const auto container = st.container.lock();
    const auto *c = st.onForm ? nullptr : static_cast<const QtControl *>(container.get());
    if (!c || !c->m_widget || c->m_designSize.isEmpty())
        return fallback;
    const QSize now = sizeOf(c->m_widget);
    return QSize(qRound(double(m_designSize.width()) * now.width() / c->m_designSize.width()),
                 qRound(double(m_designSize.height()) * now.height() / c->m_designSize.height()));
}

void QtControl::scaleLimits(const QSize &placed)
{
    if (!m_design || !m_design->limits)
        return;
    const Design &l = *m_design;
    const QSize size = placed.expandedTo(QSize(0, 0));
    const QSize minimum(scaledMinimum(l.minimum.width(), size.width(), l.size.width()),
                        scaledMinimum(l.minimum.height(), size.height(), l.size.height()));
    const QSize maximum(scaledMaximum(l.maximum.width(), size.width(), l.size.width()),
                        scaledMaximum(l.maximum.height(), size.height(), l.size.height()));
    if (m_widget->minimumSize() == minimum && m_widget->maximumSize() == maximum)
        return;
    willWrite();
    // In the order that never has the minimum above the maximum.
    if (minimum.width() > m_widget->maximumWidth() || minimum.height() > m_widget->maximumHeight()) {
        m_widget->setMaximumSize(maximum);
        m_widget->setMinimumSize(minimum);
    } else {
        m_widget->setMinimumSize(minimum);
        m_widget->setMaximumSize(maximum);
    }
}

bool QtControl::geometryManaged(const QWidget *w)
{
    const QWidget *parent = w ? w->parentWidget() : nullptr;
    if (!parent || w->isWindow())
        return false;
    if (qobject_cast<const QSplitter *>(parent) || qobject_cast<const QStackedWidget *>(parent))
        return true;
    if (auto *tabs = qobject_cast<const QTabWidget *>(parent); tabs && tabs->tabBar() == w)
        return true;
    if (auto *area = qobject_cast<const QScrollArea *>(parent->parentWidget()))
        if (area->widget() == w && area->widgetResizable())
            return true;
    return parent->layout() && layoutHolds(parent->layout(), w);
}

namespace {

// Qt keeps a widget's edges as ints, its far edges included: a geometry
// from a file can be where its far edge no longer fits (and wrapped round).
// Read wide, as a size Qt can hold; written back within what it can hold.
int widthOf(const QRect &g)
{
    return int(std::clamp<qint64>(qint64(g.right()) - g.left() + 1, 0, QWIDGETSIZE_MAX));
}
int heightOf(const QRect &g)
{
    return int(std::clamp<qint64>(qint64(g.bottom()) - g.top() + 1, 0, QWIDGETSIZE_MAX));
}
QRect boundedRect(qint64 x, qint64 y, qint64 w, qint64 h)
{
    w = std::clamp<qint64>(w, 0, QWIDGETSIZE_MAX);
    h = std::clamp<qint64>(h, 0, QWIDGETSIZE_MAX);
    constexpr qint64 reach = std::numeric_limits<int>::max() - QWIDGETSIZE_MAX;
    return QRect(int(std::clamp<qint64>(x, -reach, reach)), int(std::clamp<qint64>(y, -reach, reach)), int(w), int(h));
}

} // namespace

HostObject::Edges QtControl::edgesNow() const
{
    const UnitScale &u = *state().units;
    const QRect g = m_widget->geometry();
    return Edges{static_cast<float>(u.toUnits(g.x(), Axis::X)), static_cast<float>(u.toUnits(g.y(), Axis::Y)),
                 static_cast<float>(u.toUnits(widthOf(g), Axis::X)),
                 static_cast<float>(u.toUnits(heightOf(g), Axis::Y))};
}

GetResult QtControl::getEdge(Edge edge) const
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    const Edges e = edgesNow();
    switch (edge) {
    case Edge::Left:
        return Value(e.left);
    case Edge::Top:
        return Value(e.top);
    case Edge::Width:
        return Value(e.width);
    case Edge::Height:
        return Value(e.height);
    }
    return hostError(HostErrc::Failed);
}

std::optional<HostObject::Edges> QtControl::edges()
{
    // A line's edges are its end points', read by name.
    if (!m_widget || m_kind == Kind::Line)
        return std::nullopt;
    return edgesNow();
}

SetResult QtControl::setEdge(Edge edge, const Value &value)
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    const PassState &st = state();
    if (st.managed)
        return refusedGeometry();
    const auto units = value.toDouble();
    if (!units)
        return hostError(HostErrc::InvalidValue, "Type mismatch");
    const bool horizontal = edge == Edge::Left || edge == Edge::Width;
    bool ok = false;
    const int px = st.units->toPixels(*units, horizontal ? Axis::X : Axis::Y, &ok);
    if (!ok)
        return hostError(HostErrc::Arithmetic, "Overflow");
    if ((edge == Edge::Width || edge == Edge::Height) && px < 0)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    const QRect g = m_widget->geometry();
    qint64 x = g.left(), y = g.top(), w = widthOf(g), h = heightOf(g);
    switch (edge) {
    case Edge::Left:
        x = px;
        break;
    case Edge::Top:
        y = px;
        break;
    case Edge::Width:
        w = px;
        break;
    case Edge::Height:
        h = px;
        break;
    }
    place(boundedRect(x, y, w, h));
    return Done{};
}

SetResult QtControl::move(const std::vector<Value> &args)
{
    if (!m_widget)
        return hostError(HostErrc::Failed, "The control is gone");
    if (m_kind == Kind::Line)
        return noSuchMember("Move");
    const PassState &st = state();
    if (st.managed && !m_layout && !(m_design && m_design->limits))
        return refusedGeometry();
    if (args.size() != 4)
        return hostError(HostErrc::InvalidValue, "Move takes Left, Top, Width and Height");
    int px[4];
    for (int i = 0; i < 4; ++i) {
        const auto v = args[static_cast<std::size_t>(i)].toDouble();
        bool ok = false;
        px[i] = v ? st.units->toPixels(*v, (i % 2) == 0 ? Axis::X : Axis::Y, &ok) : 0;
        if (!ok)
            return hostError(HostErrc::InvalidValue, "Invalid property value");
    }
    if (px[2] < 0 || px[3] < 0)
        return hostError(HostErrc::InvalidValue, "Invalid property value");
    const QRect rect = boundedRect(px[0], px[1], px[2], px[3]);
    // A widget its parent's layout places has no size of the pass's: it
    // scales as its container did since the design.
    const QSize size = st.managed ? sizeByContainer(st, rect.size()) : rect.size();
    if (m_layout) {
        willWrite();
        m_layout->follow(size);
    }
    if (st.managed) {
        // The layout may not squeeze it past its limits, nor stretch it.
        scaleLimits(size);
        return refusedGeometry();
    }
    place(rect);
    return Done{};
}

GetResult QtControl::lineEnd(std::string_view name) const
{
    auto *line = qobject_cast<VelmoraLine *>(m_widget.data());
    if (!line)
        return noSuchMember(name);
    const bool x = name[0] == 'X';
    const QPoint p = name[1] == '1' ? line->p1() : line->p2();
    return Value(static_cast<float>(state().units->toUnits(x ? p.x() : p.y(), x ? Axis::X : Axis::Y)));
}

SetResult QtControl::setLineEnd(std::string_view name, const Value &value)
{
    auto *line = qobject_cast<VelmoraLine *>(m_widget.data());
    if (!line)
        return noSuchMember(name);
    const auto units = value.toDouble();
    if (!units)
        return hostError(HostErrc::InvalidValue, "Type mismatch");
    const bool x = name[0] == 'X';
    bool ok = false;
    const int px = state().units->toPixels(*units, x ? Axis::X : Axis::Y, &ok);
    if (!ok)
        return hostError(HostErrc::Arithmetic, "Overflow");
    QPoint p1 = line->p1(), p2 = line->p2();
    QPoint &p = name[1] == '1' ? p1 : p2;
    if ((x ? p.x() : p.y()) == px)
        return Done{};
    (x ? p.rx() : p.ry()) = px;
    willWrite();
    line->setPoints(p1, p2);
    return Done{};
}

} // namespace velmora::qt
