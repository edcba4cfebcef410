#include "kestry/hueline_classic.hpp"

#include "themes.hpp"

namespace demo {

namespace {

using namespace kestry::ColorTheme;
using namespace kestry::DataTheme;

struct Role {
    std::string_view name;
    std::string (*form)(std::string const& sample);
};

unsigned char first_byte(std::string const& sample) { return static_cast<unsigned char>(sample.front()); }
unsigned number(std::string const& sample) { return static_cast<unsigned>(std::stoul(sample)); }

// clang-format off
Role const roles[] = {
    {"app_title",                    app_title},
    {"alert",                        alert},
    {"info",                         info},
    {"default_text",                 default_text},
    {"default_text()",               [](std::string const& s) { return default_text() + s; }},
    {"defaultOperatingSystemText()", [](std::string const& s) { return defaultOperatingSystemText() + s; }},
    {"seperator",                    seperator},
    {"help",                         help},
    {"help()",                       [](std::string const& s) { return help() + s; }},
    {"prompt",                       prompt},
    {"version",                      version},
    {"cursor",                       cursor},
    {"commandLine",                  commandLine},
    {"commandLine()",                [](std::string const& s) { return commandLine() + s; }},
    {"path",                         path},
    {"path of a number",             [](std::string const& s) { return path(number(s)); }},
    {"name",                         name},
    {"status()",                     [](std::string const& s) { return status() + s; }},
    {"immediate_destination",        [](std::string const& s) { return immediate_destination(first_byte(s)); }},
    {"total_count",                  [](std::string const& s) { return total_count(first_byte(s)); }},
    {"request_title",                request_title},
    {"response_title",               response_title},
};
// clang-format on

} // namespace

StringForm string_form(std::string_view role, std::string const& sample, bool in_color)
{
    for (Role const& known : roles) {
        if (known.name == role) {
            kestry::Hueline colors; // puts the colour switch back when it goes
            colors.useColor(false);
            std::size_t const width = known.form(sample).size();
            colors.useColor(in_color);
            return {known.form(sample) + defaultOperatingSystemText(), width};
        }
    }
    return {"-", 1};
}

} // namespace demo
