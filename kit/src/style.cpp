#include "kestry/kit/style.hpp"

#include "ascii.hpp"
#include "renderer.hpp"
#include "rendition.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>

namespace kestry::kit {

namespace {

// ---------------------------------------------------------------------------------------------
// The style that a stream carries
// ---------------------------------------------------------------------------------------------

// Two places among the words of a stream: what it carries, and both colours. All are 0 in a stream that is plain and
// nobody's. The first few places cost no allocation, so there are no more.
struct places {
    int what;
    int colors; // the foreground as a number, the background as a pointer
};

// The bits of the first word above the attributes.
constexpr long has_colors = 0x100;
constexpr long is_for_values = 0x200;

// The standard streams are given their words at once: words that grow while another thread looks at them would move.
places const& stream_places()
{
    static places const made = [] {
        places const both{std::ios_base::xalloc(), std::ios_base::xalloc()};
        for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
            os->iword(both.colors);
        }
        return both;
    }();
    return made;
}

long& carried(std::ostream& os) { return os.iword(stream_places().what); }

long to_word(color const& c) { return std::bit_cast<std::int32_t>(c); }
color to_color(long word) { return std::bit_cast<color>(static_cast<std::int32_t>(word)); }
void* to_pointer(color const& c) { return reinterpret_cast<void*>(std::uintptr_t{std::bit_cast<std::uint32_t>(c)}); }
color to_color(void* word)
{
    return std::bit_cast<color>(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(word)));
}

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

// ---------------------------------------------------------------------------------------------
// A short text of printable ASCII in a plain place: most are, and they take a third of the time
// ---------------------------------------------------------------------------------------------

constexpr std::size_t shortest = sizeof(std::uint32_t);
constexpr std::size_t longest = 128;

// Calls visit(offset, the word there) for words of eight bytes, or of four in a text that is shorter. The last one ends
// where the text ends, so that no byte is looked at by itself. Stops, and returns false, where visit does.
template <class Word, class Visit>
bool in_words(std::string_view text, Visit visit)
{
    auto const visit_at = [text, visit](std::size_t at) {
        Word word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        return visit(at, word);
    };
    for (std::size_t at = 0; at + sizeof(Word) < text.size(); at += sizeof(Word)) {
        if (!visit_at(at)) {
            return false;
        }
    }
    return visit_at(text.size() - sizeof(Word));
}

template <class Visit>
bool in_words(std::string_view text, Visit visit)
{
    return text.size() < sizeof(std::uint64_t) ? in_words<std::uint32_t>(text, visit)
                                               : in_words<std::uint64_t>(text, visit);
}

bool is_short(std::string_view text)
{
    return text.size() >= shortest && text.size() <= longest && in_words(text, [](std::size_t, auto word) {
               auto const every = static_cast<decltype(word)>(detail::every_byte);
               // As in detail::printable_ascii().
               return (((word - 0x20 * every) | (word + every) | word) & (0x80 * every)) == 0;
           });
}

using detail::plain_sequences;

std::size_t styled_size(std::string_view text, plain_sequences const& around)
{
    return around.begin_size + text.size() + around.end_size;
}

// Whole words, one over the rest of another: the text comes last.
void write_styled(char* out, std::string_view text, plain_sequences const& around)
{
    std::memcpy(out + styled_size(text, around) - around.end.size(), around.end.data(), around.end.size());
    std::memcpy(out, around.begin.data(), around.begin.size());
    in_words(text, [to = out + around.begin_size](std::size_t at, auto word) {
        std::memcpy(to + at, &word, sizeof word);
        return true;
    });
}

struct short_text {
    short_text(std::string_view text, style const& look, color_depth depth)
    {
        using namespace detail;
        if (plain_sequences const* const around = common_sequences(look, depth)) {
            write_styled(bytes, text, *around);
            size = styled_size(text, *around);
        } else {
            rendition const wanted = combined({}, look, depth);
            char* end = write_change(bytes, {}, wanted);
            end += text.copy(end, text.size());
            size = static_cast<std::size_t>(write_change(end, wanted, {}) - bytes);
        }
    }

    std::size_t size;
    char bytes[2 * detail::longest_change + longest];
};

} // namespace

style style_of(std::ostream& os)
{
    long const word = carried(os);
    style around{{}, {}, static_cast<std::uint8_t>(word)};
    if ((word & has_colors) != 0) {
        int const colors = stream_places().colors;
        around.foreground = to_color(os.iword(colors));
        around.background = to_color(os.pword(colors));
    }
    return around;
}

void set_style(std::ostream& os, style const& around)
{
    bool const is_colored = around != style{{}, {}, around.attributes};
    long& word = carried(os);
    word = (word & is_for_values) | (is_colored ? has_colors : 0) | around.attributes;
    if (is_colored) {
        int const colors = stream_places().colors;
        os.iword(colors) = to_word(around.foreground);
        os.pword(colors) = to_pointer(around.background);
    }
}

namespace detail {

std::ostream& insert(std::ostream& os, piece const* group, color_depth at_most)
{
    if (!os.good()) {
        return os << std::string_view{}; // fails as any text does
    }
    char const fill = os.fill();
    layout const where = take_layout(os, fill);
    if (renderer* const outer = (carried(os) & is_for_values) != 0 ? renderer::of(os) : nullptr) {
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

std::ostream& insert(std::ostream& os, std::string_view text, style const& look, color_depth at_most)
{
    if (os.good() && os.width() == 0 && carried(os) == 0 && is_short(text)) {
        short_text const styled{text, look, std::min(depth_of(os), at_most)};
        return os.write(styled.bytes, static_cast<std::streamsize>(styled.size));
    }
    piece const pieces[] = {{piece::kind::group, look, 1}, {piece::kind::text, {}, text.size(), text.data()}};
    return insert(os, pieces, at_most);
}

std::string to_string(std::string_view text, style const& look, color_depth depth)
{
    if (is_short(text)) {
        if (plain_sequences const* const around = common_sequences(look, depth)) {
            std::size_t const size = styled_size(text, *around);
            std::string result;
            result.resize_and_overwrite(size, [&](char* bytes, std::size_t /*room, which may be more*/) {
                write_styled(bytes, text, *around);
                return size;
            });
            return result;
        }
        short_text const styled{text, look, depth};
        return {styled.bytes, styled.size};
    }
    piece const pieces[] = {{piece::kind::group, look, 1}, {piece::kind::text, {}, text.size(), text.data()}};
    return to_string(pieces, depth);
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

void mark_for_values(std::ostream& os) { carried(os) |= is_for_values; }

} // namespace detail

} // namespace kestry::kit
