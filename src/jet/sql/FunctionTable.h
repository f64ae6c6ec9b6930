#pragma once

#include "jet/sql/Syntax.h"

#include <string_view>

namespace jet::sql {

/// How a function is written in SQLite's SQL: most are a call of a function
/// that we registered, some are built into the statement.
enum class FunctionForm {
    Call,
    IIf, ///< only the chosen branch is worked out
    Nz,
    Switch,
    Choose,
    IsNull,
    Moment, ///< Now, Date, Time: one value for the whole statement
    ToText,
    ToDouble,
};

struct FunctionInfo {
    std::string_view name;
    int minArguments, maxArguments;
    /// One letter an argument, the last repeats: T text, N number, A anything.
    std::string_view arguments;
    /// T text, L long, I integer, Y byte, D double, S single, C currency,
    /// N decimal, B boolean, M moment; 1 = as the first argument, * = the
    /// type that all the branches fit in.
    char result;
    FunctionForm form = FunctionForm::Call;
    std::string_view sqlName = {};
};

/// Without regard to case; nullptr when there is none.
const FunctionInfo* FindFunction(std::string_view name);

} // namespace jet::sql
