#include "kestry/kit/hexview.hpp"
#include "kestry/kit/progress.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include "tour_parts.hpp"

#include <iomanip>
#include <iostream>
#include <span>

namespace demo::tour_parts {

using namespace kestry::kit;
using std::cout;

// Shown on the screen: laid out by hand.
// clang-format off

void styles()
{
    constexpr auto error = fg(red) | bold;
    constexpr auto quiet = fg(cyan);
    constexpr auto pink = fg(rgb(255, 95, 175));
    cout << styled("error: ", error) << "broken\n";
    cout << styled(quiet, "on ", styled("up", error), " on\n");
    cout << std::setw(9) << styled("12 ms", quiet) << '\n';
    cout << styled("24 bits", pink) << '\n';
}

void untrusted_names()
{
    for (auto const* name : {"log.txt", "\033[2Jlog.txt", "a-long-name.txt"}) {
        cout << pad(truncate(escape_untrusted(name), 12, "..."), 14) << "ok\n";
    }
}

void hex_view()
{
    std::string_view const frame("\x10\x09GET *\xbe\xfb\r\n\0\xff", 13);
    cout << hexdump(std::as_bytes(std::span(frame)),
                    {.layout = hex_layout::xxd, .width = 6, .colored = true});
}

void live_bars(progress::options const& how)
{
    progress::multi_progress group(how);
    auto const images = group.add("images", 3);
    for (std::string const name : {"kernel", "initrd", "rootfs"}) {
        auto const bar = group.add(name, 12 << 20, progress::unit::bytes);
        for (int block = 0; block < 12; ++block) {
            bar.inc(read_block());
        }
        images.inc();
    }
    group.println("3 images copied");
}

// clang-format on

} // namespace demo::tour_parts
