#include "jet/base/Numbers.h"
#include "jet/index/TextKey.h"
#include "jet/sql/Functions.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace jet::sql {

namespace {

[[noreturn]] void ThrowOverflow()
{
    throw Error(ErrorKind::Overflow, "De uitkomst is te groot.");
}

double Finite(double value)
{
    if (!std::isfinite(value))
        ThrowOverflow();
    return value;
}

std::int64_t Rounded(double number, double lowest, double highest, const char* kind)
{
    const double whole = RoundHalfToEven(number);
    if (!(whole >= lowest && whole <= highest))
        throw Error(ErrorKind::Overflow,
                    "De waarde " + TextFromDouble(number) + " past niet in " + kind + ".");
    return static_cast<std::int64_t>(whole);
}

double Domain(double number, bool good, const char* function)
{
    if (!good)
        throw Error(ErrorKind::BadValue, std::string("De functie ") + function +
                                             " kan niet met de waarde " + TextFromDouble(number) +
                                             " werken.");
    return number;
}

// --- conversions ------------------------------------------------------------

void Num(const Arguments& a)
{
    if (!a.IsText(0)) {
        a.Same(0);
        return;
    }
    if (const auto number = DoubleFromText(a.Text(0)))
        a.Result(*number);
    else
        throw Error(ErrorKind::TypeMismatch,
                    "De tekst \"" + std::string(a.Text(0).substr(0, 60)) + "\" is geen getal");
}

// jet_text(value, type): a number as text, as its type writes it.
void Text(const Arguments& a)
{
    if (a.IsText(0)) {
        a.Same(0);
        return;
    }
    switch (static_cast<ColumnType>(a.Integer(1))) {
    case ColumnType::DateTime:
        a.Result(TextFromDateTime({a.Number(0)}));
        break;
    case ColumnType::Single:
        a.Result(TextFromDouble(a.Number(0), 7));
        break;
    case ColumnType::Currency:
        a.Result(Value(a.Number(0)).ConvertedTo(ColumnType::Currency).AsText());
        break;
    default:
        if (a.IsInteger(0))
            a.Result(std::to_string(a.Integer(0)));
        else
            a.Result(TextFromDouble(a.Number(0)));
        break;
    }
}

void CLng(const Arguments& a)
{
    a.Result(std::int64_t{WholeNumber(a.Number(0))});
}

void CInt(const Arguments& a)
{
    a.Result(Rounded(a.Number(0), -32768, 32767, "een geheel getal van 16 bits"));
}

void CByte(const Arguments& a)
{
    a.Result(Rounded(a.Number(0), 0, 255, "een byte"));
}

void CBool(const Arguments& a)
{
    a.Result(std::int64_t{a.Number(0) != 0 ? -1 : 0});
}

void CSng(const Arguments& a)
{
    const auto single = static_cast<float>(a.Number(0));
    if (!std::isfinite(single))
        ThrowOverflow();
    a.Result(static_cast<double>(single));
}

void CCur(const Arguments& a)
{
    a.Result(Value(a.Number(0)).ConvertedTo(ColumnType::Currency).AsDouble());
}

// The number that a text begins with; blanks anywhere in it do not count.
void Val(const Arguments& a)
{
    std::string text;
    for (const char c : a.Text(0)) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            text += c;
    }
    if (text.size() > 2 && text[0] == '&' && ((text[1] | 0x20) == 'h' || (text[1] | 0x20) == 'o')) {
        std::uint32_t number = 0;
        std::from_chars(text.data() + 2, text.data() + text.size(), number,
                        (text[1] | 0x20) == 'h' ? 16 : 8);
        a.Result(static_cast<double>(static_cast<std::int32_t>(number)));
        return;
    }
    const char* first = text.data();
    const char* last = first + text.size();
    const bool plus = first != last && *first == '+';
    double number = 0;
    const bool digit = last - first > plus && (first[plus] == '-' || first[plus] == '.' ||
                                               (first[plus] >= '0' && first[plus] <= '9'));
    if (digit) {
        const auto result = std::from_chars(first + plus, last, number);
        if (result.ec == std::errc::result_out_of_range)
            ThrowOverflow();
    }
    a.Result(number);
}

void Str(const Arguments& a)
{
    const std::string text =
        a.IsInteger(0) ? std::to_string(a.Integer(0)) : TextFromDouble(a.Number(0));
    a.Result(text.front() == '-' ? text : " " + text); // room for the sign
}

std::string InBase(double number, int base)
{
    char digits[40];
    const auto bits = static_cast<std::uint32_t>(WholeNumber(number));
    const auto end = std::to_chars(digits, digits + sizeof digits, bits, base).ptr;
    for (char* c = digits; c != end; ++c)
        *c = *c >= 'a' ? static_cast<char>(*c - 32) : *c;
    return {digits, end};
}

void Hex(const Arguments& a)
{
    a.Result(InBase(a.Number(0), 16));
}

void Oct(const Arguments& a)
{
    a.Result(InBase(a.Number(0), 8));
}

void IsNumeric(const Arguments& a)
{
    const bool yes = a.IsText(0) ? DoubleFromText(a.Text(0)).has_value() : !a.IsNull(0);
    a.Result(std::int64_t{yes ? -1 : 0});
}

// --- arithmetic ---------------------------------------------------------------

void IntegerDivide(const Arguments& a)
{
    const std::int64_t left = WholeNumber(a.Number(0)), right = WholeNumber(a.Number(1));
    if (right == 0)
        a.Null();
    else
        a.Result(left / right);
}

void Mod(const Arguments& a)
{
    const std::int64_t left = WholeNumber(a.Number(0)), right = WholeNumber(a.Number(1));
    if (right == 0)
        a.Null();
    else
        a.Result(left % right);
}

void Pow(const Arguments& a)
{
    const double base = a.Number(0), exponent = a.Number(1);
    if (base == 0 && exponent < 0) { // a division by zero
        a.Null();
        return;
    }
    Domain(base, base >= 0 || exponent == std::floor(exponent), "^");
    a.Result(Finite(std::pow(base, exponent)));
}

template <double (*function)(double)>
void Rounding(const Arguments& a)
{
    if (a.IsInteger(0))
        a.Same(0);
    else
        a.Result(function(a.Number(0)));
}

void Round(const Arguments& a)
{
    const std::int32_t digits = a.Count() > 1 ? WholeNumber(a.Number(1)) : 0;
    if (digits < 0 || digits > 22)
        throw Error(ErrorKind::BadValue, "Round rondt af op 0 tot 22 decimalen.");
    if (a.IsInteger(0)) {
        a.Same(0);
        return;
    }
    const double factor = std::pow(10.0, digits);
    const double scaled = a.Number(0) * factor;
    // Beyond 2^53 there are no decimals left to round.
    a.Result(std::abs(scaled) < 9007199254740992.0 ? RoundHalfToEven(scaled) / factor
                                                   : a.Number(0));
}

void Sgn(const Arguments& a)
{
    a.Result(std::int64_t{(a.Number(0) > 0) - (a.Number(0) < 0)});
}

void Sqr(const Arguments& a)
{
    a.Result(std::sqrt(Domain(a.Number(0), a.Number(0) >= 0, "Sqr")));
}

void Log(const Arguments& a)
{
    a.Result(std::log(Domain(a.Number(0), a.Number(0) > 0, "Log")));
}

template <double (*function)(double)>
void Plain(const Arguments& a)
{
    a.Result(Finite(function(a.Number(0))));
}

void Rnd(const Arguments& a)
{
    static thread_local std::mt19937 generator{std::random_device{}()};
    a.Result(static_cast<double>(std::uniform_real_distribution<float>(0.0F, 1.0F)(generator)));
}

int Compare(void*, int firstSize, const void* first, int secondSize, const void* second) noexcept
{
    const std::string_view a(static_cast<const char*>(first), static_cast<std::size_t>(firstSize));
    const std::string_view b(static_cast<const char*>(second),
                             static_cast<std::size_t>(secondSize));
    return a == b ? 0 : CompareText(a, b);
}

} // namespace

std::int32_t WholeNumber(double number)
{
    return static_cast<std::int32_t>(
        Rounded(number, -2147483648.0, 2147483647.0, "een geheel getal van 32 bits"));
}

void RegisterNumberFunctions(sqlite3* db, PendingError& errors)
{
    AddFunction<Num>(db, errors, "jet_num", 1);
    AddFunction<Text>(db, errors, "jet_text", 2);
    AddFunction<CLng>(db, errors, "jet_clng", 1);
    AddFunction<CInt>(db, errors, "jet_cint", 1);
    AddFunction<CByte>(db, errors, "jet_cbyte", 1);
    AddFunction<CBool>(db, errors, "jet_cbool", 1);
    AddFunction<CSng>(db, errors, "jet_csng", 1);
    AddFunction<CCur>(db, errors, "jet_ccur", 1);
    AddFunction<Val>(db, errors, "jet_val", 1);
    AddFunction<Str>(db, errors, "jet_str", 1);
    AddFunction<Hex>(db, errors, "jet_hex", 1);
    AddFunction<Oct>(db, errors, "jet_oct", 1);
    AddFunction<IsNumeric, true>(db, errors, "jet_isnumeric", 1);
    AddFunction<IntegerDivide>(db, errors, "jet_idiv", 2);
    AddFunction<Mod>(db, errors, "jet_mod", 2);
    AddFunction<Pow>(db, errors, "jet_pow", 2);
    AddFunction<Rounding<std::floor>>(db, errors, "jet_int", 1);
    AddFunction<Rounding<std::trunc>>(db, errors, "jet_fix", 1);
    AddFunction<Round>(db, errors, "jet_round", 1);
    AddFunction<Round>(db, errors, "jet_round", 2);
    AddFunction<Sgn>(db, errors, "jet_sgn", 1);
    AddFunction<Sqr>(db, errors, "jet_sqr", 1);
    AddFunction<Log>(db, errors, "jet_log", 1);
    AddFunction<Plain<std::exp>>(db, errors, "jet_exp", 1);
    AddFunction<Plain<std::sin>>(db, errors, "jet_sin", 1);
    AddFunction<Plain<std::cos>>(db, errors, "jet_cos", 1);
    AddFunction<Plain<std::tan>>(db, errors, "jet_tan", 1);
    AddFunction<Plain<std::atan>>(db, errors, "jet_atn", 1);
    AddFunction<Rnd, true>(db, errors, "jet_rnd", 0, 0);
    AddFunction<Rnd, true>(db, errors, "jet_rnd", 1, 0);
}

void RegisterFunctions(sqlite3* db, PendingError& errors)
{
    sqlite3_create_collation_v2(db, "JET", SQLITE_UTF8, nullptr, Compare, nullptr);
    RegisterNumberFunctions(db, errors);
    RegisterTextFunctions(db, errors);
    RegisterDateFunctions(db, errors);
    RegisterFormatFunction(db, errors);
    RegisterAggregates(db, errors);
}

} // namespace jet::sql
