#include "form/FormDriver.h"

#include "engine/ResizeEngine.h"
#include "layout/HostAccess.h"
#include "qt/QtForm.h"
#include "qt/QtLayoutSettling.h"

#include <QEvent>
#include <QWidget>

#include <exception>

namespace velmora {

FormDriver::FormDriver(ResizeEngine &engine, QObject *parent)
    : QObject(parent)
    , m_engine(engine)
{
    m_tmrDelayResize.setSingleShot(true);
    m_tmrDelayResize.setInterval(DelayResizeMs);
    connect(&m_tmrDelayResize, &QTimer::timeout, this, &FormDriver::delayedResize);
}

FormDriver::~FormDriver() = default;

void FormDriver::bind(QWidget *form)
{
    if (form == m_form)
        return;
    if (m_form)
        m_form->removeEventFilter(this);
    m_tmrDelayResize.stop();
    m_form = form;
    m_hostForm = form ? qt::QtForm::create(form) : nullptr;
    Loaded = false;
    SettingUp = false;
    m_engine.FormReady = false;
    m_engine.Initialised = false;
    m_engine.CurScaleWidth = m_engine.CurScaleHeight = 0;
    if (!form)
        return;
    form->installEventFilter(this);
    // Bound to a form already on screen: load once the code that created us
    // has finished adding its widgets.
    if (form->isVisible()) {
        QMetaObject::invokeMethod(
            this,
            [this, guard = QPointer<QWidget>(form)] {
                if (guard && guard == m_form && !Loaded) {
                    FormLoaded();
                    FormResized();
                }
            },
            Qt::QueuedConnection);
    }
}

bool FormDriver::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_form) {
        switch (event->type()) {
        case QEvent::Show:
            // By its first show the form has its laid-out size; the set-up
            // runs before the window reaches the screen.
            if (!Loaded) {
                FormLoaded();
                FormResized();
            }
            break;
        case QEvent::Resize:
            if (Loaded)
                FormResized();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

void FormDriver::takeDesignSizeIfUnknown()
{
    ResizeEngine &e = m_engine;
    if (e.DesignFormWidth != 0 || e.DesignFormHeight != 0 || e.DesignFormScaleWidth != 0
        || e.DesignFormScaleHeight != 0)
        return;
    // Never saved at design time: the form scales from the size it was built
    // at, which is the size it first shows with.
    qt::QtForm &f = *m_hostForm;
    e.DesignFormWidth = getSingle(f, "Width").value_or(0);
    e.DesignFormHeight = getSingle(f, "Height").value_or(0);
    e.DesignFormScaleWidth = getSingle(f, "ScaleWidth").value_or(0);
    e.DesignFormScaleHeight = getSingle(f, "ScaleHeight").value_or(0);
}

void FormDriver::FormLoaded()
{
    takeDesignSizeIfUnknown();
    Loaded = true;
}

bool FormDriver::minimised() const
{
    return m_hostForm && getLong(*m_hostForm, "WindowState").value_or(0) == 1;
}

void FormDriver::runPass()
{
    if (!m_hostForm)
        return;
    // Containers placed by layouts are recorded at the size they will show
    // with, hidden pages included.
    if (!m_engine.Initialised)
        qt::settleLayouts(m_form);
    m_hostForm->beginUpdate();
    m_engine.ResizeControls(*m_hostForm);
    m_hostForm->endUpdate();
}

void FormDriver::FormResized()
{
    if (!m_hostForm || SettingUp)
        return;
    try {
        if (!m_engine.FormReady) {
            SettingUp = true;
            runPass(); // the first call of a lifetime captures the layout
            if (!minimised())
                runPass(); // the first real pass
            m_engine.FormReady = true;
            SettingUp = false;
        }
        if (minimised())
            return;
        if (ScaleControls) {
            if (ResizeOnMouseUp)
                m_tmrDelayResize.start(); // restarts: fires after the last resize
            else
                runPass();
        }
    } catch (const std::exception &e) {
        SettingUp = false;
        Q_EMIT trappedError(QStringLiteral("QxVelmora Trapped Error = ") + QString::fromUtf8(e.what()));
    }
}

void FormDriver::delayedResize()
{
    m_tmrDelayResize.stop();
    if (!minimised() && ScaleControls)
        runPass();
}

void FormDriver::Reset()
{
    if (!m_hostForm)
        return;
    m_engine.Initialised = false;
    // As read, in the form's own units.
    m_engine.RefScaleWidth = getSingle(*m_hostForm, "ScaleWidth").value_or(0);
    m_engine.RefScaleHeight = getSingle(*m_hostForm, "ScaleHeight").value_or(0);
    FormResized();
}

} // namespace velmora
