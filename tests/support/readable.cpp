#include "support/readable.hpp"

#include <cstddef>

namespace hueline::test {

namespace {

// The length in bytes of the UTF-8 character of two bytes or more at the head of bytes, 0 if there is
// none: RFC 3629, without the C1 controls, which are U+0080 to U+009F.
std::size_t utf8_length(std::string_view bytes)
{
    auto const byte = [&](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : static_cast<unsigned char>(0);
    };
    unsigned char const first = byte(0);
    std::size_t const length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4) {
        return 0;
    }
    unsigned char const least_second = first == 0xe0 || first == 0xc2 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    unsigned char const most_second = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    if (byte(1) < least_second || byte(1) > most_second) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xbf) {
            return 0;
        }
    }
    return length;
}

std::string hexadecimal(char byte)
{
    char const* const digits = "0123456789abcdef";
    auto const value = static_cast<unsigned char>(byte);
    return {'\\', 'x', digits[value / 16], digits[value % 16]};
}

} // namespace

std::string readable(std::string_view bytes)
{
    std::string text;
    while (!bytes.empty()) {
        char const first = bytes[0];
        std::size_t length = 1;
        if (first == '\x1b') {
            text += "\\e";
        } else if (first == '\n') {
            text += "\\n";
        } else if (first == '\r') {
            text += "\\r";
        } else if (first == '\t') {
            text += "\\t";
        } else if (first >= ' ' && first <= '~') {
            text += first;
        } else if (utf8_length(bytes) != 0) {
            length = utf8_length(bytes);
            text += bytes.substr(0, length);
        } else {
            text += hexadecimal(first);
        }
        bytes.remove_prefix(length);
    }
    return text;
}

} // namespace hueline::test
