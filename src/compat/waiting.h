#pragma once

#include "compat/stacking.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace compat {

// Lets the application handle its events, except those of sockets. Where GLib runs the event loop, Qt handles those as
// well.
inline void processEvents(QEventLoop::ProcessEventsFlags waiting = QEventLoop::AllEvents)
{
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | waiting);
    forgetWindows();
}

// Processes events, except those of sockets, until the condition holds or the time is over. The condition is asked
// after each round of events; there is no polling: a timer's event ends the last wait. Objects that it looks at may die
// meanwhile.
template <class Condition>
void processEventsUntil(Condition holds, int maximumMilliseconds)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(maximumMilliseconds);
    while (limit.isActive() && !holds())
        processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace compat
