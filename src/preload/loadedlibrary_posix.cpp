#include "preload/loadedlibrary.h"

#include "preload/filepath.h"

#include <cstring>
#include <dlfcn.h>
#include <link.h>

namespace preload {

namespace {

struct Search
{
    const char* fileName;
    const char* path;
};

bool isVersionOf(const char* name, const char* fileName)
{
    const std::size_t length = std::strlen(fileName);
    return std::strncmp(name, fileName, length) == 0 && (name[length] == '\0' || name[length] == '.');
}

int visitLibrary(dl_phdr_info* library, std::size_t, void* data)
{
    Search* const search = static_cast<Search*>(data);
    if (!isVersionOf(fileNameOf(library->dlpi_name), search->fileName))
        return 0;
    search->path = library->dlpi_name;
    return 1;
}

} // namespace

LoadedLibrary::LoadedLibrary(const char* path)
    : handle(path ? dlopen(path, RTLD_LAZY | RTLD_NOLOAD) : nullptr)
{
}

LoadedLibrary::~LoadedLibrary()
{
    if (handle)
        dlclose(handle);
}

const char* LoadedLibrary::pathOf(const char* fileName)
{
    Search search = {fileName, nullptr};
    dl_iterate_phdr(visitLibrary, &search);
    return search.path;
}

void* LoadedLibrary::find(const char* symbol) const
{
    return handle ? dlsym(handle, symbol) : nullptr;
}

void* LoadedLibrary::findVariable(const char* symbol) const
{
    void* const inProgram = handle ? dlsym(RTLD_DEFAULT, symbol) : nullptr;
    return inProgram ? inProgram : find(symbol);
}

} // namespace preload
