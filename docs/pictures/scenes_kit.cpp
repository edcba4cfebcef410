#include "scenes.hpp"

#include "kestry/kit/hexview.hpp"
#include "kestry/kit/progress.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include <chrono>
#include <iomanip>
#include <iostream>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <unistd.h>

namespace hueline::pictures {

namespace {

using namespace kestry::kit;
using std::cout;

// A terminal on which no time passes by itself.
class Film final : public progress::draw_target {
public:
    std::chrono::steady_clock::time_point now() override { return time; }
    extent size() override { return {80, 24}; }
    bool takes_a_frame() override { return true; }
    bool in_foreground() override { return true; }
    bool write(std::string_view bytes) override
    {
        cout << (isatty(STDOUT_FILENO) != 0 ? "\r" : "") << bytes;
        return true;
    }

    std::chrono::steady_clock::time_point time = {};
};

std::shared_ptr<Film> const the_film = std::make_shared<Film>();

progress::options film()
{
    bool const is_terminal = isatty(STDOUT_FILENO) != 0;
    return {.shown = is_terminal ? progress::mode::live : progress::mode::plain,
            .drawn_by = progress::drawing::caller,
            .target = the_film};
}

void later(progress::multi_progress& group)
{
    the_film->time += std::chrono::milliseconds(100);
    group.tick();
}

// Quoted on a page: laid out by hand.
// clang-format off

void kit_styles()
{
    constexpr auto error = fg(red) | bold;
    auto const name = styled("ttyS0", fg(cyan) | underline);
    cout << styled("error: ", error) << name << " does not answer\n";
    cout << styled(fg(yellow), "opened ", name, " at once, ", styled("in bold", bold), " too") << '\n';
    cout << styled("\033[32malready green\033[0m, and blue around it", fg(blue)) << '\n';
    cout << '[' << std::setw(12) << styled("größe", bg(green) | fg(black)) << "]\n";
    for (auto const depth : {color_depth::truecolor, color_depth::ansi256, color_depth::ansi16}) {
        for (int hue = 0; hue < 48; ++hue) {
            cout << styled(' ', bg(rgb(255 - 5 * hue, 60, 20 + 5 * hue))).at(depth);
        }
        cout << ' ' << to_string(depth) << '\n';
    }
}

void kit_text()
{
    for (std::string_view const name : {"naïve.txt", "日本語.txt", "Grundgrößenübersicht.txt", "\033[31mred.txt",
                                        "\u202Efdp.exe"}) {
        cout << pad(kestry::kit::truncate(escape_untrusted(name), 16), 16) << '|' << display_width(name) << '\n';
    }
}

void kit_hex_view()
{
    std::string_view const text("GET /größe HTTP/1.1\r\n\r\n\0\xff", 27);
    cout << hexdump(std::as_bytes(std::span(text)), {.layout = hex_layout::hexdump_c, .colored = true});
    cout << hexdump(std::as_bytes(std::span(text)), {.layout = hex_layout::xxd, .length = 16});
}

void kit_progress()
{
    progress::multi_progress group(film());
    auto const files = group.add("files", 3);
    for (std::string const name : {"kernel.img", "initrd.img", "modules.tar"}) {
        auto const bar = group.add({.message = name, .length = 12 << 20, .counted = progress::unit::bytes,
                                    .when_ended = progress::leaving::nothing});
        for (int block = 0; block < 12; ++block) {
            bar.inc(1 << 20);
            later(group);
        }
        files.inc();
        group.println(name + ": complete");
    }
}

// clang-format on

} // namespace

// clang-format off
std::vector<Scene> kit_scenes()
{
    return {
        {"kit_styles", "Styles in styles, and a band of colours at three depths", kit_styles},
        {"kit_text", "Names of files in a column of sixteen, each made harmless", kit_text},
        {"kit_hex_view", "Bytes as hexdump -C shows them, in a colour for each kind, and as xxd does", kit_hex_view},
        {"kit_progress", "Two bars that fill, and lines above them", kit_progress, 100},
    };
}
// clang-format on

} // namespace hueline::pictures
