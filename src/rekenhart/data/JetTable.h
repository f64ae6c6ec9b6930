#pragma once

#include "jet/dao/Workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace rekenhart {

/// Walks a table's rows and reads their fields by name, null as "not known".
/// With a key it walks an index that begins with the key's field where the table
/// has one, so that one location costs the same in a file with thousands of them.
class JetTable {
public:
    JetTable(jet::Database& database, const std::string& table);

    /// All rows, in the order of the file.
    void ForEach(const std::function<void()>& visit);
    /// The rows whose `field` equals `key`.
    void ForEach(std::string_view field, int key, const std::function<void()>& visit);

    // The current row.
    double Number(std::string_view field) const;
    int Whole(std::string_view field, int whenNull = 0) const;
    std::string Text(std::string_view field) const;
    bool Flag(std::string_view field) const;
    /// For fields that older files lack: `otherwise` when there is none.
    double NumberOr(std::string_view field, double otherwise) const;
    bool HasField(std::string_view field) const;

    void Edit() { m_rows->Edit(); }
    void SetNumber(std::string_view field, double value) { m_rows->Set(field, value); }
    void Update() { m_rows->Update(); }

private:
    jet::TableDef m_definition;
    std::unique_ptr<jet::Recordset> m_rows;
};

} // namespace rekenhart
