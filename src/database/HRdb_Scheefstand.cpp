#include "database/HRdb.h"
#include "database/SqlTekst.h"

#include "frame/Fouten.h"
#include "frame/Ports.h"

#include <QScopeGuard>

// The texts below speak of wind speeds where the set-up is tested, name
// "windsector 1" whatever the reference sector is, and the reference sector is
// spared the test on negative values. Kept so: users know these lines.

namespace {

constexpr int kMinimaalAantalWindsnelheden = 5;
constexpr double kMinimaalVerschil = 0.1; // m/s

constexpr jet::RecordsetType kSnapshot = jet::RecordsetType::Snapshot;

} // namespace

void HRdb::Checkscheefstandtabel()
{
    m_logRtb->Clear();
    QString vorigeStatus;
    if (m_statusbarForm)
        vorigeStatus =
            m_statusbarForm->SetStatusBarText("Controle scheefstandtabel, kan even duren...");
    const auto herstelStatus = qScopeGuard([&] {
        if (!m_statusbarForm)
            return;
        m_statusbarForm->ClearStatusBarText();
        m_statusbarForm->SetStatusBarText(vorigeStatus);
    });

    QList<int> sectoren;
    const auto sectorRijen =
        Open("SELECT DISTINCT Richting_ID FROM Windsectoren ORDER BY Richting_ID;", kSnapshot);
    if (!heeftRecords(sectorRijen))
        RaiseFout(14, {RelativeFileName()});
    for (; !sectorRijen->EndOfFile(); sectorRijen->MoveNext())
        sectoren << sectorRijen->Get("Richting_ID").AsInt();

    const auto locaties = Open("SELECT * from Locatie", kSnapshot);
    const int aantal = CountRows(locaties);
    if (aantal == 0)
        return;
    const int aantalMetScheefstand = CountRows(
        Open("SELECT DISTINCT Locatie_ID FROM scheefstand where Locatie_ID IN ( SELECT DISTINCT "
             "Locatie_ID FROM Locatie);",
             kSnapshot));
    if (aantal != aantalMetScheefstand)
        RaiseFout(12, {RelativeFileName(), QString::number(aantal),
                       QString::number(aantalMetScheefstand)});

    int fouten = 0;
    for (; !locaties->EndOfFile(); locaties->MoveNext()) {
        m_logRtb->Append("Controle locatie " + veld::Tekst(*locaties, "omschrijving"));
        QString melding;
        if (ControleerLocatieScheefstand(locaties->Get("Locatie_ID").AsInt(), sectoren, melding)) {
            m_logRtb->Append(" [OK]");
        } else {
            m_logRtb->Append(" [" + melding + "]");
            ++fouten;
        }
        m_logRtb->Append("\r\n");
    }
    m_logRtb->Append("\r\nAantal geconstateerde fouten: " + QString::number(fouten));
}

HRdb::Scheefstandtabel HRdb::ReadScheefstand(int locatieId, int sector)
{
    const auto rows = Open(
        sql::VulParameters("SELECT Windsnelheid, Scheefstand FROM Scheefstand WHERE Richting_ID=%1 "
                           "AND Locatie_ID=%2 ORDER BY Windsnelheid;",
                           {sql::Getal(sector), sql::Getal(locatieId)}),
        kSnapshot);
    Scheefstandtabel tabel;
    if (heeftRecords(rows)) {
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            // An empty field is not known: a fault of its location, not of the check.
            tabel[0].push_back(rows->Get(0).AsDoubleOr(kNietBekend));
            tabel[1].push_back(rows->Get(1).AsDoubleOr(kNietBekend));
        }
    }
    return tabel;
}

bool HRdb::ControleerLocatieScheefstand(int locatieId, const QList<int>& sectoren, QString& melding)
{
    Scheefstandtabel referentie;
    for (qsizetype i = 0; i < sectoren.size(); ++i) {
        const QString sector = QString::number(sectoren[i]);
        const auto tabel = ReadScheefstand(locatieId, sectoren[i]);
        if (tabel[0].empty()) {
            melding = "Geen windsnelheden bij windsector " + sector;
            return false;
        }
        if (i == 0) {
            if (tabel[0].size() < kMinimaalAantalWindsnelheden) {
                melding = "Er zijn minder dan 5 windsnelheden bij windsector " + sector;
                return false;
            }
            for (std::size_t j = 1; j < tabel[0].size(); ++j)
                if (tabel[0][j] - tabel[0][j - 1] < kMinimaalVerschil) {
                    melding = "Sommige windsnelheden liggen minder dan 0.1 m/s uit elkaar bij "
                              "windsector " +
                              sector;
                    return false;
                }
            referentie = tabel;
        } else if (!ZelfdeWindsnelheden(referentie, tabel)) {
            melding = "Windsnelheden bij windsector 1 en windsector " + sector + " verschillen";
            return false;
        }
        if (!IsOplopend(tabel)) {
            melding = "De windsnelheden zijn niet oplopend bij windsector " + sector;
            return false;
        }
        if (i > 0 && !IsNietNegatief(tabel)) {
            melding =
                QStringLiteral("Er zijn één of meer negatieve windsnelheden bij windsector ") +
                sector;
            return false;
        }
    }
    return true;
}

bool HRdb::IsOplopend(const Scheefstandtabel& tabel)
{
    for (std::size_t i = 1; i < tabel[1].size(); ++i)
        if (tabel[1][i - 1] > tabel[1][i])
            return false;
    return true;
}

bool HRdb::IsNietNegatief(const Scheefstandtabel& tabel)
{
    for (const double scheefstand : tabel[1])
        if (scheefstand < 0)
            return false;
    return true;
}

bool HRdb::ZelfdeWindsnelheden(const Scheefstandtabel& een, const Scheefstandtabel& twee)
{
    return !een[0].empty() && een[0] == twee[0];
}
