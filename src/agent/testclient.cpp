#include "agent/testclient.h"

#include "agent/buildtag.h"
#include "agent/commands.h"
#include "agent/testtoolhook.h"
#include "compat/idlesocketfilter.h"
#include "compat/platform.h"
#include "compat/waiting.h"
#include "compat/widgets.h"
#include "proxy/stapplicationproxy.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QTimerEvent>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>

#include <new>

namespace {

const quint16 serverPort = 4242;

// Of requests that have not been executed so much is read; TCP has the server wait with the rest.
const int readAheadBytes = 64 * 1024;
// A longer request ends the connection, for it may have no end at all. A text of eight million characters is shorter.
const int longestRequestBytes = 16 * 1024 * 1024;
// While the server has more replies than that to read, no further request is executed: each has its reply, and all
// of them would be kept in the application's memory.
const int mostUnreadReplyBytes = 4 * 1024 * 1024;
// Requests that arrive together are executed for so long, about a frame of the application's; then the event loop has
// its turn. The pause is not zero, for timers of zero wait until the application has nothing else to do.
const int sliceMilliseconds = 10;
const int pauseMilliseconds = 1;

// Has the agent execute what has arrived. An application may remove all events that are posted, whosoever they are; this
// one comes again then.
class TurnEvent : public QEvent
{
public:
    explicit TurnEvent(TestClient* testClient)
        : QEvent(eventType())
        , client(testClient)
    {
    }

    ~TurnEvent() override
    {
        if (client && !isDelivered && QCoreApplication::instance())
            QTimer::singleShot(pauseMilliseconds, client.data(), SLOT(socketReadyRead()));
    }

    Q_DISABLE_COPY(TurnEvent)

    static Type eventType()
    {
        static const int registered = registerEventType();
        return static_cast<Type>(registered);
    }

    bool isDelivered = false;

private:
    const QPointer<TestClient> client;
};

} // namespace

TestClient::TestClient()
{
    connect(this, SIGNAL(connected()), SLOT(socketConnected()));
    connect(this, SIGNAL(readyRead()), SLOT(socketReadyRead()));
    connect(this, compat::socketErrorSignal(), SLOT(socketError(QAbstractSocket::SocketError)));
    buildTag = composeBuildTag();
    const TestToolHook hook = prepareTestToolHook(buildTag);
    hookPort = hook.port;
    scriptProxy = hook.scriptProxy;
    setProxy(QNetworkProxy::NoProxy); // an application's proxy is no way to the local host
    setReadBufferSize(readAheadBytes);
    connectToHost(QHostAddress(QHostAddress::LocalHost), serverPort);
    applicationProxy = new STApplicationProxy; // never deleted, see ~TestClient()
}

TestClient::~TestClient()
{
    flush();
    TestClient::close();
    while (state() == ClosingState) {
        compat::sleepMilliseconds(1);
        flush();
    }
}

void TestClient::close()
{
    QTcpSocket::close();
    idleSocketFilter = nullptr;
}

void TestClient::socketConnected()
{
    idleSocketFilter = compat::IdleSocketFilter::installWhereNeeded();
    compat::setSocketNotInheritable(socketDescriptor());
    setSocketOption(LowDelayOption, 1);
    // The socket has a buffer of its own. Qt 4's second one in front of it would hide from it what there is to read.
    setOpenMode(openMode() | Unbuffered);
    write(QString::fromLatin1("+client+ 2.1.0 %1 %2 %3\n")
              .arg(QString::number(QCoreApplication::applicationPid()), QString::number(hookPort), buildTag)
              .toLatin1());
    flush();
}

// Nothing is executed here: a command runs the application's code, which may delete the agent, and Qt, which has emitted
// the signal, goes on with the socket afterwards. An object may die in its own event.
void TestClient::socketReadyRead()
{
    if (!isExecuting && !pause.isActive())
        QCoreApplication::postEvent(this, new TurnEvent(this));
}

void TestClient::executeRequests()
{
    // One at a time: a command may run an event loop, and what arrives there is executed after it.
    if (isExecuting || pause.isActive())
        return;
    const QPointer<TestClient> self(this);
    isExecuting = true;
    QElapsedTimer slice;
    slice.start();
    QByteArray request;
    while (takeRequest(request)) {
        const QByteArray reply = executeCommand(request, *applicationProxy) + '\n';
        if (!self)
            return;
        // A request that comes after the reply waits for the event loop: the application first handles the events that
        // the command has posted.
        const bool isLast = bytesAvailable() == 0;
        if (isOpen()) {
            write(reply);
            flush();
        }
        if (!self)
            return;
        if (isLast)
            break;
        if (slice.hasExpired(sliceMilliseconds))
            startPause();
    }
    isExecuting = false;
    if (isRetired)
        delete this;
}

// Takes the next complete request from the socket, without its line end.
bool TestClient::takeRequest(QByteArray& request)
{
    if (!isOpen() || isRetired || pause.isActive() || isServerBehind())
        return false;
    incomplete += readLine();
    if (incomplete.size() > longestRequestBytes) {
        close();
        incomplete.clear();
    }
    if (!incomplete.endsWith('\n'))
        return false;
    incomplete.chop(incomplete.endsWith("\r\n") ? 2 : 1);
    request.clear();
    request.swap(incomplete);
    return true;
}

// Whether too many replies wait for the server to read them. Then socketReadyRead() runs again when it has read some.
bool TestClient::isServerBehind()
{
    const bool isBehind = bytesToWrite() > mostUnreadReplyBytes;
    if (isBehind && !awaitsServer) {
        connect(this, SIGNAL(bytesWritten(qint64)), SLOT(socketReadyRead()));
    } else if (!isBehind && awaitsServer) {
        disconnect(this, SIGNAL(bytesWritten(qint64)), this, SLOT(socketReadyRead()));
    }
    awaitsServer = isBehind;
    return isBehind;
}

void TestClient::startPause()
{
    if (!isOpen() || bytesAvailable() == 0)
        return;
    // Nothing is read meanwhile, not even that the server has ended: that would discard the requests that are here.
    setReadBufferSize(bytesAvailable());
    pause.start(pauseMilliseconds, this);
}

bool TestClient::event(QEvent* event)
{
    if (event->type() == TurnEvent::eventType()) {
        static_cast<TurnEvent*>(event)->isDelivered = true;
        executeRequests();
        return true;
    }
    // A command may run an event loop that deletes what deleteLater() was called for. The command has its reply first.
    if (event->type() == QEvent::DeferredDelete && isExecuting) {
        isRetired = true;
        return true;
    }
    return QTcpSocket::event(event);
}

void TestClient::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != pause.timerId()) {
        QTcpSocket::timerEvent(event);
        return;
    }
    pause.stop();
    setReadBufferSize(readAheadBytes);
    executeRequests();
}

void TestClient::socketError(QAbstractSocket::SocketError)
{
    close();
    incomplete.clear();
}

TestClient* createTestClient()
{
    return QCoreApplication::instance() ? new (std::nothrow) TestClient : nullptr;
}
