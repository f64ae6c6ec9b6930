#pragma once

#include "DatabaseFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

/// The example database open in `db`, and a work folder beside it.
class WerkmapTest : public DatabaseTest {
protected:
    WerkmapTest() { OpenVoorbeeld(); }

    /// `<werkmap>/<location>/berekeningen/<map>`, with a log.
    QString MaakMapVanBerekening(const QString& locatie, const QString& map) const
    {
        return MaakUitvoer(db.WerkMap() + "/" + locatie + "/berekeningen/" + map);
    }
    QString MaakMapVanRing(const QString& ring, const QString& map) const
    {
        return MaakUitvoer(db.WerkMap() + "/Dijkringen/" + ring + "/berekeningen/" + map);
    }
    /// The folder, the calculation and a result row of it.
    void MaakBerekening(const QString& naam, const QString& locatie, const QString& profiel)
    {
        MaakMapVanBerekening(locatie, profiel.isEmpty() ? naam : naam + "_" + profiel);
        int id = db.GetBerekening_ID_Profiel(naam, profiel);
        if (id == kNietBekend)
            id = db.AddBerekening(naam, profiel.isEmpty() ? 0 : db.GetProfiel_ID(profiel),
                                  "GOLFOVERSLAG", 0.1);
        db.AddNewResultaatRecord(id, locatie, 10);
    }

    RecordsetPtr Locaties()
    {
        return db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie ORDER BY Locatie_ID");
    }
    std::size_t AantalRijen(const std::string& tabel)
    {
        return Lees("SELECT * FROM " + tabel).size();
    }

    static void Schrijf(const QString& pad, const QByteArray& inhoud)
    {
        QFile bestand(pad);
        ASSERT_TRUE(bestand.open(QIODevice::WriteOnly)) << pad.toStdString();
        bestand.write(inhoud);
    }
    static bool MapBestaat(const QString& pad) { return QFileInfo(pad).isDir(); }
    QString InWerkmap(const QString& pad) const { return db.WerkMap() + "/" + pad; }
    /// Folders left behind under names that no location can have.
    QStringList Resten() const
    {
        return QDir(db.WerkMap())
            .entryList({".*"}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    static QString MaakUitvoer(const QString& map)
    {
        QDir().mkpath(map);
        Schrijf(map + "/uitvoer.log",
                "Regel 1\r\nKlaar in " + QFileInfo(map).fileName().toLatin1());
        return map;
    }
};
