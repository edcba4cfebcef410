#include "kestry/hueline_classic.hpp"

#include "true_color.hpp"
#include "use_color.hpp"

namespace hueline::bench {

namespace {

void with_color() { use_color(true); }

std::string class_form() { return kestry::Hueline::color(red, green, blue); }

} // namespace

Workloads true_color_class()
{
    return {{"true colour as a string, class form", with_color, run<class_form>, true_color_peers(0.36, 1.15)}};
}

} // namespace hueline::bench
