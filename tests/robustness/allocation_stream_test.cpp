// Memory that runs out at each allocation in turn, in each operation of the stream interface.

#include "kestry/hueline_stream.hpp"

#include "buffers.hpp"
#include "failing_new.hpp"

#include "stream/system_clock.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Bytes = std::vector<unsigned char>;

// Longer than a string that needs no memory of its own.
std::string const text = "a text of thirty-two characters.";

std::string const bar_frames = "|/-\\";

struct Case {
    std::string name;
    void (*prepare)();
    void (*act)(std::ostream& os);
};

void PrintTo(Case const& tested, std::ostream* os) { *os << tested.name; }

void nothing() {}

// A record, or a saved record, whose strings need memory of their own.
void long_colors() { std::cout << rgb{100, 100, 100} << on_rgb{200, 200, 200} << italic; }
void long_colors_saved() { std::cout << rgb{100, 100, 100} << italic << push; }
void long_colors_forgotten() { std::cout << rgb{100, 100, 100} << italic << push << reset; }

// What has to be as before or as after in the end.
// clang-format off
std::vector<Case> const whole_cases = {
    {"Push",          long_colors,           [](std::ostream& os) { os << push; }},
    {"Pull",          long_colors_forgotten, [](std::ostream& os) { os << pull; }},
    {"PushAgain",     long_colors_saved,     [](std::ostream& os) { os << push; }},
    {"Reset",         long_colors_saved,     [](std::ostream& os) { os << reset; }},
    {"Adjust",        long_colors,           [](std::ostream& os) { os << adjust; }},
    {"Red",           nothing,               [](std::ostream& os) { os << red; }},
    {"OnRed",         long_colors,           [](std::ostream& os) { os << on_red; }},
    {"Color",         nothing,               [](std::ostream& os) { os << color{INT_MIN}; }},
    {"OnColor",       nothing,               [](std::ostream& os) { os << on_color{INT_MIN}; }},
    {"Rgb",           nothing,               [](std::ostream& os) { os << rgb{100, 200, 255}; }},
    {"OnRgb",         nothing,               [](std::ostream& os) { os << on_rgb{100, 200, 255}; }},
    {"OverAnother",   long_colors,           [](std::ostream& os) { os << rgb{INT_MIN, INT_MIN, INT_MIN}; }},
    {"Next",          nothing,               [](std::ostream& os) { kestry::Hueline::next(os, 3, true); }},
    {"Cup",           nothing,               [](std::ostream& os) { os << csi::cup{INT_MAX, INT_MIN}; }},
    {"ColorModeState", nothing,              [](std::ostream& os) { os << color_mode_state; }},
    {"Spinner",       nothing,               [](std::ostream& os) { os << spinner{bar_frames, {}}; }},
    {"CsiRgb",        nothing,               [](std::ostream& os) { os << csi::rgb(100, 200, 255); }},
    {"CsiOnRgb",      nothing,               [](std::ostream& os) { os << csi::on_rgb(100, 200, 255); }},
    {"CsiColor",      nothing,               [](std::ostream& os) { os << csi::color(INT_MIN); }},
    {"Col",           nothing,               [](std::ostream& os) { os << col(text); }},
    {"DumpOfWord",    nothing,               [](std::ostream& os) { os << HexDump(0x123456789abcdef0UL); }},
    {"DumpOfWords",   nothing,               [](std::ostream& os) { os << HexDump(std::vector<unsigned>(9, 0xabcdefU)); }},
    {"DumpOfBytes",   nothing,               [](std::ostream& os) { os << HexDump(Bytes(40, 0xab)); }},
    {"DumpOfSeparatedBytes", nothing,        [](std::ostream& os) { os << HexDump(Bytes(4, 0xab), "-----"); }},
    {"DumpOfText",    nothing,               [](std::ostream& os) { os << HexDump(text); }},
    {"CopyOfADump",   nothing,               [](std::ostream& os) { HexDump const dump(text); os << HexDump(dump); }},
    {"RawData",       nothing,               [](std::ostream& os) { os << HexDump::raw_data(Bytes(9, 0xab)); }},
};

// What is made of several steps, some of which may have been taken.
std::vector<Case> const composed_cases = {
    {"StatusLine",     nothing, [](std::ostream& os) { os << status_line{2, 0, 5, text, text, text, text, bar_frames, text}; }},
    {"ProgressMeter",  nothing, [](std::ostream& os) { os << progress_meter{2, 0, 5, text, text, text, text}; }},
    {"Alert",          nothing, [](std::ostream& os) { os << ColorTheme::alert(text); }},
    {"CommandLine",    nothing, [](std::ostream& os) { os << ColorTheme::commandLine(text); }},
    {"Path",           nothing, [](std::ostream& os) { os << ColorTheme::path(text); }},
    {"NumberPath",     nothing, [](std::ostream& os) { os << ColorTheme::path(std::uint32_t{4294967295}); }},
    {"RequestTitle",   nothing, [](std::ostream& os) { os << DataTheme::request_title(text); }},
    {"ResponseTitle",  nothing, [](std::ostream& os) { os << DataTheme::response_title(text); }},
    {"Crc",            nothing, [](std::ostream& os) { os << DataTheme::crc(std::uint16_t{65535}); }},
    {"NormalReset",    nothing, [](std::ostream& os) { os << test_pattern_normal_reset; }},
    {"SupportedCodes", nothing, [](std::ostream& os) { os << test_pattern_supported_m_codes; }},
    {"Matrix",         nothing, [](std::ostream& os) { os << test_pattern_matrix; }},
    {"Palette",        nothing, [](std::ostream& os) { os << test_pattern_256bit; }},
    {"Greyscale",      nothing, [](std::ostream& os) { os << test_pattern_greyscale; }},
    {"Cube",           nothing, [](std::ostream& os) { os << test_pattern_rgb; }},
    {"StatusPattern",  nothing, [](std::ostream& os) { os << test_pattern_status_line; }},
    {"ProgressPattern", nothing, [](std::ostream& os) { os << test_pattern_progress_line; }},
    {"Banner",         long_colors, [](std::ostream& os) { os << build_version; }},
};
// clang-format on

// ---------------------------------------------------------------------------------------------
// Children
// ---------------------------------------------------------------------------------------------

SmallBuffer buffer;

// The record and the saved record, the format of std::cout and the modes, in this order, since asking
// changes them.
std::string state()
{
    std::string const format = std::to_string(std::cout.width()) + ' ' + std::to_string(std::cout.flags()) + ' ' +
                               std::to_string(std::cout.rdstate());
    bool const using_color = _isUsingColor();
    buffer.empty();
    std::cout << adjust << '|' << pull << adjust;
    return format + (using_color ? " colour " : " plain ") + buffer.text();
}

// How far the spinners have turned does not matter.
std::string without_frames(std::string bytes)
{
    std::replace_if(
        bytes.begin(), bytes.end(), [](char c) { return bar_frames.find(c) != std::string::npos; }, '|');
    return bytes;
}

// What a fresh process says after an act in which memory ran short.
struct Ending {
    std::string thrown;
    bool was_short = false;
    std::string said;
};

enum class Ask {
    state,     // the state after the act
    next_call, // what the act writes when it is prepared and done again, and how many more blocks are in use then
};

Ending run(Case const& tested, Shortage shortage_of_act, Ask ask)
{
    auto const outcome = on_terminal([&] {
        let_waits_end_at_once();
        WithBuffer const collected(std::cout, &buffer);
        std::cout << colorize << adjust; // from here on the gate has found a terminal
        tested.prepare();
        long const blocks_before = blocks_in_use;
        char const* thrown = "nothing";
        {
            RunShort const scarce(shortage_of_act);
            try {
                tested.act(std::cout);
            } catch (std::bad_alloc const&) {
                thrown = "std::bad_alloc";
            } catch (...) {
                thrown = "something else";
            }
        }
        bool const was_short = ran_short;
        std::string said;
        if (ask == Ask::state) {
            said = state();
        } else {
            std::cout << std::dec << reset;
            tested.prepare();
            buffer.empty();
            tested.act(std::cout);
            long const more = blocks_in_use - blocks_before;
            said = std::to_string(more) + " blocks: " + without_frames(buffer.text());
        }
        report(std::string(thrown) + '\n' + (was_short ? "short" : "plenty") + '\n' + readable(said));
    });
    EXPECT_EQ(outcome.status, 0) << outcome.report;
    std::string const& all = outcome.report;
    std::size_t const first = all.find('\n');
    std::size_t const second = all.find('\n', first + 1);
    if (first == std::string::npos || second == std::string::npos) {
        return {"a process that ended early", false, all};
    }
    return {all.substr(0, first), all.substr(first + 1, second - first - 1) == "short", all.substr(second + 1)};
}

std::string state_before(Case const& tested)
{
    return run({tested.name, tested.prepare, [](std::ostream&) {}}, {}, Ask::state).said;
}

// What an act does with enough memory.
struct Plenty {
    explicit Plenty(Case const& tested)
        : before(state_before(tested)), after(run(tested, {}, Ask::state).said),
          next_call(run(tested, {}, Ask::next_call).said)
    {}

    std::string before;
    std::string after;
    std::string next_call;
};

// How many allocations the act makes, all of which have failed once, with what these expectations say.
int fail_each(Case const& tested, bool lasting, bool is_whole)
{
    Plenty const plenty(tested);
    for (int n = 0;; ++n) {
        Ending const left = run(tested, {n, lasting}, Ask::state);
        if (!left.was_short) {
            EXPECT_EQ(left.thrown, "nothing");
            EXPECT_EQ(left.said, plenty.after);
            return n;
        }
        EXPECT_EQ(left.thrown, "std::bad_alloc") << "allocation " << n;
        if (is_whole) {
            EXPECT_TRUE(left.said == plenty.before || left.said == plenty.after)
                << "allocation " << n << "\n before " << plenty.before << "\n after  " << plenty.after << "\n got    "
                << left.said;
        }
        EXPECT_EQ(run(tested, {n, lasting}, Ask::next_call).said, plenty.next_call) << "allocation " << n;
    }
}

// ---------------------------------------------------------------------------------------------
// Tests
// ---------------------------------------------------------------------------------------------

class AllocationOfOneStep : public testing::TestWithParam<Case> {};

TEST_P(AllocationOfOneStep, LeavesEverythingAsBeforeOrAsAfter)
{
    fail_each(GetParam(), false, true);
    fail_each(GetParam(), true, true);
}

INSTANTIATE_TEST_SUITE_P(, AllocationOfOneStep, testing::ValuesIn(whole_cases),
                         [](auto const& each) { return each.param.name; });

class AllocationOfManySteps : public testing::TestWithParam<Case> {};

TEST_P(AllocationOfManySteps, LosesNothingAndLeavesTheNextCallWhole)
{
    fail_each(GetParam(), false, false);
    fail_each(GetParam(), true, false);
}

INSTANTIATE_TEST_SUITE_P(, AllocationOfManySteps, testing::ValuesIn(composed_cases),
                         [](auto const& each) { return each.param.name; });

// Else nothing above would ever run short.
TEST(Allocation, IsMadeForALongSequenceInTheRecord)
{
    Ending const first = run({"", nothing, [](std::ostream& os) { os << rgb{100, 200, 255}; }}, {0, false}, Ask::state);
    EXPECT_TRUE(first.was_short);
}

TEST(Allocation, IsNotNeededForNamedColoursAndControls)
{
    Ending const all = run({"", long_colors,
                            [](std::ostream& os) {
                                os << red << on_blue << bold << italic << concealed << normal << reset << csi::cup{1, 2}
                                   << csi::cls << spinner{bar_frames, {}} << color_mode_state << parameters_template{4}
                                   << crossplatform_template << build_version_short;
                            }},
                           {0, true}, Ask::state);
    EXPECT_FALSE(all.was_short);
    EXPECT_EQ(all.thrown, "nothing");
}

} // namespace
