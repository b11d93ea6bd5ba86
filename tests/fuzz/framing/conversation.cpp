#include "conversation.h"

#include "agent/testclient.h"
#include "fuzzing.h"
#include "proxy/stapplicationproxy.h"
#include "virtualclock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

using fuzzing::check;

namespace {

const char steps[] = "|*~<!#";
const char stepsWithEvents[] = "|<!#";
const int repetitions = 200;
const int mostRepeatedLines = 5;
const int longRun = 70000;
const int mostSent = 300 * 1000;
const int largeReply = 2 * 1024 * 1024;
const int mostLargeReplies = 3;
const int bytesOfARead = 100000;

// The agent's own bounds, as docs/reliability.md has them.
const int mostReadAhead = 64 * 1024;
const int mostUnreadReplies = 4 * 1024 * 1024;

// The lines that have an end, without it.
QList<QByteArray> completeLines(const QByteArray& bytes)
{
    QList<QByteArray> lines = bytes.split('\n');
    lines.removeLast();
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    return lines;
}

bool isBeginningOf(const QList<QByteArray>& some, const QList<QByteArray>& all)
{
    return some.size() <= all.size() && some == all.mid(0, some.size());
}

} // namespace

Conversation::Conversation(const QByteArray& text)
    : input(text)
    , client(createTestClient())
    , server(new LocalServer)
{
}

Conversation::~Conversation()
{
    server->close();
    delete client.data();
    delete unusedRegistry;
}

void Conversation::run()
{
    settle();
    while (position < input.size())
        takeSteps();
    while (server->read(bytesOfARead) || server->send() || handleEvents())
        checkBounds();
    checkRequests();
    checkReplies();
}

// The steps that send something, up to the next step that has the application handle events, and that step.
void Conversation::takeSteps()
{
    bool isOver = false;
    while (position < input.size() && !isOver) {
        const char byte = input.at(position++);
        if (QByteArray(steps).contains(byte))
            takeStep(byte);
        else
            append(QByteArray(1, byte));
        isOver = QByteArray(stepsWithEvents).contains(byte);
    }
    flush();
    settle();
}

void Conversation::takeStep(char step)
{
    switch (step) {
    case '*': {
        const QByteArray line = piece.mid(piece.lastIndexOf('\n', qMax(0, static_cast<int>(piece.size()) - 2)) + 1);
        const bool isRepeated = line.endsWith('\n') && repeatedLines++ < mostRepeatedLines;
        return append(isRepeated ? line.repeated(repetitions) : QByteArray());
    }
    case '~':
        return append(QByteArray(piece.isEmpty() ? 0 : longRun, piece.isEmpty() ? ' ' : piece.back()));
    case '<':
        readSome();
        break;
    case '!':
    case '#':
        end(step == '#');
        break;
    default:
        break;
    }
}

// Bytes that the agent has not taken by then never arrive.
void Conversation::end(bool closes)
{
    flush();
    if (!closes)
        settle();
    sent.chop(hasEnded ? 0 : server->unsent());
    hasEnded = true;
    closes ? server->close() : server->endSending();
}

void Conversation::readSome()
{
    server->read(bytesOfARead);
}

void Conversation::append(const QByteArray& bytes)
{
    if (sent.size() + piece.size() + bytes.size() <= mostSent)
        piece += bytes;
}

// Bytes that have gone out after the end do not arrive.
void Conversation::flush()
{
    if (!hasEnded) {
        sent += piece;
        server->send(piece);
    }
    piece.clear();
}

// The application handles its events until there are none; the server does not read meanwhile.
void Conversation::settle()
{
    while (server->send() || handleEvents())
        checkBounds();
    checkBounds();
}

// One round of the application's events, and time for those that wait for it; true when the agent did anything.
bool Conversation::handleEvents()
{
    const auto state = [this] {
        return QList<qint64>() << requests.size() << (client ? client->bytesAvailable() : -1)
                               << (client ? client->bytesToWrite() : -1) << (client ? client->state() : -1);
    };
    const int patience = 4;
    const QList<qint64> before = state();
    for (int round = 0; round < patience; ++round) {
        QCoreApplication::processEvents();
        if (!isExecuting)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (state() != before)
            return true;
        advanceClock(1);
    }
    return false;
}

QByteArray Conversation::execute(const QByteArray& request, STApplicationProxy& registry)
{
    check(!isExecuting, "one command at a time", QString::fromLatin1(printableInput()));
    requests.append(request);
    isExecuting = true;
    const bool deletes = request == "delete";
    const bool isLoop = deletes || request == "loop" || request == "later";
    const int slowMilliseconds = 20;
    if (request == "slow")
        advanceClock(slowMilliseconds);
    if (request == "later" && client)
        client->deleteLater();
    if (isLoop) {
        noticesEndInTime = false;
        takeSteps();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    isExecuting = false;
    if (deletes)
        delete client.data();
    wasDeleted = wasDeleted || !client || request == "later";
    if (!client)
        unusedRegistry = &registry;
    const bool isLarge = request == "big" && largeReplies++ < mostLargeReplies;
    const QByteArray reply = "0," + (isLarge ? QByteArray(largeReply, 'x') : request);
    if (client)
        replies.append(reply);
    return reply;
}

void Conversation::checkBounds() const
{
    if (!client)
        return;
    const qint64 longestReply = largeReply + 3;
    check(client->bytesAvailable() <= mostReadAhead, "the bound of what is read ahead",
        QString::number(client->bytesAvailable()));
    check(client->bytesToWrite() <= mostUnreadReplies + qMax<qint64>(longestReply, sent.size()),
        "the bound of unread replies", QString::number(client->bytesToWrite()));
}

void Conversation::checkRequests() const
{
    const QList<QByteArray> all = completeLines(sent);
    const QString detail = QString::fromLatin1(printableInput())
        + QString::fromLatin1("\n%1 of %2 requests").arg(requests.size()).arg(all.size());
    check(isBeginningOf(requests, all), "requests are the lines that were sent, in order", detail);
    // Unless the agent may have noticed the end of the connection, or has one itself, nothing is left over.
    const bool mayBeLeftOver
        = wasDeleted || (hasEnded && (server->isClosed() || !noticesEndInTime || sent.contains("big")));
    check(mayBeLeftOver || requests.size() == all.size(), "each request is executed", detail);
    check(mayBeLeftOver || server->unsent() == 0 || hasEnded, "all that the server sends is read", detail);
}

void Conversation::checkReplies() const
{
    const QByteArray& bytes = server->received();
    const QString detail = QString::fromLatin1(printableInput());
    const bool mayBeCut = server->isClosed() || hasEnded || wasDeleted;
    check(mayBeCut || bytes.endsWith('\n'), "replies have an end", detail);
    QList<QByteArray> lines = bytes.split('\n');
    const QByteArray cut = lines.takeLast();
    const bool greets = !lines.isEmpty() && lines.first().startsWith("+client+ 2.1.0 ");
    check(greets || (mayBeCut && lines.isEmpty()), "the first line is the greeting", detail);
    const QList<QByteArray> told = lines.mid(1);
    check(isBeginningOf(told, replies), "replies come in the order of their requests", detail);
    check(mayBeCut || told.size() == replies.size(), "each request has its one reply", detail);
    check(replies.value(told.size()).startsWith(cut) || lines.isEmpty(), "a reply that was cut is one", detail);
    check(!wasDeleted || server->isClosed() || server->hasSeenEnd(), "a deleted agent ends the connection", detail);
}

QByteArray Conversation::printableInput() const
{
    return fuzzing::printable(QString::fromLatin1(input)).toLatin1();
}
