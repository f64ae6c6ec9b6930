#include "TextInputs.h"

#include "calculation/BatchVoortgang.h"
#include "calculation/Frequentielijn.h"
#include "calculation/TextFile.h"
#include "frame/Fouten.h"
#include "frame/QLMIniFile.h"
#include "maps/MapValues.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

namespace fuzz {
namespace {

/// The bytes as a file on the disc.
QString AsFile(const char* name, std::span<const std::byte> bytes)
{
    static const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    return file.fileName();
}

} // namespace

void ReadLegend(std::span<const std::byte> input)
{
    MapValues values;
    QString palette;
    values.OpenFile(AsFile("legenda.zlb", input), palette);
    for (int i = 0; i <= values.AantalKlassen() + 1; ++i)
        (void)values.GetSymbol(values.getKlasseOnderGrens(i));
}

void ReadFrequencyLine(std::span<const std::byte> input)
{
    const auto line = LeesFrequentielijn(AsFile("freqlijn.txt", input));
    if (!line)
        return;
    const auto part = KnipFrequentielijn(*line);
    if (part.empty())
        return;
    (void)LogaritmischeAs(part.front().herhalingstijd, part.back().herhalingstijd);
    (void)RondeAs(part.front().niveau, part.back().niveau, 5, 1, 1);
}

void ReadCoreOutput(std::span<const std::byte> input)
{
    const QString path = AsFile("uitvoer.txt", input);
    bool cut = false;
    const QString text = textfile::ReadAll(path, 1 << 16, cut);
    for (const QString& line : text.split('\n'))
        (void)LeesResultaatregel(line);
    TailReader tail(path);
    qsizetype length = tail.ReadLast(100).size();
    while (!tail.AtStart()) {
        const qint64 read = tail.BytesRead();
        length += tail.ReadBefore(100).size();
        if (tail.BytesRead() <= read)
            std::abort(); // no way to the start
    }
    (void)length;
}

void ReadIni(std::span<const std::byte> input)
{
    try {
        QLMIniFile ini(AsFile("bestand.ini", input));
        (void)ini.GetString("Algemeen", "Taal");
        ini.SaveString("Algemeen", "Taal", "NL");
        ini.RemoveKey("Algemeen", "a");
        ini.RemoveSection("Mappen");
        ini.SaveString("Mappen", "x", "1");
    } catch (const Fout&) { // a told failure
    }
}

} // namespace fuzz
