#pragma once

#include "jet/base/Error.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace jet::sql {

/// An error that knows the statement it arose in and, where there is one, the
/// place in it. what() tells all three in one Dutch sentence.
class StatementError : public Error {
public:
    static constexpr std::size_t kNoPlace = static_cast<std::size_t>(-1);

    /// `problem` is a sentence without its full stop; `position` counts bytes.
    StatementError(ErrorKind kind, const std::string& problem, std::string_view statement,
                   std::size_t position = kNoPlace);

    const std::string& Problem() const { return m_problem; }
    std::size_t Position() const { return m_position; }

private:
    std::string m_problem;
    std::size_t m_position;
};

} // namespace jet::sql
