#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

/// ARC/INFO ASCII grids for tests.
struct GridText {
    int columns = 0;
    int rows = 0;
    double left = 0;
    double bottom = 0;
    double cellSize = 1;
    std::string noData = "-9999";

    std::string Header() const
    {
        std::ostringstream text;
        text << "ncols " << columns << "\nnrows " << rows << "\nxllcorner " << left
             << "\nyllcorner " << bottom << "\ncellsize " << cellSize << '\n';
        if (!noData.empty())
            text << "NODATA_value " << noData << '\n';
        return text.str();
    }
    /// `value(x, y)` is asked at the middle of each cell, row by row from above.
    std::string With(const std::function<std::string(double, double)>& value) const
    {
        std::string text = Header();
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                text +=
                    value(left + (column + 0.5) * cellSize, bottom + (rows - row - 0.5) * cellSize);
                text += column + 1 < columns ? ' ' : '\n';
            }
        }
        return text;
    }
};

inline std::string WriteGrid(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
}
