#include "console.hpp"

#include "kestry/kit/text.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <iostream>

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace demo {

namespace {

// What the signal handlers look at.
volatile std::sig_atomic_t output_has_terminal = 0;
volatile std::sig_atomic_t progress_stands = 0;
volatile std::sig_atomic_t rows_stand = 0;
volatile std::sig_atomic_t keys_are_taken = 0;
volatile std::sig_atomic_t screen_may_be_gone = 0;
termios line_mode = {}; // of standard input at start: set before keys_are_taken
termios key_mode = {};

// For the signal handlers, so write(2) alone. A terminal that takes no more bytes cannot be helped.
void write_at_once(int descriptor, std::string_view bytes)
{
    [[maybe_unused]] ssize_t const written = ::write(descriptor, bytes.data(), bytes.size());
}

bool in_foreground() { return ::tcgetpgrp(STDIN_FILENO) == ::getpgrp(); }

// In the background the terminal belongs to others, who have set it as they need it.
void set_keys(termios const& mode)
{
    if (keys_are_taken != 0 && in_foreground()) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &mode);
    }
}

void tidy_up()
{
    set_keys(line_mode);
    if (progress_stands != 0) {
        write_at_once(STDERR_FILENO, "\r\x1b[K"); // EL, ECMA-48 8.3.41
    }
    if (rows_stand != 0) {
        write_at_once(STDOUT_FILENO, "\r\x1b[J"); // ED, ECMA-48 8.3.39
    }
    if (output_has_terminal != 0) {
        write_at_once(STDOUT_FILENO, "\x1b[0m\x1b[?25h\n"); // SGR 0, ECMA-48 8.3.117; DECTCEM
    }
}

// Has been reset to the default action and is not blocked meanwhile: a second signal ends the process
// even if the terminal is stopped and the write waits.
extern "C" void leave_tidily(int signal_number)
{
    tidy_up();
    ::raise(signal_number);
}

extern "C" void stop_tidily(int signal_number);

void handle(int signal_number, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    ::sigaction(signal_number, &action, nullptr);
}

extern "C" void go_on(int /*signal_number*/)
{
    int const reason = errno;
    set_keys(key_mode);
    screen_may_be_gone = 1;
    errno = reason;
}

// As leave_tidily; and comes back from raise() when the process goes on, or at once where no shell could fetch it.
extern "C" void stop_tidily(int signal_number)
{
    int const reason = errno;
    tidy_up();
    ::raise(signal_number);
    // cppcheck-suppress unreachableCode
    handle(signal_number, stop_tidily, static_cast<int>(SA_RESETHAND) | SA_NODEFER | SA_RESTART);
    go_on(SIGCONT);
    errno = reason;
}

extern "C" void note_size(int /*signal_number*/) { screen_may_be_gone = 1; }

bool is_ignored(int signal_number)
{
    struct sigaction before = {};
    ::sigaction(signal_number, nullptr, &before);
    return before.sa_handler == SIG_IGN;
}

} // namespace

void prepare_for_signals()
{
    output_has_terminal = ::isatty(STDOUT_FILENO);

    int const once = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    for (int const signal_number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        if (!is_ignored(signal_number)) {
            handle(signal_number, leave_tidily, once);
        }
    }
    if (!is_ignored(SIGTSTP)) {
        handle(SIGTSTP, stop_tidily, once | SA_RESTART);
    }
    std::signal(SIGPIPE, SIG_DFL);
}

bool output_is_terminal() { return output_has_terminal != 0; }

void progress_line_stands(bool stands) { progress_stands = stands ? 1 : 0; }

void live_rows_stand(bool stand) { rows_stand = stand ? 1 : 0; }

Extent output_size()
{
    winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return {};
    }
    return {size.ws_col, size.ws_row};
}

bool Keys::are_at_hand() { return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0 && in_foreground(); }

HeldSignals::HeldSignals(std::initializer_list<int> signals)
{
    sigset_t held;
    sigemptyset(&held);
    for (int const signal_number : signals) {
        sigaddset(&held, signal_number);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &mask_before);
}

HeldSignals::~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &mask_before, nullptr); }

Keys::Keys()
{
    handle(SIGWINCH, note_size, 0);
    handle(SIGCONT, go_on, 0);

    ::tcgetattr(STDIN_FILENO, &line_mode);
    key_mode = line_mode;
    key_mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    key_mode.c_cc[VMIN] = 1;
    key_mode.c_cc[VTIME] = 0;
    keys_are_taken = 1;
    set_keys(key_mode);
}

Keys::~Keys()
{
    set_keys(line_mode);
    keys_are_taken = 0;
    std::signal(SIGWINCH, SIG_DFL);
    std::signal(SIGCONT, SIG_DFL);
}

// SIGTSTP stops also between waits. From the look at what its handler has left until ppoll takes it, it waits.
Wish Keys::wait(int milliseconds)
{
    HeldSignals const stop({SIGTSTP});
    timespec const time = {.tv_sec = milliseconds / 1000, .tv_nsec = milliseconds % 1000 * 1'000'000L};
    pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    for (;;) {
        // A stop before this has set it, and may have left a SIGCONT: both are one reason to draw again.
        timespec constexpr at_once = {};
        timespec const* const most = screen_may_be_gone != 0 ? &at_once : milliseconds < 0 ? nullptr : &time;
        int const ready = ::ppoll(&input, 1, most, &noted.before());
        if (screen_may_be_gone != 0) {
            screen_may_be_gone = 0;
            if (in_foreground()) {
                return Wish::again;
            }
            ::raise(SIGTTIN); // stops, as reading in the background does
            // cppcheck-suppress unreachableCode
            if (!in_foreground()) {
                return Wish::end;
            }
            continue;
        }
        if (ready == 0) {
            return Wish::nothing;
        }
        if (ready < 0 && errno != EINTR) {
            return Wish::end;
        }
        if (ready > 0) {
            break;
        }
    }
    std::array<char, 64> key = {}; // of some keys there are several bytes
    ssize_t const length = ::read(STDIN_FILENO, key.data(), key.size());
    if (length < 0 && errno == EINTR) {
        return Wish::nothing;
    }
    char constexpr end_of_input = 4; // Ctrl-D
    bool const ends = length <= 0 || key[0] == 'q' || key[0] == 'Q' || key[0] == end_of_input;
    return ends ? Wish::end : Wish::next;
}

void complain(std::string_view text)
{
    std::string line = "hueline-demo: ";
    line += text;
    line += '\n';
    std::cerr << line; // in one piece: each insertion is a write of its own
}

std::string quoted(std::string_view text) { return '\'' + kestry::kit::escape_untrusted(text) + '\''; }

} // namespace demo
