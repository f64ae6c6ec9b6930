#pragma once

#include "rekenhart/physics/WaveGrowth.h"

#include <QString>
#include <QStringList>

/// The calculator's texts. They stand in the program, which must also work
/// beside another installation, without its language files.
struct WindWaveTexts {
    QString title;
    QString wind, fetch, depth; ///< labels of the boxes
    QString note;               ///< which wind is meant
    QString height, period;     ///< what the chart shows
    QString chartHeading;       ///< %1 fetch, %2 depth
    QStringList colours;        ///< names of the lines' colours
    QString windAxis, heightAxis, periodAxis;
    QString copyTable, copyChart, close;

    /// Dutch for "NL" in any case, and when nothing is given; else English.
    static WindWaveTexts Of(const QString& language);
};

/// "Young en Verhagen", the same in both languages but for "en".
QString ModelName(rekenhart::Golfgroeimodule model, bool dutch);
bool IsDutch(const QString& language);
