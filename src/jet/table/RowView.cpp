#include "jet/table/RowView.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"
#include "jet/table/TextCodec.h"

#include <algorithm>

namespace jet {

RowView::RowView(const Pager& pager, PageNumber page, const TableDefinition& definition,
                 std::span<const std::byte> row)
    : m_pager(&pager), m_page(page), m_row(row), m_jet4(pager.Version() == FileVersion::Jet4)
{
    const std::size_t countSize = m_jet4 ? 2 : 1;
    if (row.size() < countSize)
        Fail();
    m_count = m_jet4 ? GetU16(row, 0) : GetU8(row, 0);
    const std::size_t maskSize = (m_count + 7) / 8;
    if (m_count > 256 || countSize + maskSize > row.size())
        Fail();
    m_mask = row.size() - maskSize;

    // A row from before the table's first variable column ends right before the
    // mask, and none of its bytes may be taken for a count of variable values.
    const bool hasVariable =
        definition.variableColumns != 0 &&
        std::any_of(definition.columns.begin(), definition.columns.end(),
                    [&](const Column& c) { return !c.fixed && c.number < m_count; });
    if (!hasVariable)
        return;
    if (m_jet4) {
        if (m_mask < 4)
            Fail();
        m_variable = GetU16(row, m_mask - 2);
        if (m_variable > 256 || m_mask < 6 + 2 * m_variable)
            Fail();
    } else {
        if (m_mask < 2)
            Fail();
        ReadOffsetsJet3(m_mask - 1);
    }
}

void RowView::ReadOffsetsJet3(std::size_t variableAt)
{
    m_variable = GetU8(m_row, variableAt);
    std::size_t jumps = (m_row.size() - 1) / 256;
    if (variableAt < jumps + 1 + m_variable)
        Fail();
    const std::size_t first = variableAt - jumps - 1; // offset byte of variable 0
    if ((first - m_variable) / 256 < jumps)
        --jumps; // the last jump byte is a dummy
    std::size_t jumped = 0;
    for (std::size_t i = 0; i <= m_variable; ++i) {
        while (jumped < jumps && GetU8(m_row, variableAt - 1 - jumped) == i)
            ++jumped;
        m_offsetsJet3[i] = static_cast<std::uint16_t>(GetU8(m_row, first - i) + 256 * jumped);
    }
}

std::size_t RowView::OffsetJet4(std::size_t i) const
{
    return GetU16(m_row, m_mask - 4 - 2 * i);
}

std::span<const std::byte> RowView::Bytes(const Column& column) const
{
    const std::size_t countSize = m_jet4 ? 2 : 1;
    if (column.fixed) {
        const std::size_t known = FixedSize(column.type);
        std::size_t size = known != 0 ? known : column.lengthBytes;
        if (!m_jet4 && column.type == ColumnType::Text)
            size = column.lengthBytes / 2;
        const std::size_t at = countSize + column.position;
        if (at + size > m_mask)
            Fail();
        return m_row.subspan(at, size);
    }
    const std::size_t i = column.position;
    if (i >= m_variable)
        return {};
    const std::size_t start = m_jet4 ? OffsetJet4(i) : m_offsetsJet3[i];
    const std::size_t end = m_jet4 ? OffsetJet4(i + 1) : m_offsetsJet3[i + 1];
    if (start < countSize || start > end || end > m_mask)
        Fail();
    return m_row.subspan(start, end - start);
}

void RowView::Fail() const
{
    ThrowDamaged(*m_pager, m_page, "een rij is niet te lezen");
}

std::size_t FixedSize(ColumnType type)
{
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Decimal:
        return 17;
    default:
        return 0;
    }
}

namespace {

Guid DecodeGuid(std::span<const std::byte> bytes)
{
    Guid guid;
    for (std::size_t i = 0; i < 16; ++i)
        guid.bytes[i] = bytes[kGuidOrder[i]];
    return guid;
}

Decimal DecodeDecimal(std::span<const std::byte> bytes, std::uint8_t scale)
{
    Decimal decimal;
    decimal.negative = (GetU8(bytes, 0) & 0x80) != 0;
    decimal.scale = scale;
    for (std::size_t i = 0; i < 4; ++i)
        decimal.magnitude[i] = GetU32(bytes, 1 + 4 * i);
    return decimal;
}

Value DecodeFixedText(std::span<const std::byte> bytes, FileVersion version)
{
    std::string text = DecodeText(bytes, version);
    text.resize(text.find_last_not_of('\0') + 1);
    return text;
}

} // namespace

Value DecodeValue(const Column& column, std::span<const std::byte> bytes, FileVersion version)
{
    if (bytes.size() < FixedSize(column.type)) {
        if (bytes.empty())
            return {}; // a variable number without bytes
        ThrowOutOfBounds(0, FixedSize(column.type), bytes.size());
    }
    switch (column.type) {
    case ColumnType::Boolean:
        return true; // the mask bit is the value
    case ColumnType::Byte:
        return GetU8(bytes, 0);
    case ColumnType::Integer:
        return GetI16(bytes, 0);
    case ColumnType::Long:
        return GetI32(bytes, 0);
    case ColumnType::Currency:
        return Currency{GetI64(bytes, 0)};
    case ColumnType::Single:
        return GetF32(bytes, 0);
    case ColumnType::Double:
        return GetF64(bytes, 0);
    case ColumnType::DateTime:
        return DateTime{GetF64(bytes, 0)};
    case ColumnType::Text:
        return column.fixed ? DecodeFixedText(bytes, version) : Value(DecodeText(bytes, version));
    case ColumnType::Guid:
        return DecodeGuid(bytes);
    case ColumnType::Decimal:
        return DecodeDecimal(bytes, column.scale);
    case ColumnType::Binary:
    case ColumnType::Ole:
    case ColumnType::Memo:
        break;
    }
    return Bytes(bytes.begin(), bytes.end());
}

} // namespace jet
