#include "kestry/kit/progress.hpp"

#include "kit/fake_terminal.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

#include <forward_list>

namespace {

using namespace hueline::test;
using namespace kestry::kit::progress;
using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

// A terminal for groups that draw when they are told to.
class ProgressGroup : public testing::Test {
protected:
    options on_it() const
    {
        return {.shown = mode::live, .drawn_by = drawing::caller, .target = terminal, .color = false, .ascii = true};
    }

    options as_lines() const
    {
        options how = on_it();
        how.shown = mode::plain;
        return how;
    }

    // Lets time pass and draws once.
    std::string after(multi_progress& group, std::chrono::milliseconds time)
    {
        terminal->time += time;
        terminal->taken();
        group.tick();
        return terminal->taken();
    }

    // Rows below the cursor.
    Lines rows() const
    {
        Screen const screen = terminal->screen();
        Lines found;
        for (int row = screen.cursor().row + 1; row < terminal->room.rows && !screen.text(row).empty(); ++row) {
            found.push_back(screen.text(row));
        }
        return found;
    }

    Lines above() const { return terminal->screen().lines_above(); }

    std::shared_ptr<FakeTerminal> const terminal = std::make_shared<FakeTerminal>();
    layout const brief = layout("{msg} {pos}/{len}");
};

// With a group on it.
class Progress : public ProgressGroup {
protected:
    std::string after(std::chrono::milliseconds time) { return ProgressGroup::after(group, time); }

    Lines rows_after(std::chrono::milliseconds time)
    {
        after(time);
        return rows();
    }

    Lines above_after(std::chrono::milliseconds time)
    {
        after(time);
        return above();
    }

    bar add(std::string_view message, std::uint64_t length = 10)
    {
        return group.add({.message = message, .length = length, .row = brief});
    }

    multi_progress group{on_it()};
};

TEST_F(Progress, ShowsItselfAfter200Milliseconds)
{
    bar const files = group.add("files", 10);
    EXPECT_EQ(after(0ms), "");
    EXPECT_EQ(after(199ms), "");
    EXPECT_NE(after(1ms), "");
    EXPECT_EQ(rows(), Lines{"files [..............................................]   0%  0/10    --/s --:--"});
}

TEST_F(Progress, ShowsShortBarsThatFollowEachOther)
{
    for (int i = 1; i <= 3; ++i) {
        bar const part = add("part " + std::to_string(i), 10);
        after(90ms);
    }
    EXPECT_EQ(above(), (Lines{"part 1 10/10", "part 2 10/10"}));
    EXPECT_EQ(rows(), Lines{"part 3  0/10"});
}

TEST_F(Progress, WaitsAgainForABarThatComesLater)
{
    static_cast<void>(add("one"));
    after(200ms);
    after(100ms);
    bar const two = add("two");
    EXPECT_EQ(after(199ms), "");
    EXPECT_NE(after(1ms), "");
}

TEST_F(Progress, DrawsAtMost12FramesASecond)
{
    bar const files = add("files", 10000);
    after(200ms);
    int const before = terminal->writes;
    for (int i = 0; i < 1000; ++i) {
        files.inc();
        after(1ms);
    }
    EXPECT_GE(terminal->writes - before, 11);
    EXPECT_LE(terminal->writes - before, 12);
}

TEST_F(Progress, WritesNothingWhileNothingVisibleChanges)
{
    bar const files = group.add({.message = "files", .length = 1000, .row = layout("{msg} {percent}")});
    files.inc();
    EXPECT_NE(after(200ms), "");
    EXPECT_EQ(after(100ms), "");
    files.inc(8); // 0.9 %
    EXPECT_EQ(after(100h), "");
    files.inc();
    EXPECT_EQ(readable(after(100ms)).find("files   1%") == std::string::npos, false);
}

TEST_F(Progress, TurnsASpinnerTenTimesASecond)
{
    bar const scan = group.add({.message = "scan", .row = layout("{spinner} {msg}")});
    EXPECT_EQ(rows_after(200ms), Lines{"- scan"});
    EXPECT_EQ(readable(after(100ms)), R"(\e[?2026h\e[?25l\e[?7l\e7\e[1B\r\ scan\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST_F(Progress, LeavesOutAFrameThatTheTerminalDoesNotTake)
{
    bar const files = add("files");
    after(200ms);
    files.inc();
    terminal->busy = true;
    EXPECT_EQ(after(1s), "");
    EXPECT_TRUE(group.println("a line"));
    EXPECT_EQ(terminal->taken(), "");
    terminal->busy = false;
    EXPECT_EQ(above_after(0ms), Lines{"a line"});
    EXPECT_EQ(rows(), Lines{"files  1/10"});
}

TEST_F(Progress, FollowsTheSizeOfTheTerminal)
{
    bar const files = group.add("files", 10);
    terminal->room = {20, 24};
    EXPECT_EQ(rows_after(200ms), Lines{"files   0%  0/10"});
    terminal->room = {0, 0};
    EXPECT_NE(after(100ms).find("files [..............................................]   0%"), std::string::npos);
}

TEST_F(Progress, SurvivesTheSmallestSizes)
{
    bar const a = group.add("a", 10);
    bar const b = group.add("b", 10);
    for (draw_target::extent const room : {draw_target::extent{1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, 3}, {-5, -5}}) {
        terminal->room = room;
        after(1s);
        a.inc();
        group.println("line");
    }
    terminal->room = {80, 24};
    after(1s);
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_TRUE(terminal->screen().cursor_visible());
}

TEST_F(Progress, CountsTheBarsForWhichThereIsNoRow)
{
    terminal->room = {80, 4};
    std::vector<bar> bars;
    for (std::string const name : {"a", "b", "c", "d", "e"}) {
        bars.push_back(add(name, 1));
    }
    EXPECT_EQ(rows_after(200ms), (Lines{"a 0/1", "b 0/1", "+3 more"}));
    bars[0].finish();
    EXPECT_EQ(rows_after(100ms), (Lines{"b 0/1", "c 0/1", "+2 more"}));
    bars[3].finish();
    EXPECT_EQ(rows_after(100ms), (Lines{"b 0/1", "c 0/1", "e 0/1"}));
    EXPECT_EQ(above(), (Lines{"a 1/1", "d 1/1"}));
}

TEST_F(Progress, ShowsOneBarInASingleRow)
{
    terminal->room = {80, 2};
    bar const a = add("a", 1);
    bar const b = add("b", 1);
    EXPECT_EQ(rows_after(200ms), Lines{"a 0/1"});
}

TEST_F(ProgressGroup, ColorsOnlyIfItMay)
{
    options how = on_it();
    for (bool const color : {false, true}) {
        how.color = color;
        multi_progress group(how);
        bar const files = group.add("files", 2);
        files.inc();
        EXPECT_EQ(after(group, 200ms).find("\x1b[32m") != std::string::npos, color);
    }
}

TEST_F(Progress, MakesMessagesHarmless)
{
    bar const files = group.add({.message = "a\x1b[2Jb\nc\xc3\xa9", .row = layout("{msg}")});
    EXPECT_EQ(rows_after(200ms), Lines{R"(a\x1b[2Jb\x0ac?)"});
    files.set_message("\r\xff");
    EXPECT_EQ(rows_after(100ms), Lines{R"(\x0d\xff)"});
}

TEST_F(Progress, ShowsWhatItsHandlesSay)
{
    bar const one = group.add({.message = "one", .length = 10, .start = 3, .row = brief});
    bar const same = one;
    one.inc();
    same.inc(2);
    EXPECT_EQ(rows_after(200ms), Lines{"one  6/10"});
    one.set_position(5);
    one.set_length(20);
    one.set_message("two");
    EXPECT_EQ(rows_after(100ms), Lines{"two  5/20"});
    one.set_length(unknown);
    EXPECT_EQ(rows_after(100ms), Lines{"two 5/?"});
}

TEST_F(Progress, AddsBarsBelowOrBeforeOthers)
{
    bar const b = group.add({.message = "b", .row = layout("{msg}")});
    bar const c = group.add({.message = "c", .row = layout("{msg}")});
    bar const a = group.insert_before(b, {.message = "a", .row = layout("{msg}")});
    bar const d = group.insert_before(bar(), {.message = "d", .row = layout("{msg}")});
    EXPECT_EQ(rows_after(200ms), (Lines{"a", "b", "c", "d"}));
}

TEST_F(Progress, LeavesTheRowOfAnEndedBarAbove)
{
    bar const a = add("a");
    bar const b = add("b");
    bar const c = group.add({.message = "c", .length = 10, .row = brief, .when_ended = leaving::nothing});
    after(200ms);
    a.inc(4);
    a.finish();
    b.inc(4);
    b.abandon();
    c.finish();
    EXPECT_EQ(above_after(100ms), (Lines{"a 10/10", "b  4/10"}));
    EXPECT_EQ(rows(), Lines{});
    a.finish(); // has ended already
    a.set_message("z");
    EXPECT_EQ(after(100ms), "");
}

TEST_F(Progress, FinishesABarWithItsLastHandle)
{
    {
        std::optional<bar> first = add("a");
        bar const second = *first;
        first.reset();
        EXPECT_EQ(rows_after(200ms), Lines{"a  0/10"});
    }
    EXPECT_EQ(above_after(100ms), Lines{"a 10/10"});
}

TEST_F(Progress, AbandonsABarWhileAnExceptionPasses)
{
    try {
        bar const a = add("a");
        a.inc(4);
        after(200ms);
        throw std::runtime_error("it");
    } catch (std::runtime_error const&) {
        // A bar that is made now ends as any other.
        bar const b = add("b");
    }
    EXPECT_EQ(above_after(100ms), (Lines{"a  4/10", "b 10/10"}));
}

TEST_F(Progress, TakesMovedAndEmptyHandles)
{
    bar a = add("a");
    bar const b = std::move(a);
    for (bar const& nothing : {a, bar()}) {
        nothing.inc();
        nothing.set_position(1);
        nothing.set_length(1);
        nothing.set_message("x");
        nothing.finish();
        nothing.abandon();
        nothing.reset();
    }
    b.inc();
    EXPECT_EQ(rows_after(200ms), Lines{"a  1/10"});
}

TEST_F(Progress, StartsAgainAfterReset)
{
    bar const a = group.add({.message = "a", .length = 10, .row = layout("{pos} {elapsed} {rate}")});
    a.inc(5);
    EXPECT_EQ(rows_after(5s), Lines{" 5 00:05  1.00/s"});
    a.reset(2);
    EXPECT_EQ(rows_after(1s), Lines{" 2 00:01    --/s"});
    a.finish();
    EXPECT_EQ(rows_after(1s), Lines{});
    a.reset();
    EXPECT_EQ(rows_after(1s), Lines{" 0 00:01    --/s"});
}

TEST_F(Progress, LeavesARowAsItWasWhenTheBarEnded)
{
    bar const files = add("file 1");
    after(200ms);
    files.finish();
    files.set_message("file 2");
    files.reset();
    files.inc(3);
    files.abandon();
    files.set_message("file 3");
    files.reset();
    EXPECT_EQ(above_after(100ms), (Lines{"file 1 10/10", "file 2  3/10"}));
    EXPECT_EQ(rows(), Lines{"file 3  0/10"});
}

TEST_F(ProgressGroup, OutlivesItsGroupInSilence)
{
    bar left;
    {
        multi_progress group(on_it());
        left = group.add({.message = "a", .length = 10, .row = brief});
        after(group, 200ms);
    }
    EXPECT_EQ(above(), Lines{"a 10/10"});
    terminal->taken();
    left.inc();
    left.set_message("b");
    left.reset();
    left.finish();
    left = {};
    EXPECT_EQ(terminal->taken(), "");
}

TEST_F(ProgressGroup, WritesTheLastRowsWhenTheGroupEnds)
{
    {
        multi_progress group(on_it());
        bar const a = group.add({.message = "a", .length = 10, .row = brief});
    } // before the first frame
    EXPECT_EQ(terminal->all, "a 10/10\n");
}

TEST_F(ProgressGroup, RefusesALayoutThatItDoesNotKnow) { EXPECT_THROW(layout("{mgs}"), std::invalid_argument); }

TEST_F(Progress, ShowsRateAndTimeLeft)
{
    bar const a = group.add({.message = "a", .length = 1000, .start = 500, .row = layout("{rate} {eta}")});
    for (int i = 0; i < 100; ++i) {
        a.inc();
        after(100ms);
    }
    EXPECT_EQ(rows(), Lines{" 10.0/s 00:40"});
    EXPECT_EQ(rows_after(4900ms), Lines{" 10.0/s 00:36"});
    EXPECT_EQ(rows_after(200ms), Lines{" 0.00/s --:--"});
}

TEST_F(Progress, CountsNoStepsThatOnlyTheEndPassed)
{
    bar const files = group.add({.message = "files", .length = 1000, .row = layout("{percent} {rate}")});
    for (int i = 0; i < 50; ++i) {
        files.inc();
        after(100ms);
    }
    files.inc();
    terminal->time += 100ms;
    files.finish();
    EXPECT_EQ(above_after(100ms), Lines{"100%  10.0/s"});
}

TEST_F(Progress, TakesTheLargestNumbers)
{
    std::uint64_t constexpr most = std::numeric_limits<std::uint64_t>::max();
    bar const a = group.add({.message = "a", .length = most - 1, .row = layout("{percent} {pos}/{len} {eta}")});
    a.set_position(most - 2);
    EXPECT_EQ(rows_after(200ms), Lines{" 99% 18446744073709551613/18446744073709551614 00:01"});
    a.inc(1000); // past the end, and around
    after(100ms);
    EXPECT_EQ(rows().size(), 1U);
}

TEST_F(Progress, PrintsLinesAboveAtOnceAndInOrder)
{
    EXPECT_TRUE(group.println("before any bar"));
    EXPECT_EQ(terminal->taken(), "before any bar\n");
    bar const a = add("a");
    EXPECT_TRUE(group.println("before the first frame"));
    EXPECT_EQ(terminal->taken(), "before the first frame\n");
    after(200ms);
    EXPECT_TRUE(group.println("one"));
    EXPECT_TRUE(group.println("two\nthree"));
    EXPECT_TRUE(group.println(""));
    EXPECT_EQ(above(), (Lines{"before any bar", "before the first frame", "one", "two", "three", ""}));
    EXPECT_EQ(rows(), Lines{"a  0/10"});
}

TEST_F(Progress, SaysThatALineCannotBeWritten)
{
    terminal->works = false;
    EXPECT_FALSE(group.println("x"));
    multi_progress lines(as_lines());
    EXPECT_FALSE(lines.println("x"));
}

TEST_F(Progress, WaitsForABusyTerminalOnlyWithManyLines)
{
    bar const a = add("a");
    after(200ms);
    terminal->taken();
    terminal->busy = true;
    std::string const kibibyte(1023, 'x');
    for (int i = 0; i < 64; ++i) {
        group.println(kibibyte);
    }
    EXPECT_TRUE(terminal->taken().empty());
    group.println(kibibyte);
    EXPECT_GT(terminal->taken().size(), 65U * 1024U);
}

TEST_F(Progress, GivesTheTerminalToOthers)
{
    bar const a = add("a");
    after(200ms);
    {
        suspension const outer = group.suspend();
        EXPECT_EQ(rows(), Lines{});
        terminal->write("a child's line\n");
        suspension const inner = group.suspend();
        a.inc();
        EXPECT_EQ(after(1s), "");
        EXPECT_TRUE(group.println("ours"));
        a.finish();
        EXPECT_EQ(after(1s), "");
    }
    EXPECT_EQ(above_after(100ms), (Lines{"a child's line", "ours", "a 10/10"}));
}

TEST_F(Progress, DrawsAgainAfterTheLastSuspension)
{
    bar const a = add("a");
    after(200ms);
    {
        std::optional<suspension> outer = group.suspend();
        suspension const inner = group.suspend();
        outer.reset();
        EXPECT_EQ(after(1s), "");
    }
    EXPECT_NE(after(1s), "");
    EXPECT_EQ(rows(), Lines{"a  0/10"});
}

TEST_F(Progress, IsSilentInTheBackground)
{
    bar const a = add("a");
    bar const b = add("b");
    after(200ms);
    terminal->foreground = false;
    a.inc();
    EXPECT_EQ(after(1s), "");
    a.finish();
    EXPECT_EQ(after(1s), "");
    EXPECT_TRUE(group.println("a line"));
    EXPECT_EQ(terminal->taken(), "a line\n");
    terminal->foreground = true;
    EXPECT_EQ(readable(after(1s)),
              R"(\e[?2026h\e[?25la 10/10\e[K\r\n\e[?7l\e[K\x0b\e[1A\e7\r\nb  0/10\e[J\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST_F(ProgressGroup, EndsInTheBackgroundInSilence)
{
    {
        multi_progress group(on_it());
        bar const a = group.add({.message = "a", .length = 10, .row = brief});
        terminal->foreground = false;
        after(group, 1s);
    }
    EXPECT_EQ(terminal->all, "");
}

TEST_F(ProgressGroup, WritesLinesAtTheStartAtEachTenthAndAtTheEnd)
{
    {
        multi_progress group(as_lines());
        bar const a = group.add("copy", 40 << 20, unit::bytes);
        EXPECT_EQ(terminal->taken(), "copy: 0%, 0 B of 40.0 MiB\n");
        a.inc(2 << 20);
        EXPECT_EQ(after(group, 1s), "");
        a.inc(2 << 20);
        EXPECT_EQ(after(group, 1s), "copy: 10%, 4.00 MiB of 40.0 MiB, 2.00 MiB/s, 00:18 left\n");
        a.inc((4 << 20) - 1);
        EXPECT_EQ(after(group, 1s), "");
        group.println("a line");
        EXPECT_EQ(terminal->taken(), "a line\n");
    }
    EXPECT_EQ(terminal->taken(), "copy: done, 40.0 MiB in 00:03\n");
}

TEST_F(ProgressGroup, StartsNoLineInASuspension)
{
    multi_progress group(as_lines());
    {
        suspension const child = group.suspend();
        static_cast<void>(group.add("files", 10));
        EXPECT_EQ(terminal->taken(), "");
    }
    after(group, 1s);
    EXPECT_EQ(terminal->all, "files: 0%, 0 of 10\nfiles: done, 10 in 00:00\n");
}

TEST_F(ProgressGroup, WritesALineEveryTenSecondsIfItAdvanced)
{
    multi_progress group(as_lines());
    bar const a = group.add("scan");
    EXPECT_EQ(terminal->taken(), "scan: started\n");
    EXPECT_EQ(after(group, 11s), "");
    a.inc(22);
    EXPECT_EQ(after(group, 0s), "");
    EXPECT_EQ(after(group, 11s), "scan: 22, 1.00/s\n");
    a.inc();
    EXPECT_EQ(after(group, 9900ms), "");
    EXPECT_EQ(after(group, 100ms).substr(0, 10), "scan: 23, ");
    a.abandon();
    EXPECT_EQ(terminal->taken(), "scan: stopped at 23\n");
}

TEST_F(ProgressGroup, WritesNoControlCharacterInLines)
{
    {
        multi_progress group(as_lines());
        bar const a = group.add("a\x1b[1m\r", 100);
        for (int i = 0; i < 100; ++i) {
            a.inc();
            after(group, 1s);
        }
        bar const b = group.add("", 100);
        b.inc(50);
        b.abandon();
    }
    for (char const c : terminal->all) {
        EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~')) << static_cast<int>(c);
    }
    EXPECT_EQ(terminal->all.substr(terminal->all.find("0%, 0 of 100\n", 30)),
              "0%, 0 of 100\nstopped at 50%, 50 of 100\n"
              "a\\x1b[1m\\x0d: done, 100 in 01:40\n");
}

TEST_F(ProgressGroup, IsSilentWhenItIsOff)
{
    {
        options how = on_it();
        how.shown = mode::off;
        multi_progress group(how);
        EXPECT_EQ(group.shown(), mode::off);
        bar const a = group.add("a", 10);
        a.inc(5);
        a.set_message("b");
        EXPECT_EQ(after(group, 1s), "");
        suspension const quiet = group.suspend();
        EXPECT_TRUE(group.println("a line"));
    }
    EXPECT_EQ(terminal->all, "a line\n");
}

TEST_F(Progress, EndsManyBarsInBoundedMemory)
{
    for (int i = 0; i < 20000; ++i) {
        bar const a = add("a", 1);
    }
    // Their rows leave in pieces, without a frame.
    EXPECT_GT(terminal->writes, 15);
    EXPECT_LT(terminal->writes, 25);
}

TEST_F(Progress, LeavesOutTheOldestRowsOfManyThatNobodyCouldSee)
{
    terminal->foreground = false;
    for (int i = 1; i <= 1200; ++i) {
        static_cast<void>(group.add({.message = std::to_string(i), .length = 10, .row = layout("{msg}")}));
    }
    terminal->foreground = true;
    after(1s);
    Lines const lines = above();
    ASSERT_EQ(lines.size(), 1U + 1200U - 512U);
    EXPECT_EQ(lines[0], "+512 more");
    EXPECT_EQ(lines[1], "513");
    EXPECT_EQ(lines.back(), "1200");
}

TEST_F(ProgressGroup, CountsTheElementsOfARange)
{
    std::vector<int> items = {1, 2, 3};
    std::vector<int> seen;
    for (int& item : track(items, "items", on_it())) {
        seen.push_back(item);
        item = 0;
    }
    EXPECT_EQ(seen, (std::vector{1, 2, 3}));
    EXPECT_EQ(items, (std::vector{0, 0, 0})); // they are the caller's own
    EXPECT_EQ(terminal->all, "items [################################################] 100% 3/3    --/s 00:00\n");
}

TEST_F(ProgressGroup, CountsARangeWhoseEndsAreFunctionsBesideIt)
{
    int entries = 0;
    for (auto const& entry : track(std::filesystem::directory_iterator("/proc/self/task"), "tasks", on_it())) {
        entries += entry.is_directory() ? 1 : 0;
    }
    EXPECT_GE(entries, 1); // an emulator has threads of its own
}

TEST_F(ProgressGroup, AbandonsARangeThatIsLeft)
{
    std::vector<int> const items = {1, 2, 3};
    for (int const item : track(items, "items", as_lines())) {
        if (item == 2) {
            break;
        }
    }
    EXPECT_EQ(terminal->all, "items: 0%, 0 of 3\nitems: stopped at 33%, 1 of 3\n");
}

TEST_F(ProgressGroup, CountsRangesOfOtherKinds)
{
    int const array[] = {1, 2};
    int sum = 0;
    for (int const item : track(array, "array", as_lines())) {
        sum += item;
    }
    for (int const item : track(std::vector{3, 4}, "temporary", as_lines())) {
        sum += item;
    }
    std::forward_list<int> const list = {5};
    for (int const item : track(list, "list", as_lines())) { // without a size
        sum += item;
    }
    for (int const item : track(std::vector<int>(), "empty", as_lines())) {
        sum += item;
    }
    EXPECT_EQ(sum, 15);
    EXPECT_EQ(terminal->all, "array: 0%, 0 of 2\narray: done, 2 in 00:00\n"
                             "temporary: 0%, 0 of 2\ntemporary: done, 2 in 00:00\n"
                             "list: started\nlist: done, 1 in 00:00\n"
                             "empty: 100%, 0 of 0\nempty: done, in 00:00\n");
}

} // namespace
