/// \file
/// The columns of a text on a terminal, counted cluster by cluster.
#pragma once

#include "escape_machine.hpp"
#include "utf8.hpp"

#include <cstddef>
#include <string_view>

namespace kestry::kit::detail {

/// Counts the columns of what it is given, one after the other.
class column_counter {
public:
    /// Takes the next character or stray byte. Returns whether a grapheme cluster begins with it.
    bool add(character next) noexcept;

    /// Takes an escape sequence, which has no column and ends no cluster, unless controls are carried out in it.
    void add(escape_sequence const& sequence) noexcept;

    /// Takes all of a text, sequences too.
    void add(std::string_view text) noexcept;

    std::size_t columns() const noexcept { return finished + cluster; }

private:
    // Grapheme_Cluster_Break and Extended_Pictographic (UAX #29).
    enum class break_class : unsigned char {
        other,
        control, // CR and LF too: no mark joins them, and a cluster of the two has no column either way
        extend,
        zwj,
        regional_indicator,
        prepend,
        spacing_mark,
        l,
        v,
        t,
        lv,
        lvt,
        pictographic,
    };
    // How far an emoji that may be joined to another one has come.
    enum class emoji_state : unsigned char { none, pictographic, joiner };

    struct properties {
        break_class breaks;
        unsigned char width;
    };
    static properties look_up(char32_t code) noexcept;
    static properties look_up_in_tables(char32_t code) noexcept;
    static properties look_up_unassigned(char32_t code) noexcept;

    void add_printable_ascii(std::string_view run) noexcept;
    bool joins(break_class next) const noexcept;
    void take(char32_t code, properties next, bool joined) noexcept;

    std::size_t finished = 0; // columns of the clusters before this one
    unsigned cluster = 0;     // columns of this one so far
    char32_t last = 0;
    break_class before = break_class::control;
    emoji_state emoji = emoji_state::none;
    bool odd_indicators = false;
};

/// Calls on_character(character, its offset) and on_sequence(escape_sequence, its offset) for all that a text is made of,
/// one after the other, as long as they return true.
template <class OnCharacter, class OnSequence>
constexpr void walk(std::string_view text, OnCharacter on_character, OnSequence on_sequence)
{
    std::size_t at = 0;
    for (bool goes_on = true; goes_on && at < text.size();) {
        character const next = decode(text.substr(at));
        if (begins_sequence(next.code)) {
            escape_sequence const sequence = read_sequence(text.substr(at));
            goes_on = on_sequence(sequence, at);
            at += sequence.size;
        } else {
            goes_on = on_character(next, at);
            at += next.size;
        }
    }
}

} // namespace kestry::kit::detail
