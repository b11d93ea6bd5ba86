#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace compat {

// Lets the application handle its events, but those of sockets. Where GLib runs the event loop, Qt handles those as well.
void processEvents(QEventLoop::ProcessEventsFlags waiting = QEventLoop::AllEvents);

// For the end of what a socket's event has started. If events were processed meanwhile, Qt 5 with GLib still takes for
// readable what was readable then, and tells its notifiers again. A file system watcher then reads what is no longer
// there, and the application stands still for ever. What is readable at this call is handled before the next round of
// events, even before events that are posted.
void forgetHandledSockets();

// Processes events, but those of sockets, until the condition holds or the time is over. The condition is asked after
// each round of events; there is no polling: a timer's event ends the last wait. Objects that it looks at may die
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
