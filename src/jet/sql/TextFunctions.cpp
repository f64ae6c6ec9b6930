#include "jet/base/Text.h"
#include "jet/index/TextKey.h"
#include "jet/sql/Functions.h"
#include "jet/sql/LetterCase.h"
#include "jet/sql/Like.h"

#include <algorithm>

namespace jet::sql {

namespace {

// Positions and lengths count UTF-16 units, as they do in the file.
constexpr std::size_t kLongest = 1u << 24;

std::u16string Wide(const Arguments& a, int i)
{
    return Utf16FromUtf8(a.Text(i));
}

void Give(const Arguments& a, const std::u16string& text)
{
    a.Result(Utf8FromUtf16(text));
}

std::size_t Length(const Arguments& a, int i, const char* function)
{
    const std::int32_t length = WholeNumber(a.Number(i));
    if (length < 0)
        throw Error(ErrorKind::BadValue, std::string("De functie ") + function +
                                             " kan niet met een negatieve lengte werken.");
    return static_cast<std::size_t>(length);
}

std::size_t Start(const Arguments& a, int i, const char* function)
{
    const std::int32_t start = WholeNumber(a.Number(i));
    if (start < 1)
        throw Error(ErrorKind::BadValue,
                    std::string("De functie ") + function + " begint bij 1 te tellen.");
    return static_cast<std::size_t>(start) - 1;
}

void Join(const Arguments& a)
{
    if (a.IsNull(0) || a.IsNull(1)) {
        a.IsNull(0) ? a.Same(1) : a.Same(0);
        return;
    }
    std::string text(a.Text(0));
    text += a.Text(1);
    a.Result(text);
}

void Len(const Arguments& a)
{
    const std::string_view text = a.Text(0);
    const bool ascii = std::none_of(text.begin(), text.end(),
                                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    a.Result(static_cast<std::int64_t>(ascii ? text.size() : Utf16FromUtf8(text).size()));
}

void Left(const Arguments& a)
{
    Give(a, Wide(a, 0).substr(0, Length(a, 1, "Left")));
}

void Right(const Arguments& a)
{
    const std::u16string text = Wide(a, 0);
    Give(a, text.substr(text.size() - std::min(text.size(), Length(a, 1, "Right"))));
}

void Mid(const Arguments& a)
{
    const std::u16string text = Wide(a, 0);
    const std::size_t start = std::min(Start(a, 1, "Mid"), text.size());
    Give(a, text.substr(start, a.Count() > 2 ? Length(a, 2, "Mid") : text.npos));
}

// Compare mode 0 minds the case; without one, case does not matter.
std::u16string Folded(const Arguments& a, int i, int mode)
{
    const bool exact = mode < a.Count() && a.Number(mode) == 0;
    return exact ? Wide(a, i) : LowerCase(Wide(a, i));
}

void InStr(const Arguments& a)
{
    const int shift = a.Count() > 2 ? 1 : 0;
    const std::size_t start = shift > 0 ? Start(a, 0, "InStr") : 0;
    const std::u16string text = Folded(a, shift, 3), wanted = Folded(a, shift + 1, 3);
    const std::size_t found = start <= text.size() ? text.find(wanted, start) : text.npos;
    const bool none = found == text.npos || (text.empty() && wanted.empty());
    a.Result(none ? std::int64_t{0} : static_cast<std::int64_t>(found) + 1);
}

void InStrRev(const Arguments& a)
{
    const std::u16string text = Folded(a, 0, 3), wanted = Folded(a, 1, 3);
    std::size_t end = text.size();
    if (a.Count() > 2 && a.Number(2) != -1)
        end = std::min(end, Start(a, 2, "InStrRev") + 1);
    if (wanted.size() > end) {
        a.Result(std::int64_t{0});
        return;
    }
    const std::size_t found = text.rfind(wanted, end - wanted.size());
    a.Result(found == text.npos ? std::int64_t{0} : static_cast<std::int64_t>(found) + 1);
}

void UCase(const Arguments& a)
{
    Give(a, UpperCase(Wide(a, 0)));
}

void LCase(const Arguments& a)
{
    Give(a, LowerCase(Wide(a, 0)));
}

template <bool left, bool right>
void Trim(const Arguments& a)
{
    std::string_view text = a.Text(0);
    while (left && !text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (right && !text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    a.Result(std::string(text));
}

std::size_t Bounded(std::size_t length)
{
    if (length > kLongest)
        throw Error(ErrorKind::Overflow, "De tekst wordt te lang.");
    return length;
}

void Space(const Arguments& a)
{
    a.Result(std::string(Bounded(Length(a, 0, "Space")), ' '));
}

void Repeat(const Arguments& a)
{
    const std::u16string text = Wide(a, 1);
    if (text.empty())
        a.Null();
    else
        Give(a, std::u16string(Bounded(Length(a, 0, "String")), text.front()));
}

void StrReverse(const Arguments& a)
{
    std::u16string text = Wide(a, 0);
    std::reverse(text.begin(), text.end());
    Give(a, text);
}

// Replace(text, find, replacement, start, count, mode)
void Replace(const Arguments& a)
{
    const std::u16string text = Wide(a, 0), replacement = Wide(a, 2);
    const std::u16string folded = Folded(a, 0, 5), wanted = Folded(a, 1, 5);
    std::size_t at = a.Count() > 3 ? Start(a, 3, "Replace") : 0;
    std::int32_t left = a.Count() > 4 ? WholeNumber(a.Number(4)) : -1;
    std::u16string result;
    while (at < text.size()) {
        const std::size_t found = wanted.empty() || left == 0 ? text.npos : folded.find(wanted, at);
        if (found == text.npos)
            break;
        result.append(text, at, found - at);
        result += replacement;
        Bounded(result.size());
        at = found + wanted.size();
        --left;
    }
    if (at < text.size())
        result.append(text, at);
    Give(a, result);
}

void StrComp(const Arguments& a)
{
    const bool exact = a.Count() > 2 && a.Number(2) == 0;
    const int order = exact ? a.Text(0).compare(a.Text(1)) : CompareText(a.Text(0), a.Text(1));
    a.Result(std::int64_t{(order > 0) - (order < 0)});
}

template <bool codePage>
void Asc(const Arguments& a)
{
    const std::u16string text = Wide(a, 0);
    if (text.empty())
        throw Error(ErrorKind::BadValue, "Een lege tekst heeft geen tekencode.");
    std::int64_t code = text.front();
    if (codePage)
        code = CodePage1252FromCharacter(text.front()).value_or('?');
    a.Result(code);
}

template <bool codePage>
void Chr(const Arguments& a)
{
    const std::int32_t code = WholeNumber(a.Number(0));
    if (code < 0 || code > (codePage ? 255 : 65535))
        throw Error(ErrorKind::BadValue, "Er is geen teken met code " + std::to_string(code) + ".");
    const char16_t letter = codePage ? CharacterFromCodePage1252(static_cast<unsigned char>(code))
                                     : static_cast<char16_t>(code);
    Give(a, std::u16string(1, letter));
}

// The pattern is mostly the same for all rows: it is taken apart once.
template <bool percent>
void Like(sqlite3_context* context, int, sqlite3_value** values) noexcept
{
    const Arguments a(context, 2, values);
    if (a.IsNull(0) || a.IsNull(1)) {
        a.Null();
        return;
    }
    try {
        auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
        std::unique_ptr<LikePattern> made;
        if (pattern == nullptr) {
            made = std::make_unique<LikePattern>(Utf16FromUtf8(a.Text(0)), percent);
            pattern = made.get();
        }
        a.Result(std::int64_t{pattern->Matches(Utf16FromUtf8(a.Text(1))) ? 1 : 0});
        if (made)
            sqlite3_set_auxdata(context, 0, made.release(),
                                [](void* p) { delete static_cast<LikePattern*>(p); });
    } catch (...) {
        static_cast<PendingError*>(sqlite3_user_data(context))->Keep(std::current_exception());
        sqlite3_result_error(context, "", 0);
    }
}

} // namespace

void RegisterTextFunctions(sqlite3* db, PendingError& errors)
{
    AddFunction<Join, true>(db, errors, "jet_join", 2);
    AddFunction<Len>(db, errors, "jet_len", 1);
    AddFunction<Left>(db, errors, "jet_left", 2);
    AddFunction<Right>(db, errors, "jet_right", 2);
    AddFunction<Mid>(db, errors, "jet_mid", 2);
    AddFunction<Mid>(db, errors, "jet_mid", 3);
    for (int count = 2; count <= 4; ++count) {
        AddFunction<InStr>(db, errors, "jet_instr", count);
        AddFunction<InStrRev>(db, errors, "jet_instrrev", count);
    }
    AddFunction<UCase>(db, errors, "jet_ucase", 1);
    AddFunction<LCase>(db, errors, "jet_lcase", 1);
    AddFunction<Trim<true, true>>(db, errors, "jet_trim", 1);
    AddFunction<Trim<true, false>>(db, errors, "jet_ltrim", 1);
    AddFunction<Trim<false, true>>(db, errors, "jet_rtrim", 1);
    AddFunction<Space>(db, errors, "jet_space", 1);
    AddFunction<Repeat>(db, errors, "jet_string", 2);
    AddFunction<StrReverse>(db, errors, "jet_strreverse", 1);
    for (int count = 3; count <= 6; ++count)
        AddFunction<Replace>(db, errors, "jet_replace", count);
    AddFunction<StrComp>(db, errors, "jet_strcomp", 2);
    AddFunction<StrComp>(db, errors, "jet_strcomp", 3);
    AddFunction<Asc<true>>(db, errors, "jet_asc", 1);
    AddFunction<Asc<false>>(db, errors, "jet_ascw", 1);
    AddFunction<Chr<true>>(db, errors, "jet_chr", 1);
    AddFunction<Chr<false>>(db, errors, "jet_chrw", 1);
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function_v2(db, "jet_like", 2, flags, &errors, Like<false>, nullptr, nullptr,
                               nullptr);
    sqlite3_create_function_v2(db, "jet_alike", 2, flags, &errors, Like<true>, nullptr, nullptr,
                               nullptr);
}

} // namespace jet::sql
