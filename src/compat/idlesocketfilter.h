#pragma once

#include <QtCore/QObject>

#include <memory>

namespace compat {

// An event filter for the application that delivers a socket notifier's event only while there is input to read. Where
// GLib runs the event loop, Qt handles all sockets in every event loop, also those that it is asked to leave out, and
// when a nested loop ends, the outer one reports the same input again. A receiver that then reads what is not there, as
// Qt 5's file system watcher does, blocks the application for ever. Each command that handles events, and each dialog
// that a command opens, is such a nested loop.
class IdleSocketFilter : public QObject
{
public:
    // A filter of the application as long as it lives; null where the event loop of this thread needs none.
    static std::unique_ptr<IdleSocketFilter> installWhereNeeded();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace compat
