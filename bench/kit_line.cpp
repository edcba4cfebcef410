#include <kestry/kit/line.hpp>

#include "workload.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <syncstream>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace hueline::bench {

namespace {

// The device to which a write costs least: what a line spares is least there too.
void to_null()
{
    static int const null = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null < 0 || dup2(null, STDERR_FILENO) < 0) {
        throw std::system_error{errno, std::generic_category(), "/dev/null"};
    }
}

int row = 42;
int column = 17;

void insert_ten(std::ostream& os)
{
    os << "\x1b[1m"
       << "error"
       << "\x1b[0m"
       << " in row " << row << ", column " << column << ": "
       << "unexpected" << '\n';
}

void line()
{
    kestry::kit::line composed(std::cerr);
    insert_ten(composed.stream());
}

void insertions() { insert_ten(std::cerr); }

void synchronized()
{
    std::osyncstream composed(std::cerr);
    insert_ten(composed);
}

void printed()
{
    char text[128];
    int const size = std::snprintf(text, sizeof text, "\x1b[1m%s\x1b[0m in row %d, column %d: %s\n", "error", row,
                                   column, "unexpected");
    benchmark::DoNotOptimize(write(STDERR_FILENO, text, static_cast<std::size_t>(size)));
}

} // namespace

// clang-format off
Workloads kit_line()
{
    return {
        {"a line of ten insertions on `std::cerr`", to_null, run<line>, {
            {"the insertions alone", run<insertions>, 0.2},
            {"the same into `std::osyncstream`", run<synchronized>},
            {"`snprintf` and one `write`", run<printed>}}},
    };
}
// clang-format on

} // namespace hueline::bench
