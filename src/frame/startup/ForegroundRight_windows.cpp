#include "frame/startup/ForegroundRight.h"

#include <windows.h>

void GiveForegroundRight()
{
    AllowSetForegroundWindow(ASFW_ANY);
}
