#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace jet {

using Bytes = std::vector<std::byte>;

/// Money with four decimals: `scaled` = amount x 10,000.
struct Currency {
    std::int64_t scaled = 0;
    auto operator<=>(const Currency&) const = default;
};

/// A moment as days since 1899-12-30; the fraction is the time of day and is
/// counted away from zero, so that -1.25 is 1899-12-29 06:00.
struct DateTime {
    double days = 0;

    static DateTime FromCivil(int year, int month, int day, int hour = 0, int minute = 0,
                              int second = 0);
    struct Civil {
        int year, month, day, hour, minute, second;
    };
    /// Rounded to whole seconds.
    Civil ToCivil() const;

    bool operator==(const DateTime&) const = default;
};

/// 16 bytes in the order in which they are printed.
struct Guid {
    std::array<std::byte, 16> bytes{};
    bool operator==(const Guid&) const = default;
};

/// A decimal of at most 28 digits: (-1)^negative x magnitude / 10^scale, the
/// magnitude as four 32-bit groups, most significant first.
struct Decimal {
    bool negative = false;
    std::uint8_t scale = 0;
    std::array<std::uint32_t, 4> magnitude{};
    bool operator==(const Decimal&) const = default;
};

/// What kind of value a column can hold. The numbers stand in the file.
enum class ColumnType : std::uint8_t {
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03, ///< 16 bits
    Long = 0x04,    ///< 32 bits
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    DateTime = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Decimal = 0x10,
};

/// One field of one row. Text is UTF-8 (a lone UTF-16 surrogate of a file is
/// kept in its three-byte form); text and memo fields share the alternative.
///
/// The As... operations convert explicitly, in the way Jet does: numbers from
/// text with a point or the digits alone, -1 and 0 for booleans, halves to even
/// where a fraction is lost. They throw Error (BadValue, or Overflow when the
/// number does not fit) and never return a guess. A null converts to nothing:
/// test IsNull first, or use the ...Or forms.
class Value {
public:
    using Store =
        std::variant<std::monostate, bool, std::uint8_t, std::int16_t, std::int32_t, Currency,
                     float, double, DateTime, std::string, Bytes, Guid, Decimal>;

    Value() = default; ///< null
    Value(bool v) : m_store(v) {}
    Value(std::uint8_t v) : m_store(v) {}
    Value(std::int16_t v) : m_store(v) {}
    Value(std::int32_t v) : m_store(v) {}
    Value(Currency v) : m_store(v) {}
    Value(float v) : m_store(v) {}
    Value(double v) : m_store(v) {}
    Value(DateTime v) : m_store(v) {}
    Value(std::string v) : m_store(std::move(v)) {}
    Value(std::string_view v) : m_store(std::string(v)) {}
    Value(const char* v) : m_store(std::string(v)) {}
    Value(Bytes v) : m_store(std::move(v)) {}
    Value(Guid v) : m_store(v) {}
    Value(Decimal v) : m_store(v) {}

    bool IsNull() const { return std::holds_alternative<std::monostate>(m_store); }
    bool IsNumber() const; ///< any numeric alternative, boolean included
    bool IsText() const { return std::holds_alternative<std::string>(m_store); }

    bool AsBool() const;
    std::int32_t AsInt() const;
    double AsDouble() const;
    std::string AsText() const; ///< numbers with a point and 15 significant digits
    DateTime AsDateTime() const;
    const Bytes& AsBytes() const;

    std::int32_t AsIntOr(std::int32_t whenNull) const { return IsNull() ? whenNull : AsInt(); }
    double AsDoubleOr(double whenNull) const { return IsNull() ? whenNull : AsDouble(); }
    std::string AsTextOr(std::string_view whenNull) const
    {
        return IsNull() ? std::string(whenNull) : AsText();
    }

    /// The same value as `type` stores it; null stays null. Throws BadValue or Overflow.
    Value ConvertedTo(ColumnType type) const;

    const Store& Raw() const { return m_store; }

    /// Same alternative and same content. Not Jet's comparison: text compares by
    /// bytes here; the engine's order is in index/TextKey.h.
    bool operator==(const Value&) const = default;

private:
    Store m_store;
};

/// All fields of a row, in the order of the table's columns.
using Row = std::vector<Value>;

} // namespace jet
