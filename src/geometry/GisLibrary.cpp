#include "geometry/GisLibrary.h"

#include "frame/Fouten.h"
#include "qlmgis/QLMGis.h"

#include <QLibrary>

namespace geometry {
namespace {

class NativeGisObject : public GisObject {
public:
    explicit NativeGisObject(const QString& library)
    {
        QLibrary file(library);
        file.setLoadHints(QLibrary::PreventUnloadHint);
        m_create = Resolve<QLMGisCreateFunction>(file, "QLMGisCreateObject");
        m_release = Resolve<QLMGisReleaseFunction>(file, "QLMGisReleaseObject");
        m_loadRaster = Resolve<QLMGisLoadRasterFunction>(file, "LoadRaster");
        m_calculateMean = Resolve<QLMGisCalculateMeanFunction>(file, "CalculateMean");
        m_lastError = Resolve<QLMGisLastErrorFunction>(file, "QLMGisLastError");
        m_object = m_create();
        if (!m_object)
            throw Fout(kFailed, QStringLiteral("Er is te weinig geheugen."));
    }
    ~NativeGisObject() override { m_release(m_object); }
    NativeGisObject(const NativeGisObject&) = delete;
    NativeGisObject& operator=(const NativeGisObject&) = delete;

    void LoadRaster(const QString& file) override
    {
        if (!m_loadRaster(m_object, file.toUtf8().constData()))
            Fail();
    }
    double CalculateMean(double x1, double y1, double x2, double y2, qint16 count) override
    {
        double mean = 0;
        if (!m_calculateMean(m_object, &x1, &y1, &x2, &y2, count, &mean))
            Fail();
        return mean;
    }

private:
    static constexpr int kFailed = 440; // an error of an object from outside

    template <typename Function>
    static Function Resolve(QLibrary& file, const char* name)
    {
        const auto function = reinterpret_cast<Function>(file.resolve(name));
        if (!function)
            throw Fout(kFailed, file.errorString());
        return function;
    }
    [[noreturn]] void Fail() const
    {
        throw Fout(kFailed, QString::fromUtf8(m_lastError(m_object)));
    }

    QLMGisCreateFunction m_create = nullptr;
    QLMGisReleaseFunction m_release = nullptr;
    QLMGisLoadRasterFunction m_loadRaster = nullptr;
    QLMGisCalculateMeanFunction m_calculateMean = nullptr;
    QLMGisLastErrorFunction m_lastError = nullptr;
    QLMGisObject* m_object = nullptr;
};

} // namespace

std::unique_ptr<GisObject> LoadGisObject(const QString& library)
{
    return std::make_unique<NativeGisObject>(library);
}

} // namespace geometry
