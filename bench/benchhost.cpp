// An application to be measured: a window of 100 named widgets, the agent, and a socket that echoes each line. The echo
// is the floor: what one line there and back costs in this event loop, whatever is done with it.

#include <QApplication>
#include <QGridLayout>
#include <QPushButton>
#include <QStringList>
#include <QTcpSocket>
#include <QTimer>
#include <QtCore/QLibrary>
#include <QtNetwork/QHostAddress>

#include <cstdio>

namespace {

class EchoSocket : public QTcpSocket
{
    Q_OBJECT

public:
    explicit EchoSocket(quint16 port)
    {
        connect(this, SIGNAL(readyRead()), SLOT(echo()));
        connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        waitForConnected();
        setSocketOption(LowDelayOption, 1);
    }

private Q_SLOTS:
    void echo()
    {
        while (canReadLine()) {
            write(readLine());
            flush();
        }
    }
};

// Loads the agent when the window manager has activated the window.
class AgentLoader : public QObject
{
public:
    explicit AgentLoader(const QString& path)
        : library(path)
    {
        startTimer(5);
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        if (!QApplication::activeWindow())
            return;
        killTimer(event->timerId());
        const auto create = reinterpret_cast<void* (*)()>(library.resolve("createTestClient"));
        if (create)
            create();
        else
            std::fprintf(stderr, "%s\n", library.errorString().toLocal8Bit().constData());
    }

private:
    QLibrary library;
};

} // namespace

// Arguments: the agent's library, the port of the echo server.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QWidget window;
    window.setObjectName(QLatin1String("window"));
    window.setWindowTitle(QLatin1String("Bench"));
    auto* layout = new QGridLayout(&window);
    const int widgets = 100;
    const int columns = 10;
    for (int i = 0; i < widgets; ++i) {
        auto* button = new QPushButton(QString::number(i));
        button->setObjectName(QString::fromLatin1("button%1").arg(i));
        layout->addWidget(button, i / columns, i % columns);
    }
    window.show();
    EchoSocket echo(static_cast<quint16>(arguments.value(2).toUShort()));
    AgentLoader loader(arguments.value(1));
    return QApplication::exec();
}

#include "benchhost.moc"
