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
        {200, "text",                     {}, {text},   [](std::ostream& os, Step const& step) { os << step.texts.at(0); }, {}, 25},
        {201, "int",                      {}, {number}, [](std::ostream& os, Step const& step) { os << step.numbers.at(0); }},
        {202, "char",                     {}, {fill},   [](std::ostream& os, Step const& step) { os << static_cast<char>(step.numbers.at(0)); }},
        {203, "std::endl",                {}, {},       [](std::ostream& os, Step const&) { os << std::endl; }},
        {204, "std::flush",               {}, {},       [](std::ostream& os, Step const&) { os << std::flush; }},
        {205, "std::setw",                {}, {width},  [](std::ostream& os, Step const& step) { os << std::setw(step.numbers.at(0)); }, {}, 24},
        {206, "std::setfill",             {}, {fill},   [](std::ostream& os, Step const& step) { os << std::setfill(static_cast<char>(step.numbers.at(0))); }},
        {207, "std::hex",                 {}, {},       [](std::ostream& os, Step const&) { os << std::hex; }},
        {208, "std::oct",                 {}, {},       [](std::ostream& os, Step const&) { os << std::oct; }},
        {209, "std::dec",                 {}, {},       [](std::ostream& os, Step const&) { os << std::dec; }},
        {210, "std::showbase",            {}, {},       [](std::ostream& os, Step const&) { os << std::showbase; }},
        {211, "std::noshowbase",          {}, {},       [](std::ostream& os, Step const&) { os << std::noshowbase; }},
        {212, "std::showpos",             {}, {},       [](std::ostream& os, Step const&) { os << std::showpos; }},
        {213, "std::noshowpos",           {}, {},       [](std::ostream& os, Step const&) { os << std::noshowpos; }},
        {214, "std::uppercase",           {}, {},       [](std::ostream& os, Step const&) { os << std::uppercase; }},
        {215, "std::nouppercase",         {}, {},       [](std::ostream& os, Step const&) { os << std::nouppercase; }},
        {216, "std::left",                {}, {},       [](std::ostream& os, Step const&) { os << std::left; }},
        {217, "std::right",               {}, {},       [](std::ostream& os, Step const&) { os << std::right; }},
        {218, "std::internal",            {}, {},       [](std::ostream& os, Step const&) { os << std::internal; }},
        {219, "imbue a grouping locale",  {}, {},       [](std::ostream& os, Step const&) { os.imbue(grouping_locale()); }, {}, 3},
        {220, "imbue the classic locale", {}, {},       [](std::ostream& os, Step const&) { os.imbue(std::locale::classic()); }},
        {221, "exceptions",               {}, {states}, [](std::ostream& os, Step const& step) { os.exceptions(state_of(step.numbers.at(0))); }},
        {222, "setstate",                 {}, {states}, [](std::ostream& os, Step const& step) { os.setstate(state_of(step.numbers.at(0))); }},
        {223, "recover",                  {}, {},       [](std::ostream& os, Step const&) {
            os.exceptions(std::ios_base::goodbit);
            os.clear();
        }, {}, 25},
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
