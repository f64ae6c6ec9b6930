#include "windwave/WindWaveTexts.h"

bool IsDutch(const QString& language)
{
    const QString trimmed = language.trimmed();
    return trimmed.isEmpty() || trimmed.compare(QStringLiteral("NL"), Qt::CaseInsensitive) == 0;
}

WindWaveTexts WindWaveTexts::Of(const QString& language)
{
    WindWaveTexts t;
    if (IsDutch(language)) {
        t.title = QStringLiteral("Windgolven");
        t.wind = QStringLiteral("&Windsnelheid [m/s]");
        t.fetch = QStringLiteral("&Strijklengte [m]");
        t.depth = QStringLiteral("&Diepte [m]");
        t.note = QStringLiteral("Wind over het water op 10 m hoogte; golfhoogte Hm0 en "
                                "piekperiode Tp bij een gelijkmatige diepte.");
        t.height = QStringLiteral("Golf&hoogte");
        t.period = QStringLiteral("Piek&periode");
        t.chartHeading = QStringLiteral("Strijklengte %1 m, diepte %2 m");
        t.colours = {QStringLiteral("blauw"), QStringLiteral("oranje"), QStringLiteral("groen")};
        t.windAxis = QStringLiteral("Windsnelheid [m/s]");
        t.heightAxis = QStringLiteral("Hm0 [m]");
        t.periodAxis = QStringLiteral("Tp [s]");
        t.copyTable = QStringLiteral("&Tabel kopiëren");
        t.copyChart = QStringLiteral("&Grafiek kopiëren");
        t.close = QStringLiteral("Sl&uiten");
    } else {
        t.title = QStringLiteral("Wind waves");
        t.wind = QStringLiteral("&Wind speed [m/s]");
        t.fetch = QStringLiteral("&Fetch [m]");
        t.depth = QStringLiteral("&Depth [m]");
        t.note = QStringLiteral("Wind over the water at 10 m height; wave height Hm0 and peak "
                                "period Tp for an even depth.");
        t.height = QStringLiteral("Wave &height");
        t.period = QStringLiteral("Peak &period");
        t.chartHeading = QStringLiteral("Fetch %1 m, depth %2 m");
        t.colours = {QStringLiteral("blue"), QStringLiteral("orange"), QStringLiteral("green")};
        t.windAxis = QStringLiteral("Wind speed [m/s]");
        t.heightAxis = QStringLiteral("Hm0 [m]");
        t.periodAxis = QStringLiteral("Tp [s]");
        t.copyTable = QStringLiteral("Copy &table");
        t.copyChart = QStringLiteral("Copy &chart");
        t.close = QStringLiteral("C&lose");
    }
    return t;
}

QString ModelName(rekenhart::Golfgroeimodule model, bool dutch)
{
    switch (model) {
    case rekenhart::Golfgroeimodule::Bretschneider:
        return QStringLiteral("Bretschneider");
    case rekenhart::Golfgroeimodule::YoungVerhagen:
        return dutch ? QStringLiteral("Young en Verhagen") : QStringLiteral("Young and Verhagen");
    case rekenhart::Golfgroeimodule::BreugemHolthuijsen:
        break;
    }
    return dutch ? QStringLiteral("Breugem en Holthuijsen")
                 : QStringLiteral("Breugem and Holthuijsen");
}
