/// \file
/// Hears what a stream's buffer receives, and passes it on.
#pragma once

#include "model/step.hpp"

#include <ostream>
#include <streambuf>
#include <string>
#include <utility>

namespace hueline::test {

/// Stands between a stream and its buffer. Where the buffer fails, it fails.
class Tap : public std::streambuf {
public:
    Tap(std::ostream& tapped, Marks marked) : stream(tapped), behind(tapped.rdbuf()), marks(marked)
    {
        stream.std::ios::rdbuf(this);
    }
    Tap(Tap const&) = delete;
    Tap& operator=(Tap const&) = delete;
    ~Tap() override { stream.std::ios::rdbuf(behind); }

    /// What the buffer has received since the last call.
    std::string take() { return std::exchange(received, ""); }

private:
    int_type overflow(int_type c) override
    {
        char const byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }

    std::streamsize xsputn(char const* text, std::streamsize size) override
    {
        std::streamsize const taken = behind->sputn(text, size);
        received.append(text, static_cast<std::size_t>(taken));
        if (marks == Marks::pieces) {
            received += piece_mark;
        }
        return taken;
    }

    int sync() override
    {
        int const result = behind->pubsync();
        if (result == 0 && marks == Marks::flushes && !received.ends_with(flush_mark)) {
            received += flush_mark;
        }
        return result;
    }

    std::ostream& stream;
    std::streambuf* behind;
    Marks marks;
    std::string received;
};

} // namespace hueline::test
