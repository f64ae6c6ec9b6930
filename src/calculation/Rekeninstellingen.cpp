#include "calculation/Rekeninstellingen.h"

#include "database/HRdb.h"
#include "frame/Convert.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/QLMIniFile.h"

#include <algorithm>
#include <limits>

namespace {

QString Sleutel(const Instelling& instelling, int nummer)
{
    const QString sleutel = QString::fromLatin1(instelling.sleutel);
    return nummer == 0 ? sleutel : sleutel + "." + QString::number(nummer);
}

QString LeesUit(const QString& bestand, const Instelling& instelling)
{
    QLMIniFile ini(bestand);
    return LeesInstelling(ini, instelling, Standaard::Invoerbestand);
}

/// An index beyond all types is one that no option has, as 7 is, and no error: the
/// settings dialog can be reached only through forms that read it.
int LeesIndexUit(const QString& bestand, const Instelling& instelling)
{
    using Grenzen = std::numeric_limits<qint16>;
    const double waarde = RoundToEven(ParseNumber(LeesUit(bestand, instelling)).value_or(0));
    return static_cast<int>(std::clamp(waarde, double((Grenzen::min)()), double((Grenzen::max)())));
}

} // namespace

QString LeesInstelling(QLMIniFile& ini, const Instelling& instelling, Standaard standaard,
                       int nummer)
{
    return ini.GetString(instelling.sectie, Sleutel(instelling, nummer),
                         standaard == Standaard::Dialoog ? instelling.standaardDialoog
                                                         : instelling.standaardInvoer);
}

void BewaarInstelling(QLMIniFile& ini, const Instelling& instelling, const QString& waarde,
                      int nummer)
{
    ini.SaveString(instelling.sectie, Sleutel(instelling, nummer), waarde);
}

QString InstellingenBestand()
{
    return gFso().BuildPath(gRekeninstellingenPath(), "Instellingen.ini");
}

int LeesIndexFaalmechanisme(const QString& bestand)
{
    return LeesIndexUit(bestand, instelling::IndexFaalmechanisme);
}

double LeesOverslagdebiet(const QString& bestand)
{
    return gConvert().ConvDbl(LeesUit(bestand, instelling::Overslagdebiet));
}

int LeesIndexGolfgroeimodule(const QString& bestand)
{
    return LeesIndexUit(bestand, instelling::IndexGolfgroeimodule);
}

double LeesGolfCorrFactor(const QString& bestand)
{
    if (LeesUit(bestand, instelling::GolfCorrFactorAan) != "1")
        return kNietBekend;
    return gConvert().ConvDbl(LeesUit(bestand, instelling::GolfCorrFactor));
}

QString FaalmechanismeSleutelwoord(int index)
{
    switch (index) {
    case faalmechanisme::Overloop:
        return "OVERLOOP";
    case faalmechanisme::Golfoverslag:
        return "GOLFOVERSLAG";
    case faalmechanisme::Golfoploop:
        return "GOLFOPLOOP";
    default:
        return {};
    }
}

QString GolfgroeimoduleSleutelwoord(int index)
{
    switch (index) {
    case 0:
        return "BRETSCHNEIDER";
    case 1:
        return "YOUNGVERHAGEN";
    case 2:
        return "BREUGEMHOLTHUIJSEN";
    default:
        return {};
    }
}
