#include "preload/explanation.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace preload {

namespace {

const char variable[] = "QTDRIVER_EXPLAIN";
std::atomic<const char*> lastReason("");

} // namespace

void explain(const char* reason, const char* detail)
{
    const char* const value = std::getenv(variable);
    if (!value || *value == '\0' || lastReason.exchange(reason) == reason)
        return;
    std::fprintf(stderr, "qtdriver: no agent in this process: %s%s\n", reason, detail);
    std::fflush(stderr);
}

} // namespace preload
