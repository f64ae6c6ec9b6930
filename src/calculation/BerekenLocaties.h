#pragma once

#include "frame/Ports.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class HRdb;
class QTreeWidgetItem;

/// The run of a batch: one calculation name for a set of pairs of location and
/// profile, one run of the core for each, one after the other. All folders are
/// prepared first, so that every question is answered before the first run.
///
/// The driver reaches its forms through these classes; a node is a handle that
/// it passes on and never looks into.

/// What the driver needs of the location browser.
class LocatieBrowser {
public:
    virtual ~LocatieBrowser() = default;
    virtual void BerekeningNodeDelete(const QString& key) = 0;
    virtual bool NodeExists(const QString& key) = 0;
    virtual QTreeWidgetItem* GetNodeByKey(const QString& key) = 0;
    virtual QString GetPathSeparator() = 0;
    virtual void ResetCurrentNode() = 0;
    virtual void ApplyNode(QTreeWidgetItem* node) = 0;
};

/// What the drivers need of the navigation tree.
class Berekeningenboom {
public:
    virtual ~Berekeningenboom() = default;
    virtual QTreeWidgetItem* AddBerekening2Locatie(QTreeWidgetItem* locatie,
                                                   const QString& naam) = 0;
    virtual void AddBerekening2Root(const QString& naam) = 0;
};

/// The form in which one run of the core takes place.
class JobForm {
public:
    virtual ~JobForm() = default;
    virtual void InitialiseerLocatie(const QString& berekening, const QString& map,
                                     const QString& locatie) = 0;
    /// Where this run stands in the batch, both from 1.
    virtual void ToonVoortgang(int nummer, int aantal) = 0;
    /// Shows the form modally; the core runs meanwhile.
    virtual void Toon() = 0;
    /// The core was killed.
    virtual bool IsAbortedByUser() const = 0;
    /// The user wants the batch to end here. When the core was done before he said so,
    /// the run is not aborted: its results stay.
    virtual bool IsBatchStopped() const = 0;
    virtual int ExitCode() const = 0;
};

/// One pair.
struct TeBerekenen {
    QString locatie;
    QString profiel; ///< blank when the mechanism needs none
};

struct Batch {
    QString naam;
    QList<TeBerekenen> paren;
    QString overzicht; ///< overview file, or empty
    QString memo;
    QString instellingen; ///< the settings file
};

/// Who takes part.
struct BatchDeelnemers {
    HRdb& database;
    StatusBar& hoofdscherm;
    LocatieBrowser& browser;
    Berekeningenboom& boom;
    LogSink& resultaat;                                  ///< the text of the result list
    std::function<std::unique_ptr<JobForm>()> nieuweJob; ///< a fresh form for each run
};

/// How a batch ended.
struct BatchVerloop {
    int gedaan = 0;   ///< runs that came to an end, whatever their exit code
    QStringList niet; ///< what was to run after the questions and did not: "Plas-04: ontwerp_p1"
    bool afgebroken = false;

    int Gepland() const { return gedaan + static_cast<int>(niet.size()); }
};

/// Runs a batch. Raises error 26 when a folder's path is too long (before anything is
/// touched), 700 and 701 when the core does not start, RuntimeFout::FileAccess when the
/// disk is full; `verloop` is true up to there.
void BerekenLocaties(const BatchDeelnemers& deelnemers, const Batch& batch, BatchVerloop& verloop);

/// What is to be done with a pair whose folder was prepared.
enum class MapAntwoord { Stoppen = 2, Doorgaan = 6, Overslaan = 7 };

/// Makes the folders above a calculation folder, composes its path in `map` (as it is
/// spelled on the disk), and empties it when it exists and the user agrees (question 20).
/// Error 26 for a path of more than 240 characters; message 205 when a file stays.
MapAntwoord MaakBerekeningMap(const QString& mapnaam, const QString& locatie,
                              const QString& werkmap, QString& map);
