/// \file
/// The one place where bytes of the kit leave to a descriptor, and the lock under which they do.
#ifndef KESTRY_KIT_OUTPUT_HPP
#define KESTRY_KIT_OUTPUT_HPP

#include <atomic>
#include <string_view>

#include <pthread.h>

namespace kestry::kit::detail {

/// A recursive mutex that is ready before the first constructor of a program and is never destroyed. A child process
/// finds it free, or held by the thread that forked if that one held it.
class output_mutex {
public:
    void lock() noexcept;
    bool try_lock() noexcept;
    void unlock() noexcept;

private:
    bool is_mine() const noexcept;

    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    std::atomic<void const*> holder = nullptr; // an address that only the thread that holds the mutex has
    unsigned depth = 0;
};

/// The lock of everything that the kit writes and of the standard streams while it changes them.
///
/// There is one, not one for each descriptor: standard output and standard error often are the same terminal, an
/// insertion into std::cerr flushes std::cout, and two locks that nested lines took in either order would deadlock.
extern output_mutex output;

/// As long as it lives, a cancelled thread goes on: write(2) is a cancellation point, and is not to cut a line.
class no_cancellation {
public:
    no_cancellation() noexcept;
    ~no_cancellation();
    no_cancellation(no_cancellation const&) = delete;
    no_cancellation& operator=(no_cancellation const&) = delete;

private:
    int before = 0;
};

/// Writes all bytes, in one write(2) if the system takes them so: after a signal and a short write it goes on, for a
/// descriptor that does not block it waits. Returns whether all were written; if not, errno tells why.
///
/// A cancellation point: in a destructor it needs a no_cancellation around it.
bool write_all(int fd, std::string_view bytes) noexcept;

/// Writes a line that goes to a descriptor, or returns false and leaves that to write_all.
using above = bool (*)(int fd, std::string_view text) noexcept;

/// Offers each line to the hook first, which is called under the lock; nullptr ends that. Takes the lock itself.
void offer_lines_to(above hook) noexcept;

/// Gives a finished line to the hook, if there is one and it takes it, and else to write_all. Call it under the lock.
bool write_line(int fd, std::string_view text) noexcept;

/// Whether the program has hidden the cursor of a terminal for a while.
bool is_cursor_hidden() noexcept;

} // namespace kestry::kit::detail

#endif
