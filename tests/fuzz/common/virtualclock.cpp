// A clock that does not wait. Qt waits for events in ppoll() and reads its timers' time from clock_gettime(); this
// program has its own of both. Where nothing can happen but the end of a waiting time, that time is over at once. So
// the half second that the agent grants a window manager costs nothing, and each input takes the same course each time.
// libFuzzer reads another clock, the wall's.

#include "virtualclock.h"

#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

const long nanosecondsPerSecond = 1000000000L;
const long nanosecondsPerMillisecond = 1000000L;

// How far the virtual clock is ahead.
timespec ahead = {0, 0};

timespec sum(const timespec& a, const timespec& b)
{
    timespec result = {a.tv_sec + b.tv_sec, a.tv_nsec + b.tv_nsec};
    if (result.tv_nsec >= nanosecondsPerSecond) {
        result.tv_nsec -= nanosecondsPerSecond;
        ++result.tv_sec;
    }
    return result;
}

int pollNow(pollfd* descriptors, nfds_t count, const sigset_t* mask)
{
    timespec zero = {0, 0};
    return static_cast<int>(syscall(SYS_ppoll, descriptors, count, &zero, mask, sizeof(unsigned long)));
}

} // namespace

void advanceClock(int milliseconds)
{
    ahead = sum(ahead, {milliseconds / 1000, (milliseconds % 1000) * nanosecondsPerMillisecond});
}

extern "C" {

__attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec* time)
{
    if (syscall(SYS_clock_gettime, clock, time) != 0)
        return -1;
    if (clock == CLOCK_MONOTONIC)
        *time = sum(*time, ahead);
    return 0;
}

__attribute__((visibility("default"))) int ppoll(
    pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask)
{
    const int ready = pollNow(descriptors, count, mask);
    if (ready != 0 || (timeout && timeout->tv_sec == 0 && timeout->tv_nsec == 0))
        return ready;
    if (!timeout) // for ever: only another thread can end that
        return static_cast<int>(syscall(SYS_ppoll, descriptors, count, nullptr, mask, sizeof(unsigned long)));
    ahead = sum(ahead, *timeout);
    return 0;
}

__attribute__((visibility("default"))) int __ppoll_chk(
    pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask, std::size_t)
{
    return ppoll(descriptors, count, timeout, mask);
}

} // extern "C"
