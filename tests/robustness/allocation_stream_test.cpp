// Memory that runs out at each allocation in turn, in each operation of the stream interface.

#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "support/allocations.hpp"

#include "operations_stream.hpp"

#include "support/clock.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

std::string const bar_frames = "|/-\\";

struct Case {
    void (*prepare)();
    std::function<void(std::ostream& os)> act;
    bool is_whole; // has to be as before or as after in the end; else some of its steps may have been taken
};

void nothing() {}

// A record, or a saved record, whose strings need memory of their own.
void long_colors() { std::cout << rgb{100, 100, 100} << on_rgb{200, 200, 200} << italic; }
void long_colors_saved() { std::cout << rgb{100, 100, 100} << italic << push; }
void long_colors_forgotten() { std::cout << rgb{100, 100, 100} << italic << push << reset; }

// What a function returns is inserted.
Case example_of(StreamOperation const& operation, void (*prepare)())
{
    auto const act = [&operation, step = operation.step_of_example()](std::ostream& os) {
        StreamProgram program = {.os = &os};
        operation.act(program, step);
        os << program.result;
    };
    // A status line, a progress meter and a number are several insertions.
    bool const is_whole = !operation.example.in_steps && operation.name != "status_line" &&
                          operation.example.needs_where_plain != Needs::numbers;
    return {prepare, act, is_whole};
}

// Whether there is something that could need memory.
bool writes_or_copies(StreamOperation const& operation)
{
    return !operation.example.colored.empty() || operation.example.told_by_the_model || operation.name == "push" ||
           operation.name == "pull";
}

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
    return run({tested.prepare, [](std::ostream&) {}, true}, {}, Ask::state).said;
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

// Each allocation of the act fails once, and these expectations say what comes of it.
void fail_each(Case const& tested, bool lasting)
{
    Plenty const plenty(tested);
    for (int n = 0;; ++n) {
        Ending const left = run(tested, {n, lasting}, Ask::state);
        if (!left.was_short) {
            EXPECT_EQ(left.thrown, "nothing");
            EXPECT_EQ(left.said, plenty.after);
            return;
        }
        EXPECT_EQ(left.thrown, "std::bad_alloc") << "allocation " << n;
        if (tested.is_whole) {
            EXPECT_TRUE(left.said == plenty.before || left.said == plenty.after)
                << "allocation " << n << "\n before " << plenty.before << "\n after  " << plenty.after << "\n got    "
                << left.said;
        }
        EXPECT_EQ(run(tested, {n, lasting}, Ask::next_call).said, plenty.next_call) << "allocation " << n;
    }
}

struct Record {
    std::string name;
    void (*prepare)();
};

void PrintTo(Record const& record, std::ostream* os) { *os << record.name; }

class AllocationStream : public testing::TestWithParam<Record> {};

TEST_P(AllocationStream, FailureOfEachLosesNothingAndLeavesTheNextCallWhole)
{
    for (StreamOperation const& each : stream_operations()) {
        if (writes_or_copies(each)) {
            SCOPED_TRACE(each.name);
            Case const tested = example_of(each, GetParam().prepare);
            fail_each(tested, false);
            fail_each(tested, true);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, AllocationStream,
                         testing::Values(Record{"AtLoad", nothing}, Record{"OfLongColours", long_colors},
                                         Record{"OfLongColoursSaved", long_colors_saved},
                                         Record{"OfLongColoursForgotten", long_colors_forgotten}),
                         [](auto const& record) { return record.param.name; });

// Else nothing above would ever run short.
TEST(Allocation, IsMadeForALongSequenceInTheRecord)
{
    Ending const first = run({nothing,
                              [](std::ostream& os) {
                                  os << rgb{100, 200, 255};
                              },
                              true},
                             {0, false}, Ask::state);
    EXPECT_TRUE(first.was_short);
}

TEST(Allocation, IsNotNeededForNamedColorsAndControls)
{
    Ending const all = run({long_colors,
                            [](std::ostream& os) {
                                os << red << on_blue << bold << italic << concealed << normal << reset << csi::cup{1, 2}
                                   << csi::cls << spinner{bar_frames, {}} << color_mode_state << parameters_template{4}
                                   << crossplatform_template << build_version_short;
                            },
                            true},
                           {0, true}, Ask::state);
    EXPECT_FALSE(all.was_short);
    EXPECT_EQ(all.thrown, "nothing");
}

} // namespace
