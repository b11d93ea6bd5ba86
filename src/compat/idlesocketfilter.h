#pragma once

#include <QtCore/QObject>

#include <memory>

namespace compat {

// An event filter for the application: a notifier of a socket is told of input only while there is some. Where GLib runs
// the event loop, Qt handles all sockets in every event loop, those that it is asked to leave out too, and when a loop
// within another one ends, the outer one tells of the same input again. A notifier that reads what is not there waits for
// ever, and the application with it; so does Qt 5's file system watcher. Each command that handles events, and each
// dialog that a command opens, is such a loop.
class IdleSocketFilter : public QObject
{
public:
    // A filter of the application as long as it lives; null where the event loop of this thread needs none.
    static std::unique_ptr<IdleSocketFilter> installWhereNeeded();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace compat
