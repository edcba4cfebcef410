/// \file
/// Bytes as rows of offset, digits and text: what xxd, hexdump -C and od -A x -t x1z print, byte for byte.
///
///     auto const bytes = std::as_bytes(std::span("Hello\n"));
///     std::cout << hexdump(bytes, {.layout = hex_layout::hexdump_c, .width = 16, .squeeze = true});
///     // 00000000  48 65 6c 6c 6f 0a 00                              |Hello..|
///     // 00000007
///
/// An option that is left out means what the tool does without it. Where a layout takes an option that its tool lacks,
/// it does with it what the others do. The text column shows 0x20 to 0x7e as they are and any other byte as ".", in
/// every locale.
#ifndef KESTRY_KIT_HEXVIEW_HPP
#define KESTRY_KIT_HEXVIEW_HPP

#include "kestry/kit/policy.hpp"
#include "kestry/kit/style.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>

#pragma GCC visibility push(default)

namespace kestry::kit {

// ---------------------------------------------------------------------------------------------
// Options
// ---------------------------------------------------------------------------------------------

/// Whose rows are written.
enum class hex_layout : unsigned char {
    xxd,               ///< xxd: groups of two bytes, and text.
    xxd_bits,          ///< xxd -b: each byte as eight bits.
    xxd_little_endian, ///< xxd -e: groups of four bytes, the last one first.
    xxd_plain,         ///< xxd -p: digits alone.
    hexdump_c,         ///< hexdump -C: bytes, text between bars, at last the end offset.
    od,                ///< od -A x -t x1z: bytes, text between angles, at last the end offset.
};

/// How offsets are written.
enum class hex_offsets : unsigned char {
    hexadecimal,
    decimal, ///< xxd -d, od -A d
    octal,   ///< od -A o
    none,    ///< od -A n: no end offset either.
};

/// How each kind of byte looks, in both columns.
struct hex_theme {
    style zero = faint;          ///< 0x00
    style printable = fg(cyan);  ///< 0x21 to 0x7e
    style space = fg(green);     ///< The blank, and 0x09 to 0x0d.
    style control = fg(magenta); ///< The other controls, and 0x7f.
    style high = fg(yellow);     ///< 0x80 to 0xfe
    style all_bits = fg(red);    ///< 0xff
    style offset = {};           ///< Offsets, which are no bytes.
};

/// How bytes are shown.
struct hex_options {
    hex_layout layout = hex_layout::xxd;

    /// Bytes in a row, 1 to 65536: xxd -c, od -w. Without it 16, 6 for bits and 30 for plain digits. 0 is as good as
    /// none, but makes one line of plain digits, also of no bytes.
    std::optional<std::size_t> width = {};

    /// Bytes in a group: xxd -g. 0, and what is more than width, make one group of a row; little endian takes powers of
    /// two. Without it 2 for xxd, 4 for little endian, 8 for hexdump -C and 1 elsewhere.
    std::optional<std::size_t> group = {};

    /// A to F for bytes: xxd -u. Offsets have small letters.
    bool uppercase = false;

    hex_offsets offsets = hex_offsets::hexadecimal;

    /// The offset shown for the first byte of the data, skipped or not: xxd -o. The sum is taken modulo 2^64.
    std::uint64_t first_offset = 0;

    /// Bytes of the data to leave out: xxd -s, hexdump -s, od -j. Less than 0, all but so many from the end: xxd -s -N.
    std::int64_t skip = 0;

    /// At most so many bytes are shown: xxd -l, hexdump -n, od -N.
    std::optional<std::uint64_t> length = {};

    /// Leave out repeated rows, with one line "*" for them: hexdump and od any row that equals the one before, xxd -a
    /// all of three and more rows of zeros but the first, and the last if the data ends with it. Without it on for
    /// hexdump and od, where -v is off, and off for xxd. Plain digits are never left out.
    std::optional<bool> squeeze = {};

    /// Colour the bytes by their kind, as richly as the stream is to be coloured: see depth_of. Neighbours of one kind, in
    /// either column, share one sequence; no line ends in a colour; without the sequences it is the plain form.
    bool colored = false;

    hex_theme theme = {};
};

// ---------------------------------------------------------------------------------------------
// Bytes in memory
// ---------------------------------------------------------------------------------------------

/// Bytes to be shown, made by hexdump(). It refers to them.
class hex_view {
public:
    friend hex_view hexdump(std::span<std::byte const> bytes, hex_options const& options);
    friend std::ostream& operator<<(std::ostream& os, hex_view const& view);
    friend std::string to_string(hex_view const& view, color_depth depth);

private:
    hex_view(std::span<std::byte const> bytes, hex_options const& how) : data(bytes), options(how) {}

    std::span<std::byte const> data;
    hex_options options;
};

/// Shows bytes in memory.
///
/// Throws  std::invalid_argument for an absurd width or group, and for a skip that leaves the data where the tool
///         refuses it: od after its end, every layout before its start. After the end xxd shows no byte, and hexdump
///         the end offset alone.
hex_view hexdump(std::span<std::byte const> bytes, hex_options const& options = {});

/// Inserts the rows.
///
/// Writes  by std::ostream::write, some 128 KiB at a time.
/// Stream  its number format and its locale are not used. A pending width is spent and pads nothing. Ends early once
///         the stream fails.
/// Throws  what the stream throws, and std::bad_alloc.
/// Cost    no allocation for up to some 1500 plain characters, then one.
std::ostream& operator<<(std::ostream& os, hex_view const& view);

/// Returns the rows as a stream of that depth gets them.
///
/// to_string(hexdump(bytes)) == "00000000: 4865 6c6c 6f0a 00                        Hello..\n"
std::string to_string(hex_view const& view, color_depth depth = color_depth::truecolor);

// ---------------------------------------------------------------------------------------------
// Bytes that come piece by piece
// ---------------------------------------------------------------------------------------------

/// Shows bytes that come piece by piece, with the same rows wherever they are cut.
///
/// It refers to the stream, and takes the same memory whatever their number. One thread at a time may use it.
class hex_writer {
public:
    /// Throws  std::invalid_argument as hexdump does, and for a skip less than 0: the end is not known yet.
    explicit hex_writer(std::ostream& os, hex_options const& options = {});
    hex_writer(hex_writer&& other) noexcept;
    hex_writer& operator=(hex_writer&& other) noexcept;
    ~hex_writer(); ///< Writes nothing: rows that are to be seen are finished.

    /// Takes the next bytes, and inserts the rows that they complete.
    ///
    /// Throws  what the stream throws.
    void write(std::span<std::byte const> bytes);

    /// Tells whether further bytes are of no use: all that options.length asks for are there, or the stream has failed.
    bool done() const;

    /// Inserts what is left when all bytes are there: a row that is not full, and the end offset. To be called once.
    ///
    /// Throws  what the stream throws, and std::invalid_argument for a skip after the end, as hexdump does.
    void finish();

private:
    struct state;
    std::unique_ptr<state> own;
};

/// Shows what can be read from a descriptor, from where it stands, which is offset 0, to its end.
///
/// A skip is a seek where the descriptor can seek, and bytes that are read and dropped elsewhere; one from the end needs
/// a descriptor that can seek. Reads no further than options.length asks for, goes on after EINTR and short reads, and
/// flushes the stream whenever the input has no more for the moment.
///
/// Throws  std::system_error with errno if the descriptor cannot be read, after the rows of what could be; and as
///         hex_writer does. A stream that fails ends it early.
/// Cost    128 KiB of memory for what is read, and as much for what is written.
void hexdump_file(std::ostream& os, int descriptor, hex_options const& options = {});

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
