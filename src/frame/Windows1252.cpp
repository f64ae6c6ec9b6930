#include "frame/Windows1252.h"

#include <array>

namespace {

// 0x80 to 0x9F; all other bytes are the Unicode character of the same number.
constexpr std::array<char16_t, 32> kHighControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr int kMissing = -1;

char16_t Decode(unsigned char byte)
{
    return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : char16_t(byte);
}

int Encode(char16_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return character;
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == character)
            return int(0x80 + i);
    }
    return kMissing;
}

std::array<unsigned char, 256> MakeLowerTable()
{
    std::array<unsigned char, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        const int lower = Encode(QChar::toLower(char32_t(Decode((unsigned char)byte))));
        table[std::size_t(byte)] = (unsigned char)(lower == kMissing ? byte : lower);
    }
    return table;
}

} // namespace

QString FromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* to = text.data();
    for (const char byte : bytes)
        *to++ = QChar(Decode((unsigned char)byte));
    return text;
}

QByteArray ToWindows1252(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text) {
        if (character.isLowSurrogate())
            continue; // the high one has given its "?"
        const int byte = Encode(character.unicode());
        bytes.append(byte == kMissing ? '?' : char(byte));
    }
    return bytes;
}

bool FitsWindows1252(QStringView text)
{
    for (const QChar character : text) {
        if (Encode(character.unicode()) == kMissing)
            return false;
    }
    return true;
}

unsigned char LowerWindows1252(unsigned char byte)
{
    static const std::array<unsigned char, 256> table = MakeLowerTable();
    return table[byte];
}
