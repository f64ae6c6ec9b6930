#include "RowPrinter.h"

#include "Csv.h"

#include <ostream>

namespace jetsql {

namespace {

constexpr std::size_t kBlock = 1u << 16; // written at once

} // namespace

void PrintRows(jet::Recordset& rows, RowFormat format, std::ostream& out)
{
    const bool json = format == RowFormat::Json;
    std::vector<std::string> keys; // of JSON, each with its colon
    std::string block;
    for (const jet::FieldDef& field : rows.Fields()) {
        if (json) {
            AppendJsonText(keys.emplace_back(), field.name);
            keys.back() += ':';
        } else {
            if (&field != &rows.Fields().front())
                block += ',';
            AppendCsv(block, field.name);
        }
    }
    if (!json)
        block += '\n';

    std::vector<jet::Value> row;
    for (; !rows.EndOfFile(); rows.MoveNext()) {
        rows.GetRow(row);
        if (json)
            block += '{';
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0)
                block += ',';
            if (json) {
                block += keys[i];
                AppendJson(block, row[i]);
            } else {
                AppendCsv(block, row[i]);
            }
        }
        if (json)
            block += '}';
        block += '\n';
        if (block.size() >= kBlock) {
            out.write(block.data(), static_cast<std::streamsize>(block.size()));
            block.clear();
        }
    }
    out.write(block.data(), static_cast<std::streamsize>(block.size()));
}

} // namespace jetsql
