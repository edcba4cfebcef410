/// \file
/// The rows of a hex view in their order: which are shown, and the last line.
#pragma once

#include "hexview_color.hpp"
#include "hexview_rows.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kestry::kit::detail {

/// Where text goes.
class text_sink {
public:
    /// Returns whether all of it went there, and more is of use.
    virtual bool put(char const* text, std::size_t size) = 0;

protected:
    ~text_sink() = default;
};

/// Writes the rows of bytes that lie in memory, all at once or one part after the other.
class row_printer {
public:
    /// As much text as bytes_expected may become is collected before it is handed on, up to 128 KiB.
    row_printer(hex_options const& options, text_sink& where, color_depth depth, std::uint64_t offset,
                std::size_t bytes_expected);

    row_shape const& shape_of_rows() const { return shape; }

    /// Writes so many full rows. Before the first there are the bytes of the row before, unless it is the first of all.
    /// Up to readable there is more to read in memory.
    void rows(std::byte const* first, std::size_t count, std::byte const* readable);

    /// Writes a row that is not full, if it has any bytes, and the end offset, if it is wanted and the layout has one.
    /// Before the bytes there are those of the row before.
    void end(std::byte const* bytes, std::size_t size, bool with_offset);

    /// Goes on at an offset that is so much greater.
    void advance(std::uint64_t bytes) { next_offset += bytes; }

    /// Hands on what has been collected.
    void flush();

    /// Whether the sink has refused text.
    bool failed() const { return refused; }

private:
    void show(std::byte const* first, std::size_t count, std::byte const* readable);
    void put(std::byte const* bytes, std::size_t size);
    void put_colored(std::byte const* bytes, std::size_t size, char const* end_of_plain);
    void put_end_offset();
    bool repeats(std::byte const* row) const;
    void leave_out();
    void put_star();
    void end_of_repeated(std::byte const* next_row);
    void end_of_zeros(std::byte const* end_of_data);
    void make_room();

    row_shape const shape;
    text_sink& sink;
    std::unique_ptr<hex_inks> const inks; // in the coloured form
    hex_inks::ink now = 0;
    bool const has_vector_row;
    vector_row vectors;

    std::uint64_t next_offset;
    bool is_first = true;
    std::uint64_t left_out = 0; // rows, since the last one that was shown
    bool refused = false;

    std::unique_ptr<char[]> large;
    char small[2048];
    char* begin = small;
    char* at = small;
    char* limit = small + sizeof small;
    std::size_t const plain_room;        // what a plain row needs
    std::size_t const room;              // what a row needs
    std::unique_ptr<char[]> const plain; // a row before it is coloured
};

} // namespace kestry::kit::detail
