#include "jet/sql/StatementError.h"

#include <algorithm>

namespace jet::sql {

namespace {

// A statement may be a megabyte long: only what stands around the place is shown.
constexpr std::size_t kShownBefore = 60;
constexpr std::size_t kShownBehind = 140;

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::string Excerpt(std::string_view statement, std::size_t position)
{
    const std::size_t place = std::min(position, statement.size());
    std::size_t first = place > kShownBefore ? place - kShownBefore : 0;
    std::size_t last = std::min(statement.size(), place + kShownBehind);
    while (first > 0 && IsContinuation(statement[first]))
        --first;
    while (last < statement.size() && IsContinuation(statement[last]))
        ++last;
    std::string shown = first > 0 ? "..." : "";
    for (const char c : statement.substr(first, last - first))
        shown += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    if (last < statement.size())
        shown += "...";
    return shown;
}

std::string Sentence(std::string problem, std::string_view statement, std::size_t position)
{
    while (!problem.empty() && problem.back() == '.')
        problem.pop_back();
    if (position == StatementError::kNoPlace)
        return problem + " (in de opdracht: " + Excerpt(statement, 0) + ").";
    const std::size_t place = std::min(position, statement.size());
    const auto characters = std::count_if(statement.begin(), statement.begin() + place,
                                          [](char c) { return !IsContinuation(c); });
    return problem + " (bij teken " + std::to_string(characters + 1) +
           " van de opdracht: " + Excerpt(statement, place) + ").";
}

} // namespace

StatementError::StatementError(ErrorKind kind, const std::string& problem,
                               std::string_view statement, std::size_t position)
    : Error(kind, Sentence(problem, statement, position)), m_problem(problem), m_position(position)
{}

} // namespace jet::sql
