// What a person sees of the strings of the string interface. Faint text looks as usual here: the
// terminal of the tests does not know it.

#include "kestry/hueline_classic.hpp"

#include "support/dumps.hpp"
#include "support/look.hpp"
#include "support/modes.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::ColorTheme;
using namespace kestry::DataTheme;
using kestry::HexColor;
using kestry::HexDump;
using kestry::Hueline;

using Rows = std::vector<std::string>;

// With an n after it, which is ordinary where the text ends its colour.
std::string seen(std::string const& text) { return row_of(Screen(text + "n"), 0); }

TEST(ClassicThemeSeen, InItsColors)
{
    struct {
        std::string (*theme)(std::string const& text);
        std::string seen;
    } const texts[] = {{app_title, "{green}textn"},
                       {alert, "{red bold}textn"},
                       {info, "{yellow}textn"},
                       {default_text, "{cyan}textn"},
                       {seperator, "{white}textn"},
                       {help, "{blue}textn"},
                       {prompt, "{magenta}textn"},
                       {version, "{white}textn"},
                       {cursor, "{cyan bold}textn"},
                       {commandLine, "{white}text{}n"},
                       {path, "{cyan}textn"},
                       {name, "{yellow bold}textn"},
                       {request_title, "{magenta bold}textn"},
                       {response_title, "{magenta}textn"},
                       {Hueline::time_stamp, "{cyan}textn"}};
    struct {
        std::string (*theme)();
        std::string seen;
    } const sequences[] = {{default_text, "{green}n"},
                           {defaultOperatingSystemText, "n"},
                           {help, "{yellow}n"},
                           {commandLine, "{cyan}n"},
                           {status, "{magenta}n"}};
    for (auto const& text : texts) {
        EXPECT_EQ(seen(text.theme("text")), "textn") << text.seen;
        InMode const mode(Mode::on);
        EXPECT_EQ(seen(text.theme("text")), text.seen);
    }
    for (auto const& sequence : sequences) {
        EXPECT_EQ(seen(sequence.theme()), "n") << sequence.seen;
        InMode const mode(Mode::on);
        EXPECT_EQ(seen(sequence.theme()), sequence.seen);
    }
}

TEST(ClassicThemeSeen, AsAFrameOnANarrowScreen)
{
    InMode const mode(Mode::on);
    Screen const screen(response_title("READ") + " " + immediate_destination(0x11) + " " + total_count(2) + " " +
                            name("node 1789") + Hueline::color(HexColor::reset) + "ok",
                        24, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (Rows{"{magenta}READ {cyan}11 {blue bold}02 {yellow bold}node 1789", "ok"}));
    EXPECT_EQ(screen.cursor(), (Position{1, 2}));
}

TEST(ClassicColorSeen, OfEachKind)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(seen("\x1b[31m" + Hueline::color(HexColor::reset)), "n");
    EXPECT_EQ(seen(Hueline::color(HexColor::bright)), "{bold}n");
    EXPECT_EQ(seen(Hueline::bright_color(HexColor::red)), "{bright red}n");
    EXPECT_EQ(seen(Hueline::bright_color(HexColor::white)), "{bright white}n");
    EXPECT_EQ(seen(Hueline::color(static_cast<HexColor>(44))), "{on blue}n");
    EXPECT_EQ(seen(Hueline::color(HexColor::cyan, 0x0a)), "{cyan}0an");
    EXPECT_EQ(seen(Hueline::bright_color(HexColor::blue, 0xff)), "{blue bold}ffn");
    EXPECT_EQ(seen(Hueline::color(255, 128, 0)), "{255/128/0}n");
    EXPECT_EQ(seen(Hueline::color_bg(0, 0, 1)), "{on 0/0/1}n");
    EXPECT_EQ(seen(Hueline::color(48, 1, 2, 3) + Hueline::color(38, 4, 5, 6)), "{4/5/6 on 1/2/3}n");
    EXPECT_EQ(seen(Hueline::color(kestry::HexColor_VGA::silver)), "{on 192/192/192}n");
}

TEST(ClassicCursorSeen, HiddenAndShown)
{
    EXPECT_TRUE(Screen(Hueline::hide_cursor()).cursor_visible());
    InMode const mode(Mode::on);
    EXPECT_FALSE(Screen(Hueline::hide_cursor()).cursor_visible());
    EXPECT_TRUE(Screen(Hueline::hide_cursor() + Hueline::show_cursor()).cursor_visible());
}

TEST(ClassicDumpSeen, InItsColors)
{
    InMode const mode(Mode::on);
    std::vector<unsigned char> const bytes = {0x01, 0xff};
    EXPECT_EQ(seen(text_of(HexDump('A'))), "{green}41n");
    EXPECT_EQ(seen(text_of(HexDump(static_cast<unsigned short>(0x1f)))), "0x001fn");
    EXPECT_EQ(seen(text_of(HexDump(std::vector<unsigned>{1, 0xabcdef}))), "00000001 00abcdef n");
    EXPECT_EQ(seen(text_of(HexDump(bytes, ":"))), "{green}01:ff:{}n");
    EXPECT_EQ(seen(HexDump::raw_data(bytes)), "{green}01 ff {}n");
    EXPECT_EQ(seen(Hueline::color(HexColor::red) + text_of(HexDump(0x1UL))), "{red}00000001n");
}

TEST(ClassicDumpSeen, CutAcrossANarrowScreen)
{
    InMode const mode(Mode::on);
    Screen const screen(text_of(HexDump(std::string(20, 'A'))) + "n", 24, 20);
    EXPECT_EQ(rows_of(screen, 5, 20),
              (Rows{"{green}41 41 41 41 41 41 41", "{green} 41 41 41 41 41 41 4", "{green}1 41 41 41 41 41  ..",
                    "{green}. {yellow}({cyan}20 bytes{yellow}) {}n", ""}));
}

} // namespace
