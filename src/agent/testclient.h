#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QTcpSocket>

#ifdef QTDRIVER_LIBRARY
#define QTDRIVER_EXPORT Q_DECL_EXPORT
#else
#define QTDRIVER_EXPORT Q_DECL_IMPORT
#endif

class STApplicationProxy;

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
    // Sends what is still to be sent, however long the server takes to read it: call abort() first not to wait. The
    // proxy registry stays for the rest of the process, on purpose: a command may still be on the stack.
    ~TestClient() override;

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private Q_SLOTS:
    void socketConnected();
    void socketReadyRead();
    void socketError(QAbstractSocket::SocketError error);

private:
    bool takeRequest(QByteArray& request);
    bool isServerBehind();
    void startPause();

    STApplicationProxy* applicationProxy = nullptr;
    // -1: no hook of an outside tool; 0: its library is loaded; else the port on which it listens.
    qint32 hookPort = -1;
    // Not the agent's: it outlives the agent, and is deleted when the application quits.
    LmSquishProxy::CPyTestProxy* scriptProxy = nullptr;
    QString buildTag;
    // What has arrived of a request whose end has not.
    QByteArray incomplete;
    // A command is on the stack; it may run an event loop.
    bool isExecuting = false;
    // To be deleted when that command has ended.
    bool isRetired = false;
    // So many replies are unread that the next request waits until some have been written.
    bool awaitsServer = false;
    // Runs between two slices of many requests, while the application has its turn, and before a retired agent's end.
    QBasicTimer pause;
};

// Creates the agent, once, in the GUI thread of an application that has its QApplication. The caller owns it; while the
// application runs, deleteLater() is the way to delete it, since a command may be on the stack. Null when there is no
// memory.
extern "C" QTDRIVER_EXPORT TestClient* createTestClient();
