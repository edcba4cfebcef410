/// \file
/// The string interface as it follows programs of steps, and what can be seen afterwards. The time is made up in
/// the whole program, the library under test included: takes the place of the system library's time.
#pragma once

#include "model/host.hpp"
#include "model/step.hpp"

#include "operations_classic.hpp"

#include <string>
#include <vector>

#include <sys/time.h>
#include <time.h>

namespace hueline::test {

/// What time(2) returns while the library is at work; before and after, the time is right.
inline time_t made_up_time = 0;
inline bool is_time_made_up = false;

} // namespace hueline::test

extern "C" time_t time(time_t* also) noexcept
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    time_t const result = hueline::test::is_time_made_up ? hueline::test::made_up_time : now.tv_sec;
    if (also != nullptr) {
        *also = result;
    }
    return result;
}

namespace hueline::test {

/// Starts at second 0 of 1970, in UTC.
class ClassicLibrary {
public:
    ClassicLibrary() { set_time_zone(0); }
    ClassicLibrary(ClassicLibrary const&) = delete;
    ClassicLibrary& operator=(ClassicLibrary const&) = delete;

    /// Follows a step and says what is seen after it.
    Facts perform(ClassicOperation const& operation, Step const& step)
    {
        program.result = "";
        made_up_time = program.time;
        is_time_made_up = true;
        std::string const thrown = thrown_by([&] { operation.act(program, step); });
        is_time_made_up = false;

        Facts facts;
        facts.push_back({"isUsingColor()", kestry::Hueline::isUsingColor() ? "true" : "false"});
        facts.push_back({"getNoFrillsMode()", kestry::Hueline::getNoFrillsMode() ? "true" : "false"});
        facts.push_back({"isLongDumps()", kestry::HexDump::isLongDumps() ? "true" : "false"});
        add_format(facts, "stream", program.os);
        facts.push_back({"written", program.os.str()});
        facts.push_back({"thrown", thrown});
        facts.push_back({"returned", program.result});
        program.os.str("");
        return facts;
    }

protected:
    ClassicProgram program;
};

/// Every operation, and the host's.
inline std::vector<ClassicOperation> const& operations_of_a_program()
{
    static std::vector<ClassicOperation> const all = with_host_operations<ClassicProgram>(
        classic_operations(), [](ClassicProgram& p, Step const& step) { host_operation(step)->act(p.os, step); });
    return all;
}

} // namespace hueline::test
