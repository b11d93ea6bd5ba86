#include "agent/testclient.h"

#include "agent/buildtag.h"
#include "agent/commands.h"
#include "agent/testtoolhook.h"
#include "compat/platform.h"
#include "compat/widgets.h"
#include "proxy/stapplicationproxy.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>

#include <new>

namespace {

const quint16 serverPort = 4242;

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
    write(QString::fromLatin1("+client+ 2.1.0 %1 %2 %3\n")
              .arg(QString::number(QCoreApplication::applicationPid()), QString::number(hookPort), buildTag)
              .toLatin1());
    flush();
}

void TestClient::socketReadyRead()
{
    // A command runs the application's code, which may delete the agent.
    const QPointer<TestClient> self(this);
    while (self && canReadLine()) {
        QByteArray line = readLine();
        line.chop(line.endsWith("\r\n") ? 2 : 1);
        const QByteArray reply = executeCommand(line, *applicationProxy) + '\n';
        if (!self || !isOpen())
            return;
        write(reply);
        flush();
    }
}

void TestClient::socketError(QAbstractSocket::SocketError)
{
    close();
}

TestClient* createTestClient()
{
    return new (std::nothrow) TestClient;
}
