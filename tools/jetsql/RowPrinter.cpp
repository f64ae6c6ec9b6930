#include "RowPrinter.h"

#include "Csv.h"

#include <ostream>

namespace jetsql {

namespace {

constexpr std::size_t kBlock = 1u << 16; // written at once

} // namespace

void PrintRows(jet::Recordset& rows, RowFormat format, std::ostream& out)
{
    std::vector<std::string> keys; // what stands before each value
    std::string block;
    for (const jet::FieldDef& field : rows.Fields()) {
        const bool first = keys.empty();
        std::string key(first ? (format == RowFormat::Json ? "{" : "") : ",");
        if (format == RowFormat::Json) {
            AppendJsonText(key, field.name);
            key += ':';
        } else {
            block += key;
            AppendCsv(block, field.name);
        }
        keys.push_back(std::move(key));
    }
    if (format == RowFormat::Csv)
        block += '\n';

    const char* end = format == RowFormat::Json ? "}\n" : "\n";
    std::vector<jet::Value> row;
    for (; !rows.EndOfFile(); rows.MoveNext()) {
        rows.GetRow(row);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            block += keys[i];
            if (format == RowFormat::Json)
                AppendJson(block, row[i]);
            else
                AppendCsv(block, row[i]);
        }
        block += end;
        if (block.size() >= kBlock) {
            out.write(block.data(), static_cast<std::streamsize>(block.size()));
            block.clear();
        }
    }
    out.write(block.data(), static_cast<std::streamsize>(block.size()));
}

} // namespace jetsql
