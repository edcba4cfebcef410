/// \file
/// Runs a piece of a test, or a program, in a process of its own and returns what it wrote.
///
/// A fresh process sees the library as it is at load, and may be given any kind of standard output.
/// Checks stay in the parent.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hueline::test {

/// What a descriptor of the child leads to.
enum class Sink {
    terminal, ///< A pseudo-terminal of its own, raw, 24 x 80 cells. That of standard output, or else that of standard
              ///< error, is the controlling terminal.
    pipe,
    file, ///< A regular file.
    full, ///< /dev/full: each write fails with ENOSPC.
    closed,
};

struct Sinks {
    Sink out = Sink::terminal;
    Sink err = Sink::terminal;
};

inline constexpr Sinks on_terminals = {Sink::terminal, Sink::terminal};
inline constexpr Sinks on_pipes = {Sink::pipe, Sink::pipe};

struct Outcome {
    std::string out;    ///< Bytes that reached standard output: none for full and closed.
    std::string err;    ///< Bytes that reached standard error.
    std::string report; ///< What the child said through report().
    int status = -1;    ///< The child's exit status, or -1 if a signal ended it.
    int signal = 0;     ///< The signal that ended the child, or 0.
};

/// Forks, and runs body in the child, which reads nothing on standard input. The standard streams are
/// flushed after body. The exit status is 0, or 99 if an exception left body: then its text is in
/// the report.
///
/// Throws std::runtime_error if the child does not end within a minute, which is for what hangs; the child is killed then.
Outcome run_with(Sinks sinks, std::function<void()> const& body);

/// run_with, both sinks being terminals.
Outcome on_terminal(std::function<void()> const& body);

/// run_with, both sinks being pipes.
Outcome on_pipe(std::function<void()> const& body);

/// In a body: adds text to the report, past standard output and standard error.
void report(std::string_view text);

/// In a body: waits until these bytes have arrived at a terminal or pipe at standard output or standard error (its
/// descriptor tells which), after those that were last waited for there. One thread or process of a body waits at a time.
void await_output(int descriptor, std::string_view bytes);

/// In a body: changes the environment. "NAME=value" sets a variable, "NAME" removes it; the texts are used as they are, so
/// they have to live on.
void change_environment(std::vector<std::string> const& changes);

/// In a body: a signal that would leave a core behind leaves none.
void forbid_cores();

/// For execv(3), as long as the words live.
std::vector<char*> pointers_to(std::vector<std::string>& words);

/// Changes of the environment after which a terminal has 16 colours and nobody has wished for anything else.
inline std::vector<std::string> const sixteen_colors = {
    "NO_COLOR",     "FORCE_COLOR",          "CLICOLOR_FORCE", "CLICOLOR",  "COLORTERM",
    "TERM_PROGRAM", "TERM_PROGRAM_VERSION", "WT_SESSION",     "TERM=xterm"};

/// A signal for a program that is at work.
struct Interrupt {
    int signal;
    std::string after; ///< The signal is sent once these bytes have appeared on a terminal or pipe at standard output.
    int times = 1;     ///< It is sent again each time when they appear once more.
};

struct Launch {
    std::string input = {};                    ///< What the program reads on standard input.
    std::vector<std::string> environment = {}; ///< As change_environment takes it.
    std::optional<Interrupt> interrupt = {};
    std::chrono::milliseconds time_allowed = std::chrono::minutes(1);
};

/// Runs a program: argv[0] is its path, or its name if PATH finds it. The exit status is 127, with the
/// reason in the report, if it cannot be started.
///
/// Throws as run_with does, after the time allowed.
Outcome run_program(Sinks sinks, std::vector<std::string> const& argv, Launch const& launch = {});

} // namespace hueline::test
