// Where the cursor stands and what is left on the screen after the controls of the stream interface, also
// at the edges. "CSI s" and "CSI u" are not known to the terminal of the tests.

#include "kestry/hueline_stream.hpp"

#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Body = std::function<void(std::ostream&)>;
using Rows = std::vector<std::string>;

Screen screen_after(Body const& body, int rows = 24, int cols = 80)
{
    auto const run = on_terminal([&] { body(std::cout << colorize); });
    EXPECT_EQ(run.status, 0) << run.report;
    return Screen(run.out, rows, cols);
}

// ---------------------------------------------------------------------------------------------
// The cursor
// ---------------------------------------------------------------------------------------------

TEST(CursorSeen, AfterEachMove)
{
    struct Row {
        char const* name;
        Body move; // from row 9, column 19, counted from 0
        Position on_80_columns;
        Position on_20_columns; // where it starts at the right edge
    } const rows[] = {
        {"cuu 0", [](std::ostream& os) { os << csi::cuu{0}; }, {8, 19}, {8, 19}}, // 0 moves as 1 does
        {"cuu 1", [](std::ostream& os) { os << csi::cuu{1}; }, {8, 19}, {8, 19}},
        {"cuu 9", [](std::ostream& os) { os << csi::cuu{9}; }, {0, 19}, {0, 19}},
        {"cuu 200", [](std::ostream& os) { os << csi::cuu{200}; }, {0, 19}, {0, 19}},
        {"cud 1", [](std::ostream& os) { os << csi::cud{1}; }, {10, 19}, {10, 19}},
        {"cud 14", [](std::ostream& os) { os << csi::cud{14}; }, {23, 19}, {23, 19}},
        {"cud 200", [](std::ostream& os) { os << csi::cud{200}; }, {23, 19}, {23, 19}},
        {"cuf 1", [](std::ostream& os) { os << csi::cuf{1}; }, {9, 20}, {9, 19}},
        {"cuf 60", [](std::ostream& os) { os << csi::cuf{60}; }, {9, 79}, {9, 19}},
        {"cuf 200", [](std::ostream& os) { os << csi::cuf{200}; }, {9, 79}, {9, 19}},
        {"cub 1", [](std::ostream& os) { os << csi::cub{1}; }, {9, 18}, {9, 18}},
        {"cub 19", [](std::ostream& os) { os << csi::cub{19}; }, {9, 0}, {9, 0}},
        {"cub 200", [](std::ostream& os) { os << csi::cub{200}; }, {9, 0}, {9, 0}},
        {"cnl 1", [](std::ostream& os) { os << csi::cnl{1}; }, {10, 0}, {10, 0}},
        {"cnl 200", [](std::ostream& os) { os << csi::cnl{200}; }, {23, 0}, {23, 0}},
        {"cpl 1", [](std::ostream& os) { os << csi::cpl{1}; }, {8, 0}, {8, 0}},
        {"cpl 200", [](std::ostream& os) { os << csi::cpl{200}; }, {0, 0}, {0, 0}},
        {"cha 0", [](std::ostream& os) { os << csi::cha{0}; }, {9, 0}, {9, 0}},
        {"cha 1", [](std::ostream& os) { os << csi::cha{1}; }, {9, 0}, {9, 0}},
        {"cha 20", [](std::ostream& os) { os << csi::cha{20}; }, {9, 19}, {9, 19}},
        {"cha 200", [](std::ostream& os) { os << csi::cha{200}; }, {9, 79}, {9, 19}},
        {"cup 0 0",
         [](std::ostream& os) {
             os << csi::cup{0, 0};
         },
         {0, 0},
         {0, 0}},
        {"cup 3 7",
         [](std::ostream& os) {
             os << csi::cup{3, 7};
         },
         {2, 6},
         {2, 6}},
        {"cup 24 80",
         [](std::ostream& os) {
             os << csi::cup{24, 80};
         },
         {23, 79},
         {23, 19}},
        {"cup 200 200",
         [](std::ostream& os) {
             os << csi::cup{200, 200};
         },
         {23, 79},
         {23, 19}},
        {"hvp 1 1",
         [](std::ostream& os) {
             os << csi::hvp{1, 1};
         },
         {0, 0},
         {0, 0}},
        {"hvp 3 7",
         [](std::ostream& os) {
             os << csi::hvp{3, 7};
         },
         {2, 6},
         {2, 6}},
        {"hvp 200 200",
         [](std::ostream& os) {
             os << csi::hvp{200, 200};
         },
         {23, 79},
         {23, 19}},
        {"cr", [](std::ostream& os) { os << csi::cr; }, {9, 0}, {9, 0}},
        {"lf", [](std::ostream& os) { os << csi::lf; }, {10, 0}, {10, 0}}, // as a person's terminal has it
        {"show", [](std::ostream& os) { os << csi::show; }, {9, 19}, {9, 19}},
        {"hide", [](std::ostream& os) { os << csi::hide; }, {9, 19}, {9, 19}},
        {"dsr", [](std::ostream& os) { os << csi::dsr; }, {9, 19}, {9, 19}},
        {"sgr", [](std::ostream& os) { os << csi::sgr{31}; }, {9, 19}, {9, 19}},
        {"ed", [](std::ostream& os) { os << csi::ed{2}; }, {9, 19}, {9, 19}},
        {"el", [](std::ostream& os) { os << csi::el{2}; }, {9, 19}, {9, 19}},
        {"cls", [](std::ostream& os) { os << csi::cls; }, {9, 19}, {9, 19}},
        {"su", [](std::ostream& os) { os << csi::su{3}; }, {9, 19}, {9, 19}},
        {"sd", [](std::ostream& os) { os << csi::sd{3}; }, {9, 19}, {9, 19}},
        {"delay", [](std::ostream& os) { os << csi::delay{1}; }, {9, 19}, {9, 19}},
        {"normal", [](std::ostream& os) { os << red << normal; }, {9, 19}, {9, 19}},
    };
    for (auto const& row : rows) {
        auto const body = [&](std::ostream& os) { row.move(os << csi::cup{10, 20}); };
        EXPECT_EQ(screen_after(body).cursor(), row.on_80_columns) << row.name;
        EXPECT_EQ(screen_after(body, 24, 20).cursor(), row.on_20_columns) << row.name;
        EXPECT_EQ(screen_after(body).text(9), "") << row.name;
    }
}

TEST(CursorSeen, DoesNotMoveWhereTheGateRefuses)
{
    auto const run = on_terminal([] {
        std::cout << "ab" << csi::cup{10, 20} << csi::cuf{3} << csi::cls << csi::el{2} << csi::su{1} << "c";
    });
    Screen const screen(run.out);
    EXPECT_EQ(screen.text(0), "abc");
    EXPECT_EQ(screen.cursor(), (Position{0, 3}));
}

TEST(CursorSeen, StaysVisible)
{
    EXPECT_TRUE(screen_after([](std::ostream& os) { os << csi::hide; }).cursor_visible());
    EXPECT_TRUE(screen_after([](std::ostream& os) { os << csi::hide << csi::show; }).cursor_visible());
}

// After the last column the cursor waits there for one more character.
TEST(CursorSeen, WaitsAtTheRightEdge)
{
    std::string const full = "twenty columns of it";
    auto const cursor_after = [&](auto const&... what) {
        return screen_after([&](std::ostream& os) { ((os << full) << ... << what); }, 24, 20).cursor();
    };
    EXPECT_EQ(cursor_after(), (Position{0, 19}));
    EXPECT_EQ(cursor_after("x"), (Position{1, 1}));
    EXPECT_EQ(cursor_after(full), (Position{1, 19}));
    EXPECT_EQ(cursor_after(red, on_blue, normal), (Position{0, 19}));
    EXPECT_EQ(cursor_after(csi::cr), (Position{0, 0}));
    EXPECT_EQ(cursor_after(csi::lf), (Position{1, 0})); // no line between
    EXPECT_EQ(cursor_after(csi::cub{1}), (Position{0, 18}));
    Screen const screen = screen_after([&](std::ostream& os) { os << full << red << "x"; }, 24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (Rows{"twenty columns of it", "{red bold}x"}));
}

// ---------------------------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------------------------

TEST(TextSeen, AfterItsPartIsErased)
{
    auto const rows_after = [](auto const& erase) {
        return rows_of(screen_after([&](std::ostream& os) { os << "abcd\nefgh\nijkl" << csi::cup{2, 3} << erase; }), 3);
    };
    EXPECT_EQ(rows_after(csi::ed{0}), (Rows{"abcd", "ef", ""}));
    EXPECT_EQ(rows_after(csi::ed{1}), (Rows{"", "   h", "ijkl"}));
    EXPECT_EQ(rows_after(csi::ed{2}), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::el{0}), (Rows{"abcd", "ef", "ijkl"}));
    EXPECT_EQ(rows_after(csi::el{1}), (Rows{"abcd", "   h", "ijkl"}));
    EXPECT_EQ(rows_after(csi::el{2}), (Rows{"abcd", "", "ijkl"}));
    EXPECT_EQ(rows_after(csi::cls), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::clr), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::clear), (Rows{"", "", ""}));
}

TEST(TextSeen, WrittenOnWhereTheCursorWasBeforeClearing)
{
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "abc" << csi::cls << "d"; }).text(0), "   d");
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "abc" << csi::cls << csi::cup{1, 1} << "d"; }).text(0), "d");
}

// The cursor waits on the last character and erases it.
TEST(TextSeen, WithoutItsLastCharacterWhenErasedFromTheRightEdge)
{
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "abcd" << csi::el{0}; }, 24, 4).text(0), "abc");
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "abc" << csi::el{0}; }, 24, 4).text(0), "abc");
}

TEST(TextSeen, AfterScrolling)
{
    auto const rows_after = [](auto const& scroll) {
        return rows_of(screen_after([&](std::ostream& os) { os << "a\nb\nc" << scroll; }, 3), 3);
    };
    EXPECT_EQ(rows_after(csi::su{1}), (Rows{"b", "c", ""}));
    EXPECT_EQ(rows_after(csi::su{2}), (Rows{"c", "", ""}));
    EXPECT_EQ(rows_after(csi::su{200}), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::sd{1}), (Rows{"", "a", "b"}));
    EXPECT_EQ(rows_after(csi::sd{2}), (Rows{"", "", "a"}));
    EXPECT_EQ(rows_after(csi::sd{200}), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::lf), (Rows{"b", "c", ""}));
}

TEST(TextSeen, AloneAfterALineIsWrittenOver)
{
    auto const row_after = [](auto const&... between) {
        return screen_after([&](std::ostream& os) { ((os << "old text") << ... << between) << "new"; }).text(0);
    };
    EXPECT_EQ(row_after(csi::cr), "new text");
    EXPECT_EQ(row_after(csi::cr, csi::el{0}), "new");
    EXPECT_EQ(row_after(csi::el{2}, csi::cha{1}), "new");
}

TEST(TextSeen, InOneRenditionPastTheRecord)
{
    EXPECT_EQ(
        row_of(screen_after([](std::ostream& os) {
                   os << thin << red << "a" << csi::sgr{1} << "b" << csi::sgr{94} << "c" << csi::sgr{103} << "d"
                      << csi::sgr{39} << "e" << csi::sgr{0} << "f" << adjust << "g";
               }),
               0),
        "{red}a{red bold}b{bright blue bold}c{bright blue on bright yellow bold}d{on bright yellow bold}e{}f{red}g");
}

} // namespace
