/// \file
/// The grammar of escape sequences, in one place: what measures, cuts and strips a text asks this machine.
///
/// CSI            "\x1b[", parameters and intermediates 20-3F, a final byte 40-7E
/// nF             ESC, intermediates 20-2F, a final byte 30-7E
/// two bytes      ESC and 30-7E
/// OSC            "\x1b]" to BEL or ST ("\x1b\\")
/// other strings  DCS, SOS, PM, APC (ESC and one of P X ^ _) to ST alone
///
/// (ECMA-48 clauses 5 and 8; what real terminals do with the rest.) Each introducer also has the form of one
/// control character, U+0080 to U+009F, in UTF-8 or as a bare byte that is no part of a character. A C0 control
/// inside of a sequence is carried out as if it stood before it, CAN and SUB give the sequence up, ESC begins
/// another one, and DEL is ignored. A string without an end must not hide what follows: after a line feed, or more
/// than 4096 bytes, it turns out to be text.
#pragma once

#include "utf8.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestry::kit::detail {

/// The most bytes that a string may hold between its introducer and its end.
inline constexpr std::size_t longest_string = 4096;

/// Follows a text, character by character.
class escape_machine {
public:
    enum class state : unsigned char { ground, escape, intermediate, csi, osc, string };

    /// What a character was. One that is text, or begins a sequence, also ends a sequence that was not complete.
    enum class effect : unsigned char {
        text,    ///< No part of a sequence.
        begin,   ///< ESC or a C1 control: the first of a sequence.
        whole,   ///< A C1 control that is a sequence by itself.
        part,    ///< Of a sequence.
        end,     ///< The last of a sequence.
        execute, ///< A C0 control within a sequence, which goes on: it counts as text.
        give_up, ///< Text, and so is all since the introducer of the string.
    };

    constexpr escape_machine() noexcept = default;

    /// Goes on where another one was, that many bytes into a string.
    constexpr escape_machine(state where, std::size_t bytes_of_string) noexcept
        : now(where), length(static_cast<std::uint16_t>(bytes_of_string))
    {}

    constexpr effect step(character c) noexcept
    {
        if (c.code == 0x1b) {
            now = state::escape;
            return effect::begin;
        }
        if (c.code >= 0x80 && c.code <= 0x9f) {
            return step_c1(c.code);
        }
        switch (now) {
        case state::ground:
            break;
        case state::escape:
        case state::intermediate:
        case state::csi:
            return step_in_sequence(c.code);
        case state::osc:
        case state::string:
            return step_in_string(c);
        }
        return effect::text;
    }

    constexpr state current() const noexcept { return now; }
    constexpr bool is_in_string() const noexcept { return now == state::osc || now == state::string; }

private:
    constexpr effect step_c1(char32_t code) noexcept
    {
        if (code == 0x9c && is_in_string()) { // ST
            now = state::ground;
            return effect::end;
        }
        return introduce(code);
    }

    constexpr effect introduce(char32_t c1) noexcept
    {
        now = state_after(c1);
        length = 0;
        return now == state::ground ? effect::whole : effect::begin;
    }

    // What a C1 control introduces.
    static constexpr state state_after(char32_t c1) noexcept
    {
        switch (c1) {
        case 0x9b:
            return state::csi;
        case 0x9d:
            return state::osc;
        case 0x90: // DCS
        case 0x98: // SOS
        case 0x9e: // PM
        case 0x9f: // APC
            return state::string;
        default:
            return state::ground;
        }
    }

    constexpr effect step_in_sequence(char32_t code) noexcept
    {
        if (code < 0x20) {
            if (code == 0x18 || code == 0x1a) { // CAN, SUB
                now = state::ground;
                return effect::text;
            }
            return effect::execute;
        }
        if (code == 0x7f) {
            return effect::part;
        }
        if (code > 0x7f) {
            now = state::ground;
            return effect::text;
        }
        if (now == state::csi ? code < 0x40 : code < 0x30) {
            now = now == state::escape ? state::intermediate : now;
            return effect::part;
        }
        if (now == state::escape && code >= 0x40 && code <= 0x5f) { // ESC and 40-5F: a C1 control in two bytes
            return introduce(code + 0x40) == effect::begin ? effect::part : effect::end;
        }
        now = state::ground;
        return effect::end;
    }

    constexpr effect step_in_string(character c) noexcept
    {
        if (c.code == 0x07 && now == state::osc) {
            now = state::ground;
            return effect::end;
        }
        if (c.code == 0x18 || c.code == 0x1a) {
            now = state::ground;
            return effect::text;
        }
        length = static_cast<std::uint16_t>(length + c.size);
        if (c.code == '\n' || length > longest_string) {
            now = state::ground;
            return effect::give_up;
        }
        return effect::part;
    }

    state now = state::ground;
    std::uint16_t length = 0; // bytes of the string so far
};

/// A sequence in a text, from its introducer on.
struct escape_sequence {
    escape_machine::state kind; ///< csi, osc or string; escape for all others.
    bool is_complete;           ///< Otherwise a terminal waits for more, or has given it up.
    bool has_controls;          ///< C0 controls stand among its bytes.
    char final_byte;            ///< Of CSI, nF and two bytes.
    std::size_t size;           ///< Bytes. Of a string that turned out to be text: of its introducer alone.
    std::string_view body;      ///< Of a CSI its parameters and intermediates, of a string its contents.
};

/// Whether a sequence begins with this character.
constexpr bool begins_sequence(char32_t code) noexcept { return code == 0x1b || (code >= 0x80 && code <= 0x9f); }

/// The sequence at the head of a text that begins with ESC or a C1 control.
escape_sequence read_sequence(std::string_view text) noexcept;

} // namespace kestry::kit::detail
