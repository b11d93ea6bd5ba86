// The library that a launcher puts into LD_PRELOAD to drive an application that knows nothing of it.
//
// Every event loop of Qt starts in QEventLoop::exec(). Applications and Qt's other libraries find it by its
// name, so the definition here comes first for dialogs, menus and loops of the application's own.
// QCoreApplication::exec() calls it from inside QtCore, where the name may be bound already, but is itself
// found by its name, by QApplication::exec() too. So these two functions see the first event loop start, and
// pass the call on to Qt.
//
// Until then, and in a process without QApplication of this library's Qt major for ever, nothing of Qt or of
// the agent is loaded and nothing is changed: this library links only the C library and asks the loader what
// the process has.
//
// A process that runs another program by exec() hands LD_PRELOAD on, so that an application behind a wrapper
// script is driven. The first widgets application takes this library's entry out, so that its children are
// not.

#include "preload/agentstarter.h"
#include "preload/loadedlibrary.h"
#include "preload/ownfile.h"
#include "preload/preloadvariable.h"

#include <cerrno>
#include <cstdint>
#include <dlfcn.h>

// QCoreApplication::exec()
#define APPLICATION_EXEC "_ZN16QCoreApplication4execEv"
// QEventLoop::exec(ProcessEventsFlags)
#define EVENT_LOOP_EXEC "_ZN10QEventLoop4execE6QFlagsINS_17ProcessEventsFlagEE"

// The two functions under Qt's names, without Qt's headers: they are called in processes of every Qt. The
// flags are an int in Qt 5 and 6, and in Qt 4 the address of an object; they are handed on as they come.
extern "C" {
__attribute__((visibility("default"))) int executeApplication() __asm__(APPLICATION_EXEC);
__attribute__((visibility("default"))) int executeEventLoop(void* eventLoop, std::uintptr_t flags) __asm__(
    EVENT_LOOP_EXEC);
}

namespace {

// Before main(): what depends on the current directory, and on children not being there yet.
__attribute__((constructor)) void libraryLoaded()
{
    const int errorNumber = errno;
    preload::rememberOwnFile();
    if (preload::LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY))
        preload::removeOwnPreloadEntry();
    errno = errorNumber;
}

void startAgentOnce()
{
    if (!preload::claimStart())
        return;
    preload::removeOwnPreloadEntry();
    preload::startAgent();
}

// The definition that the caller would have found without this library, null if there is none.
void* nextDefinition(const char* symbol, const void* caller)
{
    if (void* found = dlsym(RTLD_NEXT, symbol))
        return found;
    // A Qt that came with a plugin or a language module is seen only by those that link it.
    Dl_info module;
    if (dladdr(caller, &module) == 0)
        return nullptr;
    return preload::LoadedLibrary(module.dli_fname).function<void*>(symbol);
}

// Result of Qt's own functions when there is nothing to run.
const int loopDidNotRun = -1;

} // namespace

int executeApplication()
{
    startAgentOnce();
    void* const next = nextDefinition(APPLICATION_EXEC, __builtin_return_address(0));
    return next ? reinterpret_cast<int (*)()>(next)() : loopDidNotRun;
}

int executeEventLoop(void* eventLoop, std::uintptr_t flags)
{
    startAgentOnce();
    void* const next = nextDefinition(EVENT_LOOP_EXEC, __builtin_return_address(0));
    return next ? reinterpret_cast<int (*)(void*, std::uintptr_t)>(next)(eventLoop, flags) : loopDidNotRun;
}
