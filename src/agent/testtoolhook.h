#pragma once

#include <QtCore/QString>

namespace LmSquishProxy {
class CPyTestProxy;
}

namespace agent {

// Makes the application reachable for the test scripts of an outside tool.
struct TestToolHook
{
    // -1: no hook library; 0: it is loaded, but its wrapper does not listen; else the port on which it does.
    qint32 port = -1;
    // The object that the scripts call; null with -1. Deleted when the application quits.
    LmSquishProxy::CPyTestProxy* scriptProxy = nullptr;
};

// Loads the tool's libraries, for good, from "bin" below the folder that the environment variable
// SQUISH_PREFIX names, or below its subfolder for this build if there is one; then SQUISH_PREFIX names that
// one from now on. Where a file is missing, does not load or refuses, the rest is left out, silently. To be
// called once, in the GUI thread.
TestToolHook prepareTestToolHook(const QString& buildTag);

} // namespace agent
