#pragma once

#include <QIODevice>
#include <QStringList>

namespace geometrytools {

/// How the programs end.
enum ExitCode {
    AllComputed = 0,
    SomeNotComputed = 1, ///< a location has a status instead of values
    WrongCall = 2,
    CannotRead = 3, ///< the map, the grid's library or the locations
    CannotWrite = 4,
};

/// Where a program reads and writes.
struct Streams {
    QIODevice& in;
    QIODevice& out;
    QIODevice& messages;
    bool showProgress = false;
};

/// `arguments` without the program's name.
int RunStrijklengte(const QStringList& arguments, const Streams& streams);
int RunBodemhoogte(const QStringList& arguments, const Streams& streams);

/// Whether somebody reads standard error as it is written.
bool IsErrorStreamTerminal();

/// The streams of a process; called by both `main`s.
int RunOnStandardStreams(int argc, char** argv, int (*program)(const QStringList&, const Streams&));

} // namespace geometrytools
