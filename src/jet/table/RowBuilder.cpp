#include "jet/table/RowBuilder.h"

#include "jet/base/ByteOrder.h"
#include "jet/table/LongValues.h"
#include "jet/table/RowView.h"
#include "jet/table/TextCodec.h"

#include <algorithm>
#include <cstring>

namespace jet {

namespace {

constexpr std::size_t kCountSize = 2;

template <typename T>
void Append(T value, Bytes& out)
{
    const std::size_t at = out.size();
    out.resize(at + sizeof value);
    std::memcpy(out.data() + at, &value, sizeof value);
}

void AppendGuid(const Guid& guid, Bytes& out)
{
    for (const std::size_t i : kGuidOrder)
        out.push_back(guid.bytes[i]);
}

void AppendDecimal(const Decimal& decimal, Bytes& out)
{
    out.push_back(decimal.negative ? std::byte{0x80} : std::byte{0});
    for (const std::uint32_t group : decimal.magnitude)
        Append(group, out);
}

} // namespace

RowBuilder::RowBuilder(const TableDefinition& definition)
    : m_definition(definition),
      m_variable(definition.variableColumns, -1),
      m_fields(definition.columns.size())
{
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const Column& column = definition.columns[i];
        if (!column.fixed) {
            if (column.position < m_variable.size())
                m_variable[column.position] = static_cast<int>(i);
        } else if (column.type != ColumnType::Boolean) {
            const std::size_t known = FixedSize(column.type);
            const std::size_t size = known != 0 ? known : column.lengthBytes;
            m_fixedEnd = std::max(m_fixedEnd, kCountSize + column.position + size);
        }
    }
}

void RowBuilder::Begin()
{
    m_bytes.clear();
    std::fill(m_fields.begin(), m_fields.end(), Field{});
}

void RowBuilder::SetValue(int column, const Value& value)
{
    const Column& c = m_definition.columns[static_cast<std::size_t>(column)];
    Field& field = m_fields[static_cast<std::size_t>(column)];
    if (c.type == ColumnType::Boolean) {
        field.present = std::get<bool>(value.Raw());
        return;
    }
    field.present = true;
    field.longValue = c.IsLongValue();
    field.offset = m_bytes.size();
    Encode(c, value);
    field.length = m_bytes.size() - field.offset;
    field.outside = field.longValue && field.length > LongValueReference::kLongestInline;
}

void RowBuilder::SetStored(int column, std::span<const std::byte> bytes)
{
    const Column& c = m_definition.columns[static_cast<std::size_t>(column)];
    Field& field = m_fields[static_cast<std::size_t>(column)];
    field.present = true;
    // An inline value is unpacked: should the row grow, it may have to leave.
    if (c.IsLongValue() && bytes.size() >= LongValueReference::kSize &&
        (GetU8(bytes, 3) & 0x80) != 0) {
        field.longValue = true;
        const std::size_t length = GetU32(bytes, 0) & LongValueReference::kLongest;
        bytes = bytes.subspan(LongValueReference::kSize);
        bytes = bytes.first(std::min(length, bytes.size()));
    }
    field.offset = m_bytes.size();
    field.length = bytes.size();
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

void RowBuilder::Encode(const Column& column, const Value& value)
{
    const Value::Store& raw = value.Raw();
    switch (column.type) {
    case ColumnType::Boolean:
        break; // the null mask holds it
    case ColumnType::Byte:
        Append(std::get<std::uint8_t>(raw), m_bytes);
        break;
    case ColumnType::Integer:
        Append(std::get<std::int16_t>(raw), m_bytes);
        break;
    case ColumnType::Long:
        Append(std::get<std::int32_t>(raw), m_bytes);
        break;
    case ColumnType::Currency:
        Append(std::get<Currency>(raw).scaled, m_bytes);
        break;
    case ColumnType::Single:
        Append(std::get<float>(raw), m_bytes);
        break;
    case ColumnType::Double:
        Append(std::get<double>(raw), m_bytes);
        break;
    case ColumnType::DateTime:
        Append(std::get<DateTime>(raw).days, m_bytes);
        break;
    case ColumnType::Guid:
        AppendGuid(std::get<Guid>(raw), m_bytes);
        break;
    case ColumnType::Decimal:
        AppendDecimal(std::get<Decimal>(raw), m_bytes);
        break;
    case ColumnType::Text:
    case ColumnType::Memo: {
        const std::size_t start = m_bytes.size();
        AppendText(std::get<std::string>(raw), column.compress && !column.fixed, m_bytes);
        if (column.fixed) {
            while (m_bytes.size() - start + 2 <= column.lengthBytes)
                Append(char16_t{u' '}, m_bytes);
        }
        break;
    }
    case ColumnType::Binary:
    case ColumnType::Ole: {
        const std::size_t start = m_bytes.size();
        const Bytes& bytes = std::get<Bytes>(raw);
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        if (column.fixed)
            m_bytes.resize(start + column.lengthBytes);
        break;
    }
    }
}

bool RowBuilder::Finish()
{
    LayOut();
    while (m_row.size() > kLongestRow) {
        if (!PushLongestOut())
            return false;
        LayOut();
    }
    return true;
}

bool RowBuilder::PushLongestOut()
{
    Field* longest = nullptr;
    for (Field& field : m_fields) {
        if (field.longValue && !field.outside && field.length > 0 &&
            (longest == nullptr || field.length > longest->length))
            longest = &field;
    }
    if (longest == nullptr)
        return false;
    longest->outside = true;
    return true;
}

void RowBuilder::LayOut()
{
    const std::size_t count = m_definition.maxColumns;
    m_outside.clear();
    m_row.assign(m_fixedEnd, std::byte{0});
    PutU16(m_row, 0, static_cast<std::uint16_t>(count));
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const Column& column = m_definition.columns[i];
        const Field& field = m_fields[i];
        if (column.fixed && field.present && field.length > 0)
            std::ranges::copy(BytesOf(field), m_row.begin() + kCountSize + column.position);
    }

    if (!m_variable.empty()) {
        m_offsets.clear();
        for (const int column : m_variable) {
            m_offsets.push_back(static_cast<std::uint16_t>(m_row.size()));
            if (column < 0 || !m_fields[static_cast<std::size_t>(column)].present)
                continue;
            const Field& field = m_fields[static_cast<std::size_t>(column)];
            const std::span<const std::byte> bytes = BytesOf(field);
            if (field.longValue) {
                LongValueReference reference;
                reference.length = static_cast<std::uint32_t>(field.length);
                if (field.outside)
                    m_outside.push_back({column, m_row.size(), bytes});
                const auto head = reference.ToBytes();
                m_row.insert(m_row.end(), head.begin(), head.end());
            }
            if (!field.outside)
                m_row.insert(m_row.end(), bytes.begin(), bytes.end());
            if (m_row.size() > 0xFFFF)
                return; // far too long anyway
        }
        Append(static_cast<std::uint16_t>(m_row.size()), m_row);
        for (std::size_t i = m_offsets.size(); i-- > 0;)
            Append(m_offsets[i], m_row);
        Append(static_cast<std::uint16_t>(m_offsets.size()), m_row);
    }

    const std::size_t mask = m_row.size();
    m_row.resize(mask + (count + 7) / 8);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (m_fields[i].present) {
            const std::uint16_t number = m_definition.columns[i].number;
            m_row[mask + number / 8u] |= static_cast<std::byte>(1u << (number % 8u));
        }
    }
}

} // namespace jet
