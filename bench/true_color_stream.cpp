#include "kestry/hueline_stream.hpp"

#include "true_color.hpp"

namespace hueline::bench {

namespace {

std::string stream_form() { return kestry::Hueline::csi::rgb(red, green, blue); }

} // namespace

Workloads true_color_stream()
{
    return {{"true colour as a string, stream interface", [] {}, run<stream_form>, true_color_peers(0.28, 0.9)}};
}

} // namespace hueline::bench
