// frame_monitor: reads a capture of request and response frames and prints them, one a line.
//
//     frame_monitor [CAPTURE]
//
// Without CAPTURE it reads standard input. A frame is
//
//     destination   1 byte          the address of the receiver: 0 is the host, so this is a response
//     total count   1 byte          bytes of the whole frame, 4 to 255
//     payload       0 to 251 bytes
//     CRC           2 bytes         CRC-16/IBM-3740 of all bytes before it, high byte first
//
// Bytes that are no frame are shown as damaged, up to the next frame whose CRC is right. The exit status
// is 0 if there were none, 1 if there were some, and 2 if the capture could not be read or shown.
#include <kestry/hueline_stream.hpp>

#include <kestry/kit/policy.hpp>
#include <kestry/kit/text.hpp>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace kestry::Hueline;
using kestry::Hueline::ColorTheme::alert;
using namespace kestry::Hueline::DataTheme;

std::size_t constexpr header_size = 2;
std::size_t constexpr crc_size = 2;
std::size_t constexpr least_size = header_size + crc_size;
std::uint8_t constexpr host = 0;

std::uint8_t byte(std::string_view bytes, std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); }

std::uint16_t crc_of(std::string_view bytes)
{
    unsigned value = 0xffff;
    for (char const c : bytes) {
        value ^= static_cast<unsigned>(static_cast<std::uint8_t>(c)) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 0x8000) != 0 ? value << 1 ^ 0x1021 : value << 1;
        }
    }
    return static_cast<std::uint16_t>(value);
}

std::uint16_t crc_in(std::string_view frame)
{
    std::size_t const place = frame.size() - crc_size;
    return static_cast<std::uint16_t>(byte(frame, place) << 8 | byte(frame, place + 1));
}

// Returns the frame at the head of bytes, empty if there is none.
std::string_view frame_at_head(std::string_view bytes)
{
    if (bytes.size() < least_size) {
        return {};
    }
    std::size_t const size = byte(bytes, 1);
    if (size < least_size || size > bytes.size()) {
        return {};
    }
    std::string_view const frame = bytes.substr(0, size);
    return crc_of(frame.substr(0, size - crc_size)) == crc_in(frame) ? frame : std::string_view();
}

// A title leaves the record bold or dark, which would colour the CRC and all that follows: reset, not
// normal, forgets it.
void show_frame(std::string_view frame)
{
    bool const is_response = byte(frame, 0) == host;
    std::string const payload(frame.substr(header_size, frame.size() - least_size));

    std::cout << (is_response ? "response  " : "request   ") << immediate_destination(byte(frame, 0)) << ' '
              << total_count(byte(frame, 1)) << ' ';
    if (is_response) {
        std::cout << response_title(payload);
    } else {
        std::cout << request_title(payload);
    }
    std::cout << reset << crc(crc_in(frame)) << reset << '\n';
}

// Returns the bytes before the next frame, or all if none follows.
std::string_view damage_at_head(std::string_view bytes)
{
    std::size_t size = 1;
    while (size < bytes.size() && frame_at_head(bytes.substr(size)).empty()) {
        ++size;
    }
    return bytes.substr(0, size);
}

// Nothing of a capture is written as it is: its bytes might be escape sequences.
void show_damage(std::string_view bytes)
{
    std::cout << alert("damaged   ") << HexDump(std::string(bytes)) << reset << '\n';
}

// Returns whether the capture is frames and nothing else.
bool show_capture(std::string_view rest)
{
    bool is_sound = true;
    while (!rest.empty()) {
        std::string_view const frame = frame_at_head(rest);
        if (!frame.empty()) {
            show_frame(frame);
            rest.remove_prefix(frame.size());
            continue;
        }
        std::string_view const damage = damage_at_head(rest);
        show_damage(damage);
        rest.remove_prefix(damage.size());
        is_sound = false;
    }
    return is_sound;
}

// By read(2), since std::cin takes an error for the end.
std::string contents_of(int file)
{
    std::string contents;
    char piece[65536];
    for (;;) {
        ssize_t const size = read(file, piece, sizeof piece);
        if (size == 0) {
            return contents;
        }
        if (size > 0) {
            contents.append(piece, static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category());
        }
    }
}

int trouble(std::string_view what)
{
    std::cerr << "frame_monitor: " << what << '\n';
    return 2;
}

int cannot(std::string const& do_it, int reason) { return trouble("cannot " + do_it + ": " + std::strerror(reason)); }

} // namespace

int main(int argc, char* argv[])
try {
    if (argc > 2) {
        return trouble("usage: frame_monitor [CAPTURE]");
    }
    // A name may come from anywhere too.
    std::string const name = argc == 2 ? kestry::kit::escape_untrusted(argv[1]) : "standard input";
    int const file = argc == 2 ? open(argv[1], O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (file < 0) {
        return cannot("open " + name, errno);
    }
    std::string capture;
    try {
        capture = contents_of(file);
    } catch (std::system_error const& error) {
        return cannot("read " + name, error.code().value());
    }

    kestry::kit::use_in_streams(kestry::kit::color_policy::from_environment());
    bool const is_sound = show_capture(capture);
    if (!std::cout.flush()) { // nothing is tried after the first failure, so errno still has its reason
        return cannot("write to standard output", errno);
    }
    return is_sound ? 0 : 1;
} catch (std::bad_alloc const&) {
    return trouble("out of memory");
}
