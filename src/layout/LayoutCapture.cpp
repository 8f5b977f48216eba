#include "layout/LayoutCapture.h"

#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

namespace velmora {

namespace {

bool isFormKind(HostObject &o)
{
    return o.isKind(HostKind::Form) || o.isKind(HostKind::MDIForm);
}

void readSingle(HostObject &ctrl, const char *name, float &field)
{
    if (auto v = getSingle(ctrl, name))
        field = *v;
}

void readPicture(HostObject &ctrl, const char *name, HostObjectPtr &field)
{
    if (auto p = getObject(ctrl, name))
        field = *p;
}

void readGeometry(HostObject &ctrl, ControlClass &rec)
{
    readSingle(ctrl, member::Left, rec.Left);
    readSingle(ctrl, member::Top, rec.Top);
    readSingle(ctrl, member::Width, rec.Width);
    readSingle(ctrl, member::Height, rec.Height);
    rec.LastLeft = rec.Left;
    rec.LastTop = rec.Top;
    rec.LastWidth = rec.Width;
    rec.LastHeight = rec.Height;
}

template <typename SetName>
void readFont(HostObject &ctrl, const char *font, float &size, SetName setName)
{
    if (auto s = getSubSingle(ctrl, font, member::Size))
        size = *s;
    if (auto n = getSubText(ctrl, font, member::Name))
        setName(std::move(*n));
}

int kindOf(HostObject &ctrl)
{
    int kind = SctOrdinary;
    const std::string type = ctrl.typeName();
    if (type == hostType::SSTab)
        kind = SctTabControl;
    if (auto ct = containerTypeName(ctrl); ct && *ct == hostType::SSTab)
        kind = SctOnTabPage;
    if (ctrl.isKind(HostKind::Line))
        kind = SctLine;
    if (type == hostType::ImageList)
        kind = SctImageList;
    if (isFormKind(ctrl))
        kind = SctForm;
    return kind;
}

void captureImageList(HostObject &ctrl, ControlClass &rec)
{
    auto images = getObject(ctrl, member::ListImages);
    if (images && *images) {
        if (auto n = getLong(**images, member::Count))
            rec.ImageListCount = static_cast<int>(*n);
    }
    readSingle(ctrl, member::ImageWidth, rec.ImageListWidth);
    readSingle(ctrl, member::ImageHeight, rec.ImageListHeight);
    if (!images || !*images)
        return;
    for (int i = 1; i <= rec.ImageListCount; ++i) {
        auto item = getObjectAt(**images, member::Item, i);
        if (!item || !*item)
            continue;
        if (auto p = getObject(**item, member::Picture))
            rec.setImageListPicture(i, *p);
        if (auto k = getText(**item, member::Key))
            rec.setImageListKey(i, *k);
        if (auto t = getText(**item, member::Tag))
            rec.setImageListTag(i, *t);
    }
}

} // namespace

bool controlIsScaleable(HostObject &ctrl)
{
    if (isFormKind(ctrl))
        return false;
    const auto all = [&](std::initializer_list<const char *> names) {
        for (auto n : names)
            if (!hasProperty(ctrl, n))
                return false;
        return true;
    };
    return all({member::Left, member::Top, member::Width, member::Height}) || all({member::X1, member::X2, member::Y1, member::Y2});
}

bool graphicIsScaleable(HostObject &ctrl)
{
    if (ctrl.typeName() == hostType::ImageList)
        return true;
    return hasProperty(ctrl, member::Picture) || hasProperty(ctrl, member::DownPicture)
        || hasProperty(ctrl, member::DisabledPicture);
}

void saveControlInfo(LayoutStore &store, HostObject &ctrl, float refScaleWidth, float refScaleHeight)
{
    ControlClass &rec = store.ensureInfo(controlKey(&ctrl));
    rec.Owner = ctrl.identity();

    // The form itself has no readable Container: it is measured by the
    // reference size, like a control sitting directly on it.
    auto container = getObject(ctrl, member::Container);
    if (!container || !*container || isFormKind(**container)) {
        rec.FormWidth = refScaleWidth;
        rec.FormHeight = refScaleHeight;
    } else {
        readSingle(**container, member::Width, rec.FormWidth);
        readSingle(**container, member::Height, rec.FormHeight);
    }

    rec.SpecialControlType = kindOf(ctrl);
    switch (rec.SpecialControlType) {
    case SctTabControl: {
        readGeometry(ctrl, rec);
        readSingle(ctrl, member::TabHeight, rec.TabHeight);
        const int tabs = static_cast<int>(getLong(ctrl, member::Tabs).value_or(0));
        for (int i = 0; i < tabs; ++i)
            if (auto p = getObjectAt(ctrl, member::TabPicture, i))
                rec.setTabPicture(i, *p);
        break;
    }
    case SctForm:
        readPicture(ctrl, member::Picture, rec.Picture);
        break;
    case SctLine:
        readSingle(ctrl, member::X1, rec.X1);
        readSingle(ctrl, member::X2, rec.X2);
        readSingle(ctrl, member::Y1, rec.Y1);
        readSingle(ctrl, member::Y2, rec.Y2);
        break;
    case SctImageList:
        captureImageList(ctrl, rec);
        break;
    case SctUnused:
        break;
    default: // ordinary, and on a tab page
        readGeometry(ctrl, rec);
        readPicture(ctrl, member::Picture, rec.Picture);
        readPicture(ctrl, member::DownPicture, rec.DownPicture);
        readPicture(ctrl, member::DisabledPicture, rec.DisabledPicture);
        break;
    }

    // A tab control is scaled through its own code, never as a tab strip; it
    // keeps whatever it had.
    if (!hasProperty(ctrl, member::Tabs))
        rec.ControlHasTabs = false;
    else if (rec.SpecialControlType != SctTabControl)
        rec.ControlHasTabs = true;
    rec.ControlHasButtons = hasProperty(ctrl, member::Buttons);
    rec.ControlHasNodes = hasProperty(ctrl, member::Nodes);
    rec.ControlHasImageList = hasProperty(ctrl, member::ImageList);
    rec.ControlHasTwoImageLists = hasProperty(ctrl, member::Icons) && hasProperty(ctrl, member::SmallIcons);

    const std::string type = ctrl.typeName();
    if (type != hostType::Form && type != hostType::MDIForm)
        rec.ControlIsScaleable = controlIsScaleable(ctrl);
    rec.GraphicIsScaleable = graphicIsScaleable(ctrl);

    if (rec.ControlHasButtons) {
        readSingle(ctrl, member::ButtonWidth, rec.ButtonWidth);
        readSingle(ctrl, member::ButtonHeight, rec.ButtonHeight);
    }

    readFont(ctrl, member::Font, rec.FontSize, [&](std::string n) { rec.FontName = std::move(n); });
    readFont(ctrl, member::DayFont, rec.DayFontSize, [&](std::string n) { rec.setDayFontName(std::move(n)); });
    readFont(ctrl, member::GridFont, rec.GridFontSize, [&](std::string n) { rec.setGridFontName(std::move(n)); });
    readFont(ctrl, member::TitleFont, rec.TitleFontSize, [&](std::string n) { rec.setTitleFontName(std::move(n)); });
    readFont(ctrl, member::HeadFont, rec.HeadFontSize, [&](std::string n) { rec.setHeadFontName(std::move(n)); });
    readSingle(ctrl, member::BorderWidth, rec.BorderWidth);
}

void saveControlFlags(LayoutStore &store, HostObject *ctrl)
{
    store.ensureFlags(controlKey(ctrl));
}

void saveControlFlags(LayoutStore &store, const std::string &key)
{
    store.ensureFlags(key);
}

} // namespace velmora
