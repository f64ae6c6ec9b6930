#include "geometry/GridHeader.h"

#include "frame/Numbers.h"
#include "frame/Paths.h"

#include <QFile>

#include <cmath>

namespace {

double* FieldOf(GridHeader& header, const QByteArray& key)
{
    if (key == "ncols")
        return &header.ncols;
    if (key == "nrows")
        return &header.nrows;
    if (key == "xllcorner")
        return &header.xllcorner;
    if (key == "yllcorner")
        return &header.yllcorner;
    if (key == "cellsize")
        return &header.cellsize;
    return nullptr;
}

} // namespace

std::array<geometry::Punt, 5> GridHeader::Outline() const
{
    const double right = xllcorner + ncols * cellsize;
    const double top = yllcorner + nrows * cellsize;
    return {{{xllcorner, yllcorner},
             {right, yllcorner},
             {right, top},
             {xllcorner, top},
             {xllcorner, yllcorner}}};
}

GridHeader ParseGridHeader(const QByteArray& text)
{
    constexpr int kLines = 10;
    GridHeader header;
    qsizetype start = 0;
    for (int line = 0; line < kLines && start < text.size(); ++line) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        // simplified() leaves one blank where blanks and tabs stood.
        const QByteArrayList tokens = text.mid(start, end - start).simplified().split(' ');
        start = end + 1;
        if (double* field = FieldOf(header, tokens.first().toLower())) {
            const auto value =
                tokens.size() > 1 ? ParseNumber(QString::fromLatin1(tokens[1])) : std::nullopt;
            *field = value && std::isfinite(*value) ? *value : 0;
        }
    }
    return header;
}

std::optional<GridHeader> ReadGridHeader(const QString& path)
{
    QFile file(ResolvePath(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // A header line is short; a data row among the first ten may be endless.
    constexpr qint64 kEnough = 64 * 1024;
    return ParseGridHeader(file.read(kEnough));
}
