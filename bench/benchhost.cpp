// An application to be measured: a window of 100 named widgets, the agent, and a socket that echoes each line. The echo
// is the floor: what one line there and back costs in this event loop, whatever is done with it.

#include "agentloader.h"

#include <QApplication>
#include <QGridLayout>
#include <QPushButton>
#include <QStringList>
#include <QTcpSocket>
#include <QtNetwork/QHostAddress>

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
