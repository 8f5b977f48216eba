#include "form/WindowPlacement.h"

#include "layout/HostAccess.h"
#include "qt/QtForm.h"
#include "qt/QtUnits.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QWindow>

namespace velmora {

using qt::Axis;
using qt::QtForm;

namespace {

bool normal(QtForm &form)
{
    return getLong(form, "WindowState").value_or(-1) == 0;
}

bool mdiChild(QtForm &form)
{
    const auto v = form.get("MDIChild");
    return v && v->toBool().value_or(false);
}

// What the window is placed within, in twips: for an MDI child the MDI
// area that holds it (from its own origin), for any other window the screen
// it is on (in desktop coordinates).
QRectF holder(QtForm &form)
{
    QWidget *window = form.window();
    if (!window)
        return QRectF();
    const double tx = qt::twipsPerPixel(Axis::X), ty = qt::twipsPerPixel(Axis::Y);
    if (auto *sub = qobject_cast<QMdiSubWindow *>(window)) {
        QMdiArea *area = sub->mdiArea();
        const QSize size = area ? area->viewport()->size() : QSize();
        return QRectF(0, 0, size.width() * tx, size.height() * ty);
    }
    const QScreen *screen = window->screen();
    const QRect r = screen ? screen->geometry() : QRect();
    return QRectF(r.x() * tx, r.y() * ty, r.width() * tx, r.height() * ty);
}

void centre(QtForm &form, bool horizontal)
{
    const QRectF within = holder(form);
    const char *side = horizontal ? "Width" : "Height";
    const auto extent = getSingle(form, side);
    if (!extent)
        return;
    const double origin = mdiChild(form) ? 0 : (horizontal ? within.x() : within.y());
    const double span = horizontal ? within.width() : within.height();
    form.set(horizontal ? "Left" : "Top", float(origin + span / 2 - double(*extent) / 2));
}

} // namespace

void WindowPlacement::applyCenterX(QtForm &form) const
{
    if (CenterX && normal(form))
        centre(form, true);
}

void WindowPlacement::applyCenterY(QtForm &form) const
{
    if (CenterY && normal(form))
        centre(form, false);
}

void WindowPlacement::applyInitialSize(QtForm &form) const
{
    if (!normal(form))
        return;
    // Width first: a form keeping its aspect sees the width change first.
    const QRectF within = holder(form);
    if (ScaleX > 0)
        form.set("Width", float(within.width() * ScaleX / 100.0));
    if (ScaleY < 1)
        return;
    form.set("Height", float(within.height() * ScaleY / 100.0));
}

void WindowPlacement::applyMdiChildSize(QtForm &form) const
{
    if (form.isKind(HostKind::MDIForm) || !normal(form) || !mdiChild(form))
        return;
    if (MdiChildWidth > 0)
        form.set("Width", float(MdiChildWidth));
    if (MdiChildHeight > 0)
        form.set("Height", float(MdiChildHeight));
}

bool WindowPlacement::applyStayOnTop(QtForm *form, bool onTop)
{
    if (form && form->isKind(HostKind::MDIForm))
        return false;
    applyStayOnTop(form ? form->window() : nullptr, onTop);
    return true;
}

void WindowPlacement::applyStayOnTop(QWidget *window, bool onTop)
{
    if (!window)
        return;
    const Qt::WindowFlags flags = onTop ? window->windowFlags() | Qt::WindowStaysOnTopHint
                                        : window->windowFlags() & ~Qt::WindowStaysOnTopHint;
    if (flags == window->windowFlags())
        return;
    if (QWindow *handle = window->windowHandle()) {
        // Told to the window system directly; setWindowFlags would hide a
        // shown window and make its platform window anew.
        window->overrideWindowFlags(flags);
        handle->setFlags(flags);
    } else {
        window->setWindowFlags(flags);
    }
}

} // namespace velmora
