#include "requestplayer.h"

#include "agent/commands.h"
#include "fuzzing.h"
#include "virtualclock.h"

#include <QApplication>
#include <QDialog>
#include <QDrag>
#include <QWidget>
#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QThread>

namespace {

int loopLevel()
{
    return QThread::currentThread()->loopLevel();
}

} // namespace

RequestPlayer::RequestPlayer(std::function<bool(const QByteArray&, const QByteArray&)> reporter)
    : report(std::move(reporter))
{
    connect(QAbstractEventDispatcher::instance(), SIGNAL(aboutToBlock()), SLOT(applicationIsIdle()));
}

void RequestPlayer::play(const QByteArray& input)
{
    lines = input.split('\n');
    dismissals = 0;
    QEventLoop loop;
    outerLoop = &loop;
    loop.exec();
    outerLoop = nullptr;
}

void RequestPlayer::applicationIsIdle()
{
    // Within a request the agent itself waits for the application at times; that is for the clock to end.
    const bool heldUp = executing && loopLevel() > loopLevelOfRequest;
    if (!outerLoop || stepIsPosted || (executing && !heldUp))
        return;
    stepIsPosted = true;
    QMetaObject::invokeMethod(this, "step", Qt::QueuedConnection);
}

void RequestPlayer::step()
{
    stepIsPosted = false;
    const int millisecondsBetweenRequests = 20;
    advanceClock(millisecondsBetweenRequests);
    if (executing || (lines.isEmpty() && loopLevel() > 1))
        dismiss();
    else if (lines.isEmpty())
        outerLoop->quit();
    else
        execute();
}

void RequestPlayer::execute()
{
    bool together = true;
    while (together && !lines.isEmpty()) {
        QByteArray line = lines.takeFirst();
        together = line.endsWith('\r');
        if (together)
            line.chop(1);
        const QByteArray reply = execute(line);
        if (!report(line, reply))
            continue;
        const QByteArray again = execute(line);
        fuzzing::check(again == reply, "a refused request is refused again",
            fuzzing::printable(QString::fromLatin1(line + " -> " + reply + " -> " + again)));
    }
}

QByteArray RequestPlayer::execute(const QByteArray& line)
{
    executing = true;
    loopLevelOfRequest = loopLevel();
    const QByteArray reply = agent::executeCommand(line, registry);
    executing = false;
    return reply;
}

void RequestPlayer::dismiss()
{
    const int patience = 200;
    fuzzing::check(++dismissals < patience, "every loop of the application's can be ended", QString());
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    else if (QWidget* modal = QApplication::activeModalWidget())
        modal->close();
    else
        QDrag::cancel();
}
