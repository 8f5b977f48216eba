#include "control/FormClaims.h"

#include "control/VelmoraControl_p.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <vector>

namespace velmora {

namespace {

struct Claim {
    QPointer<QWidget> form;
    const QWidget *key; // the form's address, for a form already gone
    // In the order they claimed it: the first one alive serves it.
    std::vector<std::weak_ptr<VelmoraControlPrivate>> queue;
    std::vector<const VelmoraControlPrivate *> warned;
};

std::vector<Claim> &claims()
{
    static std::vector<Claim> table;
    return table;
}

bool alive(const std::weak_ptr<VelmoraControlPrivate> &w)
{
    const auto d = w.lock();
    return d && d->q;
}

// The one serving the form; `leaving` counts as alive (it is being
// deleted, or moving on).
VelmoraControlPrivate *head(Claim &c, const VelmoraControlPrivate *leaving = nullptr)
{
    for (const auto &w : c.queue)
        if (alive(w) || (leaving && w.lock().get() == leaving))
            return w.lock().get();
    return nullptr;
}

QString nameOf(const VelmoraControlPrivate *d)
{
    return d && d->q ? d->q->objectName() : QString();
}

} // namespace

QWidget *FormClaims::claim(VelmoraControlPrivate *d, QWidget *form)
{
    auto &table = claims();
    // Forms gone, components gone.
    for (Claim &c : table)
        c.queue.erase(std::remove_if(c.queue.begin(), c.queue.end(),
                                     [d](const auto &w) { return !alive(w) && w.lock().get() != d; }),
                      c.queue.end());
    table.erase(std::remove_if(table.begin(), table.end(), [](const Claim &c) { return !c.form || c.queue.empty(); }),
                table.end());

    // What it claimed before, if that was another form: let it go, and wake
    // the one waiting next if it served it.
    for (Claim &c : table) {
        const auto it = std::find_if(c.queue.begin(), c.queue.end(), [d](const auto &w) { return w.lock().get() == d; });
        if (it == c.queue.end() || c.form == form)
            continue;
        const bool served = head(c, d) == d;
        c.queue.erase(it);
        if (VelmoraControlPrivate *next = served ? head(c) : nullptr) {
            // From the event loop: the one leaving may be on its way out
            // with the form.
            QMetaObject::invokeMethod(
                qApp, [w = next->weak_from_this()] {
                    if (const auto next = w.lock(); next && next->q)
                        next->rebind();
                },
                Qt::QueuedConnection);
        }
    }
    if (!form)
        return nullptr;

    auto c = std::find_if(table.begin(), table.end(), [form](const Claim &c) { return c.form == form; });
    if (c == table.end()) {
        table.push_back({form, form, {}, {}});
        c = table.end() - 1;
    }
    if (std::none_of(c->queue.begin(), c->queue.end(), [d](const auto &w) { return w.lock().get() == d; }))
        c->queue.push_back(d->weak_from_this());
    VelmoraControlPrivate *serving = head(*c);
    if (serving == d || !serving)
        return form;
    if (std::find(c->warned.begin(), c->warned.end(), d) == c->warned.end()) {
        c->warned.push_back(d);
        qWarning("Velmora: form \"%s\" has two VelmoraControls: \"%s\" serves it; \"%s\" stays passive until "
                 "\"%s\" goes",
                 qPrintable(form->objectName()), qPrintable(nameOf(serving)), qPrintable(nameOf(d)),
                 qPrintable(nameOf(serving)));
    }
    return nullptr;
}

} // namespace velmora
