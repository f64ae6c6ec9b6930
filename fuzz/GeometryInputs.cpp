#include "GeometryInputs.h"

#include "frame/Fouten.h"
#include "geometry/CShapeFile.h"
#include "geometry/GridHeader.h"
#include "geometry/MapLayer.h"
#include "geometry/Strijklengte.h"
#include "qlmgis/Raster.h"

#include <QFile>
#include <QTemporaryDir>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

namespace fuzz {
namespace {

// Where files go that have to be on the disc.
const QTemporaryDir& Folder()
{
    static const QTemporaryDir folder;
    return folder;
}

void Write(const QString& path, std::span<const std::byte> bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
}

void ReadRecords(const QString& path)
{
    try {
        CShapeFile file;
        file.SetFileSpec(CFileName(path), CShapeFile::OPENIT);
        for (int i = 1; i <= std::min(file.Count(), 20); ++i)
            (void)file.Item(i);
    } catch (const Fout&) { // a told failure
    }
}

} // namespace

void ReadShapeFile(std::span<const std::byte> input)
{
    if (input.size() < 2)
        return;
    const std::size_t split =
        4 * (std::to_integer<std::size_t>(input[0]) + 256 * std::to_integer<std::size_t>(input[1]));
    const auto bytes = input.subspan(2);
    const auto shp = bytes.first(std::min(split, bytes.size()));
    const QString stem = Folder().filePath("vorm");
    Write(stem + ".shp", shp);
    Write(stem + ".shx", bytes.subspan(shp.size()));
    ReadRecords(stem + ".shp");

    Strijklengte strijklengte;
    if (!strijklengte.setShapefile(stem + ".shp"))
        return;
    for (const geometry::Punt& p : strijklengte.layerFile()->Data().points) {
        (void)strijklengte.CalcFetch(p.x + 1, p.y + 2);
        (void)strijklengte.CalcDijknormaal(p.x + 1, p.y + 2);
    }
}

void ReadDbaseTable(std::span<const std::byte> input)
{
    const char* const name = "/vsimem/tabel.dbf";
    std::string bytes(reinterpret_cast<const char*>(input.data()), input.size());
    GDALAllRegister();
    CPLPushErrorHandler(CPLQuietErrorHandler);
    VSIFCloseL(
        VSIFileFromMemBuffer(name, reinterpret_cast<GByte*>(bytes.data()), bytes.size(), FALSE));
    if (GDALDataset* table = GDALDataset::Open(name, GDAL_OF_VECTOR)) {
        for (auto* layer : table->GetLayers()) {
            int rows = 0;
            for (const auto& feature : layer) {
                for (int field = 0; field < feature->GetFieldCount(); ++field)
                    (void)feature->GetFieldAsString(field);
                if (++rows == 100)
                    break;
            }
        }
        GDALClose(table);
    }
    VSIUnlink(name);
    CPLPopErrorHandler();
}

void ReadAsciiGrid(std::span<const std::byte> input)
{
    (void)ParseGridHeader(QByteArray(reinterpret_cast<const char*>(input.data()),
                                     static_cast<qsizetype>(input.size())));
    const QString path = Folder().filePath("grid.asc");
    Write(path, input);
    try {
        qlmgis::Raster raster(path.toStdString());
        (void)raster.Mean(0, 0, 10, 10, 100);
        (void)raster.Mean(1000, 2000, 1001, 2001, 100);
    } catch (const std::exception&) { // a told failure
    }
}

} // namespace fuzz
