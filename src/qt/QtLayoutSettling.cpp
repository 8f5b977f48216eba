#include "qt/QtLayoutSettling.h"

#include <QCoreApplication>
#include <QLayout>
#include <QResizeEvent>
#include <QScrollArea>
#include <QToolBox>
#include <QStackedLayout>
#include <QVarLengthArray>
#include <QWidget>

namespace velmora::qt {

namespace {

void settleOne(QWidget *w)
{
    // A font or size-hint change earlier in the pass has only posted its
    // re-layout (a tab widget's bar growing with its font, say); it must
    // land before anything under it is measured.
    QCoreApplication::sendPostedEvents(w, QEvent::LayoutRequest);
    // A page a stack is not showing gets the page area the stack gives the
    // page it shows.
    if (QWidget *parent = w->parentWidget()) {
        if (auto *stack = qobject_cast<QStackedLayout *>(parent->layout());
            stack && stack->currentWidget() != w && stack->indexOf(w) >= 0) {
            const QRect area = stack->geometry().isValid() ? stack->geometry() : parent->contentsRect();
            if (w->geometry() != area)
                w->setGeometry(area);
        }
    }
    // A tool box shows one page at a time, each in a scroll area of its
    // own: one not showing gets the size of the one that is.
    if (auto *area = qobject_cast<QScrollArea *>(w); area && area->isHidden())
        if (auto *box = qobject_cast<QToolBox *>(area->parentWidget()))
            if (QWidget *page = box->currentWidget(); page && page->parentWidget())
                if (auto *shown = qobject_cast<QScrollArea *>(page->parentWidget()->parentWidget());
                    shown && shown != area && area->size() != shown->size())
                    area->resize(shown->size());
    // What show() would do first: deliver the resize a hidden widget has
    // been holding back, so its layout or splitter places its children.
    if (w->testAttribute(Qt::WA_PendingResizeEvent)) {
        w->setAttribute(Qt::WA_PendingResizeEvent, false);
        QResizeEvent resize(w->size(), QSize());
        QCoreApplication::sendEvent(w, &resize);
    }
    if (QLayout *layout = w->layout())
        layout->activate();
}

void settleTree(QWidget *w)
{
    settleOne(w);
    for (QObject *child : w->children())
        if (auto *cw = qobject_cast<QWidget *>(child); cw && !cw->isWindow())
            settleTree(cw);
}

} // namespace

void settleLayouts(QWidget *root)
{
    if (root)
        settleTree(root);
}

void settleAncestors(QWidget *w, const QWidget *top)
{
    QVarLengthArray<QWidget *, 16> chain;
    // The form itself may be the window (a tab widget that is the form).
    for (QWidget *p = w ? w->parentWidget() : nullptr; p; p = p->parentWidget()) {
        if (p->isWindow() && p != top)
            break;
        chain.append(p);
        if (p == top)
            break;
    }
    // From the outside in: each level's size decides the next one's.
    for (auto it = chain.rbegin(); it != chain.rend(); ++it)
        settleOne(*it);
    // A page of a stack is placed by the stack's rule, not by a layout.
    if (w)
        settleOne(w);
}

} // namespace velmora::qt
