#pragma once

#include <array>

class QLMIniFile;

/// The sizes of the panes as factors of the whole, so that they survive another
/// window size; kept in section `SETTINGS`.
///
/// Height factor 1: the upper row; width factor 1: the map; height factor 3:
/// the tree. The upper row holds map and tree side by side, so the third is kept
/// as it is found. Factors of the other indices live as long as the object.
class PaneSizes {
public:
    /// While false, the two set operations do nothing: sizes that follow from a
    /// resize of the window are not the user's choice.
    bool Initialized() const { return m_initialized; }
    void setInitialized(bool on) { m_initialized = on; }

    /// `index` is 1 to 3; throws std::out_of_range for another.
    double GetWidthFactor(int index) const { return m_width.at(index - 1); }
    double GetHeightFactor(int index) const { return m_height.at(index - 1); }
    void SetWidthFactor(int index, double factor);
    void SetHeightFactor(int index, double factor);

    /// Reads the factors; what is absent, or no number between 0 and 1, stays.
    void Initialize(QLMIniFile& ini);
    void SavePanes(QLMIniFile& ini) const;

private:
    std::array<double, 3> m_width{0.65, 0.35, 1};
    std::array<double, 3> m_height{0.8, 0.2, 0.3};
    bool m_initialized = false;
};
