#include "Contenders.h"

#include "control/VelmoraControl.h"
#include "control/VelmoraControl_p.h"

#include <QApplication>
#include <QEvent>

namespace bench {

Contender::~Contender() = default;

void Contender::show()
{
    m_designWindow = m_form.window->size();
    m_form.window->show();
    QApplication::processEvents();
}

void Contender::resizeTo(double scale)
{
    m_form.window->resize(qRound(m_designWindow.width() * scale), qRound(m_designWindow.height() * scale));
}

VelmoraContender::VelmoraContender(Form form)
    : Contender(std::move(form))
    , m_control(new VelmoraControl(m_form.form))
{
    m_control->setResizeOnMouseUp(false);
}

void VelmoraContender::resizeTo(double scale)
{
    Contender::resizeTo(scale);
    QCoreApplication::sendPostedEvents(&VelmoraControlPrivate::get(m_control)->driver);
}

void VelmoraContender::passAtSameSize()
{
    VelmoraControlPrivate::get(m_control)->driver.runPass();
}

Targets VelmoraContender::snapshot() const
{
    Targets t;
    for (QWidget *w : m_form.widgets) {
        t.geometry.push_back(w->geometry());
        t.pointSize.push_back(w->font().pointSizeF());
    }
    return t;
}

class LoopContender::Filter : public QObject {
public:
    explicit Filter(LoopContender *owner) : m_owner(owner) {}
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            m_owner->apply();
        return false;
    }

private:
    LoopContender *m_owner;
};

LoopContender::LoopContender(Form form, bool updatesOff)
    : Contender(std::move(form))
    , m_updatesOff(updatesOff)
    , m_filter(std::make_unique<Filter>(this))
{
    m_form.form->installEventFilter(m_filter.get());
}

LoopContender::~LoopContender() = default;

void LoopContender::prime()
{
    if (m_targets.empty())
        return;
    const Targets &t = m_targets.begin()->second;
    for (std::size_t i = m_form.widgets.size(); i-- > 0;) {
        QFont f = m_form.widgets[i]->font();
        f.setPointSizeF(t.pointSize[i]);
        m_form.widgets[i]->setFont(f);
    }
}

void LoopContender::resizeTo(double scale)
{
    m_pending = scale;
    Contender::resizeTo(scale);
}

void LoopContender::apply()
{
    auto it = m_targets.find(m_pending);
    if (it == m_targets.end())
        return;
    const Targets &t = it->second;
    QWidget *form = m_form.form;
    if (m_updatesOff)
        form->setUpdatesEnabled(false);
    for (std::size_t i = 0; i < m_form.widgets.size(); ++i) {
        QWidget *w = m_form.widgets[i];
        w->setGeometry(t.geometry[i]);
        QFont f = w->font();
        f.setPointSizeF(t.pointSize[i]);
        w->setFont(f);
    }
    if (m_updatesOff)
        form->setUpdatesEnabled(true);
}

} // namespace bench
