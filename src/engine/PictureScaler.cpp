#include "engine/PictureScaler.h"

#include "layout/HostAccess.h"

#include <cmath>
#include <limits>

namespace velmora {

namespace {

bool pictureHasWidth(const HostObjectPtr &pic)
{
    if (!pic)
        return false;
    auto w = getSingle(*pic, "Width");
    return w && *w > 0;
}

// A 16-bit whole number, halves to even; nullopt when out of range.
std::optional<int> toInteger16(float v)
{
    if (!std::isfinite(v))
        return std::nullopt;
    const double r = std::nearbyint(static_cast<double>(v));
    if (r < std::numeric_limits<std::int16_t>::min() || r > std::numeric_limits<std::int16_t>::max())
        return std::nullopt;
    return static_cast<int>(r);
}

} // namespace

bool PictureScaler::clearBoxes()
{
    return trySet(box(PictureBoxId::SizerSource), "Picture", Value())
        && trySet(box(PictureBoxId::SizerCanvas), "Picture", Value());
}

HostObjectPtr PictureScaler::resultOfCanvas()
{
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    auto image = canvas.get("Image");
    if (!image || !canvas.set("Picture", *image))
        return nullptr;
    auto pic = getObject(canvas, "Picture");
    return pic ? *pic : nullptr;
}

HostObjectPtr PictureScaler::ScalePicture(const HostObjectPtr &pic, double xScale, double yScale)
{
    if (!pictureHasWidth(pic) || !clearBoxes())
        return nullptr;
    HostObject &source = box(PictureBoxId::SizerSource);
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    if (!trySet(source, "Picture", Value(pic)))
        return nullptr;
    const auto w = getSingle(source, "Width");
    const auto h = getSingle(source, "Height");
    if (!w || !h)
        return nullptr;
    const double cw = static_cast<double>(*w) * xScale;
    const double ch = static_cast<double>(*h) * yScale;
    if (!trySet(canvas, "Width", cw) || !trySet(canvas, "Height", ch))
        return nullptr;
    auto srcPic = source.get("Picture");
    if (!srcPic || !canvas.call("PaintPicture", {*srcPic, 0.0f, 0.0f, cw, ch}))
        return nullptr;
    return resultOfCanvas();
}

HostObjectPtr PictureScaler::SizePicture(const HostObjectPtr &pic, int xSize, int ySize)
{
    if (!pictureHasWidth(pic) || !clearBoxes())
        return nullptr;
    HostObject &source = box(PictureBoxId::SizerSource);
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    if (!trySet(source, "Picture", Value(pic)))
        return nullptr;
    if (!trySet(canvas, "Width", xSize) || !trySet(canvas, "Height", ySize))
        return nullptr;
    auto srcPic = source.get("Picture");
    if (!srcPic || !canvas.call("PaintPicture", {*srcPic, 0.0f, 0.0f, xSize, ySize}))
        return nullptr;
    return resultOfCanvas();
}

bool PictureScaler::prepareContainerCanvas(HostObject &container, const HostObjectPtr &pic, float &w, float &h)
{
    // The container's inner size in twips; one without a scale mode keeps
    // its raw size.
    if (auto v = getSingle(container, "ScaleWidth"))
        w = *v;
    if (auto v = getSingle(container, "ScaleHeight"))
        h = *v;
    if (auto mode = container.get("ScaleMode")) {
        if (auto r = container.call("ScaleX", {Value(w), *mode, 1}); r && r->toSingle())
            w = *r->toSingle();
        if (auto r = container.call("ScaleY", {Value(h), *mode, 1}); r && r->toSingle())
            h = *r->toSingle();
    }

    if (!pictureHasWidth(pic) || !clearBoxes())
        return false;
    HostObject &source = box(PictureBoxId::SizerSource);
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    auto back = container.get("BackColor");
    return back && canvas.set("BackColor", *back) && trySet(source, "Picture", Value(pic))
        && trySet(canvas, "Width", w) && trySet(canvas, "Height", h);
}

HostObjectPtr PictureScaler::CenterPicture(HostObject &container, const HostObjectPtr &pic)
{
    float w = 0, h = 0;
    if (!prepareContainerCanvas(container, pic, w, h))
        return nullptr;
    HostObject &source = box(PictureBoxId::SizerSource);
    const auto pw = getSingle(source, "Width");
    const auto ph = getSingle(source, "Height");
    if (!pw || !ph)
        return nullptr;
    // A picture larger than the container is drawn from the top-left corner
    // and cut off at the right and bottom.
    float x = 0, y = 0;
    if (w > *pw)
        x = w / 2 - *pw / 2;
    if (h > *ph)
        y = h / 2 - *ph / 2;
    if (!box(PictureBoxId::SizerCanvas).call("PaintPicture", {Value(pic), x, y}))
        return nullptr;
    return resultOfCanvas();
}

HostObjectPtr PictureScaler::TilePicture(HostObject &container, const HostObjectPtr &pic)
{
    float w = 0, h = 0;
    if (!prepareContainerCanvas(container, pic, w, h))
        return nullptr;
    HostObject &source = box(PictureBoxId::SizerSource);
    const auto pw = getSingle(source, "Width");
    const auto ph = getSingle(source, "Height");
    if (!pw || !ph || !(*pw > 0) || !(*ph > 0))
        return nullptr;
    HostObject &canvas = box(PictureBoxId::SizerCanvas);
    // Tiling starts one unit in from the corner in both directions.
    for (float y = 1; y <= h; y += *ph)
        for (float x = 1; x <= w; x += *pw)
            if (!canvas.call("PaintPicture", {Value(pic), x, y}))
                return nullptr;
    return resultOfCanvas();
}

void PictureScaler::ApplyFormPicture(HostObject &form, int mode, float width, float height, bool gradientFill)
{
    auto current = getObject(box(PictureBoxId::FormPic), "Picture");
    if (!current || !pictureHasWidth(*current) || gradientFill)
        return;
    const HostObjectPtr formPic = *current;
    switch (mode) {
    case FpFit: {
        const auto w = toInteger16(width);
        const auto h = toInteger16(height);
        if (w && h)
            form.set("Picture", Value(SizePicture(formPic, *w, *h)));
        break;
    }
    case FpCenter:
        form.set("Picture", Value(CenterPicture(form, formPic)));
        break;
    case FpTile:
        form.set("Picture", Value(TilePicture(form, formPic)));
        break;
    default:
        break;
    }
}

} // namespace velmora
