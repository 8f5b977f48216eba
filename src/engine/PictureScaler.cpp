#include "engine/PictureScaler.h"

#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

#include <cmath>
#include <limits>

namespace velmora {

namespace {

bool pictureHasWidth(const HostObjectPtr &pic)
{
    if (!pic)
        return false;
    auto w = getSingle(*pic, member::Width);
    return w && *w > 0;
}

// A whole number, halves to even; nullopt when out of range. (Any int:
// forms wider than 32767 twips, 2184 pixels, are ordinary.)
std::optional<int> toWholeNumber(float v)
{
    if (!std::isfinite(v))
        return std::nullopt;
    const double r = std::nearbyint(static_cast<double>(v));
    if (r < std::numeric_limits<int>::min() || r > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(r);
}

} // namespace

bool PictureScaler::clearBoxes()
{
    return trySet(box(PictureBoxId::SizerSource), member::Picture, Value())
        && trySet(box(PictureBoxId::SizerCanvas), member::Picture, Value());
}

HostObjectPtr PictureScaler::resultOfCanvas()
{
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    auto image = canvas.get(member::Image);
    if (!image || !canvas.set(member::Picture, *image))
        return nullptr;
    auto pic = getObject(canvas, member::Picture);
    return pic ? *pic : nullptr;
}

HostObjectPtr PictureScaler::stretch(const HostObjectPtr &pic, const std::function<Extent(float, float)> &extent)
{
    if (!pictureHasWidth(pic) || !clearBoxes())
        return nullptr;
    HostObject &source = box(PictureBoxId::SizerSource);
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    // A scaled picture has no background of its own; centring and tiling
    // leave the form's colour on the canvas they share. A host without the
    // notion keeps its canvas as it is.
    canvas.set(member::BackColor, Value());
    if (!trySet(source, member::Picture, Value(pic)))
        return nullptr;
    const auto w = getSingle(source, member::Width);
    const auto h = getSingle(source, member::Height);
    if (!w || !h)
        return nullptr;
    const Extent e = extent(*w, *h);
    if (!trySet(canvas, member::Width, e.width) || !trySet(canvas, member::Height, e.height))
        return nullptr;
    auto srcPic = source.get(member::Picture);
    if (!srcPic || !canvas.call(member::PaintPicture, {*srcPic, 0.0f, 0.0f, e.width, e.height}))
        return nullptr;
    return resultOfCanvas();
}

HostObjectPtr PictureScaler::ScalePicture(const HostObjectPtr &pic, double xScale, double yScale)
{
    return stretch(pic, [=](float w, float h) {
        return Extent{static_cast<double>(w) * xScale, static_cast<double>(h) * yScale};
    });
}

HostObjectPtr PictureScaler::SizePicture(const HostObjectPtr &pic, int xSize, int ySize)
{
    return stretch(pic, [=](float, float) { return Extent{double(xSize), double(ySize)}; });
}

std::optional<PictureScaler::Placement> PictureScaler::prepareContainerCanvas(HostObject &container,
                                                                             const HostObjectPtr &pic)
{
    // The container's inner size in twips; one without a scale mode keeps
    // its raw size.
    Placement p;
    if (auto v = getSingle(container, member::ScaleWidth))
        p.w = *v;
    if (auto v = getSingle(container, member::ScaleHeight))
        p.h = *v;
    if (auto mode = container.get(member::ScaleMode)) {
        if (auto r = container.call(member::ScaleX, {Value(p.w), *mode, 1}); r && r->toSingle())
            p.w = *r->toSingle();
        if (auto r = container.call(member::ScaleY, {Value(p.h), *mode, 1}); r && r->toSingle())
            p.h = *r->toSingle();
    }

    if (!pictureHasWidth(pic) || !clearBoxes())
        return std::nullopt;
    HostObject &source = box(PictureBoxId::SizerSource);
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    auto back = container.get(member::BackColor);
    if (!back || !canvas.set(member::BackColor, *back) || !trySet(source, member::Picture, Value(pic))
        || !trySet(canvas, member::Width, p.w) || !trySet(canvas, member::Height, p.h))
        return std::nullopt;
    const auto pw = getSingle(source, member::Width);
    const auto ph = getSingle(source, member::Height);
    if (!pw || !ph)
        return std::nullopt;
    p.pw = *pw;
    p.ph = *ph;
    return p;
}

HostObjectPtr PictureScaler::CenterPicture(HostObject &container, const HostObjectPtr &pic)
{
    const auto p = prepareContainerCanvas(container, pic);
    if (!p)
        return nullptr;
    // A picture larger than the container is drawn from the top-left corner
    // and cut off at the right and bottom.
    float x = 0, y = 0;
    if (p->w > p->pw)
        x = p->w / 2 - p->pw / 2;
    if (p->h > p->ph)
        y = p->h / 2 - p->ph / 2;
    if (!box(PictureBoxId::SizerCanvas).call(member::PaintPicture, {Value(pic), x, y}))
        return nullptr;
    return resultOfCanvas();
}

HostObjectPtr PictureScaler::TilePicture(HostObject &container, const HostObjectPtr &pic)
{
    const auto p = prepareContainerCanvas(container, pic);
    if (!p || !(p->pw > 0) || !(p->ph > 0))
        return nullptr;
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    // Tiling starts one unit in from the corner in both directions.
    for (float y = 1; y <= p->h; y += p->ph)
        for (float x = 1; x <= p->w; x += p->pw)
            if (!canvas.call(member::PaintPicture, {Value(pic), x, y}))
                return nullptr;
    return resultOfCanvas();
}

void PictureScaler::ApplyFormPicture(HostObject &form, int mode, float width, float height, bool gradientFill)
{
    auto current = getObject(box(PictureBoxId::FormPic), member::Picture);
    if (!current || !pictureHasWidth(*current) || gradientFill)
        return;
    const HostObjectPtr formPic = *current;
    switch (mode) {
    case FpFit: {
        const auto w = toWholeNumber(width);
        const auto h = toWholeNumber(height);
        if (w && h)
            form.set(member::Picture, Value(SizePicture(formPic, *w, *h)));
        break;
    }
    case FpCenter:
        form.set(member::Picture, Value(CenterPicture(form, formPic)));
        break;
    case FpTile:
        form.set(member::Picture, Value(TilePicture(form, formPic)));
        break;
    default:
        break;
    }
}

} // namespace velmora
