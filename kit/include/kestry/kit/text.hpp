/// \file
/// Text on a terminal: its columns, cutting and padding to columns, escape sequences taken out, and text from elsewhere
/// made harmless.
///
/// A text is UTF-8. A byte that is none passes through as it is and takes a column. Escape sequences are those of
/// ECMA-48 and of the terminals of today; they take no column. Every function may be called by any thread.
#ifndef KESTRY_KIT_TEXT_HPP
#define KESTRY_KIT_TEXT_HPP

#include <cstddef>
#include <string>
#include <string_view>

#pragma GCC visibility push(default)

namespace kestry::kit {

// ---------------------------------------------------------------------------------------------
// Columns
// ---------------------------------------------------------------------------------------------

/// Counts the columns that a text takes on a terminal.
///
/// display_width("naïve") == 5, display_width("日本") == 4, display_width("\e[1mx\e[m") == 1.
///
/// Units   columns, by grapheme clusters (UAX #29, but conjuncts are not kept together) and East Asian width (UAX #11):
///         a wide character takes two, a combining or zero-width one none, any other one, such as a mark that stands
///         beside its letter (Mc) or one of ambiguous width; an emoji before U+FE0F takes two. A cluster takes what its
///         characters take, but at most two: so do flags, families and syllables of Hangul. A control character takes
///         none, a tab and a line feed too: split lines and expand tabs first. unicode_version() tells the version of
///         the tables.
/// Cost    no allocation. A plain ASCII text is looked at eight bytes at a time.
std::size_t display_width(std::string_view text) noexcept;

/// The version of Unicode whose widths and clusters are known: "15.0.0". It comes from the utf8proc in use.
char const* unicode_version() noexcept;

/// Cuts a text that is wider than columns, and puts a tail where it was cut.
///
/// truncate("Hueline", 4) == "Hue…", truncate("Hueline", 7) == "Hueline", truncate("Hueline", 5, "...") == "Hu...",
/// truncate("\e[31mHueline\e[m", 4) == "\e[31mHue…\e[39m".
///
/// A text that fits is returned as it is. The result is never wider than columns, and clusters stay whole: it is a
/// column narrower where a wide one would cross the edge. The tail has the style that the first character cut off has.
/// After it, what the text has switched on up to there is switched off, attribute by attribute, and a hyperlink (OSC 8)
/// is closed. Where there is no room for the tail, it is left out. Escape sequences before the cut stay, but not one that
/// is not complete.
///
/// <unistd.h> has another truncate, which shortens a file: where it may be seen, write kit::truncate or declare
/// `using kestry::kit::truncate;`.
///
/// Throws  std::bad_alloc.
/// Cost    one allocation for the result; what follows the cut is not looked at.
std::string truncate(std::string_view text, std::size_t columns, std::string_view tail = "…");

/// Where a text stands in the columns that it is padded to.
enum class alignment : unsigned char {
    left,   ///< Blanks after the text.
    right,  ///< Blanks before it.
    center, ///< Both; an odd one after it.
};

/// Fills a text with blanks up to a number of columns.
///
/// pad("né", 4) == "né  ", pad("日", 4, alignment::right) == "  日", pad("ab", 5, alignment::center) == " ab  ",
/// pad("\e[31mx", 3) == "\e[31mx\e[39m  ".
///
/// A text that is as wide or wider is returned as it is. Blanks stand outside of styles: before the first, what the text
/// has left switched on is switched off, a hyperlink too, and a sequence that the text breaks off is dropped.
///
/// Throws  std::bad_alloc; std::length_error for columns that no string can hold.
/// Cost    one allocation for the result.
std::string pad(std::string_view text, std::size_t columns, alignment where = alignment::left);

// ---------------------------------------------------------------------------------------------
// Escape sequences taken out
// ---------------------------------------------------------------------------------------------

/// Returns the text without its escape sequences, as a terminal would show it.
///
/// strip_escapes("\e[1mx\e[0m") == "x", strip_escapes("\e]8;;https://kestry.example\e\\link\e]8;;\a") == "link".
///
/// Sequences are CSI, OSC, DCS, SOS, PM, APC, ESC with intermediates and ESC with one byte; their introducers may also
/// be C1 controls, U+0080 to U+009F or bare bytes 80 to 9F that are no part of a UTF-8 character. Neither ESC nor C1 is
/// left. Other control characters stay, those too that stand inside of a sequence, where a terminal carries them out; CAN
/// and SUB end it. A string such as OSC that has no end before a line feed or within 4096 bytes loses its introducer
/// alone, so that it cannot hide the rest. What the end of the text cuts off is dropped.
///
/// Throws  std::bad_alloc.
/// Cost    one allocation for the result and, where strings stand in the text, one more; linear time.
std::string strip_escapes(std::string_view text);

/// Takes the escape sequences out of a text that comes in pieces, cut anywhere.
///
/// It holds what is not yet decided: of a character up to 3 bytes, of a string up to 4096. One thread at a time.
///
///     escape_stripper plain;
///     while (...) { std::cout << plain.strip(piece); }
///     std::cout << plain.finish();
///
/// All results together are strip_escapes() of all pieces together.
class escape_stripper {
public:
    /// Takes a piece, and returns what is certain to be text. Throws std::bad_alloc.
    std::string strip(std::string_view piece);

    /// Ends the text: returns the rest of it, and is ready for another one. Throws std::bad_alloc.
    std::string finish();

private:
    enum class more : unsigned char { may_follow, never };
    void strip(std::string_view text, std::string& result, more after);

    std::string held;        // the string that is open, without its introducer
    std::string partial;     // the head of a character
    unsigned char state = 0; // of the machine
};

// ---------------------------------------------------------------------------------------------
// Text from elsewhere
// ---------------------------------------------------------------------------------------------

/// What escape_untrusted() leaves as it is.
struct escape_options {
    bool keep_tab = false;     ///< U+0009.
    bool keep_newline = false; ///< U+000A.
};

/// Makes a text harmless that may come from anywhere, visibly and so that it can be read back.
///
/// escape_untrusted("\e[2J") == R"(\x1b[2J)", escape_untrusted("\u202Efdp.exe") == R"(\u{202e}fdp.exe)".
///
/// Writes  "\xHH" for a C0 control, DEL and a byte that is no UTF-8; "\u{H}", with as many digits as it takes, for C1
///         controls, bidirectional controls, line and paragraph separators, and whatever else is invisible: zero-width
///         characters, tags, fillers. Digits are lower case.
///         A joiner (U+200C, U+200D) stays between two characters past ASCII, as emoji, Persian and Indic texts have it; a
///         variation selector after one, or after a digit, # or *; the tags of a flag in that flag.
///         A backslash stays as it is, unless what follows would read as one of the two forms: then it is "\x5c".
///         So a safe text is returned as it is, but for one that has such a form in it.
/// Throws  std::bad_alloc.
/// Cost    one allocation for a safe text.
std::string escape_untrusted(std::string_view text, escape_options options = {});

/// Reads back what escape_untrusted() has written: unescape_untrusted(escape_untrusted(x)) == x for all bytes x.
///
/// unescape_untrusted(R"(\x1b[2J)") == "\e[2J", unescape_untrusted(R"(C:\temp\x)") == R"(C:\temp\x)".
///
/// What escape_untrusted() never writes stays as it is. The result is as harmful as the text once was.
///
/// Throws  std::bad_alloc.
std::string unescape_untrusted(std::string_view text);

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
