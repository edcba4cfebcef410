#include "operations_classic.hpp"

#include "support/grouping.hpp"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <locale>

namespace hueline::test {

namespace {

using namespace kestry;
using Row = ClassicOperation;

// How it is applied

template <std::string (*function)()>
void of_nothing(ClassicProgram& p, Step const&)
{
    p.result = function();
}

template <std::string (*function)(std::string const&)>
void of_text(ClassicProgram& p, Step const& step)
{
    p.result = function(step.texts[0]);
}

template <std::string (*function)(unsigned char)>
void of_byte(ClassicProgram& p, Step const& step)
{
    p.result = function(static_cast<unsigned char>(step.numbers[0]));
}

template <class Number>
void dump_of_number(ClassicProgram& p, Step const& step)
{
    p.objects.push_back(std::make_unique<HexDump>(static_cast<Number>(step.numbers[0])));
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

// What comes of it

std::string const words = "a text of thirty-two characters.";

Example gives(std::string const& colored, std::string const& plain, std::vector<int> const& numbers = {},
              std::vector<std::string> const& texts = {})
{
    return {.numbers = numbers, .texts = texts, .plain = plain, .colored = colored};
}

Example gives_sequence(std::string const& sequence, std::vector<int> const& numbers = {})
{
    return gives(sequence, "", numbers);
}

// Rows

std::string const scope = "kestry::";

// A theme of a text: what stands before it and after it.
template <std::string (*function)(std::string const&)>
Row role(int number, std::string const& name, std::string const& before, std::string const& after = "")
{
    return {number,
            name,
            {scope + name.substr(0, name.find("()")) + "(std::string const&)"},
            {Argument::text},
            of_text<function>,
            gives(before + words + after, words, {}, {words})};
}

template <std::string (*function)()>
Row sequence(int number, std::string const& name, std::string const& colored)
{
    return {number, name, {scope + name}, {}, of_nothing<function>, gives_sequence(colored)};
}

// What a program does around the library.
Row around(int number, std::string const& name, int weight, std::vector<Argument> const& arguments,
           void (*act)(ClassicProgram&, Step const&))
{
    return {number, name, {}, arguments, act, {}, weight};
}

std::vector<Row> make_rows()
{
    using enum Argument;
    using Program = ClassicProgram;
    std::vector<std::string> const made = {scope + "Hueline::Hueline()", scope + "Hueline::~Hueline()"};
    auto const dump = [](std::string const& parameters) -> std::vector<std::string> {
        return {scope + "HexDump::HexDump(" + parameters + ")"};
    };
    Example any_time = {};
    any_time.told_by_the_model = true;
    std::string const dump_of_words =
        R"(\e[32m61 \e[32m20 \e[32m74 \e[32m65 \e[32m78 \e[32m74 \e[32m20 \e[32m6f \e[32m66 \e[32m20 \e[32m74 \e[32m68 )"
        R"(\e[32m69 \e[32m72 \e[32m74 \e[32m79 \e[32m2d \e[32m74 \e[32m77  ... \e[33m(\e[36m32 bytes\e[33m) \e[0m)";
    std::string const plain_dump_of_words = "61 20 74 65 78 74 20 6f 66 20 74 68 69 72 74 79 2d 74 77  ... (32 bytes) ";
    std::string const red = "\\e[31m";

    // clang-format off
    return {
        {0, "Hueline()", made, {}, [](Program& p, Step const&) { p.objects.push_back(std::make_unique<Hueline>()); }, {}, 8},
        around(1, "copy", 5, {item}, [](Program& p, Step const& step) { p.objects.push_back(copy_of(*p.object(step.numbers[0]))); }),
        around(2, "copy of the Hueline alone", 5, {item}, [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<Hueline>(*p.object(step.numbers[0]))); }),
        around(3, "assign", 8, {item, item}, [](Program& p, Step const& step) { *p.object(step.numbers[1]) = *p.object(step.numbers[0]); }),
        {4, "destroy", {scope + "HexDump::~HexDump()"}, {item}, [](Program& p, Step const& step) {
            p.object(step.numbers[0]);
            p.objects.erase(p.objects.begin() + step.numbers[0] % static_cast<int>(p.objects.size()));
        }, gives("", "", {0}), 50},
        {5, "flipColor",   {scope + "Hueline::flipColor()"},   {item}, [](Program& p, Step const& step) { p.object(step.numbers[0])->flipColor(); }, gives("", "", {0}), 20},
        {6, "unflipColor", {scope + "Hueline::unflipColor()"}, {item}, [](Program& p, Step const& step) { p.object(step.numbers[0])->unflipColor(); }, any_time, 16},
        {7, "useColor",    {scope + "Hueline::useColor(bool)"}, {item, mostly_on}, [](Program& p, Step const& step) { p.object(step.numbers[0])->useColor(step.numbers[1] != 0); }, gives("", "", {0, 1}), 40},
        {8, "<<", {scope + "operator<<(std::ostream&, kestry::Hueline const&)"}, {item}, [](Program& p, Step const& step) { p.os << *p.object(step.numbers[0]); }, gives("", "", {0}), 24},
        {9, "setNoFrillsMode", {scope + "Hueline::setNoFrillsMode(bool)"}, {mostly_off}, [](Program&, Step const& step) { Hueline::setNoFrillsMode(step.numbers[0] != 0); }, any_time, 16},
        {10, "HexDump::_longDumps =", {scope + "HexDump::_longDumps"}, {flag}, [](Program&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }, gives("", "", {0}), 6},
        sequence<Hueline::hide_cursor>(11, "Hueline::hide_cursor()", R"(\e[?25l)"),
        sequence<Hueline::show_cursor>(12, "Hueline::show_cursor()", R"(\e[?25h)"),
        around(13, "the global locale groups",     3, {}, [](Program&, Step const&) { std::locale::global(grouping_locale()); }),
        around(14, "the global locale is classic", 3, {}, [](Program&, Step const&) { std::locale::global(std::locale::classic()); }),

        // Codes
        {15, "color()",         {scope + "Hueline::color(kestry::HexColor const&)"},        {code}, [](Program& p, Step const& step) { p.result = Hueline::color(code_of(step)); },        gives_sequence(R"(\e[-2147483647m)", {-2147483647}), 8},
        {16, "bright_color()",  {scope + "Hueline::bright_color(kestry::HexColor const&)"}, {code}, [](Program& p, Step const& step) { p.result = Hueline::bright_color(code_of(step)); }, gives_sequence(R"(\e[-2147483587m)", {-2147483647}), 8},
        {17, "color() of four", {scope + "Hueline::color(int, int, int, int)"}, {number, number, number, number}, [](Program& p, Step const& step) { p.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2], step.numbers[3]); }, gives_sequence(R"(\e[300;2;10;-20;2147483647m)", {300, 10, -20, 2147483647})},
        {18, "color() of three", {scope + "Hueline::color(int, int, int)"},     {number, number, number}, [](Program& p, Step const& step) { p.result = Hueline::color(step.numbers[0], step.numbers[1], step.numbers[2]); },    gives_sequence(R"(\e[38;2;100;20;255m)", {100, 20, 255})},
        {19, "color_bg()",       {scope + "Hueline::color_bg(int, int, int)"},  {number, number, number}, [](Program& p, Step const& step) { p.result = Hueline::color_bg(step.numbers[0], step.numbers[1], step.numbers[2]); }, gives_sequence(R"(\e[48;2;100;20;255m)", {100, 20, 255})},
        {20, "color() of VGA",   {scope + "Hueline::color(kestry::HexColor_VGA const&)"}, {vga_color}, [](Program& p, Step const& step) { p.result = Hueline::color(static_cast<HexColor_VGA>(step.numbers[0])); }, gives_sequence(R"(\e[48;2;192;192;192m)", {7}), 16},
        {21, "color() of a byte",        {scope + "Hueline::color(kestry::HexColor const&, unsigned char)"},             {code, byte}, [](Program& p, Step const& step) { p.result = Hueline::color(code_of(step), static_cast<unsigned char>(step.numbers[1])); },        gives(R"(\e[-2147483647mab)", "ab", {-2147483647, 0xab})},
        {22, "bright_color() of a byte", {scope + "Hueline::bright_color(kestry::HexColor const&, unsigned char)"},      {code, byte}, [](Program& p, Step const& step) { p.result = Hueline::bright_color(code_of(step), static_cast<unsigned char>(step.numbers[1])); }, gives(R"(\e[1m\e[-2147483647m0f\e[2m)", "0f", {-2147483647, 0x0f})},
        {23, "color() of a text",        {scope + "Hueline::color(kestry::HexColor const&, std::string const&)"},        {code, text}, [](Program& p, Step const& step) { p.result = Hueline::color(code_of(step), step.texts[0]); },        gives(red + words, words, {31}, {words})},
        {24, "bright_color() of a text", {scope + "Hueline::bright_color(kestry::HexColor const&, std::string const&)"}, {code, text}, [](Program& p, Step const& step) { p.result = Hueline::bright_color(code_of(step), step.texts[0]); }, gives("\\e[1m" + red + words + "\\e[2m", words, {31}, {words})},

        // Time
        around(25, "the time is",      8, {seconds}, [](Program& p, Step const& step) { p.time = step.numbers[0]; }),
        around(26, "the time zone is", 4, {minutes}, [](Program&, Step const& step) { set_time_zone(step.numbers[0]); }),
        role<Hueline::time_stamp>(27, "Hueline::time_stamp()", R"(\e[36m)"),
        {28, "current_time()", {scope + "Hueline::current_time()"}, {}, of_nothing<Hueline::current_time>, any_time, 12},

        // Themes
        role<ColorTheme::app_title>       (29, "ColorTheme::app_title()",               R"(\e[32m)"),
        role<ColorTheme::alert>           (30, "ColorTheme::alert()",                   R"(\e[1m\e[31m)", R"(\e[2m)"),
        role<ColorTheme::info>            (31, "ColorTheme::info()",                    R"(\e[33m)"),
        role<ColorTheme::default_text>    (32, "ColorTheme::default_text() of a text",  R"(\e[36m)"),
        sequence<ColorTheme::default_text>(33, "ColorTheme::default_text()",            R"(\e[32m)"),
        sequence<ColorTheme::defaultOperatingSystemText>(34, "ColorTheme::defaultOperatingSystemText()", R"(\e[0m)"),
        role<ColorTheme::seperator>       (35, "ColorTheme::seperator()",               R"(\e[37m)"),
        sequence<ColorTheme::help>        (36, "ColorTheme::help()",                    R"(\e[33m)"),
        role<ColorTheme::help>            (37, "ColorTheme::help() of a text",          R"(\e[34m)"),
        role<ColorTheme::prompt>          (38, "ColorTheme::prompt()",                  R"(\e[35m)"),
        role<ColorTheme::version>         (39, "ColorTheme::version()",                 R"(\e[37m)"),
        role<ColorTheme::cursor>          (40, "ColorTheme::cursor()",                  R"(\e[1m\e[36m)", R"(\e[2m)"),
        sequence<ColorTheme::commandLine> (41, "ColorTheme::commandLine()",             R"(\e[36m)"),
        role<ColorTheme::commandLine>     (42, "ColorTheme::commandLine() of a text",   R"(\e[37m)", R"(\e[0m)"),
        role<ColorTheme::path>            (43, "ColorTheme::path()",                    R"(\e[36m)"),
        {44, "ColorTheme::path() of a number", {scope + "ColorTheme::path(unsigned int const&)"}, {number}, [](Program& p, Step const& step) { p.result = ColorTheme::path(static_cast<unsigned>(step.numbers[0])); }, gives(R"(\e[36m4294967295)", "4294967295", {-1})},
        role<ColorTheme::name>            (45, "ColorTheme::name()",                    R"(\e[1m\e[33m)", R"(\e[2m)"),
        sequence<ColorTheme::status>      (46, "ColorTheme::status()",                  R"(\e[35m)"),
        {47, "DataTheme::immediate_destination()", {scope + "DataTheme::immediate_destination(unsigned char)"}, {byte}, of_byte<DataTheme::immediate_destination>, gives(R"(\e[36m0a)", "0a", {10})},
        {48, "DataTheme::total_count()",           {scope + "DataTheme::total_count(unsigned char)"},           {byte}, of_byte<DataTheme::total_count>,           gives(R"(\e[1m\e[34m7f\e[2m)", "7f", {127})},
        role<DataTheme::request_title>    (49, "DataTheme::request_title()",            R"(\e[1m\e[35m)", R"(\e[2m)"),
        role<DataTheme::response_title>   (50, "DataTheme::response_title()",           R"(\e[35m)"),

        // Hex dumps
        {51, "HexDump of a char",            dump("char"),           {byte},           dump_of_number<char>,           gives(R"(\e[32m41)", "41", {'A'})},
        {52, "HexDump of an unsigned char",  dump("unsigned char"),  {byte},           dump_of_number<unsigned char>,  gives(R"(\e[32m05)", "05", {5})},
        {53, "HexDump of an unsigned short", dump("unsigned short"), {two_bytes},      dump_of_number<unsigned short>, gives("0x001f", "0x001f", {0x1f})},
        {54, "HexDump of an unsigned long",  dump("unsigned long"),  {number, number}, [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<HexDump>(long_word_of(step))); }, gives(long_digits, long_digits, {0x12345678, 0xabc})},
        {55, "HexDump of words",             dump("std::vector<unsigned int> const&"),  {numbers}, [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<HexDump>(words_of(step))); }, gives("00000001 00abcdef ", "00000001 00abcdef ", {1, 0xabcdef})},
        {56, "HexDump of bytes",             dump("std::vector<unsigned char> const&"), {bytes},   [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<HexDump>(bytes_of(step))); }, gives(dump_of_words, plain_dump_of_words, {}, {words}), 6},
        {57, "HexDump of bytes, separated",  dump("std::vector<unsigned char> const&, std::string const&"), {bytes_and_separator}, [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<HexDump>(bytes_of(step), step.texts[1])); }, gives(R"(\e[32m61----\e[32m7a----\e[0m)", "61----7a----", {}, {"az", "----"}), 6},
        {58, "HexDump of a string",          dump("std::string const&"), {bytes}, [](Program& p, Step const& step) { p.objects.push_back(std::make_unique<HexDump>(step.texts[0])); }, gives(dump_of_words, plain_dump_of_words, {}, {words}), 6},
        {59, "HexDump::raw_data_byte()",     {scope + "HexDump::raw_data_byte(unsigned char)"}, {byte}, of_byte<HexDump::raw_data_byte>, gives(R"(\e[32m0a)", "0a", {10})},
        {60, "HexDump::raw_data() of a short", {scope + "HexDump::raw_data(unsigned short)"}, {two_bytes}, [](Program& p, Step const& step) { p.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }, gives("0x000a", "0x000a", {10})},
        {61, "HexDump::raw_data() of bytes", {scope + "HexDump::raw_data(std::vector<unsigned char> const&)"}, {bytes}, [](Program& p, Step const& step) { p.result = HexDump::raw_data(bytes_of(step)); }, gives(R"(\e[32m61 \e[32m7a \e[0m)", "61 7a", {}, {"az"})},
        {62, "rtrim()", {"rtrim(std::string const&)"}, {text_with_space}, of_text<rtrim>, gives(words, words, {}, {words + " \t\n"}), 8},

        // A new one takes the next number, wherever it stands. That of one that is gone is not given again.
    };
    // clang-format on
}

} // namespace

std::unique_ptr<Hueline>& ClassicProgram::object(int number)
{
    if (objects.empty()) {
        objects.push_back(std::make_unique<Hueline>());
    }
    return objects[static_cast<std::size_t>(number) % objects.size()];
}

std::vector<ClassicOperation> const& classic_operations()
{
    static std::vector<ClassicOperation> const rows = make_rows();
    return rows;
}

std::vector<std::string> symbols_of_string_interface()
{
    std::vector<std::string> others = {scope + "Hueline::isUsingColor()",
                                       scope + "Hueline::getNoFrillsMode()",
                                       scope + "Hueline::_useColor",
                                       scope + "Hueline::_noFrillsMode",
                                       scope + "HexDump::isLongDumps()",
                                       scope + "HuelineExceptionInterface::~HuelineExceptionInterface()",
                                       scope + "UnknownCodeException::~UnknownCodeException()",
                                       scope + "UnknownCodeException::what() const"};
    for (std::string const type : {"Hueline", "HexDump", "HuelineExceptionInterface", "UnknownCodeException"}) {
        for (std::string const kind : {"vtable", "typeinfo", "typeinfo name"}) {
            others.push_back(kind + " for " + scope + type);
        }
    }
    return symbols_of(classic_operations(), others);
}

std::string result_of_example(ClassicOperation const& operation)
{
    ClassicProgram program;
    operation.act(program, operation.step_of_example());
    if (operation.symbols.front().find("HexDump::HexDump(") != std::string::npos) {
        program.os << *program.objects.back();
        return program.os.str();
    }
    return program.result;
}

void set_time_zone(int minutes)
{
    char zone[64];
    std::snprintf(zone, sizeof zone, "<here>%c%02d:%02d", minutes > 0 ? '-' : '+', std::abs(minutes) / 60,
                  std::abs(minutes) % 60);
    setenv("TZ", zone, 1);
}

} // namespace hueline::test
