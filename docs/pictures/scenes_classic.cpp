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

void string_interface_colors()
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

void string_interface_bytes()
{
    unsigned char const escape = 0x1b, other = 0xa5;
    cout << Hueline::color(HexColor::green, escape) << ' ' << Hueline::bright_color(HexColor::green, other)
         << Hueline::color(HexColor::reset) << '\n';
}

void string_interface_true_color()
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

void string_interface_switches()
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

void string_interface_cursor()
{
    cout << Hueline::hide_cursor() << "no cursor here, " << Hueline::show_cursor() << "and here it is again\n";
}

void string_interface_time_stamps()
{
    cout << Hueline::current_time() << ' ' << Hueline::time_stamp("[at boot]") << Hueline::color(HexColor::reset)
         << " device 7 is gone\n";
}

void string_interface_themes_of_text()
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

void string_interface_themes_of_data()
{
    std::string const end = defaultOperatingSystemText();
    cout << immediate_destination(0x10) << ' ' << total_count(0x09) << end << ' '
         << request_title("GET *") << end << '\n';
    cout << immediate_destination(0x00) << ' ' << total_count(0x06) << end << ' '
         << response_title("!*") << end << '\n';
}

void string_interface_dumps()
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

void draw_in_color(void (*draw)())
{
    Hueline colors;
    colors.useColor(isatty(STDOUT_FILENO) != 0);
    draw();
}

// clang-format off
std::vector<Scene> string_scenes()
{
    return {
        {"string_interface_colors", "The named colours, and their bright forms", string_interface_colors},
        {"string_interface_bytes", "Two bytes in hexadecimal", string_interface_bytes},
        {"string_interface_true_color", "24-bit colours, and the sixteen colours of the VGA palette", string_interface_true_color},
        {"string_interface_switches", "Words in red where the switches allow colour", string_interface_switches},
        {"string_interface_cursor", "A text during which the cursor was hidden", string_interface_cursor},
        {"string_interface_time_stamps", "Time stamps in cyan", string_interface_time_stamps},
        {"string_interface_themes_of_text", "Texts in the colours of their role", string_interface_themes_of_text},
        {"string_interface_themes_of_data", "The fields of two frames, each in its colour", string_interface_themes_of_data},
        {"string_interface_dumps", "Hex dumps in green", string_interface_dumps},
    };
}
// clang-format on

} // namespace hueline::pictures
