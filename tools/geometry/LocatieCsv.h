#pragma once

#include <QIODevice>
#include <QString>
#include <QStringList>

#include <stdexcept>
#include <vector>

namespace geometrytools {

/// The input is not in order; `what()` says in Dutch where and how.
class InvoerFout : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One location of the input.
struct LocatieRij {
    QString naam;
    double x = 0; ///< metres
    double y = 0;
    QString status;              ///< of an earlier step; empty when there is none
    std::vector<double> waarden; ///< the columns behind; none when `status` is bad
};

/// Reads locations line by line: name, x, y and `valueCount` values.
///
/// Fields are divided by the first of ";", tab and "," that the first line holds;
/// they may be quoted. The text is UTF-8, or else Windows-1252; a decimal sign is
/// a point or, where fields are not divided by it, a comma. A first line whose x
/// is no number is a heading. A heading with a column "status" is what
/// `strijklengte` writes: a row with another status than NOERROR has no values.
class LocatieCsv {
public:
    LocatieCsv(QIODevice& in, int valueCount);

    /// False at the end. Throws InvoerFout.
    bool Next(LocatieRij& rij);
    QChar Separator() const { return m_separator; }

private:
    bool ReadLine(QString& line);
    QStringList Split(const QString& line) const;
    double Number(const QString& text) const;
    [[noreturn]] void Fail(const QString& what) const;

    QIODevice& m_in;
    int m_valueCount;
    QChar m_separator = ',';
    qsizetype m_statusColumn = -1;
    int m_line = 0;
};

/// A field as it is written: quoted where it has to be.
QString CsvField(const QString& text, QChar separator);

} // namespace geometrytools
