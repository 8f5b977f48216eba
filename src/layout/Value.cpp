#include "layout/Value.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace velmora {

namespace {

std::optional<double> parseNumber(const std::string &s)
{
    if (s.empty())
        return std::nullopt;
    char *end = nullptr;
    const double d = std::strtod(s.c_str(), &end);
    while (end && *end == ' ')
        ++end;
    if (!end || *end != '\0')
        return std::nullopt;
    return d;
}

} // namespace

bool Value::isNumber() const
{
    return std::holds_alternative<std::int32_t>(m_v) || std::holds_alternative<float>(m_v)
        || std::holds_alternative<double>(m_v);
}

std::optional<double> Value::toDouble() const
{
    if (auto b = std::get_if<bool>(&m_v))
        return *b ? -1.0 : 0.0;
    if (auto i = std::get_if<std::int32_t>(&m_v))
        return static_cast<double>(*i);
    if (auto f = std::get_if<float>(&m_v))
        return static_cast<double>(*f);
    if (auto d = std::get_if<double>(&m_v))
        return *d;
    if (auto s = std::get_if<std::string>(&m_v))
        return parseNumber(*s);
    return std::nullopt;
}

std::optional<float> Value::toSingle() const
{
    if (auto f = std::get_if<float>(&m_v))
        return *f;
    const auto d = toDouble();
    if (!d)
        return std::nullopt;
    // A finite double beyond the single range is an overflow, not infinity.
    if (std::isfinite(*d) && std::fabs(*d) > std::numeric_limits<float>::max())
        return std::nullopt;
    return static_cast<float>(*d);
}

std::optional<std::int32_t> Value::toLong() const
{
    if (auto i = std::get_if<std::int32_t>(&m_v))
        return *i;
    const auto d = toDouble();
    if (!d || !std::isfinite(*d))
        return std::nullopt;
    const double r = std::nearbyint(*d); // halves to even
    if (r < std::numeric_limits<std::int32_t>::min() || r > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(r);
}

std::optional<bool> Value::toBool() const
{
    if (auto b = std::get_if<bool>(&m_v))
        return *b;
    if (auto s = std::get_if<std::string>(&m_v)) {
        if (*s == "True" || *s == "true")
            return true;
        if (*s == "False" || *s == "false")
            return false;
    }
    const auto d = toDouble();
    if (!d)
        return std::nullopt;
    return *d != 0.0;
}

std::optional<std::string> Value::toText() const
{
    if (auto s = std::get_if<std::string>(&m_v))
        return *s;
    if (auto b = std::get_if<bool>(&m_v))
        return std::string(*b ? "True" : "False");
    if (auto i = std::get_if<std::int32_t>(&m_v))
        return std::to_string(*i);
    if (isNumber()) {
        const double d = *toDouble();
        if (std::nearbyint(d) == d && std::fabs(d) < 1e15)
            return std::to_string(static_cast<long long>(d));
        std::string s = std::to_string(d);
        while (!s.empty() && s.back() == '0')
            s.pop_back();
        return s;
    }
    if (isEmpty())
        return std::string();
    return std::nullopt;
}

HostObjectPtr Value::toObject() const
{
    if (auto o = std::get_if<HostObjectPtr>(&m_v))
        return *o;
    return nullptr;
}

std::string HostError::message() const
{
    if (code == HostErrc::NoSuchMember)
        return "Object doesn't support this property or method: " + description;
    return description;
}

} // namespace velmora
