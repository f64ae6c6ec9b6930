#include "EngineModel.h"

#include "jet/base/Error.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr const char* kFile = "model.mdb";
constexpr std::size_t kMostTables = 4;
constexpr std::size_t kMostRows = 120;

std::string Lower(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    });
    return text;
}

std::string Show(const jet::Value& value)
{
    if (value.IsNull())
        return "null";
    if (std::holds_alternative<jet::Bytes>(value.Raw()))
        return std::to_string(value.AsBytes().size()) + " bytes";
    const std::string text = value.AsText();
    return text.size() > 40 ? text.substr(0, 40) + "... (" + std::to_string(text.size()) + ")"
                            : text;
}

} // namespace

EngineModel::EngineModel(std::uint32_t seed) : m_seed(seed), m_random(seed)
{
    m_workspace.emplace(m_files);
    m_database = m_workspace->CreateDatabase(kFile);
}

void EngineModel::Fail(const std::string& what) const
{
    throw std::runtime_error("seed " + std::to_string(m_seed) + ", step " + std::to_string(m_step) +
                             " (" + m_operation + "): " + what);
}

void EngineModel::Step()
{
    ++m_step;
    struct Choice {
        int weight;
        const char* name;
        void (EngineModel::*run)();
    };
    static constexpr Choice choices[] = {
        {40, "insert", &EngineModel::Insert},
        {25, "update", &EngineModel::Update},
        {18, "delete", &EngineModel::Delete},
        {6, "begin", &EngineModel::Begin},
        {4, "commit", &EngineModel::Commit},
        {4, "rollback", &EngineModel::Rollback},
        {2, "create table", &EngineModel::CreateTable},
        {1, "drop table", &EngineModel::DropTable},
        {2, "add field", &EngineModel::AddField},
        {2, "drop field", &EngineModel::DropField},
        {1, "reopen", &EngineModel::Reopen},
    };
    int total = 0;
    for (const Choice& choice : choices)
        total += choice.weight;
    int pick = Random(total);
    for (const Choice& choice : choices) {
        if (pick < choice.weight) {
            m_operation = choice.name;
            try {
                (this->*choice.run)();
            } catch (const jet::Error& error) {
                Fail(error.what());
            }
            return;
        }
        pick -= choice.weight;
    }
}

jet::Value EngineModel::RandomValue(const jet::FieldDef& field)
{
    if (Random(6) == 0 && field.type != jet::ColumnType::Boolean)
        return {};
    switch (field.type) {
    case jet::ColumnType::Boolean:
        return Random(2) == 1;
    case jet::ColumnType::Long:
        return Random(2000000) - 1000000;
    case jet::ColumnType::Double:
        return (Random(2000000) - 1000000) / 64.0;
    case jet::ColumnType::DateTime:
        return jet::DateTime{Random(60000) + Random(8) / 8.0};
    case jet::ColumnType::Text: {
        std::string text;
        for (int length = Random(field.size + 1); length > 0; --length)
            text += static_cast<char>((Random(2) == 0 ? 'a' : 'A') + Random(26));
        return text;
    }
    case jet::ColumnType::Memo: {
        const int lengths[] = {0, 10, 60, 300, 2500, 5000, 15000};
        return std::string(static_cast<std::size_t>(lengths[Random(7)] + Random(10)),
                           static_cast<char>('a' + Random(26)));
    }
    case jet::ColumnType::Ole:
        return jet::Bytes(static_cast<std::size_t>(Random(9000)),
                          static_cast<std::byte>(Random(256)));
    default:
        Fail("no such field type in the model");
    }
}

bool EngineModel::CodeIsTaken(const Table& table, const jet::Value& code, int exceptId) const
{
    if (!table.uniqueCode || code.IsNull())
        return false;
    return std::ranges::any_of(table.rows, [&](const auto& entry) {
        return entry.first != exceptId && !entry.second[1].IsNull() &&
               Lower(entry.second[1].AsText()) == Lower(code.AsText());
    });
}

EngineModel::Content::iterator EngineModel::RandomTable()
{
    if (m_content.empty())
        return m_content.end();
    return std::next(m_content.begin(), Random(static_cast<int>(m_content.size())));
}

void EngineModel::Insert()
{
    const auto at = RandomTable();
    if (at == m_content.end() || at->second.rows.size() >= kMostRows)
        return;
    Table& table = at->second;
    jet::Row row(table.fields.size());
    const auto recordset = m_database->OpenRecordset(at->first);
    recordset->AddNew();
    for (std::size_t i = 0; i < row.size(); ++i) {
        const jet::FieldDef& field = table.fields[i];
        if (i == 0) {
            row[i] = table.lastNumber + 1;
        } else if (Random(4) == 0 && field.name != "Code") {
            row[i] = field.defaultValue.empty() ? jet::Value() : jet::Value(-999.0);
            if (field.type == jet::ColumnType::Boolean)
                row[i] = false;
        } else {
            row[i] = RandomValue(field);
            recordset->Set(static_cast<int>(i), row[i]);
        }
    }
    if (CodeIsTaken(table, row[1], 0)) {
        try {
            recordset->Update();
            Fail("a duplicate was let in");
        } catch (const jet::Error& error) {
            if (error.Kind() != jet::ErrorKind::Duplicate)
                throw;
        }
        ++m_counts.refused;
        return;
    }
    recordset->Update();
    table.rows[++table.lastNumber] = row;
    ++m_counts.inserts;
}

void EngineModel::Update()
{
    const auto at = RandomTable();
    if (at == m_content.end() || at->second.rows.empty())
        return;
    Table& table = at->second;
    const int id =
        std::next(table.rows.begin(), Random(static_cast<int>(table.rows.size())))->first;
    const auto recordset = m_database->OpenRecordset(at->first);
    recordset->SetIndex("PrimaryKey");
    recordset->Seek("=", {jet::Value(id)});
    if (recordset->NoMatch())
        Fail("row " + std::to_string(id) + " is not found by its key");
    jet::Row row = table.rows[id];
    recordset->Edit();
    for (std::size_t i = 1; i < row.size(); ++i) {
        if (Random(2) == 0)
            continue;
        row[i] = RandomValue(table.fields[i]);
        recordset->Set(static_cast<int>(i), row[i]);
    }
    if (CodeIsTaken(table, row[1], id)) {
        try {
            recordset->Update();
            Fail("a duplicate was let in");
        } catch (const jet::Error& error) {
            if (error.Kind() != jet::ErrorKind::Duplicate)
                throw;
        }
        ++m_counts.refused;
        return;
    }
    recordset->Update();
    table.rows[id] = row;
    ++m_counts.updates;
}

void EngineModel::Delete()
{
    const auto at = RandomTable();
    if (at == m_content.end() || at->second.rows.empty())
        return;
    Table& table = at->second;
    const auto row = std::next(table.rows.begin(), Random(static_cast<int>(table.rows.size())));
    const auto recordset = m_database->OpenRecordset(at->first);
    recordset->SetIndex("PrimaryKey");
    recordset->Seek("=", {jet::Value(row->first)});
    if (recordset->NoMatch())
        Fail("row " + std::to_string(row->first) + " is not found by its key");
    recordset->Delete();
    table.rows.erase(row);
    ++m_counts.deletes;
}

void EngineModel::Begin()
{
    if (m_saved.size() >= 6)
        return;
    m_workspace->BeginTrans();
    m_saved.push_back(m_content);
    ++m_counts.begins;
}

void EngineModel::Commit()
{
    if (m_saved.empty())
        return;
    m_workspace->CommitTrans(Random(2) == 0 ? jet::Flush::Yes : jet::Flush::No);
    m_saved.pop_back();
    ++m_counts.commits;
}

void EngineModel::Rollback()
{
    if (m_saved.empty())
        return;
    m_workspace->Rollback();
    m_content = m_saved.back();
    m_saved.pop_back();
    ++m_counts.rollbacks;
}

void EngineModel::CreateTable()
{
    if (m_content.size() >= kMostTables)
        return;
    using enum jet::ColumnType;
    Table table;
    table.fields = {{.name = "Id", .type = Long, .autoNumber = true},
                    {.name = "Code", .type = Text, .size = 1 + Random(60)},
                    {.name = "Maat", .type = Double, .defaultValue = "-999"},
                    {.name = "Dag", .type = DateTime},
                    {.name = "Tekst", .type = Memo}};
    table.uniqueCode = Random(3) != 0;
    const std::string name = "Tabel " + std::to_string(++m_names);
    m_database->CreateTable(
        {.name = name,
         .fields = table.fields,
         .indexes = {
             {.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
             {.name = "Code", .fields = {{"Code", Random(2) == 0}}, .unique = table.uniqueCode},
             {.name = "Twee", .fields = {{"Dag", true}, {"Maat"}}, .ignoreNulls = true}}});
    m_content[name] = table;
    ++m_counts.schemaChanges;
}

void EngineModel::DropTable()
{
    const auto at = RandomTable();
    if (at == m_content.end() || m_content.size() < 2)
        return;
    m_database->DropTable(at->first);
    m_content.erase(at);
    ++m_counts.schemaChanges;
}

void EngineModel::AddField()
{
    const auto at = RandomTable();
    if (at == m_content.end() || at->second.fields.size() >= 12)
        return;
    using enum jet::ColumnType;
    const jet::ColumnType types[] = {Boolean, Long, Double, DateTime, Text, Memo, Ole};
    jet::FieldDef field;
    field.name = "Veld " + std::to_string(++m_names);
    field.type = types[Random(7)];
    field.size = field.type == Text ? 1 + Random(100) : 0;
    m_database->AddField(at->first, field);
    at->second.fields.push_back(field);
    for (auto& [id, row] : at->second.rows)
        row.push_back(field.type == Boolean ? jet::Value(false) : jet::Value());
    ++m_counts.schemaChanges;
}

void EngineModel::DropField()
{
    const auto at = RandomTable();
    if (at == m_content.end() || at->second.fields.size() <= 5)
        return;
    Table& table = at->second;
    const int field = 5 + Random(static_cast<int>(table.fields.size()) - 5);
    m_database->DropField(at->first, table.fields[static_cast<std::size_t>(field)].name);
    table.fields.erase(table.fields.begin() + field);
    for (auto& [id, row] : table.rows)
        row.erase(row.begin() + field);
    ++m_counts.schemaChanges;
}

void EngineModel::Reopen()
{
    // What is not committed is gone.
    m_database.reset();
    m_workspace.reset();
    if (!m_saved.empty())
        m_content = m_saved.front();
    m_saved.clear();
    m_workspace.emplace(m_files);
    m_database = m_workspace->OpenDatabase(kFile);
    ++m_counts.reopens;
}

void EngineModel::Compare()
{
    std::vector<std::string> names;
    for (const auto& [name, table] : m_content)
        names.push_back(name);
    if (m_database->TableNames().size() != names.size())
        Fail("the tables differ");
    for (const auto& [name, table] : m_content)
        CompareTable(name, table);
    const jet::CheckReport report = m_database->Check();
    if (!report.IsSound())
        Fail(report.faults.front());
    if (!report.remarks.empty())
        Fail(report.remarks.front());
}

void EngineModel::CompareTable(const std::string& name, const Table& table)
{
    const auto recordset = m_database->OpenRecordset(name);
    if (recordset->RecordCount() != static_cast<int>(table.rows.size()))
        Fail(name + " counts " + std::to_string(recordset->RecordCount()) + " rows, not " +
             std::to_string(table.rows.size()));
    if (recordset->Fields().size() != table.fields.size())
        Fail(name + " has other fields");
    for (const char* index : {"", "PrimaryKey", "Code"}) {
        recordset->SetIndex(index);
        std::size_t met = 0;
        for (; !recordset->EndOfFile(); recordset->MoveNext(), ++met) {
            const int id = recordset->Get(0).AsInt();
            const auto row = table.rows.find(id);
            if (row == table.rows.end())
                Fail(name + " has a row " + std::to_string(id) + " too many");
            for (std::size_t i = 0; i < row->second.size(); ++i)
                if (const jet::Value value = recordset->Get(static_cast<int>(i));
                    value != row->second[i])
                    Fail(name + " row " + std::to_string(id) + " field " + table.fields[i].name +
                         ": " + Show(value) + " is not " + Show(row->second[i]));
        }
        if (met != table.rows.size())
            Fail(name + " by index '" + index + "' gives " + std::to_string(met) + " rows");
    }
}
