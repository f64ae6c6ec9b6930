#include "geometry/DbaseTable.h"

#include "frame/Fouten.h"
#include "qlmgis/QuietGdal.h"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>

using qlmgis::QuietGdal;

namespace geometry {
namespace {

[[noreturn]] void Fail(const QString& path)
{
    RaiseRuntimeFout(RuntimeFout::FileAccess, "Het bestand kan niet worden geschreven.|" + path);
}

} // namespace

struct DbaseTable::Row {
    struct Release {
        void operator()(OGRFeature* row) const { OGRFeature::DestroyFeature(row); }
    };
    std::unique_ptr<OGRFeature, Release> feature;
};

DbaseTable::DbaseTable(const QString& path, const std::vector<Field>& fields)
    : m_path(path), m_row(std::make_unique<Row>())
{
    const QuietGdal quiet;
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    if (driver)
        m_dataset.reset(driver->Create(path.toUtf8(), 0, 0, 0, GDT_Unknown, nullptr));
    // Language driver 3 is Windows-1252.
    char encoding[] = "ENCODING=LDID/3";
    char* options[] = {encoding, nullptr};
    OGRLayer* layer =
        m_dataset ? m_dataset->CreateLayer("table", nullptr, wkbNone, options) : nullptr;
    if (!layer)
        Fail(path);
    for (const Field& field : fields) {
        const auto type = field.type == Field::Type::Double    ? OFTReal
                          : field.type == Field::Type::Integer ? OFTInteger
                                                               : OFTString;
        OGRFieldDefn definition(field.name.toUtf8(), type);
        if (type == OFTString)
            definition.SetWidth(std::clamp(field.width, 1, 254));
        if (layer->CreateField(&definition) != OGRERR_NONE)
            Fail(path);
    }
}

DbaseTable::~DbaseTable()
{
    const QuietGdal quiet;
    m_row.reset();
    m_dataset.reset();
}

void DbaseTable::AddRow()
{
    WriteRow();
    m_row->feature.reset(OGRFeature::CreateFeature(m_dataset->GetLayer(0)->GetLayerDefn()));
}

void DbaseTable::Set(int field, double value)
{
    // The field has 24 characters. A number of more would be cut off to another.
    constexpr double kLargest = 1e15;
    if (std::abs(value) < kLargest)
        m_row->feature->SetField(field, value);
    else
        m_row->feature->SetFieldNull(field);
}
void DbaseTable::Set(int field, qint32 value)
{
    m_row->feature->SetField(field, value);
}
void DbaseTable::Set(int field, const QString& value)
{
    m_row->feature->SetField(field, value.toUtf8().constData());
}

void DbaseTable::WriteRow()
{
    if (!m_row->feature)
        return;
    const QuietGdal quiet;
    if (m_dataset->GetLayer(0)->CreateFeature(m_row->feature.get()) != OGRERR_NONE)
        Fail(m_path);
    m_row->feature.reset();
}

void DbaseTable::Close()
{
    WriteRow();
    const QuietGdal quiet;
    m_dataset.reset();
    if (quiet.Failed())
        Fail(m_path);
}

} // namespace geometry
