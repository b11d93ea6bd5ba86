#include "preload/eventloop.h"

#include "preload/agentstarter.h"
#include "preload/explanation.h"
#include "preload/loadedlibrary.h"

namespace preload {

// The agent, which links Qt, posts the call.
bool callInEventLoop(void (*function)())
{
    const char* const agent = loadAgent();
    if (!agent)
        return false;
    const auto post = LoadedLibrary(agent).function<void (*)(void (*)())>("_ZN10TestClient15callInEventLoopEPFvvE");
    if (post)
        post(function);
    else
        explain("its library is another version: ", agent);
    return post;
}

} // namespace preload
