// What a person sees of manipulators, colours, themes and dumps of the stream interface. Faint and
// concealed text look as usual here: the terminal of the tests does not know them.

#include "kestry/hueline_stream.hpp"

#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;

using Body = std::function<void(std::ostream&)>;
using Manipulator = std::ostream& (*)(std::ostream&);

// What a colorized std::cout, and then a colorized std::cerr, brings to the screen.
std::string bytes_of(Body const& body)
{
    auto const run = on_terminal([&] { body(std::cout << colorize); });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

std::string bytes_of_standard_error(Body const& body)
{
    auto const run = on_terminal([&] { body(std::cerr << colorize); });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.err;
}

std::string first_row(Body const& body) { return row_of(Screen(bytes_of(body)), 0); }

// ---------------------------------------------------------------------------------------------
// Manipulators
// ---------------------------------------------------------------------------------------------

std::ostream& everything(std::ostream& os)
{
    return os << thin << italic << underline << blink << kestry::Hueline::reverse << red << on_blue;
}

struct SeenManipulator {
    char const* name;
    Manipulator apply;
    char const* at_start;   // an x after the manipulator alone
    char const* afterwards; // an x after everything and the manipulator
};

// clang-format off
SeenManipulator const manipulators[] = {
    {"adjust",      adjust,      "{bold}x",                "{red on blue italic underline blink reverse}x"},
    {"normal",      normal,      "x",                      "x"},
    {"reset",       kestry::Hueline::reset, "x",           "x"},
    {"push",        push,        "x",                      "{red on blue italic underline blink reverse}x"},
    {"pull",        pull,        "x",                      "{red on blue italic underline blink reverse}x"},

    {"bold",        bold,        "{bold}x",                "{red on blue bold italic underline blink reverse}x"},
    {"thin",        thin,        "x",                      "{red on blue italic underline blink reverse}x"},
    {"dark",        dark,        "{bold}x",                "{red on blue italic underline blink reverse}x"},
    {"lite",        lite,        "{bold}x",                "{red on blue italic underline blink reverse}x"},
    {"bright",      bright,      "{bold}x",                "{red on blue italic underline blink reverse}x"},
    {"italic",      italic,      "{bold italic}x",         "{red on blue italic underline blink reverse}x"},
    {"noitalic",    noitalic,    "{bold}x",                "{red on blue underline blink reverse}x"},
    {"underline",   underline,   "{bold underline}x",      "{red on blue italic underline blink reverse}x"},
    {"nounderline", nounderline, "{bold}x",                "{red on blue italic blink reverse}x"},
    {"blink",       blink,       "{bold blink}x",          "{red on blue italic underline blink reverse}x"},
    {"noblink",     noblink,     "{bold}x",                "{red on blue italic underline reverse}x"},
    {"reverse",     kestry::Hueline::reverse, "{bold reverse}x", "{red on blue italic underline blink reverse}x"},
    {"noreverse",   noreverse,   "{bold}x",                "{red on blue italic underline blink}x"},
    {"concealed",   concealed,   "x",                      "{red on blue italic underline blink reverse}x"},
    {"crossed",     crossed,     "{strike}x",              "{red on blue italic underline blink reverse strike}x"},

    {"grey",        grey,        "{black bold}x",          "{black on blue italic underline blink reverse}x"},
    {"red",         red,         "{red bold}x",            "{red on blue italic underline blink reverse}x"},
    {"green",       green,       "{green bold}x",          "{green on blue italic underline blink reverse}x"},
    {"yellow",      yellow,      "{yellow bold}x",         "{yellow on blue italic underline blink reverse}x"},
    {"blue",        blue,        "{blue bold}x",           "{blue on blue italic underline blink reverse}x"},
    {"magenta",     magenta,     "{magenta bold}x",        "{magenta on blue italic underline blink reverse}x"},
    {"cyan",        cyan,        "{cyan bold}x",           "{cyan on blue italic underline blink reverse}x"},
    {"white",       white,       "{white bold}x",          "{white on blue italic underline blink reverse}x"},
    {"black",       black,       "{black bold}x",          "{black on blue italic underline blink reverse}x"},

    {"on_grey",     on_grey,     "{on black bold}x",       "{red on black italic underline blink reverse}x"},
    {"on_red",      on_red,      "{on red bold}x",         "{red on red italic underline blink reverse}x"},
    {"on_green",    on_green,    "{on green bold}x",       "{red on green italic underline blink reverse}x"},
    {"on_yellow",   on_yellow,   "{on yellow bold}x",      "{red on yellow italic underline blink reverse}x"},
    {"on_blue",     on_blue,     "{on blue bold}x",        "{red on blue italic underline blink reverse}x"},
    {"on_magenta",  on_magenta,  "{on magenta bold}x",     "{red on magenta italic underline blink reverse}x"},
    {"on_cyan",     on_cyan,     "{on cyan bold}x",        "{red on cyan italic underline blink reverse}x"},
    {"on_white",    on_white,    "{on white bold}x",       "{red on white italic underline blink reverse}x"},
    {"on_black",    on_black,    "{on black bold}x",       "{red on black italic underline blink reverse}x"},
};
// clang-format on

TEST(ManipulatorSeen, FirstOfAll)
{
    for (auto const& m : manipulators) {
        EXPECT_EQ(first_row([&](std::ostream& os) { os << m.apply << "x"; }), m.at_start) << m.name;
    }
}

TEST(ManipulatorSeen, AfterEverything)
{
    for (auto const& m : manipulators) {
        EXPECT_EQ(first_row([&](std::ostream& os) { os << everything << m.apply << "x"; }), m.afterwards) << m.name;
    }
}

TEST(ManipulatorSeen, OnStandardErrorToo)
{
    for (auto const& m : manipulators) {
        Screen const screen(bytes_of_standard_error([&](std::ostream& os) { os << m.apply << "x"; }));
        EXPECT_EQ(row_of(screen, 0), m.at_start) << m.name;
        EXPECT_EQ(screen.cursor(), (Position{0, 1})) << m.name;
    }
}

TEST(ManipulatorSeen, OnlyByWhatFollows)
{
    EXPECT_EQ(first_row([](std::ostream& os) { os << "a" << red << "b" << on_blue << "c" << normal << "d"; }),
              "a{red bold}b{red on blue bold}c{}d");
}

TEST(ManipulatorSeen, AcrossTheEdgeOfANarrowScreen)
{
    Screen const screen(bytes_of([](std::ostream& os) {
                            os << "eighteen columns, " << red << thin << "red" << normal << " and plain";
                        }),
                        24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (std::vector<std::string>{"eighteen columns, {red}re", "{red}d{} and plain"}));
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
    EXPECT_EQ(
        first_row([](std::ostream& os) { os << thin << red << underline << "a" << normal << "b" << blink << "c"; }),
        "{red underline}a{}b{red underline blink}c");
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << red << underline << "a" << kestry::Hueline::reset << "b" << blink << "c";
              }),
              "{red underline}a{}b{bold blink}c");
}

// ---------------------------------------------------------------------------------------------
// Colours by number
// ---------------------------------------------------------------------------------------------

TEST(ColorSeen, ByItsNumber)
{
    struct Row {
        Body apply;
        char const* seen;
    } const rows[] = {
        {[](std::ostream& os) { os << color{0}; }, "{black bold}x"},
        {[](std::ostream& os) { os << color{9}; }, "{bright red bold}x"},
        {[](std::ostream& os) { os << color{16}; }, "{16 bold}x"},
        {[](std::ostream& os) { os << color{255}; }, "{255 bold}x"},
        {[](std::ostream& os) { os << on_color{15}; }, "{on bright white bold}x"},
        {[](std::ostream& os) { os << on_color{232}; }, "{on 232 bold}x"},
        {[](std::ostream& os) {
             os << rgb{255, 128, 0};
         },
         "{255/128/0 bold}x"},
        {[](std::ostream& os) {
             os << on_rgb{0, 0, 1};
         },
         "{on 0/0/1 bold}x"},
        {[](std::ostream& os) {
             os << rgb{1, 2, 3} << on_color{200} << thin;
         },
         "{1/2/3 on 200}x"},
        {[](std::ostream& os) {
             os << red << color{200} << on_rgb{4, 5, 6} << on_green;
         },
         "{200 on green bold}x"},
        {[](std::ostream& os) { os << color{200} << red; }, "{red bold}x"},
        {[](std::ostream& os) { next(os, 3, false); }, "{yellow bold}x"},
        {[](std::ostream& os) { next(os, -1, true); }, "{on white bold}x"},
        {[](std::ostream& os) { os << red << csi::color(32); }, "{green bold}x"},
        {[](std::ostream& os) { os << csi::color(95) << csi::color(104); }, "{bright magenta on bright blue}x"},
        {[](std::ostream& os) { os << csi::rgb(7, 8, 9) << csi::on_rgb(10, 11, 12); }, "{7/8/9 on 10/11/12}x"},
        {[](std::ostream& os) { os << std::hex << color{200}; }, "{200 bold}x"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(first_row([&](std::ostream& os) {
                      row.apply(os);
                      os << "x";
                  }),
                  row.seen);
    }
}

TEST(ColSeen, FillsItsCellWithItsBackground)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << white << on_red << col("red") << on_blue << col("far too long") << normal << "|";
              }),
              "{white on red}red       {white on blue}far too lo{}|");
}

// ---------------------------------------------------------------------------------------------
// Backgrounds and lines
// ---------------------------------------------------------------------------------------------

TEST(BackgroundSeen, EndsWhereTheTextOfALineEnds)
{
    Screen const screen(bytes_of([](std::ostream& os) { os << thin << on_blue << "ab\ncd" << normal << "\ne"; }));
    EXPECT_EQ(rows_of(screen, 4), (std::vector<std::string>{"{on blue}ab", "{on blue}cd", "e", ""}));
}

// The line that a terminal scrolls in is blank in the background that is current then.
TEST(BackgroundSeen, FillsTheLineThatScrollsIn)
{
    auto const last_row = [](Body const& body) {
        Screen const screen(bytes_of([&](std::ostream& os) { body(os << csi::cup{24, 1} << thin); }), 24, 20);
        return row_of(screen, 23, 20);
    };
    EXPECT_EQ(last_row([](std::ostream& os) { os << on_blue << "ab\ncd"; }), "{on blue}cd                  ");
    EXPECT_EQ(last_row([](std::ostream& os) { os << on_blue << "ab" << normal << "\ncd"; }), "cd");
}

TEST(BackgroundSeen, FillsWhatIsErased)
{
    EXPECT_EQ(
        row_of(Screen(bytes_of([](std::ostream& os) { os << thin << on_blue << "ab" << csi::el{0}; }), 24, 20), 0, 20),
        "{on blue}ab                  ");
    Screen const screen(bytes_of([](std::ostream& os) { os << thin << on_blue << "ab" << csi::cls; }), 2, 4);
    EXPECT_EQ(rows_of(screen, 2, 4), (std::vector<std::string>{"{on blue}    ", "{on blue}    "}));
    EXPECT_EQ(screen.cursor(), (Position{0, 2}));
}

// ---------------------------------------------------------------------------------------------
// Themes
// ---------------------------------------------------------------------------------------------

struct SeenTheme {
    char const* role;
    Body insert;
    char const* seen; // the theme on a fresh record, and an n after it
};

template <class Theme>
Body of_text()
{
    return [](std::ostream& os) { os << Theme("text"); };
}

// Bold is on at load.
SeenTheme const themes[] = {
    {"app_title", of_text<app_title>(), "{green bold}textn"},
    {"alert", of_text<alert>(), "{red bold}textn"},
    {"info", of_text<info>(), "{yellow bold}textn"},
    {"default_text", of_text<default_text>(), "{cyan bold}textn"},
    {"seperator", of_text<seperator>(), "{white bold}textn"},
    {"help", of_text<help>(), "{blue bold}textn"},
    {"prompt", of_text<prompt>(), "{magenta bold}textn"},
    {"version", of_text<version>(), "{white bold}textn"},
    {"cursor", of_text<cursor>(), "{cyan bold}textn"},
    {"commandLine", of_text<commandLine>(), "{white bold}text{}n"},
    {"name", of_text<name>(), "{white bold}textn"},
    {"path", of_text<path>(), "{cyan bold}textn"},
    {"path of a number", [](std::ostream& os) { os << std::hex << path(std::uint32_t{255}); }, "{cyan bold}255n"},
    {"_default_text", [](std::ostream& os) { os << _default_text; }, "{green bold}n"},
    {"_help", [](std::ostream& os) { os << _help; }, "{yellow bold}n"},
    {"_commandLine", [](std::ostream& os) { os << _commandLine; }, "{cyan bold}n"},
    {"_status", [](std::ostream& os) { os << _status; }, "{magenta bold}n"},
    {"immediate_destination", [](std::ostream& os) { os << immediate_destination(0x2a); }, "{cyan bold}2an"},
    {"total_count", [](std::ostream& os) { os << total_count(7); }, "{blue bold}07n"},
    {"crc of 8 bits", [](std::ostream& os) { os << crc(std::uint8_t{0xef}); }, "{green bold}efn"},
    {"crc of 16 bits", [](std::ostream& os) { os << crc(std::uint16_t{0xbeef}); }, "{green bold}be ef n"},
    {"request_title", [](std::ostream& os) { os << request_title("AB"); }, "{magenta bold}41 42 n"},
    {"response_title", [](std::ostream& os) { os << response_title("AB"); }, "{magenta bold}41 42 n"},
};

TEST(ThemeSeen, InItsColors)
{
    for (auto const& theme : themes) {
        EXPECT_EQ(first_row([&](std::ostream& os) {
                      theme.insert(os);
                      os << "n";
                  }),
                  theme.seen)
            << theme.role;
    }
}

// alert, cursor, name and request_title make their text bold themselves; what commandLine ends is all
// that was there.
TEST(ThemeSeen, InWhatTheRecordHolds)
{
    struct Row {
        Body insert;
        char const* seen;
    } const rows[] = {
        {of_text<app_title>(), "{green on white underline}text"},
        {of_text<response_title>(), "{magenta on white underline}74 65 78 74 "},
        {of_text<alert>(), "{red on white bold underline}text"},
        {of_text<cursor>(), "{cyan on white bold underline}text"},
        {of_text<name>(), "{white on white bold underline}text"},
        {of_text<request_title>(), "{magenta on white bold underline}74 65 78 74 "},
        {of_text<commandLine>(), "{white on white underline}text"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(first_row([&](std::ostream& os) {
                      row.insert(os << thin << underline << on_white);
                      os << normal;
                  }),
                  row.seen);
    }
    EXPECT_EQ(first_row([](std::ostream& os) { os << thin << underline << commandLine("ls") << green << "n"; }),
              "{white underline}ls{green bold}n");
}

TEST(ThemeSeen, WithoutColorsUntilColorized)
{
    auto const run = on_terminal([] {
        for (auto const& theme : themes) {
            theme.insert(std::cout);
            std::cout << "n\n";
        }
    });
    Screen const screen(run.out);
    EXPECT_EQ(rows_of(screen, 24),
              (std::vector<std::string>{"textn", "textn", "textn", "textn", "textn",   "textn",   "textn",   "textn",
                                        "textn", "textn", "textn", "textn", "255n",    "n",       "n",       "n",
                                        "n",     "2an",   "07n",   "efn",   "be ef n", "41 42 n", "41 42 n", ""}));
}

TEST(ThemeSeen, AsAFrameOnANarrowScreen)
{
    Screen const screen(bytes_of([](std::ostream& os) {
                            os << response_title("READ") << immediate_destination(0x11) << " " << total_count(2) << " "
                               << crc(std::uint16_t{0x1d0f}) << normal << "ok";
                        }),
                        24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20),
              (std::vector<std::string>{"{magenta bold}52 45 41 44 {cyan bold}11 {blue bold}02 {green bold}1d",
                                        "{green bold} 0f {}ok"}));
    EXPECT_EQ(screen.cursor(), (Position{1, 6}));
}

// ---------------------------------------------------------------------------------------------
// Dumps
// ---------------------------------------------------------------------------------------------

TEST(DumpSeen, InTheColorsThatAreCurrent)
{
    std::vector<unsigned char> const bytes = {0x01, 0x02, 0xff};
    EXPECT_EQ(first_row([&](std::ostream& os) {
                  os << HexDump(bytes) << thin << red << on_white << HexDump(bytes, ":") << normal << "|";
              }),
              "01 02 ff {red on white}01:02:ff:{}|");
}

TEST(DumpSeen, PaddedInTheBackground)
{
    EXPECT_EQ(first_row([](std::ostream& os) {
                  os << thin << on_blue << myfillandw{'.', 8} << HexDump(static_cast<unsigned short>(0x1f)) << "|";
              }),
              "{on blue}..0x001f|");
}

TEST(DumpSeen, CutAcrossANarrowScreen)
{
    Screen const screen(bytes_of([](std::ostream& os) { os << thin << green << HexDump(std::string(20, 'A')) << "|"; }),
                        24, 20);
    EXPECT_EQ(rows_of(screen, 4, 20),
              (std::vector<std::string>{"{green}41 41 41 41 41 41 41", "{green} 41 41 41 41 41 41 4",
                                        "{green}1 41 41 41 41 41  ..", "{green}. (20 bytes) |"}));
}

} // namespace
