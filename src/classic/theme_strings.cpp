#include "kestry/hueline_classic.hpp"

#include "hexdump/digits.hpp"

namespace kestry {

namespace {

// clang-format off
std::string color (HexColor code)                          { return Hueline::color(code); }
std::string color (HexColor code, std::string const& text) { return Hueline::color(code, text); }
std::string color (HexColor code, unsigned char byte)      { return Hueline::color(code, byte); }
std::string bright(HexColor code, std::string const& text) { return Hueline::bright_color(code, text); }
std::string bright(HexColor code, unsigned char byte)      { return Hueline::bright_color(code, byte); }
// clang-format on

std::string decimal(unsigned number)
{
    char digits[detail::longest_decimal];
    return {digits, detail::put_decimal(digits, number)};
}

} // namespace

// clang-format off
namespace ColorTheme {

std::string app_title   (std::string const& text) { return color (HexColor::green,   text); }
std::string alert       (std::string const& text) { return bright(HexColor::red,     text); }
std::string info        (std::string const& text) { return color (HexColor::yellow,  text); }
std::string default_text(std::string const& text) { return color (HexColor::cyan,    text); }
std::string default_text()                        { return color (HexColor::green); }
std::string defaultOperatingSystemText()          { return color (HexColor::reset); }
std::string seperator   (std::string const& text) { return color (HexColor::white,   text); }
std::string help        ()                        { return color (HexColor::yellow); }
std::string help        (std::string const& text) { return color (HexColor::blue,    text); }
std::string prompt      (std::string const& text) { return color (HexColor::magenta, text); }
std::string version     (std::string const& text) { return color (HexColor::white,   text); }
std::string cursor      (std::string const& text) { return bright(HexColor::cyan,    text); }
std::string commandLine ()                        { return color (HexColor::cyan); }
std::string commandLine (std::string const& text) { return color (HexColor::white,   text) + color(HexColor::reset); }
std::string path        (std::string const& text) { return color (HexColor::cyan,    text); }
std::string path        (unsigned const& number)  { return color (HexColor::cyan,    decimal(number)); }
std::string name        (std::string const& text) { return bright(HexColor::yellow,  text); }
std::string status      ()                        { return color (HexColor::magenta); }

} // namespace ColorTheme

namespace DataTheme {

std::string immediate_destination(unsigned char address)    { return color (HexColor::cyan,    address); }
std::string total_count          (unsigned char count)      { return bright(HexColor::blue,    count); }
std::string request_title        (std::string const& text)  { return bright(HexColor::magenta, text); }
std::string response_title       (std::string const& text)  { return color (HexColor::magenta, text); }

} // namespace DataTheme
// clang-format on

} // namespace kestry
