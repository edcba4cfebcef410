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
    /// records_flushes: flush_mark is received for each flush that follows bytes.
    Tap(std::ostream& tapped, bool records_flushes) : stream(tapped), behind(tapped.rdbuf()), records(records_flushes)
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
        return taken;
    }

    int sync() override
    {
        int const result = behind->pubsync();
        if (result == 0 && records && !received.empty() && received.back() != flush_mark) {
            received += flush_mark;
        }
        return result;
    }

    std::ostream& stream;
    std::streambuf* behind;
    bool records;
    std::string received;
};

} // namespace hueline::test
