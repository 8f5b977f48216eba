// A host that exists only in memory: objects with a property map that record
// every write and call and can be told to refuse any member. Units are twips
// at 15 twips to the pixel, as on a 96 dpi screen.
#pragma once

#include "engine/EngineHost.h"
#include "layout/HostObject.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace fake {

using velmora::GetResult;
using velmora::HostKind;
using velmora::HostObjectPtr;
using velmora::SetResult;
using velmora::Value;

class Object : public velmora::HostForm {
public:
    explicit Object(std::string type = "TextBox") : type(std::move(type)) {}

    std::string type;
    bool autoSize = false; // a picture box that takes its picture's size
    std::map<std::string, Value> props;
    std::set<std::string> refuseRead, refuseWrite, refuseCall;
    std::set<HostKind> kinds;
    std::vector<std::string> log; // "set Left=1500", "call Move", ...
    std::vector<HostObjectPtr> children; // a form's controls
    // A control's Container, held weakly: its container holds it among its
    // children, and two strong pointers would keep both alive for ever.
    // Unset for an object that has no Container member at all (a form).
    std::optional<std::weak_ptr<velmora::HostObject>> container;
    // Indexed members: name -> index -> value.
    std::map<std::string, std::map<int, Value>> indexed;

    std::string typeName() const override { return type; }
    bool isKind(HostKind k) const override { return kinds.count(k) > 0; }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    GetResult getAt(std::string_view name, int index) override;
    SetResult setAt(std::string_view name, int index, const Value &value) override;
    GetResult call(std::string_view method, const std::vector<Value> &args) override;
    std::vector<HostObjectPtr> controls() override { return children; }

    float num(const std::string &name) const;
    int countOf(const std::string &prefix) const;
};

using ObjectPtr = std::shared_ptr<Object>;

// A picture of a given size in twips; `generation` counts how many scalings
// led to it, so a test can tell a re-scaled copy from a fresh one.
ObjectPtr picture(float width, float height, int generation = 0);

// A control with geometry, a font and a container; the caller keeps the
// container alive (a form holds its controls, not they it).
ObjectPtr control(const std::string &name, float l, float t, float w, float h,
                  const HostObjectPtr &container, float fontSize = 8);
// A form of the given inner size in its ScaleMode units (default twips).
ObjectPtr form(float scaleWidth, float scaleHeight, int scaleMode = 1);
ObjectPtr line(const std::string &name, float x1, float y1, float x2, float y2,
               const HostObjectPtr &container);

class EngineHost : public velmora::EngineHost {
public:
    EngineHost();
    velmora::HostObject &pictureBox(velmora::PictureBoxId id) override;
    void processEvents() override { ++eventRounds; }

    int eventRounds = 0;
    ObjectPtr source, canvas, formPic;
};

} // namespace fake
