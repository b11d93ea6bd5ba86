// An application without any window.

#include "testhost.h"

#include <QApplication>

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, [](TestHost&) { QApplication::setQuitOnLastWindowClosed(false); });
}
