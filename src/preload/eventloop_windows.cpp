#include "preload/eventloop.h"

#include "preload/explanation.h"

#include <windows.h>

namespace preload {

namespace {

void (*pendingFunction)() = nullptr;

// Qt's event loop dispatches the messages of all timers, also of this one, which is not Qt's.
void CALLBACK timeIsUp(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    void (*const function)() = pendingFunction;
    pendingFunction = nullptr;
    if (function)
        function();
}

} // namespace

bool callInEventLoop(void (*function)())
{
    pendingFunction = function;
    if (SetTimer(nullptr, 0, USER_TIMER_MINIMUM, timeIsUp) != 0)
        return true;
    explain("Windows gives it no timer");
    return false;
}

} // namespace preload
