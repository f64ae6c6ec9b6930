#pragma once

#include <QString>

class LogSink;

/// The version that a program of the installation tells, run with "-VERSIE".
/// `key` names it in section `Algemeen`, such as "Rekenprogramma.exe". Its
/// output passes through `box`. Empty when the file is missing, does not start
/// or has not answered within three seconds.
QString getProgrammaVersie(const QString& key, LogSink& box);

/// "Versie 1.0 november 2021": caption, version of this program, build month.
QString VersieText(const QString& caption);

/// A version behind the name of its program, unless it begins with that name itself.
QString MetVersie(const QString& naam, const QString& versie);
