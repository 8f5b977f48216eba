// Velmora - a font as the engine sees it. Reads and writes go straight to
// the widget (or calendar part) that owns the font, since QFont is a value.
#pragma once

#include "layout/HostObject.h"

#include <QFont>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace velmora::qt {

class QtFont;

// What holds a font's writes back while a pass runs (the form): a widget
// whose size is written twice in its placement, and whose container's font
// would otherwise reach it first, then changes font once.
class FontDeferral {
public:
    virtual ~FontDeferral() = default;
    virtual bool deferringFonts() const = 0;
    // The first write held back since the last flush.
    virtual void fontPending(std::shared_ptr<QtFont> font) = 0;
};

// A font read and written through a getter and a setter; ofWidget() gives
// the lean kind every control has.
class QtFont : public HostObject, public std::enable_shared_from_this<QtFont> {
public:
    using Getter = std::function<std::optional<QFont>()>;
    using Setter = std::function<bool(const QFont &)>;

    static std::shared_ptr<QtFont> make(Getter getter, Setter setter);

    void deferTo(std::weak_ptr<FontDeferral> deferral) { m_deferral = std::move(deferral); }
    // The write held back, cleared; nothing when the owner has that very
    // font set on it already.
    std::optional<QFont> takePending();
    bool applyNow(const QFont &font) { return write(font); }

    // The font as it is about to be: the write held back, or the owner's.
    std::optional<QFont> upcoming() const { return current(); }

    std::string typeName() const override { return "Font"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;

    // The font of a widget, read and written through QWidget::font().
    static HostObjectPtr ofWidget(QWidget *widget);

    // Point size of a font that may have been given in pixels.
    static double pointSize(const QFont &f);

protected:
    QtFont() = default;
    virtual std::optional<QFont> read() const = 0;
    virtual bool write(const QFont &font) = 0;
    // A write held back found the owner with that very font already.
    virtual void unchanged(const QFont &) {}

private:
    std::optional<QFont> current() const { return m_pending ? m_pending : read(); }
    SetResult apply(QFont &&font);

    std::weak_ptr<FontDeferral> m_deferral;
    std::optional<QFont> m_pending;
};

} // namespace velmora::qt
