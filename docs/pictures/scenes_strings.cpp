#include "kestry/hueline_classic.hpp"

#include "scenes.hpp"

#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

namespace hueline::pictures {

namespace {

using namespace kestry;
using namespace kestry::ColorTheme;
using namespace kestry::DataTheme;
using std::cout;

// Quoted on a page: laid out by hand.
// clang-format off

void strings_colours()
{
    std::string const end = Hueline::color(HexColor::reset);
    cout << Hueline::color(HexColor::red, "red ") << Hueline::color(HexColor::green, "green ")
         << Hueline::color(HexColor::yellow, "yellow ") << Hueline::color(HexColor::blue, "blue ")
         << Hueline::color(HexColor::magenta, "magenta ") << Hueline::color(HexColor::cyan, "cyan ")
         << Hueline::color(HexColor::white, "white") << end << '\n';
    cout << Hueline::bright_color(HexColor::red, "bold red ") << end
         << Hueline::bright_color(HexColor::red) << "bright red "
         << Hueline::bright_color(HexColor::cyan) << "bright cyan " << end
         << Hueline::color(HexColor::bright) << "bold " << end
         << Hueline::color(HexColor::dim) << "dim" << end << '\n';
}

void strings_bytes()
{
    unsigned char const escape = 0x1b, other = 0xa5;
    cout << Hueline::color(HexColor::green, escape) << ' ' << Hueline::bright_color(HexColor::green, other)
         << Hueline::color(HexColor::reset) << '\n';
}

void strings_true_colour()
{
    std::string const end = Hueline::color(HexColor::reset);
    cout << Hueline::color(255, 128, 0) << "foreground "
         << Hueline::color(38, 0, 200, 255) << "the same, with 38" << end << ' '
         << Hueline::color_bg(96, 0, 128) << " background "
         << Hueline::color(48, 0, 96, 64) << " the same, with 48 " << end << '\n';
    for (int code = 0; code < 16; ++code) {
        cout << Hueline::color(static_cast<HexColor_VGA>(code)) << "    ";
    }
    cout << end << '\n';
}

void strings_switches()
{
    std::string const end = defaultOperatingSystemText(); // empty where there is no colour
    Hueline scope;
    cout << alert("in colour, ") << end;
    scope.flipColor();
    cout << alert("flipped, ") << defaultOperatingSystemText();
    scope.unflipColor();
    cout << alert("unflipped, ") << end;
    Hueline::setNoFrillsMode(true);
    cout << alert("no frills: plain\n");
    Hueline::setNoFrillsMode(false);
}

void strings_cursor()
{
    cout << Hueline::hide_cursor() << "no cursor here, " << Hueline::show_cursor() << "and here it is again\n";
}

void strings_time_stamps()
{
    cout << Hueline::current_time() << ' ' << Hueline::time_stamp("[at boot]") << Hueline::color(HexColor::reset)
         << " device 7 is gone\n";
}

void strings_themes_of_text()
{
    std::string const end = defaultOperatingSystemText();
    cout << app_title("app_title ") << version("version ") << seperator("seperator ")
         << default_text("default_text ") << info("info ") << help("help ") << prompt("prompt") << end << '\n';
    cout << alert("alert ") << end << cursor("cursor ") << end << name("name ") << end
         << path("path ") << path(0x8004U) << ' ' << commandLine("commandLine") << '\n';
    cout << default_text() << "default_text() " << help() << "help() " << commandLine() << "commandLine() "
         << status() << "status()" << end << '\n';
    cout << alert("alert ") << "stays dim until " << end << "the end\n";
}

void strings_themes_of_data()
{
    std::string const end = defaultOperatingSystemText();
    cout << immediate_destination(0x10) << ' ' << total_count(0x09) << end << ' '
         << request_title("GET *") << end << '\n';
    cout << immediate_destination(0x00) << ' ' << total_count(0x06) << end << ' '
         << response_title("!*") << end << '\n';
}

void strings_dumps()
{
    unsigned char const byte = 0xff;
    unsigned short const number = 0xbeef;
    cout << HexDump('\n') << ' ' << HexDump(byte) << defaultOperatingSystemText() << ' ' << HexDump(number) << ' '
         << HexDump(0xc0ffeeUL) << ' ' << HexDump(std::vector<unsigned int>{0xdeadbeef, 42}) << '\n';
    cout << HexDump(std::string("Kestry")) << HexDump({1, 2, 3}, ":") << ' ' << HexDump::raw_data_byte(7) << '\n';
    cout << HexDump(std::vector<unsigned char>(24, 0x5a)) << '\n';
    cout << rtrim(HexDump::raw_data(std::vector<unsigned char>{})) << defaultOperatingSystemText() << '\n';
}

// clang-format on

} // namespace

void draw_in_colour(void (*draw)())
{
    Hueline colours;
    colours.useColor(isatty(STDOUT_FILENO) != 0);
    draw();
}

// clang-format off
std::vector<Scene> string_scenes()
{
    return {
        {"strings_colours", "The named colours, and their bright forms", strings_colours},
        {"strings_bytes", "Two bytes in hexadecimal", strings_bytes},
        {"strings_true_colour", "24-bit colours, and the sixteen colours of the VGA palette", strings_true_colour},
        {"strings_switches", "Words in red where the switches allow colour", strings_switches},
        {"strings_cursor", "A text during which the cursor was hidden", strings_cursor},
        {"strings_time_stamps", "Time stamps in cyan", strings_time_stamps},
        {"strings_themes_of_text", "Texts in the colours of their role", strings_themes_of_text},
        {"strings_themes_of_data", "The fields of two frames, each in its colour", strings_themes_of_data},
        {"strings_dumps", "Hex dumps in green", strings_dumps},
    };
}
// clang-format on

} // namespace hueline::pictures
