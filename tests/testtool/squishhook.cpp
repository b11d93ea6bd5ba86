// Stands in for an outside tool's hook library, which the agent only loads. Says on standard output when that
// happens, and when the library goes.

#include <cstdio>

namespace {

void say(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

struct Presence
{
    Presence() { say("hook library loaded"); }
    ~Presence() { say("hook library unloaded"); }
};

const Presence presence;

} // namespace
