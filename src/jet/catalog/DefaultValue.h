#pragma once

#include "jet/base/Value.h"

#include <optional>
#include <string_view>

namespace jet {

/// The default value of a field, read once from its expression and asked for
/// every new row: a number, a text between quotes, True or False, Null, a
/// #date#, or one of Date(), Time() and Now(), with or without "=" before it.
class DefaultValue {
public:
    /// Nothing when the expression is of another kind.
    static std::optional<DefaultValue> Parse(std::string_view expression);

    Value Evaluate() const;

private:
    enum class Kind { Constant, Date, Time, Now };
    DefaultValue(Kind kind, Value constant) : m_kind(kind), m_constant(std::move(constant)) {}

    Kind m_kind;
    Value m_constant;
};

} // namespace jet
