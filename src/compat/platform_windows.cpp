#include "compat/platform.h"

#include <windows.h>

namespace compat {

void setSocketNotInheritable(long long descriptor)
{
    SetHandleInformation(reinterpret_cast<HANDLE>(static_cast<intptr_t>(descriptor)), HANDLE_FLAG_INHERIT, 0);
}

void sleepMilliseconds(int milliseconds)
{
    Sleep(static_cast<DWORD>(milliseconds));
}

} // namespace compat
