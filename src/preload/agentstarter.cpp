#include "preload/agentstarter.h"

#include "agent/testclient.h"
#include "preload/filepath.h"
#include "preload/loadedlibrary.h"
#include "preload/ownfile.h"
#include "preload/preloadvariable.h"

#include <QtCore/QCoreApplication>

#include <atomic>
#include <ctime>
#include <dlfcn.h>
#include <pthread.h>

namespace preload {

namespace {

// The agent, and the functions of Qt for its end. Symbols stand for Qt's functions here, the same in Qt 4, 5
// and 6.
struct RunningAgent
{
    TestClient* client;
    pthread_t thread;
    bool (*blockSignals)(QObject*, bool);
    void (*abort)(QAbstractSocket*);
};

RunningAgent agent = {};
std::atomic<bool> isStarted(false);

// How long the end of an application waits for a test server that does not read the last replies.
const int replyFlushTimeoutMs = 1000;

bool runsWidgetsApplication(const LoadedLibrary& qt)
{
    const auto instance = qt.variable<QCoreApplication*>("_ZN16QCoreApplication4selfE");
    const auto currentThread = qt.function<QThread* (*)()>("_ZN7QThread13currentThreadEv");
    const auto threadOf = qt.function<QThread* (*)(const QObject*)>("_ZNK7QObject6threadEv");
    return instance && *instance && currentThread && threadOf && threadOf(*instance) == currentThread()
        && (*instance)->inherits("QApplication");
}

// An application may bring its own Qt. The libraries that the agent needs beyond those it has loaded must come from the
// same Qt, not from the system's.
void loadFurtherLibraries(const char* widgetsLibrary)
{
    for (const char* const name : {QTDRIVER_FURTHER_LIBRARIES}) {
        char path[PATH_MAX];
        if (!LoadedLibrary::pathOf(name) && writePathBeside(widgetsLibrary, name, path))
            dlopen(path, RTLD_NOW | RTLD_LOCAL);
    }
}

qint64 monotonicMilliseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

// Called by the destructor of QApplication, while there are still events and sockets.
void deleteAgent()
{
    TestClient* const client = agent.client;
    // exit() in another thread destroys a static QApplication there: then the agent ends with the process.
    if (!client || !pthread_equal(agent.thread, pthread_self()))
        return;
    agent.client = nullptr;
    agent.blockSignals(client, true); // no further request is answered
    const qint64 end = monotonicMilliseconds() + replyFlushTimeoutMs;
    for (qint64 now = monotonicMilliseconds(); client->bytesToWrite() > 0; now = monotonicMilliseconds()) {
        if (now >= end || !client->waitForBytesWritten(int(end - now))) {
            agent.abort(client);
            break;
        }
    }
    delete client;
}

void startAgent(const char* widgetsLibrary)
{
    char path[PATH_MAX];
    if (!writePathBeside(ownFile(), QTDRIVER_AGENT_LIBRARY, path))
        return;
    loadFurtherLibraries(widgetsLibrary);
    // All of it or nothing: a function missing in an older Qt must not end the application later.
    if (!dlopen(path, RTLD_NOW | RTLD_LOCAL))
        return;
    const LoadedLibrary library(path);
    const auto create = library.function<decltype(&createTestClient)>("createTestClient");
    const auto addPostRoutine = library.function<void (*)(void (*)())>("_Z15qAddPostRoutinePFvvE");
    agent.blockSignals = library.function<decltype(agent.blockSignals)>("_ZN7QObject12blockSignalsEb");
    agent.abort = library.function<decltype(agent.abort)>("_ZN15QAbstractSocket5abortEv");
    if (!create || !addPostRoutine || !agent.blockSignals || !agent.abort)
        return;
    agent.thread = pthread_self();
    agent.client = create();
    addPostRoutine(deleteAgent);
}

} // namespace

void startAgentOnce()
{
    if (isStarted)
        return;
    const char* const widgetsLibrary = LoadedLibrary::pathOf(QTDRIVER_WIDGETS_LIBRARY);
    if (!widgetsLibrary)
        return;
    if (!runsWidgetsApplication(LoadedLibrary(widgetsLibrary)) || isStarted.exchange(true))
        return;
    removeOwnPreloadEntry();
    startAgent(widgetsLibrary);
}

} // namespace preload
