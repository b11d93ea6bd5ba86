#include "agent/requestreader.h"

namespace agent {

RequestReader::RequestReader(QIODevice& source)
    : device(source)
{
}

bool RequestReader::take(QByteArray& request)
{
    if (!device.isOpen())
        return false;
    updateBackpressure();
    if (isThrottled)
        return false;
    readOn();
    if (incomplete.size() > maximumRequestBytes) {
        device.close();
        incomplete.clear();
    }
    if (!incomplete.endsWith('\n'))
        return false;
    incomplete.chop(incomplete.endsWith("\r\n") ? 2 : 1);
    request.clear();
    request.swap(incomplete);
    return true;
}

void RequestReader::clear()
{
    incomplete.clear();
}

// Reads up to the end of a line and no further, so that bytesAvailable() still counts the requests behind it.
// readLine() of Qt 4's sockets reads byte by byte, so it gets only the piece in which the line ends.
void RequestReader::readOn()
{
    const qint64 available = device.bytesAvailable();
    incomplete += device.canReadLine() ? device.readLine() : device.read(available);
}

void RequestReader::updateBackpressure()
{
    const bool isBehind = device.bytesToWrite() > maximumUnreadReplyBytes;
    if (isBehind && !isThrottled)
        connect(&device, SIGNAL(bytesWritten(qint64)), SIGNAL(resumable()));
    else if (!isBehind && isThrottled)
        disconnect(&device, SIGNAL(bytesWritten(qint64)), this, SIGNAL(resumable()));
    isThrottled = isBehind;
}

} // namespace agent
