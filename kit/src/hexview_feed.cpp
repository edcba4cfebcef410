#include "hexview_feed.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kestry::kit::detail {

namespace {

std::size_t constexpr block = 128 * 1024;

} // namespace

row_feed::row_feed(hex_options const& how, text_sink& sink, color_depth depth)
    : options(how), printer(how, sink, depth, how.first_offset, block), width(printer.shape_of_rows().width),
      to_skip(how.skip < 0 ? 0 : static_cast<std::uint64_t>(how.skip)),
      to_show(how.length.value_or(std::numeric_limits<std::uint64_t>::max())),
      buffer(width + std::max(block, 2 * width))
{}

std::span<std::byte> row_feed::space()
{
    std::span<std::byte> const left = std::span(buffer).subspan(width + held);
    std::uint64_t const all = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t const wanted = to_show > all - to_skip ? all : to_skip + to_show;
    return left.first(static_cast<std::size_t>(std::min<std::uint64_t>(left.size(), wanted)));
}

void row_feed::jump(std::uint64_t count)
{
    taken += count;
    to_skip -= std::min(to_skip, count);
    printer.advance(count);
}

void row_feed::added(std::size_t count)
{
    std::byte* const bytes = buffer.data() + width;
    if (to_skip != 0) { // nothing is held yet
        auto const skipped = static_cast<std::size_t>(std::min<std::uint64_t>(count, to_skip));
        jump(skipped);
        count -= skipped;
        std::memmove(bytes, bytes + skipped, count);
    }
    held += count;
    taken += count;
    to_show -= count;

    std::size_t const rows = held / width;
    if (rows == 0) {
        return;
    }
    printer.rows(bytes, rows, bytes + held);
    printer.flush();
    held %= width;
    std::memmove(buffer.data(), bytes + (rows - 1) * width, width + held);
}

void row_feed::finish()
{
    if (to_skip != 0) {
        check_skip_after_end(options.layout);
    }
    printer.end(buffer.data() + width, held, shows_end_offset(options, taken));
}

} // namespace kestry::kit::detail
