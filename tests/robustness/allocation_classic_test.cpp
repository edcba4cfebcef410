// Memory that runs out at each allocation in turn, in each function of the string interface.

#include "kestry/hueline_classic.hpp"

#include "support/buffers.hpp"
#include "support/allocations.hpp"
#include "support/modes.hpp"
#include "support/testing.hpp"

#include "operations_classic.hpp"

namespace {

using namespace hueline::test;
using namespace kestry;

// Longer than a string that needs no memory of its own.
std::string const text = "a text of thirty-two characters.";

// Shows the text that the library has put into an object, as a derived class may.
struct Copied : Hueline {
    explicit Copied(Hueline const& copied) : Hueline(copied) {}
    std::string shown() const { return _text; }
};

struct Dump : HexDump {
    using HexDump::HexDump;
    std::string shown() const { return _text; }
};

struct Case {
    std::string name;
    std::function<std::string()> call;
    std::string result; // while colour is in use
};

std::string masked_time(std::string stamp)
{
    for (char& c : stamp.erase(0, 5)) { // after the sequence
        c = c >= '0' && c <= '9' ? 'n' : c;
    }
    return stamp;
}

// Every function and dump of the table, and what it has no result for.
std::vector<Case> cases()
{
    std::vector<Case> all = {
        {"current_time()", [] { return masked_time(Hueline::current_time()); }, "[nnnn-nn-nn.nn:nn:nn]"},
        {"copy",
         [] {
             Dump const dump(text);
             return Dump(dump).shown().substr(0, 8);
         },
         R"(\e[32m61 )"},
        {"copy of the Hueline alone", [] { return Copied(Dump(text)).shown().substr(0, 8); }, R"(\e[32m61 )"},
    };
    for (ClassicOperation const& each : classic_operations()) {
        if (!each.example.colored.empty()) {
            auto const call = [&each, step = each.step_of_example()] {
                ClassicProgram program;
                each.act(program, step);
                return program.objects.empty() ? program.result : Copied(*program.objects.back()).shown();
            };
            all.push_back({each.name, call, each.example.colored});
        }
    }
    return all;
}

// What is wrong when one allocation of the call fails; tells in was_short whether there was one to fail.
std::string findings_of(Case const& tested, Shortage shortage_of_call, bool& was_short)
{
    long const blocks_before = blocks_in_use;
    std::string findings;
    {
        std::string result;
        bool threw = false;
        {
            RunShort const scarce(shortage_of_call);
            try {
                result = tested.call();
            } catch (std::bad_alloc const&) {
                threw = true;
            }
        }
        was_short = ran_short;
        if (threw != was_short) {
            findings += threw ? "std::bad_alloc in plenty; " : "no std::bad_alloc; ";
        }
        if (!threw && readable(result) != tested.result) {
            findings += "returned " + readable(result) + "; ";
        }
    }
    if (!Hueline::isUsingColor() || Hueline::getNoFrillsMode() || HexDump::isLongDumps()) {
        findings += "the switches changed; ";
    }
    if (readable(tested.call()) != tested.result) {
        findings += "the next call returned " + readable(tested.call()) + "; ";
    }
    long const blocks_now = blocks_in_use - (findings.capacity() > 15 ? 1 : 0); // the findings are in memory themselves
    if (blocks_now != blocks_before) {
        findings += "memory was lost; ";
    }
    return findings;
}

TEST(AllocationClassic, FailureOfEachIsHarmless)
{
    for (Case const& tested : cases()) {
        SCOPED_TRACE(tested.name);
        for (bool const lasting : {false, true}) {
            auto const run = on_pipe([&] {
                Hueline switches;
                switches.useColor(true);
                tested.call(); // what the standard library keeps from now on is there
                int count = 0;
                for (bool was_short = true; was_short; ++count) {
                    std::string const findings = findings_of(tested, {count, lasting}, was_short);
                    if (!findings.empty()) {
                        report("allocation " + std::to_string(count) + ": " + findings);
                    }
                }
                bool const needs_memory = tested.call().size() > 15;
                if (needs_memory && count == 1) {
                    report("nothing was allocated");
                }
            });
            EXPECT_EQ(run.report, "");
            EXPECT_EQ(run.status, 0);
        }
    }
}

TEST(AllocationOfAnInsertion, IsNotNeeded)
{
    Dump const dump("AB");
    SmallBuffer buffer;
    std::ostream os(&buffer);
    {
        RunShort const scarce({0, true});
        os << dump;
    }
    EXPECT_EQ(buffer.text(), "41 42 ");
    EXPECT_TRUE(os.good());
}

TEST(AllocationOfAnAssignment, FailureLeavesTheObjectAsItWas)
{
    InMode const mode(Mode::on);
    {
        Hueline on;     // puts colour on at its end
        on.flipColor(); // remembers that colour was in use, and turns it off
        {
            Dump const off(text); // puts colour off at its end, and was never flipped
            EXPECT_TRUE(runs_out_of_memory([&] { on = off; }));
        }
        on.unflipColor(); // throws if the object has become one that was never flipped
        EXPECT_TRUE(Hueline::isUsingColor());
        Hueline::_useColor = false;
    }
    EXPECT_TRUE(Hueline::isUsingColor());
}

} // namespace
