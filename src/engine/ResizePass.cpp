// The resize pass: capture on the first call, then three walks over the
// form's controls for every new form size.
#include "engine/ResizeEngine.h"

#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace velmora {

namespace {

bool isMenu(HostObject &c)
{
    return c.typeName() == hostType::Menu;
}

std::optional<double> ratio(std::optional<float> now, float atCapture)
{
    if (!now || atCapture == 0.0f)
        return std::nullopt;
    return static_cast<double>(*now / atCapture);
}

} // namespace

void ResizeEngine::capture(HostForm &form)
{
    m_store.discardInfo();
    SaveControlInfo(form);
    SaveControlFlags(&form);
    for (const auto &c : form.controls()) {
        if (!c || isMenu(*c))
            continue;
        SaveControlInfo(*c);
        SaveControlFlags(c.get());
    }
}

void ResizeEngine::ResizeControls(HostForm &form)
{
    if (!Initialised) {
        Initialised = true;
        auto pic = form.get(member::Picture);
        if (!pic || !m_host.pictureBox(PictureBoxId::FormPic).set(member::Picture, *pic))
            return raiseDone();
        if (RefScaleWidth == 0) {
            std::optional<float> w, h;
            if (form.isKind(HostKind::MDIForm)) {
                w = getSingle(form, member::ScaleWidth);
                h = getSingle(form, member::ScaleHeight);
            } else {
                w = twipsWidth(form, DesignFormScaleWidth);
                h = twipsHeight(form, DesignFormScaleHeight);
            }
            if (!w || !h)
                return raiseDone();
            RefScaleWidth = *w;
            RefScaleHeight = *h;
        }
        capture(form);
        return;
    }

    if (FormReady && events.resizeStarted)
        events.resizeStarted();
    if (StopRequested)
        return;

    const auto scaleWidth = getSingle(form, member::ScaleWidth);
    const auto scaleHeight = getSingle(form, member::ScaleHeight);
    if (!scaleWidth || !scaleHeight)
        return raiseDone();
    const auto curW = twipsWidth(form, *scaleWidth);
    const auto curH = twipsHeight(form, *scaleHeight);
    if (!curW || !curH)
        return raiseDone();
    // The picture is sized in twips whatever the form's units.
    if (CurScaleHeight == 0)
        m_pictures.ApplyFormPicture(form, FormPicture, *curW, *curH, GradientFill);
    constexpr float Probe = 1440.0f;
    m_twipsPerUnitX = twipsWidth(form, Probe).value_or(Probe) / Probe;
    m_twipsPerUnitY = twipsHeight(form, Probe).value_or(Probe) / Probe;
    CurScaleWidth = *curW;
    CurScaleHeight = *curH;
    if (CurScaleWidth == RefScaleWidth && CurScaleHeight == RefScaleHeight)
        return raiseDone();

    // Each control's key, record and switches, looked up once for all
    // three walks (records are owned by the store and do not move).
    struct Entry {
        HostObject *ctrl;
        ControlClass *rec;
        ControlFlags *flags;
    };
    const std::vector<HostObjectPtr> controls = form.controls();
    std::vector<Entry> entries;
    entries.reserve(controls.size());
    const unsigned serial = ++m_passSerial;
    ControlClass *own = m_store.info(controlKey(&form));
    if (own)
        own->SeenInPass = serial;
    // Shrunk to a sliver of its design size, the form gives no measure to
    // record a newcomer against (a container of 1 px would scale it a
    // thousandfold later): newcomers wait for a pass at a real size, and
    // are recorded once that pass has given their containers a real size.
    const bool collapsed = own && (CurScaleWidth * 10 < own->FormWidth || CurScaleHeight * 10 < own->FormHeight);
    std::vector<HostObject *> recordAfterPlacing;

    // Walk 1: record late-comers, take off the image lists to be rebuilt.
    for (const auto &c : controls) {
        if (!c)
            continue;
        if (isMenu(*c)) {
            entries.push_back({c.get(), nullptr, nullptr});
            continue;
        }
        const std::string key = controlKey(c.get());
        ControlClass *rec = m_store.info(key);
        // A record belongs to the object it was captured from: another
        // object under a name that was free again starts afresh.
        if (rec && rec->Owner != c->identity()) {
            if (rec->SeenInPass == serial) {
                // Another control answered to this key earlier in this pass
                // and holds the record: a host that repeats keys gets this
                // one refreshed, never the other's record freed.
                entries.push_back({c.get(), nullptr, nullptr});
                continue;
            }
            m_store.discardInfo(key);
            rec = nullptr;
        }
        if (!rec) {
            if (collapsed || m_lastPassCollapsed) {
                if (!collapsed)
                    recordAfterPlacing.push_back(c.get());
                entries.push_back({c.get(), nullptr, nullptr});
                continue;
            }
            SaveControlInfo(*c);
            rec = m_store.info(key);
        }
        ControlFlags *flags = m_store.flags(key);
        if (!flags) {
            SaveControlFlags(c.get());
            flags = m_store.flags(key);
        }
        if (rec)
            rec->SeenInPass = serial;
        Entry e{c.get(), rec, flags};
        entries.push_back(e);
        if (ScaleGraphics && e.rec)
            detachImageLists(*c, *e.rec);
    }

    // Controls that are gone take their records with them.
    m_store.discardInfoNotSeenIn(serial);

    // Walk 2: place, size and redraw. Menus are only refreshed.
    for (const Entry &e : entries) {
        if (StopRequested)
            return;
        if (!e.rec || !e.flags) {
            e.ctrl->call(member::Refresh, {});
            continue;
        }
        if (!placeControl(*e.ctrl, *e.rec, *e.flags))
            return raiseDone();
        if (ScaleBorders && !e.flags->DontScaleBorder)
            trySet(*e.ctrl, member::BorderWidth, e.rec->BorderWidth * FontFactor);
        if (e.rec->ControlHasButtons)
            scaleToolbarButtons(*e.ctrl, *e.rec, *e.flags);
        if (!ScaleGraphics)
            storeLastGeometry(*e.ctrl, *e.rec);
        e.ctrl->call(member::Refresh, {});
    }

    m_lastPassCollapsed = collapsed;
    for (HostObject *c : recordAfterPlacing) {
        SaveControlInfo(*c);
        SaveControlFlags(c);
        if (ControlClass *rec = m_store.info(controlKey(c)))
            rec->SeenInPass = serial;
    }

    drawFormPicture(form);

    // The new reference; a minimised form (size 0) keeps the old one.
    if (auto w = getSingle(form, member::ScaleWidth); w && *w > 0)
        if (auto t = twipsWidth(form, *w))
            RefScaleWidth = *t;
    if (auto h = getSingle(form, member::ScaleHeight); h && *h > 0)
        if (auto t = twipsHeight(form, *h))
            RefScaleHeight = *t;

    // Walk 3: put the image lists back and remember what we placed.
    if (ScaleGraphics)
        for (const Entry &e : entries)
            if (e.rec && e.flags && !StopRequested)
                reattachImageLists(*e.ctrl, *e.rec, *e.flags);
    raiseDone();
}

bool ResizeEngine::placeControl(HostObject &ctrl, ControlClass &rec, ControlFlags &flags)
{
    switch (rec.SpecialControlType) {
    case SctLine:
        AdjustPosition(ctrl, rec, flags);
        return true;
    case SctTabControl:
        placeTabControl(ctrl, rec, flags);
        return true;
    case SctImageList:
        if (ScaleGraphics && !flags.DontScaleGraphic) {
            HostError failure;
            if (!rebuildImageList(ctrl, rec, failure)) {
                if (events.error) {
                    const std::string name = getText(ctrl, member::Name).value_or(std::string());
                    events.error(name
                                     + " has a one or more controls bound to it that is not supported by QxVelmora"
                                       "\r\n See QxVelmora Help File for more information\r\n",
                                 failure);
                }
                return false;
            }
        }
        return true;
    case SctUnused:
        return true;
    default:
        AdjustPosition(ctrl, rec, flags);
        scaleControlPictures(ctrl, rec, flags);
        return true;
    }
}

void ResizeEngine::placeTabControl(HostObject &ctrl, ControlClass &rec, ControlFlags &flags)
{
    trySet(ctrl, member::TabMaxWidth, 0);
    AdjustPosition(ctrl, rec, flags);
    const auto width = getSingle(ctrl, member::Width);
    const auto height = getSingle(ctrl, member::Height);
    const auto orientation = getLong(ctrl, member::TabOrientation);
    if (!orientation || *orientation < 2) { // tabs on top or bottom
        if (!flags.DontScaleWidth) {
            const auto perRow = getSingle(ctrl, member::TabsPerRow);
            if (width && perRow && *perRow != 0)
                trySet(ctrl, member::TabMaxWidth, static_cast<int>(std::floor(*width / *perRow)));
        }
        if (!flags.DontScaleHeight)
            if (auto r = ratio(height, rec.Height))
                trySet(ctrl, member::TabHeight, rec.TabHeight * *r);
    } else if (!flags.DontScaleWidth) {
        if (auto r = ratio(width, rec.Width))
            trySet(ctrl, member::TabHeight, rec.TabHeight * *r);
    }

    if (!ScaleGraphics || flags.DontScaleGraphic || !width || !height)
        return;
    if (rec.LastWidth == *width && rec.LastHeight == *height)
        return;
    const auto xr = ratio(width, rec.Width);
    const auto yr = ratio(height, rec.Height);
    if (!xr || !yr)
        return;
    const int tabs = static_cast<int>(getLong(ctrl, member::Tabs).value_or(0));
    for (int i = 0; i < tabs; ++i) {
        try {
            ctrl.setAt(member::TabPicture, i, Value(m_pictures.ScalePicture(rec.TabPicture(i), *xr, *yr)));
        } catch (const std::out_of_range &) {
            // A tab added since the capture has no design picture.
        }
    }
}

void ResizeEngine::scaleControlPictures(HostObject &ctrl, ControlClass &rec, ControlFlags &flags)
{
    if (!ScaleGraphics || flags.DontScaleGraphic)
        return;
    const auto width = getSingle(ctrl, member::Width);
    const auto height = getSingle(ctrl, member::Height);
    if (!width || !height || (rec.LastWidth == *width && rec.LastHeight == *height))
        return;
    // Always from the captured pictures, so repeated passes never degrade them.
    const auto xr = ratio(width, rec.Width);
    const auto yr = ratio(height, rec.Height);
    if (!xr || !yr)
        return;
    // Never larger than the control can show (or than the picture was made,
    // for one already cut off at design size): whatever went wrong with a
    // ratio, no pass allocates a picture of gigabytes.
    const bool onForm = containerIsKind(ctrl, HostKind::Form);
    const float toTwips = onForm ? m_twipsPerUnitX : 1.0f;
    const float toTwipsY = onForm ? m_twipsPerUnitY : 1.0f;
    const double showW = static_cast<double>(*width * toTwips), showH = static_cast<double>(*height * toTwipsY);
    const auto scaled = [&](const HostObjectPtr &pic) {
        double x = *xr, y = *yr;
        if (pic) {
            const auto pw = getSingle(*pic, member::Width), ph = getSingle(*pic, member::Height);
            if (pw && *pw > 0 && *pw * x > std::max(showW, double(*pw))) {
                x = std::max(showW, double(*pw)) / *pw;
                pictureBounded();
            }
            if (ph && *ph > 0 && *ph * y > std::max(showH, double(*ph))) {
                y = std::max(showH, double(*ph)) / *ph;
                pictureBounded();
            }
        }
        return Value(m_pictures.ScalePicture(pic, x, y));
    };
    ctrl.set(member::Picture, scaled(rec.Picture));
    ctrl.set(member::DownPicture, scaled(rec.DownPicture));
    ctrl.set(member::DisabledPicture, scaled(rec.DisabledPicture));
}

void ResizeEngine::pictureBounded()
{
    if (!m_pictureBoundSaid && events.warning)
        events.warning("a scaled picture was limited to the size its control can show");
    m_pictureBoundSaid = true;
}

} // namespace velmora
