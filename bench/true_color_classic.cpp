#include "kestry/hueline_classic.hpp"

#include "true_color.hpp"
#include "use_color.hpp"

namespace hueline::bench {

namespace {

void with_color() { use_color(true); }

std::string string_interface() { return kestry::Hueline::color(red, green, blue); }

} // namespace

Workloads true_color_classic()
{
    return {
        {"true colour as a string, string interface", with_color, run<string_interface>, true_color_peers(0.36, 1.15)}};
}

} // namespace hueline::bench
