#include "jet/dao/Database.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/catalog/Session.h"
#include "jet/catalog/TableSpecs.h"
#include "jet/dao/SqlPort.h"
#include "jet/dao/TableRecordset.h"
#include "jet/upkeep/Check.h"

namespace jet {

Database::Database(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

Database::~Database()
{
    m_session->Close();
}

const std::filesystem::path& Database::Name() const
{
    return m_session->Path();
}

bool Database::IsOpen() const
{
    return m_session->IsOpen();
}

bool Database::IsReadOnly() const
{
    return m_session->File().IsReadOnly();
}

void Database::Close()
{
    m_session->Close();
}

std::vector<std::string> Database::TableNames(bool withSystemTables) const
{
    std::vector<std::string> names;
    for (const TableEntry& entry : m_session->Tables().Tables())
        if (withSystemTables || !entry.system)
            names.push_back(entry.name);
    return names;
}

bool Database::HasTable(std::string_view name) const
{
    return m_session->Tables().HasTable(name);
}

TableDef Database::GetTableDef(std::string_view name) const
{
    const auto table = m_session->Tables().Open(name);
    const TableDefinition& definition = table->Definition();
    TableDef result;
    result.name = table->Name();
    result.fields = FieldsFrom(definition);
    for (const LogicalIndex& index : definition.logicalIndexes)
        result.indexes.push_back(IndexFrom(definition, index));
    result.recordCount = static_cast<int>(table->RowCount());
    return result;
}

void Database::CreateTable(const TableDef& table)
{
    m_session->Tables().Create(table);
}

void Database::DropTable(std::string_view name)
{
    m_session->RefuseWhileInUse(name);
    m_session->Tables().Drop(name);
}

void Database::RenameTable(std::string_view name, std::string_view newName)
{
    m_session->RefuseWhileInUse(name);
    m_session->Tables().Rename(name, newName);
}

void Database::AddField(std::string_view table, const FieldDef& field)
{
    AddFields(table, {field});
}

void Database::AddFields(std::string_view table, const std::vector<FieldDef>& fields)
{
    m_session->Tables().AddColumns(table, fields);
}

void Database::ChangeField(std::string_view table, const FieldDef& field)
{
    m_session->RefuseWhileInUse(table);
    m_session->Tables().ChangeColumn(table, field);
}

void Database::DropField(std::string_view table, std::string_view field)
{
    m_session->RefuseWhileInUse(table);
    m_session->Tables().DropColumn(table, field);
}

void Database::CreateIndex(std::string_view table, const IndexDef& index)
{
    m_session->Tables().CreateIndex(table, index);
}

void Database::DropIndex(std::string_view table, std::string_view index)
{
    m_session->RefuseWhileInUse(table);
    m_session->Tables().DropIndex(table, index);
}

void Database::SetFieldProperty(std::string_view table, std::string_view field,
                                std::string_view property, const Value& value)
{
    m_session->Tables().SetProperty(table, field, property, value);
}

Value Database::FieldProperty(std::string_view table, std::string_view field,
                              std::string_view property) const
{
    return m_session->Tables().Property(table, field, property);
}

int Database::Execute(std::string_view sql)
{
    m_session->File(); // throws when closed
    m_recordsAffected = 0;
    m_recordsAffected = ExecuteStatement(m_session, sql);
    return m_recordsAffected;
}

int Database::RecordsAffected() const
{
    return m_recordsAffected;
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view source)
{
    if (m_session->Tables().HasTable(source))
        return OpenRecordset(source, RecordsetType::Table);
    return OpenRecordset(source, RecordsetType::Dynaset);
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view source, RecordsetType type,
                                                   RecordsetOptions options)
{
    m_session->File(); // throws when closed
    if (type == RecordsetType::Table)
        return std::make_unique<TableRecordset>(m_session, source, options);
    return OpenStatement(m_session, source, type, options);
}

CheckReport Database::Check()
{
    return CheckFile(m_session->File());
}

} // namespace jet
