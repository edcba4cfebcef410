/// \file
/// Whether, and how richly, a program writes colour: for standard output, standard error and any other descriptor
/// apart.
///
///     auto const policy = kestry::kit::color_policy::from_args(argc, argv);
///     kestry::kit::use_in_streams(policy);
///     std::cout << to_string(policy.out()) << '\n'; // "24 bit (a terminal, COLORTERM says 24 bit)"
///
/// The first rule that applies decides:
///   1. --color=always, --color=16, --color=256 and --color=24bit: yes; --color=never: no; --color=auto goes on.
///   2. NO_COLOR is not empty: no (no-color.org). "0" is not empty.
///   3. FORCE_COLOR is 0 or false: no; 1 or true: 16 colours; 2: 256 colours; a greater number: 24 bit; any other text
///      but the empty one: yes.
///   4. CLICOLOR_FORCE is neither empty nor 0: yes.
///   5. CLICOLOR is 0: no.
///   6. The descriptor is no terminal: no.
///   7. TERM is not set, empty or dumb: no.
///   8. Yes.
///
/// A yes that names no depth gets the first of these that applies, looked up in no data base:
///   - TERM is dumb: 16 colours.
///   - COLORTERM is truecolor or 24bit, in small or capital letters: 24 bit.
///   - TERM has a part "direct" between its hyphens, or one that is the name of a terminal known for it (alacritty,
///     contour, foot, ghostty, kitty, rio, wezterm): 24 bit.
///   - TERM_PROGRAM is iTerm.app from version 3, ghostty, rio or WezTerm: 24 bit.
///   - WT_SESSION is not empty: 24 bit. So it is in Windows Terminal.
///   - TERM has a part "256color" or "256": 256 colours.
///   - TERM_PROGRAM is iTerm.app or Apple_Terminal: 256 colours.
///   - 16 colours.
///
/// GNU screen passes no more than 256 colours on: TERM starts with "screen", and TERM_PROGRAM is not tmux.
///
/// A variable that is not set is as good as an empty one. The environment is read when a policy is made, and not again.
#ifndef KESTRY_KIT_POLICY_HPP
#define KESTRY_KIT_POLICY_HPP

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#pragma GCC visibility push(default)

namespace kestry::kit {

/// How rich the colours are that a terminal shows. In order: a richer one compares greater.
enum class color_depth : unsigned char {
    none,      ///< No escape sequence at all.
    ansi16,    ///< The eight named colours and their bright forms.
    ansi256,   ///< The 256-colour palette.
    truecolor, ///< 24 bits.
};

/// Returns the depth in a word or two: "none", "16 colours", "256 colours", "24 bit".
char const* to_string(color_depth depth) noexcept;

// ---------------------------------------------------------------------------------------------
// The option
// ---------------------------------------------------------------------------------------------

/// When colour is written, as the option --color says it.
enum class color_when : unsigned char { automatic, always, never };

/// What the option --color asks for.
struct color_option {
    color_when when = color_when::automatic;
    std::optional<color_depth> depth = {}; ///< With always: this depth, whatever the terminal is known for.
};

/// Returns what WHEN of --color=WHEN asks for, or nothing if it is no word that is known.
///
/// The words are auto, always, never, 16, 256 and 24bit, and what the GNU tools take besides: tty and if-tty for auto,
/// yes and force for always, no and none for never. --color without WHEN is always.
///
/// `parse_color_option("never")->when == color_when::never`, `parse_color_option("256")->depth == color_depth::ansi256`,
/// `!parse_color_option("maybe")`
std::optional<color_option> parse_color_option(std::string_view when) noexcept;

// ---------------------------------------------------------------------------------------------
// The policy
// ---------------------------------------------------------------------------------------------

/// Whether a descriptor gets colour, and why. The texts live as long as the program.
struct color_decision {
    color_depth depth = color_depth::none;
    std::string_view reason = {};       ///< The rule that applied: "NO_COLOR is set", "not a terminal".
    std::string_view depth_reason = {}; ///< What told the depth, unless the rule did: "COLORTERM says 24 bit".

    /// Says whether there is colour at all.
    explicit operator bool() const noexcept { return depth != color_depth::none; }
};

/// Returns the decision in one line, for --version and its like: "none (NO_COLOR is set)", "256 colours (a terminal, TERM
/// says 256 colours)".
std::string to_string(color_decision const& decision);

struct color_environment;

/// Decides about the colours of a program: a value, made once at its start. Any thread may ask it.
class color_policy {
public:
    /// Decides by an option, then by the environment of the process and what its standard streams are.
    explicit color_policy(color_option const& option) noexcept;

    /// Decides by an option, then by an environment of the caller's. Keeps neither of them.
    color_policy(color_option const& option, color_environment const& environment) noexcept;

    /// Decides by the environment of the process alone.
    static color_policy from_environment() noexcept;

    /// Decides by the last --color or --color=WHEN among the arguments, then by the environment of the process.
    ///
    /// Looks at argv[1] to argv[argc - 1], up to an argument "--". It knows no other option: in `-o --color` the second word
    /// counts too. A program with a parser of its own gives WHEN to parse_color_option, and the result to the constructor.
    ///
    /// Throws  std::invalid_argument for a WHEN that is not known, even if another one follows. what() says what to write
    ///         instead: "--color=maybe: WHEN is one of auto, always, never, 16, 256, 24bit". What is not printable ASCII
    ///         in WHEN shows as "?".
    static color_policy from_args(int argc, char const* const* argv);

    color_decision const& out() const noexcept { return out_; } ///< For standard output, as it was at construction.
    color_decision const& err() const noexcept { return err_; } ///< For standard error, as it was at construction.

    /// Returns the decision for any descriptor, as it is now.
    ///
    /// Cost    one isatty(3). errno stays as it was.
    color_decision const& of(int descriptor) const noexcept;

private:
    color_decision on_terminal_;
    color_decision elsewhere_;
    color_decision out_;
    color_decision err_;
};

/// What a policy looks at besides the option. A test, or a program that knows better, gives one of its own:
///
///     auto environment = color_environment::of_process();
///     if (std::getenv("CI") != nullptr && environment.clicolor_force.empty()) {
///         environment.clicolor_force = "1"; // the logs of the build server show colour
///     }
///     color_policy const policy({}, environment);
struct color_environment {
    std::string_view no_color = {};             ///< NO_COLOR
    std::string_view force_color = {};          ///< FORCE_COLOR
    std::string_view clicolor_force = {};       ///< CLICOLOR_FORCE
    std::string_view clicolor = {};             ///< CLICOLOR
    std::string_view term = {};                 ///< TERM
    std::string_view colorterm = {};            ///< COLORTERM
    std::string_view term_program = {};         ///< TERM_PROGRAM
    std::string_view term_program_version = {}; ///< TERM_PROGRAM_VERSION
    std::string_view wt_session = {};           ///< WT_SESSION
    bool out_is_terminal = false;               ///< Whether standard output is a terminal.
    bool err_is_terminal = false;               ///< Whether standard error is a terminal.

    /// Returns what the process has now. The texts are the environment's own: they end where setenv or putenv replaces them.
    ///
    /// Threads any, while none changes the environment.
    /// Cost    two isatty(3). errno stays as it was.
    static color_environment of_process() noexcept;
};

// ---------------------------------------------------------------------------------------------
// The two interfaces of the library
// ---------------------------------------------------------------------------------------------

/// Hands the policy to the stream interface and to the styles of the kit, for std::cout, std::cerr and std::clog.
///
/// Each is colorized if its descriptor gets colour, loses colour if not, and is told by set_depth how rich it may be.
/// The gate of the stream interface asks for a terminal besides: even with --color=always its manipulators write
/// nothing into a pipe. The styles of the kit do as they are told.
///
/// Writes  nothing.
/// Threads one, before others use the streams.
void use_in_streams(color_policy const& policy);

/// Hands a decision to the string interface: kestry::Hueline::useColor is called with it.
///
/// That switch is one for the process. Where standard output and standard error differ, give it the decision for the
/// one that most texts go to, and switch over for the other: an object of class kestry::Hueline puts back what it found.
/// `{ kestry::Hueline scope; scope.useColor(static_cast<bool>(policy.err())); std::cerr << ...; }`
///
/// State   the switch stays until it is set again. The destructor of an object of class kestry::Hueline that was there
///         before this call puts back what that object found.
/// Throws  std::bad_alloc, at the first call.
/// Threads one, before others use the string interface.
/// Cost    one small allocation at the first call, kept to the end.
void use_in_strings(color_decision const& decision);

// ---------------------------------------------------------------------------------------------
// The depth of a stream
// ---------------------------------------------------------------------------------------------

/// Says how richly the kit may colour what it writes to os.
///
/// Writes  nothing.
/// Stream  a word of its own holds the depth, and copyfmt hands it on. The colorize word of the library is another one.
/// Throws  std::ios_base::failure, where os throws for badbit and has no memory for one more word.
/// Threads any for std::cout, std::cerr and std::clog; another stream is its owner's.
/// Cost    no allocation, unless words (std::ios_base::xalloc) have become more than a stream has room for.
void set_depth(std::ostream& os, color_depth depth);

/// Returns how richly the kit may colour what it writes to os: as set_depth has said of os, or of the stream that os has
/// copied its format from.
///
/// Before that std::cout, std::cerr and std::clog ask color_policy::from_environment() about their descriptor, once, and
/// keep the answer. Any other stream has color_depth::truecolor: a string stream gets what is written to it.
///
/// Throws, threads, cost: as set_depth. Asking the environment costs three isatty(3) and leaves errno as it was.
color_depth depth_of(std::ostream& os);

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
