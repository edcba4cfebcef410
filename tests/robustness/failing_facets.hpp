/// \file
/// Facets that fail, as if a locale had none of the kind, and a stream that has none.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// Every number is a bad cast, as it is where a locale has no std::num_put.
class NoNumbers : public std::num_put<char> {
    iter_type do_put(iter_type, std::ios_base&, char_type, long) const override { throw std::bad_cast{}; }
    iter_type do_put(iter_type, std::ios_base&, char_type, unsigned long) const override { throw std::bad_cast{}; }
};

/// Every widened character is a bad cast, as it is where a locale has no std::ctype.
class NoWidening : public std::ctype<char> {
    char do_widen(char) const override { throw std::bad_cast{}; }
    char const* do_widen(char const*, char const*, char*) const override { throw std::bad_cast{}; }
};

inline std::stringstream any_stream;

/// A stream without std::ctype, std::num_put and std::num_get: libstdc++ finds them in init, which this
/// constructor of its base, meant for std::iostream, does not call. No locale can be made without them.
class WithoutFacets : public std::ostream {
public:
    explicit WithoutFacets(std::streambuf* buffer) : std::ostream(any_stream) { rdbuf(buffer); }
};

} // namespace hueline::test
