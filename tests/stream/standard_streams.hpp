/// \file
/// The three standard streams, and where their bytes arrive.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

struct StandardStream {
    char const* name;
    std::ostream& os;
    std::string Outcome::*bytes; ///< What arrives.
};

inline bool is_out(StandardStream const& stream) { return stream.bytes == &Outcome::out; }

inline StandardStream const standard_streams[] = {
    {"cout", std::cout, &Outcome::out},
    {"cerr", std::cerr, &Outcome::err},
    {"clog", std::clog, &Outcome::err},
};

} // namespace hueline::test
