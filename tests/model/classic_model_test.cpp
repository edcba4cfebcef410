// Random programs of the whole class-based interface, followed by the library in a process of its own
// and by a model, and compared after each step: what is returned, thrown and written, and all state
// that can be seen. A program that shows a difference is shrunk and printed.
//
// The programs are the same in each run. RapidCheck's own variable makes them others, more or longer:
//
//     RC_PARAMS="seed=7 max_success=20000 max_size=300" ctest -R Model --output-on-failure

#include "kestry/hueline_classic.hpp"

#include "model/classic_model.hpp"
#include "model/comparison.hpp"
#include "model/generators.hpp"
#include "model/host.hpp"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <locale>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <sys/time.h>
#include <time.h>

namespace {

// What time(2) returns to the whole program, the library included; until it is set, the right time.
bool is_time_made_up = false;
time_t made_up_time = 0;

} // namespace

extern "C" time_t time(time_t* also) noexcept
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    time_t const result = is_time_made_up ? made_up_time : now.tv_sec;
    if (also != nullptr) {
        *also = result;
    }
    return result;
}

namespace {

using namespace hueline::test;
using kestry::HexColor;
using kestry::HexColor_VGA;
using kestry::HexDump;
using kestry::Hueline;
namespace ColorTheme = kestry::ColorTheme;
namespace DataTheme = kestry::DataTheme;

// ---------------------------------------------------------------------------------------------
// The library
// ---------------------------------------------------------------------------------------------

class Library : public Subject {
public:
    Library()
    {
        is_time_made_up = true;
        setenv("TZ", "UTC0", 1);
    }

    Facts perform(Step const& step) override;

    // The first object is always there.
    std::unique_ptr<Hueline>& object(int number)
    {
        if (objects.empty()) {
            objects.push_back(std::make_unique<Hueline>());
        }
        return objects[static_cast<std::size_t>(number) % objects.size()];
    }

    std::vector<std::unique_ptr<Hueline>> objects;
    std::ostringstream os;
    std::string result;
};

// ---------------------------------------------------------------------------------------------
// Operations
// ---------------------------------------------------------------------------------------------

using Action = std::function<void(Library&, Step const&)>;

// What a random step of an operation is given.
struct Operation {
    std::string name;
    int weight;
    Numbers numbers;
    Texts texts;
    Action act;
};

// An object by its number.
Numbers one_object() { return numbers(1, between(0, 9)); }

Operation on_object(std::string const& name, int weight, Action const& action)
{
    return {name, weight, one_object(), no_texts(), action};
}

Operation with(std::string const& name, int weight, Numbers const& given, Action const& action)
{
    return {name, weight, given, no_texts(), action};
}

// Functions that return a string
Operation of_nothing(std::string const& name, std::string (*function)())
{
    return with(name, 4, no_numbers(), [function](Library& l, Step const&) { l.result = function(); });
}

Operation of_text(std::string const& name, std::string (*function)(std::string const&))
{
    return {name, 4, no_numbers(), some_texts(1),
            [function](Library& l, Step const& step) { l.result = function(step.texts[0]); }};
}

Operation of_byte(std::string const& name, std::string (*function)(unsigned char))
{
    return with(name, 4, numbers(1, between(0, 255)), [function](Library& l, Step const& step) {
        l.result = function(static_cast<unsigned char>(step.numbers[0]));
    });
}

template <class Number>
Operation dump_of_number(std::string const& name, int max)
{
    return with(name, 4, numbers(1, between(0, max)), [](Library& l, Step const& step) {
        l.objects.push_back(std::make_unique<HexDump>(static_cast<Number>(step.numbers[0])));
    });
}

std::vector<unsigned char> bytes_of(std::string const& text) { return {text.begin(), text.end()}; }

std::vector<unsigned> words_of(std::vector<int> const& numbers) { return {numbers.begin(), numbers.end()}; }

unsigned long word_of(Step const& step)
{
    return std::uint64_t{static_cast<unsigned>(step.numbers[0])} << 32 | static_cast<unsigned>(step.numbers[1]);
}

HexColor code_of(Step const& step) { return static_cast<HexColor>(step.numbers[0]); }

// A copy of the whole object.
std::unique_ptr<Hueline> copy_of(Hueline const& object)
{
    if (auto const* const dump = dynamic_cast<HexDump const*>(&object)) {
        return std::make_unique<HexDump>(*dump);
    }
    return std::make_unique<Hueline>(object);
}

// A zone whose local time is so many minutes ahead, as POSIX writes it: with the opposite sign.
void set_time_zone(int minutes)
{
    char zone[64];
    std::snprintf(zone, sizeof zone, "<here>%c%02d:%02d", minutes > 0 ? '-' : '+', std::abs(minutes) / 60,
                  std::abs(minutes) % 60);
    setenv("TZ", zone, 1);
}

rc::Gen<int> any_code()
{
    return rc::gen::weightedOneOf<int>(
        {{2, rc::gen::element(0, 1, 2, 30, 31, 32, 33, 34, 35, 36, 37)}, {3, any_int()}});
}

rc::Gen<int> any_time()
{
    return rc::gen::weightedOneOf<int>({
        {3, rc::gen::element(0, -1, 951782399, 951782400, 951868800, 1709164799, 1709251199, 1735689599, INT_MAX,
                             -2147000000)},
        {1, between(-2147000000, INT_MAX - 1)},
    });
}

std::vector<Operation> make_operations()
{
    Numbers const code_and_byte = pair(any_code(), between(0, 255));
    // clang-format off
    std::vector<Operation> all = {
        with("Hueline()", 8, no_numbers(), [](Library& l, Step const&) { l.objects.push_back(std::make_unique<Hueline>()); }),
        on_object("copy", 5, [](Library& l, Step const& step) { l.objects.push_back(copy_of(*l.object(step.numbers[0]))); }),
        on_object("copy of the Hueline alone", 5, [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<Hueline>(*l.object(step.numbers[0]))); }),
        with("assign", 8, numbers(2, between(0, 9)), [](Library& l, Step const& step) { *l.object(step.numbers[1]) = *l.object(step.numbers[0]); }),
        on_object("destroy", 50, [](Library& l, Step const& step) {
            l.object(step.numbers[0]);
            l.objects.erase(l.objects.begin() + step.numbers[0] % static_cast<int>(l.objects.size()));
        }),
        on_object("flipColor", 20, [](Library& l, Step const& step) { l.object(step.numbers[0])->flipColor(); }),
        on_object("unflipColor", 16, [](Library& l, Step const& step) { l.object(step.numbers[0])->unflipColor(); }),
        with("useColor", 40, pair(between(0, 9), rc::gen::element(0, 1, 1, 1)), [](Library& l, Step const& step) { l.object(step.numbers[0])->useColor(step.numbers[1] != 0); }),
        on_object("<<", 24, [](Library& l, Step const& step) { l.os << *l.object(step.numbers[0]); }),
        with("setNoFrillsMode", 16, numbers(1, rc::gen::element(0, 0, 0, 1)), [](Library&, Step const& step) { Hueline::setNoFrillsMode(step.numbers[0] != 0); }),
        with("HexDump::_longDumps =", 6, numbers(1, between(0, 1)), [](Library&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }),
        of_nothing("hide_cursor()", Hueline::hide_cursor), of_nothing("show_cursor()", Hueline::show_cursor),
        with("the global locale groups", 3, no_numbers(), [](Library&, Step const&) {
            std::ostringstream grouping;
            host_operation({"imbue a grouping locale"})->act(grouping, {});
            std::locale::global(grouping.getloc());
        }),
        with("the global locale is classic", 3, no_numbers(), [](Library&, Step const&) { std::locale::global(std::locale::classic()); }),

        with("color()", 8, numbers(1, any_code()), [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step)); }),
        with("bright_color()", 8, numbers(1, any_code()), [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step)); }),
        with("color() of four", 6, numbers(4, any_int()), [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2], step.numbers[3]); }),
        with("color() of three", 6, numbers(3, any_int()), [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2]); }),
        with("color_bg()", 6, numbers(3, any_int()), [](Library& l, Step const& step) { l.result = Hueline::color_bg(step.numbers[0], step.numbers[1], step.numbers[2]); }),
        with("color() of VGA", 16, numbers(1, rc::gen::weightedOneOf<int>({{6, between(0, 15)}, {1, between(-1, 17)}, {1, any_int()}})), [](Library& l, Step const& step) { l.result = Hueline::color(static_cast<HexColor_VGA>(step.numbers[0])); }),
        with("color() of a byte", 6, code_and_byte, [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }),
        with("bright_color() of a byte", 6, code_and_byte, [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }),
        {"color() of a text", 6, numbers(1, any_code()), some_texts(1), [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), step.texts[0]); }},
        {"bright_color() of a text", 6, numbers(1, any_code()), some_texts(1), [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), step.texts[0]); }},

        with("the time is", 8, numbers(1, any_time()), [](Library&, Step const& step) { made_up_time = step.numbers[0]; }),
        with("the time zone is", 4, numbers(1, rc::gen::element(0, 1, -1, 345, -570, 840, -720)), [](Library&, Step const& step) { set_time_zone(step.numbers[0]); }),
        of_text("time_stamp()", Hueline::time_stamp),
        with("current_time()", 12, no_numbers(), [](Library& l, Step const&) { l.result = Hueline::current_time(); }),

        of_text("ColorTheme::app_title()", ColorTheme::app_title), of_text("ColorTheme::alert()", ColorTheme::alert),
        of_text("ColorTheme::info()", ColorTheme::info), of_text("ColorTheme::default_text() of a text", ColorTheme::default_text),
        of_nothing("ColorTheme::default_text()", ColorTheme::default_text),
        of_nothing("ColorTheme::defaultOperatingSystemText()", ColorTheme::defaultOperatingSystemText),
        of_text("ColorTheme::seperator()", ColorTheme::seperator), of_nothing("ColorTheme::help()", ColorTheme::help),
        of_text("ColorTheme::help() of a text", ColorTheme::help), of_text("ColorTheme::prompt()", ColorTheme::prompt),
        of_text("ColorTheme::version()", ColorTheme::version), of_text("ColorTheme::cursor()", ColorTheme::cursor),
        of_nothing("ColorTheme::commandLine()", ColorTheme::commandLine), of_text("ColorTheme::commandLine() of a text", ColorTheme::commandLine),
        of_text("ColorTheme::path()", ColorTheme::path),
        with("ColorTheme::path() of a number", 4, numbers(1, any_int()), [](Library& l, Step const& step) { l.result = ColorTheme::path(static_cast<unsigned>(step.numbers[0])); }),
        of_text("ColorTheme::name()", ColorTheme::name), of_nothing("ColorTheme::status()", ColorTheme::status),
        of_byte("DataTheme::immediate_destination()", DataTheme::immediate_destination), of_byte("DataTheme::total_count()", DataTheme::total_count),
        of_text("DataTheme::request_title()", DataTheme::request_title), of_text("DataTheme::response_title()", DataTheme::response_title),

        dump_of_number<char>("HexDump of a char", 255), dump_of_number<unsigned char>("HexDump of an unsigned char", 255),
        dump_of_number<unsigned short>("HexDump of an unsigned short", 65535),
        with("HexDump of an unsigned long", 4, numbers(2, any_int()), [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(word_of(step))); }),
        with("HexDump of words", 4, several_numbers(), [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(words_of(step.numbers))); }),
        {"HexDump of bytes", 6, no_numbers(), some_bytes(), [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(bytes_of(step.texts[0]))); }},
        {"HexDump of bytes, separated", 6, no_numbers(), some_bytes_and_a_separator(), [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(bytes_of(step.texts[0]), step.texts[1])); }},
        {"HexDump of a string", 6, no_numbers(), some_bytes(), [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(step.texts[0])); }},
        of_byte("HexDump::raw_data_byte()", HexDump::raw_data_byte),
        with("HexDump::raw_data() of a short", 4, numbers(1, between(0, 65535)), [](Library& l, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }),
        {"HexDump::raw_data() of bytes", 4, no_numbers(), some_bytes(), [](Library& l, Step const& step) { l.result = HexDump::raw_data(bytes_of(step.texts[0])); }},
        {"rtrim()", 8, no_numbers(), some_texts_with_space(), [](Library& l, Step const& step) { l.result = rtrim(step.texts[0]); }},
    };
    // clang-format on
    for (HostOperation const& host : host_operations()) {
        all.push_back({host.name, weight_of_host_operation(host.name), numbers_of_host_operation(host.name),
                       texts_of_host_operation(host.name),
                       [&host](Library& l, Step const& step) { host.act(l.os, step); }});
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

Facts Library::perform(Step const& step)
{
    result = "";
    std::string const thrown = thrown_by([&] { operation(step.operation).act(*this, step); });

    Facts facts;
    facts.push_back({"isUsingColor()", Hueline::isUsingColor() ? "true" : "false"});
    facts.push_back({"getNoFrillsMode()", Hueline::getNoFrillsMode() ? "true" : "false"});
    facts.push_back({"isLongDumps()", HexDump::isLongDumps() ? "true" : "false"});
    add_format(facts, "stream", os);
    facts.push_back({"written", os.str()});
    facts.push_back({"thrown", thrown});
    facts.push_back({"returned", result});
    os.str("");
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
        step.numbers = *chosen.numbers;
        step.texts = *chosen.texts;
        return step;
    });
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
    Sinks const nothing_is_written = {Sink::pipe, Sink::pipe};
    return difference(nothing_is_written, steps, expected,
                      in_a_child(nothing_is_written, steps, [] { return std::make_unique<Library>(); }));
}

TEST(ClassicModel, SaysWhatTheLibraryDoesInEveryProgram)
{
    same_programs_in_each_run();
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
    rc::Random random;
    for (Operation const& each : operations()) {
        std::vector<Step> steps = GetParam().way;
        for (int i = 0; i < 30; ++i) {
            steps.push_back(
                {each.name, "", each.numbers(random.split(), 50).value(), each.texts(random.split(), 50).value()});
            steps.push_back({"<<", "", {i + 1}}); // a dump, if it made one
        }
        EXPECT_EQ(difference_between_model_and_library(steps), "");
    }
}

INSTANTIATE_TEST_SUITE_P(, ClassicModelOfEachOperation, testing::ValuesIn(modes),
                         [](auto const& mode) { return mode.param.name; });

} // namespace
