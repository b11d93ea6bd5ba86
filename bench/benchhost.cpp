// An application to be measured: a window of 100 named widgets, the agent, and a socket of the application's own, which
// is measured beside the agent's. Lines to that socket and their answers:
//   heap reset      "done"; begins to count what is done with the heap
//   heap            "ALLOCATIONS RETAINED PEAK" since then
//   qt COMMAND ...  "done", after Qt's own calls for the agent's command
//   anything else   the line itself, an echo: what one line there and back costs in this event loop

#include "agentloader.h"
#include "heapcounter.h"
#include "qtcalls.h"

#include <QApplication>
#include <QGridLayout>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QStringList>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QTcpSocket>
#include <QTimerEvent>
#include <QtNetwork/QHostAddress>

namespace {

class FloorSocket : public QTcpSocket
{
    Q_OBJECT

public:
    FloorSocket(quint16 port, QWidget* measuredWindow)
        : window(measuredWindow)
    {
        connect(this, SIGNAL(readyRead()), SLOT(answer()));
        connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        waitForConnected();
        setSocketOption(LowDelayOption, 1);
    }

private Q_SLOTS:
    void answer()
    {
        while (canReadLine()) {
            write(answerTo(readLine()));
            flush();
        }
    }

private:
    QByteArray answerTo(const QByteArray& line)
    {
        if (line == "heap reset\n") {
            startTimer(0); // when the buffers of this line and its answer are gone
            return "done\n";
        }
        if (line == "heap\n") {
            const HeapUse use = heapUse();
            return QByteArray::number(static_cast<qlonglong>(use.allocations)) + ' '
                + QByteArray::number(static_cast<qlonglong>(use.retained)) + ' '
                + QByteArray::number(static_cast<qlonglong>(use.peak)) + '\n';
        }
        if (line.startsWith("qt "))
            return callQt(line.trimmed().mid(3), window) ? "done\n" : "no such command\n";
        return line;
    }

    void timerEvent(QTimerEvent* event) override
    {
        killTimer(event->timerId());
        resetHeapUse();
    }

    QWidget* window;
};

void fillWindow(QWidget& window)
{
    window.setObjectName(QLatin1String("window"));
    window.setWindowTitle(QLatin1String("Bench"));
    auto* layout = new QGridLayout(&window);
    const int columns = 10;
    const int buttons = 94; // with the line edits, the tab bar, its two buttons and the window: 100 widgets
    for (int i = 0; i < buttons; ++i) {
        auto* button = new QPushButton(QString::number(i));
        button->setObjectName(QString::fromLatin1("button%1").arg(i));
        button->setCheckable(true);
        layout->addWidget(button, i / columns, i % columns);
    }
    auto* line = new QLineEdit;
    line->setObjectName(QLatin1String("line"));
    layout->addWidget(line, buttons / columns, buttons % columns);
    auto* other = new QLineEdit;
    other->setObjectName(QLatin1String("other"));
    layout->addWidget(other, buttons / columns, buttons % columns + 1);
    auto* bar = new QTabBar;
    bar->addTab(QLatin1String("One"));
    bar->addTab(QLatin1String("Two"));
    layout->addWidget(bar, buttons / columns, buttons % columns + 2, 1, 3);
    window.setGeometry(20, 20, 900, 500);
}

} // namespace

// Arguments: the agent's library, the port for the application's own socket.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QWidget window;
    fillWindow(window);
    window.show();
    QSystemTrayIcon icon(QIcon(QPixmap(16, 16)), &application);
    icon.setObjectName(QLatin1String("icon"));
    FloorSocket floor(static_cast<quint16>(arguments.value(2).toUShort()), &window);
    AgentLoader loader(arguments.value(1));
    return QApplication::exec();
}

#include "benchhost.moc"
