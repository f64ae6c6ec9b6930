#pragma once

#include "jet/table/TableDefinition.h"

#include <span>

namespace jet {

/// Lays out one row of a Jet 4 table from its fields: given as values, or as
/// bytes taken over from an older form of the row.
///
/// Made once for a table and used again and again: Begin, one Set... for every
/// column, Finish. What is not set is null.
class RowBuilder {
public:
    /// Longest row of a table.
    static constexpr std::size_t kLongestRow = 4060;

    /// `definition` must outlive the builder.
    explicit RowBuilder(const TableDefinition& definition);

    void Begin();
    /// `value` is not null and of the column's kind. Throws BadValue for text that is not UTF-8.
    void SetValue(int column, const Value& value);
    void SetStored(int column, std::span<const std::byte> bytes);

    /// A long value that has to be written outside the row, and the place of its
    /// reference in the row.
    struct Outside {
        int column;
        std::size_t referenceAt;
        std::span<const std::byte> data;
    };
    /// The row, with room for the references of `outside`. Valid until the next Begin. Long values
    /// stay inside while they are short and the row has room. False when the row is too long.
    bool Finish();
    std::span<std::byte> Row() { return m_row; }
    const std::vector<Outside>& OutsideValues() const { return m_outside; }

private:
    struct Field {
        bool present = false;
        bool longValue = false; ///< the bytes are the value itself, not a reference
        bool outside = false;
        std::size_t offset = 0, length = 0; // in m_bytes
    };

    void Encode(const Column& column, const Value& value);
    void LayOut();
    bool PushLongestOut();
    std::span<const std::byte> BytesOf(const Field& field) const
    {
        return std::span(m_bytes).subspan(field.offset, field.length);
    }

    const TableDefinition& m_definition;
    std::size_t m_fixedEnd = 2;  // behind the fixed area
    std::vector<int> m_variable; // column of each variable slot, -1 = none
    std::vector<Field> m_fields;
    Bytes m_bytes;
    Bytes m_row;
    std::vector<std::uint16_t> m_offsets; // of the variable values
    std::vector<Outside> m_outside;
};

} // namespace jet
