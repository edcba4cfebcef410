#include "kestry/kit/text.hpp"

#include "ascii.hpp"
#include "utf8.hpp"

#include <algorithm>
#include <charconv>
#include <utf8proc.h>

namespace kestry::kit {

namespace {

using detail::character;
using detail::decode;

// ---------------------------------------------------------------------------------------------
// The two forms: \xHH for a byte, \u{H} for a code point
// ---------------------------------------------------------------------------------------------

void append_hex(std::string& to, unsigned number, std::size_t digits)
{
    char buffer[8];
    char* const end = std::to_chars(buffer, buffer + sizeof buffer, number, 16).ptr;
    auto const size = static_cast<std::size_t>(end - buffer);
    to.append(digits > size ? digits - size : 0, '0');
    to.append(buffer, size);
}

void append_byte_form(std::string& to, unsigned byte)
{
    to += "\\x";
    append_hex(to, byte, 2);
}

void append_escaped(std::string& to, character c)
{
    if (c.code < 0x80 || c.is != character::state::whole) {
        append_byte_form(to, c.code);
    } else {
        to += "\\u{";
        append_hex(to, c.code, 1);
        to += '}';
    }
}

// One of the forms at the head of a text.
struct form {
    std::size_t size = 0; // 0 if there is none
    char32_t code = 0;
    bool is_byte = false;
};

// The number that lower-case hexadecimal digits write, without a sign and a leading zero that nobody asked for.
bool read_hex(std::string_view digits, unsigned& number)
{
    auto const is_digit = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return !digits.empty() && std::all_of(digits.begin(), digits.end(), is_digit) &&
           std::from_chars(digits.data(), digits.data() + digits.size(), number, 16).ec == std::errc{};
}

// Knows no more than what escape_untrusted() writes, in any version of Unicode.
form read_form(std::string_view text)
{
    unsigned number = 0;
    if (text.starts_with("\\x") && text.size() >= 4 && read_hex(text.substr(2, 2), number)) {
        bool const is_written = number < 0x20 || number >= 0x7f || number == '\\';
        return is_written ? form{4, number, true} : form{};
    }
    if (!text.starts_with("\\u{")) {
        return {};
    }
    std::string_view const digits = text.substr(3, text.substr(3, 7).find('}'));
    std::size_t const end = 3 + digits.size();
    if (digits.size() > 6 || end == text.size() || !read_hex(digits, number)) {
        return {};
    }
    bool const is_written =
        digits.front() != '0' && number >= 0x80 && utf8proc_codepoint_valid(static_cast<utf8proc_int32_t>(number));
    return is_written ? form{end + 1, number, false} : form{};
}

// ---------------------------------------------------------------------------------------------
// What is harmless
// ---------------------------------------------------------------------------------------------

// Default_Ignorable_Code_Point, also where no character is assigned, and what else is invisible or moves the text.
bool is_invisible(char32_t code)
{
    bool const is_reserved =
        code == 0x2065 || (code >= 0xfff0 && code <= 0xfff8) || (code >= 0xe0000 && code <= 0xe0fff);
    bool const is_separator = code == 0x2028 || code == 0x2029;
    bool const is_annotation = code >= 0xfff9 && code <= 0xfffb;
    return is_reserved || is_separator || is_annotation ||
           utf8proc_get_property(static_cast<utf8proc_int32_t>(code))->ignorable;
}

bool is_joiner(char32_t code) { return code == 0x200c || code == 0x200d; }

bool is_variation_selector(char32_t code)
{
    return (code >= 0xfe00 && code <= 0xfe0f) || (code >= 0xe0100 && code <= 0xe01ef);
}

bool is_visible_past_ascii(character c)
{
    return c.is == character::state::whole && c.code >= 0xa0 && !is_invisible(c.code);
}

bool is_keycap(char32_t code) { return (code >= '0' && code <= '9') || code == '#' || code == '*'; }

// The bytes of a flag of a region, such as that of Wales, at the head of a text: U+1F3F4, tags, and the tag that ends
// them. 0 if there is none.
std::size_t size_of_tag_flag(std::string_view text)
{
    if (!text.starts_with("\U0001f3f4")) {
        return 0;
    }
    std::size_t at = 4;
    for (std::size_t tags = 0; tags <= 6 && at < text.size(); ++tags) { // a region has 3 to 6
        character const tag = decode(text.substr(at));
        at += tag.size;
        if (tag.code == 0xe007f) {
            return tags >= 3 ? at : 0;
        }
        bool const is_of_region =
            (tag.code >= 0xe0030 && tag.code <= 0xe0039) || (tag.code >= 0xe0061 && tag.code <= 0xe007a);
        if (!is_of_region) {
            return 0;
        }
    }
    return 0;
}

constexpr character nothing = {0, 0, character::state::bad};

// Whether a character past ASCII stays where it is, between what is left of the text before and after it.
bool stays(character c, character before, std::string_view after)
{
    if (c.is != character::state::whole || c.code < 0xa0) {
        return false;
    }
    if (!is_invisible(c.code)) {
        return true;
    }
    if (is_joiner(c.code)) {
        bool const is_after = is_visible_past_ascii(before) || is_variation_selector(before.code);
        return is_after && !after.empty() && is_visible_past_ascii(decode(after));
    }
    if (is_variation_selector(c.code)) {
        return is_visible_past_ascii(before) || is_keycap(before.code);
    }
    return false;
}

// Whether the character at the head of the rest of a text may stay.
bool is_harmless(character c, character before, std::string_view rest, escape_options options)
{
    switch (c.code) {
    case '\t':
        return options.keep_tab;
    case '\n':
        return options.keep_newline;
    case '\\':
        return read_form(rest).size == 0;
    default:
        return c.code < 0x80 ? c.code >= ' ' && c.code <= '~' : stays(c, before, rest.substr(c.size));
    }
}

} // namespace

std::string escape_untrusted(std::string_view text, escape_options options)
{
    std::string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    std::size_t printable = 0; // up to here nothing but a backslash needs a look
    character before = nothing;
    for (std::size_t at = 0; at < text.size();) {
        printable = std::max(
            printable, at + detail::printable_ascii(text.substr(at, at < printable ? 0 : std::string_view::npos)));
        if (at < printable) {
            std::size_t const run = std::min(text.substr(at, printable - at).find('\\'), printable - at);
            at += run;
            before = run > 0 ? decode(text.substr(at - 1)) : before;
            if (at == printable) {
                continue;
            }
        }
        std::string_view const rest = text.substr(at);
        character const next = decode(rest);
        std::size_t const flag = size_of_tag_flag(rest);
        if (flag > 0 || is_harmless(next, before, rest, options)) {
            before = next;
            at += std::max<std::size_t>(flag, next.size);
            continue;
        }
        result += text.substr(copied, at - copied);
        append_escaped(result, next);
        before = nothing;
        at += next.size;
        copied = at;
    }
    result += text.substr(copied);
    return result;
}

std::string unescape_untrusted(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    std::size_t done = 0;
    for (std::size_t at = text.find('\\'); at != std::string_view::npos; at = text.find('\\', at)) {
        form const found = read_form(text.substr(at));
        if (found.size == 0) {
            ++at;
            continue;
        }
        result += text.substr(done, at - done);
        if (found.is_byte) {
            result += static_cast<char>(found.code);
        } else {
            utf8proc_uint8_t bytes[4];
            auto const size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(found.code), bytes);
            result.append(bytes, bytes + size);
        }
        at += found.size;
        done = at;
    }
    result += text.substr(done);
    return result;
}

} // namespace kestry::kit
