#include <kestry/hueline_stream.hpp>

#include "kestry/kit/policy.hpp"

#include <iostream>

namespace kestry::kit {

namespace {

void use_in(std::ostream& os, color_decision const& decision)
{
    os << (decision ? Hueline::colorize : Hueline::nocolorize);
    set_depth(os, decision.depth);
}

} // namespace

void use_in_streams(color_policy const& policy)
{
    use_in(std::cout, policy.out());
    use_in(std::cerr, policy.err());
    use_in(std::clog, policy.err());
}

} // namespace kestry::kit
