/// \file
/// What the tour runs. The body of each function is what it shows as code: see tour_source().
#pragma once

#include <cstdint>
#include <string_view>

namespace kestry::kit::progress {
struct options;
} // namespace kestry::kit::progress

namespace demo::tour_parts {

/// \name The stream interface
/// \{
void named_colors();
void shades();
void roles();
void frames();
void spinning();
void filling();
void cursor_control();
/// \}

/// \name The string interface
/// \{
void strings();
/// \}

/// \name The kit
/// \{
void styles();
void untrusted_names();
void hex_view();
void live_bars(kestry::kit::progress::options const& how);
/// \}

} // namespace demo::tour_parts

namespace demo {

/// Returns the text of the sources that define the parts.
std::string_view tour_source();

/// In a part: work that takes a while where somebody looks on. Returns how many bytes it was.
std::uint64_t read_block();

} // namespace demo
