// Windows, names, values and dialogs for the tests of the protocol itself; see tests/protocol/test_*.py.

#include "corewindows.h"
#include "testhost.h"

namespace {

void build(TestHost& host)
{
    buildMainWindow(host);
    buildNamedWindows(host);
    buildDialogs(host);
    buildDeadlyWindow(host);
    buildSaver(host);
    buildSurroundings(host);
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
