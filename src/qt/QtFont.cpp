#include "qt/QtFont.h"

#include "qt/QtUnits.h"

#include <QPointer>
#include <QWidget>

namespace velmora::qt {

HostObjectPtr QtFont::ofWidget(QWidget *widget)
{
    QPointer<QWidget> w = widget;
    return std::make_shared<QtFont>(
        [w]() -> std::optional<QFont> {
            if (!w)
                return std::nullopt;
            return w->font();
        },
        [w](const QFont &f) {
            if (!w)
                return false;
            w->setFont(f);
            return true;
        });
}

double QtFont::pointSize(const QFont &f)
{
    if (f.pointSizeF() > 0)
        return f.pointSizeF();
    // 72 points to the inch; a pixel is twipsPerPixel/20 points.
    return f.pixelSize() > 0 ? f.pixelSize() * twipsPerPixel(Axis::Y) / 20.0 : 0.0;
}

GetResult QtFont::get(std::string_view name)
{
    const auto f = current();
    if (!f)
        return hostError(HostErrc::Failed, "The font's owner is gone");
    if (name == "Size")
        return Value(static_cast<float>(pointSize(*f)));
    if (name == "Name")
        return Value(f->family().toStdString());
    if (name == "Bold")
        return Value(f->bold());
    if (name == "Italic")
        return Value(f->italic());
    if (name == "Underline")
        return Value(f->underline());
    if (name == "Strikethrough")
        return Value(f->strikeOut());
    if (name == "Weight")
        return Value(static_cast<int>(f->weight()));
    return noSuchMember(name);
}

SetResult QtFont::set(std::string_view name, const Value &value)
{
    auto f = current();
    if (!f)
        return hostError(HostErrc::Failed, "The font's owner is gone");
    if (name == "Size") {
        const auto size = value.toDouble();
        // QFont ignores sizes it cannot use; refuse them instead so the
        // caller knows the font kept its size.
        if (!size || !(*size > 0) || *size > 16384)
            return hostError(HostErrc::InvalidValue, "Invalid font size");
        f->setPointSizeF(*size);
    } else if (name == "Name") {
        const auto family = value.toText();
        if (!family || family->empty())
            return hostError(HostErrc::InvalidValue, "Invalid font name");
        f->setFamily(QString::fromStdString(*family));
    } else if (name == "Bold" || name == "Italic" || name == "Underline" || name == "Strikethrough") {
        const auto on = value.toBool();
        if (!on)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        if (name == "Bold")
            f->setBold(*on);
        else if (name == "Italic")
            f->setItalic(*on);
        else if (name == "Underline")
            f->setUnderline(*on);
        else
            f->setStrikeOut(*on);
    } else {
        return noSuchMember(name);
    }
    return apply(*f);
}

SetResult QtFont::apply(const QFont &font)
{
    if (auto deferral = m_deferral.lock(); deferral && deferral->deferringFonts()) {
        const bool first = !m_pending;
        m_pending = font;
        if (first)
            deferral->fontPending(shared_from_this());
        return Done{};
    }
    if (!m_set(font))
        return hostError(HostErrc::Failed, "The font could not be applied");
    return Done{};
}

std::optional<QFont> QtFont::takePending()
{
    std::optional<QFont> font;
    font.swap(m_pending);
    // Equal but inherited is not the same: the owner must hold its size
    // itself, or its container's next font would reach it.
    if (font)
        if (const auto now = m_get(); now && *now == *font && (now->resolveMask() & QFont::SizeResolved))
            font.reset();
    return font;
}

} // namespace velmora::qt
