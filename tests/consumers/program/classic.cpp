#include <kestry/hueline_classic.hpp>

std::string failed_in_classic_red();

std::string failed_in_classic_red()
{
    kestry::Hueline color;
    color.useColor(true);
    return kestry::Hueline::color(kestry::HexColor::red, "failed") + kestry::Hueline::color(kestry::HexColor::reset);
}
