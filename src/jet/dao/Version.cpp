#include "jet/dao/Version.h"

namespace jet {

const char* VersionText()
{
    return ZANDVOET_VERSION;
}

} // namespace jet
