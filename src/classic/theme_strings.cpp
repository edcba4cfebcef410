#include "kestry/hueline_classic.hpp"

namespace kestry {

// clang-format off
namespace ColorTheme {

std::string app_title   (std::string const& text) { return Hueline::color       (HexColor::green,   text); }
std::string alert       (std::string const& text) { return Hueline::bright_color(HexColor::red,     text); }
std::string info        (std::string const& text) { return Hueline::color       (HexColor::yellow,  text); }
std::string default_text(std::string const& text) { return Hueline::color       (HexColor::cyan,    text); }
std::string default_text()                        { return Hueline::color       (HexColor::green); }
std::string defaultOperatingSystemText()          { return Hueline::color       (HexColor::reset); }
std::string seperator   (std::string const& text) { return Hueline::color       (HexColor::white,   text); }
std::string help        ()                        { return Hueline::color       (HexColor::yellow); }
std::string help        (std::string const& text) { return Hueline::color       (HexColor::blue,    text); }
std::string prompt      (std::string const& text) { return Hueline::color       (HexColor::magenta, text); }
std::string version     (std::string const& text) { return Hueline::color       (HexColor::white,   text); }
std::string cursor      (std::string const& text) { return Hueline::bright_color(HexColor::cyan,    text); }
std::string commandLine ()                        { return Hueline::color       (HexColor::cyan); }
std::string commandLine (std::string const& text) { return Hueline::color       (HexColor::white,   text) + Hueline::color(HexColor::reset); }
std::string path        (std::string const& text) { return Hueline::color       (HexColor::cyan,    text); }
std::string path        (unsigned const& number)  { return Hueline::color       (HexColor::cyan,    std::to_string(number)); }
std::string name        (std::string const& text) { return Hueline::bright_color(HexColor::yellow,  text); }
std::string status      ()                        { return Hueline::color       (HexColor::magenta); }

} // namespace ColorTheme

namespace DataTheme {

std::string immediate_destination(unsigned char address)    { return Hueline::color       (HexColor::cyan,    address); }
std::string total_count          (unsigned char count)      { return Hueline::bright_color(HexColor::blue,    count); }
std::string request_title        (std::string const& text)  { return Hueline::bright_color(HexColor::magenta, text); }
std::string response_title       (std::string const& text)  { return Hueline::color       (HexColor::magenta, text); }

} // namespace DataTheme
// clang-format on

} // namespace kestry
