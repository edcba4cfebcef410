/// \file
/// The two terminals that the tool may write to, and its messages.
#pragma once

#include <string>
#include <string_view>

namespace demo {

/// Prepares for the signals that end the process.
///
/// SIGHUP, SIGINT, SIGQUIT and SIGTERM first leave the terminals tidy: a progress line is wiped, and
/// where standard output is a terminal it gets the default rendition, a visible cursor and a line
/// end. Then the process dies of the signal. One that was ignored at start stays ignored.
///
/// SIGPIPE ends the process, even if it was ignored at start: a reader that goes away is no error.
void prepare_for_signals();

/// Whether standard output was a terminal at start.
bool output_is_terminal();

/// Tells whether a progress line stands on standard error, for a signal to wipe.
void progress_line_stands(bool stands);

/// Writes one line to standard error: the name of the tool, a colon and the text.
void complain(std::string_view text);

/// Returns the text between quotes, fit for a line on a terminal: what could do harm there shows as "\x1b", "\u{202e}".
std::string quoted(std::string_view text);

} // namespace demo
