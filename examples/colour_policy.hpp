/// \file
/// Whether a command-line program writes colour: the option --color, the environment and the terminal,
/// for standard output and standard error apart.
///
/// Needs nothing of Hueline: copy this file into a program of your own. How the decision is handed over
/// to each of the two interfaces is in colour_policy.cpp and colour_policy_strings.cpp.
#pragma once

#include <cstdlib>
#include <optional>
#include <string_view>

#include <unistd.h>

namespace colour_policy {

/// What --color=WHEN asks for.
enum class When { automatic, always, never };

/// Returns what the word after "--color=" asks for, or nothing if it is no such word.
inline std::optional<When> parse(std::string_view word)
{
    if (word == "auto") {
        return When::automatic;
    }
    if (word == "always") {
        return When::always;
    }
    if (word == "never") {
        return When::never;
    }
    return std::nullopt;
}

/// Returns the value of an environment variable. One that is not set is as good as empty.
inline std::string_view variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Says whether colour is wanted on STDOUT_FILENO or STDERR_FILENO. The first rule that applies decides.
inline bool is_wanted(int descriptor, When when = When::automatic)
{
    // The command line was typed for this run, the environment was set up long ago.
    if (when != When::automatic) {
        return when == When::always;
    }
    // no-color.org: any value but the empty one.
    if (!variable("NO_COLOR").empty()) {
        return false;
    }
    // bixense.com/clicolors: colour even where there is no terminal.
    std::string_view const force = variable("CLICOLOR_FORCE");
    if (!force.empty() && force != "0") {
        return true;
    }
    return ::isatty(descriptor) != 0 && variable("CLICOLOR") != "0" && variable("TERM") != "dumb";
}

} // namespace colour_policy
