/// \file
/// What a program does to its streams without the library.
#pragma once

#include "model/step.hpp"

#include "operations.hpp"

#include <ostream>
#include <vector>

namespace hueline::test {

/// An operation of the standard library on a stream.
using HostOperation = Operation<std::ostream>;

/// Insertions, manipulators, locales and error states.
std::vector<HostOperation> const& host_operations();

/// The operation of a step, or null if it is none of the host's.
HostOperation const* host_operation(Step const& step);

/// The operations of an interface, and the host's beside them, which act applies.
template <class Program>
std::vector<Operation<Program>> with_host_operations(std::vector<Operation<Program>> operations,
                                                     void (*act)(Program& program, Step const& step))
{
    for (HostOperation const& host : host_operations()) {
        operations.push_back({host.number, host.name, {}, host.arguments, act, {}, host.weight});
    }
    return operations;
}

} // namespace hueline::test
