#include "columns.hpp"

#include "ascii.hpp"
#include "emoji_bases.hpp"

#include <algorithm>
#include <utf8proc.h>

namespace kestry::kit::detail {

namespace {

unsigned constexpr widest_cluster = 2;
char32_t constexpr emoji_presentation = 0xfe0f; // VS16

bool is_between(char32_t code, char32_t first, char32_t last) { return first <= code && code <= last; }

} // namespace

column_counter::properties column_counter::look_up(char32_t code) noexcept
{
    if (code < 0x300) { // up to the first combining mark, all but these are alike
        bool const is_control = code < 0x20 || (code >= 0x7f && code < 0xa0);
        bool const is_pictographic = code == 0xa9 || code == 0xae;
        return {is_control        ? break_class::control
                : is_pictographic ? break_class::pictographic
                : code == 0xad    ? break_class::control // the soft hyphen
                                  : break_class::other,
                static_cast<unsigned char>(is_control ? 0 : 1)};
    }
    return look_up_in_tables(code);
}

column_counter::properties column_counter::look_up_in_tables(char32_t code) noexcept
{
    utf8proc_property_t const& property = *utf8proc_get_property(static_cast<utf8proc_int32_t>(code));
    // A mark that moves the pen takes a column.
    bool const takes_room = property.category == UTF8PROC_CATEGORY_MC && property.charwidth == 0;
    auto const width = static_cast<unsigned char>(takes_room ? 1 : property.charwidth);
    switch (property.boundclass) {
    case UTF8PROC_BOUNDCLASS_CR:
    case UTF8PROC_BOUNDCLASS_LF:
    case UTF8PROC_BOUNDCLASS_CONTROL:
        return {break_class::control, width};
    case UTF8PROC_BOUNDCLASS_EXTEND:
        return {break_class::extend, width};
    case UTF8PROC_BOUNDCLASS_ZWJ:
        return {break_class::zwj, width};
    case UTF8PROC_BOUNDCLASS_REGIONAL_INDICATOR:
        return {break_class::regional_indicator, width};
    case UTF8PROC_BOUNDCLASS_PREPEND:
        return {break_class::prepend, width};
    case UTF8PROC_BOUNDCLASS_SPACINGMARK:
        return {break_class::spacing_mark, width};
    case UTF8PROC_BOUNDCLASS_L:
        return {break_class::l, width};
    case UTF8PROC_BOUNDCLASS_V: // within the columns of the leading consonant
        return {break_class::v, 0};
    case UTF8PROC_BOUNDCLASS_T:
        return {break_class::t, 0};
    case UTF8PROC_BOUNDCLASS_LV:
        return {break_class::lv, width};
    case UTF8PROC_BOUNDCLASS_LVT:
        return {break_class::lvt, width};
    case UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC:
        return {break_class::pictographic, width};
    default:
        return property.category == UTF8PROC_CATEGORY_CN ? look_up_unassigned(code)
                                                         : properties{break_class::other, width};
    }
}

// What DerivedCoreProperties.txt, EastAsianWidth.txt and emoji-data.txt say of code points that have no character yet.
column_counter::properties column_counter::look_up_unassigned(char32_t code) noexcept
{
    if (code == 0x2065 || is_between(code, 0xfff0, 0xfff8) || is_between(code, 0xe0000, 0xe0fff)) {
        return {break_class::control, 0}; // Default_Ignorable_Code_Point
    }
    if (is_between(code, 0x1f000, 0x1faff) || is_between(code, 0x1fc00, 0x1fffd)) {
        return {break_class::pictographic, 1};
    }
    bool const is_ideograph =
        is_between(code, 0xf900, 0xfaff) || is_between(code, 0x20000, 0x2fffd) || is_between(code, 0x30000, 0x3fffd);
    return {break_class::other, static_cast<unsigned char>(is_ideograph ? 2 : 1)};
}

// GB3 to GB999.
bool column_counter::joins(break_class next) const noexcept
{
    using enum break_class;
    if (before == control || next == control) {
        return false;
    }
    switch (next) {
    case extend:
    case zwj:
    case spacing_mark:
        return true;
    case l:
        return before == l || before == prepend;
    case v:
        return before == l || before == v || before == lv || before == prepend;
    case t:
        return before == v || before == t || before == lv || before == lvt || before == prepend;
    case lv:
    case lvt:
        return before == l || before == prepend;
    case regional_indicator:
        return odd_indicators || before == prepend;
    case pictographic:
        return emoji == emoji_state::joiner || before == prepend;
    default:
        return before == prepend;
    }
}

void column_counter::take(char32_t code, properties next, bool joined) noexcept
{
    if (!joined) {
        finished += cluster;
        cluster = 0;
    }
    bool const widens = code == emoji_presentation && joined && is_narrow_emoji(last);
    cluster = std::min(cluster + next.width + (widens ? 1U : 0U), widest_cluster);

    bool const was_emoji = emoji == emoji_state::pictographic;
    emoji = next.breaks == break_class::pictographic          ? emoji_state::pictographic
            : was_emoji && next.breaks == break_class::extend ? emoji_state::pictographic
            : was_emoji && next.breaks == break_class::zwj    ? emoji_state::joiner
                                                              : emoji_state::none;
    odd_indicators = next.breaks == break_class::regional_indicator && !odd_indicators;
    before = next.breaks;
    last = code;
}

bool column_counter::add(character next) noexcept
{
    if (next.is != character::state::whole) {
        next.code = 0; // no base for anything
    }
    properties const found =
        next.is == character::state::whole ? look_up(next.code) : properties{break_class::other, 1};
    bool const joined = joins(found.breaks);
    take(next.code, found, joined);
    return !joined;
}

void column_counter::add_printable_ascii(std::string_view run) noexcept
{
    add({static_cast<unsigned char>(run.front()), 1, character::state::whole}); // may join what is before it
    if (run.size() > 1) {
        finished += cluster + (run.size() - 2);
        cluster = 1;
        last = static_cast<unsigned char>(run.back());
        before = break_class::other;
    }
}

void column_counter::add(escape_sequence const& sequence) noexcept
{
    if (sequence.has_controls) {
        add({'\n', 1, character::state::whole});
    }
}

void column_counter::add(std::string_view text) noexcept
{
    while (!text.empty()) {
        if (std::size_t const run = printable_ascii(text); run > 0) {
            add_printable_ascii(text.substr(0, run));
            text.remove_prefix(run);
            continue;
        }
        character const next = decode(text);
        if (begins_sequence(next.code)) {
            escape_sequence const sequence = read_sequence(text);
            add(sequence);
            text.remove_prefix(sequence.size);
        } else {
            add(next);
            text.remove_prefix(next.size);
        }
    }
}

} // namespace kestry::kit::detail
