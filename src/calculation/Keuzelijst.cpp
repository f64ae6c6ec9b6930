#include "calculation/Keuzelijst.h"

#include "calculation/Rekeninstellingen.h"
#include "database/HRdb.h"

#include <QHash>

namespace {

/// Asks once for each profile: many locations share one.
class Profielkeuring {
public:
    Profielkeuring(HRdb& database, int indexFaalmechanisme)
        : m_database(database), m_keurt(indexFaalmechanisme == faalmechanisme::Golfoploop)
    {}

    bool IsGeschikt(const QString& profiel)
    {
        if (!m_keurt)
            return true;
        const auto bekend = m_geschikt.constFind(profiel);
        if (bekend != m_geschikt.cend())
            return *bekend;
        return *m_geschikt.insert(profiel, !m_database.ProfielHeeftVertikaleWand(profiel));
    }

private:
    HRdb& m_database;
    bool m_keurt;
    QHash<QString, bool> m_geschikt;
};

} // namespace

bool ProfielNodig(int indexFaalmechanisme)
{
    return indexFaalmechanisme == faalmechanisme::Golfoverslag ||
           indexFaalmechanisme == faalmechanisme::Golfoploop;
}

QList<KeuzeRij> MaakKeuzelijst(const LocatieBron& bron, HRdb& database, int indexFaalmechanisme,
                               const KeuzeTeksten& teksten)
{
    Profielkeuring keuring(database, indexFaalmechanisme);
    QList<KeuzeRij> rijen;
    for (const LocatieInBoom& locatie : bron.Locaties()) {
        if (database.GetKwaliteitskenmerk(locatie.naam) < 1) {
            rijen << KeuzeRij{locatie.naam, teksten.onvoldoendeGegevens, false, false};
            continue;
        }
        if (!ProfielNodig(indexFaalmechanisme)) {
            rijen << KeuzeRij{locatie.naam, kProfielNvt, true, locatie.geselecteerd};
            continue;
        }
        const qsizetype voor = rijen.size();
        for (const QString& profiel : locatie.profielen)
            if (keuring.IsGeschikt(profiel))
                rijen << KeuzeRij{locatie.naam, profiel, true, locatie.geselecteerd};
        if (rijen.size() == voor)
            rijen << KeuzeRij{locatie.naam, teksten.geenGeschiktProfiel, false, false};
    }
    return rijen;
}
