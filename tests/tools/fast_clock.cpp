// A clock for the tool, which preloads it: a minute passes between two readings, so that no animation waits.
#include <chrono>

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    static int readings = 0;
    return time_point(minutes(++readings));
}
