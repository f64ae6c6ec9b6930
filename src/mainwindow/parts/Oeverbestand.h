#pragma once

#include "geometry/Strijklengte.h"
#include "mainwindow/Panes.h"

/// The shore file of the fetch computations, gStrijklengte.
///
/// Keeps the path it was told when the file is away: it is stored again at the
/// exit, and a network drive that is down for a day is no reason to forget it.
class Oeverbestand : public ShoreFile {
public:
    explicit Oeverbestand(Strijklengte& strijklengte) : m_strijklengte(strijklengte) {}

    QString Path() const override;
    void SetPath(const QString& path) override;

private:
    Strijklengte& m_strijklengte;
    QString m_told;
};
