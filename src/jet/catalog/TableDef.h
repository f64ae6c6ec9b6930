#pragma once

#include "jet/base/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

/// A field of a table or of a statement's result.
struct FieldDef {
    std::string name;
    ColumnType type = ColumnType::Long;
    int size = 0; ///< characters of Text (0 = 255 when created), bytes of the others
    bool autoNumber = false;
    bool required = false;
    bool allowZeroLength = true;
    std::string defaultValue{}; ///< an expression: -999, "abc", Date(); empty = none
    std::string description{};
    int precision = 18, scale = 0; ///< Decimal
    bool fixedLength = true;       ///< as stored; ignored when a field is created
};

struct IndexDef {
    struct Part {
        std::string field;
        bool descending = false;
    };
    std::string name;
    std::vector<Part> fields{};
    bool primary = false;
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;
    bool foreign = false; ///< made by a relationship; not created by us
};

/// A table as it is, or as it should be made. Plain values.
struct TableDef {
    std::string name;
    std::vector<FieldDef> fields{};
    std::vector<IndexDef> indexes{};
    int recordCount = 0;

    /// Without regard to case; nullptr when absent.
    const FieldDef* FindField(std::string_view fieldName) const;
    const IndexDef* FindIndex(std::string_view indexName) const;
    const IndexDef* PrimaryKey() const;
};

} // namespace jet
