/// \file
/// Whether, and how richly, a descriptor gets colour.
#ifndef KESTRY_KIT_POLICY_HPP
#define KESTRY_KIT_POLICY_HPP

#pragma GCC visibility push(default)

namespace kestry::kit {

/// How rich the colours are that a terminal shows. In order: a richer one compares greater.
enum class color_depth : unsigned char {
    none,      ///< No escape sequence at all.
    ansi16,    ///< The eight named colours and their bright forms.
    ansi256,   ///< The 256-colour palette.
    truecolor, ///< 24 bits.
};

/// The depth in a word or two: "none", "16 colours", "256 colours", "24 bit".
char const* to_string(color_depth depth) noexcept;

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
