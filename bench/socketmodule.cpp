// The least that an agent of any kind brings into an application: a library that connects one QTcpSocket.

#include <QTcpSocket>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>

extern "C" Q_DECL_EXPORT void startModule()
{
    const quint16 serverPort = 4242;
    auto* socket = new QTcpSocket; // kept until the application ends
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->connectToHost(QHostAddress(QHostAddress::LocalHost), serverPort);
}
