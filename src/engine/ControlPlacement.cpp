// Placement of one control for the form's present size, honouring its edge
// locks, and the scaling of its fonts.
#include "engine/ResizeEngine.h"

#include "layout/ControlKey.h"
#include "layout/HostAccess.h"
#include "layout/MemberNames.h"

#include <cmath>

namespace velmora {

namespace {

// A tab control keeps the controls of its hidden pages this far to the left.
constexpr float OffPageOffset = 75000.0f;

const char *const FontNames[] = {member::Font, member::DayFont, member::GridFont, member::TitleFont, member::HeadFont};

// The size of one of the control's fonts, typed where the host offers it.
void setFontSize(HostObject &ctrl, int slot, const Value &size)
{
    const auto points = size.toDouble();
    if (!points || !ctrl.setFontSize(slot, *points))
        setSub(ctrl, FontNames[slot], member::Size, size);
}

// Single-precision division that fails, as the host's does, on a zero divisor.
std::optional<float> divide(float a, float b)
{
    if (b == 0.0f)
        return std::nullopt;
    return a / b;
}

struct Geometry {
    float L = 0, T = 0, W = 0, H = 0;
};

// A line's extent on one axis: where it starts and how far it reaches.
void lineSpan(float a, float b, float &pos, float &extent)
{
    pos = a < b ? a : b;
    extent = std::fabs(b - a);
}

// One axis of the placement: position, extent and the far-edge lock.
// `farEdge` is the record's Right or Bottom.
void placeAxis(float &pos, float &extent, float designPos, float designExtent, float scale,
               float containerNow, float containerAtCapture, bool lockPos, bool lockExtent,
               bool lockFar, float &farEdge)
{
    if (!lockPos)
        pos = designPos * scale;
    if (!lockExtent)
        extent = designExtent * scale;
    if (lockFar) {
        farEdge = containerNow - (containerAtCapture - (designPos + designExtent));
        if (!lockPos)
            pos = farEdge - extent;
        else
            extent = farEdge - pos;
    } else {
        // Stored only; nothing reads it back for placement.
        farEdge = (pos + extent) * scale;
    }
}

} // namespace

SetResult ResizeEngine::AdjustPosition(HostObject &ctrl)
{
    const std::string key = controlKey(&ctrl);
    ControlClass *recp = m_store.info(key);
    ControlFlags *flagsp = m_store.flags(key);
    if (!recp || !flagsp)
        return hostError(HostErrc::Failed, "No layout recorded for control " + key);
    AdjustPosition(ctrl, *recp, *flagsp);
    return Done{};
}

void ResizeEngine::AdjustPosition(HostObject &ctrl, ControlClass &rec, const ControlFlags &flags)
{
    // From here on every statement stands alone: what fails is skipped.
    Geometry g, d;
    bool offPage = false;
    std::optional<float> left, top, width, height;
    if (const auto e = ctrl.edges()) {
        left = e->left;
        top = e->top;
        width = e->width;
        height = e->height;
    } else {
        left = getSingle(ctrl, member::Left);
        top = getSingle(ctrl, member::Top);
        width = getSingle(ctrl, member::Width);
        height = getSingle(ctrl, member::Height);
    }

    if (rec.SpecialControlType == SctLine) {
        const auto x1 = getSingle(ctrl, member::X1), x2 = getSingle(ctrl, member::X2);
        const auto y1 = getSingle(ctrl, member::Y1), y2 = getSingle(ctrl, member::Y2);
        if (x1 && x2)
            lineSpan(*x1, *x2, g.L, g.W);
        if (y1 && y2)
            lineSpan(*y1, *y2, g.T, g.H);
        lineSpan(rec.X1, rec.X2, d.L, d.W);
        lineSpan(rec.Y1, rec.Y2, d.T, d.H);
    } else {
        if (left)
            g.L = *left;
        if (rec.SpecialControlType == SctOnTabPage && left && width && *left + *width < 0) {
            g.L = *left + OffPageOffset;
            offPage = true;
        }
        if (top)
            g.T = *top;
        if (width)
            g.W = *width;
        if (height)
            g.H = *height;
        d = {rec.Left, rec.Top, rec.Width, rec.Height};
        if (rec.SpecialControlType == SctOnTabPage && rec.Left + rec.Width < 0)
            d.L = rec.Left + OffPageOffset;
    }

    // Shrink the fonts first so that a control whose height follows its font
    // can take any height in the move; the real sizes are set at the end.
    for (int slot = 0; slot < 5; ++slot)
        setFontSize(ctrl, slot, Value(0.01));

    // A control the application moved or sized since the last pass keeps its
    // new place as its design place, divided back to design scale.
    if (FormReady) {
        // Only edges that can be read, and not a move to or from a hidden page.
        const auto rebase = [](bool readable, bool moved, float now, float scale, float &design, float &working) {
            if (!readable || !moved)
                return;
            if (auto v = divide(now, scale)) {
                design = *v;
                working = design;
            }
        };
        rebase(left.has_value(), rec.LastLeft != g.L && rec.LastLeft + OffPageOffset != g.L, g.L, rec.xScale,
               rec.Left, d.L);
        rebase(top.has_value(), rec.LastTop != g.T, g.T, rec.yScale, rec.Top, d.T);
        rebase(width.has_value(), rec.LastWidth != g.W, g.W, rec.xScale, rec.Width, d.W);
        rebase(height.has_value(), rec.LastHeight != g.H, g.H, rec.yScale, rec.Height, d.H);
    }

    // The container's scale. Only a plain form counts as the form here: an
    // MDI form is measured like any other container.
    // The far-edge locks compare the container's extent with the control's
    // edges, so both must be in the control's units: the form's own units on
    // the form (the sizes are in twips), twips inside a container (whose
    // extent is in its own container's units). In twips all factors are 1.
    float cw = 0, ch = 0, capW = rec.FormWidth, capH = rec.FormHeight;
    const auto container = getObject(ctrl, member::Container);
    if (container && *container && (*container)->isKind(HostKind::Form)) {
        if (auto v = divide(CurScaleWidth, rec.FormWidth))
            rec.xScale = *v;
        if (auto v = divide(CurScaleHeight, rec.FormHeight))
            rec.yScale = *v;
        cw = CurScaleWidth / m_twipsPerUnitX;
        ch = CurScaleHeight / m_twipsPerUnitY;
        capW = rec.FormWidth / m_twipsPerUnitX;
        capH = rec.FormHeight / m_twipsPerUnitY;
    } else if (const auto &c = container; c && *c) {
        std::optional<float> cWidth, cHeight;
        if (const auto e = (*c)->edges()) {
            cWidth = e->width;
            cHeight = e->height;
        } else {
            cWidth = getSingle(**c, member::Width);
            cHeight = getSingle(**c, member::Height);
        }
        const bool onForm = containerIsKind(**c, HostKind::Form);
        const float fx = onForm ? m_twipsPerUnitX : 1.0f, fy = onForm ? m_twipsPerUnitY : 1.0f;
        capW = rec.FormWidth * fx;
        capH = rec.FormHeight * fy;
        if (cWidth) {
            if (auto v = divide(*cWidth, rec.FormWidth))
                rec.xScale = *v;
            cw = *cWidth * fx;
        }
        if (cHeight) {
            if (auto v = divide(*cHeight, rec.FormHeight))
                rec.yScale = *v;
            ch = *cHeight * fy;
        }
    }

    placeAxis(g.T, g.H, d.T, d.H, rec.yScale, ch, capH, flags.DontScaleTop,
              flags.DontScaleHeight, flags.DontScaleBottom, rec.Bottom);
    placeAxis(g.L, g.W, d.L, d.W, rec.xScale, cw, capW, flags.DontScaleLeft,
              flags.DontScaleWidth, flags.DontScaleRight, rec.Right);

    if (rec.SpecialControlType == SctLine) {
        // A line keeps the direction it was drawn in.
        const char *nearX = rec.X1 < rec.X2 ? member::X1 : member::X2;
        const char *farX = rec.X1 < rec.X2 ? member::X2 : member::X1;
        trySet(ctrl, nearX, g.L);
        if (auto back = getSingle(ctrl, nearX))
            trySet(ctrl, farX, *back + g.W);
        const char *nearY = rec.Y1 < rec.Y2 ? member::Y1 : member::Y2;
        const char *farY = rec.Y1 < rec.Y2 ? member::Y2 : member::Y1;
        trySet(ctrl, nearY, g.T);
        if (auto back = getSingle(ctrl, nearY))
            trySet(ctrl, farY, *back + g.H);
    } else {
        // A control on a hidden page stays on its hidden page.
        const float placedLeft = offPage ? g.L - OffPageOffset : g.L;
        // One argument list for every control: a pass allocates nothing here.
        m_moveArgs.resize(4);
        m_moveArgs[0] = placedLeft;
        m_moveArgs[1] = g.T;
        m_moveArgs[2] = g.W;
        m_moveArgs[3] = g.H;
        if (!ctrl.call(member::Move, m_moveArgs)) {
            trySet(ctrl, member::Left, offPage ? Value(static_cast<double>(placedLeft)) : Value(placedLeft));
            trySet(ctrl, member::Top, g.T);
            trySet(ctrl, member::Width, g.W);
            trySet(ctrl, member::Height, g.H);
        }
    }

    // The font factor is the smaller of the two ratios. With a design extent
    // of 0 there is no ratio on that axis: the other one alone serves the
    // borders, and the fonts go back to their recorded sizes.
    const auto fx = divide(g.W, d.W);
    const auto fy = divide(g.H, d.H);
    const bool factorDefined = fx && fy;
    if (factorDefined)
        FontFactor = (*fy < *fx) ? *fy : *fx;
    else if (fx)
        FontFactor = *fx;
    else if (fy)
        FontFactor = *fy;
    else
        FontFactor = 1.0f;

    const bool scaleFonts = factorDefined && !flags.DontScaleFont && ScaleFonts;
    const float sizes[] = {rec.FontSize, rec.DayFontSize, rec.GridFontSize, rec.TitleFontSize,
                           rec.HeadFontSize};
    for (int i = 0; i < 5; ++i)
        setFontSize(ctrl, i, Value(scaleFonts ? sizes[i] * FontFactor : sizes[i]));
}

} // namespace velmora
