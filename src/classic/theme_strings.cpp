#include "classic/codes.hpp"

#include "hexdump/digits.hpp"

namespace kestry {

using namespace detail;

namespace {

std::string decimal(unsigned number)
{
    char digits[longest_decimal];
    return {digits, put_decimal(digits, number)};
}

} // namespace

// clang-format off
namespace ColorTheme {

std::string app_title   (std::string const& text) { return colored       (HexColor::green,   text); }
std::string alert       (std::string const& text) { return bright_colored(HexColor::red,     text); }
std::string info        (std::string const& text) { return colored       (HexColor::yellow,  text); }
std::string default_text(std::string const& text) { return colored       (HexColor::cyan,    text); }
std::string default_text()                        { return Hueline::color(HexColor::green); }
std::string defaultOperatingSystemText()          { return Hueline::color(HexColor::reset); }
std::string seperator   (std::string const& text) { return colored       (HexColor::white,   text); }
std::string help        ()                        { return Hueline::color(HexColor::yellow); }
std::string help        (std::string const& text) { return colored       (HexColor::blue,    text); }
std::string prompt      (std::string const& text) { return colored       (HexColor::magenta, text); }
std::string version     (std::string const& text) { return colored       (HexColor::white,   text); }
std::string cursor      (std::string const& text) { return bright_colored(HexColor::cyan,    text); }
std::string commandLine ()                        { return Hueline::color(HexColor::cyan); }
std::string commandLine (std::string const& text) { return colored       (HexColor::white,   text) + Hueline::color(HexColor::reset); }
std::string path        (std::string const& text) { return colored       (HexColor::cyan,    text); }
std::string path        (unsigned const& number)  { return colored       (HexColor::cyan,    decimal(number)); }
std::string name        (std::string const& text) { return bright_colored(HexColor::yellow,  text); }
std::string status      ()                        { return Hueline::color(HexColor::magenta); }

} // namespace ColorTheme

namespace DataTheme {

std::string immediate_destination(unsigned char address)    { return colored       (HexColor::cyan,    address); }
std::string total_count          (unsigned char count)      { return bright_colored(HexColor::blue,    count); }
std::string request_title        (std::string const& text)  { return bright_colored(HexColor::magenta, text); }
std::string response_title       (std::string const& text)  { return colored       (HexColor::magenta, text); }

} // namespace DataTheme
// clang-format on

} // namespace kestry
