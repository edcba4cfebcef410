#include "kestry/hueline_classic.hpp"

#include "sequences.hpp"

namespace hueline::terminals {

namespace {

std::string in_color(std::string (*sequence)())
{
    kestry::Hueline scope;
    scope.useColor(true);
    return sequence();
}

} // namespace

std::string hide_cursor() { return in_color(kestry::Hueline::hide_cursor); }
std::string show_cursor() { return in_color(kestry::Hueline::show_cursor); }

} // namespace hueline::terminals
