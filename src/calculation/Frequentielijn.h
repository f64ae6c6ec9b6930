#pragma once

#include <QString>

#include <optional>
#include <vector>

/// The frequency line that the calculation core leaves in `freqlijn.txt`: load
/// level against return period.

/// One point. A frequency of 0 leaves the return period at 0.
struct Frequentiepunt {
    double niveau;         ///< m
    double herhalingstijd; ///< years
};

/// Reads the file: its first token is the number of points, each further line a
/// level and a frequency per year, with either decimal sign. Lines that are missing
/// are done without; a text that is no number counts as 0. Nothing when there is
/// no file, or an empty one.
std::optional<std::vector<Frequentiepunt>> LeesFrequentielijn(const QString& bestand);

inline constexpr double kKleinsteHerhalingstijd = 10;    // years
inline constexpr double kGrootsteHerhalingstijd = 10000; // years

/// The part of the line from 10 to 10,000 years. Where it enters and leaves that
/// range a point is put in, interpolated linearly in the logarithm of the return
/// period. What comes behind the end is dropped.
std::vector<Frequentiepunt> KnipFrequentielijn(const std::vector<Frequentiepunt>& lijn);

/// Bounds of an axis.
struct Asgrenzen {
    double laag, hoog;
    double stap;   ///< 0 on a logarithmic axis
    int decimalen; ///< for the width of the labels
};

/// The powers of ten around a range above 0.
Asgrenzen LogaritmischeAs(double kleinste, double grootste);

/// Round bounds and steps for `n` steps over the range a..b, widened by the
/// factors (1 and 1: not at all).
Asgrenzen RondeAs(double a, double b, int n, double f1, double f2);
