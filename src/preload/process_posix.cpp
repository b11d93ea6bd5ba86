#include "preload/process.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <pthread.h>

namespace preload {

const char* fileNameOf(const char* path)
{
    const char* const slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

unsigned long long currentThreadId()
{
    return static_cast<unsigned long long>(pthread_self());
}

long long monotonicMilliseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

void unsetVariable(const char* name)
{
    unsetenv(name);
}

bool loadLibrary(const char* path, char (&reason)[pathSize])
{
    if (dlopen(path, RTLD_NOW | RTLD_LOCAL))
        return true;
    const char* const words = dlerror();
    std::snprintf(reason, sizeof reason, "%s", words ? words : path);
    return false;
}

} // namespace preload
