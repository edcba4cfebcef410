#include "kestry/hueline_classic.hpp"

#include "support/made_up_locale.hpp"
#include "support/modes.hpp"
#include "support/testing.hpp"

#include <ctime>

#include <dlfcn.h>

namespace {

// What the system's time is, and what its strftime does: what it always does while there is none.
std::time_t made_up_time = 0;
std::function<std::size_t(char*, std::size_t)> made_up_strftime;

// What strftime was called with last.
std::size_t strftime_room = 0;
std::string strftime_format;

} // namespace

// These take the place of the system's, for the library under test too.

extern "C" std::time_t time(std::time_t* out) noexcept
{
    if (out != nullptr) {
        *out = made_up_time;
    }
    return made_up_time;
}

extern "C" std::size_t strftime(char* out, std::size_t room, char const* format, std::tm const* broken_down) noexcept
{
    strftime_room = room;
    strftime_format = format;
    if (made_up_strftime) {
        return made_up_strftime(out, room);
    }
    static auto const real = reinterpret_cast<decltype(&strftime)>(dlsym(RTLD_NEXT, "strftime"));
    return real(out, room, format, broken_down);
}

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::Hueline;

// The library follows the zone by itself: nobody calls tzset.
std::string stamp_of(std::time_t seconds, char const* zone = "UTC0")
{
    made_up_time = seconds;
    setenv("TZ", zone, 1);
    return Hueline::current_time();
}

// At 2004-01-02 03:04:05.
std::string stamp() { return stamp_of(1'073'012'645); }

// With a strftime that leaves text in the buffer, and says that it wrote as much as `result`.
std::string stamp_where_strftime_leaves(std::string const& text, std::size_t result = 0)
{
    made_up_strftime = [&](char* out, std::size_t room) {
        text.copy(out, room);
        return result;
    };
    std::string const left = stamp();
    made_up_strftime = nullptr;
    return left;
}

TEST(CurrentTime, IsDateAndTimeInTheLocalZone)
{
    struct {
        std::int64_t seconds;
        char const* zone;
        char const* stamp;
    } const times[] = {{1'073'012'645, "UTC0", "[2004-01-02.03:04:05]"},
                       {1'700'000'000, "UTC0", "[2023-11-14.22:13:20]"},
                       {1'700'000'000, "XYZ-5:45", "[2023-11-15.03:58:20]"}, // east of Greenwich
                       {1'700'000'000, "ABC3:30", "[2023-11-14.18:43:20]"},
                       {1'700'000'000, "SSS-1TTT-2,J300/0,J365/0", "[2023-11-15.00:13:20]"}, // summer time in November
                       {0, "UTC0", "[1970-01-01.00:00:00]"},
                       {-1, "UTC0", "[1969-12-31.23:59:59]"},
                       {951'782'400, "UTC0", "[2000-02-29.00:00:00]"},
                       {2'147'483'647, "UTC0", "[2038-01-19.03:14:07]"},
                       {2'147'483'648, "UTC0", "[2038-01-19.03:14:08]"},
                       {4'294'967'296, "UTC0", "[2106-02-07.06:28:16]"},
                       {253'402'300'799, "UTC0", "[9999-12-31.23:59:59]"},
                       {253'402'300'800, "UTC0", "[10000-01-01.00:00:00]"}};
    for (auto const& time : times) {
        if (std::in_range<std::time_t>(time.seconds)) { // it has 32 bits on some machines
            EXPECT_EQ(stamp_of(static_cast<std::time_t>(time.seconds), time.zone), time.stamp);
        }
    }
}

TEST(CurrentTime, IsNoFailureWhereTheTimeHasNoDate)
{
    std::string const stamp = stamp_of(std::numeric_limits<std::time_t>::max()); // the year is no int
    EXPECT_EQ(stamp.front(), '[');
    EXPECT_EQ(stamp.back(), ']');
}

TEST(CurrentTime, HasTheTimeOfTheProcesssLocale)
{
    MadeUpLocale const locale({.time = "%Hh%Mm (%S seconds)"});
    EXPECT_EQ(stamp(), "[2004-01-02.03h04m (05 seconds)]");
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(stamp()), R"(\e[36m[2004-01-02.03h04m (05 seconds)])");
}

TEST(CurrentTime, HasUpTo79Characters)
{
    std::string const years = "%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y"; // 64 characters in the stamp
    {
        MadeUpLocale const locale({.time = years + "tt"});
        EXPECT_EQ(stamp(), "[2004-01-02.2004200420042004200420042004200420042004200420042004200420042004tt]");
        EXPECT_EQ(stamp().size(), 79u);
    }
    MadeUpLocale const locale({.time = years + "ttt"});
    EXPECT_LE(stamp().size(), 79u);
}

TEST(CurrentTime, AsksStrftimeFor80Bytes)
{
    stamp();
    EXPECT_EQ(strftime_room, 80u);
    EXPECT_EQ(strftime_format, "[%Y-%m-%d.%X]");
}

TEST(CurrentTime, EndsWithTheTextNotWithWhatStrftimeReturns)
{
    for (std::size_t const result : {0u, 1u, 5u, 9u, 80u, 1000u}) {
        EXPECT_EQ(stamp_where_strftime_leaves("[abc]\0xyz"s, result), "[abc]");
    }
    EXPECT_EQ(stamp_where_strftime_leaves("\0abc"s, 4), "");
}

TEST(CurrentTime, EndsWhereTheBufferEndsAndHoldsNothingOfAnEarlierOne)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        std::string const color = m == Mode::on ? "\x1b[36m" : "";
        EXPECT_EQ(stamp_where_strftime_leaves(std::string(78, 'x')), color + std::string(78, 'x'));
        EXPECT_EQ(stamp_where_strftime_leaves(std::string(79, 'x')), color + std::string(79, 'x'));
        EXPECT_EQ(stamp_where_strftime_leaves(std::string(80, 'x')), color + std::string(79, 'x'));
        EXPECT_EQ(stamp_where_strftime_leaves(""), color);
    }
}

} // namespace
