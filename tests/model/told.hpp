/// \file
/// What a program writes, as the model tells it.
#pragma once

#include "model/stream_model.hpp"

#include "support/readable.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace hueline::test {

/// The bytes that reach standard output.
inline std::string told(Sinks sinks, std::vector<Step> const& steps)
{
    StreamModel model(sinks);
    std::string out;
    for (Step const& step : steps) {
        out += model.perform(step).out;
    }
    return out;
}

/// Where two long texts part, with what stands there; nothing if they are the same.
inline std::string difference(std::string_view expected, std::string_view got)
{
    if (expected == got) {
        return "";
    }
    auto const parting = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end());
    auto const at = static_cast<std::size_t>(parting.first - expected.begin());
    std::size_t const from = at - std::min<std::size_t>(at, 60);
    return "at byte " + std::to_string(at) + "\nexpected: ..." + readable(expected.substr(from, 140)) +
           "...\ngot:      ..." + readable(got.substr(from, 140)) + "...";
}

} // namespace hueline::test
