#include <kestry/kit/hexview.hpp>

#include "support/allocations.hpp"
#include "kit/hexview.hpp"
#include "kit/pipe.hpp"
#include "support/buffers.hpp"
#include "support/testing.hpp"

#include <pthread.h>
#include <sys/mman.h>

namespace {

using namespace kestry::kit;
using namespace hueline::test;
using enum hex_layout;

TEST(HexviewStream, GetsTheRowsInLargeWrites)
{
    SmallBuffer buffer;
    std::ostream os(&buffer);
    os << hexdump(bytes_of(std::string(100, 'a')));
    EXPECT_EQ(buffer.writes, 1);
    buffer.empty();
    buffer.writes = 0;
    os << hexdump(bytes_of(std::string(200'000, 'a'))); // 68 characters a row
    EXPECT_EQ(buffer.text().size(), 12'500U * 68);
    EXPECT_LE(buffer.writes, 12'500 * 68 / (64 * 1024));
}

TEST(HexviewStream, AllocatesNothingForAFewRows)
{
    SmallBuffer buffer;
    std::ostream os(&buffer);
    hex_options const options = {.layout = hexdump_c};
    std::string const bytes(128, 'a');
    std::size_t const made = allocations_of([&] { os << hexdump(bytes_of(bytes), options); }).count;
    EXPECT_EQ(made, 0U);
    EXPECT_EQ(buffer.text(), view(bytes, options));
}

TEST(HexviewStream, TakesTheSameMemoryForAnyNumberOfBytes)
{
    SmallBuffer buffer;
    std::ostream os(&buffer);
    std::string const large(240'000, 'a'); // four times as much in text
    Allocations const made = allocations_of([&] { os << hexdump(bytes_of(large)); });
    EXPECT_LE(made.count, 1U);
    EXPECT_LE(made.bytes, 256U * 1024);
    EXPECT_EQ(made.overruns, 0U);
}

TEST(HexviewStream, DoesNotAskTheFormatOfTheStream)
{
    std::ostringstream os;
    os << std::oct << std::showbase << std::setfill('#') << std::left << std::setw(100) << hexdump(bytes_of("abc"))
       << "x";
    EXPECT_EQ(os.str(), "00000000: 6162 63                                  abc\nx");
}

TEST(HexviewStream, SaysThatAStreamHasFailed)
{
    SmallBuffer buffer(100);
    std::ostream os(&buffer);
    os << hexdump(bytes_of(std::string(64, 'a')));
    EXPECT_TRUE(os.bad());
    EXPECT_EQ(buffer.text(), view(std::string(64, 'a')).substr(0, 100));
    os << hexdump(bytes_of(alphabet)); // writes nothing, changes nothing
    EXPECT_EQ(buffer.text().size(), 100U);

    SmallBuffer other(100);
    std::ostream throwing(&other);
    throwing.exceptions(std::ios_base::badbit);
    EXPECT_THROW(throwing << hexdump(bytes_of(std::string(64, 'a'))), std::ios_base::failure);
}

TEST(HexviewStream, EndsOnceTheStreamHasFailed)
{
    SmallBuffer buffer(0);
    std::ostream os(&buffer);
    hex_writer writer(os);
    EXPECT_FALSE(writer.done());
    writer.write(bytes_of(alphabet));
    EXPECT_TRUE(writer.done());
    writer.write(bytes_of(alphabet));
    writer.finish();
    EXPECT_TRUE(os.bad());
    // What has no end is not read for ever.
    int const zero = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
    os.clear();
    hexdump_file(os, zero);
    EXPECT_TRUE(os.bad());
    ::close(zero);
}

TEST(HexWriter, WritesARowAsSoonAsItIsFull)
{
    std::ostringstream os;
    hex_writer writer(os, {.layout = hexdump_c, .width = 4});
    writer.write(bytes_of("abc"));
    EXPECT_EQ(os.str(), "");
    writer.write(bytes_of("de"));
    EXPECT_EQ(os.str(), "00000000  61 62 63 64  |abcd|\n");
    writer.finish();
    EXPECT_EQ(os.str(), "00000000  61 62 63 64  |abcd|\n00000004  65           |e|\n00000005\n");
}

TEST(HexWriter, IsDoneWhenAllThatIsWantedIsThere)
{
    std::ostringstream os;
    hex_writer writer(os, {.width = 2, .skip = 3, .length = 3});
    writer.write(bytes_of("ab"));
    writer.write(bytes_of("cdef"));
    EXPECT_TRUE(writer.done());
    writer.write(bytes_of("ghi"));
    writer.finish();
    EXPECT_EQ(os.str(), "00000003: 6465  de\n00000005: 66    f\n");
}

TEST(HexWriter, KnowsNoEndToSkipBackFrom)
{
    std::ostringstream os;
    EXPECT_THROW(hex_writer(os, {.skip = -1}), std::invalid_argument);
    EXPECT_THROW(hex_writer(os, {.width = 1 << 20}), std::invalid_argument);
}

TEST(HexWriter, TellsOfASkipAfterTheEnd)
{
    std::ostringstream os;
    hex_writer of_od(os, {.layout = od, .skip = 3});
    of_od.write(bytes_of("ab"));
    EXPECT_THROW(of_od.finish(), std::invalid_argument);
    EXPECT_EQ(os.str(), "");
    hex_writer of_hexdump(os, {.layout = hexdump_c, .skip = 3});
    of_hexdump.write(bytes_of("ab"));
    of_hexdump.finish();
    EXPECT_EQ(os.str(), "00000002\n");
}

TEST(HexWriter, CanBeMoved)
{
    std::ostringstream os;
    std::optional<hex_writer> writer;
    {
        hex_writer first(os, {.width = 2});
        first.write(bytes_of("a"));
        writer = std::move(first);
    }
    writer->write(bytes_of("b"));
    EXPECT_EQ(os.str(), "00000000: 6162  ab\n");
}

// A file that nobody else sees, with so many zeros, which take no room, and the text after them.
int file_of(off_t zeros, std::string_view text)
{
    int const descriptor = ::memfd_create("zeros", MFD_CLOEXEC);
    EXPECT_EQ(::ftruncate(descriptor, zeros), 0);
    EXPECT_EQ(::pwrite(descriptor, text.data(), text.size(), zeros), static_cast<ssize_t>(text.size()));
    return descriptor;
}

std::string view_of(int descriptor, hex_options const& options = {})
{
    std::ostringstream os;
    hexdump_file(os, descriptor, options);
    return os.str();
}

std::string view_from(off_t offset, Descriptor const& file, hex_options const& options)
{
    ::lseek(file.number, offset, SEEK_SET);
    return view_of(file.number, options);
}

TEST(HexdumpFile, ReadsFromWhereTheDescriptorStands)
{
    Descriptor const file(file_of(0, alphabet));
    EXPECT_EQ(view_from(10, file, {.width = 8}),
              "00000000: 6b6c 6d6e 6f70 7172  klmnopqr\n00000008: 7374 7576 7778 797a  stuvwxyz\n");
    EXPECT_EQ(view_from(10, file, {.width = 8, .skip = 12}), "0000000c: 7778 797a            wxyz\n");
    EXPECT_EQ(view_from(10, file, {.width = 8, .skip = -2}), "0000000e: 797a                 yz\n");
    ::lseek(file.number, 10, SEEK_SET);
    EXPECT_THROW(view_of(file.number, {.skip = -17}), std::invalid_argument);
    EXPECT_EQ(view_from(100, file, {.skip = 1}), "");
    EXPECT_EQ(view_from(5, file, {.width = 2, .skip = -21, .length = 2}), "00000000: 6667  fg\n");
    EXPECT_EQ(view_from(0, file, {.width = 2, .skip = -26, .length = 2}), "00000000: 6162  ab\n");
}

TEST(HexdumpFile, ReadsNoFurtherThanItIsAsked)
{
    Descriptor const file(file_of(0, alphabet));
    view_of(file.number, {.skip = 3, .length = 5});
    EXPECT_EQ(::lseek(file.number, 0, SEEK_CUR), 8);
    Pipe const pipe("abcdefgh");
    EXPECT_EQ(view_of(pipe.out->number, {.width = 2, .skip = 1, .length = 2}), "00000001: 6263  bc\n");
    EXPECT_EQ(view_of(pipe.out->number, {.width = 2, .length = 2}), "00000000: 6465  de\n");
}

TEST(HexdumpFile, SkipsPastFourGigabytes)
{
    off_t const size = (off_t{1} << 32) + 0x12345;
    Descriptor const file(file_of(size, "end"));
    EXPECT_EQ(view_from(0, file, {.skip = size}), "100012345: 656e 64                                  end\n");
    EXPECT_EQ(view_from(0, file, {.skip = -3}), "100012345: 656e 64                                  end\n");
    EXPECT_EQ(view_from(0, file, {.layout = hexdump_c, .skip = size + 100}), "100012348\n");
    EXPECT_EQ(view_from(0, file, {.layout = hexdump_c, .skip = size - 0x100000}),
              "fff12345  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n"
              "*\n"
              "100012345  65 6e 64                                          |end|\n"
              "100012348\n");
}

TEST(HexdumpFile, SkipsInAPipeByReading)
{
    std::string const much(40000, 'x');
    Pipe const pipe(much + "abc");
    EXPECT_EQ(view_of(pipe.out->number, {.width = 2, .skip = 40001}), "00009c41: 6263  bc\n");
    Pipe const short_one("ab");
    EXPECT_EQ(view_of(short_one.out->number, {.layout = hexdump_c, .skip = 3}), "00000002\n");
    Pipe const refused("ab");
    EXPECT_THROW(view_of(refused.out->number, {.layout = od, .skip = 3}), std::invalid_argument);
    Pipe const from_end("ab");
    try {
        view_of(from_end.out->number, {.skip = -1});
        FAIL();
    } catch (std::system_error const& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_seek);
    }
}

TEST(HexdumpFile, ShowsRowsAsSoonAsTheyAreThere)
{
    Pipe input;
    Pipe const output;
    std::thread reader([&] {
        std::ofstream os("/dev/fd/" + std::to_string(output.in->number)); // keeps what it is given until it is flushed
        hexdump_file(os, input.out->number, {.width = 2});
    });
    auto const next = [&] {
        char text[64];
        ssize_t const got = ::read(output.out->number, text, sizeof text);
        return std::string(text, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    };
    input.put("abc");
    EXPECT_EQ(next(), "00000000: 6162  ab\n");
    input.put("d");
    EXPECT_EQ(next(), "00000002: 6364  cd\n");
    input.in.reset();
    reader.join();
}

TEST(HexdumpFile, GoesOnAfterASignal)
{
    Pipe pipe;
    struct sigaction action = {};
    action.sa_handler = [](int) {}; // without SA_RESTART: a read that waits ends with EINTR
    struct sigaction before = {};
    ::sigaction(SIGUSR1, &action, &before);
    pthread_t const reader = pthread_self();
    std::thread writer([&] {
        for (int i = 0; i != 20; ++i) {
            pthread_kill(reader, SIGUSR1);
            ::usleep(500);
        }
        pipe.put("ab");
        pipe.in.reset();
    });
    EXPECT_EQ(view_of(pipe.out->number, {.width = 2}), "00000000: 6162  ab\n");
    writer.join();
    ::sigaction(SIGUSR1, &before, nullptr);
}

int reason_of_failure(int descriptor, hex_options const& options = {})
{
    try {
        view_of(descriptor, options);
    } catch (std::system_error const& error) {
        return error.code() == error.code().default_error_condition() ? error.code().value() : -1;
    }
    return 0;
}

TEST(HexdumpFile, SaysWhyItCannotRead)
{
    Descriptor const folder(::open("/", O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(reason_of_failure(folder.number), EISDIR);
    EXPECT_EQ(reason_of_failure(-1), EBADF);
    EXPECT_EQ(reason_of_failure(-1, {.skip = 1}), EBADF);
    Pipe const pipe;
    EXPECT_EQ(reason_of_failure(pipe.in->number), EBADF);
    ::fcntl(pipe.out->number, F_SETFL, O_NONBLOCK);
    EXPECT_EQ(reason_of_failure(pipe.out->number), EAGAIN);
}

TEST(HexdumpFile, ShowsWhatCouldBeReadBeforeAFailure)
{
    Pipe const pipe;
    ::fcntl(pipe.out->number, F_SETFL, O_NONBLOCK);
    pipe.put("abc");
    std::ostringstream os;
    EXPECT_THROW(hexdump_file(os, pipe.out->number, {.layout = hexdump_c, .width = 2}), std::system_error);
    EXPECT_EQ(os.str(), "00000000  61 62  |ab|\n00000002  63     |c|\n00000003\n");
}

TEST(HexdumpFile, ShowsALargeFileAsItsBytes)
{
    std::mt19937_64 random(1);
    std::string bytes(1'000'003, '\0');
    for (std::size_t i = 300'000; i != bytes.size(); ++i) { // rows of zeros go on from one piece to the next
        bytes[i] = static_cast<char>(random());
    }
    Descriptor const file(file_of(0, bytes));
    for (hex_layout const layout : {xxd, hexdump_c, od}) {
        hex_options const options = {.layout = layout, .squeeze = true};
        ::lseek(file.number, 0, SEEK_SET);
        EXPECT_TRUE(view_of(file.number, options) == view(bytes, options));
    }
}

} // namespace
