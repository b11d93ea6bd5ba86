#include "compat/waiting.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>

namespace compat {

namespace {

bool haveProcessedEvents = false;

}

void processEvents(QEventLoop::ProcessEventsFlags waiting)
{
    haveProcessedEvents = true;
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | waiting);
}

void forgetHandledSockets()
{
    if (!haveProcessedEvents)
        return;
    haveProcessedEvents = false;
#if QT_VERSION < 0x060000
    // Looks at all sockets anew, and handles nothing. Qt 6 has no such function; its watcher looks before it reads.
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->hasPendingEvents();
#endif
}

} // namespace compat
