// The pages of a new file, made by the engine itself on a file in memory.
//
// What stands where is fixed by what every such file has: the header, the map of
// free pages on page 1, the definitions of the four system tables on pages 2 to
// 5, their maps on page 6, and from page 7 their indexes and rows.

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/Catalog.h"
#include "jet/catalog/TableStorage.h"
#include "jet/storage/DataPage.h"
#include "jet/storage/FileHeader.h"

#include <algorithm>
#include <map>

namespace jet {

namespace {

constexpr std::size_t kPage = 4096;

/// Files that live in memory for as long as this object does.
class MemoryFiles : public FileSystem {
public:
    Bytes& Content(const std::filesystem::path& path) { return m_files[path]; }

    std::unique_ptr<File> Open(const std::filesystem::path& path, Mode, Sharing) override
    {
        return std::make_unique<MemoryFile>(m_files[path]);
    }
    bool Exists(const std::filesystem::path& path) override { return m_files.contains(path); }
    bool IsInUse(const std::filesystem::path&) override { return false; }
    void Remove(const std::filesystem::path& path) override { m_files.erase(path); }
    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        m_files[to] = std::move(m_files[from]);
        m_files.erase(from);
    }
    void SyncFolder(const std::filesystem::path&) override {}
    std::filesystem::path Resolve(const std::filesystem::path& path) override { return path; }

private:
    class MemoryFile : public File {
    public:
        explicit MemoryFile(Bytes& bytes) : m_bytes(bytes) {}

        std::uint64_t Size() override { return m_bytes.size(); }
        void ReadAt(std::uint64_t offset, std::span<std::byte> into) override
        {
            if (offset + into.size() > m_bytes.size())
                throw Error(ErrorKind::Io, "Er is voorbij het einde van een bestand gelezen.");
            std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(offset), into.size(),
                        into.begin());
        }
        void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override
        {
            m_bytes.resize(std::max<std::size_t>(m_bytes.size(), offset + bytes.size()));
            std::ranges::copy(bytes, m_bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        }
        void Resize(std::uint64_t size) override { m_bytes.resize(size); }
        void Sync() override {}
        bool TryLock(Sharing) override { return true; }

    private:
        Bytes& m_bytes; // in the map of MemoryFiles, whose nodes stay where they are
    };

    std::map<std::filesystem::path, Bytes> m_files;
};

void PutText(std::span<std::byte> page, std::size_t offset, std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        page[offset + i] = static_cast<std::byte>(text[i]);
}

void PutHeader(std::span<std::byte> page, DateTime created)
{
    PutU32(page, 0x00, 0x00000100);
    PutText(page, 0x04, "Standard Jet DB");
    PutU8(page, 0x14, 1);
    PutU32(page, 0x18, PointerFromRowId({1, 0})); // free pages
    PutU32(page, 0x1C, PointerFromRowId({1, 1}));
    for (std::uint32_t table = 0; table < 4; ++table)
        PutU32(page, 0x20 + 4 * table, 2 + table);
    PutU16(page, 0x3C, 1252);
    PutU16(page, 0x6E, 0x0409);
    PutF64(page, 0x72, created.days);
    // An empty password is zeros, masked with the whole days of the creation date.
    for (std::size_t i = 0; i < 10; ++i)
        PutI32(page, 0x42 + 4 * i, static_cast<std::int32_t>(created.days));
    ToggleHeaderMask(page, FileVersion::Jet4);
    PutU32(page, 0x98, 0x00000654);
    PutText(page, 0x9C, "4.0");
    const std::size_t words = CommitWordsOffset(FileVersion::Jet4);
    for (std::size_t i = 0; i < 256; ++i)
        PutU16(page, words + 2 * i, i == 0 ? 0x0101 : 0x0100);
}

/// Page 1: two maps inline, 64 bytes of bits each.
void PutGlobalMaps(std::span<std::byte> page)
{
    constexpr std::size_t mapLength = 69;
    PutU16(page, 0, 0x0101);
    PutU16(page, 2, 0x0F64);
    PutU32(page, 4, 1);
    PutU16(page, 12, 2);
    PutU16(page, 14, kPage - mapLength);
    PutU16(page, 16, kPage - 2 * mapLength);
    for (std::size_t i = 0; i < 64; ++i)
        PutU8(page, kPage - mapLength + 5 + i, 0xFF); // free: they do not exist yet
    PutU8(page, kPage - mapLength + 5, 0xFC);         // but for pages 0 and 1
}

struct SystemColumnSpec {
    const char* name;
    std::uint16_t number;
    ColumnType type;
    std::uint16_t length;
    std::uint16_t offset;
};

constexpr std::uint8_t kSystemColumn = 0x12; // updatable, of a system table
constexpr std::uint8_t kUserIdColumn = 0x20; // besides, on the columns that hold a user's id

TableDefinition SystemTableDefinition(std::vector<SystemColumnSpec> specs)
{
    TableDefinition definition;
    definition.system = true;
    for (const SystemColumnSpec& spec : specs) {
        Column column;
        column.name = spec.name;
        column.number = spec.number;
        column.type = spec.type;
        column.lengthBytes = spec.length;
        column.position = spec.offset;
        column.compress = false;
        column.fixed = spec.type != ColumnType::Text && spec.type != ColumnType::Memo &&
                       spec.type != ColumnType::Binary && spec.type != ColumnType::Ole;
        column.rawFlags = kSystemColumn;
        if (column.name == "Owner" || column.name == "SID")
            column.rawFlags |= kUserIdColumn;
        definition.columns.push_back(std::move(column));
    }
    definition.maxColumns = static_cast<std::uint16_t>(specs.size());
    for (std::uint16_t number = 0; number < specs.size(); ++number) {
        Column& column = definition.columns[definition.FindColumnNumber(number)];
        if (!column.fixed)
            column.position = definition.variableColumns++;
    }
    return definition;
}

void AddIndex(TableDefinition& definition, std::vector<const char*> columns, std::uint8_t flags)
{
    PhysicalIndex index;
    for (const char* column : columns)
        index.columns.push_back({definition.FindColumn(column), true});
    index.rawFlags = flags;
    index.unique = (flags & 0x01) != 0;
    index.ignoreNulls = (flags & 0x02) != 0;
    index.required = (flags & 0x08) != 0;
    definition.physicalIndexes.push_back(std::move(index));
}

void NameIndex(TableDefinition& definition, const char* name, std::uint32_t number,
               LogicalIndex::Kind kind = LogicalIndex::Kind::Plain)
{
    LogicalIndex index;
    index.name = name;
    index.number = number;
    index.physical = static_cast<int>(number);
    index.kind = kind;
    definition.logicalIndexes.push_back(std::move(index));
}

TableDefinition ObjectsDefinition()
{
    using enum ColumnType;
    auto definition = SystemTableDefinition({{"Connect", 9, Memo, 0, 0},
                                             {"Database", 8, Memo, 0, 0},
                                             {"DateCreate", 4, DateTime, 8, 10},
                                             {"DateUpdate", 5, DateTime, 8, 18},
                                             {"Flags", 7, Long, 4, 26},
                                             {"ForeignName", 10, Text, 510, 0},
                                             {"Id", 0, Long, 4, 0},
                                             {"Lv", 13, Ole, 0, 0},
                                             {"LvExtra", 16, Ole, 0, 0},
                                             {"LvModule", 15, Ole, 0, 0},
                                             {"LvProp", 14, Ole, 0, 0},
                                             {"Name", 2, Text, 510, 0},
                                             {"Owner", 6, Binary, 510, 0},
                                             {"ParentId", 1, Long, 4, 4},
                                             {"RmtInfoLong", 12, Ole, 0, 0},
                                             {"RmtInfoShort", 11, Binary, 510, 0},
                                             {"Type", 3, Integer, 2, 8}});
    AddIndex(definition, {"ParentId", "Name"}, 0x81);
    AddIndex(definition, {"Id"}, 0x81);
    NameIndex(definition, "Id", 1, LogicalIndex::Kind::Primary);
    NameIndex(definition, "ParentIdName", 0);
    return definition;
}

TableDefinition AccessDefinition()
{
    using enum ColumnType;
    auto definition = SystemTableDefinition({{"ACM", 2, Long, 4, 4},
                                             {"FInheritable", 3, Boolean, 1, 0},
                                             {"ObjectId", 0, Long, 4, 0},
                                             {"SID", 1, Binary, 510, 0}});
    AddIndex(definition, {"ObjectId"}, 0x88);
    NameIndex(definition, "ObjectId", 0);
    return definition;
}

TableDefinition QueriesDefinition()
{
    using enum ColumnType;
    auto definition = SystemTableDefinition({{"Attribute", 1, Byte, 1, 4},
                                             {"Expression", 5, Memo, 0, 0},
                                             {"Flag", 6, Integer, 2, 5},
                                             {"LvExtra", 7, Long, 4, 7},
                                             {"Name1", 3, Text, 510, 0},
                                             {"Name2", 4, Text, 510, 0},
                                             {"ObjectId", 0, Long, 4, 0},
                                             {"Order", 2, Binary, 510, 0}});
    AddIndex(definition, {"ObjectId", "Attribute", "Order"}, 0x81);
    NameIndex(definition, "ObjectIdAttribute", 0, LogicalIndex::Kind::Primary);
    return definition;
}

TableDefinition RelationshipsDefinition()
{
    using enum ColumnType;
    auto definition = SystemTableDefinition({{"ccolumn", 2, Long, 4, 4},
                                             {"grbit", 1, Long, 4, 0},
                                             {"icolumn", 3, Long, 4, 8},
                                             {"szColumn", 5, Text, 510, 0},
                                             {"szObject", 4, Text, 510, 0},
                                             {"szReferencedColumn", 7, Text, 510, 0},
                                             {"szReferencedObject", 6, Text, 510, 0},
                                             {"szRelationship", 0, Text, 510, 0}});
    AddIndex(definition, {"szRelationship"}, 0x82);
    AddIndex(definition, {"szObject"}, 0x82);
    AddIndex(definition, {"szReferencedObject"}, 0x82);
    NameIndex(definition, "szObject", 1);
    NameIndex(definition, "szReferencedObject", 2);
    NameIndex(definition, "szRelationship", 0);
    return definition;
}

/// The ids of users as they stand in a file: enciphered per file, so these
/// belong together and are used unchanged.
Bytes UserId(char user)
{
    const auto id = [](unsigned a, unsigned b) {
        return Bytes{static_cast<std::byte>(a), static_cast<std::byte>(b)};
    };
    switch (user) {
    case 'A':
        return id(0x65, 0x89); // the engine
    case 'B':
        return id(0x64, 0x8B); // the owner of the database
    case 'C':
        return id(0x65, 0x8E); // stands for whoever makes an object
    default:
        return id(0x65, 0x8B); // all users
    }
}

void InsertObject(Table& objects, std::uint32_t id, std::uint32_t parent, const char* name,
                  int type, char owner, DateTime created)
{
    Row row(objects.Definition().columns.size());
    const auto set = [&](const char* column, Value value) {
        row[objects.Definition().FindColumn(column)] = std::move(value);
    };
    set("Id", static_cast<std::int32_t>(id));
    set("ParentId", static_cast<std::int32_t>(parent));
    set("Name", name);
    set("Type", std::int32_t{type});
    set("DateCreate", created);
    set("DateUpdate", created);
    set("Owner", UserId(owner));
    set("Flags", static_cast<std::int32_t>(0x80000000u));
    objects.Insert(row);
}

void InsertObjects(Table& objects, DateTime created)
{
    constexpr std::uint32_t root = 0x0F000000, tables = root + 1, databases = root + 2;
    InsertObject(objects, tables, root, "Tables", 3, 'A', created);
    InsertObject(objects, databases, root, "Databases", 3, 'A', created);
    InsertObject(objects, root + 3, root, "Relationships", 3, 'A', created);
    InsertObject(objects, 0x10000000, databases, "MSysDb", 2, 'B', created);
    InsertObject(objects, 2, tables, "MSysObjects", 1, 'A', created);
    InsertObject(objects, 3, tables, "MSysACEs", 1, 'A', created);
    InsertObject(objects, 4, tables, "MSysQueries", 1, 'A', created);
    InsertObject(objects, 5, tables, "MSysRelationships", 1, 'A', created);
}

void InsertAccess(Table& access)
{
    struct Right {
        std::int32_t object, mask;
        bool inheritable;
        char user;
    };
    constexpr Right rights[] = {
        {2, 0x60000, false, 'B'},
        {3, 0x60000, false, 'B'},
        {4, 0x60000, false, 'B'},
        {5, 0xE0000, false, 'B'},
        {0x0F000001, 0xF00FE, true, 'C'},
        {0x0F000001, 0x60001, false, 'B'},
        {0x0F000003, 0xF00FE, true, 'C'},
        {0x0F000003, 0x60001, false, 'B'},
        {0x0F000002, 0x60000, false, 'B'},
        {0x10000000, 0x6000E, false, 'B'},
        {0x10000000, 0xE, false, 'D'},
        {4, 0x14, false, 'D'},
        {5, 0x14, false, 'D'},
        {2, 0x14, false, 'D'},
        {0x0F000001, 0xFFEFF, true, 'D'},
        {0x0F000003, 0xFFFFF, true, 'D'},
    };
    for (const Right& right : rights) {
        Row row(access.Definition().columns.size());
        const auto set = [&](const char* column, Value value) {
            row[access.Definition().FindColumn(column)] = std::move(value);
        };
        set("ObjectId", right.object);
        set("ACM", right.mask);
        set("FInheritable", right.inheritable);
        set("SID", UserId(right.user));
        access.Insert(row);
    }
}

void BuildSystemTables(Pager& pager, DateTime created)
{
    PageAllocator pages(pager);
    TableDefinition tables[] = {ObjectsDefinition(), AccessDefinition(), QueriesDefinition(),
                                RelationshipsDefinition()};
    for (TableDefinition& table : tables)
        table.page = pages.Allocate().Number();
    // All maps stand on page 6, each table's in the order rows, long values, indexes.
    for (TableDefinition& table : tables) {
        table.ownedMap = pages.AllocateMap();
        table.freeMap = pages.AllocateMap();
        for (std::uint16_t number = 0; number < table.maxColumns; ++number) {
            Column& column = table.columns[table.FindColumnNumber(number)];
            if (column.IsLongValue())
                MakeLongValueMaps(pages, column);
        }
        for (PhysicalIndex& index : table.physicalIndexes)
            MakeTree(pager, pages, table.page, index);
        WriteTableDefinition(pager, pages, table);
    }
    Table objects(pager, pages, "MSysObjects", tables[0]);
    InsertObjects(objects, created);
    Table access(pager, pages, "MSysACEs", tables[1]);
    InsertAccess(access);
}

} // namespace

Bytes Catalog::EmptyFile(DateTime created)
{
    Bytes pages(2 * kPage);
    PutHeader(std::span(pages).first(kPage), created);
    PutGlobalMaps(std::span(pages).last(kPage));

    MemoryFiles files;
    const std::filesystem::path name = "nieuw.mdb";
    {
        const auto pager = Pager::Create(files, name, pages, {});
        pager->Begin();
        BuildSystemTables(*pager, created);
        pager->Commit(Flush::No);
    }
    Bytes result = std::move(files.Content(name));
    // Making the file was no use of it: the count of commits begins here.
    PutU16(result, CommitWordsOffset(FileVersion::Jet4), 0x0101);
    return result;
}

} // namespace jet
