#include "console.hpp"

#include "kestry/kit/text.hpp"

#include <csignal>
#include <iostream>
#include <unistd.h>

namespace demo {

namespace {

// What the signal handler looks at.
volatile std::sig_atomic_t output_has_terminal = 0;
volatile std::sig_atomic_t progress_stands = 0;

// For the signal handler, so write(2) alone. A terminal that takes no more bytes cannot be helped.
void write_at_once(int descriptor, std::string_view bytes)
{
    [[maybe_unused]] ssize_t const written = ::write(descriptor, bytes.data(), bytes.size());
}

// Has been reset to the default action and is not blocked meanwhile: a second signal ends the process
// even if the terminal is stopped and the write waits.
extern "C" void leave_tidily(int signal_number)
{
    if (progress_stands != 0) {
        write_at_once(STDERR_FILENO, "\r\x1b[K"); // EL, ECMA-48 8.3.41
    }
    if (output_has_terminal != 0) {
        write_at_once(STDOUT_FILENO, "\x1b[0m\x1b[?25h\n"); // SGR 0, ECMA-48 8.3.117; DECTCEM
    }
    ::raise(signal_number);
}

} // namespace

void prepare_for_signals()
{
    output_has_terminal = ::isatty(STDOUT_FILENO);

    struct sigaction tidy = {};
    tidy.sa_handler = leave_tidily;
    tidy.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    for (int const signal_number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        struct sigaction before = {};
        ::sigaction(signal_number, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            ::sigaction(signal_number, &tidy, nullptr);
        }
    }
    std::signal(SIGPIPE, SIG_DFL);
}

bool output_is_terminal() { return output_has_terminal != 0; }

void progress_line_stands(bool stands) { progress_stands = stands ? 1 : 0; }

void complain(std::string_view text)
{
    std::string line = "hueline-demo: ";
    line += text;
    line += '\n';
    std::cerr << line; // in one piece: each insertion is a write of its own
}

std::string quoted(std::string_view text) { return '\'' + kestry::kit::escape_untrusted(text) + '\''; }

} // namespace demo
