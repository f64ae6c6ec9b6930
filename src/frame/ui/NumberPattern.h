#pragma once

#include <QString>

/// A number format as the language and form files write it: "0", "0.###",
/// "#,##0.###", "#.00", "#". A "0" is a digit that always shows, a "#" one that
/// shows when it says something; a comma between digits asks for groups of three.
/// Text is made with the system's decimal sign. Halves round away from zero and
/// there is no "-0".
class NumberPattern {
public:
    explicit NumberPattern(const QString& pattern = "0.######");

    QString Text(double value) const;

private:
    int m_minimumWhole = 1;
    int m_minimumDecimals = 0;
    int m_maximumDecimals = 0;
    bool m_groups = false;
};
