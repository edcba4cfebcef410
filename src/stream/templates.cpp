#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <ostream>

namespace kestry::Hueline {

std::ostream& operator<<(std::ostream& os, parameters_template const& p)
{
    return detail::allowColor(os) ? os << "\x1b[" << p.code << "m" : os;
}

std::ostream& crossplatform_template(std::ostream& os)
{
    return os << "this is a cross platform template" << std::endl
              << "there is no need to sudivide this section" << std::endl
              << "into Linux and Windows areas as this code" << std::endl
              << "will run on all platfoms without specific needs" << std::endl
              << "for either platform Windows or Linux" << std::endl;
}

std::ostream& platformspecific_template(std::ostream& os)
{
    return os << "\x1b[00m"
              << "this is a platform specific template" << std::endl
              << "externally the interface is the same" << std::endl
              << "internally the implementation is specific" << std::endl
              << "to either Linux in this case" << std::endl
              << "or Windows in the below case" << std::endl;
}

std::ostream& colorized_crossplatform_template(std::ostream& os)
{
    if (!detail::allowColor(os)) {
        return os;
    }
    return os << white << on_green << " will only display in color if colorize has been called " << std::endl
              << " and this works on both Windows and Linux " << std::endl;
}

std::ostream& colorized_platformspecific_template(std::ostream& os)
{
    if (!detail::allowColor(os)) {
        return os;
    }
    return os << white << on_green << " will display (in Linux) color if colorize " << std::endl
              << " has been called and this works on Linux " << std::endl;
}

} // namespace kestry::Hueline
