#include "kestry/hueline_stream.hpp"

#include "tour_parts.hpp"

#include <iostream>

namespace demo::tour_parts {

using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using std::cout;

// Shown on the screen: laid out by hand.
// clang-format off

void named_colors()
{
    cout << red << "failed" << reset << '\n';
    cout << thin << green << "passed" << reset << '\n';
    cout << white << on_blue << " a title " << reset << '\n';
    cout << thin << italic << "italic" << reset << '\n';
    cout << thin << underline << "underline" << reset << '\n';
    cout << thin << reverse << " reverse " << reset << '\n';
    cout << thin << crossed << "crossed" << reset << '\n';
    cout << color{208} << "1 of 256" << reset << '\n';
    cout << rgb{255, 95, 175} << "24 bits" << reset << '\n';
}

void shades()
{
    int shade = 0;
    for (char const c : std::string(" from nightfall until noon ")) {
        shade += 9;
        cout << white << on_rgb{shade, 40 + shade / 3, 110} << c;
    }
    cout << reset << '\n';
    for (; shade > 0; shade -= 9) {
        cout << rgb{shade, 255 - shade, 90} << '#';
    }
    cout << reset << '\n';
}

void roles()
{
    cout << app_title("probe 1.4") << reset << '\n';
    cout << info("info: ") << reset << "2 ports found\n";
    cout << path("/dev/ttyS0") << reset << ": ready\n";
    cout << alert("alert: ") << reset << "no answer\n";
    cout << commandLine("probe --trace") << '\n';
    cout << prompt("Go on?") << reset << '\n';
}

void frames()
{
    cout << "request   " << immediate_destination(0x10) << ' '
         << total_count(0x09) << ' ' << request_title("GET *") << reset
         << crc(std::uint16_t{0xbefb}) << reset << '\n';
    cout << "response  " << immediate_destination(0x00) << ' '
         << total_count(0x08) << ' ' << response_title("ID 7") << reset
         << crc(std::uint16_t{0x21c6}) << reset << '\n';
    cout << "in full   " << HexDump(std::string("GET *\r\n")) << '\n';
}

void spinning()
{
    std::string const turns = "|/-\\";
    for (int i = 0; i < 25; ++i) {
        cout << csi::cr << spinner{turns, "looking for ports "}
             << std::flush << csi::delay{80};
    }
    cout << csi::cr << csi::el{0} << "3 ports found\n";
}

void filling()
{
    std::string const done = csi::color(36) + "#" + csi::color(0);
    std::string const label = " copied";
    for (int i = 0; i <= 20; ++i) {
        cout << csi::cr
             << status_line{i, 0, 20, done, ".", "[", "]", "|/-\\", ""}
             << progress_meter{i, 0, 20, label, "", "", ""}
             << std::flush << csi::delay{100};
    }
    cout << '\n';
}

void cursor_control()
{
    for (auto const* port : {"ttyS0", "ttyS1", "ttyS2"}) {
        cout << port << " ..." << std::flush << csi::delay{700};
        cout << csi::cub{3} << green << "ready" << reset << '\n';
    }
}

// clang-format on

} // namespace demo::tour_parts
