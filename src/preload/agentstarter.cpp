#include "preload/agentstarter.h"

#include "agent/testclient.h"
#include "compat/qtsymbols.h"
#include "preload/explanation.h"
#include "preload/filepath.h"
#include "preload/loadedlibrary.h"
#include "preload/ownfile.h"
#include "preload/process.h"

#include <QtCore/QCoreApplication>

#include <atomic>

namespace preload {

namespace {

// The agent, and the functions of Qt that end it. They are looked up by symbols that are the same in Qt 4, 5 and 6.
struct RunningAgent
{
    TestClient* client;
    unsigned long long thread;
    bool (*blockSignals)(QObject*, bool);
    void (*abort)(QAbstractSocket*);
    QAbstractSocket::SocketState (*state)(const QAbstractSocket*);
};

RunningAgent agent = {};
std::atomic<bool> isStarted(false);

// How long the end of an application waits for a test server that does not read the last replies.
const int replyFlushTimeoutMs = 1000;

// Null where the process has no application object.
QCoreApplication* applicationOf(const LoadedLibrary& qt)
{
    const auto instance = qt.variable<QCoreApplication*>(compat::applicationInstanceSymbol);
    return instance ? *instance : nullptr;
}

bool runsWidgetsApplication(const LoadedLibrary& qt)
{
    const QCoreApplication* const application = applicationOf(qt);
    const auto currentThread = qt.function<QThread* (*)()>(compat::currentThreadSymbol);
    const auto threadOf = qt.function<QThread* (*)(const QObject*)>(compat::threadOfSymbol);
    return application && currentThread && threadOf && threadOf(application) == currentThread()
        && application->inherits("QApplication");
}

// An application may bring its own Qt. The libraries that the agent needs beyond those it has loaded must come from the
// same Qt, not from the system's.
void loadFurtherLibraries(const char* widgetsLibrary)
{
    for (const char* const name : {QTDRIVER_FURTHER_LIBRARIES}) {
        char path[pathSize];
        char reason[pathSize];
        if (writePathBeside(widgetsLibrary, name, path) && !LoadedLibrary::pathOf(name))
            loadLibrary(path, reason);
    }
}

// Called by the destructor of QApplication, while there are still events and sockets.
void deleteAgent()
{
    TestClient* const client = agent.client;
    // exit() in another thread destroys a static QApplication there: then the agent ends with the process.
    if (!client || agent.thread != currentThreadId())
        return;
    agent.client = nullptr;
    agent.blockSignals(client, true); // no further request is answered
    const long long end = monotonicMilliseconds() + replyFlushTimeoutMs;
    for (long long now = monotonicMilliseconds(); client->bytesToWrite() > 0; now = monotonicMilliseconds()) {
        if (now >= end || !client->waitForBytesWritten(int(end - now))) {
            agent.abort(client);
            break;
        }
    }
    delete client;
}

} // namespace

const char* loadAgent()
{
    static char path[pathSize];
    const char* const widgetsLibrary = LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY);
    if (!widgetsLibrary || !writePathBeside(ownFile(), QTDRIVER_AGENT_LIBRARY, path))
        return nullptr;
    loadFurtherLibraries(widgetsLibrary);
    // Loading fails if a single function is missing, as in an older Qt: found missing later, it would end the
    // application.
    char reason[pathSize];
    if (loadLibrary(path, reason))
        return path;
    explain("its library cannot be loaded: ", reason);
    return nullptr;
}

bool claimStart()
{
    if (isStarted)
        return false;
    const char* const widgetsLibrary = LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY);
    if (!widgetsLibrary) {
        explain("the program has not loaded " QTDRIVER_WIDGETS_LIBRARY);
        return false;
    }
    if (!runsWidgetsApplication(LoadedLibrary(widgetsLibrary))) {
        explain("the thread runs no event loop of a QApplication of " QTDRIVER_WIDGETS_LIBRARY);
        return false;
    }
    return !isStarted.exchange(true);
}

void startAgent()
{
    const char* const path = loadAgent();
    if (!path)
        return;
    const LoadedLibrary library(path);
    const auto create = library.function<decltype(&createTestClient)>("createTestClient");
    const auto addPostRoutine = library.function<void (*)(void (*)())>(compat::addPostRoutineSymbol);
    agent.blockSignals = library.function<decltype(agent.blockSignals)>(compat::blockSignalsSymbol);
    agent.abort = library.function<decltype(agent.abort)>(compat::abortSymbol);
    agent.state = library.function<decltype(agent.state)>(compat::socketStateSymbol);
    if (!create || !addPostRoutine || !agent.blockSignals || !agent.abort || !agent.state) {
        explain("functions are missing in its library: ", path);
        return;
    }
    agent.thread = currentThreadId();
    agent.client = create();
    static bool isEndAwaited = false;
    if (!isEndAwaited)
        addPostRoutine(deleteAgent);
    isEndAwaited = true;
}

void restartAgent()
{
    if (!runsWidgetsApplication(LoadedLibrary(LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY))))
        return;
    isStarted = true; // by this library, no agent is created in another way any more
    deleteAgent();
    startAgent();
}

bool hasWidgetsApplication()
{
    const char* const widgetsLibrary = LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY);
    const QCoreApplication* const application = widgetsLibrary ? applicationOf(LoadedLibrary(widgetsLibrary)) : nullptr;
    return application && application->inherits("QApplication");
}

bool isAgentConnected()
{
    return agent.client && agent.state(agent.client) != QAbstractSocket::UnconnectedState;
}

} // namespace preload
