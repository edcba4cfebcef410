// What a person sees of manipulators, colours, themes and dumps of the stream interface.

#include "stream_bytes.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using kestry::Hueline::reset;
using kestry::Hueline::reverse;

TEST(ManipulatorSeen, AsEachAttribute)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << "n" << bold << "b" << thin << italic << "i" << noitalic << underline << "u";
                  os << nounderline << blink << "k" << noblink << reverse << "r" << noreverse << crossed << "s";
                  os << bold << italic << underline << blink << reverse << "a" << normal << "n" << adjust << "a";
              }),
              "n{bold}b{italic}i{underline}u{blink}k{reverse}r{strike}s{bold italic underline blink reverse}a{}n"
              "{bold italic underline blink reverse}a");

    Screen const faint = screen_after([](std::ostream& os) {
        os << dark << "d" << lite << "l" << dark << bright << "b" << concealed << "c" << adjust << "a";
    });
    std::string seen;
    for (int col = 0; col < 5; ++col) {
        Cell const cell = faint.cell(0, col);
        seen += cell.character + (cell.faint ? "(faint)" : "") + (cell.concealed ? "(concealed)" : "");
    }
    EXPECT_EQ(seen, "d(faint)lbc(concealed)a");
}

TEST(ManipulatorSeen, AsEachColor)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << black << "x" << red << "x" << green << "x" << yellow << "x" << blue << "x";
                  os << magenta << "x" << cyan << "x" << white << "x" << grey << "x" << normal << "n";
              }),
              "{black}x{red}x{green}x{yellow}x{blue}x{magenta}x{cyan}x{white}x{black}x{}n");
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << on_black << "x" << on_red << "x" << on_green << "x" << on_yellow << "x" << on_blue
                     << "x";
                  os << on_magenta << "x" << on_cyan << "x" << on_white << "x" << on_grey << "x" << normal << "n";
              }),
              "{on black}x{on red}x{on green}x{on yellow}x{on blue}x{on magenta}x{on cyan}x{on white}x{on black}x{}n");
}

TEST(ManipulatorSeen, AcrossTheEdgeOfANarrowScreen)
{
    Screen const screen = screen_after(
        [](std::ostream& os) { os << "eighteen columns, " << red << thin << "red" << normal << " and plain"; }, 24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (Rows{"eighteen columns, {red}re", "{red}d{} and plain"}));
    EXPECT_EQ(screen.cursor(), (Position{1, 11}));
}

TEST(ManipulatorSeen, PushAndPullLoseTheBackground)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << red << on_blue << push << "a" << green << on_white << "b" << pull << "c" << adjust
                     << "d" << on_cyan << "e";
              }),
              "{red on blue}a{green on white}bc{red}d{red on cyan}e");
}

TEST(ManipulatorSeen, NormalForgetsOnTheScreenAlone)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << red << underline << "a" << normal << "b" << blink << "c" << reset << "d" << blink
                     << "e";
              }),
              "{red underline}a{}b{red underline blink}c{}d{bold blink}e");
}

TEST(ColorSeen, ByItsNumber)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << color{0} << "a" << color{9} << "b" << color{255} << "c" << on_color{15} << "d";
                  os << rgb{255, 128, 0} << on_rgb{0, 0, 1} << "e" << red << "f" << on_green << "g";
                  next(next(os, 3, false), -1, true) << "h" << csi::color(95) << csi::color(104) << "i";
                  os << csi::rgb(7, 8, 9) << csi::on_rgb(10, 11, 12) << "j" << std::hex << color{200} << "k";
              }),
              "{black}a{bright red}b{255}c{255 on bright white}d{255/128/0 on 0/0/1}e{red on 0/0/1}f{red on green}g"
              "{yellow on white}h{bright magenta on bright blue}i{7/8/9 on 10/11/12}j{200 on white}k");
}

TEST(ColSeen, FillsItsCellWithItsBackground)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << white << on_red << col("red") << on_blue << col("far too long") << normal << "|";
              }),
              "{white on red}red       {white on blue}far too lo{}|");
}

// The line that a terminal scrolls in is blank in the background that is current then.
TEST(BackgroundSeen, WhereTextEndsAndWhereALineScrollsInOrIsErased)
{
    Screen const lines = screen_after([](std::ostream& os) { os << thin << on_blue << "ab\ncd" << normal << "\ne"; });
    EXPECT_EQ(rows_of(lines, 4), (Rows{"{on blue}ab", "{on blue}cd", "e", ""}));
    Screen const scrolled = screen_after([](std::ostream& os) { os << thin << on_blue << "\n\nab\ncd"; }, 3, 4);
    EXPECT_EQ(rows_of(scrolled, 3, 4), (Rows{"", "{on blue}ab", "{on blue}cd  "}));
    Screen const erased = screen_after([](std::ostream& os) { os << thin << on_blue << "ab" << csi::cls; }, 2, 4);
    EXPECT_EQ(rows_of(erased, 2, 4), (Rows{"{on blue}    ", "{on blue}    "}));
    EXPECT_EQ(erased.cursor(), (Position{0, 2}));
}

TEST(ThemeSeen, InItsColors)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << app_title("title ") << info("info ") << default_text("text ") << seperator("seperator ");
                  os << help("help ") << prompt("prompt ") << version("version ") << path("path");
              }),
              "{green bold}title {yellow bold}info {cyan bold}text {white bold}seperator {blue bold}help "
              "{magenta bold}prompt {white bold}version {cyan bold}path");
    EXPECT_EQ(
        first_row([](std::ostream& os) {
            os << _default_text << "text " << _help << "help " << _commandLine << "line " << _status << "status ";
            os << std::hex << path(std::uint32_t{255}) << commandLine(" ls") << "n";
        }),
        "{green bold}text {yellow bold}help {cyan bold}line {magenta bold}status {cyan bold}255{white bold} ls{}n");
}

// What makes its text bold itself, what does not, and what ends all that was there.
TEST(ThemeSeen, InWhatTheRecordHolds)
{
    auto const seen = [](auto const& role) {
        return first_row([&](std::ostream& os) { os << thin << underline << on_white << role << normal; });
    };
    EXPECT_EQ(seen(app_title("text")), "{green on white underline}text");
    EXPECT_EQ(seen(response_title("AB")), "{magenta on white underline}41 42 ");
    EXPECT_EQ(seen(alert("text")), "{red on white bold underline}text");
    EXPECT_EQ(seen(cursor("text")), "{cyan on white bold underline}text");
    EXPECT_EQ(seen(name("text")), "{white on white bold underline}text");
    EXPECT_EQ(seen(request_title("AB")), "{magenta on white bold underline}41 42 ");
    EXPECT_EQ(first_row([](std::ostream& os) { os << thin << underline << commandLine("ls") << green << "n"; }),
              "{white underline}ls{green bold}n");
}

TEST(ThemeSeen, AsAFrameOnANarrowScreen)
{
    Screen const screen = screen_after(
        [](std::ostream& os) {
            os << response_title("READ") << immediate_destination(0x11) << " " << total_count(2) << " "
               << crc(std::uint16_t{0x1d0f}) << normal << "ok";
        },
        24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20),
              (Rows{"{magenta bold}52 45 41 44 {cyan bold}11 {blue bold}02 {green bold}1d", "{green bold} 0f {}ok"}));
    EXPECT_EQ(screen.cursor(), (Position{1, 6}));
}

TEST(DumpSeen, InTheColorsThatAreCurrent)
{
    std::vector<unsigned char> const bytes = {0x01, 0x02, 0xff};
    EXPECT_EQ(first_row([&](std::ostream& os) {
                  os << HexDump(bytes) << thin << red << on_white << HexDump(bytes, ":") << on_blue
                     << myfillandw{'.', 8} << HexDump(static_cast<unsigned short>(0x1f)) << normal << "|";
              }),
              "01 02 ff {red on white}01:02:ff:{red on blue}..0x001f{}|");
}

TEST(DumpSeen, CutAcrossANarrowScreen)
{
    Screen const screen =
        screen_after([](std::ostream& os) { os << thin << green << HexDump(std::string(20, 'A')) << "|"; }, 24, 20);
    EXPECT_EQ(rows_of(screen, 4, 20), (Rows{"{green}41 41 41 41 41 41 41", "{green} 41 41 41 41 41 41 4",
                                            "{green}1 41 41 41 41 41  ..", "{green}. (20 bytes) |"}));
}

} // namespace
