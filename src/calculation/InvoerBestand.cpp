#include "calculation/InvoerBestand.h"

#include "calculation/Rekeninstellingen.h"
#include "database/HRdb.h"
#include "database/Transactie.h"
#include "frame/Convert.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/Ports.h"
#include "frame/QLMFile.h"
#include "frame/QLMIniFile.h"

#include <QDateTime>
#include <QList>

#include <cmath>

namespace {

constexpr int kKolomIsgelijk = 29; // characters in front of the "="
constexpr int kMaximumMemo = 200;
constexpr char kGegevensbron[] = "Zandvoet Gegevens";

// The dash counts are the format's.
constexpr char kKopAlgemeen[] = ";------------algemeen------------";
constexpr char kKopVariant[] = ";------------variant-------------";
constexpr char kKopProfiel[] = ";------------profiel-------------";
constexpr char kKopFaalmechanisme[] = ";------------faalmechanisme------";
constexpr char kKopFrequenties[] = ";------------frequenties------------";
constexpr char kKopKruinhoogtes[] = ";------------kruinhoogtes------------";
constexpr char kKopBerekening[] = ";------------berekening------------";
constexpr char kKopExtra[] = ";------------extra------------";
constexpr char kKopToeslagen[] = ";-----------toeslagen----------";

constexpr bool kAanhaling = true;
constexpr bool kKaal = false;

/// A file of QLMFile that is closed on every way out.
class Uitvoer {
public:
    explicit Uitvoer(const QString& pad) : m_nummer(gFile().FOpen(pad, QLMFile::Output))
    {
        if (m_nummer < 1)
            RaiseFout(7, {pad, {}});
    }
    ~Uitvoer() { gFile().FClose(m_nummer); }
    Uitvoer(const Uitvoer&) = delete;
    Uitvoer& operator=(const Uitvoer&) = delete;

    void Kop(const char* tekst) { gFile().PrintLine(m_nummer, QString::fromLatin1(tekst)); }
    void Regel(const QString& sleutel, const QString& waarde, bool aanhaling)
    {
        SchrijfRegel(m_nummer, sleutel, waarde, aanhaling);
    }
    int Nummer() const { return m_nummer; }

private:
    int m_nummer;
};

QString JaNee(bool ja)
{
    return ja ? QStringLiteral("JA") : QStringLiteral("NEE");
}

QString InvoerPad(const QString& map)
{
    return gFso().BuildPath(map, "invoer.txt");
}

void SchrijfGolfgroei(Uitvoer& uit, int module, double correctiefactor)
{
    if (const QString woord = GolfgroeimoduleSleutelwoord(module); !woord.isEmpty())
        uit.Regel("GOLFGROEIMODULE", woord, kAanhaling);
    if (correctiefactor != kNietBekend)
        uit.Regel("GOLFCORRFACTOR", InvoerGetal(correctiefactor), kKaal);
}

/// What the database calls the mechanism: keyword and wave-growth model.
QString Omschrijving(int mechanisme, int module)
{
    QString tekst = FaalmechanismeSleutelwoord(mechanisme);
    if (mechanisme != faalmechanisme::Overloop) {
        switch (module) {
        case 0:
            return tekst + "(Bretschneider)";
        case 1:
            return tekst + "(Young en Verhagen)";
        case 2:
            return tekst + "(Breugem en Holthuijsen)";
        default:
            break;
        }
    }
    return tekst;
}

/// The sections of one location's input file, in their order.
class LocatieSchrijver {
public:
    LocatieSchrijver(HRdb& database, const QString& instellingen,
                     const LocatieBerekening& berekening)
        : m_database(database),
          m_ini(instellingen),
          m_bestand(instellingen),
          m_berekening(berekening),
          m_uit(InvoerPad(berekening.map)),
          m_locatie(berekening.locatie.trimmed()),
          m_profiel(berekening.profiel.trimmed())
    {}

    void Schrijf()
    {
        SchrijfAlgemeen(m_uit.Nummer(), m_database, m_berekening.map);
        m_uit.Regel("OVERZICHTNM", m_berekening.overzicht, kAanhaling);
        m_uit.Regel("MEMO", m_berekening.memo.left(kMaximumMemo), kAanhaling);
        Variant();
        Profiel();
        Faalmechanisme();
        Frequenties();
        Kruinhoogtes();
        Registreer();
        Extra();
        Toeslagen();
    }

private:
    QString Lees(const Instelling& instelling, int nummer = 0)
    {
        return LeesInstelling(m_ini, instelling, Standaard::Invoerbestand, nummer);
    }
    double LeesGetal(const Instelling& instelling, int nummer = 0)
    {
        return gConvert().ConvDbl(Lees(instelling, nummer));
    }

    void Variant()
    {
        m_uit.Kop(kKopVariant);
        m_uit.Regel("VARIANT", "DIJKVAK", kAanhaling);
        int id = kNietBekend;
        if (!m_locatie.isEmpty()) {
            const auto rij = m_database.GetLocatieProperties(m_locatie);
            id = rij->Get("Locatie_ID").AsInt();
        }
        m_uit.Regel("LOCATIE", m_locatie, kAanhaling);
        m_uit.Regel("LOCATIE_ID", QString::number(id), kKaal);
    }

    void Profiel()
    {
        m_profielId = m_profiel.isEmpty() ? kNietBekend : m_database.GetProfiel_ID(m_profiel);
        m_uit.Kop(kKopProfiel);
        m_uit.Regel("PROFIEL", m_profiel, kAanhaling);
        m_uit.Regel("PROFIEL_ID", QString::number(m_profielId), kKaal);
    }

    void Faalmechanisme()
    {
        const int mechanisme = LeesIndexFaalmechanisme(m_bestand);
        const int module = LeesIndexGolfgroeimodule(m_bestand);
        m_uit.Kop(kKopFaalmechanisme);
        if (const QString woord = FaalmechanismeSleutelwoord(mechanisme); !woord.isEmpty())
            m_uit.Regel("FAALMECHANISME", woord, kAanhaling);
        if (mechanisme == faalmechanisme::Golfoverslag) {
            m_overslagdebiet = LeesOverslagdebiet(m_bestand);
            m_uit.Regel("OVERSLAGDEBIET", InvoerGetal(m_overslagdebiet), kKaal);
        }
        if (mechanisme != faalmechanisme::Overloop)
            SchrijfGolfgroei(m_uit, module, LeesGolfCorrFactor(m_bestand));
        m_omschrijving = Omschrijving(mechanisme, module);
    }

    void Frequenties()
    {
        // The norm's return period comes first and always gets a result row.
        m_herhalingstijden = {m_database.GetNormFrequentie(m_locatie)};
        m_uit.Kop(kKopFrequenties);
        m_uit.Regel("NORMFREQUENTIE", JaNee(Lees(instelling::NormFreq) != "0"), kKaal);
        if (Lees(instelling::ExtraFreq) == "0")
            return;
        const int aantal = gConvert().ConvInt(Lees(instelling::NFreq));
        for (int i = 1; i <= aantal; ++i) {
            const double herhalingstijd = LeesGetal(instelling::Freq, i);
            m_herhalingstijden << herhalingstijd;
            const double frequentie = 1 / herhalingstijd;
            if (!std::isfinite(frequentie))
                RaiseRuntimeFout(RuntimeFout::DivisionByZero,
                                 "Een herhalingstijd in de rekeninstellingen is geen getal "
                                 "groter dan 0.");
            m_uit.Regel("FREQ", InvoerGetal(frequentie), kKaal);
        }
    }

    void Kruinhoogtes()
    {
        m_uit.Kop(kKopKruinhoogtes);
        m_uit.Regel("KRUINHOOGTEPROFIEL", JaNee(Lees(instelling::KruinhProfiel) != "0"), kKaal);
        if (Lees(instelling::ExtraKruinh) == "0")
            return;
        const int aantal = gConvert().ConvInt(Lees(instelling::NKruin));
        for (int i = 1; i <= aantal; ++i)
            m_uit.Regel("KRUIN", InvoerGetal(LeesGetal(instelling::Kruin, i)), kKaal);
    }

    void Registreer()
    {
        // One change for all rows, as each change by itself waits for the disk. Rows made
        // before a failure stay.
        Transactie transactie = m_database.BeginTransactie();
        int id = kNietBekend;
        try {
            id = MaakBerekening();
            MaakResultaten(id);
        } catch (...) {
            transactie.Commit();
            throw;
        }
        transactie.Commit();
        m_uit.Kop(kKopBerekening);
        m_uit.Regel("BEREKENING_ID", QString::number(id), kKaal);
    }

    int MaakBerekening()
    {
        // In the database a calculation without profile has ProfielId 0, which is
        // how it is found back; the file says -999.
        const int profielId = m_profiel.isEmpty() ? 0 : m_profielId;
        // One calculation serves all locations of a batch that have the same
        // profile: the first of them registers it.
        const int id = m_database.FindBerekening(m_berekening.berekening, profielId, m_omschrijving,
                                                 m_overslagdebiet);
        return id != kNietBekend ? id
                                 : m_database.AddBerekening(m_berekening.berekening, profielId,
                                                            m_omschrijving, m_overslagdebiet);
    }

    void MaakResultaten(int id)
    {
        // A period that is asked for twice (the norm's among the extra ones) has one row.
        QList<double> gehad;
        for (const double herhalingstijd : std::as_const(m_herhalingstijden)) {
            if (gehad.contains(herhalingstijd))
                continue;
            gehad << herhalingstijd;
            m_database.AddNewResultaatRecord(id, m_locatie, herhalingstijd);
        }
    }

    void Extra()
    {
        m_uit.Kop(kKopExtra);
        for (const Instelling* schakelaar : {&instelling::UitEnIll, &instelling::Windreductie,
                                             &instelling::UitsplitsenNaarAandelen})
            m_uit.Regel(schakelaar->sleutel, JaNee(Lees(*schakelaar) != "0"), kKaal);
    }

    void Toeslagen()
    {
        m_uit.Kop(kKopToeslagen);
        if (Lees(instelling::ToeslagWSAan) == "1") {
            m_uit.Regel("TOESLAGWS", InvoerGetal(LeesGetal(instelling::ToeslagWSVal)), kKaal);
            m_uit.Regel("TOESLAGWSMEMO", Lees(instelling::ToeslagWSMemo), kAanhaling);
        }
        if (Lees(instelling::ToeslagHBNAan) == "1") {
            m_uit.Regel("TOESLAGHBN", InvoerGetal(LeesGetal(instelling::ToeslagHBNVal)), kKaal);
            m_uit.Regel("TOESLAGHBNMEMO", Lees(instelling::ToeslagHBNMemo), kAanhaling);
        }
        if (Lees(instelling::ToenameWindAan) == "1")
            m_uit.Regel("TOENAMEWIND", InvoerGetal(LeesGetal(instelling::ToenameWindVal)), kKaal);
    }

    HRdb& m_database;
    QLMIniFile m_ini;
    QString m_bestand; // the settings file
    const LocatieBerekening& m_berekening;
    Uitvoer m_uit;
    QString m_locatie, m_profiel; // trimmed
    int m_profielId = kNietBekend;
    double m_overslagdebiet = kNietBekend;
    QString m_omschrijving;
    QList<double> m_herhalingstijden;
};

/// Runs a writer under its own error handler.
template <typename Schrijver>
bool MetFoutmelding(Schrijver&& schrijf)
{
    try {
        schrijf();
        return true;
    } catch (const std::exception& fout) {
        if (gBoxes.Exists())
            gBoxes().ReportError(fout);
        return false;
    }
}

} // namespace

void SchrijfRegel(int bestand, const QString& sleutel, const QString& waarde, bool aanhaling,
                  bool schrijf)
{
    if (!schrijf)
        return;
    const QString rand = aanhaling ? QStringLiteral("'") : QString();
    gFile().PrintLine(bestand, sleutel.leftJustified(kKolomIsgelijk) + "= " + rand + waarde + rand);
}

void SchrijfAlgemeen(int bestand, HRdb& database, const QString& map)
{
    gFile().PrintLine(bestand, QString::fromLatin1(kKopAlgemeen));
    SchrijfRegel(bestand, "USERNAME", GetUserName(), kKaal);
    SchrijfRegel(bestand, "DATBER", QDateTime::currentDateTime().toString("dd-MM-yyyy HH:mm:ss"),
                 kAanhaling);
    SchrijfRegel(bestand, "DBRVW", AbsolutePath(database.fileName()), kAanhaling);
    SchrijfRegel(bestand, "ODBCRVW", kGegevensbron, kAanhaling);
    SchrijfRegel(bestand, "UITVOERMAP", map, kAanhaling);
}

QString InvoerGetal(double waarde)
{
    const QString tekst = NumberText(waarde);
    const qsizetype e = tekst.indexOf('E');
    if (e < 0)
        return tekst;
    const QString minteken = tekst.startsWith('-') ? "-" : "";
    const QString cijfers = tekst.left(e).remove('-').remove('.');
    const int macht = tekst.mid(e + 1).toInt(); // of ten, of the first digit
    return minteken + (macht < 0 ? "0." + QString(-macht - 1, '0') + cijfers
                                 : cijfers.leftJustified(macht + 1, '0'));
}

bool SchrijfInvoerBestand(HRdb& database, const QString& instellingen,
                          const LocatieBerekening& berekening)
{
    return MetFoutmelding([&] { LocatieSchrijver(database, instellingen, berekening).Schrijf(); });
}

bool SchrijfDijkringInvoerBestand(HRdb& database, const DijkringBerekening& berekening)
{
    return MetFoutmelding([&] {
        Uitvoer uit(InvoerPad(berekening.map));
        SchrijfAlgemeen(uit.Nummer(), database, berekening.map);
        uit.Regel("MEMO", berekening.memo.left(kMaximumMemo), kAanhaling);
        uit.Kop(kKopVariant);
        uit.Regel("VARIANT", "DIJKRING", kAanhaling);
        uit.Regel("DIJKRING", berekening.dijkring.trimmed(), kAanhaling);
        uit.Kop(kKopFaalmechanisme);
        if (const QString woord = FaalmechanismeSleutelwoord(berekening.indexFaalmechanisme);
            !woord.isEmpty())
            uit.Regel("FAALMECHANISME", woord, kAanhaling);
        if (berekening.indexFaalmechanisme != faalmechanisme::Overloop)
            SchrijfGolfgroei(uit, berekening.indexGolfgroeimodule,
                             berekening.golfCorrFactorAan ? berekening.golfCorrFactor
                                                          : double(kNietBekend));
        uit.Kop(kKopExtra);
        uit.Regel("WINDREDUCTIE", JaNee(berekening.windreductie), kKaal);
    });
}
