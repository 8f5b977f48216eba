// Velmora - the engine's only view of the toolkit.
//
// Everything the resize engine does to a form or a control is a property read,
// a property write or a method call by name on a HostObject. Any of them may
// fail (the object lacks the member, refuses the value, the index is out of
// range); a failure affects that one access and nothing else, so the engine
// can treat every statement on its own.
#pragma once

#include "layout/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Type tests against the toolkit's own form, MDI form and line classes.
enum class HostKind { Form, MDIForm, Line };

class HostObject {
public:
    virtual ~HostObject() = default;

    // The class name as the engine compares it ("SSTab", "ImageList", "Menu",
    // "Form", "MDIForm", or the toolkit's own class name).
    virtual std::string typeName() const = 0;
    virtual bool isKind(HostKind kind) const;

    virtual GetResult get(std::string_view name) = 0;
    virtual SetResult set(std::string_view name, const Value &value) = 0;

    // Indexed members such as TabPicture(i) or a collection's Item(i).
    virtual GetResult getAt(std::string_view name, int index);
    virtual SetResult setAt(std::string_view name, int index, const Value &value);

    virtual GetResult call(std::string_view method, const std::vector<Value> &args);

    // Which object this is, for telling a new object from one that went away
    // under the same name; 0 when the host cannot tell.
    virtual std::uint64_t identity() const { return 0; }

    // Typed fast paths for what a pass asks of every control, for a host
    // that can answer without a look-up by name. Each gives exactly what the
    // members by name would; nullopt (the default) sends the engine to them.
    struct Edges {
        float left, top, width, height; // Left, Top, Width, Height
    };
    virtual std::optional<Edges> edges() { return std::nullopt; }
    // Size of font `slot` (0 Font, 1 DayFont, 2 GridFont, 3 TitleFont,
    // 4 HeadFont): the result of writing it.
    virtual std::optional<SetResult> setFontSize(int slot, double size)
    {
        (void)slot;
        (void)size;
        return std::nullopt;
    }

protected:
    static HostError noSuchMember(std::string_view name);
};

// The form a component serves: a host object that can also list its controls.
class HostForm : public HostObject {
public:
    // The form's controls in the toolkit's order (containers before their
    // contents, menus included). The form itself is not among them.
    virtual std::vector<HostObjectPtr> controls() = 0;
};

} // namespace velmora
