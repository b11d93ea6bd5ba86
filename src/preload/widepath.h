#pragma once

#include "preload/filepath.h"

#include <windows.h>

namespace preload {

// A path in UTF-8 in the form that Windows takes, empty if that is not possible.
struct WidePath
{
    explicit WidePath(const char* path)
    {
        if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, text, static_cast<int>(pathSize)) == 0)
            text[0] = L'\0';
    }

    wchar_t text[pathSize];
};

// Writes the path of a module in UTF-8. False if it does not fit.
inline bool writeModulePath(HMODULE module, char (&result)[pathSize])
{
    wchar_t path[pathSize];
    const DWORD length = GetModuleFileNameW(module, path, static_cast<DWORD>(pathSize));
    if (length == 0 || length == pathSize)
        return false;
    return WideCharToMultiByte(CP_UTF8, 0, path, -1, result, static_cast<int>(pathSize), nullptr, nullptr) != 0;
}

} // namespace preload
