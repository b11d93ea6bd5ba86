#include "standardinput.h"

#include <QtCore/QSocketNotifier>

#include <unistd.h>

StandardInput::StandardInput()
{
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(notifier, SIGNAL(activated(int)), SLOT(read()));
}

void StandardInput::read()
{
    char buffer[4096];
    const ssize_t size = ::read(STDIN_FILENO, buffer, sizeof(buffer));
    Q_EMIT arrived(size > 0 ? QByteArray(buffer, static_cast<int>(size)) : QByteArray());
}
