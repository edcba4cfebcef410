#include "progress_signals.hpp"

#include "kestry/kit/progress.hpp"

#include <cerrno>
#include <csignal>
#include <string_view>

#include <unistd.h>

namespace kestry::kit::detail {

constinit std::atomic<int> rows_on = -1;
constinit std::atomic<bool> drawing_halted = false;

namespace {

extern "C" void wipe_and_raise(int signal);

void wipe_on(int signal) noexcept
{
    struct sigaction action = {};
    action.sa_handler = wipe_and_raise;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

// The signal gets its default action, so that raising it does what the sender wanted. A process that was stopped comes
// back from there when it goes on.
extern "C" void wipe_and_raise(int signal)
{
    int const before = errno;
    drawing_halted = true;
    int const terminal = rows_on.exchange(-1);
    if (terminal >= 0 && ::tcgetpgrp(terminal) == ::getpgrp()) {
        std::string_view constexpr tidy = "\x1b[J\x1b[?7h\x1b[?25h\x1b[?2026l"; // of a frame that was cut off, too
        [[maybe_unused]] ssize_t const written = ::write(terminal, tidy.data(), tidy.size());
    }
    struct sigaction usual = {};
    usual.sa_handler = SIG_DFL;
    ::sigaction(signal, &usual, nullptr);
    ::raise(signal);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    sigset_t blocked;
    ::pthread_sigmask(SIG_UNBLOCK, &only, &blocked); // here it arrives
    ::pthread_sigmask(SIG_SETMASK, &blocked, nullptr);
    wipe_on(signal);
    drawing_halted = false;
    errno = before;
}

} // namespace

} // namespace kestry::kit::detail

namespace kestry::kit::progress {

void wipe_on_signals() noexcept
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP}) {
        struct sigaction now = {};
        if (::sigaction(signal, nullptr, &now) == 0 && (now.sa_flags & SA_SIGINFO) == 0 && now.sa_handler == SIG_DFL) {
            detail::wipe_on(signal);
        }
    }
}

} // namespace kestry::kit::progress
