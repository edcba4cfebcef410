// A clock for the tool, which preloads it: a minute passes between two readings, so that no animation waits. After as many
// readings as CLOCK_STANDS_AFTER says it stands, and a wait does not end. With STOP_BEFORE_WAIT, SIGTSTP comes once, at the
// last moment before the first wait for a key.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <dlfcn.h>
#include <poll.h>

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    static char const* const most = std::getenv("CLOCK_STANDS_AFTER");
    static int const last = most != nullptr ? std::atoi(most) : -1;
    static int readings = 0;
    if (readings != last) {
        ++readings;
    }
    return time_point(minutes(readings));
}

extern "C" int ppoll(pollfd* polled, nfds_t count, timespec const* time, sigset_t const* mask)
{
    static bool stops = std::getenv("STOP_BEFORE_WAIT") != nullptr;
    static auto* const next = reinterpret_cast<decltype(&ppoll)>(dlsym(RTLD_NEXT, "ppoll"));
    if (std::exchange(stops, false)) {
        std::raise(SIGTSTP);
    }
    return next(polled, count, time, mask);
}
