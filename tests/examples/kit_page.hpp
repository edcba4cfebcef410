/// \file
/// The blocks and tables of docs/kit.md, as kit_page.awk finds them, and what they take for granted.
#pragma once

#include "kestry/kit/hexview.hpp"
#include "kestry/kit/line.hpp"
#include "kestry/kit/policy.hpp"
#include "kestry/kit/progress.hpp"
#include "kestry/kit/style.hpp"
#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

namespace hueline::test::kit_page {

/// A row of a table: an expression, what it is, and what the page says.
struct Check {
    std::string expression;
    std::string (*value)() = nullptr;
    std::string expected;
};

/// A block, and what the page says it writes.
struct Run {
    std::string name;
    void (*run)() = nullptr;
    std::string expected;
};

std::vector<Check> checks();
std::vector<Run> runs();
void check_facts(); ///< Runs the blocks that say what holds.

namespace {

using namespace kestry::kit;

[[maybe_unused]] constexpr auto error = fg(red) | bold;
[[maybe_unused]] color_policy const policy({}, color_environment{});
[[maybe_unused]] std::string const name = "ttyS0";
[[maybe_unused]] std::string_view const when = "always";
[[maybe_unused]] int const code = 5;
[[maybe_unused]] std::uint64_t const size = 1 << 20;
[[maybe_unused]] std::vector<std::string> const names = {"one", "two"};
[[maybe_unused]] std::vector<std::string> const cells = {"one", "two"};
[[maybe_unused]] std::ostream& log = std::clog;
[[maybe_unused]] char buffer[16];
[[maybe_unused]] progress::multi_progress group({.shown = progress::mode::off});

[[maybe_unused]] void usage() {}
[[maybe_unused]] void hash(std::string const&) {}
[[maybe_unused]] std::size_t next(char (&)[16]) { return 0; }

[[maybe_unused]] std::string shown(std::string const& text) { return readable(text); }
[[maybe_unused]] std::string shown(std::size_t number) { return std::to_string(number); }
template <class... Pieces>
std::string shown(styled_text<Pieces...> const& text)
{
    return readable(to_string(text));
}
[[maybe_unused]] std::string first_line(hex_view const& view)
{
    std::string const rows = to_string(view);
    return rows.substr(0, rows.find('\n'));
}

} // namespace

} // namespace hueline::test::kit_page
