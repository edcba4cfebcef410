#include "kestry/hueline_stream.hpp"

#include "scenes.hpp"

#include <cstdint>
#include <iostream>

namespace hueline::pictures {

namespace {

using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using std::cout;

} // namespace

// clang-format off
void write_stream_roles()
{
    cout << app_title("app_title(text)") << reset << '\n';
    cout << alert("alert(text)") << reset << '\n';
    cout << info("info(text)") << reset << '\n';
    cout << default_text("default_text(text)") << reset << '\n';
    cout << seperator("seperator(text)") << reset << '\n';
    cout << help("help(text)") << reset << '\n';
    cout << prompt("prompt(text)") << reset << '\n';
    cout << version("version(text)") << reset << '\n';
    cout << ColorTheme::cursor("cursor(text)") << reset << '\n';
    cout << commandLine("commandLine(text)") << reset << '\n';
    cout << path("path(text)") << reset << '\n';
    cout << name("name(text)") << reset << '\n';
    cout << _default_text << "_default_text" << reset << '\n';
    cout << _help << "_help" << reset << '\n';
    cout << _commandLine << "_commandLine" << reset << '\n';
    cout << _status << "_status" << reset << '\n';
    cout << immediate_destination(0x10) << reset << "  immediate_destination(byte)\n";
    cout << total_count(0x09) << reset << "  total_count(byte)\n";
    cout << crc(std::uint8_t{0x80}) << reset << "  crc(byte)\n";
    cout << request_title("GET") << reset << "  request_title(text)\n";
    cout << response_title("OK") << reset << "  response_title(text)\n";
}
// clang-format on

} // namespace hueline::pictures
