/// \file
/// Styles as values: text that ends its own style and gives back the style around it.
///
///     constexpr auto error = fg(red) | bold;
///     std::cerr << styled("error: ", error) << styled(underline, "a ", styled("nested", fg(blue)), " text\n");
#ifndef KESTRY_KIT_STYLE_HPP
#define KESTRY_KIT_STYLE_HPP

#include "kestry/kit/policy.hpp"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <version>

#if defined(__cpp_lib_format)
#include <format>
#endif

#pragma GCC visibility push(default)

namespace kestry::kit {

// ---------------------------------------------------------------------------------------------
// Colours
// ---------------------------------------------------------------------------------------------

/// What a color names.
enum class color_kind : std::uint8_t {
    none,     ///< Nothing: the colour around it stays.
    standard, ///< The terminal's own: SGR 39 and 49.
    named,    ///< One of the sixteen with names: SGR 30 to 37, 90 to 97, 40 to 47, 100 to 107.
    palette,  ///< One of 256: SGR 38;5;n and 48;5;n.
    rgb,      ///< 24 bits: SGR 38;2;r;g;b and 48;2;r;g;b.
};

/// A colour of a terminal, or none.
struct color {
    color_kind kind = color_kind::none;
    std::uint8_t r = 0; ///< Of a named colour and of one of the palette: its number.
    std::uint8_t g = 0;
    std::uint8_t b = 0;

    friend constexpr bool operator==(color const& one, color const& other) noexcept
    {
        return std::bit_cast<std::uint32_t>(one) == std::bit_cast<std::uint32_t>(other);
    }
};

/// \name The terminal's own colour, and the sixteen that themes of terminals define
/// \{
inline constexpr color default_color{color_kind::standard};
inline constexpr color black{color_kind::named, 0};
inline constexpr color red{color_kind::named, 1};
inline constexpr color green{color_kind::named, 2};
inline constexpr color yellow{color_kind::named, 3};
inline constexpr color blue{color_kind::named, 4};
inline constexpr color magenta{color_kind::named, 5};
inline constexpr color cyan{color_kind::named, 6};
inline constexpr color white{color_kind::named, 7};
inline constexpr color bright_black{color_kind::named, 8};
inline constexpr color bright_red{color_kind::named, 9};
inline constexpr color bright_green{color_kind::named, 10};
inline constexpr color bright_yellow{color_kind::named, 11};
inline constexpr color bright_blue{color_kind::named, 12};
inline constexpr color bright_magenta{color_kind::named, 13};
inline constexpr color bright_cyan{color_kind::named, 14};
inline constexpr color bright_white{color_kind::named, 15};
/// \}

namespace detail {

constexpr std::uint8_t byte(int n) noexcept { return static_cast<std::uint8_t>(n < 0 ? 0 : n > 255 ? 255 : n); }

} // namespace detail

/// Makes the colour number n of the palette; n is cut to 0 to 255.
constexpr color palette(int n) noexcept { return {color_kind::palette, detail::byte(n)}; }

/// Makes a colour of 24 bits; each part is cut to 0 to 255.
constexpr color rgb(int r, int g, int b) noexcept
{
    return {color_kind::rgb, detail::byte(r), detail::byte(g), detail::byte(b)};
}

// ---------------------------------------------------------------------------------------------
// Styles
// ---------------------------------------------------------------------------------------------

/// How text looks: two colours and attributes, each of which may be left as it is around the text.
struct style {
    color foreground = {};
    color background = {};
    std::uint8_t attributes = 0; ///< The attributes of bold, faint and the others below, added up.

    /// Combines two styles: both attributes, and the colours of the right one where it has any.
    ///
    /// fg(red) | bg(white) | fg(blue) == (fg(blue) | bg(white))
    friend constexpr style operator|(style const& under, style const& over) noexcept
    {
        return {over.foreground.kind == color_kind::none ? under.foreground : over.foreground,
                over.background.kind == color_kind::none ? under.background : over.background,
                static_cast<std::uint8_t>(under.attributes | over.attributes)};
    }

    constexpr style& operator|=(style const& over) noexcept { return *this = *this | over; }

    friend constexpr bool operator==(style const&, style const&) = default;

    /// Tells whether a style has everything that the part has: (fg(red) | bold).has(bold)
    constexpr bool has(style const& part) const noexcept { return (*this | part) == *this; }
};

/// \name Attributes
/// \{
inline constexpr style bold{{}, {}, 0x01};        ///< SGR 1, ended by 22.
inline constexpr style faint{{}, {}, 0x02};       ///< SGR 2, ended by 22.
inline constexpr style italic{{}, {}, 0x04};      ///< SGR 3, ended by 23.
inline constexpr style underline{{}, {}, 0x08};   ///< SGR 4, ended by 24.
inline constexpr style blink{{}, {}, 0x10};       ///< SGR 5, ended by 25.
inline constexpr style reverse{{}, {}, 0x20};     ///< SGR 7, ended by 27.
inline constexpr style concealed{{}, {}, 0x40};   ///< SGR 8, ended by 28.
inline constexpr style crossed_out{{}, {}, 0x80}; ///< SGR 9, ended by 29.
/// \}

/// Makes a style of a foreground colour alone.
constexpr style fg(color const& c) noexcept { return {c, {}, 0}; }

/// Makes a style of a background colour alone.
constexpr style bg(color const& c) noexcept { return {{}, c, 0}; }

/// Returns the nearest colour that a terminal of that depth has.
///
/// At ansi256 a colour of 24 bits becomes the nearest of 16 to 255 (CIE 1976 colour difference): the first sixteen are
/// the terminal's theme. At ansi16 a colour keeps its hue, its lightness decides whether it is a bright one, and what
/// has next to no hue becomes a grey; 0 to 15 of the palette become the named ones. At none there is no colour left.
///
/// reduced(rgb(95, 0, 0), color_depth::ansi256) == palette(52)
/// reduced(rgb(0, 180, 90), color_depth::ansi16) == green
/// Cost    some 400 ns for 24 bits into 256: what is written often is better reduced once.
color reduced(color const& c, color_depth depth) noexcept;

/// Returns the style with both colours reduced; at none it is plain, without attributes too.
style reduced(style const& s, color_depth depth) noexcept;

/// Returns the style of the text around: what styled text in this stream starts from and comes back to.
style style_of(std::ostream& os);

/// Tells a stream in which style the text around is. Plain in every stream until told otherwise.
///
/// Writes nothing; for text whose style comes from elsewhere: after std::cout << "\e[31m" and set_style(std::cout,
/// fg(red)), styled("x", fg(blue)) ends with "\e[31m" and not with "\e[39m".
void set_style(std::ostream& os, style const& around);

// ---------------------------------------------------------------------------------------------
// Styled text
// ---------------------------------------------------------------------------------------------

template <class... Pieces>
class styled_text;

namespace detail {

// A styled text as the library takes it: a group, followed by its pieces, which may be groups again.
struct piece {
    enum class kind : std::uint8_t { group, text, value };

    kind what = kind::group;
    style look = {};                                      // of a group
    std::size_t size = 0;                                 // of a group: its pieces; of a text: its bytes
    void const* data = nullptr;                           // of a text, or a value
    void (*insert)(std::ostream&, void const*) = nullptr; // of a value
};

inline constexpr std::size_t no_limit = static_cast<std::size_t>(-1);

// Where text stands among columns.
struct layout {
    enum class side : std::uint8_t { left, right, center };

    std::size_t width = 0;        // at least
    std::size_t limit = no_limit; // and at most
    side where = side::left;
    std::string_view fill = " "; // one character
};

std::ostream& insert(std::ostream& os, piece const* group, color_depth at_most);
std::ostream& insert(std::ostream& os, std::string_view text, style const& look, color_depth at_most);
std::string to_string(piece const* group, color_depth depth);
std::string to_string(std::string_view text, style const& look, color_depth depth);

using write_bytes = void(void* to, char const* bytes, std::size_t size);
void format(piece const* group, color_depth depth, layout const& where, void* to, write_bytes* write);

template <class T>
concept insertable = requires(std::ostream& os, T const& value)
{
    os << value;
};

template <class T>
concept text = std::convertible_to<T const&, std::string_view>;

// What is kept of an argument: a view of text that lives elsewhere, a copy of what is small, the object itself if it
// was a temporary, otherwise a reference.
template <class T, class Value = std::decay_t<T>>
using kept =
    std::conditional_t<std::is_pointer_v<Value> && text<Value>, std::string_view,
                       std::conditional_t<std::is_lvalue_reference_v<T> && text<Value>, std::string_view,
                                          std::conditional_t<!std::is_lvalue_reference_v<T> || std::is_scalar_v<Value>,
                                                             Value, std::remove_reference_t<T> const&>>>;

template <class T>
constexpr kept<T> keep(T&& piece) noexcept(std::is_nothrow_constructible_v<kept<T>, T>)
{
    if constexpr (std::is_pointer_v<std::decay_t<T>> && text<std::decay_t<T>>) {
        char const* const characters = piece;
        return characters == nullptr ? std::string_view{} : std::string_view{characters};
    } else {
        return std::forward<T>(piece);
    }
}

template <class T>
inline constexpr std::size_t pieces_of = 1;

template <class... Pieces>
inline constexpr std::size_t pieces_of<styled_text<Pieces...>> = (1 + ... + pieces_of<std::remove_cvref_t<Pieces>>);

constexpr piece* describe(piece* at, std::string_view text) noexcept
{
    *at = {piece::kind::text, {}, text.size(), text.data(), nullptr};
    return at + 1;
}

constexpr piece* describe(piece* at, char const& text) noexcept
{
    *at = {piece::kind::text, {}, 1, &text, nullptr};
    return at + 1;
}

template <class T>
requires(!text<T>) constexpr piece* describe(piece* at, T const& value) noexcept
{
    *at = {piece::kind::value, {}, 0, &value, [](std::ostream& os, void const* v) { os << *static_cast<T const*>(v); }};
    return at + 1;
}

template <class... Pieces>
constexpr piece* describe(piece* at, styled_text<Pieces...> const& group) noexcept
{
    return group.describe(at);
}

} // namespace detail

/// Text in a style, made by styled(): to be inserted, returned by to_string() or formatted.
///
/// It refers to the text and the objects that it was made of, but keeps temporaries itself. It is a value: any number
/// of threads may write one.
///
/// Writes   before the first character, and wherever the style changes, one sequence that leads from the style in
///          effect to the wanted one, and at the end one that leads back to the style around:
///          styled("x", fg(red) | bold) gives "\e[1;31mx\e[22;39m". Attributes come in the order of their numbers, then
///          foreground and background; only what differs is written, with its own end (22 to 29, 39, 49) and never as
///          a reset, so that colours set by others stay. Bold and faint share an end: what is to stay follows it, as in
///          "\e[22;2m". Nothing is written where nothing changes or no text follows. What would take more than the 16
///          parameters of some terminals is two sequences: eight attributes and two colours of 24 bits.
/// Lines    no style is in effect when a line ends: it is ended before "\n", "\v", "\f" and "\r" and taken up again
///          before the text that follows.
/// Colours  of the text itself stay: its SGR sequences are understood (0, 1 to 9, 21 to 29, 30 to 49, 53, 55, 58, 59,
///          90 to 107, colons and semicolons; others are left out) and brought into the same form, and what they end
///          goes back to the style around them. Other escape sequences are passed on.
/// Depth    colours are reduced to it. At none there is no sequence at all, of the text itself neither.
template <class... Pieces>
class styled_text {
public:
    constexpr explicit styled_text(style const& s, Pieces... pieces) : look(s), parts(std::forward<Pieces>(pieces)...)
    {}

    /// Returns the same text with colours no richer than that, wherever it is written.
    constexpr styled_text at(color_depth limit) const
    {
        styled_text limited = *this;
        limited.depth = limit;
        return limited;
    }

    /// Inserts the text at the depth of the stream.
    ///
    /// Stream  a pending width counts columns of the whole text; padding is outside of the style. Pieces that are no
    ///         text have the format and the locale of the stream; what they change of it ends with the text. Fails and
    ///         throws as any insertion does.
    /// Cost    nothing is allocated for pieces of text; they are written at once up to some 500 bytes.
    friend std::ostream& operator<<(std::ostream& os, styled_text const& text)
    {
        if constexpr (is_text) {
            return detail::insert(os, std::get<0>(text.parts), text.look, text.depth);
        } else {
            detail::piece pieces[count];
            text.describe(pieces);
            return detail::insert(os, pieces, text.depth);
        }
    }

    /// Returns what an insertion writes into a stream of that depth that is plain and in the "C" locale.
    ///
    /// to_string(styled("x", bold)) == "\e[1mx\e[22m"
    friend std::string to_string(styled_text const& text, color_depth limit = color_depth::truecolor)
    {
        color_depth const poorer = limit < text.depth ? limit : text.depth;
        if constexpr (is_text) {
            return detail::to_string(std::get<0>(text.parts), text.look, poorer);
        } else {
            detail::piece pieces[count];
            text.describe(pieces);
            return detail::to_string(pieces, poorer);
        }
    }

    /// For the kit itself: describes the text in detail::pieces_of<styled_text> pieces.
    constexpr detail::piece* describe(detail::piece* at) const noexcept
    {
        *at++ = {detail::piece::kind::group, look, sizeof...(Pieces), nullptr, nullptr};
        std::apply([&at](auto const&... part) { ((at = detail::describe(at, part)), ...); }, parts);
        return at;
    }

    /// For the kit itself: writes the text in a layout, and returns where the next character goes.
    template <class Out>
    Out format_to(Out out, detail::layout const& where) const
    {
        detail::piece pieces[count];
        describe(pieces);
        detail::format(pieces, depth, where, &out, [](void* to, char const* bytes, std::size_t size) {
            Out& at = *static_cast<Out*>(to);
            for (; size != 0; --size) {
                *at++ = *bytes++;
            }
        });
        return out;
    }

private:
    static constexpr std::size_t count = detail::pieces_of<styled_text>;
    static constexpr bool is_text = sizeof...(Pieces) == 1 && (detail::text<std::remove_cvref_t<Pieces>> && ...);

    style look;
    color_depth depth = color_depth::truecolor;
    std::tuple<Pieces...> parts;
};

/// Returns text, or anything else that can be inserted, in a style.
///
/// to_string(styled("done", fg(green))) == "\e[32mdone\e[39m"
template <class Piece>
requires detail::insertable<std::decay_t<Piece>>
constexpr auto styled(Piece&& piece, style const& look)
{
    return styled_text<detail::kept<Piece>>(look, detail::keep(std::forward<Piece>(piece)));
}

/// Returns any number of pieces, one after the other, in a style. A piece may be styled text: its style is added.
///
/// to_string(styled(bold, "a", styled("b", fg(red)), "c")) == "\e[1ma\e[31mb\e[39mc\e[22m"
template <class... Piece>
requires(detail::insertable<std::decay_t<Piece>>&&...) constexpr auto styled(style const& look, Piece&&... pieces)
{
    return styled_text<detail::kept<Piece>...>(look, detail::keep(std::forward<Piece>(pieces))...);
}

// ---------------------------------------------------------------------------------------------
// Styled text in format strings
// ---------------------------------------------------------------------------------------------

namespace detail {

// A format spec of text: [[fill]align][width][.precision][s], with arguments in braces for both numbers.
// Error is what the formatting library throws.
template <class Error>
class format_spec {
public:
    template <class Context>
    constexpr auto parse(Context& context)
    {
        std::string_view const all{context.begin(), context.end()};
        rest = all;
        parse_side();
        if (starts_with('{')) {
            width_argument = parse_argument(context);
        } else if (!starts_with('0')) { // which would be a fill of numbers
            where.width = starts_with_digit() ? parse_number() : 0;
        }
        if (starts_with('.')) {
            rest.remove_prefix(1);
            if (starts_with('{')) {
                limit_argument = parse_argument(context);
            } else if (starts_with_digit()) {
                where.limit = parse_number();
            } else {
                throw Error("the precision of a styled text is a number or an argument");
            }
        }
        if (starts_with('s')) {
            rest.remove_prefix(1);
        }
        if (!rest.empty() && !starts_with('}')) {
            throw Error("a styled text is formatted with fill, alignment, width, precision and s");
        }
        return context.begin() + static_cast<std::ptrdiff_t>(all.size() - rest.size());
    }

    // number_at(n, read) calls read with the argument n.
    template <class NumberAt>
    layout resolve(NumberAt number_at) const
    {
        auto const read = [](auto const& n) -> std::size_t {
            using Number = std::remove_cvref_t<decltype(n)>;
            if constexpr (std::integral<Number> && !std::same_as<Number, bool> && !std::same_as<Number, char>) {
                if (std::in_range<int>(n) && n >= 0) {
                    return static_cast<std::size_t>(n);
                }
            }
            throw Error("width and precision of a styled text are numbers from 0");
        };
        layout resolved = where;
        if (width_argument != none) {
            resolved.width = number_at(width_argument, read);
        }
        if (limit_argument != none) {
            resolved.limit = number_at(limit_argument, read);
        }
        return resolved;
    }

private:
    static constexpr std::size_t none = no_limit;

    constexpr bool starts_with(char c) const { return !rest.empty() && rest.front() == c; }
    constexpr bool starts_with_digit() const { return !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; }

    constexpr void parse_side()
    {
        auto const is_side = [](char c) { return c == '<' || c == '^' || c == '>'; };
        auto const byte = rest.empty() ? 0U : static_cast<unsigned char>(rest.front());
        std::size_t const fill = byte < 0xc0 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4; // bytes in UTF-8
        if (fill < rest.size() && is_side(rest[fill]) && byte != '{' && byte != '}') {
            where.fill = rest.substr(0, fill);
            rest.remove_prefix(fill);
        }
        if (!rest.empty() && is_side(rest.front())) {
            using side = layout::side;
            where.where = rest.front() == '<' ? side::left : rest.front() == '>' ? side::right : side::center;
            rest.remove_prefix(1);
        }
    }

    constexpr std::size_t parse_number()
    {
        std::uint64_t n = 0;
        for (; starts_with_digit(); rest.remove_prefix(1)) {
            n = n * 10 + static_cast<std::uint64_t>(rest.front() - '0');
            if (n > 0x7fffffff) {
                throw Error("the number is too large");
            }
        }
        return static_cast<std::size_t>(n);
    }

    template <class Context>
    constexpr std::size_t parse_argument(Context& context)
    {
        rest.remove_prefix(1);
        std::size_t n = 0;
        if (starts_with_digit()) {
            n = parse_number();
            context.check_arg_id(static_cast<decltype(context.next_arg_id())>(n)); // each library has its own type
        } else {
            n = static_cast<std::size_t>(context.next_arg_id());
        }
        if (!starts_with('}')) {
            throw Error("an argument for width or precision is a number or nothing in braces");
        }
        rest.remove_prefix(1);
        return n;
    }

    std::string_view rest; // of the spec
    layout where;
    std::size_t width_argument = none;
    std::size_t limit_argument = none;
};

} // namespace detail

} // namespace kestry::kit

#if defined(__cpp_lib_format)

/// Formats styled text as text: "{:*^12.5s}". Width and precision count columns; padding is outside of the style.
///
/// std::format("{:>6}|", styled("x", bold)) == "     \e[1mx\e[22m|"
/// Depth   that of at(): std::format("{}", styled("x", bold).at(color_depth::none)) == "x"
/// Cost    nothing is allocated for pieces of text.
template <class... Pieces>
struct std::formatter<kestry::kit::styled_text<Pieces...>, char> {
    constexpr auto parse(std::format_parse_context& context) { return spec.parse(context); }

    template <class Context>
    auto format(kestry::kit::styled_text<Pieces...> const& text, Context& context) const
    {
        auto const number_at = [&context](std::size_t n, auto read) {
            return std::visit_format_arg(read, context.arg(n));
        };
        return text.format_to(context.out(), spec.resolve(number_at));
    }

private:
    kestry::kit::detail::format_spec<std::format_error> spec;
};

#endif

#pragma GCC visibility pop

#endif // KESTRY_KIT_STYLE_HPP

// Outside of the guard: included again after <fmt/format.h>, this header knows fmt too.
#if defined(FMT_VERSION) && !defined(KESTRY_KIT_STYLE_FMT)
#define KESTRY_KIT_STYLE_FMT

/// Formats styled text as std::formatter does, for fmt: fmt::format("{:>6}|", styled("x", bold)).
template <class... Pieces>
struct fmt::formatter<kestry::kit::styled_text<Pieces...>, char> {
    template <class Context>
    constexpr auto parse(Context& context)
    {
        return spec.parse(context);
    }

    template <class Context>
    auto format(kestry::kit::styled_text<Pieces...> const& text, Context& context) const
    {
        auto const number_at = [&context](std::size_t n, auto read) {
            auto const argument = context.arg(static_cast<int>(n));
#if FMT_VERSION >= 110000
            return argument.visit(read);
#else
            return fmt::visit_format_arg(read, argument);
#endif
        };
        return text.format_to(context.out(), spec.resolve(number_at));
    }

private:
    kestry::kit::detail::format_spec<fmt::format_error> spec;
};

#endif
