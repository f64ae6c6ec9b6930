#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class GDALDataset;

namespace qlmgis {

/// A grid of cell values, 4 bytes each. One that would take too much memory
/// stays on the disc and is read by tiles as lines cross it.
class Raster {
public:
    /// `memoryLimit` in bytes: for the whole grid, or for its tiles at a time.
    /// Throws std::runtime_error for a file that is no grid, whose header and
    /// rows do not agree, or that has text where a number belongs.
    explicit Raster(const std::string& file, std::size_t memoryLimit = kMemoryLimit);
    ~Raster();
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;

    /// See QLMGisCalculateMean. Throws std::out_of_range for a point outside,
    /// std::runtime_error otherwise.
    double Mean(double x1, double y1, double x2, double y2, int count);

    std::size_t MemoryUse() const;
    bool IsInMemory() const { return !m_cells.empty(); }

    static constexpr std::size_t kMemoryLimit = std::size_t(512) * 1024 * 1024;

private:
    using Tile = std::vector<float>;
    struct KeptTile {
        Tile cells;
        std::list<std::uint64_t>::iterator use;
    };

    void Open(const std::string& file);
    void ReadPlace();
    void ReadWhole();
    void Read(int column, int row, int width, int height, float* cells);
    float Value(std::size_t column, std::size_t row)
    {
        return m_dataset ? TileValue(column, row) : m_cells[row * m_columns + column];
    }
    float TileValue(std::size_t column, std::size_t row);
    const Tile& TileAt(std::size_t column, std::size_t row);
    // The largest float stands for values beyond all numbers.
    bool HasData(float value) const
    {
        return std::abs(value) < std::numeric_limits<float>::max() && value != m_noData;
    }

    static constexpr std::size_t kTileSize = 256; // cells on each side

    struct Close {
        void operator()(GDALDataset* dataset) const;
    };
    std::unique_ptr<GDALDataset, Close> m_dataset; // only while read by tiles
    std::size_t m_columns = 0;
    std::size_t m_rows = 0;
    double m_left = 0;
    double m_top = 0;
    double m_cellWidth = 1;
    double m_cellHeight = 1;
    bool m_fromBelow = false; // rows count from the lower border up
    float m_noData;           // no number when the grid has none
    std::size_t m_memoryLimit;
    std::vector<float> m_cells;
    std::unordered_map<std::uint64_t, KeptTile> m_tiles;
    std::list<std::uint64_t> m_tileUse; // the one used last in front
    std::uint64_t m_lastTileKey = 0;
    const Tile* m_lastTile = nullptr;
};

} // namespace qlmgis
