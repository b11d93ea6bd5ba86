#pragma once

#include <QtCore/QByteArray>

#include <deque>

namespace record {

// The events that the server has not taken yet, the oldest first. Beyond a limit the oldest are dropped, so that a
// server which takes none does not cost the application memory.
class EventQueue
{
public:
    // Returns whether others were dropped for it.
    bool append(const QByteArray& event);
    // Removes all events and returns them as an array of JSON. The count of dropped events begins anew.
    QByteArray take();
    void clear();
    bool isEmpty() const { return events.empty(); }

    // How many have been dropped since the last take().
    int dropped() const { return lost; }

private:
    std::deque<QByteArray> events;
    int bytes = 0;
    int lost = 0;
};

// Limit for the description of a window in an event; a larger one is left out.
const int maximumWindowBytes = 1024 * 1024;

} // namespace record
