#include "frame/Busy.h"

#include <algorithm>
#include <utility>

namespace {

int busyCount = 0;

std::function<void(int)>& CursorHook()
{
    static std::function<void(int)> hook;
    return hook;
}

void SetCursor(int mode)
{
    if (CursorHook())
        CursorHook()(mode);
}

} // namespace

void SetBusy()
{
    SetMousePointerMode(kPointerHourglass);
}

void ResetBusy()
{
    SetMousePointerMode(kPointerDefault);
}

void SetMousePointerMode(int mode)
{
    if (mode == kPointerHourglass)
        ++busyCount;
    else if (mode == kPointerDefault)
        busyCount = std::max(0, busyCount - 1);
    else
        return SetCursor(mode);
    SetCursor(busyCount > 0 ? kPointerHourglass : kPointerDefault);
}

int BusyCount()
{
    return busyCount;
}

void SetCursorHook(std::function<void(int)> hook)
{
    CursorHook() = std::move(hook);
}
