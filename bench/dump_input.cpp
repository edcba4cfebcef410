#include "dump_input.hpp"

#include <benchmark/benchmark.h>

#include <memory>
#include <numeric>

namespace hueline::bench {

std::vector<unsigned char> input;
std::string text_of_that_length;

void set_input(std::size_t size, std::size_t cell)
{
    if (input.size() != size) {
        // Memory that an earlier, larger input had is given back.
        input = std::vector<unsigned char>(size);
        std::iota(input.begin(), input.end(), static_cast<unsigned char>(0));
    }
    if (text_of_that_length.size() != size * cell) {
        text_of_that_length = std::string(size * cell, '.');
        text_of_that_length.shrink_to_fit();
    }
}

std::string copy_text_of_that_length() { return text_of_that_length; }

void touch_pages_of_that_length()
{
    std::size_t const page = 4096;
    // Not filled, unlike a std::vector.
    std::unique_ptr<char[]> const memory{new char[text_of_that_length.size()]};
    for (std::size_t at = 0; at < text_of_that_length.size(); at += page) {
        memory[at] = '.';
    }
    benchmark::DoNotOptimize(memory.get());
    benchmark::ClobberMemory();
}

} // namespace hueline::bench
