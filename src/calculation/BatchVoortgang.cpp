#include "calculation/BatchVoortgang.h"

#include <QStringList>

#include <algorithm>
#include <chrono>

BatchVoortgang::Klok BatchVoortgang::SteadyKlok()
{
    return [] {
        return qint64(std::chrono::duration_cast<std::chrono::milliseconds>(
                          std::chrono::steady_clock::now().time_since_epoch())
                          .count());
    };
}

BatchVoortgang::BatchVoortgang(Klok klok) : m_klok(std::move(klok)) {}

void BatchVoortgang::Begin(int nummer, int aantal)
{
    m_beginVanDeze = m_klok();
    if (m_nummer == 0)
        m_begin = m_beginVanDeze;
    m_nummer = nummer;
    m_aantal = aantal;
}

qint64 BatchVoortgang::Verstreken() const
{
    return m_nummer == 0 ? 0 : m_klok() - m_begin;
}

std::optional<qint64> BatchVoortgang::Resterend() const
{
    if (Gedaan() == 0)
        return std::nullopt;
    const qint64 gemiddeld = (m_beginVanDeze - m_begin) / Gedaan();
    // A run that takes longer than the mean may end any moment.
    const qint64 vanDeze = std::max<qint64>(0, gemiddeld - (m_klok() - m_beginVanDeze));
    return vanDeze + gemiddeld * std::max(0, m_aantal - m_nummer);
}

QString DuurTekst(qint64 milliseconden)
{
    const qint64 seconden = std::max<qint64>(0, milliseconden) / 1000;
    const auto tweeCijfers = [](qint64 getal) {
        return QString::number(getal).rightJustified(2, '0');
    };
    const QString minuten = QString::number(seconden / 60 % 60);
    const QString staart = ":" + tweeCijfers(seconden % 60);
    if (seconden < 3600)
        return minuten + staart;
    return QString::number(seconden / 3600) + ":" + minuten.rightJustified(2, '0') + staart;
}

std::optional<Resultaatregel> LeesResultaatregel(const QString& regel)
{
    // Neither a location nor a calculation can have a ":" in its name.
    const qsizetype scheiding = regel.indexOf(": ");
    if (scheiding <= 0)
        return std::nullopt;
    static const QString gelukt = QStringLiteral(" OK");
    const qsizetype fout = regel.lastIndexOf(" FOUT: EXITCODE=");
    const qsizetype einde = fout >= 0                ? fout
                            : regel.endsWith(gelukt) ? regel.size() - gelukt.size()
                                                     : -1;
    const qsizetype begin = scheiding + 2;
    if (einde <= begin)
        return std::nullopt;
    return Resultaatregel{regel.left(scheiding), regel.mid(begin, einde - begin), fout < 0};
}

int AantalMislukt(const QString& lijst)
{
    int aantal = 0;
    for (const QString& regel : QString(lijst).remove('\r').split('\n')) {
        const auto gelezen = LeesResultaatregel(regel);
        aantal += gelezen && !gelezen->gelukt ? 1 : 0;
    }
    return aantal;
}
