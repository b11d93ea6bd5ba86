#include "preload/ownfile.h"

#include "preload/widepath.h"

namespace preload {

namespace {

char modulePath[pathSize] = "";

} // namespace

void rememberOwnFile()
{
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(modulePath), &module)
        || !writeModulePath(module, modulePath))
        modulePath[0] = '\0';
}

const char* ownFile()
{
    return modulePath;
}

} // namespace preload
