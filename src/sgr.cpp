#include "sgr.hpp"

namespace kestry::detail {

std::string sgr_string(std::int64_t number)
{
    return make_string(3 + decimal_size(number), [=](char* out) { put_sgr(out, "\x1b[", number); });
}

std::string true_color_string(char const (&introducer)[8], int r, int g, int b)
{
    return make_string(10 + decimal_size(r) + decimal_size(g) + decimal_size(b),
                       [&introducer, r, g, b](char* out) { put_sgr(out, introducer, r, g, b); });
}

} // namespace kestry::detail
