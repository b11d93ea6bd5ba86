#include "localserver.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

const int requestBufferBytes = 4096;
const int replyBufferBytes = 65536;

int lastServerEnd = -1;

bool isConnected(int socket)
{
    int domain = AF_UNIX;
    socklen_t length = sizeof(domain);
    getsockopt(socket, SOL_SOCKET, SO_DOMAIN, &domain, &length);
    return domain == AF_UNIX;
}

void limit(int socket, int bytes)
{
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &bytes, sizeof(bytes));
    fcntl(socket, F_SETFL, fcntl(socket, F_GETFL) | O_NONBLOCK);
}

} // namespace

// This program's own: no connection leaves the process. As with a real one, the first call only begins to connect.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr*, socklen_t)
{
    int ends[2] = {-1, -1};
    if (isConnected(socket)) {
        errno = EISCONN;
        return -1;
    }
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return -1;
    limit(ends[0], replyBufferBytes);
    limit(ends[1], requestBufferBytes);
    dup3(ends[0], socket, O_CLOEXEC);
    ::close(ends[0]);
    lastServerEnd = ends[1];
    errno = EINPROGRESS;
    return -1;
}

LocalServer::LocalServer()
    : end(std::exchange(lastServerEnd, -1))
{
}

LocalServer::~LocalServer()
{
    close();
}

bool LocalServer::send(const QByteArray& bytes)
{
    waiting += bytes;
    int sent = 0;
    while (end != -1 && isSending && sent < waiting.size()) {
        const auto count = ::send(end, waiting.constData() + sent, waiting.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            break;
        sent += static_cast<int>(count);
    }
    waiting.remove(0, sent);
    return sent > 0;
}

bool LocalServer::read(int maximum)
{
    int total = 0;
    while (end != -1 && total < maximum) {
        char buffer[replyBufferBytes];
        const auto count = ::read(end, buffer, std::min(static_cast<std::size_t>(maximum - total), sizeof(buffer)));
        sawEnd = sawEnd || count == 0 || (count < 0 && errno == ECONNRESET);
        if (count <= 0)
            break;
        fromAgent.append(buffer, static_cast<int>(count));
        total += static_cast<int>(count);
    }
    return total > 0;
}

void LocalServer::endSending()
{
    isSending = false;
    if (end != -1)
        shutdown(end, SHUT_WR);
}

void LocalServer::close()
{
    if (end != -1)
        ::close(end);
    end = -1;
}
