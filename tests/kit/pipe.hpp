/// \file
/// Descriptors that a test opens, and pipes.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// Closes it at its end. Throws std::runtime_error if it was not opened.
struct Descriptor {
    explicit Descriptor(int opened) : number(opened)
    {
        if (number < 0) {
            throw std::runtime_error("not opened");
        }
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() { ::close(number); }

    int number;
};

/// Each end until it is reset.
struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends = {-1, -1};
        static_cast<void>(::pipe(ends.data()));
        out = std::make_unique<Descriptor>(ends[0]);
        in = std::make_unique<Descriptor>(ends[1]);
    }

    /// Holds a text, and nothing more comes.
    explicit Pipe(std::string_view text) : Pipe()
    {
        put(text);
        in.reset();
    }

    void put(std::string_view text) const
    {
        EXPECT_EQ(::write(in->number, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    std::unique_ptr<Descriptor> out;
    std::unique_ptr<Descriptor> in;
};

} // namespace hueline::test
