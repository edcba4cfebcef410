#include "hexview_layout.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace kestry::kit::detail {

namespace {

std::size_t constexpr widest = 65536;

bool is_xxd(hex_layout layout)
{
    switch (layout) {
    case hex_layout::xxd:
    case hex_layout::xxd_bits:
    case hex_layout::xxd_little_endian:
    case hex_layout::xxd_plain:
        return true;
    case hex_layout::hexdump_c:
    case hex_layout::od:
        return false;
    }
    throw std::invalid_argument("hexdump: no such layout");
}

std::size_t own_width(hex_layout layout)
{
    return layout == hex_layout::xxd_bits ? 6 : layout == hex_layout::xxd_plain ? 30 : 16;
}

std::size_t own_group(hex_layout layout)
{
    switch (layout) {
    case hex_layout::xxd:
        return 2;
    case hex_layout::xxd_little_endian:
        return 4;
    case hex_layout::hexdump_c:
        return 8;
    default:
        return 1;
    }
}

std::size_t width_of(hex_options const& options)
{
    std::size_t const width = options.width.value_or(0);
    if (width > widest) {
        throw std::invalid_argument("hexdump: a row of " + std::to_string(width) + " bytes, and the most is " +
                                    std::to_string(widest));
    }
    bool const endless = options.width && options.layout == hex_layout::xxd_plain;
    return width != 0 || endless ? width : own_width(options.layout);
}

std::size_t group_of(hex_options const& options, std::size_t width)
{
    std::size_t const group = options.group.value_or(own_group(options.layout));
    if (options.layout == hex_layout::xxd_little_endian && (group & (group - 1)) != 0) {
        throw std::invalid_argument("hexdump: little endian takes groups of 1, 2, 4, 8... bytes, and not of " +
                                    std::to_string(group));
    }
    return group == 0 ? width : std::min(group, width);
}

} // namespace

row_shape shape_of(hex_options const& options)
{
    bool const xxd = is_xxd(options.layout);
    bool const plain = options.layout == hex_layout::xxd_plain;
    bool const od = options.layout == hex_layout::od;
    hex_offsets const offsets = plain ? hex_offsets::none : options.offsets;
    bool const has_offset = offsets != hex_offsets::none;

    row_shape shape = {};
    shape.width = width_of(options);
    shape.has_line_end = shape.width != 0;
    if (!shape.has_line_end) {
        shape.width = own_width(hex_layout::xxd); // pieces of the one line
    }
    shape.group = plain ? shape.width : group_of(options, shape.width);
    shape.digits = options.layout == hex_layout::xxd_bits ? 8 : 2;
    shape.lead = od ? 1 : has_offset ? 2 : 0;
    shape.cell = options.layout == hex_layout::hexdump_c ? 3 : shape.digits;
    shape.colon = xxd && has_offset ? ':' : '\0';
    shape.mark_before = xxd ? '\0' : od ? '>' : '|';
    shape.mark_after = xxd ? '\0' : od ? '<' : '|';
    shape.has_text = !plain;
    shape.last_first = options.layout == hex_layout::xxd_little_endian;
    shape.uppercase = options.uppercase;
    shape.offsets = offsets;
    shape.offset_digits = !od ? 8 : offsets == hex_offsets::hexadecimal ? 6 : 7;
    shape.ends_with_offset = !xxd && has_offset;
    bool const squeezes = options.squeeze.value_or(!xxd) && !plain;
    shape.squeeze = !squeezes ? hex_squeeze::none : xxd ? hex_squeeze::zeros : hex_squeeze::equal;

    // Two blanks after the last digit, or one more and a mark. Little endian counts a last group that is not whole as if
    // its bytes were not turned round: there digits and text share columns, in xxd too.
    std::size_t const last = shape.width - 1;
    std::size_t const end = shape.lead + shape.cell * last + last / shape.group + shape.digits;
    shape.text_at = end + 2 + (shape.mark_before != '\0' ? 1 : 0);
    return shape;
}

void refuse_skip() { throw std::invalid_argument("hexdump: more bytes to skip than there are"); }

void check_skip_after_end(hex_layout layout)
{
    if (layout == hex_layout::od) {
        refuse_skip();
    }
}

bool shows_end_offset(hex_options const& options, std::uint64_t bytes)
{
    return options.layout == hex_layout::od || (bytes != 0 && options.length != std::uint64_t{0});
}

} // namespace kestry::kit::detail
