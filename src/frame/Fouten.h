#pragma once

#include <QString>
#include <QStringList>

#include <exception>

/// What deep code throws when it cannot go on; the edge catches it once and
/// shows Description in a box (`ReportError`).
class Fout : public std::exception {
public:
    Fout(int number, QString description, QString source = {});

    /// FoutCode(n) for the numbered texts, or one of RuntimeFout.
    [[nodiscard]] int Number() const { return m_number; }
    /// As found in the text file: "|" not decoded yet.
    [[nodiscard]] const QString& Description() const { return m_description; }
    [[nodiscard]] const QString& Source() const { return m_source; }
    /// The description in UTF-8.
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

/// Failures of plain operations that have no numbered text.
namespace RuntimeFout {
inline constexpr int InvalidArgument = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int FileAccess = 75;
} // namespace RuntimeFout

/// The error code of numbered text `number`.
[[nodiscard]] constexpr int FoutCode(int number)
{
    return -2147221504 + number;
}

/// Throws a Fout with FoutCode(number) and the text `fout.<number>`, its
/// placeholders filled.
[[noreturn]] void RaiseFout(int number, const QStringList& arguments = {});

/// Throws a RuntimeFout with a text of its own.
[[noreturn]] void RaiseRuntimeFout(int number, const QString& description);

/// The description of any exception, ours or not.
[[nodiscard]] QString Description(const std::exception& error);
