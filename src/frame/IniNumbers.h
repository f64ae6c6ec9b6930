#pragma once

#include <QString>

class QLMIniFile;

/// The number under a key. `present` when the key is missing, holds no number or
/// one outside the bounds: a damaged ini must not keep a window from opening.
/// Either decimal sign is understood.
[[nodiscard]] double ReadNumber(QLMIniFile& ini, const QString& section, const QString& key,
                                double present, double minimum, double maximum);
/// The same for whole numbers; halves go to the even one.
[[nodiscard]] int ReadWhole(QLMIniFile& ini, const QString& section, const QString& key,
                            int present, int minimum, int maximum);
