/// \file
/// Bytes that come piece by piece, on their way to the rows of a hex view.
#pragma once

#include "hexview_print.hpp"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <vector>

namespace kestry::kit::detail {

/// Text for a stream.
class stream_sink : public text_sink {
public:
    explicit stream_sink(std::ostream& os) : stream(os) {}

    bool put(char const* text, std::size_t size) override
    {
        return static_cast<bool>(stream.write(text, static_cast<std::streamsize>(size)));
    }

private:
    std::ostream& stream;
};

/// How richly the stream is to be coloured, if it is asked for at all.
inline color_depth depth_for(std::ostream& os, hex_options const& options)
{
    return options.colored ? depth_of(os) : color_depth::none;
}

/// Collects bytes until they make rows, and prints these.
class row_feed {
public:
    row_feed(hex_options const& how, text_sink& sink, color_depth depth);

    /// Where the next bytes are to be put: not more than are wanted, and none if that is so.
    std::span<std::byte> space();

    /// Takes so many bytes that were put there.
    void added(std::size_t count);

    /// Counts bytes as skipped that need not be put anywhere.
    void jump(std::uint64_t count);

    /// Whether there are bytes still to be skipped.
    bool skipping() const { return to_skip != 0; }

    /// Whether no more bytes are wanted.
    bool done() const { return printer.failed() || (to_skip == 0 && to_show == 0); }

    /// Prints the end.
    void finish();

private:
    hex_options const options;
    row_printer printer;
    std::size_t const width;
    std::uint64_t to_skip;
    std::uint64_t to_show;
    std::uint64_t taken = 0; // bytes in all, skipped or shown

    // The row before, then bytes that are to be printed.
    std::vector<std::byte> buffer;
    std::size_t held = 0;
};

} // namespace kestry::kit::detail
