#pragma once

#include "proxy/stapplicationproxy.h"

#include <QEventLoop>
#include <QObject>
#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <functional>

// Plays requests as the agent's socket would have them arrive: each in an event of its own, when the application has
// nothing else to do, be it in a loop that the application runs in the middle of something, a dialog's or a menu's. No
// request starts within another. When all are played, or one is held up by such a loop, the loop is ended by closing
// what it waits for.
class RequestPlayer : public QObject
{
    Q_OBJECT

public:
    // `report` is told of each request and its reply, and says whether the same request is to be executed once more, at
    // once; then it has to have the same reply.
    explicit RequestPlayer(std::function<bool(const QByteArray& request, const QByteArray& reply)> report);

    // Plays all lines of the input. Those that end in a carriage return arrive together with the next one.
    void play(const QByteArray& input);

private Q_SLOTS:
    void applicationIsIdle();
    void step();

private:
    void execute();
    QByteArray execute(const QByteArray& line);
    void dismiss();

    STApplicationProxy registry;
    std::function<bool(const QByteArray&, const QByteArray&)> report;
    QList<QByteArray> lines;
    QEventLoop* outerLoop = nullptr;
    bool executing = false;
    int loopLevelOfRequest = 0;
    bool stepIsPosted = false;
    int dismissals = 0;
};
