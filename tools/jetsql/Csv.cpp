#include "Csv.h"

#include "jet/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace jetsql {

namespace {

template <typename Number>
void AppendNumber(std::string& line, Number value)
{
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    line.append(digits, end);
}

/// A number with up to six decimals, as most are, is written from its digits:
/// twice as fast as the search for the shortest text, and never as 1e+05.
bool AppendShortNumber(std::string& line, double value)
{
    constexpr double limit = 1e9, scale = 1e6;
    constexpr int decimals = 6;
    if (!(value > -limit && value < limit) || (value == 0 && std::signbit(value)))
        return false;
    const double scaled = std::nearbyint(value * scale);
    if (scaled / scale != value)
        return false; // more digits: this text would be read as another number
    auto digits = static_cast<std::int64_t>(std::abs(scaled));
    char text[24];
    char* start = text + sizeof text;
    bool significant = false; // trailing zeros of the decimals are left out
    for (int i = 0; i < decimals; ++i, digits /= 10) {
        const auto digit = static_cast<char>('0' + digits % 10);
        significant = significant || digit != '0';
        if (significant)
            *--start = digit;
    }
    if (significant)
        *--start = '.';
    do {
        *--start = static_cast<char>('0' + digits % 10);
        digits /= 10;
    } while (digits != 0);
    if (value < 0)
        *--start = '-';
    line.append(start, text + sizeof text);
    return true;
}

void AppendNumber(std::string& line, double value)
{
    if (!AppendShortNumber(line, value))
        AppendNumber<double>(line, value);
}

void AppendTwoDigits(std::string& line, int value)
{
    line += static_cast<char>('0' + value / 10);
    line += static_cast<char>('0' + value % 10);
}

void AppendDate(std::string& line, jet::DateTime moment)
{
    const auto civil = moment.ToCivil();
    if (civil.year >= 0 && civil.year <= 9999) {
        AppendTwoDigits(line, civil.year / 100);
        AppendTwoDigits(line, civil.year % 100);
    } else {
        AppendNumber(line, civil.year);
    }
    for (const auto& [separator, value] : {std::pair{'-', civil.month},
                                           {'-', civil.day},
                                           {' ', civil.hour},
                                           {':', civil.minute},
                                           {':', civil.second}}) {
        line += separator;
        AppendTwoDigits(line, value);
    }
}

void AppendHex(std::string& line, const jet::Bytes& bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    for (const std::byte byte : bytes) {
        line += digits[std::to_integer<unsigned>(byte) >> 4];
        line += digits[std::to_integer<unsigned>(byte) & 15];
    }
}

bool NeedsQuotes(char c)
{
    return c == ',' || c == '"' || c == '\r' || c == '\n';
}

void AppendQuoted(std::string& line, std::string_view text)
{
    if (!text.empty() && std::ranges::none_of(text, NeedsQuotes) && text.front() != ' ' &&
        text.back() != ' ') {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) {
        if (c == '"')
            line += '"';
        line += c;
    }
    line += '"';
}

/// What CSV and JSON write alike.
struct Plain {
    std::string& line;

    void operator()(std::uint8_t v) const { AppendNumber(line, static_cast<int>(v)); }
    void operator()(std::int16_t v) const { AppendNumber(line, v); }
    void operator()(std::int32_t v) const { AppendNumber(line, v); }
    void operator()(jet::Currency v) const { line += jet::TextFromCurrency(v); }
    void operator()(float v) const { AppendNumber(line, v); }
    void operator()(double v) const { AppendNumber(line, v); }
    void operator()(const jet::Decimal& v) const { line += jet::TextFromDecimal(v); }
};

struct AsCsv : Plain {
    using Plain::operator();
    void operator()(std::monostate) const {}
    void operator()(bool v) const { line += v ? '1' : '0'; }
    void operator()(jet::DateTime v) const { AppendDate(line, v); }
    void operator()(const std::string& v) const { AppendQuoted(line, v); }
    void operator()(const jet::Bytes& v) const
    {
        if (v.empty())
            line += "\"\"";
        AppendHex(line, v);
    }
    void operator()(const jet::Guid& v) const { line += jet::TextFromGuid(v); }
};

struct AsJson : Plain {
    using Plain::operator();
    void operator()(std::monostate) const { line += "null"; }
    void operator()(bool v) const { line += v ? "true" : "false"; }
    void operator()(float v) const { Finite(v); }
    void operator()(double v) const { Finite(v); }
    void operator()(jet::DateTime v) const
    {
        line += '"';
        AppendDate(line, v);
        line += '"';
    }
    void operator()(const std::string& v) const { AppendJsonText(line, v); }
    void operator()(const jet::Bytes& v) const
    {
        line += '"';
        AppendHex(line, v);
        line += '"';
    }
    void operator()(const jet::Guid& v) const { AppendJsonText(line, jet::TextFromGuid(v)); }

    template <typename Number>
    void Finite(Number v) const
    {
        if (std::isfinite(v))
            AppendNumber(line, v);
        else
            line += "null";
    }
};

} // namespace

void AppendCsv(std::string& line, const jet::Value& value)
{
    std::visit(AsCsv{{line}}, value.Raw());
}

void AppendJson(std::string& line, const jet::Value& value)
{
    std::visit(AsJson{{line}}, value.Raw());
}

void AppendJsonText(std::string& line, std::string_view text)
{
    line += '"';
    for (const char c : text) {
        switch (c) {
        case '"':
            line += "\\\"";
            break;
        case '\\':
            line += "\\\\";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\t':
            line += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
                line += escape;
            } else {
                line += c;
            }
        }
    }
    line += '"';
}

CsvReader::CsvReader(std::istream& in) : m_in(in)
{
    if (m_in.peek() == 0xEF) {
        char mark[3];
        m_in.read(mark, 3);
    }
}

void CsvReader::Fail(const char* what) const
{
    throw std::runtime_error("Regel " + std::to_string(m_recordLine) +
                             " van het CSV-bestand: " + what + '.');
}

int CsvReader::Get()
{
    const int c = m_in.get();
    if (c == '\n')
        ++m_line;
    return c;
}

bool CsvReader::Next(std::vector<CsvField>& fields)
{
    fields.clear();
    m_recordLine = m_line;
    if (m_in.peek() == std::char_traits<char>::eof())
        return false;
    for (;;) {
        std::string text;
        bool quoted = false;
        int c = Get();
        if (c == '"') {
            quoted = true;
            for (;;) {
                c = Get();
                if (c == std::char_traits<char>::eof())
                    Fail("een aanhalingsteken wordt niet gesloten");
                if (c == '"') {
                    c = Get();
                    if (c != '"')
                        break;
                }
                text += static_cast<char>(c);
            }
            if (c == '\r' && m_in.peek() == '\n')
                c = Get();
            if (c != ',' && c != '\n' && c != std::char_traits<char>::eof())
                Fail("achter een aanhalingsteken staat nog tekst");
        } else {
            while (c != ',' && c != '\n' && c != std::char_traits<char>::eof()) {
                text += static_cast<char>(c);
                c = Get();
            }
            if (c != ',' && text.ends_with('\r'))
                text.pop_back();
        }
        if (quoted || !text.empty())
            fields.emplace_back(std::move(text));
        else
            fields.emplace_back(std::nullopt);
        if (c != ',')
            return true;
    }
}

} // namespace jetsql
