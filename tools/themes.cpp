#include "kestry/hueline_stream.hpp"

#include "themes.hpp"

#include <kestry/kit/policy.hpp>

#include <cstddef>
#include <ostream>

namespace demo {

namespace {

using namespace kestry::Hueline;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;

struct Role {
    char const* name;
    char const* sample;
    void (*write)(std::ostream& os, std::string const& sample);
};

std::uint8_t byte(std::string const& sample, std::size_t index) { return static_cast<std::uint8_t>(sample[index]); }
std::uint32_t number(std::string const& sample) { return static_cast<std::uint32_t>(std::stoul(sample)); }
std::uint16_t word(std::string const& sample)
{
    return static_cast<std::uint16_t>(byte(sample, 0) << 8 | byte(sample, 1));
}

template <class Form>
void text(std::ostream& os, std::string const& sample)
{
    os << Form(sample);
}

template <std::ostream& stretch(std::ostream&)>
void start(std::ostream& os, std::string const& sample)
{
    os << stretch << sample;
}

template <class Form>
void first_byte(std::ostream& os, std::string const& sample)
{
    os << Form(byte(sample, 0));
}

// clang-format off
Role const roles[] = {
    {"app_title",                    "Kestry Hueline",   text<app_title>},
    {"alert",                        "no such device",   text<alert>},
    {"info",                         "3 devices found",  text<info>},
    {"default_text",                 "ordinary text",    text<default_text>},
    {"default_text()",               "ordinary text",    start<_default_text>},
    {"defaultOperatingSystemText()", "of the terminal",  nullptr},
    {"seperator",                    "--------------",   text<seperator>},
    {"help",                         "-v shows more",    text<help>},
    {"help()",                       "-v shows more",    start<_help>},
    {"prompt",                       "continue?",        text<prompt>},
    {"version",                      "1.4",              text<version>},
    {"cursor",                       ">",                text<cursor>},
    {"commandLine",                  "ls -l",            text<commandLine>},
    {"commandLine()",                "ls -l",            start<_commandLine>},
    {"path",                         "/dev/ttyS0",       text<path>},
    {"path of a number",             "42",               [](std::ostream& os, std::string const& s) { os << path(number(s)); }},
    {"name",                         "ttyS0",            text<name>},
    {"status()",                     "connected",        start<_status>},
    {"immediate_destination",        "\x07",             first_byte<immediate_destination>},
    {"total_count",                  "\x10",             first_byte<total_count>},
    {"crc of one byte",              "\xa5",             first_byte<crc>},
    {"crc of two bytes",             "\xbe\xef",         [](std::ostream& os, std::string const& s) { os << crc(word(s)); }},
    {"request_title",                "request",          text<request_title>},
    {"response_title",               "response",         text<response_title>},
};
// clang-format on

std::size_t constexpr name_width = 30;
std::size_t constexpr form_width = 20;

// Fills a cell up to its width. What is shown may hold sequences, so its own size says nothing.
std::string blanks(std::size_t width, std::size_t shown) { return std::string(width - shown, ' '); }

void write_name(std::ostream& os, std::string const& name) { os << name << blanks(name_width, name.size()); }

void write_stream_form(std::ostream& os, Role const& role)
{
    if (role.write == nullptr) {
        os << '-';
        return;
    }
    role.write(os, role.sample);
    os << reset;
}

} // namespace

std::ostream& themes(std::ostream& os)
{
    os << reset;
    bool const in_color = kestry::kit::depth_of(os) != kestry::kit::color_depth::none && !_getNoFrillsMode();

    std::string const heading = "string interface";
    write_name(os, "role");
    os << heading << blanks(form_width, heading.size()) << "stream interface" << std::endl;
    for (Role const& role : roles) {
        StringForm const form = string_form(role.name, role.sample, in_color);
        write_name(os, role.name);
        os << form.text << blanks(form_width, form.width);
        write_stream_form(os, role);
        os << std::endl;
    }
    return os;
}

} // namespace demo
