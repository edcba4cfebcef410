/// \file
/// Every operation of the string interface.
#pragma once

#include "kestry/hueline_classic.hpp"

#include "operations.hpp"

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace hueline::test {

/// What the operations of one program share.
struct ClassicProgram {
    std::vector<std::unique_ptr<kestry::Hueline>> objects = {};
    std::ostringstream os = {};
    std::string result = {}; ///< Of a function that returns a string.
    int time = 0;            ///< In seconds since 1970, where a test makes up the time.

    /// The first object is always there.
    std::unique_ptr<kestry::Hueline>& object(int number);
};

using ClassicOperation = Operation<ClassicProgram>;

std::vector<ClassicOperation> const& classic_operations();

/// What it returns with the arguments of its example, or the text of the dump that it makes.
std::string result_of_example(ClassicOperation const& operation);

/// Makes the time zone one whose local time is so many minutes ahead. POSIX writes the opposite sign.
void set_time_zone(int minutes);

} // namespace hueline::test
