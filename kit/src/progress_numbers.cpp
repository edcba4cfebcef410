#include "progress_numbers.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <span>
#include <string_view>

namespace kestry::kit::detail {

namespace {

// Three digits, or four before the next prefix: "9.87", "98.7", "987", "1023".
std::string digits(double value)
{
    int const decimals = value < 9.995 ? 2 : value < 99.95 ? 1 : 0;
    std::array<char, 400> text; // the largest double has 309 digits
    auto const written =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return {text.data(), written.ptr};
}

std::string scaled(double value, double step, std::span<std::string_view const> prefixes)
{
    std::size_t prefix = 0;
    while (value >= step - 0.5 && prefix + 1 < prefixes.size()) {
        value /= step;
        ++prefix;
    }
    return digits(value).append(prefixes[prefix]);
}

std::array<std::string_view, 7> constexpr binary = {" B", " KiB", " MiB", " GiB", " TiB", " PiB", " EiB"};
std::array<std::string_view, 7> constexpr decimal = {"", "k", "M", "G", "T", "P", "E"};

// "7" as "07".
std::string two_digits(std::uint64_t n)
{
    return {static_cast<char>('0' + n / 10 % 10), static_cast<char>('0' + n % 10)};
}

} // namespace

std::string amount(std::uint64_t n, progress::unit counted)
{
    bool const plain = counted == progress::unit::items || n < 1024;
    if (!plain) {
        return scaled(static_cast<double>(n), 1024, binary);
    }
    return std::to_string(n) + (counted == progress::unit::bytes ? " B" : "");
}

std::string speed(std::optional<double> per_second, progress::unit counted)
{
    if (!per_second) {
        return "--/s";
    }
    double const value = std::max(*per_second, 0.0);
    return (counted == progress::unit::bytes ? scaled(value, 1024, binary) : scaled(value, 1000, decimal)) + "/s";
}

std::string time_span(std::optional<double> seconds)
{
    double constexpr longest = 100 * 86400.0 * 365; // beyond that nobody waits
    if (!seconds || !(*seconds < longest)) {
        return "--:--";
    }
    auto const all = static_cast<std::uint64_t>(std::max(*seconds, 0.0));
    std::uint64_t const minutes = all / 60;
    std::uint64_t const hours = minutes / 60;
    if (hours >= 24) {
        return std::to_string(hours / 24) + "d " + two_digits(hours % 24) + "h";
    }
    std::string const rest = two_digits(minutes % 60) + ":" + two_digits(all % 60);
    return hours > 0 ? std::to_string(hours) + ":" + rest : rest;
}

std::string time_left(std::optional<double> seconds) { return time_span(seconds ? std::ceil(*seconds) : seconds); }

int percent(std::uint64_t position, std::uint64_t length) noexcept
{
    if (position >= length) {
        return 100;
    }
    bool const fits = position <= std::numeric_limits<std::uint64_t>::max() / 100;
    std::uint64_t const part = fits ? position * 100 / length : position / (length / 100);
    return static_cast<int>(std::min<std::uint64_t>(part, 99)); // the second quotient may be one too many
}

std::string right_aligned(std::string text, std::size_t columns)
{
    text.insert(0, columns - std::min(columns, text.size()), ' ');
    return text;
}

} // namespace kestry::kit::detail
