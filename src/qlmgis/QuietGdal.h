#pragma once

#include <cpl_error.h>

#include <string>

namespace qlmgis {

/// While one of these lives, GDAL writes nothing to standard error; what it
/// would have said can be asked for.
class QuietGdal {
public:
    QuietGdal()
    {
        CPLPushErrorHandler(CPLQuietErrorHandler);
        CPLErrorReset();
    }
    ~QuietGdal() { CPLPopErrorHandler(); }
    QuietGdal(const QuietGdal&) = delete;
    QuietGdal& operator=(const QuietGdal&) = delete;

    bool Failed() const { return CPLGetLastErrorType() >= CE_Failure; }
    std::string Message() const { return CPLGetLastErrorMsg(); } // UTF-8
};

} // namespace qlmgis
