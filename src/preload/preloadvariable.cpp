#include "preload/preloadvariable.h"

#include "preload/filepath.h"
#include "preload/ownfile.h"

#include <cstdlib>
#include <cstring>

namespace preload {

namespace {

const char variable[] = "LD_PRELOAD";
const char separators[] = " :";

bool isOwn(const char* entry, std::size_t length)
{
    char text[pathSize];
    if (length >= sizeof text)
        return false;
    std::memcpy(text, entry, length);
    text[length] = '\0';
    return isOwnEntry(text);
}

// Copies the entries of others, each with the separator in front of it. True if an entry was left out.
bool copyOtherEntries(const char* value, char* others)
{
    bool leftOut = false;
    char* end = others;
    for (const char* entry = value + std::strspn(value, separators); *entry != '\0';) {
        const std::size_t length = std::strcspn(entry, separators);
        if (isOwn(entry, length)) {
            leftOut = true;
        } else {
            if (end != others)
                *end++ = entry[-1];
            std::memcpy(end, entry, length);
            end += length;
        }
        entry += length;
        entry += std::strspn(entry, separators);
    }
    *end = '\0';
    return leftOut;
}

} // namespace

void removeOwnPreloadEntry()
{
    const char* const value = std::getenv(variable);
    if (!value)
        return;
    char* const others = static_cast<char*>(std::malloc(std::strlen(value) + 1));
    if (!others)
        return;
    if (copyOtherEntries(value, others)) {
        if (others[0] != '\0')
            setenv(variable, others, 1);
        else
            unsetenv(variable);
    }
    std::free(others);
}

} // namespace preload
