#include "kestry/kit/policy.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>

#include <unistd.h>

namespace kestry::kit {

namespace {

using namespace std::string_view_literals;

std::string_view variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool is_terminal(int descriptor)
{
    int const before = errno;
    bool const answer = ::isatty(descriptor) != 0;
    errno = before;
    return answer;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Of ASCII letters, whatever the locale: in a Turkish one "I" and "i" are no pair.
char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool same(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return small(x) == small(y); });
}

bool is_one_of(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::any_of(words.begin(), words.end(), [&](std::string_view w) { return same(word, w); });
}

// Whether one of the parts between the hyphens of TERM is one of the words. A mere search would find "foot" in "barefoot".
bool has_part(std::string_view term, std::initializer_list<std::string_view> words)
{
    while (true) {
        std::size_t const hyphen = term.find('-');
        if (is_one_of(term.substr(0, hyphen), words)) {
            return true;
        }
        if (hyphen == std::string_view::npos) {
            return false;
        }
        term.remove_prefix(hyphen + 1);
    }
}

// The number in front of a text, cut to 1000; 0 if there is none.
int leading_number(std::string_view text)
{
    int number = 0;
    for (char const c : text) {
        if (!is_digit(c)) {
            break;
        }
        number = std::min(number * 10 + (c - '0'), 1000);
    }
    return number;
}

struct Detected {
    color_depth depth;
    std::string_view reason;
};

Detected detect_unlimited(color_environment const& e)
{
    if (is_one_of(e.colorterm, {"truecolor", "24bit"})) {
        return {color_depth::truecolor, "COLORTERM says 24 bit"};
    }
    // ncurses calls the terminals with fewer palette entries beside their 24 bits direct2, direct16 and direct256.
    if (has_part(e.term, {"direct", "direct2", "direct16", "direct256"})) {
        return {color_depth::truecolor, "TERM says direct colour"};
    }
    if (has_part(e.term, {"alacritty", "contour", "foot", "ghostty", "kitty", "rio", "wezterm"})) {
        return {color_depth::truecolor, "TERM is known for 24 bit"};
    }
    bool const is_iterm = same(e.term_program, "iTerm.app");
    if (is_one_of(e.term_program, {"ghostty", "rio", "WezTerm"}) ||
        (is_iterm && leading_number(e.term_program_version) >= 3)) {
        return {color_depth::truecolor, "TERM_PROGRAM is known for 24 bit"};
    }
    if (!e.wt_session.empty()) {
        return {color_depth::truecolor, "WT_SESSION is set"};
    }
    if (has_part(e.term, {"256color", "256"})) {
        return {color_depth::ansi256, "TERM says 256 colours"};
    }
    if (is_iterm || same(e.term_program, "Apple_Terminal")) {
        return {color_depth::ansi256, "TERM_PROGRAM is known for 256 colours"};
    }
    return {color_depth::ansi16, "TERM is not known for more"};
}

// Not tmux, which by its older default has the same TERM. "screen.xterm" is screen on another terminal.
bool is_screen(color_environment const& e)
{
    return e.term.substr(0, e.term.find_first_of("-.")) == "screen" && e.term_program != "tmux";
}

// At least 16 colours, for where colour is wanted.
Detected detect(color_environment const& e)
{
    if (e.term == "dumb") {
        return {color_depth::ansi16, "TERM is dumb"};
    }
    Detected const found = detect_unlimited(e);
    // COLORTERM and the others are inherited from the terminal around it.
    if (found.depth > color_depth::ansi256 && is_screen(e)) {
        return {color_depth::ansi256, "GNU screen passes 256 colours on"};
    }
    return found;
}

color_decision no(std::string_view reason) { return {color_depth::none, reason, {}}; }

color_decision exactly(color_depth depth, std::string_view reason) { return {depth, reason, {}}; }

color_decision yes(color_environment const& e, std::string_view reason)
{
    Detected const found = detect(e);
    return {found.depth, reason, found.reason};
}

std::string_view reason_for(color_depth depth)
{
    switch (depth) {
    case color_depth::none:
        return "--color=never";
    case color_depth::ansi16:
        return "--color=16";
    case color_depth::ansi256:
        return "--color=256";
    case color_depth::truecolor:
        break;
    }
    return "--color=24bit";
}

color_decision forced(color_environment const& e)
{
    std::string_view const reason = "FORCE_COLOR is set";
    if (same(e.force_color, "true")) {
        return exactly(color_depth::ansi16, reason);
    }
    if (same(e.force_color, "false")) {
        return no("FORCE_COLOR is false");
    }
    if (!std::all_of(e.force_color.begin(), e.force_color.end(), is_digit)) {
        return yes(e, reason);
    }
    switch (leading_number(e.force_color)) {
    case 0:
        return no("FORCE_COLOR is 0");
    case 1:
        return exactly(color_depth::ansi16, reason);
    case 2:
        return exactly(color_depth::ansi256, reason);
    default:
        return exactly(color_depth::truecolor, reason);
    }
}

color_decision decide(color_option const& option, color_environment const& e, bool on_terminal)
{
    if (option.when == color_when::never) {
        return no("--color=never");
    }
    if (option.when == color_when::always) {
        return option.depth ? exactly(*option.depth, reason_for(*option.depth)) : yes(e, "--color=always");
    }
    if (!e.no_color.empty()) {
        return no("NO_COLOR is set");
    }
    if (!e.force_color.empty()) {
        return forced(e);
    }
    if (!e.clicolor_force.empty() && e.clicolor_force != "0") {
        return yes(e, "CLICOLOR_FORCE is set");
    }
    if (e.clicolor == "0") {
        return no("CLICOLOR is 0");
    }
    if (!on_terminal) {
        return no("not a terminal");
    }
    if (e.term.empty()) {
        return no("TERM is not set");
    }
    if (e.term == "dumb") {
        return no("TERM is dumb");
    }
    return yes(e, "a terminal");
}

// An argument for a message that goes to a terminal.
std::string harmless(std::string_view argument)
{
    std::string shown(argument);
    for (char& c : shown) {
        c = c < ' ' || c > '~' ? '?' : c;
    }
    return shown;
}

} // namespace

char const* to_string(color_depth depth) noexcept
{
    switch (depth) {
    case color_depth::none:
        return "none";
    case color_depth::ansi16:
        return "16 colours";
    case color_depth::ansi256:
        return "256 colours";
    case color_depth::truecolor:
        return "24 bit";
    }
    return "none"; // no enumerator
}

std::string to_string(color_decision const& decision)
{
    std::string text = to_string(decision.depth);
    if (!decision.reason.empty()) {
        text.append(" (").append(decision.reason);
        if (!decision.depth_reason.empty()) {
            text.append(", ").append(decision.depth_reason);
        }
        text += ')';
    }
    return text;
}

std::optional<color_option> parse_color_option(std::string_view when) noexcept
{
    struct Word {
        std::string_view text;
        color_option option;
    };
    static constexpr Word words[] = {
        {"auto", {color_when::automatic, {}}},
        {"tty", {color_when::automatic, {}}},
        {"if-tty", {color_when::automatic, {}}},
        {"always", {color_when::always, {}}},
        {"yes", {color_when::always, {}}},
        {"force", {color_when::always, {}}},
        {"never", {color_when::never, {}}},
        {"no", {color_when::never, {}}},
        {"none", {color_when::never, {}}},
        {"16", {color_when::always, color_depth::ansi16}},
        {"256", {color_when::always, color_depth::ansi256}},
        {"24bit", {color_when::always, color_depth::truecolor}},
    };
    for (Word const& word : words) {
        if (when == word.text) {
            return word.option;
        }
    }
    return std::nullopt;
}

color_environment color_environment::of_process() noexcept
{
    return {.no_color = variable("NO_COLOR"),
            .force_color = variable("FORCE_COLOR"),
            .clicolor_force = variable("CLICOLOR_FORCE"),
            .clicolor = variable("CLICOLOR"),
            .term = variable("TERM"),
            .colorterm = variable("COLORTERM"),
            .term_program = variable("TERM_PROGRAM"),
            .term_program_version = variable("TERM_PROGRAM_VERSION"),
            .wt_session = variable("WT_SESSION"),
            .out_is_terminal = is_terminal(STDOUT_FILENO),
            .err_is_terminal = is_terminal(STDERR_FILENO)};
}

color_policy::color_policy(color_option const& option, color_environment const& environment) noexcept
    : on_terminal_(decide(option, environment, true)), elsewhere_(decide(option, environment, false)),
      out_(environment.out_is_terminal ? on_terminal_ : elsewhere_),
      err_(environment.err_is_terminal ? on_terminal_ : elsewhere_)
{}

color_policy::color_policy(color_option const& option) noexcept : color_policy(option, color_environment::of_process())
{}

color_policy color_policy::from_environment() noexcept { return color_policy(color_option{}); }

color_policy color_policy::from_args(int argc, char const* const* argv)
{
    std::string_view const name = "--color";
    color_option option;
    for (int i = 1; i < argc && argv[i] != "--"sv; ++i) {
        std::string_view const argument = argv[i];
        if (argument == name) {
            option = {color_when::always, {}};
        } else if (argument.starts_with("--color=")) {
            std::string_view const when = argument.substr(name.size() + 1);
            std::optional<color_option> const parsed = parse_color_option(when);
            if (!parsed) {
                throw std::invalid_argument(harmless(argument) +
                                            ": WHEN is one of auto, always, never, 16, 256, 24bit");
            }
            option = *parsed;
        }
    }
    return color_policy(option);
}

color_decision const& color_policy::of(int descriptor) const noexcept
{
    return is_terminal(descriptor) ? on_terminal_ : elsewhere_;
}

} // namespace kestry::kit
