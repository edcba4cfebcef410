/// \file
/// Numbers as progress shows them: no locale, and widths that seldom change.
#ifndef KESTRY_KIT_PROGRESS_NUMBERS_HPP
#define KESTRY_KIT_PROGRESS_NUMBERS_HPP

#include "kestry/kit/progress.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kestry::kit::detail {

/// `amount(1234, unit::items) == "1234"`, `amount(1234, unit::bytes) == "1.21 KiB"`
std::string amount(std::uint64_t n, progress::unit counted);

/// `speed(0.25, unit::items) == "0.25/s"`, `speed(56700, unit::items) == "56.7k/s"`, `speed({}, unit::items) == "--/s"`
std::string speed(std::optional<double> per_second, progress::unit counted);

/// `time_span(7) == "00:07"`, `time_span(3723) == "1:02:03"`, `time_span(93784) == "1d 02h"`, `time_span({}) == "--:--"`
std::string time_span(std::optional<double> seconds);

/// As time_span, of a second that has begun: `time_left(0.2) == "00:01"`
std::string time_left(std::optional<double> seconds);

/// 0 to 100, and 100 only when it is complete. A length of 0 is complete.
int percent(std::uint64_t position, std::uint64_t length) noexcept;

/// Blanks on the left up to so many columns; text is ASCII.
std::string right_aligned(std::string text, std::size_t columns);

} // namespace kestry::kit::detail

#endif
