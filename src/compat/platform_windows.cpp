#include "compat/platform.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace compat {

const char directorySeparator = '\\';

void setSocketNotInheritable(long long descriptor)
{
    SetHandleInformation(reinterpret_cast<HANDLE>(static_cast<intptr_t>(descriptor)), HANDLE_FLAG_INHERIT, 0);
}

bool hasInput(long long)
{
    return true;
}

void sleepMilliseconds(int milliseconds)
{
    Sleep(static_cast<DWORD>(milliseconds));
}

long long processorMilliseconds()
{
    FILETIME began, ended, inKernel, inProgram;
    if (!GetProcessTimes(GetCurrentProcess(), &began, &ended, &inKernel, &inProgram))
        return 0;
    const auto ticks
        = [](const FILETIME& time) { return static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime; };
    const int ticksPerMillisecond = 10000;
    return (ticks(inKernel) + ticks(inProgram)) / ticksPerMillisecond;
}

void setEnvironmentVariable(const char* name, const char* value)
{
    _putenv((std::string(name) + '=' + value).c_str());
}

} // namespace compat
