#include "standardinput.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

DWORD WINAPI readAll(void* object)
{
    char buffer[4096];
    DWORD size = 0;
    do {
        if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof(buffer), &size, nullptr))
            size = 0;
        QMetaObject::invokeMethod(static_cast<QObject*>(object), "arrived", Qt::QueuedConnection,
            Q_ARG(QByteArray, QByteArray(buffer, static_cast<int>(size))));
    } while (size > 0);
    return 0;
}

} // namespace

StandardInput::StandardInput()
{
    _setmode(_fileno(stdout), _O_BINARY);
    CloseHandle(CreateThread(nullptr, 0, readAll, this, 0, nullptr));
}

void StandardInput::read() { }
