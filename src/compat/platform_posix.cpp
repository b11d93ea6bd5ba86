#include "compat/platform.h"

#include <ctime>
#include <fcntl.h>

namespace compat {

void setSocketNotInheritable(long long descriptor)
{
    const int handle = static_cast<int>(descriptor);
    const int flags = fcntl(handle, F_GETFD);
    if (flags != -1)
        fcntl(handle, F_SETFD, flags | FD_CLOEXEC);
}

void sleepMilliseconds(int milliseconds)
{
    timespec duration = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    nanosleep(&duration, nullptr);
}

} // namespace compat
