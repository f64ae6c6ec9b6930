#pragma once

#include "rekenhart/report/Report.h"
#include "rekenhart/report/Reports.h"

namespace rekenhart {

// Sections that several reports share.

void AddHeading(Report& report, const Instellingen& settings);
void AddLimits(Report& report);
void AddLocatie(Report& report, const Locatie& locatie);
/// Bed, fetch, angle and set-up per wind sector.
void AddSectors(Report& report, const Locatie& locatie);
void AddProfiel(Report& report, const Profiel& profiel);
void AddSettings(Report& report, const Instellingen& settings);
void AddWarnings(Report& report, const std::vector<std::string>& warnings);
void AddReferences(Report& report, const Instellingen& settings);

/// The chain from wind to load, one row per line of a table.
std::vector<std::string> DetailHeadings(const LoadModel& model);
std::vector<std::string> DetailCells(double basinLevel, double wind, const LoadDetails& details,
                                     const LoadModel& model);

/// "225 ZW"
std::string SectorText(int sector);
/// The return period of a frequency: "1234", or that it is rarer than the method can tell.
std::string FrequencyText(double perYear);

} // namespace rekenhart
