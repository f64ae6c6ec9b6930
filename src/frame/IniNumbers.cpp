#include "frame/IniNumbers.h"

#include "frame/Numbers.h"
#include "frame/QLMIniFile.h"

double ReadNumber(QLMIniFile& ini, const QString& section, const QString& key, double present,
                  double minimum, double maximum)
{
    const auto number = ParseNumber(ini.GetString(section, key));
    return number && *number >= minimum && *number <= maximum ? *number : present;
}

int ReadWhole(QLMIniFile& ini, const QString& section, const QString& key, int present, int minimum,
              int maximum)
{
    return int(RoundToEven(ReadNumber(ini, section, key, present, minimum, maximum)));
}
