#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rekenhart {

/// The key lines of an input file, in their order; keys compare without regard
/// to case, texts are UTF-8.
///
/// What stands before the first "=" is the key, what stands behind it the
/// value. A value that begins with an apostrophe runs to the last apostrophe of
/// its line, since names may hold apostrophes that nobody escaped. A remark
/// (MEMO and the two explanations) may hold line breaks: when its line does not
/// end in an apostrophe it runs on to the first line that does, and what looks
/// like a key in there is none.
class InputFile {
public:
    /// `bytes` in Windows-1252, or in UTF-8 when they begin with its byte order
    /// mark: an editor that was used on the file may have put it there. Never
    /// fails: what is no key line is left out.
    explicit InputFile(std::string_view bytes);

    struct Line {
        std::string key; ///< upper case
        std::string value;
    };
    const std::vector<Line>& Lines() const { return m_lines; }
    /// Of a key that stands several times the last.
    std::optional<std::string> Value(std::string_view key) const;
    std::vector<std::string> Values(std::string_view key) const;

private:
    std::vector<Line> m_lines;
};

/// ASCII letters in upper case.
std::string UpperCase(std::string_view text);

} // namespace rekenhart
