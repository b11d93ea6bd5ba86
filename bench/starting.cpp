// The cost of creating the agent in an application that has loaded the library. The floor is the socket that the agent
// is: a QTcpSocket, asked to connect.

#include "agent/testclient.h"
#include "pairs.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>

namespace {

const quint16 serverPort = 4242;

Measured makeOurs(int)
{
    return [] { delete createTestClient(); };
}

Measured makeFloor(int)
{
    return [] {
        QTcpSocket socket;
        socket.setProxy(QNetworkProxy::NoProxy);
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), serverPort);
    };
}

} // namespace

void registerStarting()
{
    registerPair("create", Clock::Processor, {1}, makeOurs, makeFloor);
}
