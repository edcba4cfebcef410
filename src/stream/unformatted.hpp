/// \file
/// Output that leaves a pending width pending.
#pragma once

#include <ostream>
#include <string_view>

namespace kestry::detail {

/// Writes bytes as they are.
inline std::ostream& unformatted(std::ostream& os, std::string_view bytes)
{
    return os.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace kestry::detail
