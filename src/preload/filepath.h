#pragma once

#include <climits>
#include <cstring>

namespace preload {

// The part behind the last slash.
inline const char* fileNameOf(const char* path)
{
    const char* const slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

// Writes the path of the file `fileName` in the folder of `path`. False if it is too long.
inline bool writePathBeside(const char* path, const char* fileName, char (&result)[PATH_MAX])
{
    const std::size_t folder = static_cast<std::size_t>(fileNameOf(path) - path);
    const std::size_t name = std::strlen(fileName);
    if (folder + name >= PATH_MAX)
        return false;
    std::memcpy(result, path, folder);
    std::memcpy(result + folder, fileName, name + 1);
    return true;
}

} // namespace preload
