#pragma once

#include <QtCore/QByteArray>

#include <deque>

namespace record {

// The events that nobody has asked for yet, the oldest first. Of more than there is room for, the oldest are dropped: a
// server that does not ask must not cost the application memory.
class EventQueue
{
public:
    // Returns whether others were dropped for it.
    bool append(const QByteArray& event);
    // An array of JSON with all of them, which are forgotten with the count of those that were dropped.
    QByteArray take();
    void clear();

    // How many have been dropped since the last take().
    int dropped() const { return lost; }

private:
    std::deque<QByteArray> events;
    int bytes = 0;
    int lost = 0;
};

// A larger description of a window is left out of its event.
const int mostBytesOfWindow = 1024 * 1024;

} // namespace record
