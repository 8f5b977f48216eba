#include "engine/ResizeEngine.h"

#include "layout/ControlKey.h"
#include "layout/MemberNames.h"

#include "layout/HostAccess.h"
#include "layout/LayoutCapture.h"

namespace velmora {

namespace {

constexpr int TwipUnit = 1;

std::optional<float> toTwips(HostObject &form, const char *method, float value)
{
    if (form.isKind(HostKind::MDIForm))
        return value;
    auto mode = form.get(member::ScaleMode);
    if (!mode)
        return std::nullopt;
    auto r = form.call(method, {value, *mode, TwipUnit});
    return r ? r->toSingle() : std::nullopt;
}

} // namespace

ResizeEngine::ResizeEngine(EngineHost &host)
    : m_host(host)
    , m_pictures(host)
{
}

void ResizeEngine::SaveControlInfo(HostObject &ctrl)
{
    saveControlInfo(m_store, ctrl, RefScaleWidth, RefScaleHeight);
}

void ResizeEngine::SaveControlFlags(HostObject *ctrl)
{
    saveControlFlags(m_store, ctrl);
}

std::optional<float> ResizeEngine::twipsWidth(HostObject &form, float value)
{
    return toTwips(form, member::ScaleX, value);
}

std::optional<float> ResizeEngine::twipsHeight(HostObject &form, float value)
{
    return toTwips(form, member::ScaleY, value);
}

void ResizeEngine::raiseDone()
{
    if (FormReady && !StopRequested && events.resizeDone)
        events.resizeDone();
}

void ResizeEngine::takeCurrentGeometry(HostObject &ctrl)
{
    if (ControlClass *rec = m_store.info(controlKey(&ctrl)))
        storeLastGeometry(ctrl, *rec);
}

void storeLastGeometry(HostObject &ctrl, ControlClass &rec)
{
    if (auto v = getSingle(ctrl, member::Left))
        rec.LastLeft = *v;
    if (auto v = getSingle(ctrl, member::Top))
        rec.LastTop = *v;
    if (auto v = getSingle(ctrl, member::Width))
        rec.LastWidth = *v;
    if (auto v = getSingle(ctrl, member::Height))
        rec.LastHeight = *v;
}

} // namespace velmora
