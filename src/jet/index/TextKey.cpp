#include "jet/index/TextKey.h"

#include "jet/base/Text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace jet {

namespace {

constexpr std::size_t kLongestKeyText = 255; // UTF-16 units that take part in a key

struct UnitKey {
    char kind = 0; // 0 = not in the table
    std::uint8_t inlineCount = 0, extraCount = 0;
    std::array<std::uint8_t, 2> inlineBytes{}, extraBytes{};
    std::uint8_t unprintable = 0;
};

constexpr std::size_t kUnits = 0x2160; // one more than the highest unit listed

constexpr std::array<UnitKey, kUnits> MakeUnitKeys()
{
    struct Listed {
        std::uint16_t unit;
        char kind;
        std::uint8_t inlineCount, extraCount, inline0, inline1, extra0, extra1, unprintable;
    };
    constexpr Listed listed[] = {
#include "jet/index/GeneralLegacyKeys.inc"
    };
    std::array<UnitKey, kUnits> keys{};
    for (const Listed& l : listed) {
        UnitKey& key = keys[l.unit];
        key.kind = l.kind;
        key.inlineCount = l.inlineCount;
        key.extraCount = l.extraCount;
        key.inlineBytes = {l.inline0, l.inline1};
        key.extraBytes = {l.extra0, l.extra1};
        key.unprintable = l.unprintable;
    }
    return keys;
}

constexpr std::array<UnitKey, kUnits> kUnitKeys = MakeUnitKeys();

/// The next character of `text` at `at`, which moves behind it. Bytes that are
/// no UTF-8 count as a character beyond Unicode each, so that every text has a place.
char32_t NextCharacter(std::string_view text, std::size_t& at)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = byte(at++);
    if (first < 0x80)
        return first;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    char32_t code = first & (0x3F >> more);
    if (first < 0xC0 || first > 0xF7 || text.size() - at < static_cast<std::size_t>(more))
        return 0x110000u + first;
    for (int i = 0; i < more; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return 0x110000u + first;
        code = code << 6 | (byte(at + i) & 0x3F);
    }
    at += more;
    return code;
}

std::string_view WithoutTrailingBlanks(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// `text` cut behind its first 255 UTF-16 units.
std::string_view KeyPart(std::string_view text)
{
    if (text.size() <= kLongestKeyText)
        return text;
    std::size_t at = 0;
    for (std::size_t units = 0; at < text.size();) {
        std::size_t next = at;
        units += NextCharacter(text, next) >= 0x10000 ? 2 : 1;
        if (units > kLongestKeyText)
            break;
        at = next;
    }
    return text.substr(0, at);
}

/// Collects the three parts of a General legacy key: the primary bytes go
/// straight to `Out`, the accents and the tie-breakers are kept till the end.
template <typename Out>
class LegacyKey {
public:
    explicit LegacyKey(Out& out) : m_out(out) {}

    void Add(const UnitKey& unit)
    {
        const std::size_t position = m_position;
        if (unit.inlineCount != 0) {
            Put(unit.inlineBytes[0]);
            if (unit.inlineCount == 2)
                Put(unit.inlineBytes[1]);
            ++m_position;
        }
        switch (unit.kind) {
        case 'i':
            FillAccents(position);
            for (int i = 0; i < unit.extraCount; ++i)
                m_accents.push_back(static_cast<char>(unit.extraBytes[i]));
            ++m_accented;
            break;
        case 'm':
            FillAccents(position);
            if (m_accents.empty()) {
                m_accents.push_back(static_cast<char>(unit.extraBytes[0]));
                m_leadingModifier = 1;
            } else {
                m_accents.back() = static_cast<char>(m_accents.back() + unit.extraBytes[0]);
            }
            break;
        case 'u': {
            const std::size_t place =
                m_hasAccents ? m_accents.size() + position - m_accented - m_leadingModifier
                             : position;
            const unsigned code = 0x8000u | static_cast<unsigned>(7 + 4 * place);
            m_ties.push_back(static_cast<char>(code >> 8));
            m_ties.push_back(static_cast<char>(code));
            m_ties.push_back(0x06);
            m_ties.push_back(static_cast<char>(unit.unprintable));
            break;
        }
        default:
            break;
        }
    }

    void AddUnknown(char32_t code)
    {
        Put(0xFE); // behind every listed inline byte
        for (int shift = 16; shift >= 0; shift -= 8)
            Put(static_cast<std::uint8_t>(code >> shift));
        ++m_position;
    }

    void Finish()
    {
        Put(0x01);
        const std::size_t last = m_accents.find_last_not_of(std::string_view("\0\1\2", 3));
        m_accents.resize(last + 1); // npos + 1 = 0
        for (const char c : m_accents)
            Put(static_cast<std::uint8_t>(c));
        if (!m_ties.empty()) {
            Put(0x01);
            Put(0x01);
            Put(0x01);
            for (const char c : m_ties)
                Put(static_cast<std::uint8_t>(c));
        }
    }

private:
    void Put(std::uint8_t byte) { m_out.push_back(static_cast<typename Out::value_type>(byte)); }

    void FillAccents(std::size_t position)
    {
        m_hasAccents = true;
        if (m_accented < position) {
            m_accents.append(position - m_accented, '\2');
            m_accented = position;
        }
    }

    Out& m_out;
    std::string m_accents; // 02 = none, for each character up to the last accented one
    std::string m_ties;
    std::size_t m_position = 0; // characters with primary bytes
    std::size_t m_accented = 0; // characters that m_accents speaks of
    std::size_t m_leadingModifier = 0;
    bool m_hasAccents = false;
};

int Sign(int difference)
{
    return (difference > 0) - (difference < 0);
}

} // namespace

bool AppendTextKey(std::string_view utf8, bool ascending, Bytes& key)
{
    const std::size_t start = key.size();
    const std::string_view text = WithoutTrailingBlanks(KeyPart(utf8));
    LegacyKey<Bytes> parts(key);
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = NextCharacter(text, at);
        if (code >= kUnits || kUnitKeys[code].kind == 0)
            return false;
        parts.Add(kUnitKeys[code]);
    }
    parts.Finish();
    if (!ascending) {
        key.push_back(std::byte{0});
        for (std::size_t i = start; i < key.size(); ++i)
            key[i] = ~key[i];
    }
    key.push_back(std::byte{0});
    return true;
}

bool AppendTextKey97(std::string_view utf8, bool ascending, Bytes& key)
{
    struct ByteKey {
        std::uint8_t count;
        std::uint8_t bytes[2];
        std::uint8_t accent;
        std::uint8_t placeholders;
    };
    static constexpr ByteKey kKeys[256] = {
#include "jet/index/General97Keys.inc"
    };
    std::string bytes;
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t code = NextCharacter(utf8, at);
        const auto byte =
            code < 0x10000 ? CodePage1252FromCharacter(static_cast<char16_t>(code)) : std::nullopt;
        if (!byte)
            return false;
        bytes.push_back(static_cast<char>(*byte));
    }
    const std::string_view text =
        WithoutTrailingBlanks(std::string_view(bytes).substr(0, kLongestKeyText));
    const std::size_t start = key.size();
    std::string accents; // nibbles
    std::size_t owed = 0;
    for (const char c : text) {
        const ByteKey& k = kKeys[static_cast<std::uint8_t>(c)];
        for (int i = 0; i < k.count; ++i)
            key.push_back(std::byte{k.bytes[i]});
        if (k.accent == 0) {
            owed += k.placeholders;
            continue;
        }
        if (accents.empty())
            accents.push_back(0);
        accents.append(owed, '\2');
        owed = 0;
        accents.push_back(static_cast<char>(k.accent));
    }
    if (accents.empty()) {
        key.push_back(std::byte{0});
    } else {
        accents.push_back(0);
        if (accents.size() % 2 != 0)
            accents.push_back(0);
        for (std::size_t i = 0; i < accents.size(); i += 2)
            key.push_back(static_cast<std::byte>(accents[i] << 4 | accents[i + 1]));
    }
    if (!ascending) {
        for (std::size_t i = start; i < key.size(); ++i)
            key[i] = ~key[i];
    }
    return true;
}

std::string TextSortKey(std::string_view text)
{
    text = WithoutTrailingBlanks(text);
    std::string key;
    key.reserve(text.size() + 8);
    LegacyKey<std::string> parts(key);
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = NextCharacter(text, at);
        if (code < kUnits && kUnitKeys[code].kind != 0)
            parts.Add(kUnitKeys[code]);
        else
            parts.AddUnknown(code);
    }
    parts.Finish();
    return key;
}

int CompareText(std::string_view a, std::string_view b)
{
    a = WithoutTrailingBlanks(a);
    b = WithoutTrailingBlanks(b);
    // Nearly all texts are decided here: as long as both consist of simple ASCII
    // characters the first one that differs in its primary bytes decides.
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t i = 0;
    for (; i < common; ++i) {
        const auto ca = static_cast<std::uint8_t>(a[i]), cb = static_cast<std::uint8_t>(b[i]);
        if (ca >= 0x80 || cb >= 0x80 || kUnitKeys[ca].kind != 's' || kUnitKeys[cb].kind != 's')
            break;
        if (ca == cb)
            continue;
        const auto& ka = kUnitKeys[ca].inlineBytes;
        const auto& kb = kUnitKeys[cb].inlineBytes;
        if (ka != kb)
            return Sign(std::memcmp(ka.data(), kb.data(), ka.size()));
    }
    if (i == a.size() && i == b.size())
        return 0;
    return Sign(TextSortKey(a).compare(TextSortKey(b)));
}

} // namespace jet
