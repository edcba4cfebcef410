#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"
#include "text/sgr.hpp"

#include <ostream>

namespace kestry::Hueline {

using namespace detail;

// clang-format off
std::ostream& operator<<(std::ostream& os, color const& c)    { return paint(os, foreground, SgrSequence("\x1b[38;5;", c.code)); }
std::ostream& operator<<(std::ostream& os, on_color const& c) { return paint(os, background, SgrSequence("\x1b[48;5;", c.code)); }
std::ostream& operator<<(std::ostream& os, rgb const& c)      { return paint(os, foreground, SgrSequence("\x1b[38;2;", c.r, c.g, c.b)); }
std::ostream& operator<<(std::ostream& os, on_rgb const& c)   { return paint(os, background, SgrSequence("\x1b[48;2;", c.r, c.g, c.b)); }

std::string csi::color (int n)               { return SgrSequence("\x1b[", n).str(); }
std::string csi::rgb   (int r, int g, int b) { return SgrSequence("\x1b[38;2;", r, g, b).str(); }
std::string csi::on_rgb(int r, int g, int b) { return SgrSequence("\x1b[48;2;", r, g, b).str(); }
// clang-format on

} // namespace kestry::Hueline
