#pragma once

#include "localserver.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QPointer>

#include <memory>

class STApplicationProxy;
class TestClient;

// A server that speaks to a real agent, as the input says, and the agent's commands, which are stand-ins here. Bytes are
// sent as they are, but for these, which are steps of the server:
//   |  what came before goes out, and the application handles its events
//   *  the line before is sent 200 more times; this five times at most
//   ~  the byte before is sent 70,000 more times
//   <  some of the replies are read
//   !  the server ends its sending side
//   #  the server closes the connection
// The stand-ins answer each request with "0," and the request, and these do more: the first three "big" have a reply of
// two mebibytes; "slow" takes 20 milliseconds; "loop" runs an event loop while the server does its next step; "delete" and
// "later" do the same, and the agent is deleted, or to be deleted later, then.
class Conversation
{
public:
    explicit Conversation(const QByteArray& input);
    ~Conversation();
    Q_DISABLE_COPY(Conversation)

    // Goes on until neither side has anything more to do.
    void run();
    // The server reads some of the replies.
    void readSome();
    // In place of the agent's commands.
    QByteArray execute(const QByteArray& request, STApplicationProxy& registry);

private:
    void takeSteps();
    void takeStep(char step);
    void append(const QByteArray& bytes);
    void end(bool closes);
    void flush();
    void settle();
    bool handleEvents();
    void checkBounds() const;
    void checkRequests() const;
    void checkReplies() const;
    QByteArray printableInput() const;

    const QByteArray input;
    int position = 0;
    QPointer<TestClient> client;
    std::unique_ptr<LocalServer> server;
    STApplicationProxy* unusedRegistry = nullptr; // of an agent that its own command has deleted
    QByteArray piece; // of what goes out next
    QByteArray sent;
    QList<QByteArray> requests; // as they were executed
    QList<QByteArray> replies; // of those that have one
    int repeatedLines = 0;
    int largeReplies = 0;
    bool isExecuting = false;
    bool wasDeleted = false;
    bool hasEnded = false; // the server has ended at least its sending side
    bool noticesEndInTime = true; // only when it looks for requests: no command has handled events
};
