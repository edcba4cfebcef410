#include "sgr.hpp"

#include <iterator>

namespace kestry::kit::detail {

namespace {

// Codes that switch something on, and the one that ends it.
struct group {
    unsigned first;
    unsigned last;
    unsigned end;
};

// clang-format off
constexpr group known[] = {
    { 1,  2, 22}, // bold, faint
    { 3,  3, 23}, // italic
    {20, 20, 23}, // Fraktur
    { 4,  4, 24}, // underline
    {21, 21, 24}, // double underline
    { 5,  6, 25}, // blink
    { 7,  7, 27}, // reverse
    { 8,  8, 28}, // concealed
    { 9,  9, 29}, // crossed out
    {11, 19, 10}, // fonts
    {26, 26, 50}, // proportional spacing
    {30, 38, 39}, // foreground
    {90, 97, 39},
    {40, 48, 49}, // background
    {100, 107, 49},
    {51, 52, 54}, // framed, encircled
    {53, 53, 55}, // overlined
    {58, 58, 59}, // colour of the underline
    {60, 64, 65}, // ideogram
    {73, 74, 75}, // superscript, subscript
};
// clang-format on

std::uint32_t apply_code(std::uint32_t open, sgr_parameter const& parameter)
{
    bool const is_off = parameter.code == 0 || parameter.text == "4:0";
    for (std::size_t i = 0; i < std::size(known); ++i) {
        group const& of = known[i];
        std::uint32_t const bit = std::uint32_t{1} << i;
        bool const ends = parameter.code == of.end || parameter.code == 0 || (is_off && of.end == 24);
        bool const begins = !is_off && parameter.code >= of.first && parameter.code <= of.last;
        open = ends ? open & ~bit : begins ? open | bit : open;
    }
    return open;
}

} // namespace

void open_styles::apply(escape_sequence const& sequence) noexcept
{
    if (is_sgr(sequence)) {
        for_each_sgr(sequence.body, [this](sgr_parameter const& one) { groups = apply_code(groups, one); });
    } else if (sequence.kind == escape_machine::state::osc && sequence.is_complete && sequence.body.starts_with("8;")) {
        std::size_t const target = sequence.body.find(';', 2); // after the parameters of the link
        if (target != std::string_view::npos) {
            link = target + 1 < sequence.body.size();
        }
    }
}

void open_styles::close(std::string& text) const
{
    if (link) {
        text += "\x1b]8;;\x1b\\"; // OSC 8
    }
    char separator = '[';
    unsigned last = 0;
    for (std::size_t i = 0; i < std::size(known); ++i) {
        if ((groups >> i & 1) == 0 || known[i].end == last) {
            continue;
        }
        last = known[i].end;
        if (separator == '[') {
            text += '\x1b';
        }
        text += separator;
        text += std::to_string(last);
        separator = ';';
    }
    if (separator == ';') {
        text += 'm';
    }
}

} // namespace kestry::kit::detail
