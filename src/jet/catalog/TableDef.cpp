#include "jet/catalog/TableDef.h"

#include "jet/base/Text.h"

namespace jet {

const FieldDef* TableDef::FindField(std::string_view fieldName) const
{
    for (const FieldDef& field : fields)
        if (NamesEqual(field.name, fieldName))
            return &field;
    return nullptr;
}

const IndexDef* TableDef::FindIndex(std::string_view indexName) const
{
    for (const IndexDef& index : indexes)
        if (NamesEqual(index.name, indexName))
            return &index;
    return nullptr;
}

const IndexDef* TableDef::PrimaryKey() const
{
    for (const IndexDef& index : indexes)
        if (index.primary)
            return &index;
    return nullptr;
}

} // namespace jet
