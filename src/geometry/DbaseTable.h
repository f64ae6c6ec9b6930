#pragma once

#include <QString>

#include <memory>
#include <vector>

class GDALDataset;

namespace geometry {

/// A new dBASE III table, written row by row. The text fields are in
/// Windows-1252, and the table says so.
class DbaseTable {
public:
    struct Field {
        enum class Type { Double, Integer, Text };
        QString name;
        Type type;
        int width = 0; ///< characters of a text, 1 to 254
    };

    /// Throws `Fout` if the table cannot be made. It replaces any other.
    DbaseTable(const QString& path, const std::vector<Field>& fields);
    ~DbaseTable();

    /// Starts a row; it is written by the next AddRow or by Close.
    void AddRow();
    /// A number that is none, or that has no room in the field, leaves it empty.
    void Set(int field, double value);
    void Set(int field, qint32 value);
    void Set(int field, const QString& value);

    /// Throws `Fout` if the rows could not be written.
    void Close();

private:
    struct Row;
    void WriteRow();

    QString m_path;
    std::unique_ptr<GDALDataset> m_dataset;
    std::unique_ptr<Row> m_row;
};

} // namespace geometry
