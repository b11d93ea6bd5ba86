#include "agent/testtoolhook.h"

#include "bridge/cpytestproxy.h"
#include "compat/platform.h"

#include <QApplication>
#include <QtCore/QDir>
#include <QtCore/QLibrary>

#include <cstdlib>

namespace agent {

namespace {

const char prefixVariable[] = "SQUISH_PREFIX";
const char scriptProxyName[] = "LmSquishProxy";

const int firstPort = 41100;
const int lastPort = 41299;

// Sets the tool's hook up on a port; false when it is taken.
using InitializeHook = bool (*)(int port);

QString libraryPath(const QString& prefix, const char* baseName)
{
    return prefix + QLatin1String("/bin/") + QLatin1String(baseName);
}

// The tool's folder for this build, if there is one. It is written back, for the tool and for the processes
// that the application starts.
QString perBuildPrefix(const QString& prefix, const QString& buildTag)
{
    const QString folder = prefix + QLatin1Char(compat::directorySeparator) + buildTag;
    if (!QDir(folder).exists())
        return prefix;
    compat::setEnvironmentVariable(prefixVariable, folder.toLocal8Bit().constData());
    return folder;
}

// The first port that the wrapper accepts; 0 when it is not there or refuses all. A QLibrary that goes out of
// scope leaves its library loaded.
qint32 initializeWrapper(const QString& prefix)
{
    QLibrary wrapper(libraryPath(prefix, "squishqtwrapper"));
    if (!wrapper.load())
        return 0;
    const auto initialize = reinterpret_cast<InitializeHook>(wrapper.resolve("qtwrapper_initialize_builtin_hook"));
    for (int port = firstPort; initialize && port <= lastPort; ++port) {
        if (initialize(port))
            return port;
    }
    return 0;
}

} // namespace

TestToolHook prepareTestToolHook(const QString& buildTag)
{
    TestToolHook hook;
    const QString variable = QString::fromLocal8Bit(std::getenv(prefixVariable));
    // The scripts' object is a widget.
    if (variable.isEmpty() || !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return hook;
    const QString prefix = perBuildPrefix(variable, buildTag);
    QLibrary library(libraryPath(prefix, "squishhook"));
    if (!library.load())
        return hook;
    hook.scriptProxy = new LmSquishProxy::CPyTestProxy(scriptProxyName); // deleted at aboutToQuit()
    hook.port = initializeWrapper(prefix);
    return hook;
}

} // namespace agent
