/// \file
/// Turns styled text into bytes, for whatever takes them.
#pragma once

#include "columns.hpp"
#include "escape_machine.hpp"
#include "rendition.hpp"
#include "utf8.hpp"

#include "kestry/kit/style.hpp"

#include <cstddef>
#include <ios>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace kestry::kit::detail {

/// What a renderer writes to.
struct sink {
    write_bytes* write;
    void* to;
};

/// Takes the layout that is pending in a stream, as an insertion of text does: it is spent, and internal is right.
layout take_layout(std::ostream& os, char const& fill);

/// Measures text: its columns, and how many of its characters, in whole clusters, there is room for.
class meter {
public:
    explicit meter(std::size_t limit) : room(limit) {}

    void add(std::string_view text) noexcept;

    std::size_t columns() const noexcept { return fits() ? counter.columns() : kept_columns; }
    std::size_t characters() const noexcept { return fits() ? no_limit : kept_characters; }

private:
    bool fits() const noexcept { return counter.columns() <= room; }

    std::size_t room;
    column_counter counter;
    std::size_t seen = 0; // characters
    std::size_t kept_characters = 0;
    std::size_t kept_columns = 0;
};

/// Writes text with the sequences that make it look as wanted. A change of style is written when text follows, so that
/// there is one sequence for each change that is to be seen, and none where there is nothing to see.
class renderer {
public:
    struct options {
        color_depth depth = color_depth::truecolor;
        rendition around = {};                 ///< In effect at the start, and again at the end.
        std::ostream const* formats = nullptr; ///< The stream that tells the format of values.
        meter* measure = nullptr;
    };

    renderer(sink const& to, options const& chosen) : out(to), chose(chosen) {}
    renderer(renderer const&) = delete;
    renderer& operator=(renderer const&) = delete;

    /// Writes a group. Every value is inserted once.
    void render(piece const* group, layout const& where);

    /// Gives back the style around, and writes what is held back.
    void finish();

    /// The state that values have left their stream in.
    std::ios_base::iostate failure() const { return failed; }

    /// The renderer that writes a value, if this is the stream that it inserts itself into; otherwise nullptr.
    static renderer* of(std::ostream& os);

private:
    class filter : public std::streambuf {
    public:
        explicit filter(renderer& r) : to(r) {}
        renderer& to;

    private:
        std::streamsize xsputn(char const* bytes, std::streamsize length) override;
        int_type overflow(int_type c) override;
    };

    // What values are inserted into.
    struct value_stream {
        value_stream(renderer& r, options const& chosen);
        filter buffer;
        std::ostream stream;
    };

    piece const* render(piece const* p);
    void render_in_columns(piece const* group, layout const& where);
    void insert(piece const* value);
    void pad(std::string_view fill, std::size_t columns);

    void text(std::string_view bytes);
    void walk(std::string_view bytes, bool at_end);
    void take(character const& next, std::string_view bytes);
    void give_up_string(std::string_view bytes);
    void complete(escape_machine::state kind, char final_byte);
    void hold(std::string_view bytes);
    void cut_off();

    void show(std::string_view text);
    void end_line(std::string_view control);
    std::string_view fitting(std::string_view text);
    void change_to(rendition const& wanted);
    void put(std::string_view bytes);
    void flush();

    sink out;
    options chose;
    rendition now = chose.around;   // what text is wanted in
    rendition group = chose.around; // what the sequences of a text go back to
    rendition shown = chose.around; // what a terminal is at
    std::size_t room = no_limit;    // characters
    std::ios_base::iostate failed = std::ios_base::goodbit;
    std::optional<value_stream> values;

    escape_machine machine;
    bool is_maybe_end = false; // of a string: an ESC, which a backslash may follow
    std::size_t held_size = 0;
    std::size_t head_size = 0;
    std::size_t size = 0;
    char head[4];                  // of a character
    char held[longest_string + 8]; // of a sequence
    char buffer[512];
};

/// Says in a word of a stream that renderer::of() may be asked of it: it takes a while.
void mark_for_values(std::ostream& os);

} // namespace kestry::kit::detail
