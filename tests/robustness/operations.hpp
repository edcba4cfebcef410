/// \file
/// Every operation of the stream interface that is given a stream, in one table.
#pragma once

#include "kestry/hueline_stream.hpp"

#include "buffers.hpp"

#include <climits>
#include <cstdint>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace hueline::test {

inline std::string const bar_frames = "|/-\\";
inline std::string const cell = "#";

/// What an operation needs of its stream's locale: an int insertion needs std::num_put<char>, std::endl
/// needs std::ctype<char>.
enum class Needs { nothing, numbers, line_ends, both };

inline bool needs_numbers(Needs what) { return what == Needs::numbers || what == Needs::both; }
inline bool needs_line_ends(Needs what) { return what == Needs::line_ends || what == Needs::both; }

struct Operation {
    std::string name; ///< As it is exported, without kestry::Hueline, and a blank and more.
    std::function<void(std::ostream&)> act;
    Needs plain = Needs::nothing;    ///< On a stream that the gate refuses.
    Needs coloured = Needs::nothing; ///< On a stream that it lets pass.
    bool in_steps = false;           ///< Changes the record after its first byte.
};

inline Operation plain(std::string const& name, std::ostream& (*manipulator)(std::ostream&),
                       Needs always = Needs::nothing)
{
    return {name, [manipulator](std::ostream& os) { os << manipulator; }, always, always};
}

template <class Value>
Operation value(std::string const& name, Value const& inserted, Needs of_plain = Needs::nothing,
                Needs of_coloured = Needs::nothing)
{
    return {name, [inserted](std::ostream& os) { os << inserted; }, of_plain, of_coloured};
}

inline Operation in_steps(Operation operation)
{
    operation.in_steps = true;
    return operation;
}

/// What writes a few hundred bytes at most.
inline std::vector<Operation> small_operations()
{
    using namespace kestry::Hueline;
    using enum Needs;
    Operation colored_template = plain("colorized_crossplatform_template", colorized_crossplatform_template);
    Operation colored_platform = plain("colorized_platformspecific_template", colorized_platformspecific_template);
    colored_template.coloured = line_ends;
    colored_platform.coloured = line_ends;

    return {
        plain("colorize", colorize),
        plain("nocolorize", nocolorize),
        plain("color_mode_state", color_mode_state, line_ends),
        plain("frills_mode_state", frills_mode_state, line_ends),
        plain("adjust", adjust),
        plain("push", push),
        plain("pull", pull),
        plain("normal", normal),
        in_steps(plain("reset", reset)),

        plain("bold", bold),
        plain("thin", thin),
        plain("dark", dark),
        plain("lite", lite),
        plain("bright", bright),
        plain("italic", italic),
        plain("noitalic", noitalic),
        plain("underline", underline),
        plain("nounderline", nounderline),
        plain("blink", blink),
        plain("noblink", noblink),
        plain("reverse", kestry::Hueline::reverse),
        plain("noreverse", noreverse),
        plain("concealed", concealed),
        plain("crossed", crossed),
        plain("grey", grey),
        plain("red", red),
        plain("green", green),
        plain("yellow", yellow),
        plain("blue", blue),
        plain("magenta", magenta),
        plain("cyan", cyan),
        plain("white", white),
        plain("black", black),
        plain("on_grey", on_grey),
        plain("on_red", on_red),
        plain("on_green", on_green),
        plain("on_yellow", on_yellow),
        plain("on_blue", on_blue),
        plain("on_magenta", on_magenta),
        plain("on_cyan", on_cyan),
        plain("on_white", on_white),
        plain("on_black", on_black),
        {"next", [](std::ostream& os) { kestry::Hueline::next(os, 3, false); }},
        {"next of a background", [](std::ostream& os) { kestry::Hueline::next(os, 3, true); }},

        value("color", color{200}),
        value("on_color", on_color{17}),
        value("rgb", rgb{1, 20, 255}),
        value("on_rgb", on_rgb{100, 200, 255}),
        value("on_rgb of any numbers", on_rgb{INT_MIN, INT_MAX, INT_MIN}),

        plain("csi::show", csi::show),
        plain("csi::hide", csi::hide),
        plain("csi::cr", csi::cr),
        plain("csi::lf", csi::lf),
        plain("csi::dsr", csi::dsr),
        plain("csi::scp", csi::scp),
        plain("csi::rcp", csi::rcp),
        {"csi::cls", [](std::ostream& os) { os << csi::cls; }, nothing, numbers},
        {"csi::clr", [](std::ostream& os) { os << csi::clr; }, nothing, numbers},
        {"csi::clear", [](std::ostream& os) { os << csi::clear; }, nothing, numbers},
        value("csi::ed", csi::ed{1}, nothing, numbers),
        value("csi::el", csi::el{2}, nothing, numbers),
        value("csi::cuu", csi::cuu{3}, nothing, numbers),
        value("csi::cud", csi::cud{4}, nothing, numbers),
        value("csi::cuf", csi::cuf{5}, nothing, numbers),
        value("csi::cub", csi::cub{6}, nothing, numbers),
        value("csi::cnl", csi::cnl{7}, nothing, numbers),
        value("csi::cpl", csi::cpl{8}, nothing, numbers),
        value("csi::cha", csi::cha{9}, nothing, numbers),
        value("csi::su", csi::su{10}, nothing, numbers),
        value("csi::sd", csi::sd{11}, nothing, numbers),
        value("csi::cup", csi::cup{12, 34}, nothing, numbers),
        value("csi::hvp", csi::hvp{56, 78}, nothing, numbers),
        value("csi::sgr", csi::sgr{97}, nothing, numbers),
        value("csi::delay", csi::delay{25}),

        value("spinner", spinner{bar_frames, "busy "}),
        value("status_line", status_line{3, 0, 9, cell, ".", "[", "]", bar_frames, "!"}),
        value("progress_meter", progress_meter{3, 0, 9, cell, "(", ")", "="}, numbers, numbers),

        value("ColorTheme::app_title", ColorTheme::app_title("title")),
        in_steps(value("ColorTheme::alert", ColorTheme::alert("alert"))),
        value("ColorTheme::info", ColorTheme::info("info")),
        value("ColorTheme::default_text", ColorTheme::default_text("text")),
        value("ColorTheme::seperator", ColorTheme::seperator("--")),
        value("ColorTheme::help", ColorTheme::help("help")),
        value("ColorTheme::prompt", ColorTheme::prompt("?")),
        value("ColorTheme::version", ColorTheme::version("0.2.2")),
        in_steps(value("ColorTheme::cursor", ColorTheme::cursor(">"))),
        in_steps(value("ColorTheme::commandLine", ColorTheme::commandLine("ls"))),
        in_steps(value("ColorTheme::name", ColorTheme::name("name"))),
        value("ColorTheme::path", ColorTheme::path("/tmp")),
        value("ColorTheme::path of a number", ColorTheme::path(std::uint32_t{42}), numbers, numbers),
        plain("ColorTheme::_default_text", ColorTheme::_default_text),
        plain("ColorTheme::_help", ColorTheme::_help),
        plain("ColorTheme::_commandLine", ColorTheme::_commandLine),
        plain("ColorTheme::_status", ColorTheme::_status),

        value("DataTheme::immediate_destination", DataTheme::immediate_destination(std::uint8_t{0xab})),
        value("DataTheme::total_count", DataTheme::total_count(std::uint8_t{0xcd})),
        value("DataTheme::crc", DataTheme::crc(std::uint8_t{0xef})),
        value("DataTheme::crc of two bytes", DataTheme::crc(std::uint16_t{0xbeef})),
        in_steps(value("DataTheme::request_title", DataTheme::request_title("title"))),
        in_steps(value("DataTheme::response_title", DataTheme::response_title("title"))),

        value("HexDump", HexDump(0xdeadbeefUL)),
        // The standard streams have their fill character already; another stream widens a blank first.
        {"myfillandw",
         [](std::ostream& os) {
             os << myfillandw{'*', 6};
         },
         line_ends, nothing},

        value("parameters_template", parameters_template{4}, nothing, numbers),
        plain("crossplatform_template", crossplatform_template, line_ends),
        plain("platformspecific_template", platformspecific_template, line_ends),
        in_steps(colored_template),
        in_steps(colored_platform),
        in_steps(plain("build_version_short", build_version_short)),
    };
}

/// What writes thousands of bytes.
inline std::vector<Operation> large_operations()
{
    using namespace kestry::Hueline;
    using enum Needs;
    std::vector<Operation> all = {
        {"test_pattern_supported_m_codes", [](std::ostream& os) { os << test_pattern_supported_m_codes; }, nothing,
         line_ends},
        plain("test_pattern_normal_reset", test_pattern_normal_reset, line_ends),
        plain("test_pattern_matrix", test_pattern_matrix, line_ends),
        plain("test_pattern_256bit", test_pattern_256bit, line_ends),
        plain("test_pattern_greyscale", test_pattern_greyscale, both),
        plain("test_pattern_rgb", test_pattern_rgb, line_ends),
        plain("test_pattern_status_line", test_pattern_status_line),
        plain("test_pattern_progress_line", test_pattern_progress_line, numbers),
        plain("build_version", build_version, both),
    };
    for (Operation& each : all) {
        each.in_steps = true;
    }
    return all;
}

inline std::vector<Operation> all_operations()
{
    std::vector<Operation> all = small_operations();
    for (Operation const& large : large_operations()) {
        all.push_back(large);
    }
    return all;
}

inline void perform_everything(std::ostream& os)
{
    for (Operation const& each : all_operations()) {
        each.act(os);
    }
}

} // namespace hueline::test
