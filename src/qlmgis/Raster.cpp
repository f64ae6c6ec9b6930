#include "qlmgis/Raster.h"

#include "qlmgis/AsciiGridCheck.h"
#include "qlmgis/QuietGdal.h"

#include <gdal_priv.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>

namespace qlmgis {
namespace {

constexpr char kOutside[] = "Index was outside the bounds of the array.";

[[noreturn]] void Fail(const QuietGdal& quiet, const std::string& otherwise)
{
    const std::string message = quiet.Message();
    throw std::runtime_error(message.empty() ? otherwise : message);
}

} // namespace

void Raster::Close::operator()(GDALDataset* dataset) const
{
    GDALClose(dataset);
}

Raster::Raster(const std::string& file, std::size_t memoryLimit)
    : m_noData(std::numeric_limits<float>::quiet_NaN()), m_memoryLimit(memoryLimit)
{
    Open(file);
    ReadPlace();
    if (std::string_view(m_dataset->GetDriverName()) == "AAIGrid")
        CheckAsciiGrid(file, m_columns, m_rows);
    if (m_columns <= memoryLimit / sizeof(float) / m_rows)
        ReadWhole();
}

Raster::~Raster() = default;

void Raster::Open(const std::string& file)
{
    const QuietGdal quiet;
    GDALAllRegister();
    // Without this GDAL looks at the first part of an ASCII grid only to decide
    // on whole numbers, and cuts off the decimals that come later.
    const char* const options[] = {"DATATYPE=Float32", nullptr};
    m_dataset.reset(GDALDataset::Open(file.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY, nullptr,
                                      options, nullptr));
    if (!m_dataset)
        Fail(quiet, "the file is not a grid");
    if (m_dataset->GetRasterCount() < 1)
        throw std::runtime_error("the file has no grid in it");
}

void Raster::ReadPlace()
{
    m_columns = static_cast<std::size_t>(m_dataset->GetRasterXSize());
    m_rows = static_cast<std::size_t>(m_dataset->GetRasterYSize());
    double transform[6];
    if (m_dataset->GetGeoTransform(transform) != CE_None)
        throw std::runtime_error("the grid does not say where it lies");
    if (transform[2] != 0 || transform[4] != 0 || !(transform[1] > 0) || transform[5] == 0 ||
        !std::isfinite(transform[0]) || !std::isfinite(transform[1]) ||
        !std::isfinite(transform[3]) || !std::isfinite(transform[5]))
        throw std::runtime_error("the grid is turned or has no cell size");
    m_left = transform[0];
    m_top = transform[3];
    m_cellWidth = transform[1];
    m_cellHeight = std::abs(transform[5]);
    m_fromBelow = transform[5] > 0;
    int hasNoData = 0;
    const double noData = m_dataset->GetRasterBand(1)->GetNoDataValue(&hasNoData);
    if (hasNoData && std::abs(noData) <= std::numeric_limits<float>::max())
        m_noData = static_cast<float>(noData);
}

void Raster::Read(int column, int row, int width, int height, float* cells)
{
    const QuietGdal quiet;
    if (m_dataset->GetRasterBand(1)->RasterIO(GF_Read, column, row, width, height, cells, width,
                                              height, GDT_Float32, 0, 0, nullptr) != CE_None)
        Fail(quiet, "the grid cannot be read");
}

void Raster::ReadWhole()
{
    m_cells.resize(m_columns * m_rows);
    Read(0, 0, static_cast<int>(m_columns), static_cast<int>(m_rows), m_cells.data());
    m_dataset.reset();
}

float Raster::TileValue(std::size_t column, std::size_t row)
{
    const std::size_t tileColumn = column / kTileSize;
    const std::size_t tileRow = row / kTileSize;
    const std::uint64_t key = (std::uint64_t(tileRow) << 32) | tileColumn;
    if (!m_lastTile || key != m_lastTileKey) {
        m_lastTile = &TileAt(tileColumn, tileRow);
        m_lastTileKey = key;
    }
    const std::size_t width = std::min(kTileSize, m_columns - tileColumn * kTileSize);
    return (*m_lastTile)[row % kTileSize * width + column % kTileSize];
}

const Raster::Tile& Raster::TileAt(std::size_t column, std::size_t row)
{
    const std::uint64_t key = (std::uint64_t(row) << 32) | column;
    if (const auto kept = m_tiles.find(key); kept != m_tiles.end()) {
        m_tileUse.splice(m_tileUse.begin(), m_tileUse, kept->second.use);
        return kept->second.cells;
    }
    constexpr std::size_t kTileBytes = kTileSize * kTileSize * sizeof(float);
    if (m_tiles.size() > 1 && (m_tiles.size() + 1) * kTileBytes > m_memoryLimit) {
        m_tiles.erase(m_tileUse.back());
        m_tileUse.pop_back();
    }
    const std::size_t width = std::min(kTileSize, m_columns - column * kTileSize);
    const std::size_t height = std::min(kTileSize, m_rows - row * kTileSize);
    Tile cells(width * height);
    Read(static_cast<int>(column * kTileSize), static_cast<int>(row * kTileSize),
         static_cast<int>(width), static_cast<int>(height), cells.data());
    m_tileUse.push_front(key);
    return m_tiles.emplace(key, KeptTile{std::move(cells), m_tileUse.begin()}).first->second.cells;
}

double Raster::Mean(double x1, double y1, double x2, double y2, int count)
{
    if (count < 1)
        throw std::runtime_error("a line without points has no mean");
    const double columns = static_cast<double>(m_columns);
    const double rows = static_cast<double>(m_rows);
    double sum = 0;
    std::int64_t valued = 0;
    m_lastTile = nullptr; // a tile may have gone with a failure
    for (int i = 0; i < count; ++i) {
        const double share = count > 1 ? double(i) / (count - 1) : 0;
        const bool last = i > 0 && i == count - 1;
        const double x = last ? x2 : x1 + (x2 - x1) * share;
        const double y = last ? y2 : y1 + (y2 - y1) * share;
        // A cell holds its left and its lower border. Written so that a
        // coordinate that is no number is outside, too.
        const double column = (x - m_left) / m_cellWidth;
        const double row = (m_fromBelow ? y - m_top : m_top - y) / m_cellHeight;
        if (!(column >= 0 && column < columns &&
              (m_fromBelow ? row >= 0 && row < rows : row > 0 && row <= rows)))
            throw std::out_of_range(kOutside);
        auto wholeRow = static_cast<std::size_t>(row);
        if (!m_fromBelow && static_cast<double>(wholeRow) == row)
            --wholeRow; // on a border: the row above it
        const float value = Value(static_cast<std::size_t>(column), wholeRow);
        if (HasData(value)) {
            sum += double(value);
            ++valued;
        }
    }
    if (valued == 0)
        throw std::runtime_error("the line meets no cell with data");
    return sum / static_cast<double>(valued);
}

std::size_t Raster::MemoryUse() const
{
    return m_cells.capacity() * sizeof(float) +
           m_tiles.size() * kTileSize * kTileSize * sizeof(float);
}

} // namespace qlmgis
