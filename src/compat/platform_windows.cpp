#include "compat/platform.h"

#include <windows.h>

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

void setEnvironmentVariable(const char* name, const char* value)
{
    _putenv((std::string(name) + '=' + value).c_str());
}

} // namespace compat
