/// \file
/// What the tests of hex views share.
#pragma once

#include <kestry/kit/hexview.hpp>

#include "support/testing.hpp"

namespace hueline::test {

inline std::span<std::byte const> bytes_of(std::string_view text) { return std::as_bytes(std::span(text)); }

/// The rows of the text, plain unless the options say otherwise.
inline std::string view(std::string_view text, kestry::kit::hex_options const& options = {})
{
    return to_string(kestry::kit::hexdump(bytes_of(text), options));
}

inline constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz";

} // namespace hueline::test
