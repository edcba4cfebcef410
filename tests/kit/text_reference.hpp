/// \file
/// What Unicode's own files say of characters, and texts read by another way than the kit's: slowly, from the whole text.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// The properties of code points, from /usr/share/unicode.
class UnicodeData {
public:
    /// Nothing if the files are not there.
    static UnicodeData const* get();

    std::string version;

    /// Grapheme_Cluster_Break as GraphemeBreakProperty.txt names it, or "Extended_Pictographic".
    std::string const& breaks(char32_t code) const;

    /// Columns of the character alone.
    unsigned width(char32_t code) const;

    /// Whether emoji-variation-sequences.txt has the character with U+FE0F.
    bool has_emoji_form(char32_t code) const;

private:
    UnicodeData();

    std::vector<std::uint8_t> class_of;
    std::vector<std::uint8_t> width_of;
    std::vector<bool> emoji_form;
};

struct Shown {
    char32_t code = 0;
    std::string bytes = {};
};

/// The characters of a text in UTF-8 that is right.
std::vector<Shown> characters(std::string_view text);

/// The numbers of characters in the grapheme clusters, one after the other.
std::vector<std::size_t> clusters(UnicodeData const& data, std::vector<Shown> const& text);

/// The columns of a grapheme cluster.
unsigned columns(UnicodeData const& data, std::vector<Shown> const& cluster);

/// The columns of all clusters.
std::size_t columns_of_text(UnicodeData const& data, std::vector<Shown> const& text);

} // namespace hueline::test
