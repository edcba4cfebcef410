#include "kestry/hueline_classic.hpp"

#include <ctime>

namespace kestry {

std::string Hueline::time_stamp(std::string const& text) { return color(HexColor::cyan, text); }

std::string Hueline::current_time()
{
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    if (std::tm const* const broken_down = std::localtime(&now)) {
        local = *broken_down; // at once: the next call of localtime overwrites it
    }
    // If a locale's time does not fit, what strftime has written so far is unspecified: it ends all the same.
    char stamp[80] = {};
    std::strftime(stamp, sizeof stamp, "[%Y-%m-%d.%X]", &local);
    stamp[sizeof stamp - 1] = '\0';
    return time_stamp(stamp);
}

} // namespace kestry
