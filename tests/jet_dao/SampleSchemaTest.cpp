#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

std::vector<fs::path> Dumps()
{
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(fs::path(TEST_DATA_FOLDER) / "jet" / "samples"))
        if (entry.path().extension() == ".json")
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    return paths;
}

/// What the dump says of each table, by name, and how many rows it lists.
struct DumpedTable {
    Json description;
    int rows = 0;
};

std::map<std::string, DumpedTable> TablesOf(const fs::path& dump)
{
    std::map<std::string, DumpedTable> tables;
    std::ifstream file(dump);
    for (std::string line; std::getline(file, line);) {
        const Json json = Json::parse(line);
        if (json.contains("table"))
            tables[json["table"]].description = json;
        else if (json.contains("t"))
            ++tables[json["t"]].rows;
    }
    return tables;
}

void ExpectProperty(const jet::Value& value, const Json& expected, const std::string& where)
{
    const Json& content = expected[1];
    if (content.is_boolean())
        EXPECT_EQ(value, jet::Value(content.get<bool>())) << where;
    else if (content.is_string() && value.IsText())
        EXPECT_EQ(value.AsTextOr("(null)"), content.get<std::string>()) << where;
    else if (content.is_number())
        EXPECT_EQ(value.AsDoubleOr(-1e99), content.get<double>()) << where;
    else
        EXPECT_FALSE(value.IsNull()) << where;
}

void ExpectColumn(const jet::Database& database, const jet::TableDef& table, const Json& expected)
{
    const std::string name = expected["name"];
    const std::string where = table.name + '.' + name;
    const jet::FieldDef* field = table.FindField(name);
    ASSERT_NE(field, nullptr) << where;
    EXPECT_EQ(static_cast<int>(field->type), expected["code"].get<int>()) << where;
    EXPECT_EQ(field->autoNumber, expected["auto"].get<bool>()) << where;
    EXPECT_EQ(!field->fixedLength, expected["variable"].get<bool>()) << where;
    const Json& properties = expected["props"];
    for (const auto& [property, value] : properties.items())
        ExpectProperty(database.FieldProperty(table.name, name, property), value,
                       where + ' ' + property);
    EXPECT_EQ(field->required,
              properties.contains("Required") && properties["Required"][1].get<bool>())
        << where;
    EXPECT_EQ(field->defaultValue, properties.contains("DefaultValue")
                                       ? properties["DefaultValue"][1].get<std::string>()
                                       : "")
        << where;
}

void ExpectIndex(const jet::TableDef& table, const Json& expected)
{
    const std::string name = expected["name"];
    const std::string where = table.name + " index " + name;
    const jet::IndexDef* index = table.FindIndex(name);
    ASSERT_NE(index, nullptr) << where;
    EXPECT_EQ(index->primary, expected["primary"].get<bool>()) << where;
    EXPECT_EQ(index->foreign, expected["foreign"].get<bool>()) << where;
    EXPECT_EQ(index->unique, expected["unique"].get<bool>()) << where;
    EXPECT_EQ(index->ignoreNulls, expected["ignoreNulls"].get<bool>()) << where;
    ASSERT_EQ(index->fields.size(), expected["columns"].size()) << where;
    for (std::size_t i = 0; i < index->fields.size(); ++i) {
        EXPECT_EQ(index->fields[i].field, expected["columns"][i][0].get<std::string>()) << where;
        EXPECT_EQ(index->fields[i].descending, expected["columns"][i][1] == "desc") << where;
    }
}

TEST(SampleSchema, AgreesWithTheDumpsOfAnotherReader)
{
    int tables = 0, columns = 0, indexes = 0;
    for (const fs::path& dump : Dumps()) {
        fs::path file = dump;
        file.replace_extension(".mdb");
        SCOPED_TRACE(file.filename());
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(file, {.exclusive = false, .readOnly = true});
        for (const auto& [name, dumped] : TablesOf(dump)) {
            ASSERT_TRUE(database->HasTable(name)) << name;
            const jet::TableDef table = database->GetTableDef(name);
            EXPECT_EQ(table.name, name);
            EXPECT_EQ(table.recordCount, dumped.rows) << name;
            ASSERT_EQ(table.fields.size(), dumped.description["columns"].size()) << name;
            for (const Json& column : dumped.description["columns"]) {
                ExpectColumn(*database, table, column);
                ++columns;
            }
            ASSERT_EQ(table.indexes.size(), dumped.description["indexes"].size()) << name;
            for (const Json& index : dumped.description["indexes"]) {
                ExpectIndex(table, index);
                ++indexes;
            }
            ++tables;
        }
    }
    EXPECT_GT(tables, 20);
    EXPECT_GT(columns, 100);
    EXPECT_GT(indexes, 30);
}

} // namespace
