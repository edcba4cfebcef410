#include "kestry/kit/style.hpp"

#include "renderer.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <iostream>
#include <string>

namespace kestry::kit {

namespace {

// ---------------------------------------------------------------------------------------------
// The style that a stream carries
// ---------------------------------------------------------------------------------------------

// Three words of a stream: foreground, background, attributes. All are 0 in a stream that is plain.
using indices = std::array<int, 3>;

// The standard streams are given their words at once: words that grow while another thread looks at them would move.
indices const& style_indices()
{
    static indices const made = [] {
        indices const all{std::ios_base::xalloc(), std::ios_base::xalloc(), std::ios_base::xalloc()};
        for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
            os->iword(*std::max_element(all.begin(), all.end()));
        }
        return all;
    }();
    return made;
}

static_assert(sizeof(color) == sizeof(std::int32_t));

long to_word(color const& c) { return std::bit_cast<std::int32_t>(c); }
color to_color(long word) { return std::bit_cast<color>(static_cast<std::int32_t>(word)); }

// ---------------------------------------------------------------------------------------------
// What text is written to
// ---------------------------------------------------------------------------------------------

void write_to_stream(void* to, char const* bytes, std::size_t size)
{
    std::ostream& os = *static_cast<std::ostream*>(to);
    if (os.good()) {
        os.write(bytes, static_cast<std::streamsize>(size));
    }
}

void append_to_string(void* to, char const* bytes, std::size_t size)
{
    static_cast<std::string*>(to)->append(bytes, size);
}

// As an insertion of text takes it: what is pending is spent, and "internal" is right.
detail::layout take_layout(std::ostream& os, char const& fill)
{
    auto const width = static_cast<std::size_t>(std::max<std::streamsize>(os.width(0), 0));
    bool const is_left = (os.flags() & std::ios_base::adjustfield) == std::ios_base::left;
    using side = detail::layout::side;
    return {width, detail::no_limit, is_left ? side::left : side::right, {&fill, 1}};
}

} // namespace

style style_of(std::ostream& os)
{
    auto const [foreground, background, attributes] = style_indices();
    return {to_color(os.iword(foreground)), to_color(os.iword(background)),
            static_cast<std::uint8_t>(os.iword(attributes))};
}

void set_style(std::ostream& os, style const& around)
{
    auto const [foreground, background, attributes] = style_indices();
    os.iword(foreground) = to_word(around.foreground);
    os.iword(background) = to_word(around.background);
    os.iword(attributes) = around.attributes;
}

namespace detail {

std::ostream& insert(std::ostream& os, piece const* group, color_depth at_most)
{
    if (!os.good()) {
        return os << std::string_view{}; // fails as any text does
    }
    char const fill = os.fill();
    layout const where = take_layout(os, fill);
    if (renderer* const outer = renderer::of(os)) {
        outer->render(group, where);
        return os;
    }
    color_depth const depth = std::min(depth_of(os), at_most);
    renderer r({write_to_stream, &os}, {depth, combined({}, style_of(os), depth), &os, nullptr});
    try {
        r.render(group, where);
    } catch (...) {
        try {
            r.finish();
        } catch (...) { // the first one counts
        }
        throw;
    }
    r.finish();
    if (r.failure() != std::ios_base::goodbit) {
        os.setstate(r.failure());
    }
    return os;
}

std::string to_string(piece const* group, color_depth depth)
{
    std::string result;
    renderer r({append_to_string, &result}, {depth, {}, nullptr, nullptr});
    r.render(group, {});
    r.finish();
    return result;
}

void format(piece const* group, color_depth depth, layout const& where, void* to, write_bytes* write)
{
    renderer r({write, to}, {depth, {}, nullptr, nullptr});
    r.render(group, where);
    r.finish();
}

} // namespace detail

} // namespace kestry::kit
