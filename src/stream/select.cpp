#include "kestry/hueline_stream.hpp"

#include <cstddef>

namespace kestry::Hueline {

namespace {

using Manipulator = std::ostream& (*)(std::ostream&);

std::size_t constexpr named_colors = 8;
Manipulator const foregrounds[named_colors] = {grey, red, green, yellow, blue, magenta, cyan, white};
Manipulator const backgrounds[named_colors] = {on_grey, on_red,     on_green, on_yellow,
                                               on_blue, on_magenta, on_cyan,  on_white};

} // namespace

std::ostream& next(std::ostream& os, int index, bool background)
{
    // Taken as unsigned, a negative index is past the end too.
    std::size_t const last = named_colors - 1;
    std::size_t const chosen = static_cast<unsigned>(index) < last ? static_cast<unsigned>(index) : last;
    return (background ? backgrounds : foregrounds)[chosen](os);
}

std::string col(std::string const& name)
{
    std::size_t constexpr width = 10;
    std::string cell(name, 0, width);
    cell.resize(width, ' ');
    return cell;
}

} // namespace kestry::Hueline
