// The steady clock of an example that is being drawn: a tenth of a second passes between two readings, so that a
// program that spares the terminal some of its frames draws all of them. Only for programs that preload it: the one
// that draws them measures its own time.
#include <chrono>

std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept
{
    static int readings = 0;
    return time_point(milliseconds(100 * ++readings));
}
