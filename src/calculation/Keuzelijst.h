#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class HRdb;

/// A location as the tree shows it.
struct LocatieInBoom {
    QString naam;
    bool geselecteerd = false;
    QStringList profielen; ///< linked to it
};

/// The tree, as far as the choice of what to calculate needs it.
class LocatieBron {
public:
    virtual ~LocatieBron() = default;
    /// In the order of the tree.
    virtual QList<LocatieInBoom> Locaties() const = 0;
};

/// One row of the choice: a pair of location and profile, or a location that
/// cannot be calculated, with the reason in place of the profile.
struct KeuzeRij {
    QString locatie;
    QString profiel;
    bool bruikbaar = true;
    bool gekozen = false; ///< to begin with
    friend bool operator==(const KeuzeRij&, const KeuzeRij&) = default;
};

struct KeuzeTeksten {
    QString onvoldoendeGegevens;
    QString geenGeschiktProfiel;
};

/// Stands in place of a profile when the mechanism needs none.
inline const QString kProfielNvt = QStringLiteral("N.V.T.");

/// Whether the failure mechanism works on a profile: all but overflow.
bool ProfielNodig(int indexFaalmechanisme);

/// The rows for a failure mechanism. Wave run-up leaves out profiles with a vertical wall.
QList<KeuzeRij> MaakKeuzelijst(const LocatieBron& bron, HRdb& database, int indexFaalmechanisme,
                               const KeuzeTeksten& teksten);
