#include "model/host.hpp"

#include "support/grouping.hpp"

#include <iomanip>
#include <locale>

namespace hueline::test {

namespace {

std::ios_base::iostate state_of(int number)
{
    auto state = std::ios_base::goodbit;
    if (number & 1) {
        state |= std::ios_base::badbit;
    }
    if (number & 2) {
        state |= std::ios_base::failbit;
    }
    return state;
}

} // namespace

std::vector<HostOperation> const& host_operations()
{
    using enum Argument;
    // clang-format off
    static std::vector<HostOperation> const operations = {
        {"text",             25, {text},   [](std::ostream& os, Step const& step) { os << step.texts.at(0); }},
        {"int",               5, {number}, [](std::ostream& os, Step const& step) { os << step.numbers.at(0); }},
        {"char",              5, {fill},   [](std::ostream& os, Step const& step) { os << static_cast<char>(step.numbers.at(0)); }},
        {"std::endl",         5, {},       [](std::ostream& os, Step const&) { os << std::endl; }},
        {"std::flush",        5, {},       [](std::ostream& os, Step const&) { os << std::flush; }},
        {"std::setw",        24, {width},  [](std::ostream& os, Step const& step) { os << std::setw(step.numbers.at(0)); }},
        {"std::setfill",      5, {fill},   [](std::ostream& os, Step const& step) { os << std::setfill(static_cast<char>(step.numbers.at(0))); }},
        {"std::hex",          5, {},       [](std::ostream& os, Step const&) { os << std::hex; }},
        {"std::oct",          5, {},       [](std::ostream& os, Step const&) { os << std::oct; }},
        {"std::dec",          5, {},       [](std::ostream& os, Step const&) { os << std::dec; }},
        {"std::showbase",     5, {},       [](std::ostream& os, Step const&) { os << std::showbase; }},
        {"std::noshowbase",   5, {},       [](std::ostream& os, Step const&) { os << std::noshowbase; }},
        {"std::showpos",      5, {},       [](std::ostream& os, Step const&) { os << std::showpos; }},
        {"std::noshowpos",    5, {},       [](std::ostream& os, Step const&) { os << std::noshowpos; }},
        {"std::uppercase",    5, {},       [](std::ostream& os, Step const&) { os << std::uppercase; }},
        {"std::nouppercase",  5, {},       [](std::ostream& os, Step const&) { os << std::nouppercase; }},
        {"std::left",         5, {},       [](std::ostream& os, Step const&) { os << std::left; }},
        {"std::right",        5, {},       [](std::ostream& os, Step const&) { os << std::right; }},
        {"std::internal",     5, {},       [](std::ostream& os, Step const&) { os << std::internal; }},
        {"imbue a grouping locale",  3, {}, [](std::ostream& os, Step const&) { os.imbue(grouping_locale()); }},
        {"imbue the classic locale", 5, {}, [](std::ostream& os, Step const&) { os.imbue(std::locale::classic()); }},
        {"exceptions",        5, {states}, [](std::ostream& os, Step const& step) { os.exceptions(state_of(step.numbers.at(0))); }},
        {"setstate",          5, {states}, [](std::ostream& os, Step const& step) { os.setstate(state_of(step.numbers.at(0))); }},
        {"recover",          25, {},       [](std::ostream& os, Step const&) {
            os.exceptions(std::ios_base::goodbit);
            os.clear();
        }},
    };
    // clang-format on
    return operations;
}

HostOperation const* host_operation(Step const& step)
{
    for (HostOperation const& operation : host_operations()) {
        if (operation.name == step.operation) {
            return &operation;
        }
    }
    return nullptr;
}

} // namespace hueline::test
