// Requests, through the whole of the agent but its socket, to an application with every kind of widget
// (commands/richhost.h). The input is lines, as in docs/protocol.md. Rules: every request has its one reply, of the form
// that the protocol has; a refused request is refused again; and when all is over a button can still be clicked.

#include "agent/commands.h"
#include "commands/requestmutator.h"
#include "commands/requestplayer.h"
#include "commands/richhost.h"
#include "fuzzing.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <memory>

using fuzzing::check;

namespace {

QString readable(const QByteArray& request, const QByteArray& reply)
{
    return fuzzing::printable(QString::fromLatin1(request) + QLatin1String(" -> ") + QString::fromLatin1(reply));
}

// Whether the request was refused before it did anything.
bool isRefused(const QByteArray& reply)
{
    static const QRegularExpression refusal(
        QStringLiteral("\\A[2-7]|\\A8,(Command|Exception : (Type error|Widget is not derived|.* is disabled\\.\\z))"));
    return refusal.match(QString::fromLatin1(reply)).hasMatch();
}

// Whether the request may have changed the application: queries do not, nor does what is refused before it acts.
bool mayHaveActed(const QByteArray& request, const QByteArray& reply)
{
    static const QRegularExpression query(QStringLiteral("\\A([1238]|12)(,|\\z)|\\A7,(?!.*globalRect)"));
    return !query.match(QString::fromLatin1(request)).hasMatch() && !isRefused(reply);
}

class Session
{
public:
    Session()
        : player([this](const QByteArray& request, const QByteArray& reply) { return judge(request, reply); })
    {
        host = std::make_unique<RichHost>();
    }

    void run(const QByteArray& input)
    {
        player.play(input);
        if (!dirty)
            return;
        // A new application, in which no button is held and the mouse works.
        host = nullptr;
        host = std::make_unique<RichHost>();
        player.play("9,Widget:main,label,,733a4d6f75736552656c656173653a4c656674427574746f6e,\n"
                    "9,Widget:main,label,,733a4d6f75736552656c656173653a5269676874427574746f6e,\n"
                    "9,Widget:main,label,,733a4d6f75736552656c656173653a4d6964427574746f6e,\n"
                    "5,Widget:main,probe,,,");
        check(lastReply == "0,QPushButton", "the agent still works", QString::fromLatin1(lastReply));
        check(host->probeClicks() == 1, "a click still arrives", QString::number(host->probeClicks()));
        dirty = false;
    }

private:
    bool judge(const QByteArray& request, const QByteArray& reply)
    {
        static const QRegularExpression form(QStringLiteral("\\A(0,|\\?,|[2-7],(Window|Widget|Object) \\(|[89],)"));
        if (talkative)
            std::fprintf(stderr, "%s\n", qPrintable(readable(request, reply)));
        check(form.match(QString::fromLatin1(reply)).hasMatch(), "the form of a reply", readable(request, reply));
        dirty = dirty || mayHaveActed(request, reply);
        lastReply = reply;
        return isRefused(reply);
    }

    RequestPlayer player;
    std::unique_ptr<RichHost> host;
    QByteArray lastReply;
    bool dirty = false;
    // Set the variable to see what happens at an input.
    const bool talkative = qEnvironmentVariableIsSet("QTDRIVER_FUZZ_TALK");
};

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static auto* session = new Session;
    session->run(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}

extern "C" __attribute__((visibility("default"))) std::size_t LLVMFuzzerCustomMutator(
    uint8_t* data, std::size_t size, std::size_t maximumSize, unsigned seed)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QByteArray result = RequestMutator(seed).mutated(input).left(static_cast<int>(maximumSize));
    std::copy(result.begin(), result.end(), data);
    return static_cast<std::size_t>(result.size());
}
