#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <cstdio>
#include <iterator>
#include <ostream>
#include <string>

namespace kestry::Hueline {

namespace {

// The line that says what the pattern has just done.
std::ostream& heading(std::ostream& os)
{
    return os << reset << "reset " << colorize << "colorize " << dark << "dark " << thin << "thin " << std::endl;
}

// Colours of the palette, from first to last, on each other: a row for each background.
void palette(std::ostream& os, int first, int last)
{
    for (int b = first; b <= last; ++b) {
        os << on_color{b} << std::flush;
        for (int f = first; f <= last; ++f) {
            os << color{f} << col("color") << std::flush;
        }
        os << std::endl;
    }
}

// One row of greys, each cell its number in hexadecimal. The stream stays in hexadecimal.
void greys(std::ostream& os, int first, int last)
{
    for (int c = first; c <= last; ++c) {
        os << color{c} << " ";
        os.setf(std::ios_base::hex, std::ios_base::basefield | std::ios_base::showbase);
        os << c << " " << std::flush;
    }
    os << std::endl;
}

// A piece of an indicator, in one colour on black.
std::string piece(int code, char const* glyphs) { return csi::color(40) + csi::color(code) + glyphs; }

// Draws each step of an indicator three times running, and waits between the frames.
template <class Indicator>
std::ostream& animate(std::ostream& os, Indicator& indicator)
{
    os << csi::hide;
    for (int i = 0; i <= 49; ++i) {
        indicator.position = i;
        for (int times = 0; times < 3; ++times) {
            os << csi::cr << indicator << std::flush << csi::delay{25};
        }
    }
    return os << csi::show;
}

} // namespace

std::ostream& test_pattern_supported_m_codes(std::ostream& os)
{
    if (!detail::allowColor(os)) {
        return os;
    }
    os << heading;
    os << " first 108 m codes: " << std::endl; // 109 of them are shown: 0 is a code too
    int constexpr last = 108;
    for (int code = 0; code <= last; ++code) {
        std::printf("\x1b[%dm %3d\x1b[m", code, code);
        if (code % 10 == 9 || code == last) {
            std::putchar('\n');
        }
    }
    return os << std::endl;
}

std::ostream& test_pattern_normal_reset(std::ostream& os)
{
    os << heading;
    os << white << "white " << on_red << "on_red " << std::endl;
    os << italic << "white " << underline << "on_red " << std::endl;
    os << " before adjust " << std::endl << adjust << std::endl << " after adjust " << std::endl;
    os << " before normal " << std::endl << normal << std::endl << " after normal " << std::endl;
    os << " before adjust " << std::endl << adjust << std::endl << " after adjust " << std::endl;
    os << " before reset " << std::endl << reset << std::endl << " after reset " << std::endl;
    os << " before adjust " << std::endl << adjust << std::endl << " after adjust " << std::endl;
    return os << std::endl;
}

std::ostream& test_pattern_matrix(std::ostream& os)
{
    static char const* const names[] = {"black", "red", "green", "yellow", "blue", "magenta", "cyan", "white"};
    int constexpr count = std::size(names);

    os << white << on_grey << frills_mode_state << color_mode_state;
    for (int b = 0; b < count; ++b) {
        os << white << on_grey << " on_" << col(names[b]) << std::flush;
        next(os, b, true);
        for (int f = 0; f < count; ++f) {
            next(os, f, false) << " " << col(names[f]) << std::flush;
        }
        os << std::endl;
    }
    return os << white << on_grey << std::endl;
}

std::ostream& test_pattern_256bit(std::ostream& os)
{
    os << heading;
    os << " 0-  7:  standard colors (as in ESC [ 30–37 m)" << std::endl;
    palette(os, 0, 7);
    os << heading;
    os << "8- 15:  high intensity colors (as in ESC [ 90–97 m)" << std::endl;
    palette(os, 8, 15);
    return os << std::endl;
}

std::ostream& test_pattern_greyscale(std::ostream& os)
{
    auto const rows = [&os] {
        os << " 232-255:  grayscale from black to white in 24 steps" << std::endl;
        for (int b = 0; b <= 7; ++b) {
            os << on_color{b} << std::flush;
            greys(os, 232, 243);
            greys(os, 244, 255);
        }
    };
    os << reset << "reset " << colorize << "colorize "; // bold and bright: no dark, no thin
    rows();
    os << heading;
    rows();
    return os;
}

std::ostream& test_pattern_rgb(std::ostream& os)
{
    os << heading;
    os << "16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)" << std::endl;
    // Sixteen blocks of r, ten more than the cube has, and five cells of b, one less.
    for (int r = 0; r <= 15; ++r) {
        os << on_color{r} << std::flush;
        for (int g = 0; g <= 5; ++g) {
            for (int b = 0; b <= 4; ++b) {
                std::string const label = std::to_string(r) + ", " + std::to_string(g) + ", " + std::to_string(b);
                os << color{16 + 36 * r + 6 * g + b} << col(label) << std::flush;
            }
            os << std::endl;
        }
    }
    return os << std::endl;
}

std::ostream& test_pattern_status_line(std::ostream& os)
{
    std::string const done = piece(36, "#");
    status_line line{0, 0, 49, done, piece(37, "."), piece(32, "["), piece(32, "]"), "|/-\\", piece(93, "")};

    return animate(os, line);
}

std::ostream& test_pattern_progress_line(std::ostream& os)
{
    std::string const label = piece(36, "completed");
    progress_meter meter{0, 0, 49, label, piece(32, "("), piece(32, ")"), piece(37, "")};

    return animate(os, meter);
}

} // namespace kestry::Hueline
