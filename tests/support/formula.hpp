/// \file
/// What a dump of bytes has to be, in the plainest words there are: one snprintf for each byte.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace hueline::test {

using Bytes = std::vector<unsigned char>;

/// A number as printf writes it: the format has one "%lx".
inline std::string digits(char const* format, unsigned long number)
{
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

inline std::string two_digits(unsigned char b)
{
    char text[3];
    std::snprintf(text, sizeof text, "%02x", b);
    return text;
}

/// The first `shown` bytes, each between the two texts.
inline std::string cells(Bytes const& bytes, std::size_t shown, std::string const& before, std::string const& after)
{
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        text += before;
        text += two_digits(bytes[i]);
        text += after;
    }
    return text;
}

/// Every cell.
inline std::string cells(Bytes const& bytes, std::string const& before, std::string const& after)
{
    return cells(bytes, bytes.size(), before, after);
}

/// The sequences of a dump in colour; none without.
struct Colors {
    std::string byte;
    std::string parenthesis;
    std::string count;
    std::string end;
};

/// A dump of bytes: of 19 at most, unless it is whole.
inline std::string dump_of(Bytes const& bytes, std::string const& separator, Colors const& colors, bool is_whole)
{
    if (bytes.empty()) {
        return "";
    }
    if (is_whole || bytes.size() <= 19) {
        return cells(bytes, colors.byte, separator) + colors.end;
    }
    return cells(bytes, 19, colors.byte, separator) + " ... " + colors.parenthesis + "(" + colors.count +
           std::to_string(bytes.size()) + " bytes" + colors.parenthesis + ") " + colors.end;
}

/// 0, 1, 2, ...
inline Bytes counted(std::size_t count)
{
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<unsigned char>(i);
    }
    return bytes;
}

/// Every value within 256 bytes, in an order that is another one for the next 256.
inline Bytes mixed(std::size_t count)
{
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 151 + i / 256 * 7);
    }
    return bytes;
}

/// Of as many bytes, no two next to each other the same.
inline std::string separator_of(std::size_t size)
{
    std::string const letters = "ghijklmnopqrstuvwxyzGHIJKLMNOPQRSTUVWXYZ";
    std::string separator;
    while (separator.size() < size) {
        separator += letters.substr(0, size - separator.size());
    }
    return separator;
}

/// Numbers of bytes of which a dump may go another way than for the next one: every small one.
inline std::vector<std::size_t> small_sizes()
{
    std::vector<std::size_t> sizes;
    for (std::size_t size = 0; size <= 70; ++size) {
        sizes.push_back(size);
    }
    return sizes;
}

/// And both sides of a few large ones.
inline std::vector<std::size_t> large_sizes()
{
    std::vector<std::size_t> sizes;
    for (std::size_t const power : {128u, 256u, 1024u, 4096u, 65536u}) {
        sizes.insert(sizes.end(), {power - 1, power, power + 1});
    }
    return sizes;
}

/// A dump too large to be compared with a copy of it: a block of bytes again and again. No step of a
/// program is as long as the block, whose size is a prime number.
class LargeDump {
public:
    LargeDump(std::size_t blocks, std::string const& before, std::string const& after)
        : block(mixed(65537)), block_cells(cells(block, before, after))
    {
        bytes.reserve(blocks * block.size());
        for (std::size_t i = 0; i < blocks; ++i) {
            bytes.insert(bytes.end(), block.begin(), block.end());
        }
    }

    Bytes const& input() const { return bytes; }

    /// Whether text is a cell for each byte, and then end.
    bool is(std::string_view text, std::string_view end = {}) const
    {
        for (std::size_t done = 0; done < bytes.size(); done += block.size()) {
            if (text.substr(0, block_cells.size()) != block_cells) {
                return false;
            }
            text.remove_prefix(block_cells.size());
        }
        return text == end;
    }

private:
    Bytes block;
    std::string block_cells;
    Bytes bytes;
};

} // namespace hueline::test
