#pragma once

#include "jet/base/Value.h"
#include "jet/storage/PageAllocator.h"

#include <string>
#include <vector>

namespace jet {

/// One column of a table. What storage needs comes from the definition page;
/// what insert and update must respect besides (default, required, ...) are
/// properties, which the catalog fills in.
struct Column {
    std::string name;
    ColumnType type = ColumnType::Long;
    std::uint16_t number = 0;   ///< identity in rows and indexes; survives drops
    bool fixed = true;          ///< value lies in the fixed area
    std::uint16_t position = 0; ///< fixed: offset; variable: index in the variable table
    std::uint16_t lengthBytes = 0;
    std::uint8_t precision = 18; ///< Decimal only
    std::uint8_t scale = 0;      ///< Decimal only
    bool autoNumber = false;     ///< Long, or Guid
    bool compress = true;        ///< text may be stored one byte a character
    bool hyperlink = false;
    // as in the file, kept on rewrite; 0 in a new column means "as the other fields say"
    std::uint8_t rawType = 0; ///< a type code we read as Binary
    std::uint8_t rawFlags = 0;
    std::uint8_t rawExtraFlags = 0;
    std::uint16_t rawOrdinal = 0;     ///< the column's second number
    std::uint16_t sortOrder = 0x0409; ///< LCID of text
    std::uint8_t sortVersion = 0;     ///< 0 General legacy, 1 the later General
    RowId ownedMap, freeMap;          ///< of Memo and Ole; page 0 = absent

    // properties
    bool required = false;
    bool allowZeroLength = true;
    std::string defaultValue; ///< an expression: -999, "abc", Date(); empty = none
    std::string validationRule;
    std::string description;

    /// Characters a Text column takes; bytes a Binary one takes.
    int Size() const;
    bool IsText() const { return type == ColumnType::Text || type == ColumnType::Memo; }
    bool IsLongValue() const { return type == ColumnType::Memo || type == ColumnType::Ole; }
    /// Whether the order of this column's texts in indexes is one we know.
    bool HasKnownOrder() const { return !IsText() || (sortOrder == 0x0409 && sortVersion == 0); }
};

struct IndexColumn {
    int column = 0; ///< position in TableDefinition::columns
    bool ascending = true;
    bool operator==(const IndexColumn&) const = default;
};

/// One tree of keys.
struct PhysicalIndex {
    std::vector<IndexColumn> columns;
    RowId ownedMap;
    PageNumber root = 0;
    bool unique = false;
    bool ignoreNulls = false;
    bool required = false;
    std::uint8_t rawFlags = 0;
    std::uint32_t rowsCounted = 0;   ///< 0 or the row count at some moment; kept
    std::uint32_t distinctCount = 0; ///< statistic: distinct keys, not lowered by deletes
};

/// A name for a physical index; several may share one.
struct LogicalIndex {
    enum class Kind : std::uint8_t { Plain = 0, Primary = 1, Relationship = 2 };
    std::string name;
    std::uint32_t number = 0;
    int physical = 0; ///< position in TableDefinition::physicalIndexes
    Kind kind = Kind::Plain;
    // relationship fields, kept as they are in the file
    std::uint8_t side = 0;
    std::int32_t otherIndex = -1;
    PageNumber otherTable = 0;
    std::uint8_t cascadeUpdates = 4, cascadeDeletes = 4;
};

/// All that a table's definition pages say.
struct TableDefinition {
    PageNumber page = 0; ///< the table's id for life
    bool system = false;
    std::uint32_t rowCount = 0; ///< a statistic in foreign files, exact in ours
    std::uint32_t lastAutoNumber = 0;
    std::uint32_t length = 0;          ///< bytes, as last read or written
    std::uint16_t maxColumns = 0;      ///< highest column number ever used + 1
    std::uint16_t variableColumns = 0; ///< dropped ones included
    RowId ownedMap, freeMap;
    std::vector<Column> columns; ///< display order
    std::vector<PhysicalIndex> physicalIndexes;
    std::vector<LogicalIndex> logicalIndexes;

    /// Position of a column, without regard to case; -1 when there is none.
    int FindColumn(std::string_view name) const;
    /// Position in logicalIndexes, without regard to case; -1 when there is none.
    int FindIndex(std::string_view name) const;
    /// Position in columns of the column with this number; -1 when there is none.
    int FindColumnNumber(std::uint16_t number) const;
    /// The name under which users know a physical index.
    const std::string& NameOfPhysical(int physicalIndex) const;
    /// Position in logicalIndexes of the primary key; -1 when there is none.
    int PrimaryKey() const;
};

/// Reads and checks the definition that starts at `page`. Throws Damaged.
TableDefinition ReadTableDefinition(Pager& pager, PageNumber page);
/// Writes it over the existing chain of pages, which grows or shrinks as needed;
/// `definition.page` keeps its place (for a new table: an allocated page of zeros).
/// Sets `definition.length`. Jet 4 only.
void WriteTableDefinition(Pager& pager, PageAllocator& pages, TableDefinition& definition);
/// Gives the definition's pages back (when the table is dropped).
void FreeTableDefinition(Pager& pager, PageAllocator& pages, PageNumber page);

} // namespace jet
