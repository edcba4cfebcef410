/// \file
/// A stream that fails at its first write.
#pragma once

#include <ostream>
#include <streambuf>

namespace hueline::test {

/// Gives a stream a buffer that takes nothing, for a scope. The first write makes the stream bad, and
/// throws if bad is in exceptions.
class Failing {
public:
    explicit Failing(std::ostream& failing, std::ios_base::iostate exceptions = std::ios_base::goodbit)
        : os(failing), replaced(failing.rdbuf(&buffer))
    {
        os.exceptions(exceptions);
    }
    Failing(Failing const&) = delete;
    Failing& operator=(Failing const&) = delete;
    ~Failing()
    {
        os.exceptions(std::ios_base::goodbit);
        os.rdbuf(replaced); // the stream is good again
    }

private:
    class Buffer : public std::streambuf {};

    std::ostream& os;
    Buffer buffer;
    std::streambuf* replaced;
};

} // namespace hueline::test
