#include "preload/explanation.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace preload {

namespace {

const char variable[] = "QTDRIVER_EXPLAIN";
std::atomic<const char*> lastReason("");
std::atomic<void (*)(const char*, const char*)> listenerOfAll(nullptr);

} // namespace

void explain(const char* reason, const char* detail)
{
    if (const auto listener = listenerOfAll.load()) {
        listener(reason, detail);
        return;
    }
    const char* const value = std::getenv(variable);
    if (!value || *value == '\0' || lastReason.exchange(reason) == reason)
        return;
    std::fprintf(stderr, "qtdriver: no agent in this process: %s%s\n", reason, detail);
    std::fflush(stderr);
}

void explainTo(void (*listener)(const char* reason, const char* detail))
{
    listenerOfAll = listener;
}

} // namespace preload
