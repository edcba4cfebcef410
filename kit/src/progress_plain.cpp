#include "progress_display.hpp"
#include "progress_numbers.hpp"

namespace kestry::kit::detail {

namespace {

std::string named(progress_facts const& facts)
{
    return facts.message.empty() ? std::string() : std::string(facts.message) + ": ";
}

// "30%, 30 of 100", or "30" of a length that is not known.
std::string reached(progress_facts const& facts)
{
    std::string position = amount(facts.position, facts.counted);
    if (facts.length == progress::unknown) {
        return position;
    }
    return std::to_string(percent(facts.position, facts.length)) + "%, " + position + " of " +
           amount(facts.length, facts.counted);
}

} // namespace

std::string plain_start(progress_facts const& facts)
{
    bool const counts = facts.length != progress::unknown || facts.position != 0;
    return named(facts) + (counts ? reached(facts) : "started");
}

std::string plain_line(progress_facts const& facts)
{
    switch (facts.state) {
    case progress_state::finished: {
        bool const counts = facts.position != 0;
        return named(facts) + "done, " + (counts ? amount(facts.position, facts.counted) + " " : "") + "in " +
               time_span(facts.elapsed);
    }
    case progress_state::abandoned:
        return named(facts) + "stopped at " + reached(facts);
    case progress_state::active:
        break;
    }
    std::string line = named(facts) + reached(facts) + ", " + speed(facts.rate, facts.counted);
    if (facts.length != progress::unknown) {
        line += ", " + time_left(facts.left) + " left";
    }
    return line;
}

} // namespace kestry::kit::detail
