/// \file
/// The switches of the string interface, set for a scope of a test.
#pragma once

#include "kestry/hueline_classic.hpp"

namespace hueline::test {

enum class Mode {
    off,       ///< As at load.
    on,        ///< The colour switch is on.
    no_frills, ///< The colour switch is on, and so is no-frills mode.
};

inline constexpr Mode every_mode[] = {Mode::off, Mode::on, Mode::no_frills};
inline constexpr Mode plain_modes[] = {Mode::off, Mode::no_frills};

/// Sets the switches. Afterwards they are as before.
class InMode {
public:
    explicit InMode(Mode mode)
    {
        switches.useColor(mode != Mode::off);
        kestry::Hueline::setNoFrillsMode(mode == Mode::no_frills);
    }
    InMode(InMode const&) = delete;
    InMode& operator=(InMode const&) = delete;
    ~InMode() { kestry::Hueline::setNoFrillsMode(no_frills_before); }

private:
    bool no_frills_before = kestry::Hueline::getNoFrillsMode();
    kestry::Hueline switches; // puts the colour switch back
};

} // namespace hueline::test
