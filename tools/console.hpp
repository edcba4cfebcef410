/// \file
/// The terminals that the tool may write to and read from, and its messages.
#pragma once

#include <csignal>
#include <initializer_list>
#include <string>
#include <string_view>

namespace demo {

// ---------------------------------------------------------------------------------------------
// Signals
// ---------------------------------------------------------------------------------------------

/// Prepares for the signals that end or stop the process.
///
/// SIGHUP, SIGINT, SIGQUIT, SIGTERM and SIGTSTP first leave the terminals tidy: a progress line is wiped, the keys are as
/// they were before, and where standard output is a terminal it gets the default rendition, a visible cursor and a line
/// end. Then the process dies of the signal, or stops. One that was ignored at start stays ignored.
///
/// SIGPIPE ends the process, even if it was ignored at start: a reader that goes away is no error.
void prepare_for_signals();

/// Whether standard output was a terminal at start.
bool output_is_terminal();

/// Tells whether a progress line stands on standard error, for a signal to wipe.
void progress_line_stands(bool stands);

/// Tells whether rows stand from the cursor of standard output on, for a signal to wipe.
void live_rows_stand(bool stand);

// ---------------------------------------------------------------------------------------------
// The size, and the keys
// ---------------------------------------------------------------------------------------------

/// The size of a terminal.
struct Extent {
    int columns = 80;
    int rows = 24;
};

/// Returns the size of standard output as it is now: 80 columns and 24 rows where it is not known.
Extent output_size();

/// What a person wants.
enum class Wish {
    nothing, ///< No key was pressed in the time given.
    next,    ///< Any key.
    end,     ///< "q", the key that ends an input, or a terminal that is gone.
    again,   ///< The size is another one, or the process was stopped and goes on: what stood on the screen may be gone.
};

/// Lets signals wait as long as it lives.
class HeldSignals {
public:
    explicit HeldSignals(std::initializer_list<int> signals);
    ~HeldSignals();
    HeldSignals(HeldSignals const&) = delete;
    HeldSignals& operator=(HeldSignals const&) = delete;

    /// The mask of signals as it was.
    sigset_t const& before() const { return mask_before; }

private:
    sigset_t mask_before = {};
};

/// Takes single keys from standard input as long as it lives. There is one at a time.
///
/// Neither are they shown nor do they wait for the end of a line. Ctrl-C and Ctrl-Z do what they always do.
class Keys {
public:
    /// Whether a person is at the keys: standard input and standard output are terminals, and the process is in the
    /// foreground.
    static bool are_at_hand();

    Keys();
    ~Keys(); ///< The terminal is as it was before.
    Keys(Keys const&) = delete;
    Keys& operator=(Keys const&) = delete;

    /// Waits for a key, for so many milliseconds or, if there are less than 0, for ever.
    Wish wait(int milliseconds);

private:
    // What tells of another screen arrives in wait() alone.
    HeldSignals noted{SIGWINCH, SIGCONT};
};

// ---------------------------------------------------------------------------------------------
// Messages
// ---------------------------------------------------------------------------------------------

/// Writes one line to standard error: the name of the tool, a colon and the text.
void complain(std::string_view text);

/// Returns the text between quotes, fit for a line on a terminal: what could do harm there shows as "\x1b", "\u{202e}".
std::string quoted(std::string_view text);

} // namespace demo
