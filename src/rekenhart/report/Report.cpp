#include "rekenhart/report/Report.h"

#include "rekenhart/files/TextEncoding.h"

#include <algorithm>

namespace rekenhart {

namespace {

constexpr std::size_t kLabelWidth = 34;

std::string Blanks(std::size_t width, std::string_view text)
{
    const std::size_t used = CharacterCount(text);
    return std::string(width > used ? width - used : 0, ' ');
}

} // namespace

void Report::Title(std::string_view text)
{
    Line(text);
    Line(std::string(CharacterCount(text), '='));
}

void Report::Section(std::string_view text)
{
    Line();
    Line(text);
    Line(std::string(CharacterCount(text), '-'));
}

void Report::Line(std::string_view text)
{
    m_text += text;
    m_text += '\n';
}

void Report::Item(std::string_view label, std::string_view value)
{
    std::string line = std::string(label) + Blanks(kLabelWidth, label);
    for (const char c : value) {
        line += c;
        if (c == '\n')
            line += std::string(kLabelWidth, ' ');
    }
    Line(line);
}

void Report::Table(const std::vector<std::string>& headings,
                   const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < headings.size(); ++column) {
        std::size_t width = CharacterCount(headings[column]);
        for (const auto& row : rows)
            width = std::max(width, CharacterCount(row[column]));
        widths.push_back(width);
    }
    const auto addRow = [&](const std::vector<std::string>& row) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string blanks = Blanks(widths[column], row[column]);
            line += column == 0 ? row[column] + blanks : "  " + blanks + row[column];
        }
        line.erase(line.find_last_not_of(' ') + 1);
        Line(line);
    };
    addRow(headings);
    for (const auto& row : rows)
        addRow(row);
}

} // namespace rekenhart
