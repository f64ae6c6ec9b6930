#include "database/HRdb.h"
#include "database/SqlTekst.h"
#include "profiles/HRProfiel.h"

void HRProfiel::ReadFromHrDb(HRdb& database, const QString& naam)
{
    const auto rij = database.GetProfielProperties(naam);
    if (!HRdb::heeftRecords(rij))
        return;
    const auto geheel = [&rij](const char* veld, int bijNull) {
        return static_cast<qint16>(rij->Get(veld).AsIntOr(bijNull));
    };
    const auto enkel = [&rij](const char* veld, double bijNull) {
        return static_cast<float>(rij->Get(veld).AsDoubleOr(bijNull));
    };
    m_data.Naam = veld::Tekst(*rij, "Naam");
    m_data.Damwandmodule = static_cast<qint16>(rij->Get("Damwandmodule").AsInt());
    m_data.Damtype = geheel("Damtype", 0);
    m_data.DamHoogte = enkel("DamHoogte", 0);
    m_data.KruinBreedte = enkel("Kruinbreedte", 0);
    // The only null that is not read as 0: old rows must not fail the rule on
    // the dam type that needs a slope.
    m_data.Taludhelling = enkel("Taludhelling", 1);
    m_data.Constructietype = geheel("Constructietype", 0);
    m_data.Palenrij = geheel("Palenrij", 0) != 0;
    m_data.Paaldiameter = enkel("Paaldiameter", 0);
    m_data.HartafstandPalen = enkel("HartafstandPalen", 0);
    m_data.Rietkraag = geheel("Rietkraag", 0) != 0;
    m_data.VegetatieBreedte = enkel("Vegetatiebreedte", 0);
    m_data.AantalLevendeStengels = enkel("AantalLevendeStengels", 0);
    m_data.SeizoensinvloedFactor = enkel("SeizoensinvloedFactor", 0);
    m_data.Voorland = static_cast<qint16>(rij->Get("Voorland").AsInt());
    if (const auto memo = rij->Get("Memo"); !memo.IsNull())
        m_data.Memo = QString::fromStdString(memo.AsText());

    const auto punten = database.GetProfielSegementen(rij->Get("Profiel_ID").AsInt());
    if (!HRdb::heeftRecords(punten))
        return;
    for (; !punten->EndOfFile(); punten->MoveNext())
        AddXYR(static_cast<float>(punten->Get("X").AsDouble()),
               static_cast<float>(punten->Get("Y").AsDouble()),
               static_cast<float>(punten->Get("R").AsDouble()), punten->Get("Gras").AsInt() != 0);
}
