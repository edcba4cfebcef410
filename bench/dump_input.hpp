/// \file
/// What the dumps read, and the texts that are copied for comparison.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace hueline::bench {

inline constexpr std::size_t KiB = 1024;
inline constexpr std::size_t MiB = 1024 * KiB;
inline constexpr std::size_t GiB = 1024 * MiB;

/// The bytes to dump, every value among them.
extern std::vector<unsigned char> input;

/// A text as long as the dump of input.
extern std::string text_of_that_length;

/// Makes input that long, and the text cell characters for each of its bytes.
void set_input(std::size_t size, std::size_t cell);

/// The floor of a dump: memory has to be found and filled.
std::string copy_text_of_that_length();

/// The floor below that, where the memory is fresh: the system is made to provide each page of it.
void touch_pages_of_that_length();

} // namespace hueline::bench
