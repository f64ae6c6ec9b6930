#include "geometry/Strijklengte.h"

#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Ports.h"
#include "frame/QLMIniFile.h"
#include "geometry/PortableTrig.h"

#include <cmath>

using geometry::FetchChart;
using geometry::Punt;
using geometry::RingIndex;

namespace {

constexpr double kMinimumShoreDistance = 0.01; // metres
const QString kGeneral = QStringLiteral("ALGEMEEN");

// The count of rings around the location has the last word on the status, also
// on TooCloseToPoly, which is therefore never seen outside.
FetchStatus StatusByRings(FetchStatus status, int ringCount)
{
    if (ringCount == 0)
        return FetchStatus::PointInNoPoly;
    if (ringCount > 1)
        return FetchStatus::PointInMultiPolys;
    return status;
}

QString GisLibraryPath()
{
    return LibraryFile(AbsolutePath(gIniFile().GetString(kGeneral, QStringLiteral("QLMGis.dll"),
                                                         QStringLiteral(".\\QLMGis.dll"))));
}

// The end of a ray of a given bearing and length.
Punt RayEnd(double x, double y, double bearing, double length)
{
    const auto [sin, cos] = geometry::PortableSinCos(Deg2Rad(NautischNaarWiskundig(bearing)));
    return {cos * length + x, sin * length + y};
}

} // namespace

QString StatusKey(FetchStatus status)
{
    constexpr std::array keys{0, 4, 3, 2, 1};
    return "text." + QString::number(keys.at(static_cast<std::size_t>(status)));
}

QString StatusDefaultText(FetchStatus status)
{
    switch (status) {
    case FetchStatus::NoError:
        return QStringLiteral("NOERROR");
    case FetchStatus::Unspecified:
        return QStringLiteral("UNSPECIFIED");
    case FetchStatus::TooCloseToPoly:
        return QStringLiteral("TOCLOSETOPOLY");
    case FetchStatus::PointInNoPoly:
        return QStringLiteral("POINTINNOPOLY");
    case FetchStatus::PointInMultiPolys:
        return QStringLiteral("POINTINMULTIPOLYS");
    }
    return {};
}

QString StatusKey(BodemhoogteStatus status)
{
    constexpr std::array keys{0, 1, 3, 2};
    return "text." + QString::number(keys.at(static_cast<std::size_t>(status)));
}

QString StatusDefaultText(BodemhoogteStatus status)
{
    switch (status) {
    case BodemhoogteStatus::NoError:
        return QStringLiteral("NOERROR");
    case BodemhoogteStatus::DllError:
        return QStringLiteral("DLLERROR");
    case BodemhoogteStatus::Unspecified:
        return QStringLiteral("UNSPECIFIED");
    case BodemhoogteStatus::PointOutsideGrid:
        return QStringLiteral("POINTOUTSIDEGRID");
    }
    return {};
}

Strijklengte::Strijklengte()
    : Strijklengte([](const MapLayer& layer, Punt p) { return layer.SearchPointInPolygon(p); },
                   geometry::LoadGisObject)
{}

Strijklengte::Strijklengte(PolygonSearch search, geometry::GisObjectMaker makeGisObject)
    : m_search(std::move(search)), m_makeGisObject(std::move(makeGisObject))
{}

QString Strijklengte::file() const
{
    return m_layer ? m_layer->file() : QString();
}

bool Strijklengte::setShapefile(const QString& path)
{
    const QString file = path.trimmed();
    if (m_layer && !file.isEmpty() && m_layer->file() == file && m_layer->IsCurrent())
        return true; // read already
    m_layer.reset();
    if (file.isEmpty())
        return false;
    auto layer = std::make_unique<MapLayer>(file);
    if (!layer->Valid() || layer->shapeType() != MapLayer::Polygon)
        return false;
    m_layer = std::move(layer);
    return true;
}

/// What both computations begin with: the one polygon that holds the location,
/// if there is one and its shore is far enough away.
struct Strijklengte::Basin {
    FetchStatus status = FetchStatus::Unspecified;
    std::span<const RingIndex> rings; // empty when the computation ends here
};

Strijklengte::Basin Strijklengte::FindBasin(Punt p)
{
    if (!m_layer || !m_layer->Refresh() || m_layer->shapeType() != MapLayer::Polygon)
        RaiseRuntimeFout(RuntimeFout::FileAccess, QStringLiteral("Er is geen bestand met oevers."));
    const auto found = m_search(*m_layer, p);
    // Two polygons over one point count as none: that is meant.
    if (found.size() != 1)
        return {};
    const auto rings = m_layer->Rings(found.front());
    double shore = kGeenWaarde;
    for (const RingIndex& ring : rings)
        shore = std::min(shore, DistanceTo(ring, p));
    if (shore < kMinimumShoreDistance)
        return {FetchStatus::TooCloseToPoly, {}};
    return {FetchStatus::Unspecified, rings};
}

FetchResultaat Strijklengte::CalcFetch(double x, double y)
{
    FetchResultaat result;
    try {
        const Basin basin = FindBasin({x, y});
        result.status = basin.status;
        int ringCount = 0;
        if (!basin.rings.empty()) {
            Raaien raaien;
            for (const RingIndex& ring : basin.rings) {
                ringCount += PuntInRing(ring, {x, y}) ? 1 : 0;
                BerekenRaaien(ring, x, y, raaien);
            }
            const Sectoren sectoren = BerekenSectoren(raaien);
            for (std::size_t i = 0; i < sectoren.size(); ++i)
                result.fetches[i] = sectoren[i].Strijklengte;
            result.status = FetchStatus::NoError;
        }
        result.status = StatusByRings(result.status, ringCount);
    } catch (const std::exception&) {
        result.status = FetchStatus::Unspecified;
    }
    return result;
}

DijknormaalResultaat Strijklengte::CalcDijknormaal(double x, double y)
{
    DijknormaalResultaat result;
    try {
        const Basin basin = FindBasin({x, y});
        result.status = basin.status;
        int ringCount = 0;
        if (!basin.rings.empty()) {
            DichtstbijzijndeOever nearest;
            for (const RingIndex& ring : basin.rings) {
                ringCount += PuntInRing(ring, {x, y}) ? 1 : 0;
                DichtstbijzijndPunt(ring, x, y, nearest);
            }
            result.dijknormaal = DijknormaalVanuit(nearest.punt, x, y);
            result.status = FetchStatus::NoError;
        }
        result.status = StatusByRings(result.status, ringCount);
    } catch (const std::exception&) {
        result.status = FetchStatus::Unspecified;
    }
    return result;
}

bool Strijklengte::INITGISDLL()
{
    const QString mark = QStringLiteral("GISDLLINIT");
    const QString done = QStringLiteral("TRUE");
    if (gIniFile().GetString(kGeneral, mark, QStringLiteral("FALSE")) == done)
        return true;
    const QString library = GisLibraryPath();
    if (!FileExists(library)) {
        if (gBoxes.Exists())
            gBoxes().ShowMessage(201, {library});
        return false;
    }
    // A native library needs no registration; the mark says that it was found.
    gIniFile().SaveString(kGeneral, mark, done);
    return true;
}

BodemhoogteResultaat Strijklengte::berekenBodemhoogtes(const QString& gridFile, double x, double y,
                                                       std::span<const double> directions,
                                                       std::span<const double> lengths)
{
    constexpr qint16 kPoints = 10000;
    BodemhoogteResultaat result;
    result.levels.resize(directions.size());
    try {
        if (!INITGISDLL()) {
            result.status = BodemhoogteStatus::DllError;
            return result;
        }
        const auto raster = m_makeGisObject(GisLibraryPath());
        raster->LoadRaster(ResolvePath(gridFile));
        for (std::size_t i = 0; i < directions.size(); ++i) {
            if (i >= lengths.size())
                RaiseRuntimeFout(RuntimeFout::OutOfRange,
                                 QStringLiteral("Er zijn minder lengten dan richtingen."));
            const Punt end = RayEnd(x, y, directions[i], lengths[i]);
            result.levels[i] = raster->CalculateMean(x, y, end.x, end.y, kPoints);
        }
        result.status = BodemhoogteStatus::NoError;
    } catch (const std::exception& error) {
        result.status = Description(error) == QLatin1String(geometry::kPointOutsideGrid)
                            ? BodemhoogteStatus::PointOutsideGrid
                            : BodemhoogteStatus::Unspecified;
    }
    return result;
}

void Strijklengte::PlotPolygonen(FetchChart& chart, double x, double y)
{
    constexpr geometry::Kleur kShore{10, 20, 220};
    const QString title = QStringLiteral("POLYGOON");
    RemoveAllSeriesWithName(chart, title);
    if (!m_layer || !m_layer->Refresh() || m_layer->shapeType() != MapLayer::Polygon)
        return;
    std::vector<std::size_t> found;
    try {
        found = m_search(*m_layer, {x, y});
    } catch (const Fout&) {
        return; // a shore line beyond all numbers is drawn no better
    }
    if (found.size() != 1)
        return;
    int number = 0;
    for (const RingIndex& ring : m_layer->Rings(found.front())) {
        std::vector<Punt> line;
        if (!ring.IsEmpty()) {
            line.push_back(ring.Points().back());
            line.insert(line.end(), ring.Points().begin(), ring.Points().end());
        }
        chart.AddLineSeries(title + QString::number(number++), line, kShore);
    }
}

void Strijklengte::PlotStrijklengtes(FetchChart& chart, double x, double y,
                                     std::span<const double> directions,
                                     std::span<const double> lengths)
{
    constexpr geometry::Kleur kBlack{0, 0, 0};
    constexpr double kMargin = 0.2; // of the range, on either side
    const QString title = QStringLiteral("STRIJKLENGTE");
    RemoveAllSeriesWithName(chart, title);
    // Only the ends count: neither the location nor the shore widens the axes.
    double xmin = kGeenWaarde;
    double ymin = kGeenWaarde;
    double xmax = -kGeenWaarde;
    double ymax = -kGeenWaarde;
    const std::size_t count = std::min(directions.size(), lengths.size());
    for (std::size_t i = 0; i < count; ++i) {
        const Punt end = RayEnd(x, y, directions[i], lengths[i]);
        chart.AddLineSeries(title + QString::number(i), {{x, y}, end}, kBlack);
        xmin = std::min(xmin, end.x);
        ymin = std::min(ymin, end.y);
        xmax = std::max(xmax, end.x);
        ymax = std::max(ymax, end.y);
    }
    const double xmargin = (xmax - xmin) * kMargin;
    const double ymargin = (ymax - ymin) * kMargin;
    if (count > 0)
        chart.SetAxes(xmin - xmargin, xmax + xmargin, ymin - ymargin, ymax + ymargin);
    chart.Repaint();
}
