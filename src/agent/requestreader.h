#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QObject>

namespace agent {

// Cuts what arrives at a device into requests, which are lines, and hands out no more of them while the other side leaves
// its replies unread. Knows nothing of what requests mean.
class RequestReader : public QObject
{
    Q_OBJECT

public:
    // A longer request, with its line end, closes the device, for it may have no end at all. A text of eight million
    // characters is shorter.
    static const int maximumRequestBytes = 16 * 1024 * 1024;
    // While more than that is still to be written to the device, no request is taken: the replies to further ones would
    // pile up in the application's memory.
    static const int maximumUnreadReplyBytes = 4 * 1024 * 1024;

    // The device is not owned.
    explicit RequestReader(QIODevice& source);

    // Takes the next complete request, without its line end. False when there is none yet, or none may be taken now.
    bool take(QByteArray& request);
    // Discards the beginning of an incomplete request.
    void clear();

Q_SIGNALS:
    // Replies have been written while requests were held back: take() may hand out one now.
    void resumable();

private:
    void readOn();
    void updateBackpressure();

    QIODevice& device;
    QByteArray incomplete;
    bool isThrottled = false;
};

} // namespace agent
