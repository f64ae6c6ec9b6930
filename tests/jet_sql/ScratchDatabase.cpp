#include "jet_sql/ScratchDatabase.h"

#include <array>
#include <utility>

namespace jet::testing {

namespace {

constexpr std::array<std::pair<ColumnType, std::string_view>, 14> kTypes = {{
    {ColumnType::Boolean, "Boolean"},
    {ColumnType::Byte, "Byte"},
    {ColumnType::Integer, "Integer"},
    {ColumnType::Long, "Long"},
    {ColumnType::Currency, "Currency"},
    {ColumnType::Single, "Single"},
    {ColumnType::Double, "Double"},
    {ColumnType::DateTime, "DateTime"},
    {ColumnType::Binary, "Binary"},
    {ColumnType::Text, "Text"},
    {ColumnType::Ole, "Ole"},
    {ColumnType::Memo, "Memo"},
    {ColumnType::Guid, "Guid"},
    {ColumnType::Decimal, "Decimal"},
}};

constexpr std::array<std::pair<ErrorKind, std::string_view>, 15> kKinds = {{
    {ErrorKind::Syntax, "Syntax"},
    {ErrorKind::TypeMismatch, "TypeMismatch"},
    {ErrorKind::Overflow, "Overflow"},
    {ErrorKind::BadValue, "BadValue"},
    {ErrorKind::Query, "Query"},
    {ErrorKind::UnknownField, "UnknownField"},
    {ErrorKind::UnknownTable, "UnknownTable"},
    {ErrorKind::UnknownFunction, "UnknownFunction"},
    {ErrorKind::AmbiguousField, "AmbiguousField"},
    {ErrorKind::NotSupported, "NotSupported"},
    {ErrorKind::Duplicate, "Duplicate"},
    {ErrorKind::NullNotAllowed, "NullNotAllowed"},
    {ErrorKind::NameInUse, "NameInUse"},
    {ErrorKind::ReadOnly, "ReadOnly"},
    {ErrorKind::Closed, "Closed"},
}};

std::string ValueText(const Value& value)
{
    return value.IsNull() ? "null" : value.AsText();
}

} // namespace

std::string TypeName(ColumnType type)
{
    for (const auto& [known, name] : kTypes)
        if (known == type)
            return std::string(name);
    return "?";
}

std::optional<ErrorKind> KindNamed(std::string_view name)
{
    for (const auto& [kind, known] : kKinds)
        if (known == name)
            return kind;
    return std::nullopt;
}

std::string KindName(ErrorKind kind)
{
    for (const auto& [known, name] : kKinds)
        if (known == kind)
            return std::string(name);
    return "kind " + std::to_string(static_cast<int>(kind));
}

std::string RowText(Recordset& rows)
{
    std::string text;
    for (std::size_t i = 0; i < rows.Fields().size(); ++i)
        text += (i > 0 ? "|" : "") + ValueText(rows.Get(static_cast<int>(i)));
    return text;
}

void ScratchDatabase::Run(const std::vector<std::string>& statements)
{
    for (const std::string& statement : statements)
        db->Execute(statement);
}

std::unique_ptr<Recordset> ScratchDatabase::Open(std::string_view source, RecordsetType type)
{
    return db->OpenRecordset(source, type);
}

std::vector<std::string> ScratchDatabase::Rows(std::string_view source)
{
    std::vector<std::string> texts;
    for (const auto rows = Open(source); !rows->EndOfFile(); rows->MoveNext())
        texts.push_back(RowText(*rows));
    return texts;
}

std::string ScratchDatabase::Names(std::string_view source)
{
    std::string names;
    const auto rows = Open(source);
    for (const FieldDef& field : rows->Fields())
        names += (names.empty() ? "" : "|") + field.name;
    return names;
}

Value ScratchDatabase::One(std::string_view source)
{
    const auto rows = Open(source);
    return rows->EndOfFile() ? Value() : rows->Get(0);
}

std::string ScratchDatabase::Refusal(std::string_view statement, ErrorKind expected)
{
    try {
        const bool select =
            statement.substr(0, 6) == "SELECT" && statement.find(" INTO ") == statement.npos;
        if (select)
            db->OpenRecordset(statement, RecordsetType::Snapshot);
        else
            db->Execute(statement);
    } catch (const Error& error) {
        EXPECT_EQ(KindName(error.Kind()), KindName(expected)) << statement << "\n" << error.what();
        return error.what();
    }
    ADD_FAILURE() << "not refused: " << statement;
    return {};
}

} // namespace jet::testing
