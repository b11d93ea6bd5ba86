#include "preload/ownfile.h"

#include "preload/filepath.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace preload {

namespace {

static_assert(pathSize >= PATH_MAX, "realpath() writes that many bytes");

// As the loader found it, which is the entry itself where that is a path.
const char* loadedPath = "";
char realPath[pathSize] = "";

} // namespace

void rememberOwnFile()
{
    Dl_info own;
    if (dladdr(realPath, &own) == 0)
        return;
    loadedPath = own.dli_fname;
    if (!realpath(loadedPath, realPath))
        realPath[0] = '\0';
}

const char* ownFile()
{
    return realPath;
}

bool isOwnEntry(const char* entry)
{
    // The loader searches for a bare name, and replaces "$LIB" and the like, so only the file's name is
    // comparable.
    if (!std::strchr(entry, '/') || std::strchr(entry, '$'))
        return std::strcmp(fileNameOf(entry), fileNameOf(loadedPath)) == 0;
    if (std::strcmp(entry, loadedPath) == 0)
        return true;
    char real[pathSize];
    return realpath(entry, real) && std::strcmp(real, realPath) == 0;
}

} // namespace preload
