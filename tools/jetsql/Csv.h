#pragma once

#include "jet/base/Value.h"

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jetsql {

/// Appends a field of a CSV line. A null is nothing at all, an empty text is "";
/// numbers have a point and as many digits as it takes to read the same number
/// back, booleans are 1 and 0, dates YYYY-MM-DD HH:MM:SS, bytes hexadecimal.
void AppendCsv(std::string& line, const jet::Value& value);
/// Appends a value as JSON: numbers as numbers (no-number and infinite as null),
/// booleans as true and false, the rest as text.
void AppendJson(std::string& line, const jet::Value& value);
void AppendJsonText(std::string& line, std::string_view text);

/// A field as it stands in a CSV file; unquoted and empty is nothing.
using CsvField = std::optional<std::string>;

/// Reads records of comma-separated fields: quoted ones may hold commas, line
/// ends and doubled quotes; lines end in LF or CR LF; a byte order mark at the
/// start is passed over.
class CsvReader {
public:
    explicit CsvReader(std::istream& in);

    /// False at the end. Throws std::runtime_error naming the line when a quote
    /// is not closed or text follows it.
    bool Next(std::vector<CsvField>& fields);
    /// The line on which the last record began, from 1.
    int Line() const { return m_recordLine; }

private:
    [[noreturn]] void Fail(const char* what) const;
    int Get();

    std::istream& m_in;
    int m_line = 1;
    int m_recordLine = 0;
};

} // namespace jetsql
