#pragma once

#include <QString>
#include <QStringList>

/// The numbered texts of the program's ini, looked up in a fresh QLMIniFile
/// each time, so that a changed file is seen at once.
///
/// Sections `Messages`, `Fouten` and `Questions` carry the value of `Taal` in
/// section `Algemeen` behind their name, `StatusBarTeksten` carries gLanguage.
/// In these texts "|" is a line break, "||" a bar, "%1", "%2", ... arguments.
/// Each function has a fallback text, so none can fail.

enum class TextKind { Message, Fout, Question };

/// The text with its placeholders filled, "|" not decoded; `unknown` stands in
/// "Onbekende <unknown> (<number>)" when the text is missing.
[[nodiscard]] QString NumberedText(TextKind kind, int number, const QStringList& arguments,
                                   const QString& unknown);

/// What a box shows: placeholders filled, bars decoded.
/// ShowMessage speaks of an unknown "fout", ShowMessageForm of a "message".
[[nodiscard]] QString ShowMessageText(int number, const QStringList& arguments = {});
[[nodiscard]] QString MessageText(int number, const QStringList& arguments = {});
[[nodiscard]] QString FoutText(int number, const QStringList& arguments = {});
[[nodiscard]] QString QuestionText(int number, const QStringList& arguments = {});

/// Not decoded: a status bar has one line. The key "sbt.0000" when missing.
[[nodiscard]] QString StatusBarTekst(int number, const QStringList& arguments = {});

/// `OK`, `YES` or `NO` of section `MESSAGEBUTTONS`.
[[nodiscard]] QString ButtonText(const QString& key);

/// The application title, "_" replaced by "-".
[[nodiscard]] QString BoxTitle();

/// Replaces "%1" by the first argument, "%2" by the second, ...: each the first
/// occurrence only, and two characters only (so "%10" is "%1" and a 0). Text
/// put in by an argument may hold a placeholder that the next one fills.
void FillPlaceholders(QString& text, const QStringList& arguments);

/// "|" becomes CR LF, "||" becomes "|"; a CR LF at the very end is dropped.
[[nodiscard]] QString Bars2Lines(const QString& text);
/// The reverse; a single "|" left at the end is dropped.
[[nodiscard]] QString Lines2Bars(const QString& text);

/// Dutch when gLanguage, trimmed, is empty or "NL"; for the few texts that
/// stand in the code.
[[nodiscard]] bool IsDutch();
