#pragma once

#include <cstddef>
#include <cstring>

namespace preload {

// Room for the longest path, in bytes with the zero at its end. Paths are UTF-8 on Windows, elsewhere the system's
// bytes.
const std::size_t pathSize = 4096;

// The part behind the last separator. Windows has two; elsewhere a backslash may be part of a name.
const char* fileNameOf(const char* path);

// Writes the path of the file `fileName` in the folder of `path`. False if it is too long.
inline bool writePathBeside(const char* path, const char* fileName, char (&result)[pathSize])
{
    const auto folder = static_cast<std::size_t>(fileNameOf(path) - path);
    const std::size_t name = std::strlen(fileName);
    if (folder + name >= pathSize)
        return false;
    std::memcpy(result, path, folder);
    std::memcpy(result + folder, fileName, name + 1);
    return true;
}

} // namespace preload
