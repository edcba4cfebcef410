/// \file
/// The part of a row that comes from the program: its columns, and what is done to it before a terminal gets it.
#ifndef KESTRY_KIT_PROGRESS_MESSAGE_HPP
#define KESTRY_KIT_PROGRESS_MESSAGE_HPP

#include <cstddef>
#include <string>
#include <string_view>

namespace kestry::kit::detail {

/// Makes control characters visible. With ascii, each other character that is not ASCII becomes a "?".
std::string harmless_message(std::string_view text, bool ascii);

std::size_t message_columns(std::string_view text) noexcept;

/// Cuts to so many columns, with an ellipsis.
std::string cut_message(std::string_view text, std::size_t columns, bool ascii);

} // namespace kestry::kit::detail

#endif
