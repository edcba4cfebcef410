#include "progress_message.hpp"

#include <utf8proc.h>

namespace kestry::kit::detail {

std::string harmless_message(std::string_view text, bool ascii)
{
    std::string out;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) {
            char const* const digits = "0123456789abcdef";
            out += "\\x";
            out += digits[byte >> 4U];
            out += digits[byte & 15U];
        } else if (byte < 0x80 || !ascii) {
            out += c;
        } else if ((byte & 0xc0U) != 0x80) {
            out += '?';
        }
    }
    return out;
}

std::size_t message_columns(std::string_view text) noexcept
{
    std::size_t columns = 0;
    while (!text.empty()) {
        utf8proc_int32_t c = 0;
        auto const n = utf8proc_iterate(reinterpret_cast<utf8proc_uint8_t const*>(text.data()), static_cast<utf8proc_ssize_t>(text.size()), &c);
        columns += n > 0 ? static_cast<std::size_t>(utf8proc_charwidth(c)) : 1;
        text.remove_prefix(n > 0 ? static_cast<std::size_t>(n) : 1);
    }
    return columns;
}

std::string cut_message(std::string_view text, std::size_t columns, bool ascii)
{
    std::string const tail = ascii ? "..." : "…";
    if (columns == 0) { return {}; }
    std::string out(text);
    while (message_columns(out) + (ascii ? 3U : 1U) > columns && !out.empty()) { out.pop_back(); }
    return out + tail;
}

} // namespace kestry::kit::detail
