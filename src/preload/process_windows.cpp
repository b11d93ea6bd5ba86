#include "preload/process.h"

#include "preload/widepath.h"

#include <cstdio>
#include <cstdlib>

namespace preload {

const char* fileNameOf(const char* path)
{
    const char* name = path;
    for (const char* end = path; *end != '\0'; ++end) {
        if (*end == '\\' || *end == '/')
            name = end + 1;
    }
    return name;
}

unsigned long long currentThreadId()
{
    return GetCurrentThreadId();
}

long long monotonicMilliseconds()
{
    return static_cast<long long>(GetTickCount64());
}

void unsetVariable(const char* name)
{
    char assignment[64];
    std::snprintf(assignment, sizeof assignment, "%s=", name);
    _putenv(assignment);
}

bool loadLibrary(const char* path, char (&reason)[pathSize])
{
    // The system looks beside the library for those that it links.
    if (LoadLibraryExW(WidePath(path).text, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
        return true;
    std::snprintf(reason, sizeof reason, "%.3500s: error %lu of Windows", path, GetLastError());
    return false;
}

} // namespace preload
