/// \file
/// A stream's text with its flushes, which no terminal and no pipe shows.
#pragma once

#include "model/step.hpp"

#include <ostream>
#include <sstream>
#include <string>

namespace hueline::test {

/// Takes the place of a stream's buffer. The stream stays what it is: std::cout on a terminal gets
/// its colours here too.
class Recorder {
public:
    explicit Recorder(std::ostream& recorded) : stream(recorded), replaced(recorded.rdbuf(&buffer)) {}
    Recorder(Recorder const&) = delete;
    Recorder& operator=(Recorder const&) = delete;
    ~Recorder() { stream.rdbuf(replaced); }

    /// What the stream has received, with a flush_mark for each flush.
    std::string text() const { return buffer.str(); }

private:
    class Buffer : public std::stringbuf {
        int sync() override
        {
            sputc(flush_mark);
            return 0;
        }
    };

    std::ostream& stream;
    Buffer buffer;
    std::streambuf* replaced;
};

} // namespace hueline::test
