#include "progress_row.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace kestry::kit::detail {

namespace {

template <typename Value>
using named = std::pair<std::string_view, Value>;

std::array<named<progress_key>, 10> constexpr keys = {{
    {"msg", progress_key::msg},
    {"bar", progress_key::bar},
    {"wide_bar", progress_key::wide_bar},
    {"spinner", progress_key::spinner},
    {"pos", progress_key::pos},
    {"len", progress_key::len},
    {"percent", progress_key::percent},
    {"rate", progress_key::rate},
    {"eta", progress_key::eta},
    {"elapsed", progress_key::elapsed},
}};

// SGR parameters, ECMA-48 8.3.117.
std::array<named<std::string_view>, 8> constexpr colors = {{
    {"bold", "1"},
    {"dim", "2"},
    {"red", "31"},
    {"green", "32"},
    {"yellow", "33"},
    {"blue", "34"},
    {"magenta", "35"},
    {"cyan", "36"},
}};

std::size_t constexpr widest = 1000; // columns

template <typename Value, std::size_t Count>
Value const* find(std::array<named<Value>, Count> const& table, std::string_view name)
{
    for (auto const& [known, value] : table) {
        if (known == name) {
            return &value;
        }
    }
    return nullptr;
}

[[noreturn]] void refuse(std::string_view what, std::string_view quoted, std::size_t at)
{
    std::string message = "progress layout: ";
    message.append(what).append(" {").append(quoted).append("} at byte ").append(std::to_string(at));
    throw std::invalid_argument(message);
}

// What stands between braces: KEY[:[<|>][WIDTH][.COLOUR]]
progress_piece key_piece(std::string_view inside, std::size_t at)
{
    progress_piece piece;
    std::size_t const colon = std::min(inside.find(':'), inside.size());
    progress_key const* const key = find(keys, inside.substr(0, colon));
    if (key == nullptr) {
        refuse("unknown key", inside, at);
    }
    piece.key = *key;
    std::string_view rest = inside.substr(std::min(colon + 1, inside.size()));
    if (!rest.empty() && (rest.front() == '<' || rest.front() == '>')) {
        piece.to_the_right = rest.front() == '>';
        rest.remove_prefix(1);
    }
    std::size_t const dot = std::min(rest.find('.'), rest.size());
    std::string_view const width = rest.substr(0, dot);
    if (!width.empty()) {
        auto const read = std::from_chars(width.data(), width.data() + width.size(), piece.width);
        if (read.ec != std::errc() || read.ptr != width.data() + width.size() || piece.width > widest) {
            refuse("no width in columns in", inside, at);
        }
    }
    if (dot < rest.size()) {
        std::string_view const* const sgr = find(colors, rest.substr(dot + 1));
        if (sgr == nullptr) {
            refuse("unknown colour in", inside, at);
        }
        piece.sgr = *sgr;
    }
    return piece;
}

void add_text(std::vector<progress_piece>& pieces, char c)
{
    if (pieces.empty() || pieces.back().key != progress_key::text) {
        pieces.emplace_back();
    }
    pieces.back().text += c;
}

} // namespace

progress_template::progress_template(std::string_view text)
{
    bool has_wide_bar = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char const c = text[at];
        char const next = at + 1 < text.size() ? text[at + 1] : '\0';
        bool const doubled = next == c;
        bool const is_c1 = c == '\xc2' && (next & 0xe0) == 0x80; // U+0080 to U+009F
        if ((c == '{' || c == '}') && doubled) {
            add_text(pieces, c);
            ++at;
        } else if (c == '{') {
            std::size_t const end = text.find('}', at);
            if (end == std::string_view::npos) {
                throw std::invalid_argument("progress layout: no } for the { at byte " + std::to_string(at));
            }
            pieces.push_back(key_piece(text.substr(at + 1, end - at - 1), at));
            if (pieces.back().key == progress_key::wide_bar && std::exchange(has_wide_bar, true)) {
                refuse("another", text.substr(at + 1, end - at - 1), at);
            }
            at = end;
        } else if (c == '}') {
            throw std::invalid_argument("progress layout: no { for the } at byte " + std::to_string(at));
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f || is_c1) {
            throw std::invalid_argument("progress layout: control character at byte " + std::to_string(at));
        } else {
            add_text(pieces, c);
        }
    }
}

// Built at first use and never destroyed: bars of static objects may be drawn at the very end.
progress_template const& usual_template(std::uint64_t position, std::uint64_t length)
{
    static auto const& measured = *new progress_template("{msg} {wide_bar:.green} {percent} {pos}/{len} {rate} {eta}");
    static auto const& counting = *new progress_template("{spinner:.green} {msg} {pos} {rate} {elapsed}");
    static auto const& waiting = *new progress_template("{spinner:.green} {msg} {elapsed}");
    return length != progress::unknown ? measured : position != 0 ? counting : waiting;
}

} // namespace kestry::kit::detail
