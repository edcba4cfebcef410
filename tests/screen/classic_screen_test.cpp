// What a person sees of the strings of the string interface. Faint text looks as usual here: the
// terminal of the tests does not know it.

#include "kestry/hueline_classic.hpp"

#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry;

using Text = std::function<std::string()>;
using Rows = std::vector<std::string>;

// What body writes, in colour or without.
std::string bytes_of(std::function<void()> const& body, bool in_color = true)
{
    auto const run = on_terminal([&] {
        Hueline switches;
        switches.useColor(in_color);
        body();
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

struct SeenText {
    char const* name;
    Text text;
    char const* in_color; // with an n after it, which is ordinary where the text ends its colour
    char const* plain;
};

void expect_seen(std::vector<SeenText> const& texts)
{
    for (SeenText const& t : texts) {
        auto const write = [&] { std::cout << t.text() << "n"; };
        EXPECT_EQ(row_of(Screen(bytes_of(write)), 0), t.in_color) << t.name;
        EXPECT_EQ(row_of(Screen(bytes_of(write, false)), 0), t.plain) << t.name;
    }
}

TEST(ClassicThemeSeen, InItsColors)
{
    expect_seen({
        {"app_title", [] { return ColorTheme::app_title("text"); }, "{green}textn", "textn"},
        {"alert", [] { return ColorTheme::alert("text"); }, "{red bold}textn", "textn"},
        {"info", [] { return ColorTheme::info("text"); }, "{yellow}textn", "textn"},
        {"default_text of a text", [] { return ColorTheme::default_text("text"); }, "{cyan}textn", "textn"},
        {"default_text", [] { return ColorTheme::default_text(); }, "{green}n", "n"},
        {"defaultOperatingSystemText", [] { return ColorTheme::defaultOperatingSystemText(); }, "n", "n"},
        {"seperator", [] { return ColorTheme::seperator("text"); }, "{white}textn", "textn"},
        {"help", [] { return ColorTheme::help(); }, "{yellow}n", "n"},
        {"help of a text", [] { return ColorTheme::help("text"); }, "{blue}textn", "textn"},
        {"prompt", [] { return ColorTheme::prompt("text"); }, "{magenta}textn", "textn"},
        {"version", [] { return ColorTheme::version("text"); }, "{white}textn", "textn"},
        {"cursor", [] { return ColorTheme::cursor("text"); }, "{cyan bold}textn", "textn"},
        {"commandLine", [] { return ColorTheme::commandLine(); }, "{cyan}n", "n"},
        {"commandLine of a text", [] { return ColorTheme::commandLine("text"); }, "{white}text{}n", "textn"},
        {"path", [] { return ColorTheme::path("text"); }, "{cyan}textn", "textn"},
        {"path of a number", [] { return ColorTheme::path(4294967295U); }, "{cyan}4294967295n", "4294967295n"},
        {"name", [] { return ColorTheme::name("text"); }, "{yellow bold}textn", "textn"},
        {"status", [] { return ColorTheme::status(); }, "{magenta}n", "n"},
        {"immediate_destination", [] { return DataTheme::immediate_destination(0x2a); }, "{cyan}2an", "2an"},
        {"total_count", [] { return DataTheme::total_count(7); }, "{blue bold}07n", "07n"},
        {"request_title", [] { return DataTheme::request_title("text"); }, "{magenta bold}textn", "textn"},
        {"response_title", [] { return DataTheme::response_title("text"); }, "{magenta}textn", "textn"},
    });
}

TEST(ClassicThemeSeen, AsAFrameOnANarrowScreen)
{
    Screen const screen(bytes_of([] {
                            std::cout << DataTheme::response_title("READ") << " "
                                      << DataTheme::immediate_destination(0x11) << " " << DataTheme::total_count(2)
                                      << " " << ColorTheme::name("node 1789") << Hueline::color(HexColor::reset)
                                      << "ok";
                        }),
                        24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (Rows{"{magenta}READ {cyan}11 {blue bold}02 {yellow bold}node 1789", "ok"}));
    EXPECT_EQ(screen.cursor(), (Position{1, 2}));
}

TEST(ClassicColorSeen, OfEachCode)
{
    expect_seen({
        {"reset", [] { return "\x1b[31m" + Hueline::color(HexColor::reset); }, "n", "{red}n"},
        {"bright", [] { return Hueline::color(HexColor::bright); }, "{bold}n", "n"},
        {"bright red", [] { return Hueline::bright_color(HexColor::red); }, "{bright red}n", "n"},
        {"bright green", [] { return Hueline::bright_color(HexColor::green); }, "{bright green}n", "n"},
        {"bright yellow", [] { return Hueline::bright_color(HexColor::yellow); }, "{bright yellow}n", "n"},
        {"bright blue", [] { return Hueline::bright_color(HexColor::blue); }, "{bright blue}n", "n"},
        {"bright magenta", [] { return Hueline::bright_color(HexColor::magenta); }, "{bright magenta}n", "n"},
        {"bright cyan", [] { return Hueline::bright_color(HexColor::cyan); }, "{bright cyan}n", "n"},
        {"bright white", [] { return Hueline::bright_color(HexColor::white); }, "{bright white}n", "n"},
        {"a background", [] { return Hueline::color(static_cast<HexColor>(44)); }, "{on blue}n", "n"},
        {"a byte", [] { return Hueline::color(HexColor::cyan, 0x0a); }, "{cyan}0an", "0an"},
        {"a bright byte", [] { return Hueline::bright_color(HexColor::blue, 0xff); }, "{blue bold}ffn", "ffn"},
        {"a text", [] { return Hueline::color(HexColor::green, "go"); }, "{green}gon", "gon"},
        {"a bright text", [] { return Hueline::bright_color(HexColor::green, "go"); }, "{green bold}gon", "gon"},
        {"true colour", [] { return Hueline::color(255, 128, 0); }, "{255/128/0}n", "n"},
        {"true background", [] { return Hueline::color_bg(0, 0, 1); }, "{on 0/0/1}n", "n"},
        {"by selector", [] { return Hueline::color(48, 1, 2, 3) + Hueline::color(38, 4, 5, 6); }, "{4/5/6 on 1/2/3}n",
         "n"},
        {"a time stamp", [] { return Hueline::time_stamp("[now]"); }, "{cyan}[now]n", "[now]n"},
    });
}

TEST(ClassicCursorSeen, HiddenAndShown)
{
    EXPECT_FALSE(Screen(bytes_of([] { std::cout << Hueline::hide_cursor(); })).cursor_visible());
    EXPECT_TRUE(
        Screen(bytes_of([] { std::cout << Hueline::hide_cursor() << Hueline::show_cursor(); })).cursor_visible());
    EXPECT_TRUE(Screen(bytes_of([] { std::cout << Hueline::hide_cursor(); }, false)).cursor_visible());
}

// Of a dump, with an n after it.
std::string seen_dump(std::function<void()> const& write)
{
    return row_of(Screen(bytes_of([&] {
                      write();
                      std::cout << "n";
                  })),
                  0);
}

TEST(ClassicDumpSeen, InItsColors)
{
    std::vector<unsigned char> const bytes = {0x01, 0xff};
    EXPECT_EQ(seen_dump([] { std::cout << HexDump('A'); }), "{green}41n");
    EXPECT_EQ(seen_dump([] { std::cout << HexDump(static_cast<unsigned short>(0x1f)); }), "0x001fn");
    EXPECT_EQ(seen_dump([] { std::cout << HexDump(0x1234UL); }), "00001234n");
    EXPECT_EQ(seen_dump([] { std::cout << HexDump(std::vector<unsigned>{1, 0xabcdef}); }), "00000001 00abcdef n");
    EXPECT_EQ(seen_dump([&] { std::cout << HexDump(bytes, ":"); }), "{green}01:ff:{}n");
    EXPECT_EQ(seen_dump([&] { std::cout << HexDump::raw_data(bytes); }), "{green}01 ff {}n");
    EXPECT_EQ(seen_dump([] { std::cout << Hueline::color(HexColor::red) << HexDump(0x1UL); }), "{red}00000001n");
}

TEST(ClassicDumpSeen, CutAcrossANarrowScreen)
{
    Screen const screen(bytes_of([] { std::cout << HexDump(std::string(20, 'A')) << "n"; }), 24, 20);
    EXPECT_EQ(rows_of(screen, 5, 20), (Rows{
                                          "{green}41 41 41 41 41 41 41",
                                          "{green} 41 41 41 41 41 41 4",
                                          "{green}1 41 41 41 41 41  ..",
                                          "{green}. {yellow}({cyan}20 bytes{yellow}) {}n",
                                          "",
                                      }));
}

} // namespace
