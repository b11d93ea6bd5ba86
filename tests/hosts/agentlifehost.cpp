// An application that ends the agent in the middle of its work, and that looks for what the agent leaves behind. See
// tests/protocol/test_agent_life.py.

#include "latin1.h"
#include "signalhandler.h"
#include "testhost.h"

#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QEventLoop>
#include <QtCore/QSocketNotifier>

#ifndef Q_OS_WIN
#include <unistd.h>
#endif

namespace {

// As a dialog within a slot does whose own handlers end the agent: it is over before the slot returns.
void deleteAgentInEventLoop(TestHost& host)
{
    QEventLoop loop;
    QTimer timer;
    host.onSignal(&timer, SIGNAL(timeout()), [&] {
        host.deleteAgent();
        loop.quit();
    });
    timer.start(0);
    loop.exec();
}

#ifndef Q_OS_WIN
// Tells a notifier of a pipe without input that there is some, as an event loop does that is late.
void tellIdleNotifier(TestHost& host)
{
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        return;
    int count = 0;
    {
        QSocketNotifier notifier(ends[0], QSocketNotifier::Read);
        host.onSignal(&notifier, SIGNAL(activated(int)), [&count] { ++count; });
        QEvent told(QEvent::SockAct);
        QCoreApplication::sendEvent(&notifier, &told);
    }
    ::close(ends[0]);
    ::close(ends[1]);
    host.journal(QString::fromLatin1("idle notifier activated %1").arg(count));
}
#endif

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(latin1("life"));
    window->setWindowTitle(latin1("Life"));
    auto* layout = new QVBoxLayout(window);
    const auto addEdit = [&](const char* name, const std::function<void()>& atEachChange) {
        auto* edit = new QLineEdit;
        edit->setObjectName(latin1(name));
        layout->addWidget(edit);
        host.onSignal(edit, SIGNAL(textChanged(QString)), atEachChange);
        host.journalValue(edit, SIGNAL(textChanged(QString)), latin1("changed"));
    };
    addEdit("delete", [&host] { host.deleteAgent(); });
    addEdit("deleteInLoop", [&host] { deleteAgentInEventLoop(host); });

#ifndef Q_OS_WIN
    host.onRequest(latin1("tellIdleNotifier"), [&host] { tellIdleNotifier(host); });
#endif
    host.onRequest(latin1("nameDispatcher"), [&host] {
        const bool isGlib = QAbstractEventDispatcher::instance()->inherits("QEventDispatcherGlib");
        host.journal(latin1(isGlib ? "dispatcher of GLib" : "dispatcher of Qt"));
    });
    // Whenever something arrives at the agent, all events that are posted in this thread go.
    host.onRequest(latin1("losePostedEvents"), [&host] {
        host.onSignal(host.agent(), SIGNAL(readyRead()), [&host] {
            QCoreApplication::removePostedEvents(nullptr);
            host.journal(latin1("events removed"));
        });
    });
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
