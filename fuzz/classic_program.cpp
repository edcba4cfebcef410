// Programs of the whole class-based interface: colorizer objects and dumps that come and go in any
// order, the switches, and every function that returns a string.

#include "kestry/hueline_classic.hpp"

#include "input.hpp"
#include "program.hpp"

#include "model/classic_model.hpp"
#include "model/host.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <sys/time.h>
#include <time.h>

namespace {

// While the library is at work, what time(2) returns; the fuzzer's own time is right.
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

using namespace hueline::fuzz;
using hueline::test::host_operation;
using hueline::test::HostOperation;
using kestry::HexColor;
using kestry::HexColor_VGA;
using kestry::HexDump;
using kestry::Hueline;
namespace ColorTheme = kestry::ColorTheme;
namespace DataTheme = kestry::DataTheme;

// A zone whose local time is so many minutes ahead, as POSIX writes it: with the opposite sign.
void set_time_zone(int minutes)
{
    char zone[64];
    std::snprintf(zone, sizeof zone, "<here>%c%02d:%02d", minutes > 0 ? '-' : '+', std::abs(minutes) / 60,
                  std::abs(minutes) % 60);
    setenv("TZ", zone, 1);
}

// Has seen the switches before any program; never destroyed.
Hueline const* const at_load = new Hueline;

class Library {
public:
    Library()
    {
        made_up_time = 0;
        set_time_zone(0);
    }
    ~Library()
    {
        objects.clear();
        // A copy puts back the switch as its original found it.
        static_cast<void>(Hueline(*at_load));
        Hueline::setNoFrillsMode(false);
        HexDump::_longDumps = false;
        std::locale::global(std::locale::classic());
    }
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;

    Facts perform(Operation<Library> const& operation, Step const& step)
    {
        result = "";
        is_time_made_up = true;
        std::string const thrown = hueline::test::thrown_by([&] { operation.act(*this, step); });
        is_time_made_up = false;

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

template <std::string (*function)()>
void of_nothing(Library& l, Step const&)
{
    l.result = function();
}

template <std::string (*function)(std::string const&)>
void of_text(Library& l, Step const& step)
{
    l.result = function(step.texts[0]);
}

template <std::string (*function)(unsigned char)>
void of_byte(Library& l, Step const& step)
{
    l.result = function(static_cast<unsigned char>(step.numbers[0]));
}

template <class Number>
void dump_of_number(Library& l, Step const& step)
{
    l.objects.push_back(std::make_unique<HexDump>(static_cast<Number>(step.numbers[0])));
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

void host(Library& l, Step const& step) { host_operation(step)->act(l.os, step); }

// clang-format off
std::vector<Operation<Library>> all_operations()
{
    std::vector<Operation<Library>> all = {
        {"Hueline()", "", [](Library& l, Step const&) { l.objects.push_back(std::make_unique<Hueline>()); }},
        {"copy", "b", [](Library& l, Step const& step) { l.objects.push_back(copy_of(*l.object(step.numbers[0]))); }},
        {"copy of the Hueline alone", "b", [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<Hueline>(*l.object(step.numbers[0]))); }},
        {"assign", "bb", [](Library& l, Step const& step) { *l.object(step.numbers[1]) = *l.object(step.numbers[0]); }},
        {"destroy", "b", [](Library& l, Step const& step) {
            l.object(step.numbers[0]);
            l.objects.erase(l.objects.begin() + step.numbers[0] % static_cast<int>(l.objects.size()));
        }},
        {"flipColor", "b", [](Library& l, Step const& step) { l.object(step.numbers[0])->flipColor(); }},
        {"unflipColor", "b", [](Library& l, Step const& step) { l.object(step.numbers[0])->unflipColor(); }},
        {"useColor", "bf", [](Library& l, Step const& step) { l.object(step.numbers[0])->useColor(step.numbers[1] != 0); }},
        {"<<", "b", [](Library& l, Step const& step) { l.os << *l.object(step.numbers[0]); }},
        {"setNoFrillsMode", "f", [](Library&, Step const& step) { Hueline::setNoFrillsMode(step.numbers[0] != 0); }},
        {"HexDump::_longDumps =", "f", [](Library&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }},
        {"hide_cursor()", "", of_nothing<Hueline::hide_cursor>}, {"show_cursor()", "", of_nothing<Hueline::show_cursor>},
        {"the global locale groups", "", [](Library&, Step const&) {
            std::ostringstream grouping;
            host_operation({"imbue a grouping locale"})->act(grouping, {});
            std::locale::global(grouping.getloc());
        }},
        {"the global locale is classic", "", [](Library&, Step const&) { std::locale::global(std::locale::classic()); }},

        {"color()", "n", [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step)); }},
        {"bright_color()", "n", [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step)); }},
        {"color() of four", "nnnn", [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2], step.numbers[3]); }},
        {"color() of three", "nnn", [](Library& l, Step const& step) { l.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"color_bg()", "nnn", [](Library& l, Step const& step) { l.result = Hueline::color_bg(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"color() of VGA", "n", [](Library& l, Step const& step) { l.result = Hueline::color(static_cast<HexColor_VGA>(step.numbers[0])); }},
        {"color() of a byte", "nb", [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }},
        {"bright_color() of a byte", "nb", [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }},
        {"color() of a text", "nt", [](Library& l, Step const& step) { l.result = Hueline::color(code_of(step), step.texts[0]); }},
        {"bright_color() of a text", "nt", [](Library& l, Step const& step) { l.result = Hueline::bright_color(code_of(step), step.texts[0]); }},

        {"the time is", "d", [](Library&, Step const& step) { made_up_time = step.numbers[0]; }},
        {"the time zone is", "z", [](Library&, Step const& step) { set_time_zone(step.numbers[0]); }},
        {"time_stamp()", "t", of_text<Hueline::time_stamp>}, {"current_time()", "", of_nothing<Hueline::current_time>},

        {"ColorTheme::app_title()", "t", of_text<ColorTheme::app_title>}, {"ColorTheme::alert()", "t", of_text<ColorTheme::alert>},
        {"ColorTheme::info()", "t", of_text<ColorTheme::info>}, {"ColorTheme::default_text() of a text", "t", of_text<ColorTheme::default_text>},
        {"ColorTheme::default_text()", "", of_nothing<ColorTheme::default_text>},
        {"ColorTheme::defaultOperatingSystemText()", "", of_nothing<ColorTheme::defaultOperatingSystemText>},
        {"ColorTheme::seperator()", "t", of_text<ColorTheme::seperator>}, {"ColorTheme::help()", "", of_nothing<ColorTheme::help>},
        {"ColorTheme::help() of a text", "t", of_text<ColorTheme::help>}, {"ColorTheme::prompt()", "t", of_text<ColorTheme::prompt>},
        {"ColorTheme::version()", "t", of_text<ColorTheme::version>}, {"ColorTheme::cursor()", "t", of_text<ColorTheme::cursor>},
        {"ColorTheme::commandLine()", "", of_nothing<ColorTheme::commandLine>}, {"ColorTheme::commandLine() of a text", "t", of_text<ColorTheme::commandLine>},
        {"ColorTheme::path()", "t", of_text<ColorTheme::path>},
        {"ColorTheme::path() of a number", "n", [](Library& l, Step const& step) { l.result = ColorTheme::path(static_cast<unsigned>(step.numbers[0])); }},
        {"ColorTheme::name()", "t", of_text<ColorTheme::name>}, {"ColorTheme::status()", "", of_nothing<ColorTheme::status>},
        {"DataTheme::immediate_destination()", "b", of_byte<DataTheme::immediate_destination>}, {"DataTheme::total_count()", "b", of_byte<DataTheme::total_count>},
        {"DataTheme::request_title()", "t", of_text<DataTheme::request_title>}, {"DataTheme::response_title()", "t", of_text<DataTheme::response_title>},

        {"HexDump of a char", "b", dump_of_number<char>}, {"HexDump of an unsigned char", "b", dump_of_number<unsigned char>},
        {"HexDump of an unsigned short", "s", dump_of_number<unsigned short>},
        {"HexDump of an unsigned long", "nn", [](Library& l, Step const& step) {
            l.objects.push_back(std::make_unique<HexDump>(std::uint64_t{static_cast<unsigned>(step.numbers[0])} << 32 | static_cast<unsigned>(step.numbers[1])));
        }},
        {"HexDump of words", "l", [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(std::vector<unsigned>(step.numbers.begin(), step.numbers.end()))); }},
        {"HexDump of bytes", "t", [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(to_bytes(step.texts[0]))); }},
        {"HexDump of bytes, separated", "tt", [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(to_bytes(step.texts[0]), step.texts[1])); }},
        {"HexDump of a string", "t", [](Library& l, Step const& step) { l.objects.push_back(std::make_unique<HexDump>(step.texts[0])); }},
        {"HexDump::raw_data_byte()", "b", of_byte<HexDump::raw_data_byte>},
        {"HexDump::raw_data() of a short", "s", [](Library& l, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }},
        {"HexDump::raw_data() of bytes", "t", [](Library& l, Step const& step) { l.result = HexDump::raw_data(to_bytes(step.texts[0])); }},
        {"rtrim()", "t", of_text<rtrim>},
    };
    for (HostOperation const& each : hueline::test::host_operations()) {
        all.push_back({each.name, arguments_of_host_operation(each.name), host});
    }
    return all;
}
// clang-format on

std::vector<Operation<Library>> const operations = all_operations();

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    hueline::test::ClassicModel model;
    Library library;
    std::vector<Step> program;
    while (!input.is_empty() && program.size() < 100) {
        Operation<Library> const& operation = operations[input.byte() % operations.size()];
        Step step = {operation.name};
        for (char const argument : operation.arguments) {
            read_argument(input, argument, step);
        }
        program.push_back(step);
        compare(program, model.perform(step).facts, library.perform(operation, step));
    }
    return 0;
}
