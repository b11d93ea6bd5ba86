// Another application, without a window, that owns the clipboard now and then; see
// tests/protocol/test_entry_spins.py.

#include "testhost.h"

#include <QApplication>
#include <QClipboard>

namespace {

void build(TestHost& host)
{
    QApplication::setQuitOnLastWindowClosed(false);
    host.onRequest(
        QLatin1String("copy"), [] { QApplication::clipboard()->setText(QLatin1String("of another application")); });
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
