#define _FILE_OFFSET_BITS 64 // NOLINT: files past 2 GiB on machines of 32 bits

#include "hexview_feed.hpp"
#include "hexview_relay.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <string>
#include <system_error>
#include <thread>

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestry::kit {

namespace {

using namespace detail;

[[noreturn]] void fail(char const* what) { throw std::system_error(errno, std::generic_category(), what); }

// Returns how many bytes were skipped by it.
std::uint64_t seek(int descriptor, std::int64_t skip)
{
    off_t const start = ::lseek(descriptor, 0, SEEK_CUR);
    if (start < 0) {
        if (skip < 0) {
            fail("hexdump: cannot skip to the end");
        }
        return 0; // to be read
    }
    // A file that does not know its size is read, too.
    std::int64_t const size = std::max<std::int64_t>(::lseek(descriptor, 0, SEEK_END) - start, 0);
    std::int64_t const jump = skip < 0 ? size + skip : std::min(size, skip);
    if (::lseek(descriptor, static_cast<off_t>(start + std::max<std::int64_t>(jump, 0)), SEEK_SET) < 0) {
        fail("hexdump: cannot skip");
    }
    if (jump < 0) {
        refuse_skip();
    }
    return static_cast<std::uint64_t>(jump);
}

ssize_t read(int descriptor, std::span<std::byte> space)
{
    for (;;) {
        ssize_t const got = ::read(descriptor, space.data(), space.size());
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

// Shows all that is to be read, and calls pause whenever there is no more for the moment.
template <class Pause>
void read_all(row_feed& feed, int descriptor, std::int64_t skip, Pause pause)
{
    if (skip != 0) {
        feed.jump(seek(descriptor, skip));
    }
    while (!feed.done()) {
        std::span<std::byte> const space = feed.space();
        ssize_t const got = read(descriptor, space);
        if (got < 0) {
            std::system_error const error(errno, std::generic_category(), "hexdump: cannot read");
            if (!feed.skipping()) {
                feed.finish();
            }
            throw error;
        }
        if (got == 0) {
            break;
        }
        feed.added(static_cast<std::size_t>(got));
        if (static_cast<std::size_t>(got) < space.size()) {
            pause();
        }
    }
    feed.finish();
}

// ---------------------------------------------------------------------------------------------
// Large files
// ---------------------------------------------------------------------------------------------

// Whether a second thread is likely to be worth its start: writing takes as long as all the rest.
bool is_large(int descriptor, hex_options const& options)
{
    std::uint64_t constexpr large = 4 << 20;
    struct stat status = {};
    if (options.length.value_or(large) < large || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    off_t const left = status.st_size - std::max<off_t>(::lseek(descriptor, 0, SEEK_CUR), 0);
    return left >= static_cast<off_t>(large) && std::thread::hardware_concurrency() > 1;
}

// Makes text in a thread of its own. Signals are for the threads of the program.
class maker {
public:
    template <class Make>
    maker(relay& to, Make make) : text(to)
    {
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
        try {
            thread = std::thread([this, make] {
                try {
                    make();
                } catch (...) {
                    failure = std::current_exception();
                }
                text.end();
            });
        } catch (std::system_error const&) { // no more threads: then without
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    maker(maker const&) = delete;
    maker& operator=(maker const&) = delete;
    ~maker() { join(); }

    bool has_started() const { return thread.joinable(); }

    // Throws what has ended the thread, if it was that.
    void finish()
    {
        join();
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

private:
    void join()
    {
        if (thread.joinable()) {
            text.stop();
            thread.join();
        }
    }

    relay& text;
    std::exception_ptr failure;
    std::thread thread;
};

// Reads and formats while the stream writes. Returns false if that could not begin.
bool write_beside(std::ostream& os, int descriptor, hex_options const& options)
{
    relay text;
    color_depth const depth = depth_for(os, options);
    maker rows(text, [&text, depth, descriptor, &options] {
        row_feed feed(options, text, depth);
        read_all(feed, descriptor, options.skip, [] {});
    });
    if (!rows.has_started()) {
        return false;
    }
    std::string piece;
    while (os && text.take(piece)) {
        os.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    }
    rows.finish();
    return true;
}

} // namespace

void hexdump_file(std::ostream& os, int descriptor, hex_options const& options)
{
    if (is_large(descriptor, options) && write_beside(os, descriptor, options)) {
        return;
    }
    stream_sink sink(os);
    row_feed feed(options, sink, depth_for(os, options));
    read_all(feed, descriptor, options.skip, [&os] { os.flush(); });
}

} // namespace kestry::kit
