#include "Program.h"

#include <unistd.h>

namespace geometrytools {

bool IsErrorStreamTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

} // namespace geometrytools
