// The agent's socket: requests that are cut anywhere, that arrive together by the hundreds, that are long, whose replies
// are not read, and agents that end meanwhile. The input is what a server sends and does (framing/conversation.h). Rules: the
// requests that are executed are the lines that were sent, each once, in order, never one within another; each has its
// one reply, in order; neither what is read ahead nor unread replies grow beyond their bounds; nothing is left waiting.

#include "framing/conversation.h"

#include <ctime>

namespace {

Conversation* current = nullptr;

} // namespace

// The linker puts this in the place of executeCommand(), see CMakeLists.txt.
QByteArray executeStandIn(const QByteArray& request, STApplicationProxy& registry) __asm__(
    "__wrap__ZN5agent14executeCommandERK10QByteArrayR18STApplicationProxy");

QByteArray executeStandIn(const QByteArray& request, STApplicationProxy& registry)
{
    return current->execute(request, registry);
}

// This program's own: an agent that is deleted waits until the server has read what is left.
extern "C" __attribute__((visibility("default"))) int nanosleep(const timespec*, timespec*)
{
    current->readSome();
    return 0;
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    Conversation conversation(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    current = &conversation;
    conversation.run();
    return 0;
}
