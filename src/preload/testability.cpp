// The library that Qt itself loads, by the name "qttestability", when an application is started with the argument
// -testability, or, with Qt 5 and 6, with the environment variable QT_LOAD_TESTABILITY. It needs no more than a folder
// in the search path of the system for libraries.
//
// Qt calls it within the constructor of the application object, which may be of any Qt and of any kind. So this library
// links no Qt either, and leaves the agent to the event loop, as the library for LD_PRELOAD does.

#include "compat/platform.h"
#include "preload/agentstarter.h"
#include "preload/eventloop.h"
#include "preload/explanation.h"
#include "preload/loadedlibrary.h"
#include "preload/ownfile.h"
#include "preload/process.h"

#include <atomic>

namespace {

std::atomic<bool> isAskedFor(false);

void start()
{
    if (preload::claimStart())
        preload::startAgent();
}

} // namespace

extern "C" QTDRIVER_ENTRY_POINT void qt_testability_init()
{
    if (isAskedFor.exchange(true))
        return;
    preload::rememberOwnFile();
    if (!preload::LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY)) {
        preload::explain("the program has not loaded " QTDRIVER_WIDGETS_LIBRARY);
        return;
    }
    preload::unsetVariable("QT_LOAD_TESTABILITY"); // children of the application are not driven
    preload::callInEventLoop(start);
}
