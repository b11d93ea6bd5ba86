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

} // namespace

TestClient::TestClient()
{
    connect(this, SIGNAL(connected()), SLOT(socketConnected()));
    connect(this, SIGNAL(readyRead()), SLOT(socketReadyRead()));
    connect(this, compat::socketErrorSignal(), SLOT(socketError(QAbstractSocket::SocketError)));
    QCoreApplication::instance()->installEventFilter(new compat::IdleSocketFilter(this));
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
    close();
    while (state() == ClosingState) {
        compat::sleepMilliseconds(1);
        flush();
    }
}

void TestClient::socketConnected()
{
    compat::setSocketNotInheritable(socketDescriptor());
    setSocketOption(LowDelayOption, 1);
    // The socket has a buffer of its own. Qt 4's second one in front of it would hide from it what there is to read.
    setOpenMode(openMode() | Unbuffered);
    write(QString::fromLatin1("+client+ 2.1.0 %1 %2 %3\n")
              .arg(QString::number(QCoreApplication::applicationPid()), QString::number(hookPort), buildTag)
              .toLatin1());
    flush();
}

void TestClient::socketReadyRead()
{
    // One at a time: a command may run an event loop, and what arrives there is executed after it.
    if (isExecuting || pause.isActive())
        return;
    // A command runs the application's code, which may delete the agent.
    const QPointer<TestClient> self(this);
    isExecuting = true;
    QElapsedTimer slice;
    slice.start();
    QByteArray request;
    while (self && takeRequest(request)) {
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
        if (!self || isLast)
            break;
        if (!isRetired && slice.hasExpired(sliceMilliseconds))
            startPause();
    }
    if (!self)
        return;
    isExecuting = false;
    // From the event loop, when Qt has ended its signal.
    if (isRetired)
        pause.start(0, this);
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
        // From the event loop: a command must not run within Qt's own writing.
        connect(this, SIGNAL(bytesWritten(qint64)), SLOT(socketReadyRead()), Qt::QueuedConnection);
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
    // A command may run an event loop that deletes what deleteLater() was called for; but the signal that had the command
    // executed is on the stack below, and Qt goes on with the socket after it.
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
    if (isRetired) {
        delete this;
        return;
    }
    setReadBufferSize(readAheadBytes);
    socketReadyRead();
}

void TestClient::socketError(QAbstractSocket::SocketError)
{
    close();
    incomplete.clear();
}

TestClient* createTestClient()
{
    return new (std::nothrow) TestClient;
}
