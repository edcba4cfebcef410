#include "contrast.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace hueline::pictures {

namespace {

double linear(std::uint8_t component)
{
    double const c = component / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double luminance(Rgb color) { return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b); }

} // namespace

double contrast(Rgb one, Rgb other)
{
    auto const [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace hueline::pictures
