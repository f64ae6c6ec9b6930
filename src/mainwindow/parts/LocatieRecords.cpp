#include "mainwindow/parts/LocatieRecords.h"

RecordsetPtr LocatiesOpNaam(HRdb& database)
{
    return database.GetRecordSet("SELECT x, y, omschrijving AS OMSCHR, kwaliteitskenmerk AS KWAL "
                                 "FROM Locatie ORDER BY omschrijving");
}

LocatiePunten LeesLocatiePunten(HRdb& database)
{
    LocatiePunten punten;
    const RecordsetPtr rows = LocatiesOpNaam(database);
    if (!rows)
        return punten;
    const int size = rows->Fields()[static_cast<std::size_t>(rows->FieldIndex("OMSCHR"))].size;
    if (size > 0)
        punten.omschrijvingSize = size;
    for (; !rows->EndOfFile(); rows->MoveNext())
        punten.locaties.push_back(
            {.x = rows->Get("x").AsDoubleOr(0),
             .y = rows->Get("y").AsDoubleOr(0),
             .omschrijving = QString::fromStdString(rows->Get("OMSCHR").AsTextOr("")),
             .kwaliteitskenmerk = static_cast<qint16>(rows->Get("KWAL").AsIntOr(0))});
    return punten;
}
