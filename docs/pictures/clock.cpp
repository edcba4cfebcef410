// The clocks of a program that is being drawn: they take the place of the standard library's and of the C library's in
// the whole process, libhueline included. Nobody waits for csi::delay, and a time stamp is the same at each run.
#include <chrono>
#include <ctime>

// 2026-01-02 03:04:05 UTC
std::time_t constexpr made_up_time = 1767323045;

extern "C" std::time_t time(std::time_t* result) noexcept
{
    if (result != nullptr) {
        *result = made_up_time;
    }
    return made_up_time;
}

// A minute passes between two readings.
std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    static int readings = 0;
    return time_point(minutes(++readings));
}
