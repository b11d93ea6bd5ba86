#pragma once

#include "hoststate.h"

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <memory>

class QApplication;
class QWidget;

// An application to be tested, with two windows of its own onto its state, independent of the agent:
//   standard output   one line for each thing that happened, as the host's slots report it by journal()
//   standard input    one line for each thing that the test wants: "do NAME" runs a registered action, "get OBJECT
//                     PROPERTY" prints a property of the object with that name as "value TEXT"
//                     "do rememberState", "do restore" and "do changes" are for tests that share a host: the last one
//                     prints each difference between the remembered state and now as "changed NAME was VALUE, is VALUE"
//                     "again" ends all that there is but the process, and the next "again" builds it anew: where a process
//                     takes long to start, the next test has it
// Options: --agent PATH, the agent's library, loaded once a window is active; --late, load it at "do loadAgent" only;
// the rest is Qt's.
class TestHost : public QObject
{
    Q_OBJECT

public:
    // Builds the application by `build` and runs it. Returns what main() returns.
    static int run(int argc, char** argv, const std::function<void(TestHost&)>& build);
    // The same for a host with an application class of its own.
    static int run(QApplication& application, const std::function<void(TestHost&)>& build);

    // Reports a line; line feeds and backslashes in it are escaped.
    void journal(const QString& line);
    // Makes "do NAME" run the function. It journals "done NAME" afterwards.
    void onRequest(const QString& name, const std::function<void()>& action);
    // Journals "SIGNAL OBJECT" at each emission, for example journalSignal(button, SIGNAL(clicked()), "clicked").
    void journalSignal(QObject* sender, const char* signal, const QString& word);
    // Journals "WORD OBJECT VALUE" at each emission of a signal with one bool or int argument.
    void journalValue(QObject* sender, const char* signal, const QString& word);
    // Runs the function at each emission.
    void onSignal(QObject* sender, const char* signal, const std::function<void()>& action);
    // Journals each event of the type at the object as "WORD OBJECT DETAILS", for example
    // "press edit 10,12 button 1 buttons 1 modifiers 0" or "keypress edit 65 'a' modifiers 0".
    void journalInput(QObject* object);

    // Null when there is none.
    QObject* agent() const { return client; }
    // Ends the agent while the application runs: at once, or as soon as the event loop is back.
    void deleteAgent();
    void retireAgent();

    // The object with this name; null when there is none.
    QObject* find(const QString& objectName) const;
    QWidget* findWidget(const QString& objectName) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void readRequest(const QByteArray& bytes);
    void executeRequests();
    void loadAgentWhenActive();
    void loadAgent();

private:
    TestHost();
    int runOnce(const std::function<void(TestHost&)>& build);
    bool waitForNextTest();
    void execute(const QString& request);
    void activateAgain();
    void journalChanges();

    QString agentLibrary;
    QByteArray pending;
    QMap<QString, std::function<void()>> actions;
    QObject* client = nullptr;
    int retries = 0;
    bool isWantedAgain = false;
    bool isMute = false;
    std::unique_ptr<HostState> state;
    HostState::Values remembered;
};
