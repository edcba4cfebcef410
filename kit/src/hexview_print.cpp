#include "hexview_print.hpp"

#include <algorithm>
#include <cstring>

namespace kestry::kit::detail {

namespace {

std::size_t constexpr block = 128 * 1024; // stays in a cache, and is enough for a write

bool are_zeros(std::byte const* bytes, std::size_t size)
{
    return bytes[0] == std::byte{0} && std::memcmp(bytes, bytes + 1, size - 1) == 0;
}

// Most rows differ in their first bytes: these are compared without a call.
bool equal(std::byte const* a, std::byte const* b, std::size_t size)
{
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::size_t const few = std::min(size, sizeof first);
    if (few == sizeof first) {
        std::memcpy(&first, a, sizeof first);
        std::memcpy(&second, b, sizeof second);
    }
    return first == second && std::memcmp(a, b, size) == 0;
}

std::unique_ptr<hex_inks> inks_of(hex_options const& options, color_depth depth)
{
    bool const wanted = options.colored && depth != color_depth::none;
    return wanted ? std::make_unique<hex_inks>(options.theme, depth) : nullptr;
}

} // namespace

row_printer::row_printer(hex_options const& options, text_sink& where, color_depth depth, std::uint64_t offset,
                         std::size_t bytes_expected)
    : shape(shape_of(options)), sink(where), inks(inks_of(options, depth)),
      has_vector_row(bytes_expected >= 256 && has_vectors(shape)), next_offset(offset),
      plain_room(room_for_row(shape) + vector_row::most_columns),
      room(plain_room + (inks ? inks->room(shape.width) : 0)), plain(inks ? new char[plain_room] : nullptr)
{
    if (has_vector_row) {
        vectors = vectors_for(shape);
    }
    // Rows that are not full, "*" and the end offset come to the full rows.
    std::size_t const rows = std::min(bytes_expected / shape.width + 3, block);
    std::size_t const needed = std::min(rows * (longest_offset + shape.columns(shape.width)), block) + room;
    if (needed > sizeof small) {
        large.reset(new char[needed]);
        begin = at = large.get();
        limit = begin + needed;
    }
}

void row_printer::flush()
{
    if (at != begin && !refused) {
        refused = !sink.put(begin, static_cast<std::size_t>(at - begin));
    }
    at = begin;
}

void row_printer::make_room()
{
    if (static_cast<std::size_t>(limit - at) < room) {
        flush();
    }
}

void row_printer::put_colored(std::byte const* bytes, std::size_t size, char const* end_of_plain)
{
    auto const characters = static_cast<std::size_t>(end_of_plain - plain.get());
    at = inks->color_row(at, now, plain.get(), characters - shape.columns(size), shape, bytes, size);
}

void row_printer::put(std::byte const* bytes, std::size_t size)
{
    if (inks) {
        put_colored(bytes, size, put_row(plain.get(), shape, next_offset, bytes, size));
    } else {
        at = put_row(at, shape, next_offset, bytes, size);
    }
}

void row_printer::show(std::byte const* first, std::size_t count, std::byte const* readable)
{
    while (count != 0 && !refused) {
        make_room();
        // Vectors read 16 bytes for each row.
        auto const left = static_cast<std::size_t>(readable - first);
        std::size_t const for_vectors = !has_vector_row || left < 16 ? 0 : (left - 16) / shape.width + 1;
        std::size_t some = 1;
        if (for_vectors == 0) {
            put(first, shape.width);
        } else if (inks) {
            put_colored(first, shape.width, put_vector_rows(plain.get(), shape, vectors, next_offset, first, 1));
        } else {
            some = std::min({count, static_cast<std::size_t>(limit - at) / room, for_vectors});
            at = put_vector_rows(at, shape, vectors, next_offset, first, some);
        }
        first += some * shape.width;
        next_offset += some * shape.width;
        count -= some;
    }
}

bool row_printer::repeats(std::byte const* row) const
{
    if (is_first || shape.squeeze == hex_squeeze::none || !equal(row, row - shape.width, shape.width)) {
        return false;
    }
    return shape.squeeze == hex_squeeze::equal || left_out != 0 || are_zeros(row, shape.width);
}

void row_printer::put_star()
{
    make_room();
    *at++ = '*';
    *at++ = '\n';
}

void row_printer::leave_out()
{
    ++left_out;
    next_offset += shape.width;
    if (left_out == 1 && shape.squeeze == hex_squeeze::equal) {
        put_star();
    }
}

// For zeros the line waits until their number is known: one row that was left out is shown after all.
void row_printer::end_of_repeated(std::byte const* next_row)
{
    if (shape.squeeze == hex_squeeze::zeros && left_out == 1) {
        next_offset -= shape.width;
        show(next_row - shape.width, 1, next_row);
    } else if (shape.squeeze == hex_squeeze::zeros && left_out > 1) {
        put_star();
    }
    left_out = 0;
}

// At the end of the data the last row of zeros is shown, and of three all are.
void row_printer::end_of_zeros(std::byte const* end_of_data)
{
    if (left_out > 2) {
        put_star();
        left_out = 1;
    }
    next_offset -= left_out * shape.width;
    for (; left_out != 0; --left_out) {
        show(end_of_data - shape.width, 1, end_of_data);
    }
}

void row_printer::rows(std::byte const* first, std::size_t count, std::byte const* readable)
{
    std::byte const* const end = first + count * shape.width;
    while (first != end && !refused) {
        if (repeats(first)) {
            leave_out();
            first += shape.width;
            continue;
        }
        end_of_repeated(first);
        is_first = false;
        std::byte const* until = shape.squeeze == hex_squeeze::none ? end : first + shape.width;
        while (until != end && !repeats(until)) {
            until += shape.width;
        }
        show(first, static_cast<std::size_t>(until - first) / shape.width, readable);
        first = until;
    }
}

void row_printer::put_end_offset()
{
    if (inks) {
        auto const size = static_cast<std::size_t>(put_offset(plain.get(), shape, next_offset) - plain.get());
        at = inks->color_offset(at, plain.get(), size);
    } else {
        at = put_offset(at, shape, next_offset);
    }
}

void row_printer::end(std::byte const* bytes, std::size_t size, bool with_offset)
{
    if (size != 0) {
        end_of_repeated(bytes);
        make_room();
        put(bytes, size);
        next_offset += size;
    } else if (shape.squeeze == hex_squeeze::zeros) {
        end_of_zeros(bytes);
    }
    make_room();
    if (!shape.has_line_end) {
        if (inks) {
            at = inks->end_color(at, now);
        }
        *at++ = '\n';
    }
    if (shape.ends_with_offset && with_offset) {
        put_end_offset();
        *at++ = '\n';
    }
    flush();
}

} // namespace kestry::kit::detail
