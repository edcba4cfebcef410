#include "kestry/hueline_classic.hpp"

#include "scenes.hpp"

#include <iostream>

namespace hueline::pictures {

namespace {

using namespace kestry::ColorTheme;
using namespace kestry::DataTheme;
using std::cout;

} // namespace

// clang-format off
void write_string_roles()
{
    auto const end = defaultOperatingSystemText() + '\n';
    auto const then = defaultOperatingSystemText() + "  ";
    cout << app_title("app_title(text)") << end;
    cout << alert("alert(text)") << end;
    cout << info("info(text)") << end;
    cout << default_text("default_text(text)") << end;
    cout << default_text() << "default_text()" << end;
    cout << seperator("seperator(text)") << end;
    cout << help("help(text)") << end;
    cout << help() << "help()" << end;
    cout << prompt("prompt(text)") << end;
    cout << version("version(text)") << end;
    cout << kestry::ColorTheme::cursor("cursor(text)") << end;
    cout << commandLine("commandLine(text)") << end;
    cout << commandLine() << "commandLine()" << end;
    cout << path("path(text)") << end;
    cout << name("name(text)") << end;
    cout << status() << "status()" << end;
    cout << immediate_destination(0x10) << then << "immediate_destination(byte)\n";
    cout << total_count(0x09) << then << "total_count(byte)\n";
    cout << request_title("request_title(text)") << end;
    cout << response_title("response_title(text)") << end;
}
// clang-format on

} // namespace hueline::pictures
