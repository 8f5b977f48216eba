#include "FakeHost.h"

#include <cmath>

namespace fake {

using velmora::HostErrc;
using velmora::hostError;

namespace {

std::string show(const Value &v)
{
    if (auto t = v.toText())
        return *t;
    return v.isObject() ? "<object>" : "?";
}

constexpr float TwipsPerPixel = 15;

float twipsPerUnit(int mode)
{
    switch (mode) {
    case 1: return 1;
    case 2: return 20;
    case 3: return TwipsPerPixel;
    default: return 0;
    }
}

} // namespace

GetResult Object::get(std::string_view n)
{
    const std::string name(n);
    if (refuseRead.count(name))
        return hostError(HostErrc::NoSuchMember, "refused " + name);
    if (name == "Container" && container)
        return Value(container->lock());
    auto it = props.find(name);
    if (it == props.end())
        return hostError(HostErrc::NoSuchMember, "no " + name);
    return it->second;
}

SetResult Object::set(std::string_view n, const Value &value)
{
    const std::string name(n);
    log.push_back("set " + name + "=" + show(value));
    if (name == "Container" && container && !refuseWrite.count(name) && !refuseRead.count(name)) {
        container = value.toObject();
        return velmora::Done{};
    }
    if (refuseWrite.count(name) || refuseRead.count(name) || !props.count(name))
        return hostError(HostErrc::InvalidValue, "refused " + name);
    props[name] = value;
    if (autoSize && name == "Picture") {
        auto pic = std::dynamic_pointer_cast<Object>(value.toObject());
        props["Width"] = Value(pic ? pic->num("Width") : 0.0f);
        props["Height"] = Value(pic ? pic->num("Height") : 0.0f);
    }
    return velmora::Done{};
}

GetResult Object::getAt(std::string_view n, int index)
{
    const std::string name(n);
    auto it = indexed.find(name);
    if (refuseRead.count(name) || it == indexed.end() || !it->second.count(index))
        return hostError(HostErrc::IndexOutOfRange, "no " + name);
    return it->second.at(index);
}

SetResult Object::setAt(std::string_view n, int index, const Value &value)
{
    const std::string name(n);
    log.push_back("set " + name + "(" + std::to_string(index) + ")=" + show(value));
    if (refuseWrite.count(name) || !indexed.count(name))
        return hostError(HostErrc::InvalidValue, "refused " + name);
    indexed[name][index] = value;
    return velmora::Done{};
}

GetResult Object::call(std::string_view m, const std::vector<Value> &args)
{
    const std::string method(m);
    log.push_back("call " + method);
    if (refuseCall.count(method))
        return hostError(HostErrc::Failed, "refused " + method);
    if (method == "Move") {
        static const char *const edges[] = {"Left", "Top", "Width", "Height"};
        for (auto e : edges)
            if (!props.count(e) || refuseWrite.count(e))
                return hostError(HostErrc::Failed, "cannot move");
        for (int i = 0; i < 4; ++i)
            props[edges[i]] = Value(*args.at(static_cast<std::size_t>(i)).toSingle());
        return Value();
    }
    if (method == "ScaleX" || method == "ScaleY") {
        const float from = twipsPerUnit(*args.at(1).toLong());
        const float to = twipsPerUnit(*args.at(2).toLong());
        if (from == 0 || to == 0)
            return hostError(HostErrc::InvalidValue, "bad mode");
        return Value(*args.at(0).toSingle() * from / to);
    }
    if (method == "Refresh")
        return Value();
    if (method == "PaintPicture") {
        // The canvas becomes a picture of the painted size, one generation
        // further from its source.
        auto src = std::dynamic_pointer_cast<Object>(args.at(0).toObject());
        const int gen = src ? static_cast<int>(src->num("Generation")) + 1 : 0;
        const float w = args.size() >= 5 ? *args[3].toSingle() : (src ? src->num("Width") : 0);
        const float h = args.size() >= 5 ? *args[4].toSingle() : (src ? src->num("Height") : 0);
        props["Image"] = Value(HostObjectPtr(picture(w, h, gen)));
        return Value();
    }
    return hostError(HostErrc::NoSuchMember, "no " + method);
}

float Object::num(const std::string &name) const
{
    auto it = props.find(name);
    return it == props.end() ? NAN : it->second.toSingle().value_or(NAN);
}

int Object::countOf(const std::string &prefix) const
{
    int n = 0;
    for (const auto &entry : log)
        n += entry.rfind(prefix, 0) == 0 ? 1 : 0;
    return n;
}

ObjectPtr picture(float width, float height, int generation)
{
    auto p = std::make_shared<Object>("Picture");
    p->props = {{"Width", Value(width)}, {"Height", Value(height)}, {"Generation", Value(generation)}};
    return p;
}

static ObjectPtr font(float size)
{
    auto f = std::make_shared<Object>("Font");
    f->props = {{"Size", Value(size)}, {"Name", Value("Sans")}};
    return f;
}

ObjectPtr control(const std::string &name, float l, float t, float w, float h, const HostObjectPtr &container,
                  float fontSize)
{
    auto c = std::make_shared<Object>("TextBox");
    c->props = {{"Name", Value(name)},   {"Left", Value(l)},           {"Top", Value(t)},
                {"Width", Value(w)},     {"Height", Value(h)},
                {"Font", Value(HostObjectPtr(font(fontSize)))}};
    c->container = container;
    return c;
}

ObjectPtr form(float scaleWidth, float scaleHeight, int scaleMode)
{
    auto f = std::make_shared<Object>("Form");
    f->kinds.insert(HostKind::Form);
    f->props = {{"Name", Value("Form1")},          {"ScaleWidth", Value(scaleWidth)},
                {"ScaleHeight", Value(scaleHeight)}, {"ScaleMode", Value(scaleMode)},
                {"Picture", Value(HostObjectPtr(picture(0, 0)))}, {"BackColor", Value(0xffffff)}};
    return f;
}

ObjectPtr line(const std::string &name, float x1, float y1, float x2, float y2, const HostObjectPtr &container)
{
    auto l = std::make_shared<Object>("Line");
    l->kinds.insert(HostKind::Line);
    l->props = {{"Name", Value(name)}, {"X1", Value(x1)}, {"Y1", Value(y1)}, {"X2", Value(x2)},
                {"Y2", Value(y2)},     {"BorderWidth", Value(2.0f)}};
    l->container = container;
    return l;
}

EngineHost::EngineHost()
    : source(std::make_shared<Object>("PictureBox"))
    , canvas(std::make_shared<Object>("PictureBox"))
    , formPic(std::make_shared<Object>("PictureBox"))
{
    source->autoSize = true;
    for (auto *box : {source.get(), canvas.get(), formPic.get()})
        box->props = {{"Picture", Value()}, {"Width", Value(0.0f)}, {"Height", Value(0.0f)},
                      {"BackColor", Value(0)}, {"Image", Value()}};
}

velmora::HostObject &EngineHost::pictureBox(velmora::PictureBoxId id)
{
    switch (id) {
    case velmora::PictureBoxId::SizerSource:
        return *source;
    case velmora::PictureBoxId::SizerCanvas:
        return *canvas;
    default:
        return *formPic;
    }
}

} // namespace fake
