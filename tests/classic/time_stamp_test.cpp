#include "kestry/hueline_classic.hpp"

#include "support/made_up_locale.hpp"
#include "support/modes.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

#include <ctime>

#include <dlfcn.h>

namespace {

// What the system's time and strftime do. While they are empty, what they always do.
std::optional<std::time_t> made_up_time;
std::function<std::size_t(char*, std::size_t)> made_up_strftime;

// What strftime was called with last.
std::size_t strftime_room = 0;
std::string strftime_format;

} // namespace

// These take the place of the system's, for the library under test too.

extern "C" std::time_t time(std::time_t* out) noexcept
{
    std::timespec now = {};
    std::timespec_get(&now, TIME_UTC);
    std::time_t const seconds = made_up_time.value_or(now.tv_sec);
    if (out != nullptr) {
        *out = seconds;
    }
    return seconds;
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

// The time in a zone, for a scope.
class At {
public:
    explicit At(std::optional<std::time_t> seconds, char const* zone = "UTC0")
    {
        made_up_time = seconds;
        setenv("TZ", zone, 1);
        tzset();
    }
    At(At const&) = delete;
    At& operator=(At const&) = delete;
    ~At()
    {
        made_up_time.reset();
        unsetenv("TZ");
        tzset();
    }
};

// Another strftime, for a scope.
class Strftime {
public:
    explicit Strftime(std::function<std::size_t(char*, std::size_t)> does) { made_up_strftime = std::move(does); }
    Strftime(Strftime const&) = delete;
    Strftime& operator=(Strftime const&) = delete;
    ~Strftime() { made_up_strftime = nullptr; }
};

// One that leaves text in the buffer, and says that it wrote as much as `result`.
std::function<std::size_t(char*, std::size_t)> leaving(std::string text, std::size_t result)
{
    return [text, result](char* out, std::size_t room) {
        text.copy(out, room);
        return result;
    };
}

std::time_t constexpr november = 1'700'000'000; // 2023-11-14 22:13:20 UTC
std::time_t constexpr january = 1'073'012'645;  // 2004-01-02 03:04:05 UTC

// ---------------------------------------------------------------------------------------------
// A text
// ---------------------------------------------------------------------------------------------

TEST(TimeStamp, IsCyan)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::time_stamp("12:00")), R"(\e[36m12:00)");
    EXPECT_EQ(readable(Hueline::time_stamp("")), R"(\e[36m)");
    EXPECT_EQ(readable(Hueline::time_stamp("a\0\x1b[1m\n"s)), R"(\e[36ma\x00\e[1m\n)");
    EXPECT_EQ(Hueline::time_stamp(std::string(1000, 'x')), "\x1b[36m" + std::string(1000, 'x'));
}

TEST(TimeStamp, IsTheTextAloneWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(Hueline::time_stamp("12:00"), "12:00");
        EXPECT_EQ(Hueline::time_stamp(""), "");
        EXPECT_EQ(Hueline::time_stamp("a\0b\n"s), "a\0b\n"s);
    }
}

// ---------------------------------------------------------------------------------------------
// The current time
// ---------------------------------------------------------------------------------------------

TEST(CurrentTime, IsDateAndTimeInBrackets)
{
    At const at(january);
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.03:04:05]");
}

TEST(CurrentTime, IsCyan)
{
    At const at(january);
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::current_time()), R"(\e[36m[2004-01-02.03:04:05])");
}

TEST(CurrentTime, IsPlainInNoFrillsMode)
{
    At const at(january);
    InMode const mode(Mode::no_frills);
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.03:04:05]");
}

TEST(CurrentTime, IsThatOfTheLocalZone)
{
    {
        At const at(november);
        EXPECT_EQ(Hueline::current_time(), "[2023-11-14.22:13:20]");
    }
    {
        At const at(november, "XYZ-5:45"); // east of Greenwich, where it is the next day
        EXPECT_EQ(Hueline::current_time(), "[2023-11-15.03:58:20]");
    }
    {
        At const at(november, "ABC3:30");
        EXPECT_EQ(Hueline::current_time(), "[2023-11-14.18:43:20]");
    }
    {
        At const at(november, "SSS-1TTT-2,J300/0,J365/0"); // summer time in November
        EXPECT_EQ(Hueline::current_time(), "[2023-11-15.00:13:20]");
    }
}

TEST(CurrentTime, FollowsTheZoneFromCallToCall)
{
    At const at(january);
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.03:04:05]");
    setenv("TZ", "XYZ-5:45", 1);
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.08:49:05]");
}

TEST(CurrentTime, IsAnyTimeThereIs)
{
    std::pair<std::int64_t, char const*> const times[] = {
        {0, "[1970-01-01.00:00:00]"},
        {-1, "[1969-12-31.23:59:59]"},
        {951'782'400, "[2000-02-29.00:00:00]"},
        {2'147'483'647, "[2038-01-19.03:14:07]"},
        {2'147'483'648, "[2038-01-19.03:14:08]"},
        {4'294'967'296, "[2106-02-07.06:28:16]"},
        {253'402'300'799, "[9999-12-31.23:59:59]"},
        {253'402'300'800, "[10000-01-01.00:00:00]"},
    };
    for (auto const& [seconds, stamp] : times) {
        if (std::in_range<std::time_t>(seconds)) { // it has 32 bits on some machines
            At const at(static_cast<std::time_t>(seconds));
            EXPECT_EQ(Hueline::current_time(), stamp);
        }
    }
}

TEST(CurrentTime, IsNoFailureWhereTheTimeHasNoDate)
{
    At const at(INT64_MAX); // the year is no int
    EXPECT_EQ(Hueline::current_time().front(), '[');
    EXPECT_EQ(Hueline::current_time().back(), ']');
}

TEST(CurrentTime, IsThatOfTheClock)
{
    auto const stamp_of = [](std::time_t seconds) {
        std::tm local = {};
        localtime_r(&seconds, &local);
        char text[80];
        std::snprintf(text, sizeof text, "[%04d-%02d-%02d.%02d:%02d:%02d]", local.tm_year + 1900, local.tm_mon + 1,
                      local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
        return std::string(text);
    };
    At const at(std::nullopt, "XYZ-5:45");
    std::time_t const before = std::time(nullptr);
    std::string const stamp = Hueline::current_time();
    std::time_t const after = std::time(nullptr);
    std::vector<std::string> possible;
    for (std::time_t t = before; t <= after; ++t) {
        possible.push_back(stamp_of(t));
    }
    EXPECT_NE(std::find(possible.begin(), possible.end(), stamp), possible.end()) << stamp;
    EXPECT_EQ(stamp.size(), 21u);
}

TEST(CurrentTime, HasPlainDigitsWhateverTheGlobalLocale)
{
    GroupedDigits const grouped;
    At const at(january);
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.03:04:05]");
}

TEST(CurrentTime, HasTheTimeOfTheProcesssLocale)
{
    At const at(january);
    MadeUpLocale const locale({.time = "%Hh%Mm (%S seconds)"});
    EXPECT_EQ(Hueline::current_time(), "[2004-01-02.03h04m (05 seconds)]");
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::current_time()), R"(\e[36m[2004-01-02.03h04m (05 seconds)])");
}

TEST(CurrentTime, HasUpTo79Characters)
{
    At const at(january);
    std::string const years = "%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y%Y"; // 64 characters in the stamp
    {
        MadeUpLocale const locale({.time = years + "tt"});
        EXPECT_EQ(Hueline::current_time(),
                  "[2004-01-02.2004200420042004200420042004200420042004200420042004200420042004tt]");
        EXPECT_EQ(Hueline::current_time().size(), 79u);
    }
    MadeUpLocale const locale({.time = years + "ttt"});
    EXPECT_LE(Hueline::current_time().size(), 79u);
}

TEST(CurrentTime, AsksStrftimeFor80Bytes)
{
    At const at(january);
    Hueline::current_time();
    EXPECT_EQ(strftime_room, 80u);
    EXPECT_EQ(strftime_format, "[%Y-%m-%d.%X]");
}

// ---------------------------------------------------------------------------------------------
// What strftime leaves
// ---------------------------------------------------------------------------------------------

TEST(CurrentTime, EndsWithTheTextNotWithWhatStrftimeReturns)
{
    At const at(january);
    for (std::size_t const result : {0u, 1u, 5u, 9u, 80u, 1000u}) {
        Strftime const made_up(leaving("[abc]\0xyz"s, result));
        EXPECT_EQ(Hueline::current_time(), "[abc]");
    }
    Strftime const made_up(leaving("\0abc"s, 4));
    EXPECT_EQ(Hueline::current_time(), "");
}

TEST(CurrentTime, EndsWhereTheBufferEndsIfStrftimeFillsIt)
{
    At const at(january);
    for (Mode const m : every_mode) {
        InMode const mode(m);
        std::string const color = m == Mode::on ? "\x1b[36m" : "";
        for (std::size_t const size : {78u, 79u, 80u}) {
            Strftime const made_up(leaving(std::string(size, 'x'), 0));
            EXPECT_EQ(Hueline::current_time(), color + std::string(std::min<std::size_t>(size, 79), 'x'));
        }
    }
}

TEST(CurrentTime, HoldsNothingOfAnEarlierOne)
{
    At const at(january);
    auto const stamp_after_a_long_one = [] {
        {
            Strftime const fills(leaving(std::string(80, 'x'), 0));
            Hueline::current_time();
        }
        Strftime const writes_nothing(leaving("", 0));
        return Hueline::current_time();
    };
    EXPECT_EQ(stamp_after_a_long_one(), "");
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(stamp_after_a_long_one()), R"(\e[36m)");
}

} // namespace
