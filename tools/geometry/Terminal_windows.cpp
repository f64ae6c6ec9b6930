#include "Program.h"

#include <io.h>
#include <stdio.h>

namespace geometrytools {

bool IsErrorStreamTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

} // namespace geometrytools
