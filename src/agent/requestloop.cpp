#include "agent/requestloop.h"

#include "proxy/heldmouse.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>
#include <QtCore/QTimerEvent>
#include <QtNetwork/QAbstractSocket>

namespace agent {

namespace {

// Read-ahead limit; beyond it TCP makes the server wait.
const int readAheadBytes = 64 * 1024;
// A slice lasts about a frame of the application. The pause is not zero, for timers of zero wait until the application
// has nothing else to do.
const int sliceMilliseconds = 10;
const int pauseMilliseconds = 1;

// Has a loop execute what has arrived. An application may remove all posted events, also those of others: the loop then
// gets another one.
class TurnEvent : public QEvent
{
public:
    explicit TurnEvent(RequestLoop* receiver)
        : QEvent(eventType())
        , loop(receiver)
    {
    }

    ~TurnEvent() override
    {
        if (loop && !isDelivered && QCoreApplication::instance())
            QTimer::singleShot(pauseMilliseconds, loop.data(), SLOT(schedule()));
    }

    Q_DISABLE_COPY(TurnEvent)

    static Type eventType()
    {
        static const int registered = registerEventType();
        return static_cast<Type>(registered);
    }

    bool isDelivered = false;

private:
    const QPointer<RequestLoop> loop;
};

QPointer<RequestLoop>& executingLoop()
{
    static QPointer<RequestLoop> loop;
    return loop;
}

} // namespace

RequestLoop::RequestLoop(QAbstractSocket& connection, const Execute& executeRequest)
    : socket(connection)
    , execute(executeRequest)
    , reader(connection)
{
    socket.setReadBufferSize(readAheadBytes);
    connect(&reader, SIGNAL(resumable()), SLOT(schedule()));
}

// Requests are executed in an event of the loop, not in the slot of a signal of the socket. A command runs the
// application's code, which may delete the socket: Qt goes on using a socket after it has emitted a signal, but not an
// object whose own event has deleted it.
void RequestLoop::schedule()
{
    if (state == State::Idle)
        QCoreApplication::postEvent(this, new TurnEvent(this));
}

bool RequestLoop::closeAfterRequests()
{
    if (state != State::Idle || socket.bytesAvailable() == 0)
        return false;
    isClosing = true;
    schedule();
    return true;
}

void RequestLoop::deleteSocketAfterReply()
{
    state = State::Ending;
}

bool RequestLoop::event(QEvent* event)
{
    if (event->type() != TurnEvent::eventType())
        return QObject::event(event);
    static_cast<TurnEvent*>(event)->isDelivered = true;
    if (state == State::Idle)
        runSlice();
    return true;
}

void RequestLoop::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != pause.timerId())
        return;
    pause.stop();
    resumeReading();
    state = State::Idle;
    runSlice();
}

void RequestLoop::runSlice()
{
    const QPointer<RequestLoop> self(this);
    const Execute executeRequest = execute; // the loop, and its function, may be deleted by a request
    state = State::Executing;
    QElapsedTimer slice;
    slice.start();
    QByteArray request;
    while (takeRequest(request)) {
        const quint64 number = ++lastRequest;
        unanswered = number;
        executingLoop() = this;
        const QByteArray reply = executeRequest(request);
        if (!self || unanswered != number)
            return; // an event loop within the request has gone on with the others
        unanswered = 0;
        // A request that comes after the reply waits for the event loop: the application first handles the events that
        // the command has posted.
        const bool isLast = socket.bytesAvailable() == 0;
        writeReply(reply);
        if (!self)
            return;
        if (isLast)
            break;
        // The next request must not handle a drag's moves in its middle, as they may run a loop that it would have to end.
        if (slice.hasExpired(sliceMilliseconds) || proxy::HeldMouse::instance().hasUnhandled())
            startPause();
    }
    endRequests();
}

RequestLoop::Reply RequestLoop::replyToCurrent()
{
    const QPointer<RequestLoop> loop = executingLoop();
    const quint64 number = loop ? loop->unanswered : 0;
    return [loop, number](const QByteArray& reply) {
        if (loop && number && loop->unanswered == number)
            loop->replyEarly(reply);
    };
}

void RequestLoop::replyEarly(const QByteArray& reply)
{
    const QPointer<RequestLoop> self(this);
    unanswered = 0;
    writeReply(reply);
    if (self)
        endRequests();
    if (self)
        schedule();
}

void RequestLoop::endRequests()
{
    if (state == State::Ending)
        delete &socket;
    else if (state == State::Executing)
        endSlice();
}

void RequestLoop::endSlice()
{
    state = State::Idle;
    if (!isClosing)
        return;
    isClosing = false;
    clear();
    socket.close();
}

bool RequestLoop::takeRequest(QByteArray& request)
{
    return state == State::Executing && reader.take(request);
}

void RequestLoop::writeReply(const QByteArray& reply)
{
    if (!socket.isOpen())
        return;
    socket.write(reply + '\n');
    socket.flush();
}

void RequestLoop::startPause()
{
    if (state != State::Executing || !socket.isOpen() || socket.bytesAvailable() == 0)
        return;
    // Nothing is read meanwhile, not even that the server has ended: that would discard the requests that are here.
    socket.setReadBufferSize(socket.bytesAvailable());
    pause.start(pauseMilliseconds, this);
    state = State::Paused;
}

// Windows tells of bytes that have arrived once, and again when some have been read, or the notifier is enabled. Qt 4.8
// takes such a message while its buffer is full, reads nothing, and leaves the notifier enabled: no other would come.
void RequestLoop::resumeReading()
{
    for (QSocketNotifier* notifier : socket.findChildren<QSocketNotifier*>()) {
        if (notifier->type() == QSocketNotifier::Read && notifier->isEnabled()) {
            notifier->setEnabled(false);
            notifier->setEnabled(true);
        }
    }
    socket.setReadBufferSize(readAheadBytes);
}

} // namespace agent
