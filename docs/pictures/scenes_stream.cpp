#include "kestry/hueline_stream.hpp"

#include "scenes.hpp"

#include <cstdint>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

namespace hueline::pictures {

namespace {

using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using std::cout;

// Quoted on a page: laid out by hand.
// clang-format off

void smallest()
{
    cout << red << "failed" << normal << ": no such device\n";
}

void overview()
{
    std::string const title = "               Hueline: terminal colour for command-line tools                ";
    int red_part = 40;
    for (char const c : title) {
        cout << on_rgb{red_part += 2, 60, 200} << white << c;
    }
    cout << reset << "\n\n";

    cout << red << "red " << green << "green " << yellow << "yellow " << blue << "blue " << magenta << "magenta "
         << cyan << "cyan " << white << "bold " << thin << dark << "faint " << lite
         << italic << "italic" << noitalic << ' ' << underline << "underline" << nounderline << ' '
         << reverse << "reverse" << noreverse << ' ' << crossed << "crossed" << reset << "\n\n";

    cout << alert("alert: ") << reset << name("probe") << reset << " does not answer on "
         << path("/dev/ttyS0") << reset << '\n';
    cout << info("info:  ") << reset << "trying again, see " << commandLine("probe --trace") << '\n';
    cout << prompt("Go on?") << reset << ' ' << cursor(">") << reset << " yes\n\n";

    cout << "request   " << immediate_destination(0x10) << ' ' << total_count(0x09) << ' '
         << request_title("GET *") << reset << crc(std::uint16_t{0xbefb}) << reset << '\n';
    cout << "response  " << immediate_destination(0x00) << ' ' << total_count(0x0f) << ' '
         << response_title("ID Kestry 7") << reset << crc(std::uint16_t{0x21c6}) << reset << "\n\n";

    for (int up = 0; up < 256; up += 10) {
        cout << on_rgb{255, up, 0} << "   ";
    }
    cout << reset << '\n';
    for (int up = 0; up < 256; up += 10) {
        cout << on_rgb{255 - up, 255, up} << "   ";
    }
    cout << reset << '\n';
    for (int up = 0; up < 256; up += 10) {
        cout << on_rgb{0, 255 - up, 255} << "   ";
    }
    cout << reset << "\n\n";

    std::string const plain_text = csi::color(0), frame = csi::color(32);
    std::string const done = csi::color(36) + "#", todo = csi::color(37) + ".";
    std::string const label = plain_text + " copied";
    for (int i = 0; i <= 60; ++i) {
        cout << csi::cr << status_line{i, 0, 60, done, todo, frame + "[", frame + "]", "|/-\\", ""}
             << progress_meter{i, 0, 60, label, "", plain_text, csi::color(33)} << std::flush << csi::delay{60};
    }
}

void named_colors()
{
    for (auto const weight : {thin, bold}) {
        cout << weight << red << "red " << green << "green " << yellow << "yellow " << blue << "blue "
             << magenta << "magenta " << cyan << "cyan " << white << "white "
             << on_white << grey << "grey" << ' ' << black << "black" << reset << '\n';
    }
    cout << white << on_grey << " on_grey " << on_black << " on_black " << on_red << " on_red "
         << on_green << " on_green " << on_blue << " on_blue " << on_magenta << " on_magenta " << reset << '\n';
    cout << black << on_yellow << " on_yellow " << on_cyan << " on_cyan " << on_white << " on_white " << reset << '\n';
}

void attributes()
{
    cout << adjust << "bold at load " << thin << "thin " << bold << "bold" << '\n' << thin;
    cout << dark << "dark " << lite << "lite " << dark << "dark " << bright << "bright" << '\n';
    cout << italic << "italic" << noitalic << " noitalic" << '\n';
    cout << underline << "underline" << nounderline << " nounderline" << '\n';
    cout << blink << "blink" << noblink << " noblink" << '\n';
    cout << reverse << "reverse" << noreverse << " noreverse" << '\n';
    cout << crossed << "crossed" << adjust << " adjust" << '\n';
    cout << '[' << concealed << "concealed" << adjust << "] adjust" << normal << '\n';
}

void normal_and_reset()
{
    cout << thin << green << italic << "green italic "
         << normal << "normal " << adjust << "adjust brings it back "
         << reset << "reset " << adjust << "adjust: bold, as at load" << normal << '\n';
}

void push_and_pull()
{
    cout << thin << cyan << "a line that is cyan, with "
         << push << red << underline << "one red word" << pull
         << adjust << " and cyan as before" << reset << '\n';
}

void modes()
{
    cout << green << "colorized:" << normal << color_mode_state;
    {
        NoColorMode const plain;
        cout << green << "NoColorMode:" << normal << color_mode_state;
        {
            UseColorMode const colored;
            cout << green << "UseColorMode:" << normal << color_mode_state;
        }
    }
    {
        NoFrillsMode const plain;
        cout << green << "NoFrillsMode:" << normal << frills_mode_state;
        {
            UseFrillsMode const colored;
            cout << green << "UseFrillsMode:" << normal << frills_mode_state;
        }
    }
    cout << nocolorize << green << "nocolorize:" << normal << color_mode_state;
}

void by_number()
{
    for (int i = 0; i < 8; ++i) {
        next(cout, i, false) << col("next " + std::to_string(i));
    }
    cout << reset << '\n';
    for (int i = 0; i < 8; ++i) {
        cout << (i < 4 ? white : grey);
        next(cout, i, true) << col("a label that is cut");
    }
    cout << reset << '\n';
}

void palette()
{
    for (int code = 0; code < 256; ++code) {
        bool const is_light = code < 16 ? code == 7 || code > 9 : code < 232 ? (code - 16) % 36 > 17 : code > 243;
        cout << thin << on_color{code} << color{is_light ? 0 : 15}
             << std::setw(4) << code << ' '; // the width after the colour
        if (code % 16 == 15) {
            cout << normal << '\n';
        }
    }
    cout << reset;
}

void true_color()
{
    for (int i = 0; i < 64; ++i) {
        cout << on_rgb{4 * i, 64, 255 - 4 * i} << ' ';
    }
    cout << reset << '\n';
    for (int i = 0; i < 64; ++i) {
        cout << rgb{255, 4 * i, 128} << "Hueline "[i % 8];
    }
    cout << reset << '\n';
}

void sequences_as_strings()
{
    // Strings ask nobody: a pipe receives them too.
    cout << csi::color(33) + "csi::color(33) "
         << csi::rgb(255, 128, 0) + "csi::rgb(255, 128, 0) "
         << csi::on_rgb(64, 0, 96) + "csi::on_rgb(64, 0, 96)" + csi::color(0) << '\n';
}

void codes_past_the_record()
{
    for (int code = 91; code < 97; ++code) {
        cout << csi::sgr{code} << " csi::sgr{" << code << '}';
    }
    cout << csi::sgr{0} << '\n' << csi::sgr{30};
    for (int code = 101; code < 104; ++code) {
        cout << parameters_template{code} << " parameters_template{" << code << "} ";
    }
    cout << normal << '\n';
}

void cursor_moves()
{
    cout << csi::cls << csi::cup{2, 4} << "cup{2, 4}" << csi::hvp{4, 20} << "hvp{4, 20}";
    cout << csi::cnl{2} << "cnl{2}" << csi::cuf{4} << "cuf{4}" << csi::cuu{3} << "cuu{3}";
    cout << csi::cud{2} << "cud{2}" << csi::cub{28} << "cub{28}" << csi::cha{36} << "cha{36}";
    cout << csi::scp << csi::cpl{4} << "cpl{4}" << csi::rcp << " scp ... rcp" << csi::lf << csi::lf;
}

void erasing()
{
    cout << "0123456789" << csi::cha{5} << csi::el{0} << csi::cha{14} << "el{0} at column 5\n";
    cout << "0123456789" << csi::cha{5} << csi::el{1} << csi::cha{14} << "el{1} at column 5\n";
    cout << "0123456789" << csi::cha{5} << csi::el{2} << csi::cha{14} << "el{2} at column 5\n";
    cout << "0123456789\n0123456789\n" << csi::cuu{2};
    cout << csi::cha{5} << csi::ed{0} << csi::cha{14} << "ed{0} at column 5, and one line more\n";
}

void scrolling()
{
    for (char const* const line : {"one", "two", "three", "four", "five"}) {
        cout << line << '\n';
    }
    for (int i = 0; i < 4; ++i) {
        cout << csi::cr << csi::su{1} << std::flush << csi::delay{400};
    }
    for (int i = 0; i < 4; ++i) {
        cout << csi::cr << csi::sd{1} << std::flush << csi::delay{400};
    }
}

void spinners()
{
    std::string const frames = "|/-\\";
    cout << yellow;
    for (int i = 0; i < 8; ++i) {
        cout << csi::cr << spinner{frames, "waiting for device 7 "} << std::flush << csi::delay{150};
    }
    cout << reset;
}

void status_lines()
{
    std::string const done = "=";
    cout << cyan;
    for (int i = 0; i <= 40; ++i) {
        cout << csi::cr << status_line{i, 0, 40, done, " ", "[", "]", "|/-\\", ""} << std::flush << csi::delay{100};
    }
    cout << reset;
}

void progress_meters()
{
    std::string const label = "erasing flash";
    cout << green;
    for (int i = 0; i <= 40; ++i) {
        cout << csi::cr << progress_meter{i, 0, 40, label, "* ", "", ""} << std::flush << csi::delay{100};
    }
    cout << reset;
}

void themes_of_text()
{
    cout << app_title("app_title ") << version("version ") << seperator("seperator ")
         << default_text("default_text ") << info("info ") << help("help ") << prompt("prompt") << reset << '\n';
    cout << alert("alert ") << reset << cursor("cursor ") << reset << name("name ") << reset
         << path("path ") << path(0x8004) << ' ' << commandLine("commandLine") << '\n';
    cout << _default_text << "_default_text " << _help << "_help " << _commandLine << "_commandLine "
         << _status << "_status" << reset << '\n';
    cout << alert("alert ") << "stays dark until " << reset << "reset\n";
}

void themes_of_data()
{
    cout << immediate_destination(0x10) << ' ' << total_count(0x09) << ' '
         << request_title("GET *") << ' ' << crc(std::uint16_t{0xbefb}) << reset << '\n';
    cout << immediate_destination(0x00) << ' ' << total_count(0x06) << ' '
         << response_title("!*") << ' ' << crc(std::uint8_t{0x80}) << reset << '\n';
}

void dumps()
{
    std::vector<unsigned char> const bytes(24, 0x5a);
    unsigned char const byte = 0xff;
    unsigned short const number = 0xbeef;
    cout << yellow << HexDump('\n') << ' ' << HexDump(byte) << ' ' << HexDump(number) << ' '
         << HexDump(0xc0ffeeUL) << ' ' << HexDump(std::vector<unsigned int>{0xdeadbeef, 42}) << '\n';
    cout << cyan << HexDump(std::string("Kestry")) << HexDump({1, 2, 3}, ":") << ' '
         << HexDump::raw_data_byte(7) << '\n';
    cout << green << HexDump(bytes) << '\n';
    HexDump::_longDumps = true;
    cout << magenta << HexDump(bytes) << normal << '\n';
    cout << myfillandw{'.', 20} << "myfillandw" << myfillandw{'0', 8} << 42 << reset << '\n';
}

void templates()
{
    cout << crossplatform_template << platformspecific_template
         << colorized_crossplatform_template << colorized_platformspecific_template << reset;
}

void pattern_m_codes()
{
    cout << test_pattern_supported_m_codes << reset;
}

void pattern_normal_reset()
{
    cout << test_pattern_normal_reset << reset;
}

void pattern_matrix()
{
    cout << test_pattern_matrix << reset;
}

void pattern_matrix_styles()
{
    cout << thin << dark << test_pattern_matrix << lite << italic << underline << test_pattern_matrix << reset;
}

void pattern_256bit()
{
    cout << test_pattern_256bit << reset;
}

void pattern_greyscale()
{
    cout << test_pattern_greyscale << reset;
}

void pattern_rgb()
{
    cout << test_pattern_rgb << reset;
}

void pattern_status_line()
{
    cout << test_pattern_status_line << reset;
}

void pattern_progress_line()
{
    cout << test_pattern_progress_line << reset;
}

void version_tag()
{
    cout << thin << build_version_short << reset << '\n';
}

void banner()
{
    cout << build_version << reset;
}

// clang-format on

} // namespace

void colorize_output() { std::cout << colorize; }

// clang-format off
std::vector<Scene> stream_scenes()
{
    return {
        {"smallest", "The word failed in red, and what failed after it", smallest, 0, 48},
        {"overview", "Styled words, messages, dumped frames, bands of colour and a bar that fills", overview, 60},
        {"named_colors", "The eight colours as text, thin and bold, and as background", named_colors},
        {"attributes", "Bold, faint, italic, underlined, blinking, reversed, crossed and concealed words", attributes},
        {"normal_and_reset", "What normal keeps and reset forgets", normal_and_reset},
        {"push_and_pull", "One red word in a cyan line", push_and_pull},
        {"modes", "Words in green where a mode allows colour, and what each mode says of itself", modes},
        {"by_number", "Eight cells of text in the eight colours, and eight on them", by_number},
        {"palette", "The 256 colours of the palette, each with its number", palette},
        {"true_color", "A band from blue to red, and a text from pink to yellow", true_color},
        {"sequences_as_strings", "Three sequences as strings", sequences_as_strings},
        {"codes_past_the_record", "The bright colours by their SGR codes", codes_past_the_record},
        {"cursor_moves", "Names of cursor controls, at the places to which they moved", cursor_moves},
        {"erasing", "Lines of which parts have been erased", erasing},
        {"scrolling", "Lines that scroll up and down", scrolling, 400},
        {"spinners", "A spinner", spinners, 150},
        {"status_lines", "A status line that fills", status_lines, 100},
        {"progress_meters", "A progress meter that climbs", progress_meters, 100},
        {"themes_of_text", "Texts in the colours of their role", themes_of_text},
        {"themes_of_data", "The fields of two frames in hexadecimal, each in its colour", themes_of_data},
        {"dumps", "Hex dumps of bytes, words and texts", dumps},
        {"templates", "The four templates", templates},
        {"pattern_m_codes", "The SGR codes 0 to 108", pattern_m_codes},
        {"pattern_normal_reset", "The pattern of normal, adjust and reset", pattern_normal_reset},
        {"pattern_matrix", "Eight colours on eight backgrounds", pattern_matrix, 0, 104},
        {"pattern_matrix_styles", "The matrix in faint, and in italic underlined text", pattern_matrix_styles, 0, 104},
        {"pattern_256bit", "Colours 0 to 15 of the palette on each other", pattern_256bit},
        {"pattern_greyscale", "The greys of the palette", pattern_greyscale},
        {"pattern_rgb", "The colour cube of the palette", pattern_rgb},
        {"pattern_status_line", "The status line of the patterns", pattern_status_line, 25},
        {"pattern_progress_line", "The progress meter of the patterns", pattern_progress_line, 25},
        {"version_tag", "The version tag", version_tag},
        {"banner", "The first lines of the banner", banner, 0, 104, 32},
    };
}
// clang-format on

} // namespace hueline::pictures
