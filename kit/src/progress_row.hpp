/// \file
/// A bar as the text of one row.
#ifndef KESTRY_KIT_PROGRESS_ROW_HPP
#define KESTRY_KIT_PROGRESS_ROW_HPP

#include "kestry/kit/progress.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestry::kit::detail {

// ---------------------------------------------------------------------------------------------
// What a row looks like
// ---------------------------------------------------------------------------------------------

enum class progress_key : unsigned char { text, msg, bar, wide_bar, spinner, pos, len, percent, rate, eta, elapsed };

struct progress_piece {
    progress_key key = progress_key::text;
    std::string text = {};     ///< Of a piece that is no key.
    std::size_t width = 0;     ///< Columns; 0: as many as it takes.
    bool to_the_right = false; ///< Blanks come first.
    std::string_view sgr = {}; ///< Parameters of the colour: "32". Empty: none.
};

/// A layout's text, parsed.
class progress_template {
public:
    /// Throws  std::invalid_argument.
    explicit progress_template(std::string_view text);

    std::vector<progress_piece> pieces;
};

/// What a bar has that says nothing else.
progress_template const& usual_template(std::uint64_t position, std::uint64_t length);

// ---------------------------------------------------------------------------------------------
// What it shows
// ---------------------------------------------------------------------------------------------

enum class progress_state : unsigned char { active, finished, abandoned };

struct progress_facts {
    std::string_view message = {}; ///< Harmless.
    std::size_t message_columns = 0;
    std::uint64_t position = 0;
    std::uint64_t length = progress::unknown;
    progress::unit counted = progress::unit::items;
    std::optional<double> rate = {};
    std::optional<double> left = {};
    double elapsed = 0;
    unsigned turn = 0; ///< Of the spinner.
    progress_state state = progress_state::active;
};

/// How rows are written on one terminal.
struct progress_look {
    bool color = true;
    bool ascii = false;
    std::size_t message_columns = 0; ///< All messages are as wide as the widest, so that bars stand in line.
};

/// Text of which a part has a colour.
struct progress_span {
    std::size_t end = 0; ///< In the row's text; it begins where the one before ends.
    std::size_t columns = 0;
    std::string_view sgr = {};
    bool simple = true; ///< Each character takes one column.

    bool operator==(progress_span const&) const = default;
};

/// A row without escape sequences, and what makes some of it.
struct progress_text {
    std::string text = {};
    std::vector<progress_span> spans = {};

    void add(std::string_view more, std::size_t width, std::string_view sgr = {}, bool simple = true);
    std::size_t columns() const noexcept;

    bool operator==(progress_text const&) const = default;
};

/// Lays a row out in so many columns at most.
progress_text lay_out(progress_template const& layout, progress_facts const& facts, progress_look const& look,
                      std::size_t columns);

/// A text with "?" for each character that is not ASCII.
std::string only_ascii(std::string_view text);

/// The row with its escape sequences; nothing is left switched on at its end.
std::string painted(progress_text const& row);

/// What turns one row into another where it stands: what is alike at the beginning is skipped. The cursor is at the left.
void append_change(std::string& out, progress_text const& from, progress_text const& to);

} // namespace kestry::kit::detail

#endif
