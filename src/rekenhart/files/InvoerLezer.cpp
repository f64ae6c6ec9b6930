#include "rekenhart/files/InvoerLezer.h"

#include "rekenhart/Fout.h"
#include "rekenhart/files/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace rekenhart {

namespace {

constexpr std::string_view kKnownKeys[] = {"USERNAME",
                                           "DATBER",
                                           "DBRVW",
                                           "ODBCRVW",
                                           "UITVOERMAP",
                                           "OVERZICHTNM",
                                           "MEMO",
                                           "VARIANT",
                                           "LOCATIE",
                                           "LOCATIE_ID",
                                           "DIJKRING",
                                           "PROFIEL",
                                           "PROFIEL_ID",
                                           "FAALMECHANISME",
                                           "OVERSLAGDEBIET",
                                           "GOLFGROEIMODULE",
                                           "GOLFCORRFACTOR",
                                           "NORMFREQUENTIE",
                                           "FREQ",
                                           "KRUINHOOGTEPROFIEL",
                                           "KRUIN",
                                           "BEREKENING_ID",
                                           "UITENILL",
                                           "WINDREDUCTIE",
                                           "UITSPLITSENNAARAANDELEN",
                                           "TOESLAGWS",
                                           "TOESLAGWSMEMO",
                                           "TOESLAGHBN",
                                           "TOESLAGHBNMEMO",
                                           "TOENAMEWIND",
                                           "SITUATIE",
                                           "BOEZEMPEIL",
                                           "WINDSNELHEID"};

constexpr double kShortestPeriod = 0.5; // years
constexpr double kLongestPeriod = 20000;
constexpr double kSlack = 1 + 1e-9; // 1/T was rounded to 15 digits

/// Asks for single keys by kind; every question throws when the answer is wrong.
class Keys {
public:
    explicit Keys(const InputFile& file) : m_file(file) {}

    std::string Text(std::string_view key) const { return m_file.Value(key).value_or(""); }

    std::string RequiredText(std::string_view key) const
    {
        const std::string text = Text(key);
        if (text.empty())
            throw OntbrekendeSleutel(key);
        return text;
    }

    /// Nothing when the key is absent, empty or -999.
    std::optional<double> Number(std::string_view key, double low, double high) const
    {
        const std::string text = Text(key);
        if (text.empty())
            return std::nullopt;
        const auto number = ParseNumber(text);
        if (number && !IsBekend(*number))
            return std::nullopt;
        if (!number || *number < low || *number > high)
            throw OngeldigeSleutel(key, text);
        return number;
    }

    double RequiredNumber(std::string_view key, double low, double high) const
    {
        const auto number = Number(key, low, high);
        if (!number)
            throw OntbrekendeSleutel(key);
        return *number;
    }

    std::optional<int> Integer(std::string_view key) const
    {
        const std::string text = Text(key);
        if (text.empty())
            return std::nullopt;
        const auto number = ParseInteger(text);
        if (!number)
            throw OngeldigeSleutel(key, text);
        return number;
    }

    bool Flag(std::string_view key, bool whenAbsent) const
    {
        const std::string text = UpperCase(Text(key));
        if (text.empty())
            return whenAbsent;
        if (text != "JA" && text != "NEE")
            throw OngeldigeSleutel(key, Text(key));
        return text == "JA";
    }

    template <typename Choice, std::size_t N>
    Choice RequiredChoice(std::string_view key,
                          const std::array<std::pair<std::string_view, Choice>, N>& choices) const
    {
        const std::string text = UpperCase(RequiredText(key));
        for (const auto& [keyword, choice] : choices)
            if (keyword == text)
                return choice;
        throw OngeldigeSleutel(key, Text(key));
    }

    std::vector<std::string> Values(std::string_view key) const { return m_file.Values(key); }

private:
    const InputFile& m_file;
};

Variant ReadVariant(const Keys& keys)
{
    return keys.RequiredChoice<Variant, 3>("VARIANT",
                                           {{{Keyword(Variant::Dijkvak), Variant::Dijkvak},
                                             {Keyword(Variant::Dijkring), Variant::Dijkring},
                                             {Keyword(Variant::Determ), Variant::Determ}}});
}

double RequiredAboveZero(const Keys& keys, std::string_view key)
{
    const double value = keys.RequiredNumber(key, 0, 1e9);
    if (value <= 0)
        throw OngeldigeSleutel(key, keys.Text(key));
    return value;
}

Belastinginstellingen ReadBelasting(const Keys& keys, Variant variant)
{
    Belastinginstellingen load;
    load.faalmechanisme = keys.RequiredChoice<Faalmechanisme, 3>(
        "FAALMECHANISME", {{{"OVERLOOP", Faalmechanisme::Overloop},
                            {"GOLFOVERSLAG", Faalmechanisme::Golfoverslag},
                            {"GOLFOPLOOP", Faalmechanisme::Golfoploop}}});
    // The members of a ring bring their own discharge.
    if (load.faalmechanisme == Faalmechanisme::Golfoverslag && variant != Variant::Dijkring)
        load.overslagdebiet = RequiredAboveZero(keys, "OVERSLAGDEBIET");
    if (load.HasWaves()) {
        load.golfgroeimodule = keys.RequiredChoice<Golfgroeimodule, 3>(
            "GOLFGROEIMODULE", {{{"BRETSCHNEIDER", Golfgroeimodule::Bretschneider},
                                 {"YOUNGVERHAGEN", Golfgroeimodule::YoungVerhagen},
                                 {"BREUGEMHOLTHUIJSEN", Golfgroeimodule::BreugemHolthuijsen}}});
        load.golfCorrFactor = keys.Number("GOLFCORRFACTOR", 0, 10).value_or(1);
        if (load.golfCorrFactor <= 0 || load.golfCorrFactor >= 10)
            throw OngeldigeSleutel("GOLFCORRFACTOR", keys.Text("GOLFCORRFACTOR"));
    }
    load.windreductie = keys.Flag("WINDREDUCTIE", false);
    load.toeslagWs = keys.Number("TOESLAGWS", -10, 10).value_or(0);
    load.toeslagHbn = keys.Number("TOESLAGHBN", -10, 10).value_or(0);
    load.toenameWind = keys.Number("TOENAMEWIND", -50, 100).value_or(0);
    return load;
}

/// The return periods of the repeated key FREQ, in the file's order.
std::vector<double> ReadPeriods(const Keys& keys)
{
    std::vector<double> periods;
    for (const std::string& text : keys.Values("FREQ")) {
        const auto frequency = ParseNumber(text);
        if (frequency && !IsBekend(*frequency))
            continue;
        const double period = frequency && *frequency > 0 ? 1 / *frequency : 0;
        if (period * kSlack < kShortestPeriod || period > kLongestPeriod * kSlack)
            throw OngeldigeSleutel("FREQ", text);
        periods.push_back(period);
    }
    return periods;
}

std::vector<double> ReadCrests(const Keys& keys)
{
    std::vector<double> crests;
    for (const std::string& text : keys.Values("KRUIN")) {
        const auto crest = ParseNumber(text);
        if (!crest)
            throw OngeldigeSleutel("KRUIN", text);
        if (IsBekend(*crest))
            crests.push_back(*crest);
    }
    return crests;
}

void ReadLocatieAndProfiel(const Keys& keys, Instellingen& settings)
{
    settings.locatie = keys.Text("LOCATIE");
    settings.locatieId = keys.Integer("LOCATIE_ID").value_or(0);
    if (settings.locatieId <= 0 && settings.locatie.empty())
        throw OntbrekendeSleutel("LOCATIE");
    settings.profiel = keys.Text("PROFIEL");
    settings.profielId = keys.Integer("PROFIEL_ID").value_or(0);
    if (settings.belasting.HasWaves() && settings.profielId <= 0 && settings.profiel.empty())
        throw OntbrekendeSleutel("PROFIEL");
}

void ReadDijkvak(const Keys& keys, Instellingen& settings)
{
    settings.normfrequentie = keys.Flag("NORMFREQUENTIE", true);
    settings.herhalingstijden = ReadPeriods(keys);
    settings.kruinhoogteProfiel = keys.Flag("KRUINHOOGTEPROFIEL", false);
    settings.kruinhoogten = ReadCrests(keys);
    const auto id = keys.Integer("BEREKENING_ID");
    if (!id)
        throw OntbrekendeSleutel("BEREKENING_ID");
    settings.berekeningId = *id;
    settings.uitEnIll = keys.Flag("UITENILL", false);
    settings.uitsplitsen = keys.Flag("UITSPLITSENNAARAANDELEN", false);
}

void ReadDeterm(const Keys& keys, Instellingen& settings)
{
    settings.situatie =
        keys.RequiredChoice<Situatie, 4>("SITUATIE", {{{"HANDMATIG", Situatie::Handmatig},
                                                       {"BGEMUEXTR", Situatie::BgemUextr},
                                                       {"BEXTRUGEM", Situatie::BextrUgem},
                                                       {"BEXTRUEXTR", Situatie::BextrUextr}}});
    if (settings.situatie == Situatie::Handmatig) {
        settings.boezempeil = keys.RequiredNumber("BOEZEMPEIL", -100, 100);
        settings.windsnelheid = keys.RequiredNumber("WINDSNELHEID", 0, 100);
    }
}

std::vector<std::string> UnknownKeys(const InputFile& file)
{
    std::vector<std::string> unknown;
    for (const InputFile::Line& line : file.Lines()) {
        const bool known = std::find(std::begin(kKnownKeys), std::end(kKnownKeys), line.key) !=
                           std::end(kKnownKeys);
        if (!known && std::find(unknown.begin(), unknown.end(), line.key) == unknown.end())
            unknown.push_back(line.key);
    }
    return unknown;
}

} // namespace

Instellingen ReadInstellingen(const InputFile& file)
{
    const Keys keys(file);
    Instellingen settings;
    settings.gebruiker = keys.Text("USERNAME");
    settings.datum = keys.Text("DATBER");
    settings.memo = keys.Text("MEMO");
    settings.overzicht = keys.Text("OVERZICHTNM");
    settings.memoToeslagWs = keys.Text("TOESLAGWSMEMO");
    settings.memoToeslagHbn = keys.Text("TOESLAGHBNMEMO");

    settings.variant = ReadVariant(keys);
    settings.database = keys.RequiredText("DBRVW");
    settings.uitvoermap = keys.RequiredText("UITVOERMAP");
    settings.belasting = ReadBelasting(keys, settings.variant);
    switch (settings.variant) {
    case Variant::Dijkvak:
        ReadLocatieAndProfiel(keys, settings);
        ReadDijkvak(keys, settings);
        break;
    case Variant::Determ:
        ReadLocatieAndProfiel(keys, settings);
        ReadDeterm(keys, settings);
        break;
    case Variant::Dijkring:
        settings.dijkring = keys.RequiredText("DIJKRING");
        break;
    }
    // Last: a large file that is no input file at all has been refused by now.
    settings.onbekendeSleutels = UnknownKeys(file);
    return settings;
}

} // namespace rekenhart
