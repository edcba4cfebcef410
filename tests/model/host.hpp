/// \file
/// What a program does to its streams without the library.
#pragma once

#include "model/operation.hpp"
#include "model/step.hpp"

#include <ostream>
#include <vector>

namespace hueline::test {

/// An operation of the standard library on a stream.
using HostOperation = Operation<std::ostream>;

/// Insertions, manipulators, locales and error states.
std::vector<HostOperation> const& host_operations();

/// The operation of a step, or null if it is none of the host's.
HostOperation const* host_operation(Step const& step);

} // namespace hueline::test
