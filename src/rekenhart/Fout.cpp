#include "rekenhart/Fout.h"

#include <utility>

namespace rekenhart {

Fout::Fout(ExitCode code, std::string text, std::string advice)
    : m_code(code), m_text(std::move(text)), m_advice(std::move(advice))
{}

Fout Fout::Of(std::string_view part) const
{
    return {m_code, std::string(part) + ": " + m_text, m_advice};
}

std::string FillIn(std::string_view text, std::string_view one, std::string_view two,
                   std::string_view three)
{
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char digit = text[i] == '%' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (digit < '1' || digit > '3') {
            filled += text[i];
            continue;
        }
        filled += digit == '1' ? one : digit == '2' ? two : three;
        ++i;
    }
    return filled;
}

Fout OntbrekendeSleutel(std::string_view key)
{
    return {ExitCode::InvalidKey, FillIn("Sleutel %1 ontbreekt in het invoerbestand.", key),
            "Start de berekening opnieuw vanuit het programma, dat het invoerbestand schrijft."};
}

Fout OngeldigeSleutel(std::string_view key, std::string_view value)
{
    return {ExitCode::InvalidKey,
            FillIn("Sleutel %1 heeft een ongeldige waarde: '%2'.", key, value),
            "Pas de rekeninstellingen aan en start de berekening opnieuw."};
}

Fout OnbekendeLocatie(std::string_view naam)
{
    return {ExitCode::DataMissing, FillIn("De locatie '%1' staat niet in de database.", naam),
            "Kies een locatie uit de boom van de geopende database."};
}

Fout OnbekendProfiel(std::string_view naam)
{
    return {ExitCode::DataMissing, FillIn("Het profiel '%1' staat niet in de database.", naam),
            "Kies een profiel dat in de database staat."};
}

Fout LegeDijkring(std::string_view naam)
{
    return {ExitCode::DataMissing, FillIn("De dijkring '%1' heeft geen leden.", naam),
            "Voeg eerst locaties toe aan de dijkring."};
}

Fout OnbekendeKlasse(int veiligheidsklasse, std::string_view locatie)
{
    return {ExitCode::DataMissing,
            FillIn("De veiligheidsklasse %1 van locatie '%2' staat niet in de database.",
                   std::to_string(veiligheidsklasse), locatie),
            "Kies voor de locatie een veiligheidsklasse van 1 tot en met 5."};
}

Fout OnvolledigeLocatie(std::string_view naam, std::string_view what)
{
    return {ExitCode::DataMissing,
            FillIn("De gegevens van locatie '%1' zijn niet volledig: %2.", naam, what),
            "Vul de randvoorwaarden van de locatie aan."};
}

Fout OngeldigeTabel(std::string_view table, std::string_view why)
{
    return {ExitCode::Statistics, FillIn("De tabel %1 ontbreekt of is ongeldig: %2.", table, why),
            "Open de database in het programma; dat neemt de tabel over uit Statistieken.mdb."};
}

Fout OngeschiktProfiel(std::string_view naam, std::string_view mechanism)
{
    return {ExitCode::UnsuitableProfile,
            FillIn("Het profiel '%1' is niet geschikt voor faalmechanisme %2.", naam, mechanism),
            "Controleer het profiel in de profieleditor of kies een ander faalmechanisme."};
}

Fout GeenEindigeWaarde(std::string_view herhalingstijd)
{
    return {
        ExitCode::NotFinite,
        FillIn("De berekening levert geen eindige waarde op (herhalingstijd %1).", herhalingstijd),
        "Controleer de randvoorwaarden van de locatie op onmogelijke waarden."};
}

Fout OnschrijfbaarBestand(std::string_view path)
{
    return {ExitCode::OutputFile, FillIn("Het bestand '%1' kan niet worden geschreven.", path),
            "Controleer of de map bestaat en of het bestand niet in gebruik of alleen-lezen is."};
}

Fout GeenResultaatRijen(int berekening, std::string_view locatie)
{
    return {ExitCode::NoRows,
            FillIn("In Resultaat wacht geen enkele rij van berekening %1 en locatie '%2'.",
                   std::to_string(berekening), locatie),
            "Start de berekening opnieuw vanuit het programma, dat de rijen aanmaakt."};
}

Fout OnleesbaarInvoerbestand(std::string_view path)
{
    return {ExitCode::NoInput, FillIn("Het invoerbestand '%1' kan niet worden gelezen.", path),
            "Controleer het pad achter -INVOER."};
}

Fout OnbereikbareDatabase(std::string_view path, std::string_view reason, std::string_view advice)
{
    return {ExitCode::Database, FillIn("De database '%1' kan niet worden geopend.", path),
            FillIn("%1. %2", reason, advice)};
}

Fout OnschrijfbareResultaten(std::string_view reason)
{
    return {ExitCode::Database,
            FillIn("De resultaten kunnen niet worden weggeschreven: %1.", reason),
            "Sluit andere programma's die de database gebruiken en reken opnieuw."};
}

} // namespace rekenhart
