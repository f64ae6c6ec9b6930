#pragma once

#include <QString>

#include <functional>
#include <optional>

/// How far a batch is and how long it may still take. Lives as long as the
/// batch, while each run has a form of its own.
class BatchVoortgang {
public:
    /// Milliseconds from any fixed moment on.
    using Klok = std::function<qint64()>;
    explicit BatchVoortgang(Klok klok = SteadyKlok());

    /// Run `nummer` (from 1) of `aantal` begins.
    void Begin(int nummer, int aantal);

    int Aantal() const { return m_aantal; }
    int Gedaan() const { return m_nummer > 0 ? m_nummer - 1 : 0; }
    /// Milliseconds since the first run began.
    qint64 Verstreken() const;
    /// Milliseconds that the rest may take, by the mean of the runs that are
    /// over; unknown during the first one.
    std::optional<qint64> Resterend() const;

    static Klok SteadyKlok();

private:
    Klok m_klok;
    int m_nummer = 0;
    int m_aantal = 0;
    qint64 m_begin = 0;
    qint64 m_beginVanDeze = 0;
};

/// "1:02:03"; minutes and hours as far as needed, at least "0:03".
QString DuurTekst(qint64 milliseconden);

/// One line of the result list: "Plas-04: ontwerp_p1 OK".
struct Resultaatregel {
    QString locatie;
    QString berekening; ///< the name of the folder
    bool gelukt = true;
    friend bool operator==(const Resultaatregel&, const Resultaatregel&) = default;
};

/// Nothing for a line of another form.
std::optional<Resultaatregel> LeesResultaatregel(const QString& regel);

/// How many lines of the list tell of a failure.
int AantalMislukt(const QString& lijst);
