/// \file
/// The stream interface as it follows programs of steps: every operation, in one table, and what can be seen
/// afterwards.
#pragma once

#include "kestry/hueline_stream.hpp"

#include "model/host.hpp"
#include "model/operation.hpp"
#include "model/step.hpp"

#include "stream/isatty_calls.hpp"
#include "stream/system_clock.hpp"

#include "support/grouping.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <list>
#include <locale>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace hueline::test {

using Guard =
    std::variant<std::unique_ptr<kestry::Hueline::UseColorMode>, std::unique_ptr<kestry::Hueline::NoColorMode>,
                 std::unique_ptr<kestry::Hueline::NoFrillsMode>, std::unique_ptr<kestry::Hueline::UseFrillsMode>>;

/// The place of the colorize word among the words of a stream, which the library does not tell.
inline int find_colorize_word()
{
    std::ostringstream os;
    kestry::Hueline::colorize(os);
    int const end = std::ios_base::xalloc();
    for (int i = 0; i < end; ++i) {
        if (os.iword(i) == 1) {
            return i;
        }
    }
    return end; // there is none
}

/// Has the standard streams, a string stream and another stream with std::cout's buffer. Who derives from it gives
/// them buffers that remember what they receive.
class StreamLibrary {
public:
    /// stdio_out: where stdio's output goes, but in programs that have closed it.
    explicit StreamLibrary(std::FILE* stdio_out) : out(stdio_out) {}
    StreamLibrary(StreamLibrary const&) = delete;
    StreamLibrary& operator=(StreamLibrary const&) = delete;
    virtual ~StreamLibrary() = default;

    /// Follows a step and says what is seen after it.
    Facts perform(Operation<StreamLibrary> const& operation, Step const& step)
    {
        result = "";
        isatty_calls = 0;
        clock_readings = 0;
        int constexpr mark = 4711;
        errno = mark;
        std::string const thrown = thrown_by([&] { operation.act(*this, step); });
        bool const errno_kept = errno == mark;

        Facts facts;
        facts.push_back({"_isUsingColor()", kestry::Hueline::_isUsingColor() ? "true" : "false"});
        facts.push_back({"_getNoFrillsMode()", kestry::Hueline::_getNoFrillsMode() ? "true" : "false"});
        for (std::string const name : {"cout", "cerr", "clog", "text", "second"}) {
            add_format(facts, name, stream(name));
            facts.push_back({name + " colorize word", std::to_string(stream(name).iword(word))});
        }
        Received const received = take_received();
        facts.push_back({"received by std::cout's buffer", received.out});
        facts.push_back({"received by std::cerr's buffer", received.err});
        facts.push_back({"received by the string stream", received.text});
        facts.push_back({"thrown", thrown});
        facts.push_back({"returned", result});
        facts.push_back({"isatty called", std::to_string(isatty_calls)});
        facts.push_back({"clock read", std::to_string(clock_readings)});
        facts.push_back({"errno", errno_kept ? "kept" : "changed"});
        return facts;
    }

    std::ostream& stream(std::string const& name)
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

    /// printf has no other place to write to.
    void put_back_stdout() { stdout = out; }

    void put_back_stdio()
    {
        put_back_stdout();
        stderr = err;
    }

    std::list<Guard> guards;
    std::string result; ///< Of a function that returns a string.
    int const word = find_colorize_word();

protected:
    /// What the buffers have received since the last call, with flushes.
    struct Received {
        std::string out;
        std::string err;
        std::string text;
    };
    virtual Received take_received() = 0;

    std::ostringstream text;
    std::ostream second{nullptr};

private:
    std::FILE* const out;
    std::FILE* const err = stderr;
};

template <std::ostream& (*manipulator)(std::ostream&)>
void plain(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << manipulator;
}

template <class Value>
void of_one(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0]};
}

template <class Value>
void of_two(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0], step.numbers[1]};
}

template <class Value>
void of_three(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0], step.numbers[1], step.numbers[2]};
}

template <class Value>
void of_text(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << Value(step.texts[0]);
}

template <class Value, class Number>
void of_narrow(StreamLibrary& l, Step const& step)
{
    l.stream(step.on) << Value(static_cast<Number>(step.numbers[0]));
}

template <class GuardType>
void open_guard(StreamLibrary& l, Step const&)
{
    l.guards.emplace_back(std::make_unique<GuardType>());
}

inline std::vector<Operation<StreamLibrary>> make_stream_operations()
{
    using namespace kestry::Hueline;
    using enum Argument;
    using Library = StreamLibrary;
    // clang-format off
    std::vector<Operation<Library>> all = {
        {"colorize", 60, {}, plain<colorize>},
        {"nocolorize", 6, {}, plain<nocolorize>},
        {"colorize word =", 3, {colorize_word}, [](Library& l, Step const& step) { l.stream(step.on).iword(l.word) = step.numbers[0]; }},
        {"_setNoFrillsMode", 16, {mostly_off}, [](Library&, Step const& step) { _setNoFrillsMode(step.numbers[0] != 0); }},
        {"color_mode_state", 6, {}, plain<color_mode_state>},
        {"frills_mode_state", 6, {}, plain<frills_mode_state>},
        {"open UseColorMode", 5, {}, open_guard<UseColorMode>},
        {"open NoColorMode", 5, {}, open_guard<NoColorMode>},
        {"open NoFrillsMode", 5, {}, open_guard<NoFrillsMode>},
        {"open UseFrillsMode", 5, {}, open_guard<UseFrillsMode>},
        {"close a guard", 16, {item}, [](Library& l, Step const& step) {
            if (!l.guards.empty()) {
                l.guards.erase(std::next(l.guards.begin(), step.numbers[0] % static_cast<int>(l.guards.size())));
            }
        }},
        {"stdout = nullptr", 1, {}, [](Library&, Step const&) { stdout = nullptr; }},
        {"stderr = nullptr", 1, {}, [](Library&, Step const&) { stderr = nullptr; }},
        {"stdout and stderr again", 6, {}, [](Library& l, Step const&) { l.put_back_stdio(); }},
        {"the global locale groups", 3, {}, [](Library&, Step const&) { std::locale::global(grouping_locale()); }},
        {"the global locale is classic", 3, {}, [](Library&, Step const&) { std::locale::global(std::locale::classic()); }},

        {"adjust", 12, {}, plain<adjust>}, {"push", 16, {}, plain<push>}, {"pull", 16, {}, plain<pull>},
        {"normal", 6, {}, plain<normal>}, {"reset", 6, {}, plain<kestry::Hueline::reset>},

        {"bold", 6, {}, plain<bold>}, {"thin", 6, {}, plain<thin>}, {"dark", 6, {}, plain<dark>}, {"lite", 6, {}, plain<lite>},
        {"bright", 6, {}, plain<bright>}, {"italic", 6, {}, plain<italic>}, {"noitalic", 6, {}, plain<noitalic>},
        {"underline", 6, {}, plain<underline>}, {"nounderline", 6, {}, plain<nounderline>}, {"blink", 6, {}, plain<blink>},
        {"noblink", 6, {}, plain<noblink>}, {"reverse", 6, {}, plain<kestry::Hueline::reverse>}, {"noreverse", 6, {}, plain<noreverse>},
        {"concealed", 6, {}, plain<concealed>}, {"crossed", 6, {}, plain<crossed>},
        {"grey", 6, {}, plain<grey>}, {"red", 6, {}, plain<red>}, {"green", 6, {}, plain<green>}, {"yellow", 6, {}, plain<yellow>},
        {"blue", 6, {}, plain<blue>}, {"magenta", 6, {}, plain<magenta>}, {"cyan", 6, {}, plain<cyan>}, {"white", 6, {}, plain<white>},
        {"black", 6, {}, plain<black>},
        {"on_grey", 6, {}, plain<on_grey>}, {"on_red", 6, {}, plain<on_red>}, {"on_green", 6, {}, plain<on_green>},
        {"on_yellow", 6, {}, plain<on_yellow>}, {"on_blue", 6, {}, plain<on_blue>}, {"on_magenta", 6, {}, plain<on_magenta>},
        {"on_cyan", 6, {}, plain<on_cyan>}, {"on_white", 6, {}, plain<on_white>}, {"on_black", 6, {}, plain<on_black>},

        {"next", 12, {colour_of_eight, flag}, [](Library& l, Step const& step) { kestry::Hueline::next(l.stream(step.on), step.numbers[0], step.numbers[1] != 0); }},
        {"col()", 3, {text}, [](Library& l, Step const& step) { l.result = col(step.texts[0]); }},
        {"color", 6, {number}, of_one<color>}, {"on_color", 6, {number}, of_one<on_color>},
        {"rgb", 6, {number, number, number}, of_three<rgb>}, {"on_rgb", 6, {number, number, number}, of_three<on_rgb>},

        {"csi::show", 6, {}, plain<csi::show>}, {"csi::hide", 6, {}, plain<csi::hide>}, {"csi::cr", 6, {}, plain<csi::cr>},
        {"csi::lf", 6, {}, plain<csi::lf>}, {"csi::cls", 6, {}, plain<csi::cls>}, {"csi::clr", 6, {}, plain<csi::clr>},
        {"csi::clear", 6, {}, plain<csi::clear>}, {"csi::dsr", 6, {}, plain<csi::dsr>}, {"csi::scp", 6, {}, plain<csi::scp>},
        {"csi::rcp", 6, {}, plain<csi::rcp>},
        {"csi::ed", 4, {number}, of_one<csi::ed>}, {"csi::el", 4, {number}, of_one<csi::el>}, {"csi::cuu", 4, {number}, of_one<csi::cuu>},
        {"csi::cud", 4, {number}, of_one<csi::cud>}, {"csi::cuf", 4, {number}, of_one<csi::cuf>}, {"csi::cub", 4, {number}, of_one<csi::cub>},
        {"csi::cnl", 4, {number}, of_one<csi::cnl>}, {"csi::cpl", 4, {number}, of_one<csi::cpl>}, {"csi::cha", 4, {number}, of_one<csi::cha>},
        {"csi::su", 4, {number}, of_one<csi::su>}, {"csi::sd", 4, {number}, of_one<csi::sd>}, {"csi::sgr", 4, {number}, of_one<csi::sgr>},
        {"csi::cup", 4, {number, number}, of_two<csi::cup>}, {"csi::hvp", 4, {number, number}, of_two<csi::hvp>}, {"csi::delay", 8, {milliseconds}, of_one<csi::delay>},
        {"csi::color()", 4, {number}, [](Library& l, Step const& step) { l.result = csi::color(step.numbers[0]); }},
        {"csi::rgb()", 4, {number, number, number}, [](Library& l, Step const& step) { l.result = csi::rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"csi::on_rgb()", 4, {number, number, number}, [](Library& l, Step const& step) { l.result = csi::on_rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }},

        {"spinner", 8, {frames, text}, [](Library& l, Step const& step) { l.stream(step.on) << spinner{step.texts[0], step.texts[1]}; }},
        {"status_line", 12, {steps_of_a_bar, text, text, text, text, frames, text}, [](Library& l, Step const& step) {
            l.stream(step.on) << status_line{step.numbers[0], step.numbers[1], step.numbers[2], step.texts[0], step.texts[1],
                                             step.texts[2], step.texts[3], step.texts[4], step.texts[5]};
        }},
        {"progress_meter", 12, {steps_of_percent, text, text, text, text}, [](Library& l, Step const& step) {
            l.stream(step.on) << progress_meter{step.numbers[0], step.numbers[1], step.numbers[2],
                                                step.texts[0], step.texts[1], step.texts[2], step.texts[3]};
        }},

        {"ColorTheme::app_title", 3, {text}, of_text<ColorTheme::app_title>}, {"ColorTheme::alert", 3, {text}, of_text<ColorTheme::alert>},
        {"ColorTheme::info", 3, {text}, of_text<ColorTheme::info>}, {"ColorTheme::default_text", 3, {text}, of_text<ColorTheme::default_text>},
        {"ColorTheme::seperator", 3, {text}, of_text<ColorTheme::seperator>}, {"ColorTheme::help", 3, {text}, of_text<ColorTheme::help>},
        {"ColorTheme::prompt", 3, {text}, of_text<ColorTheme::prompt>}, {"ColorTheme::version", 3, {text}, of_text<ColorTheme::version>},
        {"ColorTheme::cursor", 3, {text}, of_text<ColorTheme::cursor>}, {"ColorTheme::commandLine", 3, {text}, of_text<ColorTheme::commandLine>},
        {"ColorTheme::name", 3, {text}, of_text<ColorTheme::name>}, {"ColorTheme::path", 3, {text}, of_text<ColorTheme::path>},
        {"ColorTheme::path of a number", 4, {number}, of_narrow<ColorTheme::path, std::uint32_t>},
        {"ColorTheme::_default_text", 3, {}, plain<ColorTheme::_default_text>}, {"ColorTheme::_help", 3, {}, plain<ColorTheme::_help>},
        {"ColorTheme::_commandLine", 3, {}, plain<ColorTheme::_commandLine>}, {"ColorTheme::_status", 3, {}, plain<ColorTheme::_status>},
        {"DataTheme::immediate_destination", 3, {byte}, of_narrow<DataTheme::immediate_destination, std::uint8_t>},
        {"DataTheme::total_count", 3, {byte}, of_narrow<DataTheme::total_count, std::uint8_t>},
        {"DataTheme::crc of 8 bits", 3, {byte}, of_narrow<DataTheme::crc, std::uint8_t>},
        {"DataTheme::crc of 16 bits", 3, {two_bytes}, of_narrow<DataTheme::crc, std::uint16_t>},
        {"DataTheme::request_title", 3, {text}, of_text<DataTheme::request_title>}, {"DataTheme::response_title", 3, {text}, of_text<DataTheme::response_title>},

        {"HexDump of a char", 3, {byte}, of_narrow<HexDump, char>}, {"HexDump of an unsigned char", 3, {byte}, of_narrow<HexDump, unsigned char>},
        {"HexDump of an unsigned short", 3, {two_bytes}, of_narrow<HexDump, unsigned short>},
        {"HexDump of an unsigned long", 3, {number, number}, [](Library& l, Step const& step) { l.stream(step.on) << HexDump(long_word_of(step)); }},
        {"HexDump of words", 3, {numbers}, [](Library& l, Step const& step) { l.stream(step.on) << HexDump(words_of(step)); }},
        {"HexDump of bytes", 3, {bytes}, [](Library& l, Step const& step) { l.stream(step.on) << HexDump(bytes_of(step)); }},
        {"HexDump of bytes, separated", 3, {bytes_and_separator}, [](Library& l, Step const& step) { l.stream(step.on) << HexDump(bytes_of(step), step.texts[1]); }},
        {"HexDump of a string", 3, {bytes}, of_text<HexDump>},
        {"HexDump::_longDumps =", 4, {flag}, [](Library&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }},
        {"HexDump::raw_data_byte()", 2, {byte}, [](Library& l, Step const& step) { l.result = HexDump::raw_data_byte(static_cast<unsigned char>(step.numbers[0])); }},
        {"HexDump::raw_data() of a short", 2, {two_bytes}, [](Library& l, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }},
        {"HexDump::raw_data() of bytes", 2, {bytes}, [](Library& l, Step const& step) { l.result = HexDump::raw_data(bytes_of(step)); }},
        {"myfillandw", 6, {fill, width}, [](Library& l, Step const& step) { l.stream(step.on) << myfillandw{static_cast<char>(step.numbers[0]), step.numbers[1]}; }},

        {"parameters_template", 4, {number}, of_one<parameters_template>},
        {"crossplatform_template", 3, {}, plain<crossplatform_template>}, {"platformspecific_template", 3, {}, plain<platformspecific_template>},
        {"colorized_crossplatform_template", 3, {}, plain<colorized_crossplatform_template>},
        {"colorized_platformspecific_template", 3, {}, plain<colorized_platformspecific_template>},
        {"build_version_short", 3, {}, plain<build_version_short>},
        {"test_pattern_normal_reset", 3, {}, plain<test_pattern_normal_reset>}, {"test_pattern_matrix", 3, {}, plain<test_pattern_matrix>},
        {"test_pattern_256bit", 2, {}, plain<test_pattern_256bit>}, {"test_pattern_greyscale", 2, {}, plain<test_pattern_greyscale>},
        {"test_pattern_rgb", 2, {}, plain<test_pattern_rgb>}, {"test_pattern_status_line", 1, {}, plain<test_pattern_status_line>},
        {"test_pattern_progress_line", 1, {}, plain<test_pattern_progress_line>},
        {"test_pattern_supported_m_codes", 3, {}, [](Library& l, Step const& step) { l.put_back_stdout(); plain<test_pattern_supported_m_codes>(l, step); }},
        {"build_version", 1, {}, [](Library& l, Step const& step) { l.put_back_stdout(); plain<build_version>(l, step); }},
    };
    // clang-format on
    for (HostOperation const& host : host_operations()) {
        all.push_back({host.name, host.weight, host.arguments,
                       [](Library& l, Step const& step) { host_operation(step)->act(l.stream(step.on), step); }});
    }
    return all;
}

inline std::vector<Operation<StreamLibrary>> const& stream_operations()
{
    static std::vector<Operation<StreamLibrary>> const all = make_stream_operations();
    return all;
}

} // namespace hueline::test
