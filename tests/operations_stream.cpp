#include "kestry/hueline_stream.hpp"

#include "operations_stream.hpp"

#include "support/grouping.hpp"

#include <climits>
#include <cstdint>
#include <iterator>
#include <locale>
#include <sstream>

namespace hueline::test {

namespace {

using namespace kestry::Hueline;
using Row = StreamOperation;

// How it is applied

template <class Value>
void put(StreamProgram& p, Value const& value)
{
    p.returned = &(*p.os << value);
}

template <std::ostream& (*inserted)(std::ostream&)>
void plain(StreamProgram& p, Step const&)
{
    p.returned = &(*p.os << inserted);
}

// What is printed needs stdout.
template <std::ostream& (*inserted)(std::ostream&)>
void printed(StreamProgram& p, Step const& step)
{
    stdout = p.out;
    plain<inserted>(p, step);
}

template <class Value>
void of_one(StreamProgram& p, Step const& step)
{
    put(p, Value{step.numbers[0]});
}

template <class Value>
void of_two(StreamProgram& p, Step const& step)
{
    put(p, Value{step.numbers[0], step.numbers[1]});
}

template <class Value>
void of_three(StreamProgram& p, Step const& step)
{
    put(p, Value{step.numbers[0], step.numbers[1], step.numbers[2]});
}

template <class Value>
void of_text(StreamProgram& p, Step const& step)
{
    put(p, Value(step.texts[0]));
}

template <class Value, class Number>
void of_narrow(StreamProgram& p, Step const& step)
{
    put(p, Value(static_cast<Number>(step.numbers[0])));
}

template <class Guard>
void open_guard(StreamProgram& p, Step const&)
{
    p.guards.push_back(std::make_shared<Guard>());
}

// What it is exported as

std::string const scope = "kestry::Hueline::";

// csi::show, as a function.
std::vector<std::string> manipulator_symbol(std::string const& name) { return {scope + name + "(std::ostream&)"}; }

// csi::ed, as a type that is inserted.
std::vector<std::string> insertion_symbol(std::string const& name)
{
    std::string const type = scope + name.substr(0, name.find(' '));
    return {type.substr(0, type.rfind("::") + 2) + "operator<<(std::ostream&, " + type + " const&)"};
}

std::vector<std::string> guard_symbols(std::string const& type)
{
    return {scope + type + "::" + type + "()", scope + type + "::~" + type + "()"};
}

std::vector<std::string> dump_symbols(std::string const& parameters)
{
    return {scope + "HexDump::HexDump(" + parameters + ")", insertion_symbol("HexDump").front()};
}

// What comes of it

// Past the record.
Example writes(std::string const& colored, std::string const& plain_text = "")
{
    return {.plain = plain_text, .colored = colored, .colored_after_changes = colored};
}

// Past the record and the gate.
Example writes_anywhere(std::string const& text, Needs needs = Needs::nothing)
{
    Example example = writes(text, text);
    example.needs_where_plain = example.needs_where_colored = needs;
    return example;
}

// A sequence with numbers that are insertions into the stream.
Example writes_numbers(std::vector<int> const& numbers, std::string const& colored)
{
    Example example = writes(colored);
    example.numbers = numbers;
    example.needs_where_colored = Needs::numbers;
    return example;
}

// An attribute, as the whole rendition.
Example shows(Records const& rendition)
{
    return {.colored = rendition.at_load,
            .colored_after_changes = rendition.after_changes,
            .record_where_colored = rendition};
}

// The same, and remembered where the gate refuses.
Example remembers(Records const& rendition)
{
    Example example = shows(rendition);
    example.record_where_plain = rendition;
    return example;
}

// A colour as the whole rendition, and a content after it.
Example foreground(std::string const& sequence, std::string const& content = "")
{
    Records const rendition = {R"(\e[00m\e[1m)" + sequence,
                               R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m)" + sequence + R"(\e[44m)"};
    return {.plain = content,
            .colored = rendition.at_load + content,
            .colored_after_changes = rendition.after_changes + content,
            .record_where_colored = rendition};
}

Example background(std::string const& sequence)
{
    return shows({R"(\e[00m\e[1m)" + sequence, R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m)" + sequence});
}

// A colour, then bold, the text, and then dark.
Example marked(std::string const& sequence, std::string const& text)
{
    std::string const bold_at_load = R"(\e[00m\e[1m)" + sequence;
    std::string const dark_at_load = R"(\e[00m\e[1m\e[2m)" + sequence;
    std::string const changed = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m)" + sequence + R"(\e[44m)";
    std::string const bold_and_dark = R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m)" + sequence + R"(\e[44m)";
    return {.texts = {text},
            .plain = text,
            .colored = bold_at_load + bold_at_load + text + dark_at_load,
            .colored_after_changes = changed + bold_and_dark + text + bold_and_dark,
            .record_where_plain = {R"(\e[00m\e[1m\e[2m)", R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
            .record_where_colored = {dark_at_load, bold_and_dark},
            .in_steps = true};
}

Example told_by_the_model(Needs where_plain, Needs where_colored)
{
    return {.needs_where_plain = where_plain,
            .needs_where_colored = where_colored,
            .in_steps = true,
            .told_by_the_model = true};
}

Example with(Example example, std::vector<int> const& numbers, std::vector<std::string> const& texts = {})
{
    example.numbers = numbers;
    example.texts = texts;
    return example;
}

Example needing(Example example, Needs where_plain, Needs where_colored)
{
    example.needs_where_plain = where_plain;
    example.needs_where_colored = where_colored;
    return example;
}

// Rows

template <std::ostream& (*inserted)(std::ostream&)>
Row manipulator(int number, std::string const& name, Example const& example, int weight = 4)
{
    return {number, name, manipulator_symbol(name), {}, plain<inserted>, example, weight};
}

// Without a number, or with one or two. The control that another calls has its number too.
template <std::ostream& (*inserted)(std::ostream&)>
Row control(int number, std::string const& name, std::string const& colored, Needs needs = Needs::nothing)
{
    return manipulator<inserted>(number, name, needing(writes(colored), Needs::nothing, needs));
}

template <class Value>
Row control(int number, std::string const& name, int n, std::string const& colored)
{
    return {number, name, insertion_symbol(name), {Argument::number}, of_one<Value>, writes_numbers({n}, colored)};
}

template <class Value>
Row position(int number, std::string const& name, int row, int col, std::string const& colored)
{
    return {number,
            name,
            insertion_symbol(name),
            {Argument::number, Argument::number},
            of_two<Value>,
            writes_numbers({row, col}, colored)};
}

std::string const words = "a text of thirty-two characters.";
std::string const dump_of_text = "61 20 74 65 78 74 20 6f 66 20 74 68 69 72 74 79 2d 74 77  ... (32 bytes) ";

template <class Value>
Row role(int number, std::string const& name, Example const& example)
{
    return {number, name, insertion_symbol(name), {Argument::text}, of_text<Value>, with(example, {}, {words})};
}

// A byte or two in digits.
template <class Value, class Number>
Row digits(int number, std::string const& name, Argument argument, int n, Example const& example)
{
    return {number, name, insertion_symbol(name), {argument}, of_narrow<Value, Number>, with(example, {n})};
}

template <std::ostream& (*inserted)(std::ostream&)>
Row pattern(int number, std::string const& name, Needs where_plain, Needs where_colored, int weight = 3)
{
    return manipulator<inserted>(number, name, told_by_the_model(where_plain, where_colored), weight);
}

// One that prints as well.
template <std::ostream& (*inserted)(std::ostream&)>
Row printing_pattern(int number, std::string const& name, Needs where_plain, Needs where_colored, int weight = 3)
{
    Row row = pattern<inserted>(number, name, where_plain, where_colored, weight);
    row.act = printed<inserted>;
    return row;
}

// What a program does around the library.
Row around(int number, std::string const& name, int weight, std::vector<Argument> const& arguments,
           void (*act)(StreamProgram&, Step const&))
{
    return {number, name, {}, arguments, act, {}, weight};
}

std::vector<Row> make_rows()
{
    using enum Argument;
    auto const request = [] {
        Example example = foreground(R"(\e[35m)");
        example.texts = {words};
        example.plain = dump_of_text;
        example.colored = R"(\e[00m\e[1m\e[35m\e[00m\e[1m\e[35m)" + dump_of_text;
        example.colored_after_changes = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)"
                                        R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)" +
                                        dump_of_text;
        example.record_where_plain.after_changes = R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)";
        example.record_where_colored.after_changes = R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)";
        example.in_steps = true;
        return example;
    }();
    auto const response = [] {
        Example example = foreground(R"(\e[35m)");
        example.texts = {words};
        example.plain = dump_of_text;
        example.colored = R"(\e[00m\e[1m\e[35m\e[00m\e[1m\e[2m\e[35m)" + dump_of_text;
        example.colored_after_changes = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)"
                                        R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)" +
                                        dump_of_text;
        example.record_where_plain.at_load = R"(\e[00m\e[1m\e[2m)";
        example.record_where_colored.at_load = R"(\e[00m\e[1m\e[2m\e[35m)";
        example.in_steps = true;
        return example;
    }();
    auto const command_line = [] {
        Example example = foreground(R"(\e[37m)", words);
        example.colored += R"(\e[00m\e[25h)";
        example.colored_after_changes += R"(\e[00m\e[25h)";
        example.record_where_plain = example.record_where_colored = {record_at_load, record_at_load};
        example.in_steps = true;
        return example;
    }();
    auto const reset_record = [] {
        Example example = writes(R"(\e[00m\e[25h)");
        example.record_where_plain = example.record_where_colored = {record_at_load, record_at_load};
        example.in_steps = true;
        return example;
    }();
    // What was saved at load is what there was at load.
    auto const pulled = [] {
        Example example;
        example.record_where_colored = {record_at_load, record_at_load};
        return example;
    }();
    // White on green, and two lines.
    auto const green_template = [](std::string const& lines) {
        Example example = writes(R"(\e[00m\e[1m\e[37m\e[00m\e[1m\e[37m\e[42m)" + lines);
        example.colored_after_changes = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[37m\e[44m)"
                                        R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[37m\e[42m)" +
                                        lines;
        example.record_where_colored = {R"(\e[00m\e[1m\e[37m\e[42m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[37m\e[42m)"};
        example.needs_where_colored = Needs::line_ends;
        example.in_steps = true;
        return example;
    };
    auto const version_tag = [] {
        Example example = foreground(R"(\e[37m)");
        example.plain = "Hueline ver. 0.2.2-r0";
        example.colored = R"(Hueline ver. \e[00m\e[1m\e[37m0.2.2-r0)";
        example.colored_after_changes = R"(Hueline ver. \e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[37m\e[44m0.2.2-r0)";
        example.in_steps = true;
        return example;
    }();

    // clang-format off
    return {
        manipulator<colorize>  (0, "colorize",   {}, 60),
        manipulator<nocolorize>(1, "nocolorize", {}),
        around(2, "colorize word =", 3, {colorize_word}, [](StreamProgram& p, Step const& step) { p.os->iword(find_colorize_word()) = step.numbers[0]; }),
        {3, "_setNoFrillsMode", {scope + "_setNoFrillsMode(bool)"}, {mostly_off}, [](StreamProgram&, Step const& step) { _setNoFrillsMode(step.numbers[0] != 0); }, with({}, {0}), 16},
        manipulator<color_mode_state> (4, "color_mode_state",  needing(writes(R"( use color mode is on \n\f)", R"( use color mode is off \n\f (you should not be seeing color) \n\f)"), Needs::line_ends, Needs::line_ends)),
        manipulator<frills_mode_state>(5, "frills_mode_state", writes_anywhere(R"( no frills mode is off \n\f)", Needs::line_ends)),
        {6, "open UseColorMode",  guard_symbols("UseColorMode"),  {}, open_guard<UseColorMode>},
        {7, "open NoColorMode",   guard_symbols("NoColorMode"),   {}, open_guard<NoColorMode>},
        {8, "open NoFrillsMode",  guard_symbols("NoFrillsMode"),  {}, open_guard<NoFrillsMode>},
        {9, "open UseFrillsMode", guard_symbols("UseFrillsMode"), {}, open_guard<UseFrillsMode>},
        around(10, "close a guard", 16, {item}, [](StreamProgram& p, Step const& step) {
            if (!p.guards.empty()) {
                p.guards.erase(std::next(p.guards.begin(), step.numbers[0] % static_cast<int>(p.guards.size())));
            }
        }),
        around(11, "stdout = nullptr",             1, {}, [](StreamProgram&, Step const&) { stdout = nullptr; }),
        around(12, "stderr = nullptr",             1, {}, [](StreamProgram&, Step const&) { stderr = nullptr; }),
        around(13, "stdout and stderr again",      6, {}, [](StreamProgram& p, Step const&) { stdout = p.out; stderr = p.err; }),
        around(14, "the global locale groups",     3, {}, [](StreamProgram&, Step const&) { std::locale::global(grouping_locale()); }),
        around(15, "the global locale is classic", 3, {}, [](StreamProgram&, Step const&) { std::locale::global(std::locale::classic()); }),

        // Composition
        manipulator<adjust>(16, "adjust", shows({}), 12),
        manipulator<push>  (17, "push",   {}, 16),
        manipulator<pull>  (18, "pull",   pulled, 16),
        manipulator<normal>(19, "normal", writes(R"(\e[00m\e[25h)")),
        manipulator<kestry::Hueline::reset>(20, "reset", reset_record),

        // Attributes
        manipulator<bold>       (21, "bold",        remembers({R"(\e[00m\e[1m)",      R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<thin>       (22, "thin",        remembers({R"(\e[00m)",           R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<dark>       (23, "dark",        remembers({R"(\e[00m\e[1m\e[2m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<lite>       (24, "lite",        remembers({R"(\e[00m\e[1m)",      R"(\e[00m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<bright>     (25, "bright",      remembers({R"(\e[00m\e[1m)",      R"(\e[00m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<italic>     (26, "italic",      shows    ({R"(\e[00m\e[1m\e[3m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<noitalic>   (27, "noitalic",    shows    ({R"(\e[00m\e[1m)",      R"(\e[00m\e[2m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<underline>  (28, "underline",   shows    ({R"(\e[00m\e[1m\e[4m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<nounderline>(29, "nounderline", shows    ({R"(\e[00m\e[1m)",      R"(\e[00m\e[2m\e[3m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<blink>      (30, "blink",       shows    ({R"(\e[00m\e[1m\e[5m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<noblink>    (31, "noblink",     shows    ({R"(\e[00m\e[1m)",      R"(\e[00m\e[2m\e[3m\e[4m\e[7m\e[31m\e[44m)"})),
        manipulator<kestry::Hueline::reverse>(32, "reverse", shows({R"(\e[00m\e[1m\e[7m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"})),
        manipulator<noreverse>  (33, "noreverse",   shows    ({R"(\e[00m\e[1m)",      R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[31m\e[44m)"})),
        manipulator<concealed>  (34, "concealed",   writes(R"(\e[8m)")),
        manipulator<crossed>    (35, "crossed",     writes(R"(\e[9m)")),

        // Colours
        manipulator<grey>      (36, "grey",       foreground(R"(\e[30m)")),
        manipulator<red>       (37, "red",        foreground(R"(\e[31m)")),
        manipulator<green>     (38, "green",      foreground(R"(\e[32m)")),
        manipulator<yellow>    (39, "yellow",     foreground(R"(\e[33m)")),
        manipulator<blue>      (40, "blue",       foreground(R"(\e[34m)")),
        manipulator<magenta>   (41, "magenta",    foreground(R"(\e[35m)")),
        manipulator<cyan>      (42, "cyan",       foreground(R"(\e[36m)")),
        manipulator<white>     (43, "white",      foreground(R"(\e[37m)")),
        manipulator<black>     (44, "black",      foreground(R"(\e[30m)")),
        manipulator<on_grey>   (45, "on_grey",    background(R"(\e[40m)")),
        manipulator<on_red>    (46, "on_red",     background(R"(\e[41m)")),
        manipulator<on_green>  (47, "on_green",   background(R"(\e[42m)")),
        manipulator<on_yellow> (48, "on_yellow",  background(R"(\e[43m)")),
        manipulator<on_blue>   (49, "on_blue",    background(R"(\e[44m)")),
        manipulator<on_magenta>(50, "on_magenta", background(R"(\e[45m)")),
        manipulator<on_cyan>   (51, "on_cyan",    background(R"(\e[46m)")),
        manipulator<on_white>  (52, "on_white",   background(R"(\e[47m)")),
        manipulator<on_black>  (53, "on_black",   background(R"(\e[40m)")),
        {54, "next", {scope + "next(std::ostream&, int, bool)"}, {color_of_eight, flag},
         [](StreamProgram& p, Step const& step) { p.returned = &kestry::Hueline::next(*p.os, step.numbers[0], step.numbers[1] != 0); },
         with(background(R"(\e[43m)"), {3, 1}), 12},
        {55, "col()", {scope + "col(std::string const&)"}, {text}, [](StreamProgram& p, Step const& step) { p.result = col(step.texts[0]); }, with(writes_anywhere("a text of "), {}, {words})},
        {56, "color",    insertion_symbol("color"),    {number},                 of_one<color>,     with(foreground(R"(\e[38;5;-2147483648m)"), {INT_MIN})},
        {57, "on_color", insertion_symbol("on_color"), {number},                 of_one<on_color>,  with(background(R"(\e[48;5;-2147483648m)"), {INT_MIN})},
        {58, "rgb",      insertion_symbol("rgb"),      {number, number, number}, of_three<rgb>,     with(foreground(R"(\e[38;2;100;20;255m)"), {100, 20, 255})},
        {59, "on_rgb",   insertion_symbol("on_rgb"),   {number, number, number}, of_three<on_rgb>,  with(background(R"(\e[48;2;-2147483648;2147483647;0m)"), {INT_MIN, INT_MAX, 0})},

        // Control sequences
        control<csi::show> (60, "csi::show",  R"(\e[25h)"),
        control<csi::hide> (61, "csi::hide",  R"(\e[25i)"),
        manipulator<csi::cr>(62, "csi::cr", writes_anywhere(R"(\r)")),
        manipulator<csi::lf>(63, "csi::lf", writes_anywhere(R"(\n)")),
        control<csi::cls>  (64, "csi::cls",   R"(\e[2J)", Needs::numbers),
        control<csi::clr>  (65, "csi::clr",   R"(\e[2J)", Needs::numbers),
        control<csi::clear>(66, "csi::clear", R"(\e[2J)", Needs::numbers),
        control<csi::dsr>  (67, "csi::dsr",   R"(\e[6n)"),
        control<csi::scp>  (68, "csi::scp",   R"(\e[s)"),
        control<csi::rcp>  (69, "csi::rcp",   R"(\e[u)"),
        control<csi::ed>   (70, "csi::ed",  1, R"(\e[1J)"),
        control<csi::el>   (71, "csi::el",  2, R"(\e[2K)"),
        control<csi::cuu>  (72, "csi::cuu", 3, R"(\e[3A)"),
        control<csi::cud>  (73, "csi::cud", 4, R"(\e[4B)"),
        control<csi::cuf>  (74, "csi::cuf", 5, R"(\e[5C)"),
        control<csi::cub>  (75, "csi::cub", 6, R"(\e[6D)"),
        control<csi::cnl>  (76, "csi::cnl", 7, R"(\e[7E)"),
        control<csi::cpl>  (77, "csi::cpl", 8, R"(\e[8F)"),
        control<csi::cha>  (78, "csi::cha", 9, R"(\e[9G)"),
        control<csi::su>   (79, "csi::su", 10, R"(\e[10S)"),
        control<csi::sd>   (80, "csi::sd", 11, R"(\e[11T)"),
        control<csi::sgr>  (81, "csi::sgr", 91, R"(\e[91m)"),
        position<csi::cup> (82, "csi::cup", 12, 34, R"(\e[12;34H)"),
        position<csi::hvp> (83, "csi::hvp", 56, 78, R"(\e[56;78f)"),
        {84, "csi::delay",    insertion_symbol("csi::delay"),            {milliseconds},           of_one<csi::delay>, with({}, {25}), 8},
        {85, "csi::color()",  {scope + "csi::color(int)"},               {number},                 [](StreamProgram& p, Step const& step) { p.result = csi::color(step.numbers[0]); }, with(writes_anywhere(R"(\e[-2147483648m)"), {INT_MIN})},
        {86, "csi::rgb()",    {scope + "csi::rgb(int, int, int)"},       {number, number, number}, [](StreamProgram& p, Step const& step) { p.result = csi::rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }, with(writes_anywhere(R"(\e[38;2;255;128;0m)"), {255, 128, 0})},
        {87, "csi::on_rgb()", {scope + "csi::on_rgb(int, int, int)"},    {number, number, number}, [](StreamProgram& p, Step const& step) { p.result = csi::on_rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }, with(writes_anywhere(R"(\e[48;2;1;-22;333m)"), {1, -22, 333})},

        // Activity indicators. How far the spinners have turned is told by the model: here each frame is the same.
        {88, "spinner", insertion_symbol("spinner"), {frames, text}, [](StreamProgram& p, Step const& step) { put(p, spinner{step.texts[0], step.texts[1]}); },
         with(writes_anywhere(words + "+"), {}, {"+", words}), 8},
        {89, "status_line", insertion_symbol("status_line"), {steps_of_a_bar, text, text, text, text, frames, text}, [](StreamProgram& p, Step const& step) {
            put(p, status_line{step.numbers[0], step.numbers[1], step.numbers[2], step.texts[0], step.texts[1],
                               step.texts[2], step.texts[3], step.texts[4], step.texts[5]});
        }, with(writes_anywhere("[##" + words + "+...] " + words), {3, 1, 7}, {"#", ".", "[", "] " + words, "+", words}), 12},
        {90, "progress_meter", insertion_symbol("progress_meter"), {steps_of_percent, text, text, text, text}, [](StreamProgram& p, Step const& step) {
            put(p, progress_meter{step.numbers[0], step.numbers[1], step.numbers[2],
                                  step.texts[0], step.texts[1], step.texts[2], step.texts[3]});
        }, with(writes_anywhere("(" + words + " =33%)", Needs::numbers), {3, 0, 9}, {words, "(", ")", "="}), 12},

        // Themes
        role<ColorTheme::app_title>   (91,  "ColorTheme::app_title",    foreground(R"(\e[32m)", words)),
        role<ColorTheme::alert>       (92,  "ColorTheme::alert",        marked    (R"(\e[31m)", words)),
        role<ColorTheme::info>        (93,  "ColorTheme::info",         foreground(R"(\e[33m)", words)),
        role<ColorTheme::default_text>(94,  "ColorTheme::default_text", foreground(R"(\e[36m)", words)),
        role<ColorTheme::seperator>   (95,  "ColorTheme::seperator",    foreground(R"(\e[37m)", words)),
        role<ColorTheme::help>        (96,  "ColorTheme::help",         foreground(R"(\e[34m)", words)),
        role<ColorTheme::prompt>      (97,  "ColorTheme::prompt",       foreground(R"(\e[35m)", words)),
        role<ColorTheme::version>     (98,  "ColorTheme::version",      foreground(R"(\e[37m)", words)),
        role<ColorTheme::cursor>      (99,  "ColorTheme::cursor",       marked    (R"(\e[36m)", words)),
        role<ColorTheme::commandLine> (100, "ColorTheme::commandLine",  command_line),
        role<ColorTheme::name>        (101, "ColorTheme::name",         marked    (R"(\e[37m)", words)),
        role<ColorTheme::path>        (102, "ColorTheme::path",         foreground(R"(\e[36m)", words)),
        digits<ColorTheme::path, std::uint32_t>(103, "ColorTheme::path of a number", number, -1, needing(foreground(R"(\e[36m)", "4294967295"), Needs::numbers, Needs::numbers)),
        manipulator<ColorTheme::_default_text>(104, "ColorTheme::_default_text", foreground(R"(\e[32m)")),
        manipulator<ColorTheme::_help>        (105, "ColorTheme::_help",         foreground(R"(\e[33m)")),
        manipulator<ColorTheme::_commandLine> (106, "ColorTheme::_commandLine",  foreground(R"(\e[36m)")),
        manipulator<ColorTheme::_status>      (107, "ColorTheme::_status",       foreground(R"(\e[35m)")),
        digits<DataTheme::immediate_destination, std::uint8_t>(108, "DataTheme::immediate_destination", byte, 0x0a, foreground(R"(\e[36m)", "0a")),
        digits<DataTheme::total_count, std::uint8_t>(109, "DataTheme::total_count",    byte,      0xff,   foreground(R"(\e[34m)", "ff")),
        digits<DataTheme::crc, std::uint8_t>        (110, "DataTheme::crc of 8 bits",  byte,      0xc3,   foreground(R"(\e[32m)", "c3")),
        digits<DataTheme::crc, std::uint16_t>       (111, "DataTheme::crc of 16 bits", two_bytes, 0x12ab, foreground(R"(\e[32m)", "12 ab ")),
        {112, "DataTheme::request_title",  insertion_symbol("DataTheme::request_title"),  {text}, of_text<DataTheme::request_title>,  request},
        {113, "DataTheme::response_title", insertion_symbol("DataTheme::response_title"), {text}, of_text<DataTheme::response_title>, response},

        // Hex dumps
        {114, "HexDump of a char",             dump_symbols("char"),           {byte},           of_narrow<HexDump, char>,           with(writes_anywhere("41"), {'A'})},
        {115, "HexDump of an unsigned char",   dump_symbols("unsigned char"),  {byte},           of_narrow<HexDump, unsigned char>,  with(writes_anywhere("05"), {5})},
        {116, "HexDump of an unsigned short",  dump_symbols("unsigned short"), {two_bytes},      of_narrow<HexDump, unsigned short>, with(writes_anywhere("0x001f"), {0x1f})},
        {117, "HexDump of an unsigned long",   dump_symbols("unsigned long"),  {number, number}, [](StreamProgram& p, Step const& step) { put(p, HexDump(long_word_of(step))); }, with(writes_anywhere(long_digits), {0x12345678, 0xabc})},
        {118, "HexDump of words",              dump_symbols("std::vector<unsigned int> const&"), {numbers}, [](StreamProgram& p, Step const& step) { put(p, HexDump(words_of(step))); }, with(writes_anywhere("00000001 00abcdef "), {1, 0xabcdef})},
        {119, "HexDump of bytes",              dump_symbols("std::vector<unsigned char> const&"), {bytes}, [](StreamProgram& p, Step const& step) { put(p, HexDump(bytes_of(step))); }, with(writes_anywhere(dump_of_text), {}, {words})},
        {120, "HexDump of bytes, separated",   dump_symbols("std::vector<unsigned char> const&, std::string const&"), {bytes_and_separator}, [](StreamProgram& p, Step const& step) { put(p, HexDump(bytes_of(step), step.texts[1])); }, with(writes_anywhere("61-----20-----6c-----7a-----"), {}, {"a lz", "-----"})},
        {121, "HexDump of a string",           dump_symbols("std::string const&"), {bytes}, of_text<HexDump>, with(writes_anywhere(dump_of_text), {}, {words})},
        {122, "HexDump::_longDumps =",         {scope + "HexDump::_longDumps"}, {flag}, [](StreamProgram&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }, with({}, {0})},
        {123, "HexDump::raw_data_byte()",      {scope + "HexDump::raw_data_byte(unsigned char)"}, {byte}, [](StreamProgram& p, Step const& step) { p.result = HexDump::raw_data_byte(static_cast<unsigned char>(step.numbers[0])); }, with(writes_anywhere("0a"), {10})},
        {124, "HexDump::raw_data() of a short", {scope + "HexDump::raw_data(unsigned short)"}, {two_bytes}, [](StreamProgram& p, Step const& step) { p.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }, with(writes_anywhere("0x000a"), {10})},
        {125, "HexDump::raw_data() of bytes",  {scope + "HexDump::raw_data(std::vector<unsigned char> const&)"}, {bytes}, [](StreamProgram& p, Step const& step) { p.result = HexDump::raw_data(bytes_of(step)); }, with(writes_anywhere(dump_of_text), {}, {words})},
        // The standard streams have their fill character already; another stream widens a blank first.
        {126, "myfillandw", {"operator<<(std::ostream&, myfillandw const&)"}, {fill, width}, [](StreamProgram& p, Step const& step) { put(p, myfillandw{static_cast<char>(step.numbers[0]), step.numbers[1]}); }, needing(with({}, {'*', 6}), Needs::line_ends, Needs::nothing), 6},

        // Demonstrations
        {127, "parameters_template", insertion_symbol("parameters_template"), {number}, of_one<parameters_template>, writes_numbers({4}, R"(\e[4m)")},
        manipulator<crossplatform_template>(128, "crossplatform_template", writes_anywhere(
            R"(this is a cross platform template\n\fthere is no need to sudivide this section\n\f)"
            R"(into Linux and Windows areas as this code\n\fwill run on all platfoms without specific needs\n\f)"
            R"(for either platform Windows or Linux\n\f)", Needs::line_ends)),
        manipulator<platformspecific_template>(129, "platformspecific_template", writes_anywhere(
            R"(\e[00mthis is a platform specific template\n\fexternally the interface is the same\n\f)"
            R"(internally the implementation is specific\n\fto either Linux in this case\n\for Windows in the below case\n\f)", Needs::line_ends)),
        manipulator<colorized_crossplatform_template>(130, "colorized_crossplatform_template", green_template(
            R"( will only display in color if colorize has been called \n\f and this works on both Windows and Linux \n\f)")),
        manipulator<colorized_platformspecific_template>(131, "colorized_platformspecific_template", green_template(
            R"( will display (in Linux) color if colorize \n\f has been called and this works on Linux \n\f)")),
        manipulator<build_version_short>(132, "build_version_short", version_tag),
        pattern<test_pattern_normal_reset>     (133, "test_pattern_normal_reset",      Needs::line_ends,      Needs::line_ends),
        pattern<test_pattern_matrix>           (134, "test_pattern_matrix",            Needs::line_ends,      Needs::line_ends),
        pattern<test_pattern_256bit>           (135, "test_pattern_256bit",            Needs::line_ends,      Needs::line_ends, 2),
        pattern<test_pattern_greyscale>        (136, "test_pattern_greyscale",         Needs::both,           Needs::both, 2),
        pattern<test_pattern_rgb>              (137, "test_pattern_rgb",               Needs::line_ends,      Needs::line_ends, 2),
        pattern<test_pattern_status_line>      (138, "test_pattern_status_line",       Needs::nothing,        Needs::nothing, 1),
        pattern<test_pattern_progress_line>    (139, "test_pattern_progress_line",     Needs::numbers, Needs::numbers, 1),
        printing_pattern<test_pattern_supported_m_codes>(140, "test_pattern_supported_m_codes", Needs::nothing,        Needs::line_ends),
        printing_pattern<build_version>        (141, "build_version",                  Needs::both,           Needs::both, 1),

        // A new one takes the next number, wherever it stands. That of one that is gone is not given again.
    };
    // clang-format on
}

} // namespace

std::vector<StreamOperation> const& stream_operations()
{
    static std::vector<StreamOperation> const rows = make_rows();
    return rows;
}

std::vector<std::string> symbols_of_stream_interface()
{
    return symbols_of(stream_operations(), {scope + "_isUsingColor()", scope + "_getNoFrillsMode()"});
}

std::vector<StreamOperation> const& operations_on_a_stream()
{
    static std::vector<StreamOperation> const rows = [] {
        std::vector<StreamOperation> found;
        for (StreamOperation const& each : stream_operations()) {
            if (!each.symbols.empty() && each.symbols.back().find("(std::ostream&") != std::string::npos) {
                found.push_back(each);
            }
        }
        return found;
    }();
    return rows;
}

void apply_example(StreamOperation const& operation, std::ostream& os)
{
    StreamProgram program = {.os = &os};
    operation.act(program, operation.step_of_example());
}

void apply_all_examples(std::ostream& os)
{
    for (StreamOperation const& each : operations_on_a_stream()) {
        apply_example(each, os);
    }
}

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

} // namespace hueline::test
