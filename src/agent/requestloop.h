#pragma once

#include "agent/requestreader.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QElapsedTimer>

#include <functional>

class QAbstractSocket;

namespace agent {

// Has the requests that arrive at a socket executed one after the other, and writes their replies. It works in the event
// loop of its thread: requests that arrive together are executed in slices, between which the application has its turn.
class RequestLoop : public QObject
{
    Q_OBJECT

public:
    // Returns the reply to a request, both without line end. It may run an event loop, and delete the socket and the loop.
    using Execute = std::function<QByteArray(const QByteArray& request)>;

    // The socket is not owned, but see deleteSocketAfterReply(). The loop must not outlive it.
    RequestLoop(QAbstractSocket& connection, const Execute& executeRequest);

    // Writes the reply to a request that is on the stack; see replyToCurrent().
    using Reply = std::function<void(const QByteArray& reply)>;
    // The function with which the request that is being executed can have its reply before it returns, as when it runs an
    // event loop of the application: later requests are executed there then, and what it returns is dropped.
    static Reply replyToCurrent();

    // A request without a reply is on the stack.
    bool isExecuting() const { return state == State::Executing || state == State::Ending; }
    // After the server has ended the connection: has the requests that arrived before executed, without replies, and
    // then closes the socket. Returns false if there are none, or one is on the stack: then the caller has to close it.
    bool closeAfterRequests();
    // While a request is on the stack: no other one is executed, and the socket is deleted when this one has its reply.
    void deleteSocketAfterReply();
    // Discards the beginning of an incomplete request.
    void clear() { reader.clear(); }

public Q_SLOTS:
    // Has the event loop execute what has arrived.
    void schedule();

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    enum class State {
        Idle,
        Executing, // a request, which may run an event loop: what arrives there is executed after it
        Ending, // the same; the socket is deleted after the reply
        Paused, // between two slices
    };

    void runSlice();
    bool takeRequest(QByteArray& request);
    void replyEarly(const QByteArray& reply);
    void writeReply(const QByteArray& reply);
    void startPause();
    void resumeReading();
    void endRequests();
    void endSlice();

    QAbstractSocket& socket;
    const Execute execute;
    RequestReader reader;
    State state = State::Idle;
    quint64 lastRequest = 0; // their number
    quint64 unanswered = 0; // the number of the request that is executed and has no reply yet, 0 for none
    bool isClosing = false;
    QBasicTimer pause;
};

} // namespace agent
