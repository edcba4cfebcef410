/// \file
/// Strings whose size is known before their text.
#pragma once

#include "text/digits.hpp"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kestry::detail {

/// A string of size characters, all of them written by fill(char*), which must not throw. Unlike a
/// string that is resized and then written, it is not filled with zeros first.
template <class Fill>
std::string make_string(std::size_t size, Fill fill)
{
    std::string text;
    text.resize_and_overwrite(size, [&fill, size](char* out, std::size_t /* libstdc++ 12 hands over the capacity */) {
        fill(out);
        return size;
    });
    return text;
}

/// The pieces one after the other.
inline std::string concatenate(std::initializer_list<std::string_view> pieces)
{
    std::size_t size = 0;
    for (std::string_view const piece : pieces) {
        size += piece.size();
    }
    return make_string(size, [pieces](char* out) {
        for (std::string_view const piece : pieces) {
            out = put_text(out, piece);
        }
    });
}

} // namespace kestry::detail
