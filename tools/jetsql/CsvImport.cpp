#include "CsvImport.h"

#include "Csv.h"

#include <algorithm>

namespace jetsql {

namespace {

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    throw std::runtime_error("de waarde is niet hexadecimaal");
}

jet::Bytes BytesFromHex(const std::string& text)
{
    if (text.size() % 2 != 0)
        throw std::runtime_error("de hexadecimale waarde heeft een oneven aantal cijfers");
    jet::Bytes bytes;
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(HexDigit(text[i]) * 16 + HexDigit(text[i + 1])));
    return bytes;
}

jet::Value ValueFrom(const CsvField& field, jet::ColumnType type)
{
    if (!field)
        return {};
    switch (type) {
    case jet::ColumnType::Binary:
    case jet::ColumnType::Ole:
        return BytesFromHex(*field);
    case jet::ColumnType::Boolean: {
        std::string lower = *field;
        std::ranges::transform(lower, lower.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        });
        if (lower == "true" || lower == "waar" || lower == "ja" || lower == "yes")
            return true;
        if (lower == "false" || lower == "onwaar" || lower == "nee" || lower == "no")
            return false;
        return *field;
    }
    default:
        return *field;
    }
}

} // namespace

int ImportCsv(std::istream& in, jet::Database& database, const std::string& table)
{
    const auto rows = database.OpenRecordset(table, jet::RecordsetType::Table);
    CsvReader reader(in);
    std::vector<CsvField> record;
    if (!reader.Next(record))
        throw std::runtime_error("Het CSV-bestand is leeg: de eerste regel noemt de velden.");
    std::vector<int> columns;
    for (const CsvField& name : record)
        columns.push_back(rows->FieldIndex(name.value_or("")));

    int count = 0;
    while (reader.Next(record)) {
        if (record.size() == 1 && !record[0] && columns.size() > 1)
            continue; // an empty line
        try {
            if (record.size() != columns.size())
                throw std::runtime_error("er staan " + std::to_string(record.size()) +
                                         " velden waar er " + std::to_string(columns.size()) +
                                         " horen");
            rows->AddNew();
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const jet::FieldDef& field = rows->Fields()[static_cast<std::size_t>(columns[i])];
                if (field.autoNumber && !record[i])
                    continue; // gets the next number
                rows->Set(columns[i], ValueFrom(record[i], field.type));
            }
            rows->Update();
        } catch (const std::exception& error) {
            throw std::runtime_error("Regel " + std::to_string(reader.Line()) +
                                     " van het CSV-bestand: " + error.what());
        }
        ++count;
    }
    return count;
}

} // namespace jetsql
