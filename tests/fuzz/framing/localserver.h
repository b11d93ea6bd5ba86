#pragma once

#include <QtCore/QByteArray>

// The other end of the agent's connection, in this process. Whatever the program connects to, it is this: a pair of
// sockets whose buffers are small, so that either side soon has to wait for the other.
class LocalServer
{
public:
    // Takes over the end of the connection that the program has started last.
    LocalServer();
    ~LocalServer();
    Q_DISABLE_COPY(LocalServer)

    // Sends as much as the agent takes; true when that was anything. The rest waits for the next call.
    bool send(const QByteArray& bytes = QByteArray());
    // Reads so much at most; true when there was anything.
    bool read(int maximum);
    void endSending();
    void close();

    int unsent() const { return static_cast<int>(waiting.size()); }
    bool isClosed() const { return end == -1; }
    // The agent has closed its end, and everything before that has been read.
    bool hasSeenEnd() const { return sawEnd; }
    const QByteArray& received() const { return fromAgent; }

private:
    int end;
    bool isSending = true;
    bool sawEnd = false;
    QByteArray waiting;
    QByteArray fromAgent;
};
