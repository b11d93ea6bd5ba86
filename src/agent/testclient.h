#pragma once

#include "compat/export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QTcpSocket>

#include <memory>

class STApplicationProxy;

namespace agent {
class RequestLoop;
}

namespace compat {
class IdleSocketFilter;
}

namespace LmSquishProxy {
class CPyTestProxy;
}

// The agent inside an application: a client of the test server at port 4242 of the local host. It introduces itself
// with one line and then answers every request line with one reply line, all in the GUI thread, driven by the
// application's event loop. When the connection fails or ends it stays closed; the application goes on undisturbed.
class QTDRIVER_EXPORT TestClient : public QTcpSocket
{
    Q_OBJECT

public:
    // Starts connecting and returns at once. Needs a QApplication, and its thread.
    TestClient();
    // Sends what is still to be sent, however long the server takes to read it; call abort() first not to wait. The
    // proxy registry is kept until the process ends, since a command that uses it may still be on the stack: the agent
    // may be deleted at any time in its thread, even in a slot that one of its commands runs. That command has no reply
    // then. Where none is on the stack, the next agent uses the registry.
    ~TestClient() override;

    void close() override;

    // Has the event loop of the application object's thread call a function once. The application object may still be in
    // its constructor; what creates the agent from there has to wait for it.
    static void callInEventLoop(void (*function)());

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    void socketConnected();
    void socketReadyRead();
    void socketError(QAbstractSocket::SocketError error);

private:
    STApplicationProxy* applicationProxy = nullptr;
    // -1: no hook of an outside tool; 0: its library is loaded; else the port on which it listens.
    qint32 hookPort = -1;
    // Not the agent's: it outlives the agent, and is deleted when the application quits.
    LmSquishProxy::CPyTestProxy* scriptProxy = nullptr;
    QString buildTag;
    std::unique_ptr<agent::RequestLoop> requests;
    // While the connection is open, where it is needed.
    std::unique_ptr<compat::IdleSocketFilter> idleSocketFilter;
};

// Creates the agent, once, in the GUI thread of an application that has its QApplication. The caller owns it, and may
// delete it whenever it likes; by deleteLater(), a command that is on the stack still has its reply. Null when there is
// no application object yet, or no memory.
extern "C" QTDRIVER_EXPORT TestClient* createTestClient();
