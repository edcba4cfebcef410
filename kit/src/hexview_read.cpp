#define _FILE_OFFSET_BITS 64 // NOLINT: files past 2 GiB on machines of 32 bits

#include "hexview_feed.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

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

} // namespace

void hexdump_file(std::ostream& os, int descriptor, hex_options const& options)
{
    stream_sink sink(os);
    row_feed feed(options, sink, depth_for(os, options));
    if (options.skip != 0) {
        feed.jump(seek(descriptor, options.skip));
    }
    while (!feed.done()) {
        std::span<std::byte> const space = feed.space();
        ssize_t const got = read(descriptor, space);
        if (got < 0) {
            int const why = errno;
            if (!feed.skipping()) {
                feed.finish();
            }
            throw std::system_error(why, std::generic_category(), "hexdump: cannot read");
        }
        if (got == 0) {
            break;
        }
        feed.added(static_cast<std::size_t>(got));
        if (static_cast<std::size_t>(got) < space.size()) {
            os.flush();
        }
    }
    feed.finish();
}

} // namespace kestry::kit
