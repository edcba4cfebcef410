// A clock for the tool, which preloads it: a minute passes between two readings, so that no animation waits. After as many
// readings as CLOCK_STANDS_AFTER says it stands, and a wait does not end.
#include <chrono>
#include <cstdlib>

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
