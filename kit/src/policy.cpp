#include "kestry/kit/policy.hpp"

namespace kestry::kit {

char const* to_string(color_depth depth) noexcept
{
    switch (depth) {
    case color_depth::none:
        return "none";
    case color_depth::ansi16:
        return "16 colours";
    case color_depth::ansi256:
        return "256 colours";
    case color_depth::truecolor:
        return "24 bit";
    }
    return "none"; // no enumerator
}

} // namespace kestry::kit
