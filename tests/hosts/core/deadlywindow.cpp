#include "corewindows.h"
#include "testhost.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>

#include <cstdlib>

namespace {

// Deletes a window after an event of an object in it, as soon as the event loop runs again.
class Killer : public QObject
{
public:
    Killer(TestHost& testHost, QObject* watched, QEvent::Type type, QWidget* victim)
        : QObject(victim)
        , host(testHost)
        , eventType(type)
        , window(victim)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == eventType) {
            auto* timer = new QTimer(window);
            timer->setSingleShot(true);
            QWidget* victim = window;
            host.onSignal(timer, SIGNAL(timeout()), [victim] { delete victim; });
            timer->start(0);
        }
        return false;
    }

private:
    TestHost& host;
    QEvent::Type eventType;
    QWidget* window;
};

// Runs an event loop in its destructor, as one does that asks the user whether to save. Qt has taken it out of its parent's
// children by then, and left a null pointer in its place.
template <class Base>
class AskingWhenDeleted : public Base
{
public:
    AskingWhenDeleted(TestHost& testHost, QEventLoop& eventLoop)
        : host(testHost)
        , loop(eventLoop)
    {
    }

    ~AskingWhenDeleted() override
    {
        host.journal(latin1("asking"));
        loop.exec();
    }

private:
    TestHost& host;
    QEventLoop& loop;
};

void addPaneThatAsksWhenDeleted(TestHost& host, QWidget* window)
{
    auto* pane = add(window, named(new QGroupBox(latin1("Pane")), "pane"));
    auto* layout = new QVBoxLayout(pane);
    auto* loop = new QEventLoop(window);
    layout->addWidget(named(new AskingWhenDeleted<QWidget>(host, *loop), "asking"));
    layout->addWidget(named(new QPushButton(latin1("Waiting")), "waiting"));
    layout->addWidget(new QPushButton(latin1("Unnamed one")));
    auto* label = new QLabel(latin1("&Answer:"));
    layout->addWidget(label);
    auto* field = named(new QLineEdit, "field");
    layout->addWidget(field);
    label->setBuddy(field);
    pane->show();
    host.onRequest(latin1("deletePane"), [pane] { delete pane; });
    host.onRequest(latin1("answer"), [loop] { loop->quit(); });
}

// Tray icons are looked for among the objects of the application itself.
void addTrayThatAsksWhenDeleted(TestHost& host)
{
    auto* tray = new QObject(QApplication::instance());
    auto* loop = new QEventLoop(QApplication::instance());
    new QObject(tray);
    (new AskingWhenDeleted<QObject>(host, *loop))->setParent(tray);
    named(new QSystemTrayIcon(tray), "trayIcon");
    host.onRequest(latin1("deleteTray"), [tray] { delete tray; });
    host.onRequest(latin1("answerTray"), [loop] { loop->quit(); });
}

// As a dialog within a slot does whose own handlers delete the agent: the loop ends it before the slot returns.
void retireAgentInEventLoop(TestHost& host)
{
    QEventLoop loop;
    QTimer retirement;
    host.onSignal(&retirement, SIGNAL(timeout()), [&host] { host.retireAgent(); });
    retirement.setSingleShot(true);
    retirement.start(0);
    QTimer::singleShot(100, &loop, SLOT(quit()));
    loop.exec();
}

} // namespace

// Buttons whose slots are the end of something.
void buildDeadlyWindow(TestHost& host)
{
    host.onRequest(latin1("showDeadly"), [&host] {
        auto* window = addWindow("deadly", "Deadly", QPoint(500, 30));
        auto* self = addButton(host, window, "deleteSelf");
        host.onSignal(self, SIGNAL(pressed()), [self] { delete self; });
        auto* later = addButton(host, window, "deleteOnClick");
        host.onSignal(later, SIGNAL(clicked()), [later] { delete later; });
        host.onSignal(addButton(host, window, "closeWindow"), SIGNAL(clicked()), [window] { delete window; });
        host.onSignal(addButton(host, window, "closeOnPress"), SIGNAL(pressed()), [window] { delete window; });
        host.onSignal(addButton(host, window, "quit"), SIGNAL(clicked()), [] { QCoreApplication::quit(); });
        host.onSignal(addButton(host, window, "exit"), SIGNAL(clicked()), [] { ::exit(7); });
        host.onSignal(addButton(host, window, "dialog"), SIGNAL(clicked()), [&host] { openDialog(host, 1); });
        host.onSignal(add(window, named(new QLineEdit, "retire")), SIGNAL(textChanged(QString)),
            [&host] { retireAgentInEventLoop(host); });
        host.onRequest(latin1("addAskingTray"), [&host] { addTrayThatAsksWhenDeleted(host); });
        host.onRequest(latin1("addAskingPane"), [&host, window] { addPaneThatAsksWhenDeleted(host, window); });
        auto* mover = add(window, named(new QWidget, "mover"));
        mover->setMinimumSize(100, 50);
        host.onRequest(
            latin1("dieOnMove"), [&host, window, mover] { new Killer(host, mover, QEvent::MouseMove, window); });
        host.onRequest(
            latin1("dieOnActivate"), [&host, window] { new Killer(host, window, QEvent::WindowActivate, window); });
        window->show();
    });
}
