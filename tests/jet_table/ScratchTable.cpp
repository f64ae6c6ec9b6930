#include "ScratchTable.h"

#include "SampleFile.h"

#include "jet/table/RowView.h"

using namespace jet;

namespace {
constexpr const char* kPath = "/scratch.mdb";
}

ScratchFile::ScratchFile() : ScratchFile("adox_jet4") {}

ScratchFile::ScratchFile(const std::string& sample)
{
    m_files.Put(kPath, ReadWholeFile(SampleFile::Folder() / (sample + ".mdb")));
    Reopen();
}

void ScratchFile::Reopen()
{
    m_pages.reset();
    m_pager.reset();
    m_pager = Pager::Open(m_files, kPath, {});
    m_pages = std::make_unique<PageAllocator>(*m_pager);
}

int TableSketch::Add(const std::string& name, ColumnType type, int size, bool fixed)
{
    Column column;
    column.name = name;
    column.type = type;
    column.fixed = fixed;
    column.lengthBytes =
        static_cast<std::uint16_t>(type == ColumnType::Text      ? 2 * (size == 0 ? 255 : size)
                                   : type == ColumnType::Binary  ? (size == 0 ? 255 : size)
                                   : type == ColumnType::Boolean ? 1
                                                                 : FixedSize(type));
    if (type == ColumnType::Text || type == ColumnType::Binary || column.IsLongValue())
        column.fixed = false;
    column.number = static_cast<std::uint16_t>(columns.size());
    columns.push_back(column);
    return column.number;
}

void TableSketch::Index(std::vector<IndexColumn> parts, bool unique, bool ignoreNulls)
{
    PhysicalIndex index;
    index.columns = std::move(parts);
    index.unique = unique;
    index.ignoreNulls = ignoreNulls;
    indexes.push_back(index);
}

TableDefinition MakeTable(ScratchFile& file, const TableSketch& sketch)
{
    ChangeScope scope(file.Pager());
    TableDefinition definition;
    definition.page = file.Pages().Allocate().Number();
    definition.ownedMap = file.Pages().AllocateMap();
    definition.freeMap = file.Pages().AllocateMap();
    definition.columns = sketch.columns;
    definition.maxColumns = static_cast<std::uint16_t>(sketch.columns.size());
    std::uint16_t fixedEnd = 0;
    for (Column& column : definition.columns) {
        if (!column.fixed) {
            column.position = definition.variableColumns++;
        } else if (column.type != ColumnType::Boolean) {
            column.position = fixedEnd;
            fixedEnd = static_cast<std::uint16_t>(fixedEnd + column.lengthBytes);
        }
        if (column.IsLongValue()) {
            column.ownedMap = file.Pages().AllocateMap();
            column.freeMap = file.Pages().AllocateMap();
        }
    }
    for (const PhysicalIndex& sketched : sketch.indexes) {
        PhysicalIndex index = sketched;
        index.ownedMap = file.Pages().AllocateMap();
        const PageEdit root = file.Pages().Allocate();
        FormatLeaf(root, definition.page);
        index.root = root.Number();
        UsageMap(file.Pager(), index.ownedMap).Add(index.root);
        LogicalIndex logical;
        logical.number = static_cast<std::uint32_t>(definition.logicalIndexes.size());
        logical.physical = static_cast<int>(logical.number);
        logical.name = "Index" + std::to_string(logical.number);
        if (logical.number == 0 && sketch.firstIsPrimary) {
            logical.kind = LogicalIndex::Kind::Primary;
            index.unique = index.required = true;
        }
        definition.physicalIndexes.push_back(index);
        definition.logicalIndexes.push_back(logical);
    }
    WriteTableDefinition(file.Pager(), file.Pages(), definition);
    scope.Done();
    return definition;
}

std::unique_ptr<Table> OpenTable(ScratchFile& file, PageNumber page, const std::string& name)
{
    return std::make_unique<Table>(file.Pager(), file.Pages(), name,
                                   ReadTableDefinition(file.Pager(), page));
}

std::size_t CountPagesInUse(ScratchFile& file)
{
    std::size_t used = 0;
    for (PageNumber page = 0; page < file.Pager().PageCount(); ++page)
        used += file.Pages().FreePages().Contains(page) ? 0 : 1;
    return used;
}
