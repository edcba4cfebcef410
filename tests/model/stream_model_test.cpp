// Random programs of the whole stream interface, followed by the library in a process of its own and
// by a model, and compared after each step: the bytes on standard output and standard error, which
// are any two of terminal, pipe, file, full device and closed descriptor, and all state that can be
// seen. A program that shows a difference is shrunk and printed.
//
// The programs are the same in each run. RapidCheck's own variable makes them others, more or longer:
//
//     RC_PARAMS="seed=7 max_success=20000 max_size=300" ctest -R Model --output-on-failure

#include "kestry/hueline_stream.hpp"

#include "model/comparison.hpp"
#include "model/generators.hpp"
#include "model/host.hpp"
#include "model/stream_model.hpp"
#include "model/tap.hpp"

#include "stream/isatty_calls.hpp"
#include "stream/system_clock.hpp"

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <iostream>
#include <iterator>
#include <list>
#include <locale>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

// ---------------------------------------------------------------------------------------------
// The library
// ---------------------------------------------------------------------------------------------

using Guard = std::variant<std::unique_ptr<UseColorMode>, std::unique_ptr<NoColorMode>, std::unique_ptr<NoFrillsMode>,
                           std::unique_ptr<UseFrillsMode>>;

// The place of the colorize word among the words of a stream, which the library does not tell.
int find_colorize_word()
{
    std::ostringstream os;
    colorize(os);
    int const end = std::ios_base::xalloc();
    for (int i = 0; i < end; ++i) {
        if (os.iword(i) == 1) {
            return i;
        }
    }
    return end; // there is none
}

class Library : public Subject {
public:
    Library() { advance_clock_by(std::chrono::milliseconds(model_clock_step_ms)); }
    ~Library() override
    {
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            os->exceptions(std::ios_base::goodbit);
            os->clear();
        }
    }

    Facts perform(Step const& step) override;

    std::ostream& stream(std::string const& name);

    std::list<Guard> guards;
    std::string result; // of a function that returns a string
    int word = find_colorize_word();
    std::FILE* const out = stdout;
    std::FILE* const err = stderr;

private:
    Tap out_tap{std::cout, true};
    Tap err_tap{std::cerr, false};
    Tap clog_tap{std::clog, false};
    std::ostringstream text;
    Tap text_tap{text, true};
    std::ostream second{std::cout.rdbuf()};
};

// ---------------------------------------------------------------------------------------------
// Operations
// ---------------------------------------------------------------------------------------------

using Manipulator = std::ostream& (*)(std::ostream&);
using Action = std::function<void(Library&, std::ostream&, Step const&)>;

// What a random step of an operation is given.
struct Operation {
    std::string name;
    int weight;
    rc::Gen<std::vector<int>> numbers;
    rc::Gen<std::vector<std::string>> texts;
    Action act;
};

Operation plain(std::string const& name, Manipulator manipulator, int weight = 6)
{
    return {name, weight, no_numbers(), no_texts(),
            [manipulator](Library&, std::ostream& os, Step const&) { os << manipulator; }};
}

template <class Value>
Operation of_one(std::string const& name, rc::Gen<int> const& number, int weight = 4)
{
    return {name, weight, numbers(1, number), no_texts(),
            [](Library&, std::ostream& os, Step const& step) { os << Value{step.numbers[0]}; }};
}

template <class Value>
Operation of_two(std::string const& name, rc::Gen<int> const& number)
{
    return {name, 4, numbers(2, number), no_texts(), [](Library&, std::ostream& os, Step const& step) {
                os << Value{step.numbers[0], step.numbers[1]};
            }};
}

template <class Value>
Operation of_three(std::string const& name, rc::Gen<int> const& number)
{
    return {name, 6, numbers(3, number), no_texts(), [](Library&, std::ostream& os, Step const& step) {
                os << Value{step.numbers[0], step.numbers[1], step.numbers[2]};
            }};
}

template <class Value>
Operation of_text(std::string const& name)
{
    return {name, 3, no_numbers(), some_texts(1),
            [](Library&, std::ostream& os, Step const& step) { os << Value(step.texts[0]); }};
}

template <class Value, class Number>
Operation of_narrow(std::string const& name, int max)
{
    return {name, 3, numbers(1, between(0, max)), no_texts(),
            [](Library&, std::ostream& os, Step const& step) { os << Value(static_cast<Number>(step.numbers[0])); }};
}

Operation with(std::string const& name, int weight, rc::Gen<std::vector<int>> const& given, Action const& action)
{
    return {name, weight, given, no_texts(), action};
}

template <class GuardType>
Operation open(std::string const& name)
{
    return with("open " + name, 5, no_numbers(),
                [](Library& l, std::ostream&, Step const&) { l.guards.emplace_back(std::make_unique<GuardType>()); });
}

std::vector<unsigned char> bytes_of(std::string const& text) { return {text.begin(), text.end()}; }

std::vector<unsigned> words_of(std::vector<int> const& numbers) { return {numbers.begin(), numbers.end()}; }

unsigned long word_of(Step const& step)
{
    return std::uint64_t{static_cast<unsigned>(step.numbers[0])} << 32 | static_cast<unsigned>(step.numbers[1]);
}

void put_back_stdio(Library& l)
{
    stdout = l.out;
    stderr = l.err;
}

// printf has no other place to write to.
void put_back_stdout(Library& l) { stdout = l.out; }

std::vector<Operation> make_operations()
{
    // clang-format off
    std::vector<Operation> all = {
        plain("colorize", colorize, 60),
        plain("nocolorize", nocolorize),
        with("colorize word =", 3, numbers(1, rc::gen::element(0, 1, 2, -1, INT_MIN)), [](Library& l, std::ostream& os, Step const& step) { os.iword(l.word) = step.numbers[0]; }),
        with("_setNoFrillsMode", 16, numbers(1, rc::gen::element(0, 0, 0, 1)), [](Library&, std::ostream&, Step const& step) { _setNoFrillsMode(step.numbers[0] != 0); }),
        plain("color_mode_state", color_mode_state),
        plain("frills_mode_state", frills_mode_state),
        open<UseColorMode>("UseColorMode"),
        open<NoColorMode>("NoColorMode"),
        open<NoFrillsMode>("NoFrillsMode"),
        open<UseFrillsMode>("UseFrillsMode"),
        with("close a guard", 16, numbers(1, between(0, 9)), [](Library& l, std::ostream&, Step const& step) {
            if (!l.guards.empty()) {
                l.guards.erase(std::next(l.guards.begin(), step.numbers[0] % static_cast<int>(l.guards.size())));
            }
        }),
        with("stdout = nullptr", 1, no_numbers(), [](Library&, std::ostream&, Step const&) { stdout = nullptr; }),
        with("stderr = nullptr", 1, no_numbers(), [](Library&, std::ostream&, Step const&) { stderr = nullptr; }),
        with("stdout and stderr again", 6, no_numbers(), [](Library& l, std::ostream&, Step const&) { put_back_stdio(l); }),
        with("the global locale groups", 3, no_numbers(), [](Library&, std::ostream&, Step const&) {
            std::ostringstream grouping;
            host_operation({"imbue a grouping locale"})->act(grouping, {});
            std::locale::global(grouping.getloc());
        }),
        with("the global locale is classic", 3, no_numbers(), [](Library&, std::ostream&, Step const&) { std::locale::global(std::locale::classic()); }),

        plain("adjust", adjust, 12), plain("push", push, 16), plain("pull", pull, 16), plain("normal", normal), plain("reset", reset),

        plain("bold", bold), plain("thin", thin), plain("dark", dark), plain("lite", lite), plain("bright", bright),
        plain("italic", italic), plain("noitalic", noitalic), plain("underline", underline), plain("nounderline", nounderline),
        plain("blink", blink), plain("noblink", noblink), plain("reverse", kestry::Hueline::reverse), plain("noreverse", noreverse),
        plain("concealed", concealed), plain("crossed", crossed),
        plain("grey", grey), plain("red", red), plain("green", green), plain("yellow", yellow), plain("blue", blue),
        plain("magenta", magenta), plain("cyan", cyan), plain("white", white), plain("black", black),
        plain("on_grey", on_grey), plain("on_red", on_red), plain("on_green", on_green), plain("on_yellow", on_yellow),
        plain("on_blue", on_blue), plain("on_magenta", on_magenta), plain("on_cyan", on_cyan), plain("on_white", on_white),
        plain("on_black", on_black),

        with("next", 12, pair(rc::gen::weightedOneOf<int>({{4, between(-1, 8)}, {1, any_int()}}), between(0, 1)),
             [](Library&, std::ostream& os, Step const& step) { kestry::Hueline::next(os, step.numbers[0], step.numbers[1] != 0); }),
        {"col()", 3, no_numbers(), some_texts(1), [](Library& l, std::ostream&, Step const& step) { l.result = col(step.texts[0]); }},
        of_one<color>("color", any_int(), 6), of_one<on_color>("on_color", any_int(), 6),
        of_three<rgb>("rgb", any_int()), of_three<on_rgb>("on_rgb", any_int()),

        plain("csi::show", csi::show), plain("csi::hide", csi::hide), plain("csi::cr", csi::cr), plain("csi::lf", csi::lf),
        plain("csi::cls", csi::cls), plain("csi::clr", csi::clr), plain("csi::clear", csi::clear), plain("csi::dsr", csi::dsr),
        plain("csi::scp", csi::scp), plain("csi::rcp", csi::rcp),
        of_one<csi::ed>("csi::ed", any_int()), of_one<csi::el>("csi::el", any_int()), of_one<csi::cuu>("csi::cuu", any_int()),
        of_one<csi::cud>("csi::cud", any_int()), of_one<csi::cuf>("csi::cuf", any_int()), of_one<csi::cub>("csi::cub", any_int()),
        of_one<csi::cnl>("csi::cnl", any_int()), of_one<csi::cpl>("csi::cpl", any_int()), of_one<csi::cha>("csi::cha", any_int()),
        of_one<csi::su>("csi::su", any_int()), of_one<csi::sd>("csi::sd", any_int()), of_one<csi::sgr>("csi::sgr", any_int()),
        of_two<csi::cup>("csi::cup", any_int()), of_two<csi::hvp>("csi::hvp", any_int()),
        of_one<csi::delay>("csi::delay", rc::gen::element(0, 1, 4, 5, 6, 10, 11, 25, 255, 256, -1, INT_MIN), 8),
        with("csi::color()", 4, numbers(1, any_int()), [](Library& l, std::ostream&, Step const& step) { l.result = csi::color(step.numbers[0]); }),
        with("csi::rgb()", 4, numbers(3, any_int()), [](Library& l, std::ostream&, Step const& step) { l.result = csi::rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }),
        with("csi::on_rgb()", 4, numbers(3, any_int()), [](Library& l, std::ostream&, Step const& step) { l.result = csi::on_rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }),

        {"spinner", 8, no_numbers(), some_texts(2), [](Library&, std::ostream& os, Step const& step) { os << spinner{step.texts[0], step.texts[1]}; }},
        {"status_line", 12, steps_of_a_bar(), some_texts(6), [](Library&, std::ostream& os, Step const& step) {
            os << status_line{step.numbers[0], step.numbers[1], step.numbers[2], step.texts[0], step.texts[1],
                              step.texts[2], step.texts[3], step.texts[4], step.texts[5]};
        }},
        {"progress_meter", 12, steps_of_a_percentage(), some_texts(4), [](Library&, std::ostream& os, Step const& step) {
            os << progress_meter{step.numbers[0], step.numbers[1], step.numbers[2], step.texts[0], step.texts[1], step.texts[2], step.texts[3]};
        }},

        of_text<ColorTheme::app_title>("ColorTheme::app_title"), of_text<ColorTheme::alert>("ColorTheme::alert"),
        of_text<ColorTheme::info>("ColorTheme::info"), of_text<ColorTheme::default_text>("ColorTheme::default_text"),
        of_text<ColorTheme::seperator>("ColorTheme::seperator"), of_text<ColorTheme::help>("ColorTheme::help"),
        of_text<ColorTheme::prompt>("ColorTheme::prompt"), of_text<ColorTheme::version>("ColorTheme::version"),
        of_text<ColorTheme::cursor>("ColorTheme::cursor"), of_text<ColorTheme::commandLine>("ColorTheme::commandLine"),
        of_text<ColorTheme::name>("ColorTheme::name"), of_text<ColorTheme::path>("ColorTheme::path"),
        with("ColorTheme::path of a number", 4, numbers(1, any_int()), [](Library&, std::ostream& os, Step const& step) {
            os << ColorTheme::path(static_cast<std::uint32_t>(step.numbers[0]));
        }),
        plain("ColorTheme::_default_text", ColorTheme::_default_text, 3), plain("ColorTheme::_help", ColorTheme::_help, 3),
        plain("ColorTheme::_commandLine", ColorTheme::_commandLine, 3), plain("ColorTheme::_status", ColorTheme::_status, 3),
        of_narrow<DataTheme::immediate_destination, std::uint8_t>("DataTheme::immediate_destination", 255),
        of_narrow<DataTheme::total_count, std::uint8_t>("DataTheme::total_count", 255),
        of_narrow<DataTheme::crc, std::uint8_t>("DataTheme::crc of 8 bits", 255),
        of_narrow<DataTheme::crc, std::uint16_t>("DataTheme::crc of 16 bits", 65535),
        of_text<DataTheme::request_title>("DataTheme::request_title"), of_text<DataTheme::response_title>("DataTheme::response_title"),

        of_narrow<HexDump, char>("HexDump of a char", 255), of_narrow<HexDump, unsigned char>("HexDump of an unsigned char", 255),
        of_narrow<HexDump, unsigned short>("HexDump of an unsigned short", 65535),
        with("HexDump of an unsigned long", 3, numbers(2, any_int()), [](Library&, std::ostream& os, Step const& step) { os << HexDump(word_of(step)); }),
        with("HexDump of words", 3, several_numbers(), [](Library&, std::ostream& os, Step const& step) { os << HexDump(words_of(step.numbers)); }),
        {"HexDump of bytes", 3, no_numbers(), some_bytes(), [](Library&, std::ostream& os, Step const& step) { os << HexDump(bytes_of(step.texts[0])); }},
        {"HexDump of bytes, separated", 3, no_numbers(), some_bytes_and_a_separator(), [](Library&, std::ostream& os, Step const& step) { os << HexDump(bytes_of(step.texts[0]), step.texts[1]); }},
        {"HexDump of a string", 3, no_numbers(), some_bytes(), [](Library&, std::ostream& os, Step const& step) { os << HexDump(step.texts[0]); }},
        with("HexDump::_longDumps =", 4, numbers(1, between(0, 1)), [](Library&, std::ostream&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }),
        with("HexDump::raw_data_byte()", 2, numbers(1, between(0, 255)), [](Library& l, std::ostream&, Step const& step) { l.result = HexDump::raw_data_byte(static_cast<unsigned char>(step.numbers[0])); }),
        with("HexDump::raw_data() of a short", 2, numbers(1, between(0, 65535)), [](Library& l, std::ostream&, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }),
        {"HexDump::raw_data() of bytes", 2, no_numbers(), some_bytes(), [](Library& l, std::ostream&, Step const& step) { l.result = HexDump::raw_data(bytes_of(step.texts[0])); }},
        with("myfillandw", 6, pair(between(' ', '~'), between(-1, 30)), [](Library&, std::ostream& os, Step const& step) { os << myfillandw{static_cast<char>(step.numbers[0]), step.numbers[1]}; }),

        of_one<parameters_template>("parameters_template", any_int()),
        plain("crossplatform_template", crossplatform_template, 3), plain("platformspecific_template", platformspecific_template, 3),
        plain("colorized_crossplatform_template", colorized_crossplatform_template, 3),
        plain("colorized_platformspecific_template", colorized_platformspecific_template, 3),
        with("test_pattern_supported_m_codes", 3, no_numbers(), [](Library& l, std::ostream& os, Step const&) {
            put_back_stdout(l);
            os << test_pattern_supported_m_codes;
        }),
        plain("test_pattern_normal_reset", test_pattern_normal_reset, 3), plain("test_pattern_matrix", test_pattern_matrix, 3),
        plain("test_pattern_256bit", test_pattern_256bit, 2), plain("test_pattern_greyscale", test_pattern_greyscale, 2),
        plain("test_pattern_rgb", test_pattern_rgb, 2), plain("test_pattern_status_line", test_pattern_status_line, 1),
        plain("test_pattern_progress_line", test_pattern_progress_line, 1),
        plain("build_version_short", build_version_short, 3),
        with("build_version", 1, no_numbers(), [](Library& l, std::ostream& os, Step const&) {
            put_back_stdout(l);
            os << build_version;
        }),
    };
    // clang-format on
    for (HostOperation const& host : host_operations()) {
        all.push_back({host.name, weight_of_host_operation(host.name), numbers_of_host_operation(host.name),
                       texts_of_host_operation(host.name),
                       [&host](Library&, std::ostream& os, Step const& step) { host.act(os, step); }});
    }
    return all;
}

std::vector<Operation> const& operations()
{
    static std::vector<Operation> const all = make_operations();
    return all;
}

Operation const& operation(std::string const& name)
{
    for (Operation const& each : operations()) {
        if (each.name == name) {
            return each;
        }
    }
    throw std::out_of_range(name);
}

std::ostream& Library::stream(std::string const& name)
{
    if (name == "cerr") {
        return std::cerr;
    }
    if (name == "clog") {
        return std::clog;
    }
    if (name == "text") {
        return text;
    }
    return name == "second" ? second : std::cout;
}

Facts Library::perform(Step const& step)
{
    result = "";
    isatty_calls = 0;
    clock_readings = 0;
    int constexpr mark = 4711;
    errno = mark;
    std::string const thrown = thrown_by([&] { operation(step.operation).act(*this, stream(step.on), step); });
    bool const errno_kept = errno == mark;

    Facts facts;
    facts.push_back({"_isUsingColor()", _isUsingColor() ? "true" : "false"});
    facts.push_back({"_getNoFrillsMode()", _getNoFrillsMode() ? "true" : "false"});
    for (std::string const name : {"cout", "cerr", "clog", "text", "second"}) {
        add_format(facts, name, stream(name));
        facts.push_back({name + " colorize word", std::to_string(stream(name).iword(word))});
    }
    facts.push_back({"received by std::cout's buffer", out_tap.take()});
    facts.push_back({"received by std::cerr's buffer", err_tap.take() + clog_tap.take()});
    facts.push_back({"received by the string stream", text_tap.take()});
    facts.push_back({"thrown", thrown});
    facts.push_back({"returned", result});
    facts.push_back({"isatty called", std::to_string(isatty_calls)});
    facts.push_back({"clock read", std::to_string(clock_readings)});
    facts.push_back({"errno", errno_kept ? "kept" : "changed"});
    return facts;
}

// ---------------------------------------------------------------------------------------------
// Programs
// ---------------------------------------------------------------------------------------------

rc::Gen<Step> random_step()
{
    static rc::Gen<std::size_t> const choice = weighted_choice(operations());
    return rc::gen::exec([] {
        Operation const& chosen = operations()[*choice];
        Step step;
        step.operation = chosen.name;
        step.on = *rc::gen::weightedElement<std::string>(
            {{10, "cout"}, {5, "cerr"}, {3, "clog"}, {2, "text"}, {1, "second"}});
        step.numbers = *chosen.numbers;
        step.texts = *chosen.texts;
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
    same_programs_in_each_run();
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
    {"InAPipe", {Sink::pipe, Sink::pipe}, {{"colorize", "cout"}, {"colorize", "cerr"}}, {"cout", "cerr"}},
    {"InAStringStream", {}, {{"colorize", "text"}, {"std::setw", "text", {3}}}, {"text", "second", "text"}},
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
    rc::Random random;
    for (Operation const& each : operations()) {
        std::vector<Step> steps = GetParam().way;
        for (int round = 0; round < 3; ++round) {
            for (std::string const& on : GetParam().on) {
                steps.push_back(
                    {each.name, on, each.numbers(random.split(), 50).value(), each.texts(random.split(), 50).value()});
            }
            if (steps.back().numbers.empty() && steps.back().texts.empty()) {
                break; // another round would be the same
            }
        }
        EXPECT_EQ(difference_between_model_and_library(GetParam().sinks, steps), "");
    }
}

INSTANTIATE_TEST_SUITE_P(, StreamModelOfEachOperation, testing::ValuesIn(places),
                         [](auto const& place) { return place.param.name; });

} // namespace
