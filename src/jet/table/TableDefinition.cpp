#include "jet/table/TableDefinition.h"

#include "jet/base/Text.h"

namespace jet {

int Column::Size() const
{
    return type == ColumnType::Text ? lengthBytes / 2 : lengthBytes;
}

int TableDefinition::FindColumn(std::string_view name) const
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (NamesEqual(columns[i].name, name))
            return static_cast<int>(i);
    }
    return -1;
}

int TableDefinition::FindIndex(std::string_view name) const
{
    for (std::size_t i = 0; i < logicalIndexes.size(); ++i) {
        if (NamesEqual(logicalIndexes[i].name, name))
            return static_cast<int>(i);
    }
    return -1;
}

int TableDefinition::FindColumnNumber(std::uint16_t number) const
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].number == number)
            return static_cast<int>(i);
    }
    return -1;
}

const std::string& TableDefinition::NameOfPhysical(int physicalIndex) const
{
    const LogicalIndex* best = nullptr;
    for (const LogicalIndex& logical : logicalIndexes) {
        if (logical.physical != physicalIndex)
            continue;
        // A relationship may share the tree; its name tells a user less.
        if (best == nullptr || (best->kind == LogicalIndex::Kind::Relationship &&
                                logical.kind != LogicalIndex::Kind::Relationship))
            best = &logical;
    }
    static const std::string nameless = "?";
    return best != nullptr ? best->name : nameless;
}

int TableDefinition::PrimaryKey() const
{
    for (std::size_t i = 0; i < logicalIndexes.size(); ++i) {
        if (logicalIndexes[i].kind == LogicalIndex::Kind::Primary)
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace jet
