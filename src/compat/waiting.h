#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

namespace compat {

// Lets the application handle its events, but those of sockets, until the condition holds or the time is over. The
// condition is asked after each round of events; there is no polling: a timer's event ends the last wait. Objects that
// it looks at may die meanwhile.
template <class Condition>
void processEventsUntil(Condition holds, int maximumMilliseconds)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(maximumMilliseconds);
    while (limit.isActive() && !holds())
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::WaitForMoreEvents);
}

} // namespace compat
