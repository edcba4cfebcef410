/// \file
/// What a program does to its streams without the library.
#pragma once

#include "model/step.hpp"

#include <ostream>
#include <string>
#include <vector>

namespace hueline::test {

/// An operation of the standard library on a stream, and what a random step of it has to give.
struct HostOperation {
    std::string name;
    void (*act)(std::ostream& os, Step const& step);
};

/// Insertions, manipulators, locales and error states.
std::vector<HostOperation> const& host_operations();

/// The operation of a step, or null if it is none of the host's.
HostOperation const* host_operation(Step const& step);

} // namespace hueline::test
