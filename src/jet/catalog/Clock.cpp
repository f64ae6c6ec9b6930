#include "jet/catalog/Clock.h"

#include <ctime>

namespace jet {

DateTime LocalNow()
{
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now); // the engine runs in one thread
    return DateTime::FromCivil(local->tm_year + 1900, local->tm_mon + 1, local->tm_mday,
                               local->tm_hour, local->tm_min, local->tm_sec);
}

} // namespace jet
