// Built in every way that changes how a program takes the address of a library's function.
#include <kestry/hueline_stream.hpp>

namespace csi = kestry::Hueline::csi;

using Manipulator = std::ostream& (*)(std::ostream&);

Manipulator volatile clear_at_run_time = csi::clear; // a relocation
Manipulator volatile clr_at_run_time = csi::clr;

static_assert(&csi::clear == &csi::clr);

int main()
{
    if (&csi::clear == &csi::clr && clear_at_run_time == clr_at_run_time) {
        return 0;
    }
    return 1;
}
