// Programs of the whole stream interface on std::cout, std::cerr, std::clog, a stream of its own and
// one that shares std::cout's buffer, in any format, before buffers of any small size.

#include "kestry/hueline_stream.hpp"

#include "input.hpp"
#include "program.hpp"

#include "model/host.hpp"
#include "model/stream_model.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <list>
#include <locale>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <time.h>
#include <unistd.h>

namespace {

// What is a terminal, and how often the library asked.
bool out_is_terminal = false;
bool err_is_terminal = false;
int isatty_calls = 0;

// While the library is at work the clock advances with each reading; the fuzzer's own clock is right.
bool is_time_made_up = false;
int clock_readings = 0;

} // namespace

extern "C" int isatty(int descriptor) noexcept
{
    ++isatty_calls;
    return descriptor == STDERR_FILENO ? err_is_terminal : out_is_terminal;
}

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    static time_point frozen;
    time_point const right(seconds(now.tv_sec) + nanoseconds(now.tv_nsec));
    if (!is_time_made_up) {
        return right;
    }
    if (clock_readings == 0) {
        frozen = right;
    }
    return frozen + milliseconds(hueline::test::model_clock_step_ms) * clock_readings++;
}

namespace {

using namespace hueline::fuzz;
using namespace kestry::Hueline;
using hueline::test::flush_mark;
using hueline::test::host_operation;
using hueline::test::HostOperation;
using hueline::test::Sink;

using Guard = std::variant<std::unique_ptr<UseColorMode>, std::unique_ptr<NoColorMode>, std::unique_ptr<NoFrillsMode>,
                           std::unique_ptr<UseFrillsMode>>;

// Passes on what it holds when it is full or flushed. One without room passes on each byte.
class SmallBuffer : public std::streambuf {
public:
    SmallBuffer(std::size_t size, bool records_flushes) : room(size, '\0'), records(records_flushes) { empty(); }

    // What has been written since the last call, with its flushes.
    std::string take()
    {
        empty();
        return std::exchange(received, "");
    }

private:
    void empty()
    {
        received.append(pbase(), pptr());
        setp(room.data(), room.data() + room.size());
    }

    int_type overflow(int_type c) override
    {
        empty();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            received += traits_type::to_char_type(c);
        }
        return traits_type::not_eof(c);
    }

    int sync() override
    {
        empty();
        if (records && !received.empty() && received.back() != flush_mark) {
            received += flush_mark;
        }
        return 0;
    }

    std::string room;
    bool records;
    std::string received;
};

// The place of the colorize word among the words of a stream, which the library does not tell.
int find_colorize_word()
{
    std::ostream os(nullptr);
    colorize(os);
    int i = 0;
    while (os.iword(i) != 1) {
        ++i;
    }
    return i;
}

class Library {
public:
    explicit Library(Input& input)
        : out_buffer(input.byte() % 24U, true), err_buffer(input.byte() % 24U, false), text_buffer(input.byte(), true)
    {
        as_at_load();
    }
    ~Library()
    {
        guards.clear();
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            os->exceptions(std::ios_base::goodbit);
            os->rdbuf(nullptr);
        }
        stdout = out;
        stderr = err;
        std::locale::global(std::locale::classic());
    }
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;

    Facts perform(Operation<Library> const& operation, Step const& step)
    {
        result = "";
        isatty_calls = 0;
        clock_readings = 0;
        int constexpr mark = 4711;
        errno = mark;
        is_time_made_up = true;
        std::string const thrown = hueline::test::thrown_by([&] { operation.act(*this, step); });
        is_time_made_up = false;
        bool const errno_kept = errno == mark;

        Facts facts;
        facts.push_back({"_isUsingColor()", _isUsingColor() ? "true" : "false"});
        facts.push_back({"_getNoFrillsMode()", _getNoFrillsMode() ? "true" : "false"});
        for (std::string const name : {"cout", "cerr", "clog", "text", "second"}) {
            add_format(facts, name, stream(name));
            facts.push_back({name + " colorize word", std::to_string(stream(name).iword(word))});
        }
        facts.push_back({"received by std::cout's buffer", out_buffer.take()});
        facts.push_back({"received by std::cerr's buffer", err_buffer.take()});
        facts.push_back({"received by the string stream", text_buffer.take()});
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

    // printf has no other place to write to.
    void put_back_stdout() { stdout = nowhere; }

    void put_back_stdio()
    {
        put_back_stdout();
        stderr = err;
    }

    std::list<Guard> guards;
    std::string result; // of a function that returns a string
    int const word = find_colorize_word();

private:
    // The process has run other programs before.
    void as_at_load()
    {
        put_back_stdio();
        HexDump::_longDumps = false;
        _setNoFrillsMode(false);
        std::ios const fresh(nullptr); // all words 0
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            os->rdbuf(os == &std::cout ? &out_buffer : &err_buffer);
            os->copyfmt(fresh);
            os->clear();
            os->tie(nullptr);
        }
        bool const is_terminal = std::exchange(out_is_terminal, true);
        std::cout << colorize << kestry::Hueline::reset << push;
        out_is_terminal = is_terminal;
        NoColorMode();
        align_spinners();
        std::cerr.setf(std::ios_base::unitbuf);
        std::cerr.tie(&std::cout);
        out_buffer.take();
        text_buffer.take();
    }

    // Makes the counter of the spinners a multiple of 64, as it is at load. The frames of the programs
    // are as many as divide 64.
    void align_spinners()
    {
        std::string frames(64, '\0');
        for (std::size_t i = 0; i < frames.size(); ++i) {
            frames[i] = static_cast<char>(i);
        }
        do {
            text_buffer.take();
            text << spinner{frames, ""};
        } while (text_buffer.take() != std::string(1, '\0'));
    }

    std::FILE* const out = stdout;
    std::FILE* const err = stderr;
    static inline std::FILE* const nowhere = std::fopen("/dev/null", "w");
    SmallBuffer out_buffer;
    SmallBuffer err_buffer;
    SmallBuffer text_buffer;
    std::ostream text{&text_buffer};
    std::ostream second{&out_buffer};
};

// ---------------------------------------------------------------------------------------------
// Operations
// ---------------------------------------------------------------------------------------------

template <std::ostream& (*manipulator)(std::ostream&)>
void plain(Library& l, Step const& step)
{
    l.stream(step.on) << manipulator;
}

template <class Value>
void of_one(Library& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0]};
}

template <class Value>
void of_two(Library& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0], step.numbers[1]};
}

template <class Value>
void of_three(Library& l, Step const& step)
{
    l.stream(step.on) << Value{step.numbers[0], step.numbers[1], step.numbers[2]};
}

template <class Value>
void of_text(Library& l, Step const& step)
{
    l.stream(step.on) << Value(step.texts[0]);
}

template <class Value, class Number>
void of_narrow(Library& l, Step const& step)
{
    l.stream(step.on) << Value(static_cast<Number>(step.numbers[0]));
}

template <class GuardType>
void open(Library& l, Step const&)
{
    l.guards.emplace_back(std::make_unique<GuardType>());
}

void host(Library& l, Step const& step) { host_operation(step)->act(l.stream(step.on), step); }

// clang-format off
std::vector<Operation<Library>> all_operations()
{
    std::vector<Operation<Library>> all = {
        {"colorize", "", plain<colorize>},
        {"nocolorize", "", plain<nocolorize>},
        {"colorize word =", "n", [](Library& l, Step const& step) { l.stream(step.on).iword(l.word) = step.numbers[0]; }},
        {"_setNoFrillsMode", "f", [](Library&, Step const& step) { _setNoFrillsMode(step.numbers[0] != 0); }},
        {"color_mode_state", "", plain<color_mode_state>},
        {"frills_mode_state", "", plain<frills_mode_state>},
        {"open UseColorMode", "", open<UseColorMode>},
        {"open NoColorMode", "", open<NoColorMode>},
        {"open NoFrillsMode", "", open<NoFrillsMode>},
        {"open UseFrillsMode", "", open<UseFrillsMode>},
        {"close a guard", "b", [](Library& l, Step const& step) {
            if (!l.guards.empty()) {
                l.guards.erase(std::next(l.guards.begin(), step.numbers[0] % static_cast<int>(l.guards.size())));
            }
        }},
        {"stdout = nullptr", "", [](Library&, Step const&) { stdout = nullptr; }},
        {"stderr = nullptr", "", [](Library&, Step const&) { stderr = nullptr; }},
        {"stdout and stderr again", "", [](Library& l, Step const&) { l.put_back_stdio(); }},
        {"the global locale groups", "", [](Library&, Step const&) {
            std::ostream grouping(nullptr);
            host_operation({"imbue a grouping locale"})->act(grouping, {});
            std::locale::global(grouping.getloc());
        }},
        {"the global locale is classic", "", [](Library&, Step const&) { std::locale::global(std::locale::classic()); }},

        {"adjust", "", plain<adjust>}, {"push", "", plain<push>}, {"pull", "", plain<pull>},
        {"normal", "", plain<normal>}, {"reset", "", plain<kestry::Hueline::reset>},

        {"bold", "", plain<bold>}, {"thin", "", plain<thin>}, {"dark", "", plain<dark>}, {"lite", "", plain<lite>},
        {"bright", "", plain<bright>}, {"italic", "", plain<italic>}, {"noitalic", "", plain<noitalic>},
        {"underline", "", plain<underline>}, {"nounderline", "", plain<nounderline>}, {"blink", "", plain<blink>},
        {"noblink", "", plain<noblink>}, {"reverse", "", plain<kestry::Hueline::reverse>}, {"noreverse", "", plain<noreverse>},
        {"concealed", "", plain<concealed>}, {"crossed", "", plain<crossed>},
        {"grey", "", plain<grey>}, {"red", "", plain<red>}, {"green", "", plain<green>}, {"yellow", "", plain<yellow>},
        {"blue", "", plain<blue>}, {"magenta", "", plain<magenta>}, {"cyan", "", plain<cyan>}, {"white", "", plain<white>},
        {"black", "", plain<black>},
        {"on_grey", "", plain<on_grey>}, {"on_red", "", plain<on_red>}, {"on_green", "", plain<on_green>},
        {"on_yellow", "", plain<on_yellow>}, {"on_blue", "", plain<on_blue>}, {"on_magenta", "", plain<on_magenta>},
        {"on_cyan", "", plain<on_cyan>}, {"on_white", "", plain<on_white>}, {"on_black", "", plain<on_black>},

        {"next", "nf", [](Library& l, Step const& step) { kestry::Hueline::next(l.stream(step.on), step.numbers[0], step.numbers[1] != 0); }},
        {"col()", "t", [](Library& l, Step const& step) { l.result = col(step.texts[0]); }},
        {"color", "n", of_one<color>}, {"on_color", "n", of_one<on_color>},
        {"rgb", "nnn", of_three<rgb>}, {"on_rgb", "nnn", of_three<on_rgb>},

        {"csi::show", "", plain<csi::show>}, {"csi::hide", "", plain<csi::hide>}, {"csi::cr", "", plain<csi::cr>},
        {"csi::lf", "", plain<csi::lf>}, {"csi::cls", "", plain<csi::cls>}, {"csi::clr", "", plain<csi::clr>},
        {"csi::clear", "", plain<csi::clear>}, {"csi::dsr", "", plain<csi::dsr>}, {"csi::scp", "", plain<csi::scp>},
        {"csi::rcp", "", plain<csi::rcp>},
        {"csi::ed", "n", of_one<csi::ed>}, {"csi::el", "n", of_one<csi::el>}, {"csi::cuu", "n", of_one<csi::cuu>},
        {"csi::cud", "n", of_one<csi::cud>}, {"csi::cuf", "n", of_one<csi::cuf>}, {"csi::cub", "n", of_one<csi::cub>},
        {"csi::cnl", "n", of_one<csi::cnl>}, {"csi::cpl", "n", of_one<csi::cpl>}, {"csi::cha", "n", of_one<csi::cha>},
        {"csi::su", "n", of_one<csi::su>}, {"csi::sd", "n", of_one<csi::sd>}, {"csi::sgr", "n", of_one<csi::sgr>},
        {"csi::cup", "nn", of_two<csi::cup>}, {"csi::hvp", "nn", of_two<csi::hvp>}, {"csi::delay", "m", of_one<csi::delay>},
        {"csi::color()", "n", [](Library& l, Step const& step) { l.result = csi::color(step.numbers[0]); }},
        {"csi::rgb()", "nnn", [](Library& l, Step const& step) { l.result = csi::rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }},
        {"csi::on_rgb()", "nnn", [](Library& l, Step const& step) { l.result = csi::on_rgb(step.numbers[0], step.numbers[1], step.numbers[2]); }},

        {"spinner", "at", [](Library& l, Step const& step) { l.stream(step.on) << spinner{step.texts[0], step.texts[1]}; }},
        {"status_line", "pttttat", [](Library& l, Step const& step) {
            l.stream(step.on) << status_line{step.numbers[0], step.numbers[1], step.numbers[2], step.texts[0], step.texts[1],
                                             step.texts[2], step.texts[3], step.texts[4], step.texts[5]};
        }},
        {"progress_meter", "nnntttt", [](Library& l, Step const& step) {
            l.stream(step.on) << progress_meter{step.numbers[0], step.numbers[1], step.numbers[2],
                                                step.texts[0], step.texts[1], step.texts[2], step.texts[3]};
        }},

        {"ColorTheme::app_title", "t", of_text<ColorTheme::app_title>}, {"ColorTheme::alert", "t", of_text<ColorTheme::alert>},
        {"ColorTheme::info", "t", of_text<ColorTheme::info>}, {"ColorTheme::default_text", "t", of_text<ColorTheme::default_text>},
        {"ColorTheme::seperator", "t", of_text<ColorTheme::seperator>}, {"ColorTheme::help", "t", of_text<ColorTheme::help>},
        {"ColorTheme::prompt", "t", of_text<ColorTheme::prompt>}, {"ColorTheme::version", "t", of_text<ColorTheme::version>},
        {"ColorTheme::cursor", "t", of_text<ColorTheme::cursor>}, {"ColorTheme::commandLine", "t", of_text<ColorTheme::commandLine>},
        {"ColorTheme::name", "t", of_text<ColorTheme::name>}, {"ColorTheme::path", "t", of_text<ColorTheme::path>},
        {"ColorTheme::path of a number", "n", of_narrow<ColorTheme::path, std::uint32_t>},
        {"ColorTheme::_default_text", "", plain<ColorTheme::_default_text>}, {"ColorTheme::_help", "", plain<ColorTheme::_help>},
        {"ColorTheme::_commandLine", "", plain<ColorTheme::_commandLine>}, {"ColorTheme::_status", "", plain<ColorTheme::_status>},
        {"DataTheme::immediate_destination", "b", of_narrow<DataTheme::immediate_destination, std::uint8_t>},
        {"DataTheme::total_count", "b", of_narrow<DataTheme::total_count, std::uint8_t>},
        {"DataTheme::crc of 8 bits", "b", of_narrow<DataTheme::crc, std::uint8_t>},
        {"DataTheme::crc of 16 bits", "s", of_narrow<DataTheme::crc, std::uint16_t>},
        {"DataTheme::request_title", "t", of_text<DataTheme::request_title>}, {"DataTheme::response_title", "t", of_text<DataTheme::response_title>},

        {"HexDump of a char", "b", of_narrow<HexDump, char>}, {"HexDump of an unsigned char", "b", of_narrow<HexDump, unsigned char>},
        {"HexDump of an unsigned short", "s", of_narrow<HexDump, unsigned short>},
        {"HexDump of an unsigned long", "nn", [](Library& l, Step const& step) {
            l.stream(step.on) << HexDump(std::uint64_t{static_cast<unsigned>(step.numbers[0])} << 32 | static_cast<unsigned>(step.numbers[1]));
        }},
        {"HexDump of words", "l", [](Library& l, Step const& step) { l.stream(step.on) << HexDump(std::vector<unsigned>(step.numbers.begin(), step.numbers.end())); }},
        {"HexDump of bytes", "t", [](Library& l, Step const& step) { l.stream(step.on) << HexDump(to_bytes(step.texts[0])); }},
        {"HexDump of bytes, separated", "tt", [](Library& l, Step const& step) { l.stream(step.on) << HexDump(to_bytes(step.texts[0]), step.texts[1]); }},
        {"HexDump of a string", "t", of_text<HexDump>},
        {"HexDump::_longDumps =", "f", [](Library&, Step const& step) { HexDump::_longDumps = step.numbers[0] != 0; }},
        {"HexDump::raw_data_byte()", "b", [](Library& l, Step const& step) { l.result = HexDump::raw_data_byte(static_cast<unsigned char>(step.numbers[0])); }},
        {"HexDump::raw_data() of a short", "s", [](Library& l, Step const& step) { l.result = HexDump::raw_data(static_cast<unsigned short>(step.numbers[0])); }},
        {"HexDump::raw_data() of bytes", "t", [](Library& l, Step const& step) { l.result = HexDump::raw_data(to_bytes(step.texts[0])); }},
        {"myfillandw", "bw", [](Library& l, Step const& step) { l.stream(step.on) << myfillandw{static_cast<char>(step.numbers[0]), step.numbers[1]}; }},

        {"parameters_template", "n", of_one<parameters_template>},
        {"crossplatform_template", "", plain<crossplatform_template>}, {"platformspecific_template", "", plain<platformspecific_template>},
        {"colorized_crossplatform_template", "", plain<colorized_crossplatform_template>},
        {"colorized_platformspecific_template", "", plain<colorized_platformspecific_template>},
        {"build_version_short", "", plain<build_version_short>},
        {"test_pattern_normal_reset", "", plain<test_pattern_normal_reset>}, {"test_pattern_matrix", "", plain<test_pattern_matrix>},
        {"test_pattern_256bit", "", plain<test_pattern_256bit>}, {"test_pattern_greyscale", "", plain<test_pattern_greyscale>},
        {"test_pattern_rgb", "", plain<test_pattern_rgb>}, {"test_pattern_status_line", "", plain<test_pattern_status_line>},
        {"test_pattern_progress_line", "", plain<test_pattern_progress_line>},
        {"test_pattern_supported_m_codes", "", [](Library& l, Step const& step) { l.put_back_stdout(); plain<test_pattern_supported_m_codes>(l, step); }},
        {"build_version", "", [](Library& l, Step const& step) { l.put_back_stdout(); plain<build_version>(l, step); }},
    };
    for (HostOperation const& each : hueline::test::host_operations()) {
        all.push_back({each.name, arguments_of_host_operation(each.name), host});
    }
    return all;
}
// clang-format on

std::vector<Operation<Library>> const operations = all_operations();

// The patterns are long.
bool is_a_pattern(std::string const& name) { return name == "build_version" || name.starts_with("test_pattern"); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static std::array const streams = {"cout", "cerr", "text", "cout", "clog", "cout", "second", "cout"};
    Input input(data, size);
    out_is_terminal = input.byte() % 4 != 0;
    err_is_terminal = input.byte() % 4 != 0;
    hueline::test::StreamModel model(
        {out_is_terminal ? Sink::terminal : Sink::pipe, err_is_terminal ? Sink::terminal : Sink::pipe});
    Library library(input);
    int patterns = 0;
    std::vector<Step> program;
    while (!input.is_empty() && program.size() < 100) {
        Operation<Library> const& operation = operations[input.byte() % operations.size()];
        if (is_a_pattern(operation.name) && ++patterns > 2) {
            break;
        }
        Step step = {operation.name};
        step.on = streams[input.byte() % streams.size()];
        for (char const argument : operation.arguments) {
            read_argument(input, argument, step);
        }
        program.push_back(step);
        compare(program, model.perform(step).facts, library.perform(operation, step));
    }
    return 0;
}
