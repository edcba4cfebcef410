// Memory that runs out at each allocation in turn, in each function of the class-based interface.

#include "kestry/hueline_classic.hpp"

#include "buffers.hpp"
#include "failing_new.hpp"

#include "support/process.hpp"
#include "support/readable.hpp"

#include <cstdlib>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry;

using Bytes = std::vector<unsigned char>;

// Longer than a string that needs no memory of its own.
std::string const text = "a text of thirty-two characters.";

// Shows the text that the library has put into an object, as a derived class may.
struct Copied : Hueline {
    explicit Copied(Hueline const& copied) : Hueline(copied) {}
    std::string shown() const { return _text; }
};

struct Dump : HexDump {
    using HexDump::HexDump;
    std::string shown() const { return _text; }
};

struct Case {
    std::string name;
    std::string (*call)();
    std::string result; // while colour is in use
};

void PrintTo(Case const& tested, std::ostream* os) { *os << tested.name; }

std::string masked_time(std::string stamp)
{
    for (char& c : stamp.erase(0, 5)) { // behind the sequence
        c = c >= '0' && c <= '9' ? 'n' : c;
    }
    return stamp;
}

// clang-format off
std::vector<Case> const cases = {
    {"HideCursor",  [] { return Hueline::hide_cursor(); }, "\x1b[?25l"},
    {"ShowCursor",  [] { return Hueline::show_cursor(); }, "\x1b[?25h"},
    {"Color",       [] { return Hueline::color(HexColor::red); }, "\x1b[31m"},
    {"BrightColor", [] { return Hueline::bright_color(static_cast<HexColor>(-2147483647)); }, "\x1b[-2147483587m"},
    {"TrueColor",   [] { return Hueline::color(300, 10, -20, 2147483647); }, "\x1b[300;2;10;-20;2147483647m"},
    {"Foreground",  [] { return Hueline::color(100, 200, 255); }, "\x1b[38;2;100;200;255m"},
    {"Background",  [] { return Hueline::color_bg(100, 200, 255); }, "\x1b[48;2;100;200;255m"},
    {"Vga",         [] { return Hueline::color(HexColor_VGA::silver); }, "\x1b[48;2;192;192;192m"},
    {"ColoredByte", [] { return Hueline::color(static_cast<HexColor>(-2147483647), 0xab); }, "\x1b[-2147483647mab"},
    {"BrightByte",  [] { return Hueline::bright_color(static_cast<HexColor>(-2147483647), 0xff); }, "\x1b[1m\x1b[-2147483647mff\x1b[2m"},
    {"ColoredText", [] { return Hueline::color(HexColor::cyan, text); }, "\x1b[36ma text of thirty-two characters."},
    {"BrightText",  [] { return Hueline::bright_color(HexColor::cyan, text); }, "\x1b[1m\x1b[36ma text of thirty-two characters.\x1b[2m"},
    {"TimeStamp",   [] { return Hueline::time_stamp(text); }, "\x1b[36ma text of thirty-two characters."},
    {"CurrentTime", [] { return masked_time(Hueline::current_time()); }, "[nnnn-nn-nn.nn:nn:nn]"},

    {"AppTitle",    [] { return ColorTheme::app_title(text); }, "\x1b[32ma text of thirty-two characters."},
    {"Alert",       [] { return ColorTheme::alert(text); }, "\x1b[1m\x1b[31ma text of thirty-two characters.\x1b[2m"},
    {"Info",        [] { return ColorTheme::info(text); }, "\x1b[33ma text of thirty-two characters."},
    {"DefaultText", [] { return ColorTheme::default_text(text); }, "\x1b[36ma text of thirty-two characters."},
    {"Seperator",   [] { return ColorTheme::seperator(text); }, "\x1b[37ma text of thirty-two characters."},
    {"Help",        [] { return ColorTheme::help(text); }, "\x1b[34ma text of thirty-two characters."},
    {"Prompt",      [] { return ColorTheme::prompt(text); }, "\x1b[35ma text of thirty-two characters."},
    {"Version",     [] { return ColorTheme::version(text); }, "\x1b[37ma text of thirty-two characters."},
    {"Cursor",      [] { return ColorTheme::cursor(text); }, "\x1b[1m\x1b[36ma text of thirty-two characters.\x1b[2m"},
    {"CommandLine", [] { return ColorTheme::commandLine(text); }, "\x1b[37ma text of thirty-two characters.\x1b[0m"},
    {"Path",        [] { return ColorTheme::path(text); }, "\x1b[36ma text of thirty-two characters."},
    {"NumberPath",  [] { return ColorTheme::path(4294967295U); }, "\x1b[36m4294967295"},
    {"Name",        [] { return ColorTheme::name(text); }, "\x1b[1m\x1b[33ma text of thirty-two characters.\x1b[2m"},
    {"Destination", [] { return DataTheme::immediate_destination(0x7f); }, "\x1b[36m7f"},
    {"TotalCount",  [] { return DataTheme::total_count(0x7f); }, "\x1b[1m\x1b[34m7f\x1b[2m"},
    {"Request",     [] { return DataTheme::request_title(text); }, "\x1b[1m\x1b[35ma text of thirty-two characters.\x1b[2m"},
    {"Response",    [] { return DataTheme::response_title(text); }, "\x1b[35ma text of thirty-two characters."},

    {"DumpOfWord",  [] { return Dump(0x123456789abcdef0UL).shown(); }, "123456789abcdef0"},
    {"DumpOfWords", [] { return Dump(std::vector<unsigned>{1, 0xabcdef}).shown(); }, "00000001 00abcdef "},
    {"DumpOfBytes", [] { return Dump(Bytes{1, 255}).shown(); }, "\x1b[32m01 \x1b[32mff \x1b[0m"},
    {"DumpOfSeparatedBytes", [] { return Dump(Bytes{1, 255}, "----").shown(); }, "\x1b[32m01----\x1b[32mff----\x1b[0m"},
    {"DumpOfText",  [] { return Dump(std::string("AB")).shown(); }, "\x1b[32m41 \x1b[32m42 \x1b[0m"},
    {"DumpCutShort", [] { return Dump(Bytes(20, 0xaa), "").shown().substr(133); }, " ... \x1b[33m(\x1b[36m20 bytes\x1b[33m) \x1b[0m"},
    {"RawData",     [] { return HexDump::raw_data(Bytes{1, 255}); }, "\x1b[32m01 \x1b[32mff \x1b[0m"},
    {"Rtrim",       [] { return rtrim(text + "  \n"); }, "a text of thirty-two characters."},
    {"Copy",        [] { Dump const dump(text); return Dump(dump).shown().substr(0, 8); }, "\x1b[32m61 "},
    {"CopyOfTheHuelineAlone", [] { Dump const dump(text); return Copied(dump).shown().substr(0, 8); }, "\x1b[32m61 "},
};
// clang-format on

bool is_as_at_start() { return Hueline::isUsingColor() && !Hueline::getNoFrillsMode() && !HexDump::isLongDumps(); }

// What is wrong when one allocation of the call fails; asks for is_last whether there was one to fail.
std::string findings_of(Case const& tested, Shortage shortage_of_call, bool& was_short)
{
    long const blocks_before = blocks_in_use;
    std::string findings;
    {
        std::string result;
        bool threw = false;
        {
            RunShort const scarce(shortage_of_call);
            try {
                result = tested.call();
            } catch (std::bad_alloc const&) {
                threw = true;
            }
        }
        was_short = ran_short;
        if (threw != was_short) {
            findings += threw ? "std::bad_alloc in plenty; " : "no std::bad_alloc; ";
        }
        if (!threw && result != tested.result) {
            findings += "returned " + readable(result) + "; ";
        }
    }
    if (!is_as_at_start()) {
        findings += "the switches changed; ";
    }
    if (tested.call() != tested.result) {
        findings += "the next call returned " + readable(tested.call()) + "; ";
    }
    long const blocks_now = blocks_in_use - (findings.capacity() > 15 ? 1 : 0); // the findings are in memory themselves
    if (blocks_now != blocks_before) {
        findings += "memory was lost; ";
    }
    return findings;
}

class AllocationClassic : public testing::TestWithParam<Case> {};

TEST_P(AllocationClassic, FailureOfEachIsHarmless)
{
    for (bool const lasting : {false, true}) {
        auto const run = on_pipe([lasting] {
            Hueline switches;
            switches.useColor(true);
            GetParam().call(); // what the standard library keeps from now on is there
            int count = 0;
            for (bool was_short = true; was_short; ++count) {
                std::string const findings = findings_of(GetParam(), {count, lasting}, was_short);
                if (!findings.empty()) {
                    report("allocation " + std::to_string(count) + ": " + findings);
                }
            }
            bool const needs_memory = GetParam().result.size() > 15;
            if (needs_memory && count == 1) {
                report("nothing was allocated");
            }
        });
        EXPECT_EQ(run.report, "");
        EXPECT_EQ(run.status, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(, AllocationClassic, testing::ValuesIn(cases),
                         [](auto const& each) { return each.param.name; });

// The switch is put back by the part of a dump that was constructed.
TEST(AllocationOfADump, FailureLeavesTheSwitchAsItWasThen)
{
    auto const run = on_pipe([] {
        Hueline switches;
        switches.useColor(true);
        try {
            RunShort const scarce({0, true});
            HexDump const dump(text);
        } catch (std::bad_alloc const&) {
            report("std::bad_alloc ");
        }
        report(Hueline::isUsingColor() ? "on" : "off");
    });
    EXPECT_EQ(run.report, "std::bad_alloc on");
}

TEST(AllocationOfAnInsertion, IsNotNeeded)
{
    auto const run = on_pipe([] {
        Dump const dump(text);
        SmallBuffer buffer;
        std::ostream os(&buffer);
        {
            RunShort const scarce({0, true});
            os << dump;
        }
        report(buffer.text().substr(0, 6) + (os.good() ? " good" : " bad"));
    });
    EXPECT_EQ(run.report, "61 20  good");
}

TEST(AllocationOfAnAssignment, FailureLeavesTheObjectAsItWas)
{
    auto const run = on_pipe([] {
        Hueline switches;
        switches.useColor(true);
        Hueline on;     // puts colour on at its end
        on.flipColor(); // remembers that colour was in use, and turns it off
        {
            Dump off(text); // puts colour off at its end, and was never flipped
            Dump const copy(off);
            Hueline& target = on;
            try {
                RunShort const scarce({0, true});
                target = copy;
                report("assigned ");
            } catch (std::bad_alloc const&) {
                report("std::bad_alloc ");
            }
        }
        on.unflipColor(); // throws if the object has become one that was never flipped
        report(Hueline::isUsingColor() ? "on" : "off");
    });
    EXPECT_EQ(run.report, "std::bad_alloc on");
}

} // namespace
