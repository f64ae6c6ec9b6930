#include "mainwindow/PaneSizes.h"

#include "frame/IniNumbers.h"
#include "frame/Numbers.h"
#include "frame/QLMIniFile.h"

namespace {

constexpr auto kSection = "SETTINGS";
constexpr auto kUpperRow = "PANE_TOP0_HeightFactor";
constexpr auto kMap = "PANE_TOP0_WidthFactor";
constexpr auto kTree = "PANE_ROOTLOCATIES_HeightFactor";

void Read(QLMIniFile& ini, const char* key, double& factor)
{
    const double value = ReadNumber(ini, kSection, key, factor, 0, 1);
    if (value > 0 && value < 1)
        factor = value;
}

} // namespace

void PaneSizes::SetWidthFactor(int index, double factor)
{
    if (m_initialized)
        m_width.at(index - 1) = factor;
}

void PaneSizes::SetHeightFactor(int index, double factor)
{
    if (m_initialized)
        m_height.at(index - 1) = factor;
}

void PaneSizes::Initialize(QLMIniFile& ini)
{
    Read(ini, kUpperRow, m_height[0]);
    Read(ini, kMap, m_width[0]);
    Read(ini, kTree, m_height[2]);
}

void PaneSizes::SavePanes(QLMIniFile& ini) const
{
    ini.SaveString(kSection, kUpperRow, NumberText(m_height[0]));
    ini.SaveString(kSection, kMap, NumberText(m_width[0]));
    ini.SaveString(kSection, kTree, NumberText(m_height[2]));
}
