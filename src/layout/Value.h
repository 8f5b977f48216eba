// Velmora - the value type that crosses the host-object interface.
//
// A host property is read and written as a Value: empty, a truth value, a
// 32-bit integer, a single- or double-precision number, a text, or a reference
// to another host object (a font, a picture, a collection, a control).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace velmora {

class HostObject;
using HostObjectPtr = std::shared_ptr<HostObject>;

// Why a host access failed. The engine never branches on the code except to
// pass it on through the Error event; it exists for diagnostics and tests.
enum class HostErrc {
    NoSuchMember,     // the object has no property or method of that name
    ReadOnly,         // the property exists but cannot be written now
    InvalidValue,     // the value was refused (range, type)
    IndexOutOfRange,  // an indexed member was given a bad index
    NotAnObject,      // an object was needed and something else came
    Arithmetic,       // division by zero, overflow
    Failed            // any other refusal by the toolkit
};

struct HostError {
    HostErrc code = HostErrc::Failed;
    // For NoSuchMember only the member's name: a missing member is asked for
    // on every widget in every pass, and its text is rarely read.
    std::string description;
    // The text to show.
    std::string message() const;
};

class Value {
public:
    using Storage = std::variant<std::monostate, bool, std::int32_t, float, double,
                                 std::string, HostObjectPtr>;

    Value() = default;
    Value(bool b) : m_v(b) {}
    Value(int i) : m_v(static_cast<std::int32_t>(i)) {}
    Value(float f) : m_v(f) {}
    Value(double d) : m_v(d) {}
    Value(const char *s) : m_v(std::string(s)) {}
    Value(std::string s) : m_v(std::move(s)) {}
    Value(HostObjectPtr o) : m_v(std::move(o)) {}

    bool isEmpty() const { return std::holds_alternative<std::monostate>(m_v); }
    bool isNumber() const;
    bool isText() const { return std::holds_alternative<std::string>(m_v); }
    bool isObject() const { return std::holds_alternative<HostObjectPtr>(m_v); }

    // Conversions in the host's manner: numbers and truth values convert into
    // each other (true is -1), texts holding a number convert to it. A value
    // that does not convert gives nullopt, which the caller treats as a failed
    // statement.
    std::optional<float> toSingle() const;
    std::optional<double> toDouble() const;
    std::optional<std::int32_t> toLong() const;
    std::optional<bool> toBool() const;
    std::optional<std::string> toText() const;
    // Empty values and null references both count as "nothing".
    HostObjectPtr toObject() const;

    const Storage &storage() const { return m_v; }

private:
    Storage m_v;
};

// The outcome of one host access: a value, or the reason it failed.
template <typename T>
class HostResult {
public:
    HostResult(T v) : m_v(std::move(v)) {}
    HostResult(HostError e) : m_v(std::move(e)) {}

    bool ok() const { return m_v.index() == 0; }
    explicit operator bool() const { return ok(); }
    const T &value() const { return std::get<0>(m_v); }
    const T &operator*() const { return value(); }
    const T *operator->() const { return &value(); }
    const HostError &error() const { return std::get<1>(m_v); }

private:
    std::variant<T, HostError> m_v;
};

using GetResult = HostResult<Value>;

// Success of a write or call that yields nothing.
struct Done {};
using SetResult = HostResult<Done>;

inline HostError hostError(HostErrc code, std::string description = {})
{
    return HostError{code, std::move(description)};
}

} // namespace velmora
