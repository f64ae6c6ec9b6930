#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace rekenhart {

/// What the program ends with; the numbers are documented and read by others.
/// Never 259 ("still active" to who waits) and never 999 (a kill by the caller).
enum class ExitCode {
    Ok = 0,
    NoInput = 2,           ///< wrong command line, or an input file that cannot be read
    InvalidKey = 3,        ///< key missing or invalid
    Database = 4,          ///< cannot be opened or written
    DataMissing = 5,       ///< location, profile, ring or class not found; data incomplete
    Statistics = 6,        ///< statistic tables missing or invalid
    UnsuitableProfile = 7, ///< for the failure mechanism
    NotFinite = 8,         ///< the outcome is no number
    OutputFile = 9,        ///< cannot be written
    NoRows = 10,           ///< no result row waits for this calculation
    Unexpected = 99,
};

/// A failure that ends the run: an exit code, one Dutch line (UTF-8) that says
/// what is wrong, and one that says what the user can do about it.
class Fout : public std::exception {
public:
    Fout(ExitCode code, std::string text, std::string advice);

    ExitCode Code() const { return m_code; }
    const std::string& Text() const { return m_text; }
    const std::string& Advice() const { return m_advice; }
    /// The same failure, its text led in by `part`: "Plas-03: ...".
    Fout Of(std::string_view part) const;
    const char* what() const noexcept override { return m_text.c_str(); }

private:
    ExitCode m_code;
    std::string m_text, m_advice;
};

/// `text` with %1, %2, %3 replaced. What is filled in is not looked at again.
std::string FillIn(std::string_view text, std::string_view one, std::string_view two = {},
                   std::string_view three = {});

Fout OntbrekendeSleutel(std::string_view key);
Fout OngeldigeSleutel(std::string_view key, std::string_view value);
Fout OnbekendeLocatie(std::string_view naam);
Fout OnbekendProfiel(std::string_view naam);
Fout LegeDijkring(std::string_view naam);
Fout OnbekendeKlasse(int veiligheidsklasse, std::string_view locatie);
Fout OnvolledigeLocatie(std::string_view naam, std::string_view what);
Fout OngeldigeTabel(std::string_view table, std::string_view why);
Fout OngeschiktProfiel(std::string_view naam, std::string_view mechanism);
Fout GeenEindigeWaarde(std::string_view herhalingstijd);
Fout OnschrijfbaarBestand(std::string_view path);
Fout GeenResultaatRijen(int berekening, std::string_view locatie);
Fout OnleesbaarInvoerbestand(std::string_view path);
Fout OnbereikbareDatabase(std::string_view path, std::string_view reason, std::string_view advice);
Fout OnschrijfbareResultaten(std::string_view reason);

} // namespace rekenhart
