#include "jet/sql/Like.h"

#include "jet/sql/LetterCase.h"

namespace jet::sql {

namespace {
constexpr std::size_t kNoMatch = static_cast<std::size_t>(-1);
}

LikePattern::LikePattern(std::u16string_view pattern, bool percentWildcards)
    : m_pattern(LowerCase(std::u16string(pattern))),
      m_any(percentWildcards ? u'%' : u'*'),
      m_one(percentWildcards ? u'_' : u'?')
{}

// The place behind the part of the pattern at `at` that one letter answers to,
// or kNoMatch. A bracket that is never closed stands for itself.
std::size_t LikePattern::MatchOne(std::size_t at, char16_t letter) const
{
    const char16_t part = m_pattern[at];
    if (part == m_one)
        return at + 1;
    if (part == u'#' && m_any == u'*')
        return letter >= u'0' && letter <= u'9' ? at + 1 : kNoMatch;
    if (part != u'[')
        return part == letter ? at + 1 : kNoMatch;

    std::size_t i = at + 1;
    const bool negated = i < m_pattern.size() && m_pattern[i] == u'!';
    i += negated ? 1 : 0;
    const std::size_t first = i;
    bool found = false;
    for (; i < m_pattern.size() && (m_pattern[i] != u']' || i == first); ++i) {
        if (i + 2 < m_pattern.size() && m_pattern[i + 1] == u'-' && m_pattern[i + 2] != u']') {
            found = found || (letter >= m_pattern[i] && letter <= m_pattern[i + 2]);
            i += 2;
        } else {
            found = found || letter == m_pattern[i];
        }
    }
    if (i >= m_pattern.size())
        return letter == u'[' ? at + 1 : kNoMatch;
    return found != negated ? i + 1 : kNoMatch;
}

// Goes back to the last star only: what earlier stars took needs no second try,
// so the time is bounded by pattern times text.
bool LikePattern::Matches(std::u16string_view text) const
{
    std::size_t at = 0, letter = 0;
    std::size_t starAt = kNoMatch, starLetter = 0;
    while (letter < text.size()) {
        if (at < m_pattern.size() && m_pattern[at] == m_any) {
            starAt = ++at;
            starLetter = letter;
            continue;
        }
        const std::size_t next =
            at < m_pattern.size() ? MatchOne(at, LowerCase(text[letter])) : kNoMatch;
        if (next != kNoMatch) {
            at = next;
            ++letter;
        } else if (starAt != kNoMatch) {
            at = starAt;
            letter = ++starLetter;
        } else {
            return false;
        }
    }
    while (at < m_pattern.size() && m_pattern[at] == m_any)
        ++at;
    return at == m_pattern.size();
}

} // namespace jet::sql
