#pragma once

#include "frame/ProcessRunner.h"

#include <QString>

class HRdb;

/// One run of the calculation core in a calculation folder.
class Rekenrun {
public:
    explicit Rekenrun(HRdb& database) : m_database(database) {}

    /// Runs the core named by the program's ini on `invoer` (a file name in
    /// `map`), shows its output in `box` and keeps it in `uitvoer.log`. The
    /// database is closed first: the core needs it alone. Afterwards every file
    /// in the folder is read-only. Raises 700 and 701 when the core does not start.
    RunResult Start(RunForm* form, const QString& map, LogSink& box,
                    const QString& invoer = QStringLiteral("invoer.txt"));

    /// Kills the core: exit code 999.
    void Terminate() { m_runner.Terminate(); }
    bool Rekent() const { return m_runner.Rekent(); }

private:
    HRdb& m_database;
    ProcessRunner m_runner;
};
