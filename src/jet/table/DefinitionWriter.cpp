#include "jet/base/ByteOrder.h"
#include "jet/base/ByteWriter.h"
#include "jet/base/Text.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/Faults.h"
#include "jet/table/DefinitionLayout.h"

#include <algorithm>

namespace jet {

namespace {

class DefinitionBuilder : public ByteWriter {
public:
    void Zeros(std::size_t count) { m_bytes.resize(m_bytes.size() + count); }
    void Pointer(RowId row) { U32(PointerFromRowId(row)); }
    void Name(std::string_view utf8)
    {
        const std::size_t lengthAt = m_bytes.size();
        U16(0);
        for (const char16_t unit : Utf16FromUtf8(utf8))
            U16(unit);
        PutU16(m_bytes, lengthAt, static_cast<std::uint16_t>(m_bytes.size() - lengthAt - 2));
    }
    Bytes Finish()
    {
        PutU32(m_bytes, 8, static_cast<std::uint32_t>(m_bytes.size()));
        return std::move(m_bytes);
    }
};

std::uint8_t FlagsOf(const Column& column)
{
    // The auto-number bit of a Guid has other, unknown meanings on other types: it stays there.
    unsigned flags = column.rawFlags;
    if (flags == 0)
        flags = kColumnUpdatable;
    const auto set = [&](std::uint8_t bit, bool on) { flags = on ? flags | bit : flags & ~bit; };
    set(kColumnFixed, column.fixed);
    if (column.type == ColumnType::Long)
        set(kColumnAutoNumber, column.autoNumber);
    if (column.type == ColumnType::Guid)
        set(kColumnAutoGuid, column.autoNumber);
    if (column.type == ColumnType::Memo)
        set(kColumnHyperlink, column.hyperlink);
    return static_cast<std::uint8_t>(flags);
}

void PutColumn(DefinitionBuilder& out, const Column& column, const TableDefinition& definition)
{
    out.U8(column.rawType != 0 ? column.rawType : static_cast<std::uint8_t>(column.type));
    out.U32(kDefinitionMark);
    out.U16(column.number);
    if (column.fixed) {
        const auto before =
            std::count_if(definition.columns.begin(), definition.columns.end(),
                          [&](const Column& c) { return !c.fixed && c.number < column.number; });
        out.U16(static_cast<std::uint16_t>(before));
    } else {
        out.U16(column.position);
    }
    out.U16(column.rawOrdinal);
    if (column.type == ColumnType::Decimal) {
        out.U8(column.precision);
        out.U8(column.scale);
        out.U16(0);
    } else {
        out.U16(column.sortOrder);
        out.U8(0);
        out.U8(column.sortVersion);
    }
    out.U8(FlagsOf(column));
    const std::uint8_t extra = column.rawExtraFlags & static_cast<std::uint8_t>(~kColumnCompressed);
    out.U8(column.IsText() && column.compress ? extra | kColumnCompressed : extra);
    out.U32(0);
    out.U16(column.fixed ? column.position : 0);
    out.U16(column.lengthBytes);
}

void PutPhysicalIndex(DefinitionBuilder& out, const PhysicalIndex& index,
                      const TableDefinition& definition)
{
    out.U32(kPhysicalIndexMark);
    for (std::size_t slot = 0; slot < kIndexSlots; ++slot) {
        if (slot < index.columns.size()) {
            out.U16(definition.columns[index.columns[slot].column].number);
            out.U8(index.columns[slot].ascending ? 1 : 0);
        } else {
            out.U16(kNoColumn);
            out.U8(0);
        }
    }
    out.Pointer(index.ownedMap);
    out.U32(index.root);
    out.U32(0);
    unsigned flags = index.rawFlags | kIndexJet4;
    const auto set = [&](std::uint8_t bit, bool on) { flags = on ? flags | bit : flags & ~bit; };
    set(kIndexUnique, index.unique);
    set(kIndexIgnoreNulls, index.ignoreNulls);
    set(kIndexRequired, index.required);
    out.U8(static_cast<std::uint8_t>(flags));
    out.Zeros(5);
}

void PutLogicalIndex(DefinitionBuilder& out, const LogicalIndex& index)
{
    out.U32(kDefinitionMark);
    out.U32(index.number);
    out.U32(static_cast<std::uint32_t>(index.physical));
    out.U8(index.side);
    out.U32(static_cast<std::uint32_t>(index.otherIndex));
    out.U32(index.otherTable);
    out.U8(index.cascadeUpdates);
    out.U8(index.cascadeDeletes);
    out.U8(static_cast<std::uint8_t>(index.kind));
    out.U32(0);
}

Bytes BuildDefinition(const TableDefinition& definition)
{
    DefinitionBuilder out;
    out.U16(0x0102);
    out.Zeros(10); // free count, next page, length: filled in later
    out.U32(kDefinitionMark);
    out.U32(definition.rowCount);
    out.U32(definition.lastAutoNumber);
    out.U32(1); // auto-numbers rise by one
    out.Zeros(12);
    out.U8(definition.system ? 'S' : 'N');
    out.U16(definition.maxColumns);
    out.U16(definition.variableColumns);
    out.U16(static_cast<std::uint16_t>(definition.columns.size()));
    out.U32(static_cast<std::uint32_t>(definition.logicalIndexes.size()));
    out.U32(static_cast<std::uint32_t>(definition.physicalIndexes.size()));
    out.Pointer(definition.ownedMap);
    out.Pointer(definition.freeMap);
    for (const PhysicalIndex& index : definition.physicalIndexes) {
        out.U32(index.rowsCounted);
        out.U32(index.distinctCount);
        out.U32(0);
    }
    for (const Column& column : definition.columns)
        PutColumn(out, column, definition);
    for (const Column& column : definition.columns)
        out.Name(column.name);
    for (const PhysicalIndex& index : definition.physicalIndexes)
        PutPhysicalIndex(out, index, definition);
    for (const LogicalIndex& index : definition.logicalIndexes)
        PutLogicalIndex(out, index);
    for (const LogicalIndex& index : definition.logicalIndexes)
        out.Name(index.name);
    for (const Column& column : definition.columns) {
        if (!column.IsLongValue())
            continue;
        out.U16(column.number);
        out.Pointer(column.ownedMap);
        out.Pointer(column.freeMap);
    }
    out.U16(kNoColumn);
    return out.Finish();
}

/// The pages of the definition that stands at `first`; just `first` when it is new.
std::vector<PageNumber> DefinitionChain(Pager& pager, PageNumber first)
{
    std::vector<PageNumber> chain;
    for (PageNumber page = first; page != 0;) {
        const PageView view = pager.Read(page);
        const bool definition = GetU16(view.Data(), 0) == 0x0102;
        if (!definition && page != first)
            ThrowDamaged(pager, page, "dit is geen definitiepagina");
        chain.push_back(page);
        if (chain.size() * pager.PageSize() > 2 * kLongestDefinition)
            ThrowDamaged(pager, first, "de keten van definitiepagina's heeft geen einde");
        page = definition ? GetU32(view.Data(), 4) : 0;
    }
    return chain;
}

} // namespace

void WriteTableDefinition(Pager& pager, PageAllocator& pages, TableDefinition& definition)
{
    const Bytes bytes = BuildDefinition(definition);
    if (bytes.size() > kLongestDefinition)
        throw Error(ErrorKind::BadSchema, "De definitie van de tabel is te groot.");
    const std::size_t pageSize = pager.PageSize();
    const std::size_t perPage = pageSize - kDefinitionPageHeader;
    const std::size_t needed =
        bytes.size() <= pageSize ? 1 : 1 + (bytes.size() - pageSize + perPage - 1) / perPage;

    std::vector<PageNumber> chain = DefinitionChain(pager, definition.page);
    while (chain.size() < needed)
        chain.push_back(pages.Allocate().Number());
    while (chain.size() > needed) {
        pages.Free(chain.back());
        chain.pop_back();
    }

    // From the last page to the first: each points only to what is written.
    for (std::size_t i = needed; i-- > 0;) {
        const std::size_t from = i == 0 ? 0 : pageSize + (i - 1) * perPage;
        const std::size_t header = i == 0 ? 0 : kDefinitionPageHeader;
        const std::size_t count = std::min(bytes.size() - from, pageSize - header);
        const PageEdit edit = pager.Write(chain[i]);
        const auto data = edit.Data();
        std::fill(data.begin(), data.end(), std::byte{0});
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), count,
                    data.begin() + static_cast<std::ptrdiff_t>(header));
        const std::size_t used = header + count + kDefinitionPageHeader;
        const std::size_t usedHere = i == 0 ? used : header + count;
        PutU16(data, 0, 0x0102);
        PutU16(data, 2, static_cast<std::uint16_t>(usedHere < pageSize ? pageSize - usedHere : 0));
        PutU32(data, 4, i + 1 < needed ? chain[i + 1] : 0);
    }
    definition.length = static_cast<std::uint32_t>(bytes.size());
}

void FreeTableDefinition(Pager& pager, PageAllocator& pages, PageNumber page)
{
    for (const PageNumber part : DefinitionChain(pager, page))
        pages.Free(part);
}

} // namespace jet
