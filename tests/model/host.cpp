#include "model/host.hpp"

#include <iomanip>
#include <locale>

namespace hueline::test {

namespace {

// Every digit is a group of its own: 1234 is "1.2.3.4".
class Grouping : public std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};

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
    static std::vector<HostOperation> const operations = {
        {"text", [](std::ostream& os, Step const& step) { os << step.texts.at(0); }},
        {"int", [](std::ostream& os, Step const& step) { os << step.numbers.at(0); }},
        {"char", [](std::ostream& os, Step const& step) { os << static_cast<char>(step.numbers.at(0)); }},
        {"std::endl", [](std::ostream& os, Step const&) { os << std::endl; }},
        {"std::flush", [](std::ostream& os, Step const&) { os << std::flush; }},
        {"std::setw", [](std::ostream& os, Step const& step) { os << std::setw(step.numbers.at(0)); }},
        {"std::setfill",
         [](std::ostream& os, Step const& step) { os << std::setfill(static_cast<char>(step.numbers.at(0))); }},
        {"std::hex", [](std::ostream& os, Step const&) { os << std::hex; }},
        {"std::oct", [](std::ostream& os, Step const&) { os << std::oct; }},
        {"std::dec", [](std::ostream& os, Step const&) { os << std::dec; }},
        {"std::showbase", [](std::ostream& os, Step const&) { os << std::showbase; }},
        {"std::noshowbase", [](std::ostream& os, Step const&) { os << std::noshowbase; }},
        {"std::showpos", [](std::ostream& os, Step const&) { os << std::showpos; }},
        {"std::noshowpos", [](std::ostream& os, Step const&) { os << std::noshowpos; }},
        {"std::uppercase", [](std::ostream& os, Step const&) { os << std::uppercase; }},
        {"std::nouppercase", [](std::ostream& os, Step const&) { os << std::nouppercase; }},
        {"std::left", [](std::ostream& os, Step const&) { os << std::left; }},
        {"std::right", [](std::ostream& os, Step const&) { os << std::right; }},
        {"std::internal", [](std::ostream& os, Step const&) { os << std::internal; }},
        {"imbue a grouping locale",
         [](std::ostream& os, Step const&) { os.imbue(std::locale(std::locale::classic(), new Grouping)); }},
        {"imbue the classic locale", [](std::ostream& os, Step const&) { os.imbue(std::locale::classic()); }},
        {"exceptions", [](std::ostream& os, Step const& step) { os.exceptions(state_of(step.numbers.at(0))); }},
        {"setstate", [](std::ostream& os, Step const& step) { os.setstate(state_of(step.numbers.at(0))); }},
        {"recover",
         [](std::ostream& os, Step const&) {
             os.exceptions(std::ios_base::goodbit);
             os.clear();
         }},
    };
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
