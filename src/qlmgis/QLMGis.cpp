#include "qlmgis/QLMGis.h"

#include "qlmgis/RasterCache.h"

#include <exception>
#include <new>
#include <stdexcept>

#ifdef _WIN32
#define QLMGIS_EXPORT extern "C" __declspec(dllexport)
#else
#define QLMGIS_EXPORT extern "C" __attribute__((visibility("default")))
#endif

struct QLMGisObject {
    std::shared_ptr<qlmgis::Raster> raster;
    std::string error;
};

namespace {

qlmgis::RasterCache& Cache()
{
    static qlmgis::RasterCache cache;
    return cache;
}

// No exception leaves the library.
template <typename Body>
int Guarded(QLMGisObject* object, Body&& body) noexcept
{
    if (!object)
        return 0;
    try {
        object->error.clear();
        body();
        return 1;
    } catch (const std::bad_alloc&) {
        object->error.assign("Out of memory");
    } catch (const std::exception& error) {
        object->error.assign(error.what());
    }
    return 0;
}

} // namespace

QLMGIS_EXPORT QLMGisObject* QLMGisCreateObject()
{
    return new (std::nothrow) QLMGisObject;
}

QLMGIS_EXPORT void QLMGisReleaseObject(QLMGisObject* object)
{
    delete object;
}

QLMGIS_EXPORT const char* QLMGisLastError(const QLMGisObject* object)
{
    return object ? object->error.c_str() : "";
}

QLMGIS_EXPORT int LoadRaster(QLMGisObject* object, const char* file)
{
    return Guarded(object, [&] {
        object->raster.reset();
        object->raster = Cache().Find(file);
    });
}

QLMGIS_EXPORT int CalculateMean(QLMGisObject* object, const double* x1, const double* y1,
                                const double* x2, const double* y2, std::int16_t count,
                                double* mean)
{
    return Guarded(object, [&] {
        if (!object->raster)
            throw std::logic_error("no grid is loaded");
        *mean = object->raster->Mean(*x1, *y1, *x2, *y2, count);
    });
}
