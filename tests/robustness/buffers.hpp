/// \file
/// A stream buffer that takes a certain number of bytes and no more.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>

namespace hueline::test {

/// Allocates nothing. The stream that writes more than fits becomes bad.
class SmallBuffer : public std::streambuf {
public:
    static constexpr std::size_t largest = 1 << 20;

    explicit SmallBuffer(std::size_t bytes = largest) : room(bytes) {}

    void empty(std::size_t bytes = largest)
    {
        room = bytes;
        size = 0;
    }

    std::string text() const { return {all.data(), size}; }

private:
    int_type overflow(int_type c) override
    {
        char const byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }

    std::streamsize xsputn(char const* text, std::streamsize wanted) override
    {
        std::size_t const taken = std::min(static_cast<std::size_t>(wanted), room - size);
        std::copy_n(text, taken, all.begin() + static_cast<std::ptrdiff_t>(size));
        size += taken;
        return static_cast<std::streamsize>(taken);
    }

    std::array<char, largest> all;
    std::size_t room;
    std::size_t size = 0;
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
