#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rekenhart {

/// Builds a plain-text report in fixed columns (UTF-8, lines end in "\n").
class Report {
public:
    void Title(std::string_view text);
    void Section(std::string_view text); ///< with a blank line before it
    void Line(std::string_view text = {});
    /// `label` and `value` in two columns; a value of several lines stays in its column.
    void Item(std::string_view label, std::string_view value);
    /// The first column is left-aligned, the others right; as wide as they need.
    void Table(const std::vector<std::string>& headings,
               const std::vector<std::vector<std::string>>& rows);

    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

} // namespace rekenhart
