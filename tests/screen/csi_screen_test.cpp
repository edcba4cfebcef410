// Where the cursor stands and what is left on the screen after the controls of the stream interface, also
// at the edges.

#include "stream_bytes.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

// Where the cursor goes from row 9, column 19, counted from 0: on 80 columns, and on 20, at whose right edge it is then.
std::string moved(auto const& move)
{
    std::string positions;
    for (int const cols : {80, 20}) {
        Position const at = screen_after([&](std::ostream& os) { os << csi::cup{10, 20} << move; }, 24, cols).cursor();
        positions += std::to_string(at.row) + ',' + std::to_string(at.col) + ' ';
    }
    return positions;
}

TEST(CursorSeen, AfterEachMove)
{
    EXPECT_EQ(moved(csi::cuu{0}), "8,19 8,19 "); // 0 moves as 1 does
    EXPECT_EQ(moved(csi::cuu{2}), "7,19 7,19 ");
    EXPECT_EQ(moved(csi::cuu{200}), "0,19 0,19 ");
    EXPECT_EQ(moved(csi::cud{2}), "11,19 11,19 ");
    EXPECT_EQ(moved(csi::cud{200}), "23,19 23,19 ");
    EXPECT_EQ(moved(csi::cuf{2}), "9,21 9,19 ");
    EXPECT_EQ(moved(csi::cuf{200}), "9,79 9,19 ");
    EXPECT_EQ(moved(csi::cub{2}), "9,17 9,17 ");
    EXPECT_EQ(moved(csi::cub{200}), "9,0 9,0 ");
    EXPECT_EQ(moved(csi::cnl{2}), "11,0 11,0 ");
    EXPECT_EQ(moved(csi::cnl{200}), "23,0 23,0 ");
    EXPECT_EQ(moved(csi::cpl{2}), "7,0 7,0 ");
    EXPECT_EQ(moved(csi::cpl{200}), "0,0 0,0 ");
    EXPECT_EQ(moved(csi::cha{0}), "9,0 9,0 ");
    EXPECT_EQ(moved(csi::cha{20}), "9,19 9,19 ");
    EXPECT_EQ(moved(csi::cha{200}), "9,79 9,19 ");
    EXPECT_EQ(moved(csi::cup{0, 0}), "0,0 0,0 ");
    EXPECT_EQ(moved(csi::cup{3, 7}), "2,6 2,6 ");
    EXPECT_EQ(moved(csi::cup{24, 80}), "23,79 23,19 ");
    EXPECT_EQ(moved(csi::hvp{3, 7}), "2,6 2,6 ");
    EXPECT_EQ(moved(csi::hvp{200, 200}), "23,79 23,19 ");
    EXPECT_EQ(moved(csi::cr), "9,0 9,0 ");
    EXPECT_EQ(moved(csi::lf), "10,0 10,0 "); // as a person's terminal has it
    for (auto const stays : {csi::show, csi::hide, csi::dsr, csi::cls, normal}) {
        EXPECT_EQ(moved(stays), "9,19 9,19 ");
    }
    EXPECT_EQ(moved(csi::sgr{31}), "9,19 9,19 ");
    EXPECT_EQ(moved(csi::ed{2}), "9,19 9,19 ");
    EXPECT_EQ(moved(csi::el{2}), "9,19 9,19 ");
    EXPECT_EQ(moved(csi::su{3}), "9,19 9,19 ");
    EXPECT_EQ(moved(csi::sd{3}), "9,19 9,19 ");
}

TEST(CursorSeen, BackWhereItWasSaved)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << "ab" << csi::scp << csi::cup{5, 5} << "c" << csi::rcp << "d";
              }),
              "abd");
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
    EXPECT_EQ(cursor_after(red, on_blue, normal), (Position{0, 19}));
    EXPECT_EQ(cursor_after(red, "x"), (Position{1, 1}));
    EXPECT_EQ(cursor_after(csi::cr), (Position{0, 0}));
    EXPECT_EQ(cursor_after(csi::lf), (Position{1, 0})); // no line between
    EXPECT_EQ(cursor_after(csi::cub{1}), (Position{0, 18}));
}

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
    EXPECT_EQ(rows_after(csi::clear), (Rows{"", "", ""}));
}

TEST(TextSeen, WrittenOnWhereTheCursorWasBeforeClearing)
{
    EXPECT_EQ(first_row([](std::ostream& os) { os << "abc" << csi::cls << "d"; }), "   d");
    EXPECT_EQ(first_row([](std::ostream& os) { os << "abc" << csi::cls << csi::cup{1, 1} << "d"; }), "d");
}

TEST(TextSeen, AfterScrolling)
{
    auto const rows_after = [](auto const& scroll) {
        return rows_of(screen_after([&](std::ostream& os) { os << "a\nb\nc" << scroll; }, 3), 3);
    };
    EXPECT_EQ(rows_after(csi::su{1}), (Rows{"b", "c", ""}));
    EXPECT_EQ(rows_after(csi::su{200}), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::sd{2}), (Rows{"", "", "a"}));
    EXPECT_EQ(rows_after(csi::sd{200}), (Rows{"", "", ""}));
    EXPECT_EQ(rows_after(csi::lf), (Rows{"b", "c", ""}));
}

TEST(TextSeen, AloneAfterALineIsWrittenOver)
{
    auto const row_after = [](auto const&... between) {
        return first_row([&](std::ostream& os) { ((os << "old text") << ... << between) << "new"; });
    };
    EXPECT_EQ(row_after(csi::cr), "new text");
    EXPECT_EQ(row_after(csi::cr, csi::el{0}), "new");
    EXPECT_EQ(row_after(csi::el{2}, csi::cha{1}), "new");
}

TEST(TextSeen, InOneRenditionPastTheRecord)
{
    EXPECT_EQ(
        first_row([](std::ostream& os) {
            os << thin << red << "a" << csi::sgr{1} << "b" << csi::sgr{94} << "c" << csi::sgr{103} << "d"
               << csi::sgr{39} << "e" << csi::sgr{0} << "f" << adjust << "g";
        }),
        "{red}a{red bold}b{bright blue bold}c{bright blue on bright yellow bold}d{on bright yellow bold}e{}f{red}g");
}

} // namespace
