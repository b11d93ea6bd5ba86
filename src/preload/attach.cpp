// The function that a debugger calls in an application that runs already, to get the agent into it. The library itself is
// loaded by the debugger, too.

#include "compat/platform.h"
#include "preload/agentstarter.h"
#include "preload/eventloop.h"
#include "preload/explanation.h"
#include "preload/filepath.h"
#include "preload/ownfile.h"

#include <cstdio>

namespace {

char explanation[preload::pathSize];

void keepExplanation(const char* reason, const char* detail)
{
    std::snprintf(explanation, sizeof explanation, "%s%s", reason, detail);
}

} // namespace

// Has the event loop create an agent, in place of one whose connection has ended. Returns an empty text, or why there will
// be none; the text is valid until the next call.
extern "C" QTDRIVER_ENTRY_POINT const char* qtdriver_attach()
{
    preload::rememberOwnFile();
    explanation[0] = '\0';
    preload::explainTo(keepExplanation);
    if (!preload::hasWidgetsApplication())
        return "it has no QApplication of " QTDRIVER_WIDGETS_LIBRARY;
    if (preload::isAgentConnected())
        return "it has an agent, which is connected";
    if (!preload::callInEventLoop(preload::restartAgent) && explanation[0] == '\0')
        return "its agent cannot be loaded";
    return explanation;
}
