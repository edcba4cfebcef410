// colour_policy: --color=auto|always|never, NO_COLOR, CLICOLOR, CLICOLOR_FORCE and TERM=dumb, honoured
// by both interfaces and decided for standard output and standard error apart.
//
//     colour_policy [--color[=WHEN]]
//
// Shows the outcome: two lines on each of the two streams, in green where colour is in use. The stream
// interface never colours what goes into a pipe, not even with --color=always: its gate also asks for a
// terminal. The string interface does as it is told.
#include <kestry/hueline_stream.hpp>

#include "colour_policy.hpp"
#include "colour_policy_strings.hpp"

#include <iostream>

namespace {

using namespace kestry::Hueline;

// std::clog is standard error too, and each stream has a colorize word of its own.
void use_in_streams(bool out, bool err)
{
    std::cout << (out ? colorize : nocolorize);
    std::cerr << (err ? colorize : nocolorize);
    std::clog << (err ? colorize : nocolorize);
}

std::optional<colour_policy::When> when_of(int argc, char const* const* argv)
{
    std::string_view const option = "--color=";
    auto when = std::optional(colour_policy::When::automatic);
    for (int i = 1; i < argc && when; ++i) {
        std::string_view const argument = argv[i];
        if (argument == "--color") {
            when = colour_policy::When::always;
        } else if (argument.substr(0, option.size()) == option) {
            when = colour_policy::parse(argument.substr(option.size()));
        } else {
            when = std::nullopt;
        }
    }
    return when;
}

void show(std::ostream& os, std::string const& name, bool in_colour)
{
    os << green << name << normal << ", stream interface\n";
    os << in_green(name, in_colour) << ", string interface\n";
}

} // namespace

int main(int argc, char* argv[])
{
    std::optional<colour_policy::When> const when = when_of(argc, argv);
    if (!when) {
        std::cerr << "usage: colour_policy [--color[=auto|always|never]]\n";
        return 2;
    }
    bool const out = colour_policy::is_wanted(STDOUT_FILENO, *when);
    bool const err = colour_policy::is_wanted(STDERR_FILENO, *when);
    use_in_streams(out, err);
    show(std::cout, "standard output", out);
    show(std::cerr, "standard error", err);
}
