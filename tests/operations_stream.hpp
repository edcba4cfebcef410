/// \file
/// Every operation of the stream interface.
#pragma once

#include "operations.hpp"

#include <cstdio>
#include <list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace hueline::test {

/// What the operations of one program share.
struct StreamProgram {
    std::ostream* os = nullptr;       ///< The stream of the next operation.
    std::ostream* returned = nullptr; ///< By the last one.
    std::string result = {};          ///< Of a function that returns a string.
    std::list<std::shared_ptr<void>> guards = {};
    std::FILE* out = stdout; ///< Where stdio's output goes, but in programs that have closed it.
    std::FILE* err = stderr;
};

using StreamOperation = Operation<StreamProgram>;

std::vector<StreamOperation> const& stream_operations();

/// Those that are given a stream.
std::vector<StreamOperation> const& operations_on_a_stream();

/// Applies it to a stream, with the arguments of its example.
void apply_example(StreamOperation const& operation, std::ostream& os);

/// All that are given a stream, in turn.
void apply_all_examples(std::ostream& os);

/// The place of the colorize word among the words of a stream, which the library does not tell.
int find_colorize_word();

} // namespace hueline::test
