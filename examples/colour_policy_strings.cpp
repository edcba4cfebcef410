#include <kestry/hueline_classic.hpp>

#include "colour_policy_strings.hpp"

// There is one switch for the process, and two streams that may want different things: so it is set
// for each text, and the destructor of `colours` puts it back.
std::string in_green(std::string const& text, bool in_colour)
{
    kestry::Hueline colours;
    colours.useColor(in_colour);
    return kestry::Hueline::color(kestry::HexColor::green, text) + kestry::Hueline::color(kestry::HexColor::reset);
}
