#include "hexdump/cells.hpp"

#include "hexdump/vector_cells.hpp"
#include "text/digits.hpp"

#include <cstddef>
#include <cstring>

namespace kestry::detail {

namespace {

using Bytes = std::span<unsigned char const>;

// The plain form: what the faster ones must equal.
char* put_cells_one_by_one(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    for (unsigned char const b : bytes) {
        out = put_text(put_byte(put_text(out, before), b), after);
    }
    return out;
}

// The faster form, for cells that fit a block: each is stored as a whole block with the digits over it,
// and the next cell, or what follows the dump, overwrites the rest of the block.
std::size_t constexpr block = 16;

char* put_narrow_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    char cell[block] = {};
    put_text(put_text(cell, before) + 2, after);
    std::size_t const width = before.size() + 2 + after.size();

    std::size_t done = 0;
    while (done < bytes.size() && limit - out >= static_cast<std::ptrdiff_t>(block)) {
        std::memcpy(out, cell, block);
        put_byte(out + before.size(), bytes[done]);
        out += width;
        ++done;
    }
    return put_cells_one_by_one(out, bytes.subspan(done), before, after);
}

} // namespace

char* put_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    std::size_t const width = before.size() + 2 + after.size();
    if (put_vector_cells(out, bytes, before, after)) {
        return out + bytes.size() * width;
    }
    return width <= block ? put_narrow_cells(out, limit, bytes, before, after)
                          : put_cells_one_by_one(out, bytes, before, after);
}

} // namespace kestry::detail
