// Random programs of the whole stream interface, followed by the library in a process of its own and
// by a model, and compared after each step: the bytes on standard output and standard error, which
// are any two of terminal, pipe, file, full device and closed descriptor, and all state that can be
// seen. A program that shows a difference is shrunk and printed.
//
// The programs are others in each run; a failure says how to have them again. RapidCheck's own variable makes them more or
// longer:
//
//     RC_PARAMS="seed=7 max_success=20000 max_size=300" ctest -R Model --output-on-failure

#include "kestry/hueline_stream.hpp"

#include "model/comparison.hpp"
#include "model/generators.hpp"
#include "model/stream_library.hpp"
#include "model/stream_model.hpp"
#include "model/tap.hpp"

#include "support/testing.hpp"

#include <rapidcheck.h>

namespace {

using namespace hueline::test;

// The library, in a process of its own.
class Library : public Subject, private StreamLibrary {
public:
    Library() : StreamLibrary(stdout)
    {
        second.rdbuf(std::cout.rdbuf()); // the tap
        advance_clock_by(std::chrono::milliseconds(model_clock_step_ms));
    }
    ~Library() override
    {
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            os->exceptions(std::ios_base::goodbit);
            os->clear();
        }
    }

    Facts perform(Step const& step) override
    {
        return StreamLibrary::perform(operation_called(step.operation, operations_of_a_program()), step);
    }

private:
    Received take_received() override { return {out_tap.take(), err_tap.take() + clog_tap.take(), text_tap.take()}; }

    Tap out_tap{std::cout, true};
    Tap err_tap{std::cerr, false};
    Tap clog_tap{std::clog, false};
    Tap text_tap{text, true};
};

// ---------------------------------------------------------------------------------------------
// Programs
// ---------------------------------------------------------------------------------------------

rc::Gen<Step> random_step()
{
    static rc::Gen<std::size_t> const choice = weighted_choice(operations_of_a_program());
    return rc::gen::exec([] {
        Step step = *random_step_of(operations_of_a_program()[*choice]);
        step.on = *rc::gen::weightedElement<std::string>(
            {{10, "cout"}, {5, "cerr"}, {3, "clog"}, {2, "text"}, {1, "second"}});
        return step;
    });
}

// Brings to light what is hidden until the next rendition: the record, the saved record, the spinners'
// counter.
std::vector<Step> const show_hidden_state = {
    {"stdout and stderr again"},
    {"_setNoFrillsMode", "", {0}},
    {"recover", "cout"},
    {"colorize", "cout"},
    {"adjust", "cout"},
    {"pull", "cout"},
    {"adjust", "cout"},
    {"recover", "cerr"},
    {"colorize", "cerr"},
    {"adjust", "cerr"},
    {"pull", "cerr"},
    {"adjust", "cerr"},
    {"spinner", "text", {}, {"0123456789abcdefghijklmnopqrstuvwxyz", ""}},
};

std::string difference_between_model_and_library(Sinks sinks, std::vector<Step> steps)
{
    steps.insert(steps.end(), show_hidden_state.begin(), show_hidden_state.end());
    StreamModel model(sinks);
    std::vector<Seen> expected;
    for (Step const& step : steps) {
        expected.push_back(model.perform(step));
    }
    return difference(sinks, steps, expected, in_a_child(sinks, steps, [] { return std::make_unique<Library>(); }));
}

TEST(StreamModel, SaysWhatTheLibraryDoesInEveryProgram)
{
    SCOPED_TRACE(again());
    EXPECT_TRUE(rc::check("The model says what the library does", [] {
        Sinks const sinks = *random_sinks();
        std::vector<Step> const steps = *rc::gen::scale(3.0, rc::gen::container<std::vector<Step>>(random_step()));
        std::string const found = difference_between_model_and_library(sinks, steps);
        if (!found.empty()) {
            RC_FAIL(found);
        }
    }));
}

// No operation depends on the luck of the draw: each is performed a few times in each of these places.
struct Place {
    std::string name;
    Sinks sinks;
    std::vector<Step> way;       // there
    std::vector<std::string> on; // the streams of the operation, one after the other
};

void PrintTo(Place const& place, std::ostream* os) { *os << place.name; }

std::vector<Place> const places = {
    {"OnATerminal",
     {},
     {{"colorize", "cout"}, {"colorize", "cerr"}},
     {"cout", "cerr", "cout", "clog", "cout", "cerr", "cout", "cout"}},
    {"OnATerminalWithAFormat",
     {},
     {{"colorize", "cout"},
      {"std::hex", "cout"},
      {"std::showbase", "cout"},
      {"std::setfill", "cout", {'*'}},
      {"std::setw", "cout", {12}}},
     {"cout"}},
    {"OnATerminalFilledOnTheRight",
     {},
     {{"colorize", "cout"},
      {"std::oct", "cout"},
      {"std::showbase", "cout"},
      {"std::showpos", "cout"},
      {"std::uppercase", "cout"},
      {"std::left", "cout"},
      {"std::setfill", "cout", {'.'}},
      {"std::setw", "cout", {12}}},
     {"cout"}},
    {"OnATerminalWhoseLocaleGroups",
     {},
     {{"colorize", "cout"}, {"the global locale groups"}, {"imbue a grouping locale", "cout"}},
     {"cout", "text"}},
    {"OnATerminalAfterChanges",
     {},
     {{"colorize", "cout"},
      {"thin", "cout"},
      {"dark", "cout"},
      {"italic", "cout"},
      {"underline", "cout"},
      {"blink", "cout"},
      {"reverse", "cout"},
      {"red", "cout"},
      {"on_blue", "cout"}},
     {"cout", "text"}},
    {"OnATerminalWithoutColorize", {}, {}, {"cout", "cerr", "cout"}},
    {"OnStandardErrorAlone",
     {Sink::pipe, Sink::terminal},
     {{"colorize", "cout"}, {"colorize", "cerr"}, {"colorize", "clog"}},
     {"cerr", "cout", "clog", "cout"}},
    {"InAPipe", {Sink::pipe, Sink::pipe}, {{"colorize", "cout"}, {"colorize", "cerr"}}, {"cout", "cerr"}},
    {"InFiles", {Sink::file, Sink::file}, {{"colorize", "cout"}, {"colorize", "cerr"}}, {"cout", "cerr"}},
    {"InAStringStream", {}, {{"colorize", "text"}, {"std::setw", "text", {3}}}, {"text", "second", "text"}},
    {"InAStringStreamAfterATerminal",
     {},
     {{"colorize", "text"}, {"colorize", "cout"}, {"adjust", "cout"}},
     {"text", "cout", "second", "cout", "text"}},
    {"InAPipeWithAFormat",
     {Sink::pipe, Sink::pipe},
     {{"colorize", "cout"}, {"std::hex", "cout"}, {"std::setfill", "cout", {'*'}}, {"std::setw", "cout", {12}}},
     {"cout"}},
    {"InNoFrillsMode",
     {},
     {{"colorize", "cout"}, {"colorize", "cerr"}, {"_setNoFrillsMode", "", {1}}},
     {"cout", "cerr"}},
    {"OnABadStream", {}, {{"colorize", "cout"}, {"setstate", "cout", {1}}}, {"cout", "cout"}},
    {"OnAThrowingStream",
     {},
     {{"colorize", "cout"}, {"on_rgb", "cout", {1, 2, 3}}, {"exceptions", "cout", {1}}, {"setstate", "cout", {1}}},
     {"cout", "cout"}},
    {"OnAClosedDescriptor",
     {Sink::closed, Sink::closed},
     {{"colorize", "cout"}, {"colorize", "cerr"}},
     {"cout", "cerr"}},
};

class StreamModelOfEachOperation : public testing::TestWithParam<Place> {};

TEST_P(StreamModelOfEachOperation, SaysWhatTheLibraryDoes)
{
    SCOPED_TRACE(again());
    rc::Random random(seed());
    for (StreamOperation const& each : operations_of_a_program()) {
        std::vector<Step> steps = GetParam().way;
        for (int round = 0; round < 3; ++round) {
            for (std::string const& on : GetParam().on) {
                steps.push_back(random_step_of(each)(random.split(), 50).value());
                steps.back().on = on;
            }
            if (each.arguments.empty()) {
                break; // another round would be the same
            }
        }
        EXPECT_EQ(difference_between_model_and_library(GetParam().sinks, steps), "");
    }
}

INSTANTIATE_TEST_SUITE_P(, StreamModelOfEachOperation, testing::ValuesIn(places),
                         [](auto const& place) { return place.param.name; });

} // namespace
