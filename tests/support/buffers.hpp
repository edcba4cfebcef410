/// \file
/// Stream buffers that fail, and one that tells how it is called.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <locale>
#include <ostream>
#include <streambuf>
#include <string>

namespace hueline::test {

/// What the buffers here throw.
struct BufferFault {};

/// What a buffer does with a byte that it has no room for.
enum class AtEnd { refuses, throws };

/// Takes a certain number of bytes and no more. Allocates nothing.
class SmallBuffer : public std::streambuf {
public:
    static constexpr std::size_t largest = 1 << 20;

    explicit SmallBuffer(std::size_t bytes = largest, AtEnd then = AtEnd::refuses) : room(bytes), at_end(then) {}

    void empty(std::size_t bytes = largest)
    {
        room = bytes;
        size = 0;
    }

    std::string text() const { return {all.data(), size}; }

    int writes = 0; ///< How often it was called.

private:
    int_type overflow(int_type c) override
    {
        char const byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }

    std::streamsize xsputn(char const* text, std::streamsize wanted) override
    {
        ++writes;
        std::size_t const taken = std::min(static_cast<std::size_t>(wanted), room - size);
        std::copy_n(text, taken, all.begin() + static_cast<std::ptrdiff_t>(size));
        size += taken;
        if (at_end == AtEnd::throws && taken < static_cast<std::size_t>(wanted)) {
            throw BufferFault{};
        }
        return static_cast<std::streamsize>(taken);
    }

    std::array<char, largest> all;
    std::size_t room;
    AtEnd at_end;
    std::size_t size = 0;
};

/// Tells what reaches it, and how: "[text]" for each sputn, the character alone for each sputc, "/" for each flush,
/// "imbued " for each locale.
class Journal : public std::streambuf {
public:
    std::string text;
    bool fails_to_flush = false;
    bool throws = false;
    bool throws_at_flush = false;

private:
    std::streamsize xsputn(char const* bytes, std::streamsize size) override
    {
        if (throws) {
            throw BufferFault{};
        }
        text += '[' + std::string(bytes, static_cast<std::size_t>(size)) + ']';
        return size;
    }
    int_type overflow(int_type c) override
    {
        text += traits_type::to_char_type(c);
        return c;
    }
    int sync() override
    {
        if (throws_at_flush) {
            throw BufferFault{};
        }
        text += '/';
        return fails_to_flush ? -1 : 0;
    }
    void imbue(std::locale const&) override { text += "imbued "; }
};

/// Gives a stream another buffer for a scope, and takes the exceptions and errors that this leads to
/// from it afterwards.
class WithBuffer {
public:
    WithBuffer(std::ostream& stream, std::streambuf* buffer) : os(stream), replaced(stream.rdbuf(buffer)) {}
    WithBuffer(WithBuffer const&) = delete;
    WithBuffer& operator=(WithBuffer const&) = delete;
    ~WithBuffer()
    {
        os.exceptions(std::ios_base::goodbit);
        os.rdbuf(replaced); // the stream is good again
    }

private:
    std::ostream& os;
    std::streambuf* replaced;
};

} // namespace hueline::test
