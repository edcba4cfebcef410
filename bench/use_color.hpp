/// \file
/// The colour switch of the string interface, for the workloads that need it on or off.
#pragma once

#include "kestry/hueline_classic.hpp"

namespace hueline::bench {

inline void use_color(bool on)
{
    // Puts the switch back when it is destroyed, so it lives as long as the process.
    static kestry::Hueline switches;
    switches.useColor(on);
}

} // namespace hueline::bench
