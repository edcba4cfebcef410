#include <kestry/hueline_classic.hpp>

#include "kestry/kit/policy.hpp"

namespace kestry::kit {

void use_in_strings(color_decision const& decision)
{
    // Never destroyed: its destructor would put the switch back, while static objects may still have something to say.
    static auto* const kept = new Hueline; // NOLINT(cppcoreguidelines-owning-memory)
    kept->useColor(static_cast<bool>(decision));
}

} // namespace kestry::kit
