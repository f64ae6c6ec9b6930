#include "Program.h"

#include "LocatieCsv.h"
#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "geometry/Strijklengte.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

namespace geometrytools {
namespace {

constexpr char kStrijklengteHelp[] =
    R"(Gebruik: strijklengte SHAPE [CSV]

Berekent per locatie de strijklengten in 16 windrichtingen en de dijknormaal.

SHAPE  shapebestand met de oevers van het water, als vlakken
CSV    locaties: naam, x en y in meters; zonder CSV van de standaardinvoer

De uitkomst gaat als CSV naar de standaarduitvoer, met een status per locatie:
NOERROR, UNSPECIFIED, POINTINNOPOLY (niet in het water, of te dicht bij de
oever) of POINTINMULTIPOLYS.

Eindcode: 0 alles berekend, 1 een of meer locaties niet, 2 verkeerde aanroep,
3 bestand niet leesbaar, 4 uitvoer niet te schrijven.
)";

constexpr char kBodemhoogteHelp[] =
    R"(Gebruik: bodemhoogte GRID [CSV]

Berekent per locatie de gemiddelde bodemhoogte onder 16 strijklengten.

GRID   bodemhoogten: ARC/INFO ASCII grid, of een ander rasterbestand
CSV    naam, x, y en 16 strijklengten in meters, van N met de klok mee; ook de
       uitvoer van strijklengte. Zonder CSV van de standaardinvoer

De uitkomst gaat als CSV naar de standaarduitvoer, met een status per locatie:
NOERROR, DLLERROR, UNSPECIFIED of POINTOUTSIDEGRID.

Eindcode: 0 alles berekend, 1 een of meer locaties niet, 2 verkeerde aanroep,
3 bestand niet leesbaar, 4 uitvoer niet te schrijven.
)";

class UitvoerFout : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

double Direction(int sector)
{
    return sector * (360.0 / kSectoren);
}

// Writes at once: a full disk is to show before the next computation.
void Write(const Streams& streams, const QByteArray& text)
{
    auto* file = qobject_cast<QFileDevice*>(&streams.out);
    if (streams.out.write(text) != text.size() || (file && !file->flush()))
        throw UitvoerFout("de uitvoer kan niet worden geschreven");
}

void Say(const Streams& streams, const QString& text)
{
    streams.messages.write(text.toUtf8() + '\n');
}

// One number for each line behind the name.
class CsvLine {
public:
    CsvLine(const QString& naam, QChar separator)
        : m_line(CsvField(naam, separator)), m_separator(separator)
    {}
    void Add(const QString& text) { m_line += m_separator + CsvField(text, m_separator); }
    void Add(double value) { Add(NumberText(value)); }
    QByteArray Text() const { return m_line.toUtf8() + '\n'; }

private:
    QString m_line;
    QChar m_separator;
};

void AddSectorNames(CsvLine& heading)
{
    for (int sector = 0; sector < kSectoren; ++sector)
        heading.Add(WindDirectionName(Direction(sector)).trimmed());
}

// What both programs do around their computation: arguments, locations in,
// lines out, progress. `Start(path)` says whether the first argument can be
// used; `Line(rij, line)` adds the outcome and says whether there is one.
template <typename Start, typename Heading, typename Line>
int Run(const QStringList& arguments, const Streams& streams, const char* help, int valueCount,
        Start&& start, Heading&& heading, Line&& addOutcome)
{
    if (arguments.contains("--help") || arguments.contains("-h")) {
        streams.out.write(help);
        return AllComputed;
    }
    if (arguments.isEmpty() || arguments.size() > 2 || arguments[0].startsWith('-')) {
        streams.messages.write(help);
        return WrongCall;
    }
    if (!start(arguments[0]))
        return CannotRead;
    QFile csv(arguments.size() > 1 ? ResolvePath(arguments[1]) : QString());
    if (arguments.size() > 1 && !csv.open(QIODevice::ReadOnly)) {
        Say(streams, arguments[1] + ": " + csv.errorString());
        return CannotRead;
    }

    int code = AllComputed;
    int count = 0;
    try {
        LocatieCsv locaties(arguments.size() > 1 ? static_cast<QIODevice&>(csv) : streams.in,
                            valueCount);
        LocatieRij rij;
        while (locaties.Next(rij)) {
            if (count++ == 0) {
                CsvLine first("naam", locaties.Separator());
                first.Add("x");
                first.Add("y");
                first.Add("status");
                heading(first);
                Write(streams, first.Text());
            }
            CsvLine line(rij.naam, locaties.Separator());
            line.Add(rij.x);
            line.Add(rij.y);
            if (!addOutcome(rij, line))
                code = SomeNotComputed;
            Write(streams, line.Text());
            if (streams.showProgress && count % 10 == 0)
                streams.messages.write("\r" + QByteArray::number(count) + " locaties");
        }
    } catch (const InvoerFout& fout) {
        Say(streams, QString::fromUtf8(fout.what()));
        code = CannotRead;
    } catch (const UitvoerFout& fout) {
        Say(streams, QString::fromUtf8(fout.what()));
        code = CannotWrite;
    }
    if (streams.showProgress && count > 0)
        Say(streams, "\r" + QString::number(count) + " locaties");
    return code;
}

} // namespace

int RunStrijklengte(const QStringList& arguments, const Streams& streams)
{
    Strijklengte strijklengte;
    return Run(
        arguments, streams, kStrijklengteHelp, 0,
        [&](const QString& path) {
            if (strijklengte.setShapefile(path))
                return true;
            const QString reason = MapLayer(path).Error();
            Say(streams, path + ": geen bruikbaar vlakkenbestand" +
                             (reason.isEmpty() ? QString() : " (" + reason + ")"));
            return false;
        },
        [](CsvLine& heading) {
            AddSectorNames(heading);
            heading.Add("dijknormaal");
            heading.Add("status_dijknormaal");
        },
        [&](const LocatieRij& rij, CsvLine& line) {
            const auto fetch = strijklengte.CalcFetch(rij.x, rij.y);
            const auto normal = strijklengte.CalcDijknormaal(rij.x, rij.y);
            const bool hasFetch = fetch.status == FetchStatus::NoError;
            const bool hasNormal = normal.status == FetchStatus::NoError;
            line.Add(StatusDefaultText(fetch.status));
            for (const double length : fetch.fetches)
                hasFetch ? line.Add(length) : line.Add(QString());
            hasNormal ? line.Add(normal.dijknormaal) : line.Add(QString());
            line.Add(StatusDefaultText(normal.status));
            return hasFetch && hasNormal;
        });
}

int RunBodemhoogte(const QStringList& arguments, const Streams& streams)
{
    // No settings are read and none are left behind.
    const QTemporaryDir settings;
    gIniFile.Set(std::make_shared<QLMIniFile>(settings.filePath("bodemhoogte.ini")));
    Strijklengte strijklengte;
    QString grid;
    std::vector<double> directions;
    for (int sector = 0; sector < kSectoren; ++sector)
        directions.push_back(Direction(sector));
    const int code = Run(
        arguments, streams, kBodemhoogteHelp, kSectoren,
        [&](const QString& path) {
            grid = path;
            if (!FileExists(path))
                Say(streams, path + ": bestand niet gevonden");
            else if (!strijklengte.INITGISDLL())
                Say(streams, QStringLiteral("QLMGis ontbreekt in de map van het programma"));
            else
                return true;
            return false;
        },
        AddSectorNames,
        [&](const LocatieRij& rij, CsvLine& line) {
            if (rij.waarden.empty()) { // no fetches: the earlier status goes on
                line.Add(rij.status);
                for (int sector = 0; sector < kSectoren; ++sector)
                    line.Add(QString());
                return false;
            }
            const auto result =
                strijklengte.berekenBodemhoogtes(grid, rij.x, rij.y, directions, rij.waarden);
            const bool computed = result.status == BodemhoogteStatus::NoError;
            line.Add(StatusDefaultText(result.status));
            for (const double level : result.levels)
                computed ? line.Add(level) : line.Add(QString());
            return computed;
        });
    gIniFile.Release();
    return code;
}

int RunOnStandardStreams(int argc, char** argv, int (*program)(const QStringList&, const Streams&))
{
    const QCoreApplication application(argc, argv);
    QFile in;
    QFile out;
    QFile messages;
    if (!in.open(stdin, QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly) ||
        !messages.open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return CannotRead;
    return program(QCoreApplication::arguments().mid(1),
                   {in, out, messages, IsErrorStreamTerminal()});
}

} // namespace geometrytools
