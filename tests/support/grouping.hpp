/// \file
/// A locale that puts every digit of a number into a group of its own: 1234 is "1.2.3.4".
#pragma once

#include <locale>
#include <string>

namespace hueline::test {

inline std::locale grouping_locale()
{
    class Grouping : public std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    return std::locale(std::locale::classic(), new Grouping);
}

/// Makes it the global locale, and so that of every stream that is constructed, for a scope.
class GroupedDigits {
public:
    GroupedDigits() : before(std::locale::global(grouping_locale())) {}
    GroupedDigits(GroupedDigits const&) = delete;
    GroupedDigits& operator=(GroupedDigits const&) = delete;
    ~GroupedDigits() { std::locale::global(before); }

private:
    std::locale before;
};

} // namespace hueline::test
