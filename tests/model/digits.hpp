/// \file
/// Numbers as the models write them.
#pragma once

#include <cstddef>
#include <string>

namespace hueline::test {

inline std::string decimal(long long number) { return std::to_string(number); }

/// At least so many digits.
inline std::string hexadecimal(unsigned long number, std::size_t digits)
{
    std::string text;
    while (number != 0) {
        text.insert(0, 1, "0123456789abcdef"[number % 16]);
        number /= 16;
    }
    while (text.size() < digits) {
        text.insert(0, 1, '0');
    }
    return text;
}

inline std::string byte_digits(int number) { return hexadecimal(static_cast<unsigned char>(number), 2); }

inline std::string short_digits(int number) { return "0x" + hexadecimal(static_cast<unsigned short>(number), 4); }

} // namespace hueline::test
