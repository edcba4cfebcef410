#include "kestry/hueline_classic.hpp"

#include "tour_parts.hpp"

#include <iostream>

namespace demo::tour_parts {

using kestry::HexColor;
using kestry::HexDump;
using kestry::Hueline;
using namespace kestry::ColorTheme;
using std::cout;

// Shown on the screen: laid out by hand.
// clang-format off

void strings()
{
    auto const end = Hueline::color(HexColor::reset);
    auto const pink = Hueline::color(255, 95, 175);
    auto const bad = Hueline::color(HexColor::red, "failed");
    cout << bad << end << '\n';
    cout << pink << "24 bits" << end << '\n';
    cout << alert("no answer") << end << '\n';
    cout << HexDump(std::string("GET *")) << '\n';
}

// clang-format on

} // namespace demo::tour_parts
