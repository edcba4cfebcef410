#include "kestry/kit/hexview.hpp"

#include "hexview_feed.hpp"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace kestry::kit {

namespace {

using namespace detail;

// What is to be shown of bytes in memory.
struct selection {
    std::span<std::byte const> shown;
    std::uint64_t skipped;
    bool with_end_offset;
};

selection select(std::span<std::byte const> bytes, hex_options const& options)
{
    std::uint64_t const size = bytes.size();
    auto skip = static_cast<std::uint64_t>(options.skip);
    if (options.skip < 0) {
        std::uint64_t const from_end = -skip;
        if (from_end > size) {
            refuse_skip();
        }
        skip = size - from_end;
    }
    if (skip > size) {
        check_skip_after_end(options.layout);
        skip = size;
    }
    std::uint64_t const length = std::min(options.length.value_or(size), size - skip);
    return {bytes.subspan(static_cast<std::size_t>(skip), static_cast<std::size_t>(length)), skip,
            shows_end_offset(options, size)};
}

void print(text_sink& sink, color_depth depth, std::span<std::byte const> bytes, hex_options const& options)
{
    auto const [shown, skipped, with_end_offset] = select(bytes, options);
    row_printer printer(options, sink, depth, options.first_offset + skipped, shown.size());
    std::size_t const width = printer.shape_of_rows().width;
    std::size_t const rest = shown.size() % width;
    std::byte const* const end = shown.data() + shown.size();
    printer.rows(shown.data(), shown.size() / width, end);
    printer.end(end - rest, rest, with_end_offset);
}

class string_sink : public text_sink {
public:
    bool put(char const* more, std::size_t size) override
    {
        text.append(more, size);
        return true;
    }

    std::string text;
};

// Room for all rows, where none is left out: a string that grows would be copied again and again.
std::size_t plain_size(selection const& selected, row_shape const& shape)
{
    if (shape.squeeze != hex_squeeze::none) {
        return 0;
    }
    std::size_t const rows = selected.shown.size() / shape.width + 2;
    return rows * (16 + shape.columns(shape.width));
}

} // namespace

hex_view hexdump(std::span<std::byte const> bytes, hex_options const& options)
{
    shape_of(options);
    select(bytes, options);
    return {bytes, options};
}

std::ostream& operator<<(std::ostream& os, hex_view const& view)
{
    stream_sink sink{os};
    os.width(0);
    print(sink, depth_for(os, view.options), view.data, view.options);
    return os;
}

std::string to_string(hex_view const& view, color_depth depth)
{
    string_sink sink;
    sink.text.reserve(plain_size(select(view.data, view.options), shape_of(view.options)));
    print(sink, depth, view.data, view.options);
    return std::move(sink.text);
}

// ---------------------------------------------------------------------------------------------
// Piece by piece
// ---------------------------------------------------------------------------------------------

struct hex_writer::state {
    state(std::ostream& os, hex_options const& options) : sink(os), feed(options, sink, depth_for(os, options)) {}

    stream_sink sink;
    row_feed feed;
};

hex_writer::hex_writer(std::ostream& os, hex_options const& options) : own(std::make_unique<state>(os, options))
{
    if (options.skip < 0) {
        throw std::invalid_argument("hexdump: bytes that come piece by piece have no end to count back from");
    }
}

hex_writer::hex_writer(hex_writer&& other) noexcept = default;
hex_writer& hex_writer::operator=(hex_writer&& other) noexcept = default;
hex_writer::~hex_writer() = default;

void hex_writer::write(std::span<std::byte const> bytes)
{
    while (!bytes.empty() && !done()) {
        std::span<std::byte> const space = own->feed.space();
        std::size_t const some = std::min(space.size(), bytes.size());
        std::copy_n(bytes.begin(), some, space.begin());
        own->feed.added(some);
        bytes = bytes.subspan(some);
    }
}

bool hex_writer::done() const { return own->feed.done(); }

void hex_writer::finish() { own->feed.finish(); }

} // namespace kestry::kit
