#include "TextInputs.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

/// Calls `read` with `count` damaged forms of `whole`.
template <typename Read>
void Damage(const std::string& whole, int count, Read&& read)
{
    std::mt19937 random(20261121);
    for (int i = 0; i < count; ++i) {
        std::string damaged = whole.substr(0, random() % (whole.size() + 1));
        for (unsigned j = random() % 4; j > 0 && !damaged.empty(); --j)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        read(std::as_bytes(std::span(damaged)));
    }
}

} // namespace

TEST(DamagedTextTest, LegendsNeitherCrashNorHang)
{
    Damage("# Zandvoet\r\n# Versie: 1.0\r\n# Kleurenpalet: hot\r\n1\r\n2.5\r\n1e300\r\n", 500,
           fuzz::ReadLegend);
}

TEST(DamagedTextTest, FrequencyLinesNeitherCrashNorHang)
{
    Damage("3  punten\r\n0.54 0.2\r\n0.63 0.1\r\n0.9 0.00001\r\n", 500, fuzz::ReadFrequencyLine);
}

TEST(DamagedTextTest, OutputOfTheCoreNeitherCrashesNorHangs)
{
    Damage("Dijkvak 1\r\nHBN   1.23\n\tmeer\x80\r\n" + std::string(500, 'x') + "\r\n OK\r\n", 500,
           fuzz::ReadCoreOutput);
}

TEST(DamagedTextTest, IniFilesNeitherCrashNorHang)
{
    Damage("[Algemeen]\r\nTaal=NL\r\na=1\r\n\r\n[Mappen]\r\nb=2\r\n", 500, fuzz::ReadIni);
}
