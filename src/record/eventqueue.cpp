#include "record/eventqueue.h"

namespace record {

namespace {

const std::size_t maximumEvents = 1000;
const int maximumBytes = 4 * maximumWindowBytes;

} // namespace

bool EventQueue::append(const QByteArray& event)
{
    const int before = lost;
    events.push_back(event);
    bytes += static_cast<int>(event.size());
    while (events.size() > maximumEvents || bytes > maximumBytes) {
        bytes -= static_cast<int>(events.front().size());
        events.pop_front();
        ++lost;
    }
    return lost != before;
}

QByteArray EventQueue::take()
{
    QByteArray json("[");
    json.reserve(bytes + static_cast<int>(events.size()) + 2);
    for (const QByteArray& event : events) {
        if (!json.endsWith('['))
            json += ',';
        json += event;
    }
    json += ']';
    clear();
    return json;
}

void EventQueue::clear()
{
    events.clear();
    bytes = 0;
    lost = 0;
}

} // namespace record
