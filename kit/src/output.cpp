#include "output.hpp"

#include <cerrno>
#include <cstddef>
#include <mutex>

#include <poll.h>
#include <sys/types.h>
#include <unistd.h>

namespace kestry::kit::detail {

constinit output_mutex output;

namespace {

thread_local char this_thread = 0; // its address tells threads apart, and stays the same in a child process

constinit above above_hook = nullptr;

// A fork waits until no other thread writes, so that its child finds no line half composed.
void before_fork() { output.lock(); }
void after_fork() { output.unlock(); }
[[maybe_unused]] int const registered = pthread_atfork(before_fork, after_fork, after_fork);

bool await_room(int fd) noexcept
{
    pollfd room = {.fd = fd, .events = POLLOUT, .revents = 0};
    return poll(&room, 1, -1) >= 0 || errno == EINTR;
}

} // namespace

bool output_mutex::is_mine() const noexcept { return holder.load(std::memory_order_relaxed) == &this_thread; }

void output_mutex::lock() noexcept
{
    if (!is_mine()) {
        pthread_mutex_lock(&mutex);
        holder.store(&this_thread, std::memory_order_relaxed);
    }
    ++depth;
}

bool output_mutex::try_lock() noexcept
{
    if (!is_mine()) {
        if (pthread_mutex_trylock(&mutex) != 0) {
            return false;
        }
        holder.store(&this_thread, std::memory_order_relaxed);
    }
    ++depth;
    return true;
}

void output_mutex::unlock() noexcept
{
    if (--depth == 0) {
        holder.store(nullptr, std::memory_order_relaxed);
        pthread_mutex_unlock(&mutex);
    }
}

no_cancellation::no_cancellation() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before); }

no_cancellation::~no_cancellation() { pthread_setcancelstate(before, nullptr); }

bool write_all(int fd, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        ssize_t const n = ::write(fd, bytes.data(), bytes.size());
        if (n > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(n));
        } else if (n == 0) {
            errno = EIO; // nothing written and no reason given: it would not end
            return false;
        } else if (errno == EAGAIN) { // a descriptor that does not block
            if (!await_room(fd)) {
                return false;
            }
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void offer_lines_to(above hook) noexcept
{
    std::lock_guard const locked(output);
    above_hook = hook;
}

bool write_line(int fd, std::string_view text) noexcept
{
    return (above_hook != nullptr && above_hook(fd, text)) || write_all(fd, text);
}

} // namespace kestry::kit::detail
