#include "agent/testclient.h"

#include "agent/buildtag.h"
#include "agent/commands.h"
#include "agent/requestloop.h"
#include "agent/testtoolhook.h"
#include "compat/idlesocketfilter.h"
#include "compat/platform.h"
#include "compat/waiting.h"
#include "compat/widgets.h"
#include "proxy/heldmouse.h"
#include "proxy/postedcall.h"
#include "proxy/stapplicationproxy.h"
#include "record/recorder.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>

#include <new>

namespace {

const quint16 serverPort = 4242;

// The registry of an agent that has ended, for the next one.
STApplicationProxy* unusedProxies = nullptr;

STApplicationProxy* takeProxies()
{
    STApplicationProxy* const taken = unusedProxies;
    unusedProxies = nullptr;
    return taken ? taken : new STApplicationProxy;
}

} // namespace

TestClient::TestClient()
{
    connect(this, SIGNAL(connected()), SLOT(socketConnected()));
    connect(this, SIGNAL(readyRead()), SLOT(socketReadyRead()));
    connect(this, compat::socketErrorSignal(), SLOT(socketError(QAbstractSocket::SocketError)));
    buildTag = agent::composeBuildTag();
    const agent::TestToolHook hook = agent::prepareTestToolHook(buildTag);
    hookPort = hook.port;
    scriptProxy = hook.scriptProxy;
    setProxy(QNetworkProxy::NoProxy); // the application's proxy need not lead to the local host
    requests = std::make_unique<agent::RequestLoop>(
        *this, [this](const QByteArray& request) { return agent::executeCommand(request, *applicationProxy); });
    connectToHost(QHostAddress(QHostAddress::LocalHost), serverPort);
    applicationProxy = takeProxies(); // never deleted, see ~TestClient()
}

TestClient::~TestClient()
{
    flush();
    TestClient::close();
    while (state() == ClosingState) {
        compat::sleepMilliseconds(1);
        flush();
    }
    if (!requests->isExecuting())
        unusedProxies = applicationProxy;
}

void TestClient::close()
{
    QTcpSocket::close();
    idleSocketFilter = nullptr;
    proxy::HeldMouse::instance().abandon(); // nobody would end a drag
    record::Recorder::instance().abandon();
}

void TestClient::callInEventLoop(void (*function)())
{
    proxy::postCall(function);
}

void TestClient::socketConnected()
{
    idleSocketFilter = compat::IdleSocketFilter::installWhereNeeded();
    compat::setSocketNotInheritable(socketDescriptor());
    setSocketOption(LowDelayOption, 1);
    // The socket buffers by itself. Qt 4 puts a second buffer in front, and the socket does not count what is in there.
    setOpenMode(openMode() | Unbuffered);
    write(QString::fromLatin1("+client+ 2.1.0 %1 %2 %3\n")
              .arg(QString::number(QCoreApplication::applicationPid()), QString::number(hookPort), buildTag)
              .toLatin1());
    flush();
    proxy::HeldMouse::instance().serve();
}

void TestClient::socketReadyRead()
{
    requests->schedule();
}

bool TestClient::event(QEvent* event)
{
    // A command may run an event loop that deletes what deleteLater() was called for. The command has its reply first.
    if (event->type() == QEvent::DeferredDelete && requests->isExecuting()) {
        requests->deleteSocketAfterReply();
        return true;
    }
    return QTcpSocket::event(event);
}

void TestClient::socketError(QAbstractSocket::SocketError error)
{
    // Windows reports the end together with the last bytes, before there was an event for their requests.
    if (error == RemoteHostClosedError && requests->closeAfterRequests())
        return;
    close();
    requests->clear();
}

TestClient* createTestClient()
{
    return QCoreApplication::instance() ? new (std::nothrow) TestClient : nullptr;
}
