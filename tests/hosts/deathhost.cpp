// Widgets that die at a chosen moment of the command that acts on them; see tests/protocol/test_presses.py. Time is
// counted in rounds of events from the moment when the command has the window raised.

#include "latin1.h"
#include "testhost.h"

#include <QLineEdit>
#include <QSlider>
#include <QTimer>
#include <QWidget>
#include <QtCore/QBasicTimer>
#include <QtCore/QEvent>
#include <QtCore/QPointer>

namespace {

const int mostRounds = 48;

// Deletes a widget some rounds of events after its window was raised for the first time.
class Death : public QObject
{
public:
    Death(TestHost& testHost, QWidget* widget, int rounds)
        : QObject(widget->window())
        , host(testHost)
        , victim(widget)
        , roundsLeft(rounds)
    {
        setObjectName(latin1("death"));
        parent()->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ZOrderChange && !timer.isActive())
            timer.start(0, this);
        return false;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (roundsLeft-- > 0)
            return;
        timer.stop();
        host.journal(latin1("died"));
        delete victim;
        deleteLater();
    }

private:
    TestHost& host;
    QPointer<QWidget> victim;
    int roundsLeft;
    QBasicTimer timer;
};

struct Victim
{
    const char* name;
    QWidget* (*make)(QWidget* parent);
};

// All at the same place, with nothing but the window below them.
const Victim victims[] = {
    {"plain", [](QWidget* parent) { return new QWidget(parent); }},
    {"field", [](QWidget* parent) -> QWidget* { return new QLineEdit(parent); }},
    {"slider", [](QWidget* parent) -> QWidget* { return new QSlider(Qt::Horizontal, parent); }},
};

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(latin1("below"));
    window->setWindowTitle(latin1("Deaths"));
    host.journalInput(window);
    for (const Victim& kind : victims) {
        for (int rounds = 0; rounds < mostRounds; ++rounds) {
            host.onRequest(latin1("%1In%2").arg(latin1(kind.name)).arg(rounds), [=, &host] {
                QWidget* victim = kind.make(window);
                victim->setObjectName(latin1("victim"));
                victim->setAttribute(Qt::WA_NoMousePropagation);
                victim->setGeometry(50, 50, 200, 40);
                host.journalInput(victim);
                victim->show();
                new Death(host, victim, rounds);
            });
        }
    }
    host.onRequest(latin1("clear"), [window] {
        delete window->findChild<QWidget*>(latin1("victim"));
        qDeleteAll(window->findChildren<QObject*>(latin1("death")));
    });
    auto* witness = new QWidget(window);
    witness->setObjectName(latin1("witness"));
    witness->setGeometry(300, 100, 80, 80);
    host.journalInput(witness);
    window->setGeometry(60, 60, 400, 200);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
