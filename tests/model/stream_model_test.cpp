// Random programs of the whole stream interface, every operation in several places, and every short program of operations
// that belong together, followed by the library in a process of its own and by a model, and compared after each step: the
// bytes on standard output and standard error, which are any two of terminal, pipe, file, full device and closed
// descriptor, and all state that can be seen. A random program that shows a difference is shrunk and printed.
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

    Tap out_tap{std::cout, Marks::flushes};
    Tap err_tap{std::cerr, Marks::pieces};
    Tap clog_tap{std::clog, Marks::pieces};
    Tap text_tap{text, Marks::flushes};
};

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
    StreamModel model(sinks, Marks::pieces);
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

// Operations without arguments, on a stream, and others.
std::vector<Step> steps_on(std::string const& stream, std::vector<std::string> const& operations,
                           std::vector<Step> others = {})
{
    for (std::string const& operation : operations) {
        others.push_back({operation, stream});
    }
    return others;
}

std::vector<Step> const colorized = {{"colorize", "cout"}, {"colorize", "cerr"}, {"colorize", "clog"}};

// No operation depends on the luck of the draw: each is performed a few times in each of these places.
struct Place {
    std::string name;
    Sinks sinks;
    std::vector<Step> way;       // there
    std::vector<std::string> on; // the streams of the operation, one after the other
};

void PrintTo(Place const& place, std::ostream* os) { *os << place.name; }

Place const places[] = {
    {"OnATerminal", {}, colorized, {"cout", "cerr", "cout", "clog", "cout", "cerr", "cout", "cout"}},
    {"OnATerminalWithAFormat",
     {},
     steps_on("cout", {"colorize", "std::hex", "std::showbase"},
              {{"std::setfill", "cout", {'*'}}, {"std::setw", "cout", {12}}}),
     {"cout"}},
    {"OnATerminalFilledOnTheRight",
     {},
     steps_on("cout", {"colorize", "std::oct", "std::showbase", "std::showpos", "std::uppercase", "std::left"},
              {{"std::setfill", "cout", {'.'}}, {"std::setw", "cout", {12}}}),
     {"cout"}},
    {"OnATerminalWhoseLocaleGroups",
     {},
     steps_on("cout", {"colorize", "the global locale groups", "imbue a grouping locale"}),
     {"cout", "text"}},
    {"OnATerminalAfterChanges",
     {},
     steps_on("cout", {"colorize", "thin", "dark", "italic", "underline", "blink", "reverse", "red", "on_blue"}),
     {"cout", "text"}},
    {"OnATerminalWithoutColorize", {}, {}, {"cout", "cerr", "cout"}},
    {"OnStandardErrorAlone", {Sink::pipe, Sink::terminal}, colorized, {"cerr", "cout", "clog", "cout"}},
    {"InAPipe", on_pipes, colorized, {"cout", "cerr"}},
    {"InFiles", {Sink::file, Sink::file}, colorized, {"cout", "cerr"}},
    {"InAStringStream", {}, {{"colorize", "text"}, {"std::setw", "text", {3}}}, {"text", "second", "text"}},
    {"InAStringStreamAfterATerminal",
     {},
     steps_on("cout", {"colorize", "adjust"}, {{"colorize", "text"}}),
     {"text", "cout", "second", "cout", "text"}},
    {"InAPipeWithAFormat",
     on_pipes,
     steps_on("cout", {"colorize", "std::hex"}, {{"std::setfill", "cout", {'*'}}, {"std::setw", "cout", {12}}}),
     {"cout"}},
    {"InNoFrillsMode", {}, steps_on("", {"open NoFrillsMode"}, colorized), {"cout", "cerr"}},
    {"OnABadStream", {}, {{"colorize", "cout"}, {"setstate", "cout", {1}}}, {"cout", "cout"}},
    {"OnAThrowingStream",
     {},
     {{"colorize", "cout"}, {"on_rgb", "cout", {1, 2, 3}}, {"exceptions", "cout", {1}}, {"setstate", "cout", {1}}},
     {"cout", "cout"}},
    {"BesideAFullDevice", {Sink::full, Sink::terminal}, colorized, {"cerr", "cout", "clog"}},
    {"OnAClosedDescriptor", {Sink::closed, Sink::closed}, colorized, {"cout", "cerr"}}};

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

// Whether any number will do: not how long it takes, and not how much is drawn.
bool takes_any_number(StreamOperation const& operation)
{
    using enum Argument;
    static std::set<Argument> const others = {byte,   two_bytes,    item,    width,         fill,
                                              states, milliseconds, seconds, steps_of_a_bar};
    return std::none_of(operation.arguments.begin(), operation.arguments.end(),
                        [](Argument each) { return others.count(each) != 0; });
}

// The example of an operation, with something else in place of each of its numbers and texts.
std::vector<Step> examples_with_edges(StreamOperation const& operation)
{
    static int const numbers[] = {0,    1,     2,     3,     4,     5,      6,       7,           8,       9,   10,
                                  15,   16,    17,    99,    100,   127,    128,     255,         256,     257, 999,
                                  1000, 32767, 32768, 65535, 65536, 65537,  1000000, INT_MAX - 1, INT_MAX, -1,  -7,
                                  -8,   -10,   -99,   -256,  -1000, -65535, -65536,  INT_MIN + 1, INT_MIN};
    static std::size_t const sizes[] = {0,    1,    7,    8,    9,    10,   11,   12,   15,    16,    17,    18,
                                        19,   20,   21,   22,   31,   32,   33,   40,   63,    64,    65,    99,
                                        4095, 4096, 4097, 8190, 8191, 8192, 8193, 8194, 16383, 16384, 16385, 20000};
    Step const example = operation.step_of_example();
    std::vector<Step> steps;
    for (std::size_t i = 0; takes_any_number(operation) && i < example.numbers.size(); ++i) {
        for (int const number : numbers) {
            steps.push_back(example);
            steps.back().numbers[i] = number;
        }
    }
    for (std::size_t i = 0; i < example.texts.size(); ++i) {
        for (std::size_t const size : sizes) {
            steps.push_back(example);
            std::string& text = steps.back().texts[i];
            for (text = ""; text.size() < size;) {
                text += static_cast<char>('a' + text.size() % 23);
            }
        }
        for (char const* const text :
             {"\xff\x80\x7f\x1b[31m", "123456789\u00e9", "\u00e9t\u00e9", "a\n\tb\r", "  red "}) {
            steps.push_back(example);
            steps.back().texts[i] = std::string(1, '\0') + text + std::string(1, '\0');
        }
    }
    return steps;
}

TEST(StreamModelOfEdges, SaysWhatEachOperationDoesWithTheLeastAndTheMost)
{
    for (StreamOperation const& each : stream_operations()) {
        std::vector<Step> steps = {{"colorize", "cout"}};
        for (Step step : examples_with_edges(each)) {
            step.on = "cout";
            steps.push_back(step);
        }
        EXPECT_EQ(difference_between_model_and_library({}, steps), "");
    }
}

// Operations that have much to do with each other. Each sequence of so many of them is tried: random programs of all
// operations come to it once in a hundred years.
struct Family {
    std::string name;
    Sinks sinks;
    std::vector<Step> way; // there
    std::size_t length;
    std::vector<Step> steps;
};

void PrintTo(Family const& family, std::ostream* os) { *os << family.name; }

std::vector<Step> const closing = {{"close a guard", "", {0}}, {"close a guard", "", {1}}};
std::vector<Step> const setting_frills = {{"_setNoFrillsMode", "", {0}}, {"_setNoFrillsMode", "", {1}}};
std::vector<std::string> const indicator = {"#", ".", "[", "]", "abcdefg", "!"};

std::vector<Family> const families = {
    {"ColorModes",
     {},
     colorized,
     4,
     steps_on("cout", {"open UseColorMode", "open NoColorMode", "push", "colorize", "nocolorize"},
              steps_on("text", {"push"}, closing))},
    {"ColorModesBesideATerminal",
     {Sink::pipe, Sink::terminal},
     colorized,
     4,
     steps_on("cout", {"open UseColorMode", "open NoColorMode", "push"},
              steps_on("cerr", {"adjust"}, {closing[0], closing[1], setting_frills[0], setting_frills[1]}))},
    {"FrillsModes",
     {},
     colorized,
     4,
     steps_on("cout", {"open NoFrillsMode", "open UseFrillsMode", "red"},
              steps_on("text", {"adjust"}, {closing[0], closing[1], setting_frills[0], setting_frills[1]}))},
    {"Gates",
     {Sink::terminal, Sink::pipe},
     colorized,
     3,
     steps_on(
         "cout",
         {"stdout = nullptr", "stderr = nullptr", "stdout and stderr again", "push", "color_mode_state",
          "frills_mode_state", "nocolorize"},
         steps_on(
             "cerr", {"push"},
             {{"color_mode_state", "clog"}, {"push", "text"}, {"push", "second"}, {"colorize word =", "cout", {-1}}}))},
    {"Attributes",
     {},
     colorized,
     3,
     steps_on("cout", {"bold", "thin", "dark", "lite", "italic", "noitalic", "underline", "nounderline", "blink",
                       "noblink", "reverse", "noreverse"})},
    {"SavedRecords",
     {},
     steps_on("cout", {"colorize", "underline", "reverse"}),
     4,
     steps_on("cout", {"push", "pull", "adjust", "reset", "red", "italic", "dark"}, {{"on_rgb", "cout", {4, 5, 6}}})},
    {"RecordsOfSeveralStreams",
     {},
     colorized,
     3,
     steps_on("cout", {"on_green", "pull", "normal", "adjust"},
              steps_on("cerr", {"push", "reverse"},
                       steps_on("text", {"yellow", "thin", "blink", "push", "pull", "reset"},
                                {{"on_white", "second"}, {"bold", "clog"}, {"color", "cerr", {200}}})))},
    {"Formats",
     {},
     {{"colorize", "cout"}, {"std::setfill", "cout", {'*'}}},
     3,
     steps_on("cout",
              {"std::hex", "std::dec", "std::showbase", "std::showpos", "std::left", "std::internal", "csi::cls",
               "csi::cr", "csi::dsr", "normal", "color_mode_state"},
              {{"std::setw", "cout", {6}},
               {"csi::cha", "cout", {42}},
               {"csi::cup", "cout", {10, -26}},
               {"rgb", "cout", {255, -1, 0}},
               {"parameters_template", "cout", {10}}})},
    {"Indicators",
     on_pipes,
     {},
     3,
     steps_on("text", {"std::hex", "std::showpos", "recover"},
              {{"spinner", "cerr", {}, {"|/-\\", "busy "}},
               {"spinner", "cerr", {}, {"", ""}},
               {"status_line", "cerr", {1, 0, 3}, indicator},
               {"status_line", "text", {0, 0, 3}, indicator},
               {"status_line", "text", {2, 0, 5}, {"", ".", "", "]", "", "!"}},
               {"status_line", "cerr", {0, 0, 0}, {"#", ".", "", "", "abc", "!"}},
               {"progress_meter", "cerr", {1, 0, 3}, {"label", "(", ")", "="}},
               {"progress_meter", "text", {49, 0, 49}, {"", "", "", ""}},
               {"std::setw", "cerr", {5}},
               {"setstate", "text", {2}},
               setting_frills[1]})},
    {"Failures",
     {},
     colorized,
     3,
     steps_on("cout", {"recover", "red", "thin", "push", "pull", "reset", "underline"},
              {{"setstate", "cout", {1}},
               {"setstate", "cout", {2}},
               {"exceptions", "cout", {3}},
               {"csi::delay", "cout", {25}},
               {"on_cyan", "cerr"},
               {"spinner", "cout", {}, {"abcdefg", "!"}},
               {"progress_meter", "cout", {1, 0, 3}, {"label", "(", ")", "="}}})}};

// Numbers below count, in an order in which each sequence of that length stands somewhere: de Bruijn's, put together of
// Lyndon words. The start comes once more at the end.
std::vector<std::size_t> all_sequences(std::size_t count, std::size_t length)
{
    std::vector<std::size_t> all;
    std::vector<std::size_t> word = {0};
    while (!word.empty()) {
        if (length % word.size() == 0) {
            all.insert(all.end(), word.begin(), word.end());
        }
        for (std::size_t const period = word.size(); word.size() < length;) {
            word.push_back(word[word.size() - period]);
        }
        while (!word.empty() && word.back() == count - 1) {
            word.pop_back();
        }
        if (!word.empty()) {
            ++word.back();
        }
    }
    std::vector<std::size_t> const start(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(length));
    all.insert(all.end(), start.begin(), start.end());
    return all;
}

class StreamModelOfAFamily : public testing::TestWithParam<Family> {
protected:
    // In programs of a length that a person can follow.
    static void follow(std::vector<std::size_t> const& order)
    {
        Family const& family = GetParam();
        std::size_t const length = 100;
        for (std::size_t start = 0; start < order.size(); start += length) {
            std::vector<Step> steps = family.way;
            std::size_t const end = std::min(start + length + family.length, order.size());
            for (std::size_t i = start; i < end; ++i) {
                steps.push_back(family.steps[order[i]]);
            }
            ASSERT_EQ(difference_between_model_and_library(family.sinks, steps), "");
        }
    }
};

TEST_P(StreamModelOfAFamily, SaysWhatTheLibraryDoesInEachSequence)
{
    follow(all_sequences(GetParam().steps.size(), GetParam().length));
}

TEST_P(StreamModelOfAFamily, SaysWhatTheLibraryDoesInAnyOrder)
{
    SCOPED_TRACE(again());
    std::mt19937_64 random(seed());
    std::vector<std::size_t> order(2000);
    std::generate(order.begin(), order.end(), [&random] { return random() % GetParam().steps.size(); });
    follow(order);
}

INSTANTIATE_TEST_SUITE_P(, StreamModelOfAFamily, testing::ValuesIn(families),
                         [](auto const& family) { return family.param.name; });

} // namespace
