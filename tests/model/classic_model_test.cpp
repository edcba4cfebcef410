// Random programs of the whole string interface, followed by the library in a process of its own
// and by a model, and compared after each step: what is returned, thrown and written, and all state
// that can be seen. A program that shows a difference is shrunk and printed.
//
// The programs are others in each run; a failure says how to have them again. RapidCheck's own variable makes them more or
// longer:
//
//     RC_PARAMS="seed=7 max_success=20000 max_size=300" ctest -R Model --output-on-failure

#include "kestry/hueline_classic.hpp"

#include "model/classic_library.hpp"
#include "model/classic_model.hpp"
#include "model/comparison.hpp"
#include "model/generators.hpp"

#include "support/testing.hpp"

#include <rapidcheck.h>

namespace {

using namespace hueline::test;

// The library, in a process of its own.
class Library : public Subject {
public:
    Facts perform(Step const& step) override
    {
        return library.perform(operation_called(step.operation, operations_of_a_program()), step);
    }

private:
    ClassicLibrary library;
};

// Programs

rc::Gen<Step> random_step()
{
    static rc::Gen<std::size_t> const choice = weighted_choice(operations_of_a_program());
    return rc::gen::exec([] { return *random_step_of(operations_of_a_program()[*choice]); });
}

// Brings to light what no-frills mode hides.
Step const show_hidden_state = {"setNoFrillsMode", "", {0}};

std::string difference_between_model_and_library(std::vector<Step> steps)
{
    steps.push_back(show_hidden_state);
    ClassicModel model;
    std::vector<Seen> expected;
    for (Step const& step : steps) {
        expected.push_back(model.perform(step));
    }
    Sinks const nothing_is_written = on_pipes;
    return difference(nothing_is_written, steps, expected,
                      in_a_child(nothing_is_written, steps, [] { return std::make_unique<Library>(); }));
}

TEST(ClassicModel, SaysWhatTheLibraryDoesInEveryProgram)
{
    SCOPED_TRACE(again());
    EXPECT_TRUE(rc::check("The model says what the library does", [] {
        std::vector<Step> const steps = *rc::gen::scale(3.0, rc::gen::container<std::vector<Step>>(random_step()));
        std::string const found = difference_between_model_and_library(steps);
        if (!found.empty()) {
            RC_FAIL(found);
        }
    }));
}

// No operation depends on the luck of the draw: each is performed a few times in each of these modes.
struct Mode {
    std::string name;
    std::vector<Step> way; // there
};

void PrintTo(Mode const& mode, std::ostream* os) { *os << mode.name; }

std::vector<Mode> const modes = {
    {"InColour", {{"useColor", "", {0, 1}}}},
    {"InColourWithLongDumps",
     {{"useColor", "", {0, 1}}, {"HexDump::_longDumps =", "", {1}}, {"the global locale groups"}}},
    {"WithoutColour", {}},
    {"InNoFrillsMode", {{"useColor", "", {0, 1}}, {"setNoFrillsMode", "", {1}}}},
};

class ClassicModelOfEachOperation : public testing::TestWithParam<Mode> {};

TEST_P(ClassicModelOfEachOperation, SaysWhatTheLibraryDoes)
{
    SCOPED_TRACE(again());
    rc::Random random(seed());
    for (ClassicOperation const& each : operations_of_a_program()) {
        std::vector<Step> steps = GetParam().way;
        for (int i = 0; i < 30; ++i) {
            steps.push_back(random_step_of(each)(random.split(), 50).value());
            steps.push_back({"<<", "", {i + 1}}); // a dump, if it made one
        }
        EXPECT_EQ(difference_between_model_and_library(steps), "");
    }
}

INSTANTIATE_TEST_SUITE_P(, ClassicModelOfEachOperation, testing::ValuesIn(modes),
                         [](auto const& mode) { return mode.param.name; });

} // namespace
