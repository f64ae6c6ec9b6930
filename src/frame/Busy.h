#pragma once

#include <functional>

/// The hourglass, counted: nested operations keep it until the outermost ends,
/// and a ResetBusy too many does no harm.
void SetBusy();
void ResetBusy();

/// The general form. Modes: 11 busy, 0 not busy; any other goes straight to
/// the cursor and leaves the count alone.
void SetMousePointerMode(int mode);
inline constexpr int kPointerDefault = 0;
inline constexpr int kPointerHourglass = 11;

[[nodiscard]] int BusyCount();

/// Who changes the cursor on the screen; called with a mode at each change.
void SetCursorHook(std::function<void(int mode)> hook);

/// SetBusy now, ResetBusy on every way out.
class BusyScope {
public:
    BusyScope() { SetBusy(); }
    ~BusyScope() { ResetBusy(); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
};
