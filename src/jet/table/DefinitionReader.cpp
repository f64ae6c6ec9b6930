#include "jet/base/ByteOrder.h"
#include "jet/base/Text.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/Faults.h"
#include "jet/table/DefinitionLayout.h"

#include <algorithm>

namespace jet {

namespace {

/// Reads a definition's bytes from front to back; never beyond their end.
class DefinitionBytes {
public:
    DefinitionBytes(const Pager& pager, PageNumber page, Bytes bytes)
        : m_pager(pager), m_page(page), m_bytes(std::move(bytes))
    {}

    void GoTo(std::size_t at) { m_at = at; }
    void Skip(std::size_t count) { Take(count); }

    std::span<const std::byte> Take(std::size_t count)
    {
        if (count > m_bytes.size() - m_at)
            Fail("de definitie breekt te vroeg af");
        const std::span<const std::byte> taken(m_bytes.data() + m_at, count);
        m_at += count;
        return taken;
    }

    std::uint8_t U8() { return std::to_integer<std::uint8_t>(Take(1)[0]); }
    std::uint16_t U16() { return GetU16(Take(2), 0); }
    std::uint32_t U32() { return GetU32(Take(4), 0); }
    RowId Pointer() { return RowIdFromPointer(U32()); }

    std::string Name(FileVersion version)
    {
        if (version == FileVersion::Jet3)
            return Utf8FromCodePage1252(Take(U8()));
        const std::size_t size = U16();
        if (size % 2 != 0 || size > 2 * 255)
            Fail("een naam heeft een onmogelijke lengte");
        return Utf8FromUtf16Bytes(Take(size));
    }

    [[noreturn]] void Fail(std::string_view what) const { ThrowDamaged(m_pager, m_page, what); }

private:
    const Pager& m_pager;
    PageNumber m_page;
    Bytes m_bytes;
    std::size_t m_at = 0;
};

Bytes GatherDefinition(Pager& pager, PageNumber first)
{
    Bytes bytes;
    std::size_t length = kLongestDefinition;
    PageNumber page = first;
    while (bytes.size() < length) {
        if (page == 0)
            ThrowDamaged(pager, first, "de keten van definitiepagina's is te kort");
        const PageView view = pager.Read(page);
        const auto data = view.Data();
        if (GetU16(data, 0) != 0x0102)
            ThrowDamaged(pager, page, "dit is geen definitiepagina");
        if (page == first) {
            length = GetU32(data, 8);
            if (length > kLongestDefinition ||
                length < DefinitionLayoutOf(pager.Version()).counters)
                ThrowDamaged(pager, page, "de lengte van de definitie is onmogelijk");
        }
        const auto part = data.subspan(page == first ? 0 : kDefinitionPageHeader);
        bytes.insert(bytes.end(), part.begin(), part.end());
        page = GetU32(data, 4);
    }
    bytes.resize(length);
    return bytes;
}

/// Codes that have no type of their own here are handled as plain bytes.
ColumnType TypeOf(std::uint8_t code)
{
    const bool known = (code >= 0x01 && code <= 0x0C) || code == 0x0F || code == 0x10;
    return known ? static_cast<ColumnType>(code) : ColumnType::Binary;
}

Column ReadColumn(DefinitionBytes& in, FileVersion version)
{
    const bool jet4 = version == FileVersion::Jet4;
    Column column;
    column.rawType = in.U8();
    column.type = TypeOf(column.rawType);
    if (jet4)
        in.Skip(4);
    column.number = in.U16();
    const std::uint16_t variable = in.U16();
    column.rawOrdinal = in.U16();
    if (!jet4)
        in.Skip(2);
    const auto order = in.Take(4);
    if (column.type == ColumnType::Decimal) {
        column.precision = std::to_integer<std::uint8_t>(order[0]);
        column.scale = std::to_integer<std::uint8_t>(order[1]);
    } else {
        column.sortOrder = GetU16(order, 0);
        column.sortVersion = jet4 ? std::to_integer<std::uint8_t>(order[3]) : 0;
    }
    column.rawFlags = in.U8();
    if (jet4) {
        column.rawExtraFlags = in.U8();
        in.Skip(4);
    }
    const std::uint16_t offset = in.U16();
    column.lengthBytes = in.U16();
    if (!jet4 && column.type == ColumnType::Text)
        column.lengthBytes = static_cast<std::uint16_t>(column.lengthBytes * 2);

    column.fixed = (column.rawFlags & kColumnFixed) != 0;
    column.position = column.fixed ? offset : variable;
    column.autoNumber =
        (column.type == ColumnType::Long && (column.rawFlags & kColumnAutoNumber) != 0) ||
        (column.type == ColumnType::Guid && (column.rawFlags & kColumnAutoGuid) != 0);
    column.hyperlink = column.type == ColumnType::Memo && (column.rawFlags & kColumnHyperlink) != 0;
    column.compress = (column.rawExtraFlags & kColumnCompressed) != 0;

    if (column.type == ColumnType::Decimal && (column.precision > 28 || column.scale > 28))
        in.Fail("een decimaal veld heeft een onmogelijke precisie");
    if (column.fixed && column.IsLongValue())
        in.Fail("een memo- of OLE-veld staat in het vaste deel van de rij");
    if (column.fixed && column.type != ColumnType::Boolean &&
        column.position + column.lengthBytes > static_cast<int>(kLargestPage))
        in.Fail("een veld ligt buiten de rij");
    return column;
}

PhysicalIndex ReadPhysicalIndex(DefinitionBytes& in, FileVersion version,
                                const TableDefinition& definition)
{
    const bool jet4 = version == FileVersion::Jet4;
    PhysicalIndex index;
    if (jet4)
        in.Skip(4);
    for (int slot = 0; slot < kIndexSlots; ++slot) {
        const std::uint16_t number = in.U16();
        const std::uint8_t order = in.U8();
        if (number == kNoColumn)
            continue;
        const int column = definition.FindColumnNumber(number);
        if (column < 0)
            in.Fail("een index noemt een veld dat er niet is");
        index.columns.push_back({column, (order & 1) != 0});
    }
    index.ownedMap = in.Pointer();
    index.root = in.U32();
    if (jet4)
        in.Skip(4);
    index.rawFlags = in.U8();
    if (jet4)
        in.Skip(5);
    index.unique = (index.rawFlags & kIndexUnique) != 0;
    index.ignoreNulls = (index.rawFlags & kIndexIgnoreNulls) != 0;
    index.required = (index.rawFlags & kIndexRequired) != 0;
    return index;
}

LogicalIndex ReadLogicalIndex(DefinitionBytes& in, FileVersion version, std::size_t physicals)
{
    const bool jet4 = version == FileVersion::Jet4;
    LogicalIndex index;
    if (jet4)
        in.Skip(4);
    index.number = in.U32();
    const std::uint32_t physical = in.U32();
    if (physical >= physicals)
        in.Fail("een index noemt een boom die er niet is");
    index.physical = static_cast<int>(physical);
    index.side = in.U8();
    index.otherIndex = static_cast<std::int32_t>(in.U32());
    index.otherTable = in.U32();
    index.cascadeUpdates = in.U8();
    index.cascadeDeletes = in.U8();
    const std::uint8_t kind = in.U8();
    index.kind = kind == 1   ? LogicalIndex::Kind::Primary
                 : kind == 2 ? LogicalIndex::Kind::Relationship
                             : LogicalIndex::Kind::Plain;
    if (jet4)
        in.Skip(4);
    return index;
}

void ReadLongValueMaps(DefinitionBytes& in, TableDefinition& definition)
{
    for (std::size_t i = 0; i <= definition.columns.size(); ++i) {
        const std::uint16_t number = in.U16();
        if (number == kNoColumn)
            return;
        const RowId owned = in.Pointer(), free = in.Pointer();
        const int column = definition.FindColumnNumber(number);
        if (column >= 0) {
            definition.columns[column].ownedMap = owned;
            definition.columns[column].freeMap = free;
        }
    }
    in.Fail("de lijst van memovelden heeft geen einde");
}

} // namespace

TableDefinition ReadTableDefinition(Pager& pager, PageNumber page)
{
    const FileVersion version = pager.Version();
    const DefinitionLayout& layout = DefinitionLayoutOf(version);
    Bytes bytes = GatherDefinition(pager, page);

    TableDefinition definition;
    definition.page = page;
    definition.length = static_cast<std::uint32_t>(bytes.size());
    DefinitionBytes in(pager, page, std::move(bytes));
    in.GoTo(layout.rowCount);
    definition.rowCount = in.U32();
    in.GoTo(layout.autoNumber);
    definition.lastAutoNumber = in.U32();
    in.GoTo(layout.kind);
    definition.system = in.U8() == 'S';
    definition.maxColumns = in.U16();
    definition.variableColumns = in.U16();
    const std::size_t columns = in.U16();
    const std::size_t logicals = in.U32();
    const std::size_t physicals = in.U32();
    definition.ownedMap = in.Pointer();
    definition.freeMap = in.Pointer();
    if (columns > 255 || definition.maxColumns > 256 || logicals > 1000 || physicals > 255)
        in.Fail("het aantal velden of indexen is onmogelijk");

    definition.physicalIndexes.resize(physicals);
    for (PhysicalIndex& index : definition.physicalIndexes) {
        index.rowsCounted = in.U32();
        index.distinctCount = in.U32();
        in.Skip(layout.counterSize - 8);
    }
    for (std::size_t i = 0; i < columns; ++i) {
        Column column = ReadColumn(in, version);
        if (column.number >= definition.maxColumns ||
            definition.FindColumnNumber(column.number) >= 0)
            in.Fail("een veldnummer is onmogelijk of komt twee keer voor");
        definition.columns.push_back(std::move(column));
    }
    for (Column& column : definition.columns)
        column.name = in.Name(version);
    for (PhysicalIndex& index : definition.physicalIndexes) {
        PhysicalIndex read = ReadPhysicalIndex(in, version, definition);
        read.rowsCounted = index.rowsCounted;
        read.distinctCount = index.distinctCount;
        index = std::move(read);
    }
    for (std::size_t i = 0; i < logicals; ++i)
        definition.logicalIndexes.push_back(ReadLogicalIndex(in, version, physicals));
    for (LogicalIndex& index : definition.logicalIndexes)
        index.name = in.Name(version);
    ReadLongValueMaps(in, definition);
    return definition;
}

} // namespace jet
