/// \file
/// Renditions that stand in a text: its SGR sequences (ECMA-48 8.3.117), read parameter by parameter.
#pragma once

#include "escape_machine.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestry::kit::detail {

/// One selection of an SGR sequence.
struct sgr_parameter {
    unsigned code;         ///< 0 to 999; what is empty is 0, and what is larger is 999.
    std::string_view text; ///< With the arguments of a colour: "1", "", "4:3", "38;5;208", "38:2::1:2:3".
};

/// Whether the sequence selects a rendition: no private one, and none that a terminal waits to see more of.
constexpr bool is_sgr(escape_sequence const& sequence) noexcept
{
    auto const is_private = [](char c) { return (c >= ' ' && c < '0') || (c > ';' && c <= '?'); };
    return sequence.kind == escape_machine::state::csi && sequence.is_complete && sequence.final_byte == 'm' &&
           std::none_of(sequence.body.begin(), sequence.body.end(), is_private);
}

constexpr unsigned leading_number(std::string_view text) noexcept
{
    unsigned number = 0;
    for (char const c : text) {
        if (c == ':' || c == ';') {
            break;
        }
        if (c >= '0' && c <= '9') { // a control that is carried out may stand between the digits
            number = std::min(number * 10 + static_cast<unsigned>(c - '0'), 999U);
        }
    }
    return number;
}

/// Calls visit(sgr_parameter) for each selection in the body of an SGR sequence, at least once.
template <class Visit>
constexpr void for_each_sgr(std::string_view body, Visit visit)
{
    for (;;) {
        std::size_t end = std::min(body.find(';'), body.size());
        auto const extend = [&end, body](unsigned arguments) {
            for (; arguments > 0 && end < body.size(); --arguments) {
                end = std::min(body.find(';', end + 1), body.size());
            }
        };
        unsigned const code = leading_number(body);
        bool const has_arguments = code == 38 || code == 48 || code == 58;
        if (has_arguments && body.substr(0, end).find(':') == std::string_view::npos) {
            unsigned const kind = end < body.size() ? leading_number(body.substr(end + 1)) : 0;
            extend(kind == 5 ? 2 : kind == 2 ? 4 : 1);
        }
        visit(sgr_parameter{code, body.substr(0, end)});
        if (end == body.size()) {
            return;
        }
        body.remove_prefix(end + 1);
    }
}

/// What a text has switched on and not off again: renditions and a hyperlink.
class open_styles {
public:
    /// Follows a sequence of the text.
    void apply(escape_sequence const& sequence) noexcept;

    /// Appends what switches all of it off, and nothing else.
    void close(std::string& text) const;

private:
    std::uint32_t groups = 0; // a bit for each that has an end code of its own
    bool link = false;
};

} // namespace kestry::kit::detail
