#include "rekenhart/files/InputFile.h"

#include "rekenhart/files/TextEncoding.h"

#include <algorithm>

namespace rekenhart {

namespace {

constexpr char kQuote = '\'';
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view TakeLine(std::string_view& rest)
{
    const auto end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

bool MayHoldLineBreaks(std::string_view key)
{
    return key == "MEMO" || key == "TOESLAGWSMEMO" || key == "TOESLAGHBNMEMO";
}

bool EndsInQuote(std::string_view line)
{
    const std::string_view trimmed = Trim(line);
    return !trimmed.empty() && trimmed.back() == kQuote;
}

/// The text of a remark that `value` opens; takes the lines that belong to it.
std::string TakeRemark(std::string_view value, std::string_view& rest)
{
    std::string text(value.substr(1));
    if (value.size() > 1 && value.back() == kQuote) {
        text.pop_back();
        return text;
    }
    std::string_view ahead = rest;
    std::string longer = text;
    while (!ahead.empty()) {
        const std::string_view line = TakeLine(ahead);
        longer += '\n';
        longer += line;
        if (EndsInQuote(line)) {
            rest = ahead;
            return longer.substr(0, longer.rfind(kQuote));
        }
    }
    return text; // never closed: this line is all there is
}

std::string_view Unquote(std::string_view value)
{
    if (value.empty() || value.front() != kQuote)
        return value;
    const auto last = value.rfind(kQuote);
    return last == 0 ? value.substr(1) : value.substr(1, last - 1);
}

} // namespace

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return upper;
}

InputFile::InputFile(std::string_view bytes)
{
    if (bytes.starts_with(kUtf8Mark)) {
        *this = InputFile(ToWindows1252(bytes.substr(kUtf8Mark.size())));
        return;
    }
    while (!bytes.empty()) {
        const std::string_view line = Trim(TakeLine(bytes));
        const auto equals = line.find('=');
        if (line.empty() || line.front() == ';' || equals == std::string_view::npos)
            continue;
        const std::string key = UpperCase(Trim(line.substr(0, equals)));
        const std::string_view value = Trim(line.substr(equals + 1));
        const bool remark = MayHoldLineBreaks(key) && !value.empty() && value.front() == kQuote;
        m_lines.push_back({key, FromWindows1252(remark ? TakeRemark(value, bytes)
                                                       : std::string(Unquote(value)))});
    }
}

std::optional<std::string> InputFile::Value(std::string_view key) const
{
    const auto line = std::find_if(m_lines.rbegin(), m_lines.rend(),
                                   [&](const Line& one) { return one.key == key; });
    return line == m_lines.rend() ? std::nullopt : std::optional(line->value);
}

std::vector<std::string> InputFile::Values(std::string_view key) const
{
    std::vector<std::string> values;
    for (const Line& line : m_lines)
        if (line.key == key)
            values.push_back(line.value);
    return values;
}

} // namespace rekenhart
