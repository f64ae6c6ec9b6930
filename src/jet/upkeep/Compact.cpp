#include "jet/upkeep/Compact.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/TableStorage.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/FileSystem.h"
#include "jet/table/RowView.h"
#include "jet/upkeep/Check.h"

#include <algorithm>
#include <map>

namespace jet {

namespace {

constexpr PageNumber kLastFixedDefinition = 5; // the four system tables stand on 2 to 5

/// The same columns with numbers and places as if none had ever been dropped.
TableDefinition WithoutGaps(TableDefinition definition)
{
    std::vector<Column*> byNumber;
    for (Column& column : definition.columns)
        byNumber.push_back(&column);
    std::ranges::sort(byNumber, {}, [](const Column* column) { return column->number; });
    std::uint16_t number = 0, variable = 0, offset = 0;
    for (Column* column : byNumber) {
        column->number = number++;
        column->ownedMap = column->freeMap = {};
        if (!column->fixed) {
            column->position = variable++;
        } else if (column->type == ColumnType::Boolean) {
            column->position = 0;
        } else {
            column->position = offset;
            offset = static_cast<std::uint16_t>(offset + column->lengthBytes);
        }
    }
    definition.maxColumns = number;
    definition.variableColumns = variable;
    definition.rowCount = 0;
    return definition;
}

class Compacter {
public:
    Compacter(Pager& from, Pager& to) : m_from(from), m_to(to), m_source(from), m_target(to) {}

    void Run()
    {
        m_to.Begin();
        for (const TableEntry& entry : m_source.Tables())
            if (entry.page > kLastFixedDefinition)
                CopyTable(entry);
        LinkRelationships();
        CopyObjects();
        CopySystemRows("MSysACEs", "ObjectId");
        CopySystemRows("MSysQueries", "ObjectId");
        CopySystemRows("MSysRelationships", nullptr);
        m_to.Commit(Flush::Yes);
    }

private:
    void CopyTable(const TableEntry& entry)
    {
        const auto source = m_source.Open(entry.name);
        const TableDefinition original = ReadTableDefinition(m_from, entry.page);
        TableDefinition definition = WithoutGaps(original);
        PageAllocator& pages = m_target.Pages();
        definition.page = pages.Allocate().Number();
        definition.ownedMap = pages.AllocateMap();
        definition.freeMap = pages.AllocateMap();
        for (Column& column : definition.columns)
            if (column.IsLongValue())
                MakeLongValueMaps(pages, column);
        m_newPage[entry.page] = definition.page;

        // The rows go in first, bare: no index is kept, no number handed out.
        TableDefinition bare = definition;
        bare.physicalIndexes.clear();
        bare.logicalIndexes.clear();
        for (Column& column : bare.columns)
            column.autoNumber = false;
        WriteTableDefinition(m_to, pages, bare);
        Table table(m_to, pages, entry.name, bare);
        for (TableScan scan(*source); scan.Next();) {
            Row row = scan.GetRow();
            table.Insert(row);
        }

        definition.rowCount = table.RowCount();
        for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i) {
            PhysicalIndex& index = definition.physicalIndexes[i];
            const SortedEntries entries(table, index,
                                        definition.NameOfPhysical(static_cast<int>(i)));
            MakeTree(m_to, pages, definition.page, index);
            entries.FillTree(pages, index);
            index.distinctCount = entries.DistinctKeys();
        }
        WriteTableDefinition(m_to, pages, definition);
    }

    /// Tables that a relationship ties name each other by page.
    void LinkRelationships()
    {
        for (const auto& [oldPage, newPage] : m_newPage) {
            TableDefinition definition = ReadTableDefinition(m_to, newPage);
            bool changed = false;
            for (LogicalIndex& index : definition.logicalIndexes) {
                const auto other = m_newPage.find(index.otherTable);
                if (index.otherTable == 0 || other == m_newPage.end())
                    continue;
                index.otherTable = other->second;
                changed = true;
            }
            if (changed)
                WriteTableDefinition(m_to, m_target.Pages(), definition);
        }
    }

    /// Position in the new system table of each column of the old one.
    std::vector<int> ColumnsOf(const Table& from, const Table& to) const
    {
        std::vector<int> places;
        for (const Column& column : from.Definition().columns) {
            const int place = to.Definition().FindColumn(column.name);
            if (place < 0)
                throw Error(ErrorKind::Unsupported,
                            "Het bestand " + Utf8FromPath(m_from.Path()) +
                                " kan niet worden verkleind: de systeemtabel " + from.Name() +
                                " heeft een onbekend veld \"" + column.name + "\".");
            places.push_back(place);
        }
        return places;
    }

    Row Moved(const Row& row, const std::vector<int>& places, std::size_t size) const
    {
        Row moved(size);
        for (std::size_t i = 0; i < places.size(); ++i)
            moved[static_cast<std::size_t>(places[i])] = row[i];
        return moved;
    }

    /// Where an object's id is the page of a table, that page has changed.
    void Renumber(Value& id) const
    {
        if (id.IsNull())
            return;
        const auto at = m_newPage.find(static_cast<PageNumber>(id.AsInt()));
        if (at != m_newPage.end())
            id = static_cast<std::int32_t>(at->second);
    }

    static void DeleteAll(Table& table)
    {
        std::vector<RowId> rows;
        for (TableScan scan(table); scan.Next();)
            rows.push_back(scan.Id());
        for (const RowId row : rows)
            table.Delete(row);
    }

    void CopyObjects()
    {
        const auto from = m_source.Open("MSysObjects");
        const auto to = m_target.Open("MSysObjects");
        const auto places = ColumnsOf(*from, *to);
        const auto id = static_cast<std::size_t>(to->Definition().FindColumn("Id"));
        const auto type = static_cast<std::size_t>(to->Definition().FindColumn("Type"));
        DeleteAll(*to);
        for (TableScan scan(*from); scan.Next();) {
            Row row = Moved(scan.GetRow(), places, to->Definition().columns.size());
            if (row[type].AsIntOr(0) == 1)
                Renumber(row[id]);
            to->Insert(row);
        }
    }

    void CopySystemRows(const char* name, const char* objectColumn)
    {
        if (!m_source.HasTable(name))
            return;
        const auto from = m_source.Open(name);
        const auto to = m_target.Open(name);
        const auto places = ColumnsOf(*from, *to);
        DeleteAll(*to);
        for (TableScan scan(*from); scan.Next();) {
            Row row = Moved(scan.GetRow(), places, to->Definition().columns.size());
            if (objectColumn)
                Renumber(row[static_cast<std::size_t>(to->Definition().FindColumn(objectColumn))]);
            to->Insert(row);
        }
    }

    Pager& m_from;
    Pager& m_to;
    Catalog m_source;
    Catalog m_target;
    std::map<PageNumber, PageNumber> m_newPage; ///< of a table's definition, by the old one
};

/// A file that is in the way of nobody once this object is gone.
class ScratchFile {
public:
    ScratchFile(FileSystem& files, std::filesystem::path path)
        : m_files(files), m_path(std::move(path))
    {
        m_files.Remove(m_path); // of a compaction that was killed
    }
    ~ScratchFile()
    {
        try {
            m_files.Remove(m_path);
        } catch (const Error&) { // it only takes room
        }
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    FileSystem& m_files;
    std::filesystem::path m_path;
};

} // namespace

void CompactFile(FileSystem& files, const std::filesystem::path& path)
{
    auto from = Pager::Open(files, path, {});
    if (from->IsReadOnly())
        throw Error(ErrorKind::ReadOnly, from->WhyReadOnly());
    const std::filesystem::path original = from->Path();
    std::filesystem::path beside = original;
    beside += "-compact";
    const ScratchFile copy(files, beside);
    {
        const auto to =
            Pager::Create(files, copy.Path(), Catalog::EmptyFile(from->Header().created), {});
        Compacter(*from, *to).Run();
        const CheckReport report = CheckFile(*to);
        if (!report.IsSound())
            throw Error(ErrorKind::Damaged, "Het bestand " + Utf8FromPath(path) +
                                                " is niet vervangen: de kopie is niet in orde. " +
                                                report.faults.front());
    }
    from.reset();
    files.Replace(copy.Path(), original);
    files.SyncFolder(original.parent_path());
}

} // namespace jet
