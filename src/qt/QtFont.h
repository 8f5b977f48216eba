// Velmora - a font as the engine sees it. Reads and writes go straight to
// the widget (or calendar part) that owns the font, since QFont is a value.
#pragma once

#include "layout/HostObject.h"

#include <QFont>

#include <functional>

class QWidget;

namespace velmora::qt {

class QtFont : public HostObject {
public:
    using Getter = std::function<std::optional<QFont>()>;
    using Setter = std::function<bool(const QFont &)>;

    QtFont(Getter getter, Setter setter) : m_get(std::move(getter)), m_set(std::move(setter)) {}

    std::string typeName() const override { return "Font"; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;

    // The font of a widget, read and written through QWidget::font().
    static HostObjectPtr ofWidget(QWidget *widget);

    // Point size of a font that may have been given in pixels.
    static double pointSize(const QFont &f);

private:
    Getter m_get;
    Setter m_set;
};

} // namespace velmora::qt
