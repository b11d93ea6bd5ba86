#include "preload/loadedlibrary.h"

#include "preload/widepath.h"

#include <cstdint>

namespace preload {

namespace {

HMODULE hold(const char* path)
{
    HMODULE module = nullptr;
    return path && GetModuleHandleExW(0, WidePath(path).text, &module) ? module : nullptr;
}

template <typename Type>
const Type* at(HMODULE module, DWORD offset)
{
    return reinterpret_cast<const Type*>(reinterpret_cast<const char*>(module) + offset);
}

// The libraries that a loaded module links, a row with no name at their end; null if there are none.
const IMAGE_IMPORT_DESCRIPTOR* importsOf(HMODULE module)
{
    const auto* const header = at<IMAGE_NT_HEADERS>(module, DWORD(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD offset = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    return offset ? at<IMAGE_IMPORT_DESCRIPTOR>(module, offset) : nullptr;
}

void* symbolOf(HMODULE module, const char* symbol)
{
    return module ? reinterpret_cast<void*>(GetProcAddress(module, symbol)) : nullptr;
}

} // namespace

LoadedLibrary::LoadedLibrary(const char* path)
    : handle(hold(path))
{
}

LoadedLibrary::~LoadedLibrary()
{
    if (handle)
        FreeLibrary(static_cast<HMODULE>(handle));
}

const char* LoadedLibrary::pathOf(const char* fileName)
{
    static char path[pathSize];
    const HMODULE module = GetModuleHandleW(WidePath(fileName).text);
    return module && writeModulePath(module, path) ? path : nullptr;
}

// Windows looks for a symbol in one module only.
void* LoadedLibrary::find(const char* symbol) const
{
    const HMODULE module = static_cast<HMODULE>(handle);
    void* found = symbolOf(module, symbol);
    const IMAGE_IMPORT_DESCRIPTOR* import = module ? importsOf(module) : nullptr;
    for (; !found && import && import->Name != 0; ++import)
        found = symbolOf(GetModuleHandleA(at<char>(module, import->Name)), symbol);
    return found;
}

void* LoadedLibrary::findVariable(const char* symbol) const
{
    return find(symbol);
}

} // namespace preload
