#include "kestry/hueline_stream.hpp"

#include "sgr.hpp"
#include "stream/state.hpp"

#include <ostream>

namespace kestry::Hueline {

using namespace detail;

namespace {

auto constexpr foreground = &AttributeState::foreground;
auto constexpr background = &AttributeState::background;

// A colour, changed only where it shows.
std::ostream& paint(std::ostream& os, std::string AttributeState::*slot, auto... sequence)
{
    if (!allowColor(os)) {
        return os;
    }
    _currentAttributes.*slot = Sgr{sequence...}.view();
    return compose(os);
}

} // namespace

// clang-format off
std::ostream& operator<<(std::ostream& os, color const& c)    { return paint(os, foreground, "\x1b[38;5;", c.code); }
std::ostream& operator<<(std::ostream& os, on_color const& c) { return paint(os, background, "\x1b[48;5;", c.code); }
std::ostream& operator<<(std::ostream& os, rgb const& c)      { return paint(os, foreground, "\x1b[38;2;", c.r, c.g, c.b); }
std::ostream& operator<<(std::ostream& os, on_rgb const& c)   { return paint(os, background, "\x1b[48;2;", c.r, c.g, c.b); }

std::string csi::color (int n)                { return Sgr{"\x1b[", n}.string(); }
std::string csi::rgb   (int r, int g, int b)  { return Sgr{"\x1b[38;2;", r, g, b}.string(); }
std::string csi::on_rgb(int r, int g, int b)  { return Sgr{"\x1b[48;2;", r, g, b}.string(); }
// clang-format on

} // namespace kestry::Hueline
