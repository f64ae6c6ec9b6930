#pragma once

#include <string>
#include <string_view>

namespace jet::sql {

/// A pattern of Like, taken apart once and matched against many texts:
/// `*` any characters, `?` one, `#` a digit, `[a-z]` one of these, `[!a-z]`
/// none of these; with percent wildcards `%` and `_` instead of `*` and `?`.
/// Case does not matter, accents do.
class LikePattern {
public:
    LikePattern(std::u16string_view pattern, bool percentWildcards);
    bool Matches(std::u16string_view text) const;

private:
    std::size_t MatchOne(std::size_t at, char16_t letter) const;

    std::u16string m_pattern; ///< in small letters
    char16_t m_any, m_one;
};

} // namespace jet::sql
