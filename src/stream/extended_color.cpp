#include "kestry/hueline_stream.hpp"

#include "sgr.hpp"
#include "stream/state.hpp"

#include <ostream>

namespace kestry::Hueline {

using namespace detail;

namespace {

// A colour, changed only where it shows.
std::ostream& paint(std::ostream& os, std::string AttributeState::*slot, auto& introducer, auto... numbers)
{
    if (!allowColor(os)) {
        return os;
    }
    char sequence[sizeof introducer + sizeof...(numbers) * (longest_decimal + 1)];
    return recompose(os, slot, {sequence, put_sgr(sequence, introducer, numbers...)});
}

} // namespace

// clang-format off
std::ostream& operator<<(std::ostream& os, color const& c)  { return paint(os, foreground, "\x1b[38;5;", c.code); }
std::ostream& operator<<(std::ostream& os, on_color const& c) { return paint(os, background, "\x1b[48;5;", c.code); }
std::ostream& operator<<(std::ostream& os, rgb const& c)    { return paint(os, foreground, "\x1b[38;2;", c.r, c.g, c.b); }
std::ostream& operator<<(std::ostream& os, on_rgb const& c) { return paint(os, background, "\x1b[48;2;", c.r, c.g, c.b); }

std::string csi::color (int n)                { return sgr_string(n); }
std::string csi::rgb   (int r, int g, int b)  { return true_color_string("\x1b[38;2;", r, g, b); }
std::string csi::on_rgb(int r, int g, int b)  { return true_color_string("\x1b[48;2;", r, g, b); }
// clang-format on

} // namespace kestry::Hueline
