#include "progress_block.hpp"

#include "support/reflow.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::detail::progress_block;
using kestry::kit::detail::progress_text;

progress_block::extent constexpr wide = {.columns = 80, .rows = 24};

progress_text row(std::string_view text, std::string_view sgr = {})
{
    progress_text made;
    made.add(text, text.size(), sgr);
    return made;
}

std::vector<progress_text> rows(std::vector<std::string> const& texts)
{
    std::vector<progress_text> made;
    for (std::string const& text : texts) {
        made.push_back(row(text));
    }
    return made;
}

TEST(ProgressFrame, DrawsRowsBelowTheCursorAndReturnsToIt)
{
    progress_block block;
    EXPECT_EQ(readable(block.frame("", rows({"one", "two"}), wide, 0)),
              R"(\e[?2026h\e[?25l\e[?7l\e[K\x0b\x0b\e[2A\e7\r\none\e[K\r\ntwo\e[J\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST(ProgressFrame, IsEmptyWhileNothingChanges)
{
    progress_block block;
    EXPECT_EQ(block.frame("", {}, wide, 0), "");
    block.frame("", rows({"one"}), wide, 0);
    EXPECT_EQ(block.frame("", rows({"one"}), wide, 100), "");
}

// The frame that makes the second of the first.
std::string change(std::vector<std::string> const& before, std::vector<std::string> const& after)
{
    progress_block block;
    block.frame("", rows(before), wide, 0);
    return readable(block.frame("", rows(after), wide, 0.5));
}

TEST(ProgressFrame, WritesFromTheFirstDifferenceOfAChangedRow)
{
    EXPECT_EQ(change({"one  1%", "two  1%", "six  1%"}, {"one  1%", "two 12%", "six  1%"}),
              R"(\e[?2026h\e[?25l\e[?7l\e7\e[2B\r\e[4C12%\e8\e[?7h\e[?25h\e[?2026l)");
    // Down from one such row to the next.
    EXPECT_EQ(change({"a1", "b1", "c1"}, {"a2", "b1", "c2"}),
              R"(\e[?2026h\e[?25l\e[?7l\e7\e[1B\r\e[1C2\e[2B\r\e[1C2\e8\e[?7h\e[?25h\e[?2026l)");
    // The end of a row that became shorter is erased, and of no other.
    EXPECT_EQ(change({"a12", "b12"}, {"a1", "b34"}),
              R"(\e[?2026h\e[?25l\e[?7l\e7\e[1B\r\e[2C\e[K\e[1B\r\e[1C34\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST(ProgressFrame, ColorsWhatItWritesAndSwitchesOff)
{
    progress_block block;
    EXPECT_EQ(readable(block.frame("", {row("ab", "32")}, wide, 0)),
              R"(\e[?2026h\e[?25l\e[?7l\e[K\x0b\e[1A\e7\r\n\e[32mab\e[0m\e[J\e8\e[?7h\e[?25h\e[?2026l)");
    EXPECT_EQ(readable(block.frame("", {row("ac", "32")}, wide, 0)),
              R"(\e[?2026h\e[?25l\e[?7l\e7\e[1B\r\e[1C\e[32mc\e[0m\e8\e[?7h\e[?25h\e[?2026l)");
    EXPECT_EQ(readable(block.frame("", {row("ac", "33")}, wide, 0)),
              R"(\e[?2026h\e[?25l\e[?7l\e7\e[1B\r\e[33mac\e[0m\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST(ProgressFrame, InsertsALineWithoutDrawingRowsAgain)
{
    progress_block block;
    block.frame("", rows({"one", "two"}), wide, 0);
    EXPECT_EQ(readable(block.frame("log\n", rows({"one", "two"}), wide, 0.5)),
              R"(\e[?2026h\e[?25l\x0b\x0b\x0b\e[3A\e7\e[1L\rlog\e8\e[1B\e[?25h\e[?2026l)");
    EXPECT_EQ(
        readable(block.frame("x\ny\n", rows({"one", "tw0"}), wide, 0.5)),
        R"(\e[?2026h\e[?25l\x0b\x0b\x0b\x0b\e[4A\e7\e[2L\rx\r\ny\e8\e[2B\e[?7l\e7\e[2B\r\e[2C0\e8\e[?7h\e[?25h\e[?2026l)");
}

TEST(ProgressFrame, DrawsEverythingBelowALineThatMayTakeSeveralRows)
{
    struct Line {
        std::string text;
        std::string erased;
    };
    std::string const full(80, 'x');
    for (auto const& [text, erased] : {Line{full, ""}, {full + "y", R"(\e[K)"}, {"a\tb", R"(\e[K)"}}) {
        progress_block block;
        block.frame("", rows({"one"}), wide, 0);
        EXPECT_EQ(readable(block.frame(text + "\n", rows({"one"}), wide, 0.5)),
                  R"(\e[?2026h\e[?25l)" + readable(text) + erased +
                      R"(\r\n\e[?7l\e[K\x0b\e[1A\e7\r\none\e[J\e8\e[?7h\e[?25h\e[?2026l)");
    }
}

TEST(ProgressFrame, WritesLinesAsTheyAreWhereThereAreNoRows)
{
    progress_block block;
    EXPECT_EQ(block.frame("a\nb\n", {}, wide, 0), "a\nb\n");
}

TEST(ProgressFrame, ErasesRowsThatAreGone)
{
    progress_block block;
    block.frame("", rows({"one", "two"}), wide, 0);
    EXPECT_EQ(readable(block.frame("", rows({"two"}), wide, 0)),
              R"(\e[?2026h\e[?25l\e[?7l\e[K\x0b\e[1A\e7\r\ntwo\e[J\e8\e[?7h\e[?25h\e[?2026l)");
    EXPECT_EQ(readable(block.frame("two done\n", {}, wide, 0)),
              R"(\e[?2026h\e[?25l\x0b\x0b\e[2A\e7\e[1L\rtwo done\e8\e[1B\e[K\e[J\e[?25h\e[?2026l)");
    EXPECT_FALSE(block.is_drawn());
}

TEST(ProgressFrame, IsWholeAgainAfterASecond)
{
    progress_block block;
    block.frame("", rows({"a1"}), wide, 0);
    EXPECT_EQ(block.frame("", rows({"a2"}), wide, 0.99).find("\x1b[K"), std::string::npos);
    EXPECT_EQ(readable(block.frame("", rows({"a3"}), wide, 1)),
              R"(\e[?2026h\e[?25l\e[?7l\e[K\x0b\e[1A\e7\r\na3\e[J\e8\e[?7h\e[?25h\e[?2026l)");
    EXPECT_EQ(block.frame("", rows({"a4"}), wide, 1.99).find("\x1b[K"), std::string::npos);
}

TEST(ProgressFrame, LeavesACursorHiddenThatIsHidden)
{
    progress_block block;
    EXPECT_EQ(readable(block.frame("", rows({"one"}), wide, 0, progress_block::cursor::hidden)),
              R"(\e[?2026h\e[?7l\e[K\x0b\e[1A\e7\r\none\e[J\e8\e[?7h\e[?2026l)");
}

TEST(ProgressFrame, ChangesNoModeThatALongOneCouldLeaveBehind)
{
    for (std::size_t const characters : {1000U, 1007U, 1008U, 2000U}) { // of 1024 bytes, 17 are controls
        progress_block block;
        std::string const frame = block.frame("", rows({std::string(characters, 'x')}), {2100, 24}, 0);
        bool const at_once = characters <= 1007;
        EXPECT_EQ(frame.find("\x1b[?25l") != std::string::npos, at_once) << characters;
        EXPECT_EQ(frame.find("\x1b[?25h") != std::string::npos, at_once) << characters;
        EXPECT_EQ(frame.find("\x1b[?7l") != std::string::npos, at_once) << characters;
        EXPECT_EQ(frame.find("\x1b[?7h") != std::string::npos, at_once) << characters;
        EXPECT_NE(frame.find("\x1b[?2026l"), std::string::npos);
    }
}

TEST(ProgressFrame, WipesWhatItDrewOnce)
{
    progress_block block;
    EXPECT_EQ(block.wiped(), "");
    block.frame("", rows({"one"}), wide, 0);
    EXPECT_EQ(readable(block.wiped()), R"(\e[J)");
    EXPECT_EQ(block.wiped(), "");
    EXPECT_NE(block.frame("", rows({"one"}), wide, 0), ""); // and draws it all again
}

TEST(ProgressFrame, TakesLessThan200BytesForOneRowOf50)
{
    progress_block block;
    std::vector<progress_text> many;
    for (int i = 0; i < 50; ++i) {
        many.push_back(row("file " + std::to_string(i) + std::string(60, '#') + "  1%"));
    }
    progress_block::extent const tall = {.columns = 80, .rows = 60};
    block.frame("", many, tall, 0);
    many[30] = row("file 30" + std::string(30, '#') + std::string(30, '.') + "  9%");
    EXPECT_LT(block.frame("", many, tall, 0.5).size(), 200U);
    EXPECT_LT(block.frame("a line above\n", many, tall, 0.5).size(), 200U);
}

// A terminal that has something on it, and a block below.
template <typename Terminal>
struct Shown {
    explicit Shown(std::string_view before = {}) : screen(make()) { screen.write(before); }

    static Terminal make()
    {
        if constexpr (std::is_same_v<Terminal, Screen>) {
            return Screen("", 10, 40);
        } else {
            return ReflowingScreen(10, 40);
        }
    }

    void draw(std::vector<std::string> const& texts, std::string_view lines = {})
    {
        shown = texts;
        screen.write(block.frame(lines, rows(texts), size, now));
    }

    void resize(std::size_t rows_in_all, std::size_t columns)
    {
        size = {.columns = columns, .rows = rows_in_all};
        screen.resize(static_cast<int>(rows_in_all), static_cast<int>(columns));
    }

    // What is below the cursor, row by row, up to the end of the screen.
    std::vector<std::string> below() const
    {
        std::vector<std::string> found;
        for (int i = screen.cursor().row + 1; i < static_cast<int>(size.rows); ++i) {
            found.push_back(screen.text(i));
        }
        while (!found.empty() && found.back().empty()) {
            found.pop_back();
        }
        return found;
    }

    Terminal screen;
    progress_block block;
    progress_block::extent size = {.columns = 40, .rows = 10};
    std::vector<std::string> shown;
    double now = 0;
};

template <typename Terminal>
class ProgressOnScreen : public testing::Test {};
using Terminals = testing::Types<Screen, ReflowingScreen>;
TYPED_TEST_SUITE(ProgressOnScreen, Terminals);

using Lines = std::vector<std::string>;

TYPED_TEST(ProgressOnScreen, KeepsHalfALineThatOthersWrote)
{
    Shown<TypeParam> terminal("checking... ");
    terminal.draw({"one", "two"});
    terminal.draw({"one", "tw0"});
    terminal.draw({"one", "tw0"}, "a log line\n");
    terminal.screen.write("right\n");
    terminal.draw({"on1", "tw1"});
    terminal.now += 1;
    terminal.draw({"on2", "tw2"});
    EXPECT_EQ(terminal.screen.lines_above(), (Lines{"a log line", "checking... right"}));
    EXPECT_EQ(terminal.below(), (Lines{"on2", "tw2"}));
}

TYPED_TEST(ProgressOnScreen, MovesDownBelowLinesOfOthers)
{
    for (int const before : {0, 3, 8, 20}) { // in the middle of the screen and at its end
        SCOPED_TRACE(before);
        Shown<TypeParam> terminal;
        Lines expected;
        for (int i = 0; i < before; ++i) {
            terminal.screen.write("x\n");
            expected.emplace_back("x");
        }
        terminal.draw({"one", "two", "six"});
        terminal.screen.write("a message of others\n");
        terminal.now += 1;
        terminal.draw({"on1", "two", "six"});
        expected.emplace_back("a message of others");
        EXPECT_EQ(terminal.screen.lines_above(), expected);
        EXPECT_EQ(terminal.below(), (Lines{"on1", "two", "six"}));
        EXPECT_EQ(terminal.screen.text(terminal.screen.cursor().row), "");
    }
}

// Rows and lines of others in any order, on screens of any size; after each frame nothing else is to be seen, and
// no line above is missing or twice.
template <typename Terminal>
void shows_nothing_else(unsigned seed, std::size_t least_columns, std::size_t longest_line)
{
    bool constexpr reflows = std::is_same_v<Terminal, ReflowingScreen>;
    std::mt19937 random(seed);
    auto const any = [&random](std::size_t from, std::size_t to) { return from + random() % (to - from + 1); };
    Shown<Terminal> terminal;
    Lines above;
    std::size_t count = 3;
    for (int step = 0; step < 25; ++step) {
        std::string lines;
        for (std::size_t i = any(0, 2); i > 0; --i) {
            std::string const line = std::to_string(seed) + "." + std::to_string(step) + "." + std::to_string(i);
            above.push_back(line + std::string(any(line.size(), longest_line) - line.size(), 'x'));
            lines += above.back() + "\n";
        }
        if (any(0, 2) == 0) {
            // Screen keeps its lowest text, and scrolls the cursor away for it: what leaves the screen stays as it is. And
            // it forgets what it scrolls off a single row.
            std::size_t const least_rows = reflows ? 1 : std::max<std::size_t>(terminal.shown.size() + 1, 2);
            terminal.resize(any(least_rows, 13), any(least_columns, 50));
        }
        if (any(0, 3) == 0) {
            count = any(0, 12);
        }
        std::size_t const fit = std::min(count, terminal.size.rows - 1);
        Lines texts;
        for (std::size_t i = 0; i < fit; ++i) {
            std::string text = std::to_string(i) + std::string(any(1, 50), static_cast<char>('a' + any(0, 25)));
            texts.push_back(text.substr(0, terminal.size.columns - 1));
        }
        if (any(0, 3) == 0) {
            texts = Lines(terminal.shown.begin(),
                          terminal.shown.begin() + static_cast<std::ptrdiff_t>(std::min(fit, terminal.shown.size())));
            for (std::string& text : texts) {
                text = text.substr(0, terminal.size.columns - 1);
            }
        }
        terminal.now += static_cast<double>(any(0, 10)) / 10;
        terminal.draw(texts, lines);
        while (!texts.empty() && texts.back().empty()) { // of a screen without a column to spare
            texts.pop_back();
        }
        ASSERT_EQ(terminal.below(), texts) << "seed " << seed << " step " << step;
        ASSERT_EQ(terminal.screen.text(terminal.screen.cursor().row), "") << "seed " << seed << " step " << step;
        ASSERT_EQ(terminal.screen.lines_above(), above) << "seed " << seed << " step " << step;
    }
}

TYPED_TEST(ProgressOnScreen, KeepsHalfALineApartFromLinesThatComeWithAWholeFrame)
{
    Shown<TypeParam> shown;
    shown.draw({"one", "two"});
    shown.screen.write("half");
    shown.now += 5;
    shown.draw({"one", "two"}, "a line\n");
    shown.resize(10, 30);
    shown.draw({"one", "two"}, "another line\n");
    shown.draw({"two"}, "one\n");
    shown.screen.write(" and half\r\n");
    EXPECT_EQ(shown.screen.lines_above(), (std::vector<std::string>{"a line", "another line", "one", "half and half"}));
}

TEST(ProgressResize, LeavesNoRemainsWhereLinesReflow)
{
    for (unsigned seed = 0; seed < 50 && !HasFatalFailure(); ++seed) {
        shows_nothing_else<ReflowingScreen>(seed, 1, 120);
    }
}

// Lines that are cut are gone: here none is longer than the narrowest screen.
TEST(ProgressResize, LeavesNoRemainsWhereLinesAreCut)
{
    for (unsigned seed = 0; seed < 200 && !HasFatalFailure(); ++seed) {
        shows_nothing_else<Screen>(seed, 10, 9);
    }
}

// A row that had text has some after each byte of a frame.
TEST(ProgressFrame, NeverShowsABlankRowInBetween)
{
    std::vector<std::vector<std::string>> const steps = {
        {"one   1%", "two   1%"}, {"one   2%", "two   1%"}, {"o     1%", "two  99%"}, {"a longer one", "t"}};
    Screen screen("$ program\n");
    progress_block block;
    double now = 0;
    screen.write(block.frame("", rows(steps.front()), wide, now));
    for (auto const& texts : steps) {
        for (double const later : {0.1, 1.0}) { // a frame of changes, a whole one
            now += later;
            for (char const byte : block.frame("", rows(texts), wide, now) + block.frame("", rows(texts), wide, now)) {
                screen.write({&byte, 1});
                EXPECT_NE(screen.text(2), "");
                EXPECT_NE(screen.text(3), "");
            }
            block.frame("", rows({"x", "y"}), {.columns = 79, .rows = 24}, now); // so that the next one is whole
            screen.write(block.frame("", rows({"x", "y"}), wide, now));
        }
    }
}

} // namespace
