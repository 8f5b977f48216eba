// The graphics side of the resize pass: image lists taken off and rebuilt at
// the new size, toolbar buttons, and the form picture.
#include "engine/ResizeEngine.h"

#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

#include <cmath>
#include <stdexcept>

namespace velmora {

namespace {

constexpr int MaxToolbarFitRounds = 256;

bool wantsRebuild(const LayoutStore &store, const HostObjectPtr &list)
{
    if (!list)
        return false;
    const ControlFlags *f = store.flags(controlKey(list.get()));
    return !f || !f->DontScaleGraphic;
}

// Calls fn(i, item) for items 1..Count of a collection property.
template <typename Fn>
void forEachItem(HostObject &ctrl, const char *collection, Fn fn)
{
    auto coll = getObject(ctrl, collection);
    if (!coll || !*coll)
        return;
    const int n = static_cast<int>(getLong(**coll, member::Count).value_or(0));
    for (int i = 1; i <= n; ++i)
        if (auto item = getObjectAt(**coll, member::Item, i); item && *item)
            fn(i, **item);
}

template <typename Store>
void rememberItems(HostObject &ctrl, const char *collection, const char *member, Store store)
{
    forEachItem(ctrl, collection, [&](int i, HostObject &item) {
        if (auto v = item.get(member))
            store(i, *v);
    });
}

template <typename Load>
void restoreItems(HostObject &ctrl, const char *collection, const char *member, Load load)
{
    forEachItem(ctrl, collection, [&](int i, HostObject &item) {
        try {
            item.set(member, load(i));
        } catch (const std::out_of_range &) {
            // An item added since the lists were taken off has nothing remembered.
        }
    });
}

} // namespace

bool ResizeEngine::rebuildWanted(const ControlClass &rec) const
{
    bool rebuild = false;
    if (rec.ControlHasImageList && wantsRebuild(m_store, rec.ImageList()))
        rebuild = true;
    if (rec.ControlHasTwoImageLists
        && (wantsRebuild(m_store, rec.IconsImageList()) || wantsRebuild(m_store, rec.SmallIconsImageList())))
        rebuild = true;
    return rebuild;
}

void ResizeEngine::detachImageLists(HostObject &ctrl, ControlClass &rec)
{
    if (rec.ControlHasImageList)
        if (auto list = getObject(ctrl, member::ImageList))
            rec.setImageList(*list);
    if (rec.ControlHasTwoImageLists) {
        if (auto list = getObject(ctrl, member::Icons))
            rec.setIconsImageList(*list);
        if (auto list = getObject(ctrl, member::SmallIcons))
            rec.setSmallIconsImageList(*list);
    }
    if (!rebuildWanted(rec))
        return;

    if (rec.ControlHasTabs)
        rememberItems(ctrl, member::Tabs, member::Image, [&](int i, const Value &v) { rec.setTabImage(i, v); });
    if (rec.ControlHasButtons)
        rememberItems(ctrl, member::Buttons, member::Image, [&](int i, const Value &v) { rec.setButtonImage(i, v); });
    if (rec.ControlHasNodes)
        rememberItems(ctrl, member::Nodes, member::Image, [&](int i, const Value &v) { rec.setNodeImage(i, v); });
    if (rec.ControlHasImageList)
        ctrl.set(member::ImageList, Value());
    if (rec.ControlHasTwoImageLists) {
        rememberItems(ctrl, member::ListItems, member::Icon, [&](int i, const Value &v) { rec.setIconImage(i, v); });
        rememberItems(ctrl, member::ListItems, member::SmallIcon,
                      [&](int i, const Value &v) { rec.setSmallIconImage(i, v); });
        ctrl.set(member::Icons, Value());
        ctrl.set(member::SmallIcons, Value());
    }
}

void ResizeEngine::reattachImageLists(HostObject &ctrl, ControlClass &rec, ControlFlags &flags)
{
    if (rebuildWanted(rec)) {
        if (rec.ControlHasImageList)
            ctrl.set(member::ImageList, Value(rec.ImageList()));
        if (rec.ControlHasTabs)
            restoreItems(ctrl, member::Tabs, member::Image, [&](int i) { return rec.TabImage(i); });
        if (rec.ControlHasButtons)
            restoreItems(ctrl, member::Buttons, member::Image, [&](int i) { return rec.ButtonImage(i); });
        if (rec.ControlHasNodes)
            restoreItems(ctrl, member::Nodes, member::Image, [&](int i) { return rec.NodeImage(i); });
        if (rec.ControlHasTwoImageLists) {
            ctrl.set(member::Icons, Value(rec.IconsImageList()));
            ctrl.set(member::SmallIcons, Value(rec.SmallIconsImageList()));
            restoreItems(ctrl, member::ListItems, member::Icon, [&](int i) { return rec.IconImage(i); });
            restoreItems(ctrl, member::ListItems, member::SmallIcon, [&](int i) { return rec.SmallIconImage(i); });
        }
    }
    if (!flags.DontScaleHeight && rec.ControlHasButtons && rec.FormHeight != 0)
        fitToolbarHeight(ctrl, rec, RefScaleHeight / rec.FormHeight);
    storeLastGeometry(ctrl, rec);
}

bool ResizeEngine::rebuildImageList(HostObject &ctrl, ControlClass &rec, HostError &failure)
{
    auto fail = [&](HostErrc code, std::string text) {
        failure = hostError(code, std::move(text));
        return false;
    };
    auto failWith = [&](const HostError &e) {
        failure = e;
        return false;
    };
    auto images = ctrl.get(member::ListImages);
    if (!images)
        return failWith(images.error());
    HostObjectPtr list = images->toObject();
    if (!list)
        return fail(HostErrc::NotAnObject, "ListImages is not an object");
    if (auto r = list->call(member::Clear, {}); !r)
        return failWith(r.error());
    if (rec.FormWidth == 0 || rec.FormHeight == 0)
        return fail(HostErrc::Arithmetic, "Division by zero");
    if (auto r = ctrl.set(member::ImageWidth, (CurScaleWidth / rec.FormWidth) * rec.ImageListWidth); !r)
        return failWith(r.error());
    if (auto r = ctrl.set(member::ImageHeight, (CurScaleHeight / rec.FormHeight) * rec.ImageListHeight); !r)
        return failWith(r.error());
    for (int i = 1; i <= rec.ImageListCount; ++i) {
        try {
            // Always the captured pictures: repeated passes never degrade them.
            auto added = list->call(member::Add, {Value(), rec.ImageListKey(i), Value(rec.ImageListPicture(i))});
            if (!added)
                return failWith(added.error());
            auto item = getObjectAt(*list, member::Item, i);
            if (!item || !*item)
                return fail(HostErrc::IndexOutOfRange, "Index out of bounds");
            if (auto r = (*item)->set(member::Tag, rec.ImageListTag(i)); !r)
                return failWith(r.error());
        } catch (const std::out_of_range &) {
            return fail(HostErrc::IndexOutOfRange, "Subscript out of range");
        }
    }
    return true;
}

void ResizeEngine::scaleToolbarButtons(HostObject &ctrl, ControlClass &rec, ControlFlags &flags)
{
    if (!flags.DontScaleWidth)
        trySet(ctrl, member::ButtonWidth, rec.xScale * rec.ButtonWidth);
    if (flags.DontScaleHeight)
        return;
    trySet(ctrl, member::ButtonHeight, rec.yScale * std::floor(rec.ButtonHeight));
    if (ScaleGraphics || rec.FormHeight == 0)
        return;
    const auto width = getSingle(ctrl, member::Width);
    const auto height = getSingle(ctrl, member::Height);
    if ((width && rec.LastWidth != *width) || (height && rec.LastHeight != *height))
        fitToolbarHeight(ctrl, rec, CurScaleHeight / rec.FormHeight);
}

void ResizeEngine::fitToolbarHeight(HostObject &ctrl, ControlClass &rec, float fh)
{
    // Grow the buttons step by step until the toolbar is as tall as its
    // scaled design height, or stops growing.
    std::optional<float> remembered;
    for (int round = 0; round < MaxToolbarFitRounds; ++round) {
        m_host.processEvents();
        if (StopRequested)
            return;
        const auto height = getSingle(ctrl, member::Height);
        if (!height)
            return;
        if (remembered && *height == *remembered)
            return;
        if (!(*height < rec.Height * fh))
            return;
        const auto buttonHeight = getSingle(ctrl, member::ButtonHeight);
        if (!buttonHeight)
            return;
        if (rec.yScale != 0)
            rec.ButtonHeight = *buttonHeight / rec.yScale - 15;
        trySet(ctrl, member::ButtonHeight, *buttonHeight + 8);
        remembered = *height;
    }
}

void ResizeEngine::drawFormPicture(HostForm &form)
{
    HostObject &formPic = m_host.pictureBox(PictureBoxId::FormPic);
    const std::string key = controlKey(&form);
    const ControlClass *rec = m_store.info(key);
    const ControlFlags *flags = m_store.flags(key);
    const bool sizeChanged = CurScaleWidth != RefScaleWidth || CurScaleHeight != RefScaleHeight;
    if (ScaleGraphics && !GradientFill && (!flags || !flags->DontScaleGraphic) && sizeChanged && rec
        && rec->FormWidth != 0 && rec->FormHeight != 0) {
        formPic.set(member::Picture, Value(m_pictures.ScalePicture(rec->Picture, CurScaleWidth / rec->FormWidth,
                                                             CurScaleHeight / rec->FormHeight)));
    }
    if (!GradientFill) {
        if (FormPicture < 1) {
            if (auto pic = formPic.get(member::Picture))
                form.set(member::Picture, *pic);
        } else {
            m_pictures.ApplyFormPicture(form, FormPicture, CurScaleWidth, CurScaleHeight, GradientFill);
        }
    }
    // An MDI parent's client area repaints only when the form is shown again.
    if (form.isKind(HostKind::MDIForm)) {
        form.call(member::Hide, {});
        form.call(member::Show, {});
    }
}

} // namespace velmora
