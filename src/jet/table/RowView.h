#pragma once

#include "jet/table/TableDefinition.h"

#include <array>
#include <span>

namespace jet {

/// The parts of one stored row, found but not decoded. Columns are asked for by
/// their definition; a row written before a column was added has no value there.
///
/// Jet 4: count | fixed area | variable data | end | offsets, last first | V | null mask.
/// Jet 3: the same with single bytes, and with jump bytes for offsets beyond 255.
class RowView {
public:
    RowView() = default;
    /// `row` must outlive the view. Throws Damaged (naming `page`) when the parts do not fit.
    RowView(const Pager& pager, PageNumber page, const TableDefinition& definition,
            std::span<const std::byte> row);

    FileVersion Version() const { return m_jet4 ? FileVersion::Jet4 : FileVersion::Jet3; }
    /// For a boolean: its value.
    bool HasValue(const Column& column) const
    {
        return column.number < m_count &&
               (std::to_integer<unsigned>(m_row[m_mask + column.number / 8u]) >>
                    (column.number % 8u) &
                1u) != 0;
    }
    /// The stored bytes; REQUIRES: HasValue. Throws Damaged.
    std::span<const std::byte> Bytes(const Column& column) const;

private:
    std::size_t OffsetJet4(std::size_t i) const;
    void ReadOffsetsJet3(std::size_t variableAt);
    [[noreturn]] void Fail() const;

    const Pager* m_pager = nullptr;
    PageNumber m_page = 0;
    std::span<const std::byte> m_row;
    std::size_t m_count = 0;    // columns when the row was written
    std::size_t m_mask = 0;     // offset of the null mask
    std::size_t m_variable = 0; // variable values in this row
    bool m_jet4 = true;
    std::array<std::uint16_t, 257> m_offsetsJet3; // NOLINT: filled for Jet 3 only
};

/// Decodes the bytes of any column but memo and OLE (whose bytes are a
/// reference, see LongValues). Throws Damaged when there are too few.
Value DecodeValue(const Column& column, std::span<const std::byte> bytes, FileVersion version);

/// Where a GUID's bytes as printed stand in a row, and the other way round: its
/// first three parts are little-endian numbers there.
inline constexpr std::array<std::size_t, 16> kGuidOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                           8, 9, 10, 11, 12, 13, 14, 15};

/// Bytes that a value of a type takes; 0 for those whose length varies.
std::size_t FixedSize(ColumnType type);

} // namespace jet
