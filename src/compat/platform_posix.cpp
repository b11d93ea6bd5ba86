#include "compat/platform.h"

#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>

namespace compat {

const char directorySeparator = '/';

void setSocketNotInheritable(long long descriptor)
{
    const int handle = static_cast<int>(descriptor);
    const int flags = fcntl(handle, F_GETFD);
    if (flags != -1)
        fcntl(handle, F_SETFD, flags | FD_CLOEXEC);
}

bool hasInput(long long descriptor)
{
    pollfd input = {static_cast<int>(descriptor), POLLIN, 0};
    return poll(&input, 1, 0) != 0;
}

void sleepMilliseconds(int milliseconds)
{
    timespec duration = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    nanosleep(&duration, nullptr);
}

long long processorMilliseconds()
{
    return static_cast<long long>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

void setEnvironmentVariable(const char* name, const char* value)
{
    setenv(name, value, 1);
}

} // namespace compat
