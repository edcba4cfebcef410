/// \file
/// What pieces of a program bring to the screen through the stream interface.
#pragma once

#include "kestry/hueline_stream.hpp"

#include "support/clock.hpp"
#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace hueline::test {

using Rows = std::vector<std::string>;

/// The bytes of a body that is given a colorized std::cout on a terminal. Waits end at once.
inline std::string bytes_of(std::function<void(std::ostream&)> const& body)
{
    auto const run = on_terminal([&] {
        let_waits_end_at_once();
        body(std::cout << kestry::Hueline::colorize);
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

inline Screen screen_after(std::function<void(std::ostream&)> const& body, int rows = 24, int cols = 80)
{
    return Screen(bytes_of(body), rows, cols);
}

inline std::string first_row(std::function<void(std::ostream&)> const& body) { return row_of(screen_after(body), 0); }

} // namespace hueline::test
