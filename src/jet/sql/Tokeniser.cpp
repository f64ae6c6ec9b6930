#include "jet/sql/Tokeniser.h"

#include "jet/base/Text.h"
#include "jet/base/Value.h"
#include "jet/sql/StatementError.h"

#include <array>
#include <charconv>

namespace jet::sql {

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

bool StartsWord(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

class Cutter {
public:
    explicit Cutter(std::string_view statement) : m_statement(statement) {}

    std::vector<Token> Run()
    {
        std::vector<Token> tokens;
        tokens.reserve(m_statement.size() / 4 + 8);
        do {
            tokens.push_back(Next());
        } while (tokens.back().kind != TokenKind::End);
        return tokens;
    }

private:
    char At(std::size_t i) const { return i < m_statement.size() ? m_statement[i] : '\0'; }

    [[noreturn]] void Fail(std::size_t position, const std::string& problem) const
    {
        throw StatementError(ErrorKind::Syntax, problem, m_statement, position);
    }

    Token Next()
    {
        while (m_at < m_statement.size() && IsBlank(m_statement[m_at]))
            ++m_at;
        Token token;
        token.position = m_at;
        if (m_at < m_statement.size())
            Read(token);
        token.end = m_at;
        return token;
    }

    void Read(Token& token)
    {
        const char c = m_statement[m_at];
        if (StartsWord(c))
            ReadWord(token);
        else if (IsDigit(c) || (c == '.' && IsDigit(At(m_at + 1))))
            ReadNumber(token);
        else if (c == '"' || c == '\'')
            ReadText(token, c);
        else if (c == '[')
            ReadName(token, ']');
        else if (c == '`')
            ReadName(token, '`');
        else if (c == '#')
            ReadDate(token);
        else
            ReadSymbol(token);
    }

    void ReadWord(Token& token)
    {
        token.kind = TokenKind::Word;
        std::size_t end = m_at + 1;
        while (end < m_statement.size() &&
               (StartsWord(m_statement[end]) || IsDigit(m_statement[end])))
            ++end;
        token.text = m_statement.substr(m_at, end - m_at);
        m_at = end;
        if (At(m_at) == '$' && At(m_at + 1) == '(') // Left$( is Left(
            ++m_at;
    }

    void ReadNumber(Token& token)
    {
        std::size_t end = m_at;
        bool whole = true;
        while (IsDigit(At(end)))
            ++end;
        if (At(end) == '.') {
            whole = false;
            ++end;
            while (IsDigit(At(end)))
                ++end;
        }
        if ((At(end) | 0x20) == 'e') {
            const std::size_t digits = end + (At(end + 1) == '+' || At(end + 1) == '-' ? 2 : 1);
            if (IsDigit(At(digits))) {
                whole = false;
                end = digits;
                while (IsDigit(At(end)))
                    ++end;
            }
        }
        const char* first = m_statement.data() + m_at;
        const char* last = m_statement.data() + end;
        token.kind = TokenKind::Real;
        if (whole && std::from_chars(first, last, token.integer).ec == std::errc()) {
            token.kind = TokenKind::Integer;
            token.number = static_cast<double>(token.integer);
        } else if (const auto result = std::from_chars(first, last, token.number);
                   result.ec != std::errc() && !IsTiny(first, last)) {
            throw StatementError(ErrorKind::Overflow, "Het getal is te groot", m_statement, m_at);
        }
        m_at = end;
    }

    // from_chars refuses a number that is too small as it does one too large.
    static bool IsTiny(const char* first, const char* last)
    {
        const std::string_view text(first, static_cast<std::size_t>(last - first));
        return text.find("e-") != text.npos || text.find("E-") != text.npos;
    }

    void ReadText(Token& token, char quote)
    {
        token.kind = TokenKind::Text;
        const std::size_t start = m_at++;
        for (;;) {
            const std::size_t end = m_statement.find(quote, m_at);
            if (end == m_statement.npos)
                Fail(start, "De tekst heeft geen aanhalingsteken aan het einde");
            token.text.append(m_statement, m_at, end - m_at);
            m_at = end + 1;
            if (At(m_at) != quote || m_at >= m_statement.size())
                return;
            token.text += quote;
            ++m_at;
        }
    }

    void ReadName(Token& token, char close)
    {
        token.kind = TokenKind::Name;
        const std::size_t end = m_statement.find(close, m_at + 1);
        if (end == m_statement.npos)
            Fail(m_at, "De naam heeft geen haakje aan het einde");
        token.text = m_statement.substr(m_at + 1, end - m_at - 1);
        if (token.text.empty())
            Fail(m_at, "De naam tussen de haakjes is leeg");
        m_at = end + 1;
    }

    void ReadDate(Token& token)
    {
        token.kind = TokenKind::Date;
        const std::size_t end = m_statement.find('#', m_at + 1);
        if (end == m_statement.npos)
            Fail(m_at, "De datum heeft geen # aan het einde");
        if (!ParseDateText(m_statement.substr(m_at + 1, end - m_at - 1), token.number))
            Fail(m_at, "Dit is geen datum");
        m_at = end + 1;
    }

    void ReadSymbol(Token& token)
    {
        static constexpr std::array<std::string_view, 3> kDouble = {"<>", "<=", ">="};
        static constexpr std::string_view kSingle = "=<>+-*/\\^&(),.;!";
        token.kind = TokenKind::Symbol;
        for (const std::string_view symbol : kDouble) {
            if (m_statement.substr(m_at, 2) == symbol) {
                token.text = symbol;
                m_at += 2;
                return;
            }
        }
        if (m_statement[m_at] == '\0' || kSingle.find(m_statement[m_at]) == kSingle.npos)
            Fail(m_at, "Onverwacht teken");
        token.text = m_statement[m_at++];
    }

    std::string_view m_statement;
    std::size_t m_at = 0;
};

/// The numbers and words of a date text, with the mark before each.
struct DatePiece {
    char mark = ' ';
    int number = -1;
    int digits = 0;
    std::string word;
};

bool CutDate(std::string_view text, std::vector<DatePiece>& pieces)
{
    char mark = ' ';
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (IsDigit(c)) {
            DatePiece piece{mark, 0, 0, {}};
            while (i < text.size() && IsDigit(text[i]) && piece.digits < 5) {
                piece.number = piece.number * 10 + (text[i++] - '0');
                ++piece.digits;
            }
            pieces.push_back(piece);
            mark = ' ';
        } else if (StartsWord(c)) {
            DatePiece piece{mark, -1, 0, {}};
            while (i < text.size() && StartsWord(text[i]))
                piece.word += text[i++];
            for (char& letter : piece.word)
                letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
            if (piece.word == "T" && !pieces.empty()) { // 2001-02-03T04:05
                mark = ' ';
                continue;
            }
            pieces.push_back(piece);
            mark = ' ';
        } else if (IsBlank(c)) {
            ++i;
        } else if (c == '/' || c == '-' || c == ':' || c == ',' || c == '.') {
            mark = c;
            ++i;
        } else {
            return false;
        }
        if (pieces.size() > 8)
            return false;
    }
    return !pieces.empty();
}

int MonthOfWord(const std::string& word)
{
    static constexpr std::array<std::string_view, 12> kMonths = {
        "JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    for (std::size_t i = 0; i < kMonths.size(); ++i) {
        if (word.size() >= 3 && word.compare(0, 3, kMonths[i]) == 0)
            return static_cast<int>(i) + 1;
    }
    if (word.compare(0, 3, "MRT") == 0 || word == "MAART")
        return 3;
    if (word.compare(0, 3, "MEI") == 0)
        return 5;
    if (word.compare(0, 3, "OKT") == 0)
        return 10;
    return 0;
}

int DaysInMonth(int year, int month)
{
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

int FullYear(const DatePiece& piece)
{
    if (piece.digits > 2)
        return piece.number;
    return piece.number < 30 ? 2000 + piece.number : 1900 + piece.number;
}

} // namespace

bool Token::IsWord(std::string_view keyword) const
{
    return kind == TokenKind::Word && text.size() == keyword.size() && NamesEqual(text, keyword);
}

std::vector<Token> Tokenise(std::string_view statement)
{
    return Cutter(statement).Run();
}

bool ParseDateText(std::string_view text, double& days)
{
    std::vector<DatePiece> pieces;
    if (!CutDate(text, pieces))
        return false;

    // The time is what a colon joins to its neighbour; AM or PM stands behind it.
    std::vector<DatePiece> date, time;
    int halfDay = -1;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const DatePiece& piece = pieces[i];
        if (piece.word == "AM" || piece.word == "PM") {
            halfDay = piece.word == "PM" ? 12 : 0;
            if (time.empty() && !date.empty() && date.back().mark == ' ') { // "3 PM"
                time.push_back(date.back());
                date.pop_back();
            }
        } else if (piece.mark == ':' || (i + 1 < pieces.size() && pieces[i + 1].mark == ':')) {
            time.push_back(piece);
        } else {
            date.push_back(piece);
        }
    }
    if (time.size() > 3 || (time.empty() && halfDay >= 0) || (date.empty() && time.empty()))
        return false;

    int year = 1899, month = 12, day = 30;
    if (date.size() == 3) {
        if (date[0].digits == 4) { // year-month-day
            year = date[0].number;
            month = date[1].number > 0 ? date[1].number : MonthOfWord(date[1].word);
            day = date[2].number;
        } else if (!date[0].word.empty() || !date[1].word.empty()) {
            const bool monthFirst = !date[0].word.empty();
            month = MonthOfWord(date[monthFirst ? 0 : 1].word);
            day = date[monthFirst ? 1 : 0].number;
            year = FullYear(date[2]);
        } else { // the order of the United States, whatever the machine's settings
            month = date[0].number;
            day = date[1].number;
            year = FullYear(date[2]);
            if (month > 12 && day <= 12)
                std::swap(month, day);
        }
        if (date[2].number < 0)
            return false;
    } else if (!date.empty()) {
        return false;
    }
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day > DaysInMonth(year, month))
        return false;

    int clock[3] = {0, 0, 0};
    for (std::size_t i = 0; i < time.size(); ++i)
        clock[i] = time[i].number;
    if (halfDay >= 0) {
        if (clock[0] < 1 || clock[0] > 12)
            return false;
        clock[0] = clock[0] % 12 + halfDay;
    }
    if (clock[0] < 0 || clock[0] > 23 || clock[1] < 0 || clock[1] > 59 || clock[2] < 0 ||
        clock[2] > 59)
        return false;
    days = DateTime::FromCivil(year, month, day, clock[0], clock[1], clock[2]).days;
    return true;
}

std::size_t EndOfFirstStatement(std::string_view script)
{
    for (std::size_t i = 0; i < script.size(); ++i) {
        const char c = script[i];
        if (c == ';')
            return i;
        if (c == '"' || c == '\'' || c == '[' || c == '`') {
            const std::size_t end = script.find(c == '[' ? ']' : c, i + 1);
            if (end == script.npos)
                return script.size();
            i = end;
        }
    }
    return script.size();
}

} // namespace jet::sql
