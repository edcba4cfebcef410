#include "model/stream_model.hpp"

#include "model/digits.hpp"
#include "model/host.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>

namespace hueline::test {

namespace {

// Formatted: a pending width pads it and is spent.
void insert(ModelStream& s, std::string const& text) { s.os << text; }

// Unformatted: a pending width stays pending.
void write(ModelStream& s, std::string const& text)
{
    s.os.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void end_line(ModelStream& s)
{
    s.os.put(s.os.widen('\n'));
    s.os.flush();
}

void set_decimal(ModelStream& s) { s.os.setf(std::ios_base::dec, std::ios_base::basefield); }

std::string cell(std::string const& name)
{
    std::string text = name;
    while (text.size() < 10) {
        text += ' ';
    }
    return text.substr(0, 10);
}

// The strings of csi::color, csi::rgb, csi::on_rgb and of the values of those names.
std::string sgr(std::string const& prefix, std::vector<int> const& numbers)
{
    std::string text = "\x1b[" + prefix;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        text += (i == 0 ? "" : ";") + decimal(numbers[i]);
    }
    return text + "m";
}

// A piece of the activity patterns: blue-less cyan on black and its like.
std::string on_black(int code, std::string const& glyph) { return "\x1b[40m\x1b[" + decimal(code) + "m" + glyph; }

std::string const bar_frames = "|/-\\";

std::string repeated(std::string const& text, long long times)
{
    std::string all;
    for (long long i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

int percentage(int position, int start, int end)
{
    int const steps = static_cast<int>(static_cast<unsigned>(end) - static_cast<unsigned>(start)); // an int: it wraps
    float volatile const part = static_cast<float>(position); // volatile: some registers hold more than a float
    float volatile const span = static_cast<float>(steps);
    float volatile const share = part / span;
    float volatile const percent = share * 100.0F;
    if (std::isnan(percent)) {
        return 0;
    }
    if (percent >= static_cast<float>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    if (percent <= static_cast<float>(std::numeric_limits<int>::min())) {
        return std::numeric_limits<int>::min();
    }
    return static_cast<int>(percent);
}

bool begins_with(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

// Made of several manipulators: how often these ask for a terminal together is left open.
bool is_composed(std::string const& operation)
{
    return begins_with(operation, "ColorTheme::") || begins_with(operation, "DataTheme::") ||
           begins_with(operation, "test_pattern") || begins_with(operation, "colorized_") ||
           begins_with(operation, "build_version");
}

} // namespace

// Sinks

ModelSink::ModelSink(bool takes_bytes, bool buffered, Marks marked)
    : takes(takes_bytes), buffers(buffered), marks(marked)
{}

void ModelSink::print(std::string const& printed)
{
    used = true;
    if (takes) {
        arrived += printed;
    } else {
        pending = true;
    }
}

std::string ModelSink::take_arrived()
{
    pending = false;
    return std::exchange(arrived, "");
}

bool ModelSink::take_used() { return std::exchange(used, false); }

std::string ModelSink::take_received() { return std::exchange(received, ""); }

ModelSink::int_type ModelSink::overflow(int_type c)
{
    char const byte = traits_type::to_char_type(c);
    return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
}

std::streamsize ModelSink::xsputn(char const* bytes, std::streamsize size)
{
    used = used || size > 0;
    std::string const text(bytes, takes || buffers ? static_cast<std::size_t>(size) : 0);
    received += text;
    if (marks == Marks::pieces) {
        received += piece_mark;
    }
    if (!text.empty()) {
        print(text);
    }
    return static_cast<std::streamsize>(text.size());
}

int ModelSink::sync()
{
    if (pending) {
        return -1;
    }
    if (marks == Marks::flushes && !received.ends_with(flush_mark)) {
        received += flush_mark;
    }
    return 0;
}

// Steps

namespace {

bool takes_bytes(Sink sink) { return sink != Sink::closed && sink != Sink::full; }

} // namespace

StreamModel::StreamModel(Sinks sinks, Marks marks_on_standard_error)
    : out_is_terminal(sinks.out == Sink::terminal), err_is_terminal(sinks.err == Sink::terminal),
      out(takes_bytes(sinks.out), true, Marks::flushes), err(takes_bytes(sinks.err), false, marks_on_standard_error)
{
    cerr.os.setf(std::ios_base::unitbuf);
    cerr.os.tie(&cout.os);
}

ModelStream& StreamModel::stream(std::string const& name)
{
    for (ModelStream* each : {&cout, &cerr, &clog, &text, &second}) {
        if (each->name == name) {
            return *each;
        }
    }
    return cout; // of a step that needs no stream
}

Seen StreamModel::perform(Step const& step)
{
    terminal_questions = 0;
    clock_readings = 0;
    result = "";
    std::string const thrown = thrown_by([&] { act(stream(step.on), step); });

    Facts facts;
    bool const using_color = (color_active || forced_color) && !no_frills;
    facts.push_back({"_isUsingColor()", using_color ? "true" : "false"});
    facts.push_back({"_getNoFrillsMode()", no_frills ? "true" : "false"});
    for (ModelStream* each : {&cout, &cerr, &clog, &text, &second}) {
        add_format(facts, each->name, each->os);
        facts.push_back({each->name + " colorize word", decimal(each->colorize_word)});
    }
    facts.push_back({"received by std::cout's buffer", out.take_received()});
    facts.push_back({"received by std::cerr's buffer", err.take_received()});
    facts.push_back({"received by the string stream", memory.take_received()});
    facts.push_back({"thrown", thrown});
    facts.push_back({"returned", result});
    facts.push_back({"returned stream", "its own"});
    facts.push_back({"isatty called", is_composed(step.operation) ? any_value : decimal(terminal_questions)});
    facts.push_back({"clock read", decimal(clock_readings)});
    std::array const used = {out.take_used(), err.take_used(), memory.take_used(), host_operation(step) != nullptr};
    bool const is_silent = std::find(used.begin(), used.end(), true) == used.end();
    facts.push_back({"errno", is_silent ? "kept" : any_value});
    return {out.take_arrived(), err.take_arrived(), facts};
}

// One line for each operation: what it does.
struct StreamModel::Operations {
    using Action = std::function<void(StreamModel&, ModelStream&, Step const&)>;
    using M = StreamModel;
    using S = ModelStream;

    // clang-format off
    inline static std::map<std::string, Action> const all = {
        // Mode switches
        {"colorize",           [](M&,   S& s, Step const&) { s.colorize_word = 1; }},
        {"nocolorize",         [](M&,   S& s, Step const&) { s.colorize_word = 0; }},
        {"colorize word =",    [](M&,   S& s, Step const& step) { s.colorize_word = step.numbers.at(0); }},
        {"_setNoFrillsMode",   [](M& m, S&,   Step const& step) { m.no_frills = step.numbers.at(0) != 0; }},
        {"color_mode_state",   [](M& m, S& s, Step const&) { m.color_mode_state(s); }},
        {"frills_mode_state",  [](M& m, S& s, Step const&) { m.frills_mode_state(s); }},
        {"open UseColorMode",  [](M& m, S&,   Step const&) { m.open_guard("UseColorMode"); }},
        {"open NoColorMode",   [](M& m, S&,   Step const&) { m.open_guard("NoColorMode"); }},
        {"open NoFrillsMode",  [](M& m, S&,   Step const&) { m.open_guard("NoFrillsMode"); }},
        {"open UseFrillsMode", [](M& m, S&,   Step const&) { m.open_guard("UseFrillsMode"); }},
        {"close a guard",      [](M& m, S&,   Step const& step) { m.close_guard(step.numbers.at(0)); }},
        {"stdout = nullptr",   [](M& m, S&,   Step const&) { m.stdout_is_null = true; }},
        {"stderr = nullptr",   [](M& m, S&,   Step const&) { m.stderr_is_null = true; }},
        {"stdout and stderr again", [](M& m, S&, Step const&) { m.stdout_is_null = m.stderr_is_null = false; }},
        {"the global locale groups", [](M&, S&, Step const&) {}},
        {"the global locale is classic", [](M&, S&, Step const&) {}},

        // Composition
        {"adjust", [](M& m, S& s, Step const&) { m.adjust(s); }},
        {"push",   [](M& m, S& s, Step const&) { m.push(s); }},
        {"pull",   [](M& m, S& s, Step const&) { m.pull(s); }},
        {"normal", [](M& m, S& s, Step const&) { m.normal(s); }},
        {"reset",  [](M& m, S& s, Step const&) { m.reset(s); }},

        // Named manipulators
        {"bold",        [](M& m, S& s, Step const&) { m.flag_then_gate(s, &ModelAttributes::bold, true); }},
        {"thin",        [](M& m, S& s, Step const&) { m.flag_then_gate(s, &ModelAttributes::bold, false); }},
        {"dark",        [](M& m, S& s, Step const&) { m.flag_then_gate(s, &ModelAttributes::lite, false); }},
        {"lite",        [](M& m, S& s, Step const&) { m.flag_then_gate(s, &ModelAttributes::lite, true); }},
        {"bright",      [](M& m, S& s, Step const&) { m.flag_then_gate(s, &ModelAttributes::lite, true); }},
        {"italic",      [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::italic, true); }},
        {"noitalic",    [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::italic, false); }},
        {"underline",   [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::underline, true); }},
        {"nounderline", [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::underline, false); }},
        {"blink",       [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::blink, true); }},
        {"noblink",     [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::blink, false); }},
        {"reverse",     [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::reverse, true); }},
        {"noreverse",   [](M& m, S& s, Step const&) { m.gate_then_flag(s, &ModelAttributes::reverse, false); }},
        {"concealed",   [](M& m, S& s, Step const&) { m.write_gated(s, "\x1b[8m"); }},
        {"crossed",     [](M& m, S& s, Step const&) { m.write_gated(s, "\x1b[9m"); }},
        {"grey",        [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[30m"); }},
        {"red",         [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[31m"); }},
        {"green",       [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[32m"); }},
        {"yellow",      [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[33m"); }},
        {"blue",        [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[34m"); }},
        {"magenta",     [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[35m"); }},
        {"cyan",        [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[36m"); }},
        {"white",       [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[37m"); }},
        {"black",       [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[30m"); }},
        {"on_grey",     [](M& m, S& s, Step const&) { m.background(s, "\x1b[40m"); }},
        {"on_red",      [](M& m, S& s, Step const&) { m.background(s, "\x1b[41m"); }},
        {"on_green",    [](M& m, S& s, Step const&) { m.background(s, "\x1b[42m"); }},
        {"on_yellow",   [](M& m, S& s, Step const&) { m.background(s, "\x1b[43m"); }},
        {"on_blue",     [](M& m, S& s, Step const&) { m.background(s, "\x1b[44m"); }},
        {"on_magenta",  [](M& m, S& s, Step const&) { m.background(s, "\x1b[45m"); }},
        {"on_cyan",     [](M& m, S& s, Step const&) { m.background(s, "\x1b[46m"); }},
        {"on_white",    [](M& m, S& s, Step const&) { m.background(s, "\x1b[47m"); }},
        {"on_black",    [](M& m, S& s, Step const&) { m.background(s, "\x1b[40m"); }},

        // Colour by number
        {"next",     [](M& m, S& s, Step const& step) { m.next(s, step.numbers.at(0), step.numbers.at(1) != 0); }},
        {"col()",    [](M& m, S&,   Step const& step) { m.result = cell(step.texts.at(0)); }},
        {"color",    [](M& m, S& s, Step const& step) { m.foreground(s, sgr("38;5;", step.numbers)); }},
        {"on_color", [](M& m, S& s, Step const& step) { m.background(s, sgr("48;5;", step.numbers)); }},
        {"rgb",      [](M& m, S& s, Step const& step) { m.foreground(s, sgr("38;2;", step.numbers)); }},
        {"on_rgb",   [](M& m, S& s, Step const& step) { m.background(s, sgr("48;2;", step.numbers)); }},

        // Control sequences
        {"csi::show",     [](M& m, S& s, Step const&) { m.fixed_control(s, "\x1b[25h"); }},
        {"csi::hide",     [](M& m, S& s, Step const&) { m.fixed_control(s, "\x1b[25i"); }},
        {"csi::cr",       [](M&,   S& s, Step const&) { write(s, "\r"); }},
        {"csi::lf",       [](M&,   S& s, Step const&) { write(s, "\n"); }},
        {"csi::cls",      [](M& m, S& s, Step const&) { m.control(s, 2, 'J'); }},
        {"csi::clr",      [](M& m, S& s, Step const&) { m.control(s, 2, 'J'); }},
        {"csi::clear",    [](M& m, S& s, Step const&) { m.control(s, 2, 'J'); }},
        {"csi::dsr",      [](M& m, S& s, Step const&) { m.fixed_control(s, "\x1b[6n"); }},
        {"csi::scp",      [](M& m, S& s, Step const&) { m.fixed_control(s, "\x1b[s"); }},
        {"csi::rcp",      [](M& m, S& s, Step const&) { m.fixed_control(s, "\x1b[u"); }},
        {"csi::ed",       [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'J'); }},
        {"csi::el",       [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'K'); }},
        {"csi::cuu",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'A'); }},
        {"csi::cud",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'B'); }},
        {"csi::cuf",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'C'); }},
        {"csi::cub",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'D'); }},
        {"csi::cnl",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'E'); }},
        {"csi::cpl",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'F'); }},
        {"csi::cha",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'G'); }},
        {"csi::su",       [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'S'); }},
        {"csi::sd",       [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'T'); }},
        {"csi::sgr",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), 'm'); }},
        {"csi::cup",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), step.numbers.at(1), 'H'); }},
        {"csi::hvp",      [](M& m, S& s, Step const& step) { m.control(s, step.numbers.at(0), step.numbers.at(1), 'f'); }},
        {"csi::delay",    [](M& m, S& s, Step const& step) { m.delay(s, step.numbers.at(0)); }},
        {"csi::color()",  [](M& m, S&,   Step const& step) { m.result = sgr("", step.numbers); }},
        {"csi::rgb()",    [](M& m, S&,   Step const& step) { m.result = sgr("38;2;", step.numbers); }},
        {"csi::on_rgb()", [](M& m, S&,   Step const& step) { m.result = sgr("48;2;", step.numbers); }},

        // Activity indicators
        {"spinner",        [](M& m, S& s, Step const& step) { m.spinner(s, step.texts.at(0), step.texts.at(1)); }},
        {"status_line",    [](M& m, S& s, Step const& step) { m.status_line(s, step); }},
        {"progress_meter", [](M& m, S& s, Step const& step) { m.progress_meter(s, step); }},

        // Themes
        {"ColorTheme::app_title",     [](M& m, S& s, Step const& step) { m.themed(s, "green", step); }},
        {"ColorTheme::alert",         [](M& m, S& s, Step const& step) { m.themed(s, "red bold dark", step); }},
        {"ColorTheme::info",          [](M& m, S& s, Step const& step) { m.themed(s, "yellow", step); }},
        {"ColorTheme::default_text",  [](M& m, S& s, Step const& step) { m.themed(s, "cyan", step); }},
        {"ColorTheme::seperator",     [](M& m, S& s, Step const& step) { m.themed(s, "white", step); }},
        {"ColorTheme::help",          [](M& m, S& s, Step const& step) { m.themed(s, "blue", step); }},
        {"ColorTheme::prompt",        [](M& m, S& s, Step const& step) { m.themed(s, "magenta", step); }},
        {"ColorTheme::version",       [](M& m, S& s, Step const& step) { m.themed(s, "white", step); }},
        {"ColorTheme::cursor",        [](M& m, S& s, Step const& step) { m.themed(s, "cyan bold dark", step); }},
        {"ColorTheme::name",          [](M& m, S& s, Step const& step) { m.themed(s, "white bold dark", step); }},
        {"ColorTheme::path",          [](M& m, S& s, Step const& step) { m.themed(s, "cyan", step); }},
        {"ColorTheme::commandLine",   [](M& m, S& s, Step const& step) { m.themed(s, "white", step); m.reset(s); }},
        {"ColorTheme::path of a number", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[36m");
            set_decimal(s);
            s.os << static_cast<std::uint32_t>(step.numbers.at(0));
        }},
        {"ColorTheme::_default_text", [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[32m"); }},
        {"ColorTheme::_help",         [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[33m"); }},
        {"ColorTheme::_commandLine",  [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[36m"); }},
        {"ColorTheme::_status",       [](M& m, S& s, Step const&) { m.foreground(s, "\x1b[35m"); }},
        {"DataTheme::immediate_destination", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[36m");
            insert(s, byte_digits(step.numbers.at(0)));
        }},
        {"DataTheme::total_count", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[34m");
            insert(s, byte_digits(step.numbers.at(0)));
        }},
        {"DataTheme::crc of 8 bits", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[32m");
            insert(s, byte_digits(step.numbers.at(0)));
        }},
        {"DataTheme::crc of 16 bits", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[32m");
            insert(s, byte_digits(step.numbers.at(0) / 256));
            insert(s, " ");
            insert(s, byte_digits(step.numbers.at(0) % 256));
            insert(s, " ");
        }},
        {"DataTheme::request_title", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[35m");
            m.flag_then_gate(s, &ModelAttributes::bold, true);
            insert(s, m.byte_dump(step.texts.at(0), " "));
        }},
        {"DataTheme::response_title", [](M& m, S& s, Step const& step) {
            m.foreground(s, "\x1b[35m");
            m.flag_then_gate(s, &ModelAttributes::lite, false);
            insert(s, m.byte_dump(step.texts.at(0), " "));
        }},

        // Hex dumps
        {"HexDump of a char",             [](M&,   S& s, Step const& step) { insert(s, byte_digits(step.numbers.at(0))); }},
        {"HexDump of an unsigned char",   [](M&,   S& s, Step const& step) { insert(s, byte_digits(step.numbers.at(0))); }},
        {"HexDump of an unsigned short",  [](M&,   S& s, Step const& step) { insert(s, short_digits(step.numbers.at(0))); }},
        {"HexDump of an unsigned long",   [](M&,   S& s, Step const& step) { insert(s, hexadecimal(long_word_of(step), 8)); }},
        {"HexDump of words",              [](M&,   S& s, Step const& step) {
            std::string dumped;
            for (int const number : step.numbers) {
                dumped += hexadecimal(static_cast<unsigned>(number), 8) + " ";
            }
            insert(s, dumped);
        }},
        {"HexDump of bytes",              [](M& m, S& s, Step const& step) { insert(s, m.byte_dump(step.texts.at(0), " ")); }},
        {"HexDump of bytes, separated",   [](M& m, S& s, Step const& step) { insert(s, m.byte_dump(step.texts.at(0), step.texts.at(1))); }},
        {"HexDump of a string",           [](M& m, S& s, Step const& step) { insert(s, m.byte_dump(step.texts.at(0), " ")); }},
        {"HexDump::_longDumps =",         [](M& m, S&,   Step const& step) { m.long_dumps = step.numbers.at(0) != 0; }},
        {"HexDump::raw_data_byte()",      [](M& m, S&,   Step const& step) { m.result = byte_digits(step.numbers.at(0)); }},
        {"HexDump::raw_data() of a short", [](M& m, S&,  Step const& step) { m.result = short_digits(step.numbers.at(0)); }},
        {"HexDump::raw_data() of bytes",  [](M& m, S&,   Step const& step) {
            m.result = step.texts.at(0).empty() ? "nil" : m.byte_dump(step.texts.at(0), " ");
        }},
        {"myfillandw",                    [](M&,   S& s, Step const& step) {
            s.os.fill(static_cast<char>(step.numbers.at(0)));
            s.os.width(step.numbers.at(1));
        }},

        // Demonstrations
        {"parameters_template", [](M& m, S& s, Step const& step) {
            if (m.gate(s)) {
                insert(s, "\x1b[");
                s.os << step.numbers.at(0);
                insert(s, "m");
            }
        }},
        {"crossplatform_template", [](M& m, S& s, Step const&) {
            m.lines(s, {"this is a cross platform template", "there is no need to sudivide this section",
                        "into Linux and Windows areas as this code", "will run on all platfoms without specific needs",
                        "for either platform Windows or Linux"});
        }},
        {"platformspecific_template", [](M& m, S& s, Step const&) {
            insert(s, "\x1b[00m");
            m.lines(s, {"this is a platform specific template", "externally the interface is the same",
                        "internally the implementation is specific", "to either Linux in this case",
                        "or Windows in the below case"});
        }},
        {"colorized_crossplatform_template", [](M& m, S& s, Step const&) {
            m.green_template(s, {" will only display in color if colorize has been called ",
                                 " and this works on both Windows and Linux "});
        }},
        {"colorized_platformspecific_template", [](M& m, S& s, Step const&) {
            m.green_template(s, {" will display (in Linux) color if colorize ",
                                 " has been called and this works on Linux "});
        }},
        {"test_pattern_supported_m_codes", [](M& m, S& s, Step const&) { m.supported_m_codes(s); }},
        {"test_pattern_normal_reset",      [](M& m, S& s, Step const&) { m.normal_reset(s); }},
        {"test_pattern_matrix",            [](M& m, S& s, Step const&) { m.matrix(s); }},
        {"test_pattern_256bit",            [](M& m, S& s, Step const&) { m.palette(s); }},
        {"test_pattern_greyscale",         [](M& m, S& s, Step const&) { m.greyscale(s); }},
        {"test_pattern_rgb",               [](M& m, S& s, Step const&) { m.cube(s); }},
        {"test_pattern_status_line",       [](M& m, S& s, Step const&) { m.status_pattern(s); }},
        {"test_pattern_progress_line",     [](M& m, S& s, Step const&) { m.progress_pattern(s); }},
        {"build_version_short",            [](M& m, S& s, Step const&) { m.version_short(s); }},
        {"build_version",                  [](M& m, S& s, Step const&) { m.banner(s); }},
    };
    // clang-format on
};

void StreamModel::act(ModelStream& s, Step const& step)
{
    if (HostOperation const* const operation = host_operation(step)) {
        operation->act(s.os, step);
    } else {
        Operations::all.at(step.operation)(*this, s, step);
    }
}

// Mode switches

bool StreamModel::gate(ModelStream& s)
{
    color_active = false;
    if (&s == &cout && !stdout_is_null) {
        ++terminal_questions;
        color_active = out_is_terminal;
    }
    if ((&s == &cerr || &s == &clog) && !stderr_is_null) {
        ++terminal_questions;
        color_active = err_is_terminal;
    }
    return color_active && !no_frills && s.colorize_word != 0;
}

void StreamModel::color_mode_state(ModelStream& s)
{
    bool const passed = gate(s);
    insert(s, " use color mode is ");
    insert(s, passed ? "on" : "off");
    insert(s, " ");
    end_line(s);
    if (!passed) {
        insert(s, " (you should not be seeing color) ");
        end_line(s);
    }
}

void StreamModel::frills_mode_state(ModelStream& s)
{
    insert(s, " no frills mode is ");
    insert(s, no_frills ? "on" : "off");
    insert(s, " ");
    end_line(s);
}

void StreamModel::open_guard(std::string const& kind)
{
    guards.push_back({kind, no_frills});
    if (kind == "UseColorMode") {
        forced_color = true;
        color_active = true;
        cout.colorize_word = 1;
    } else if (kind == "NoColorMode") {
        forced_color = false;
        color_active = false;
        cout.colorize_word = 0;
    } else if (kind == "NoFrillsMode") {
        no_frills = true;
    } else {
        no_frills = false;
    }
}

void StreamModel::close_guard(int which)
{
    if (guards.empty()) {
        return;
    }
    auto const guard = std::next(guards.begin(), which % static_cast<int>(guards.size()));
    if (guard->kind == "UseColorMode") {
        if (color_active) {
            cout.colorize_word = 0;
        }
    } else if (guard->kind == "NoColorMode") {
        if (color_active) {
            cout.colorize_word = 1;
        }
    } else {
        no_frills = guard->saved_no_frills;
    }
    guards.erase(guard);
}

// Composition

void StreamModel::compose(ModelStream& s)
{
    insert(s, "\x1b[00m");
    if (current.bold) {
        insert(s, "\x1b[1m");
    }
    if (!current.lite) {
        insert(s, "\x1b[2m");
    }
    if (current.italic) {
        insert(s, "\x1b[3m");
    }
    if (current.underline) {
        insert(s, "\x1b[4m");
    }
    if (current.blink) {
        insert(s, "\x1b[5m");
    }
    if (current.reverse) {
        insert(s, "\x1b[7m");
    }
    for (std::string const& color : {current.foreground, current.background}) {
        if (!color.empty()) {
            insert(s, color);
        }
    }
}

void StreamModel::adjust(ModelStream& s)
{
    if (gate(s)) {
        compose(s);
    }
}

// The background is never saved: the foreground stands in both places.
void StreamModel::push(ModelStream& s)
{
    if (gate(s)) {
        saved = current;
        saved.background = current.foreground;
    }
}

void StreamModel::pull(ModelStream& s)
{
    if (gate(s)) {
        current = saved;
    }
}

void StreamModel::normal(ModelStream& s)
{
    if (gate(s)) {
        insert(s, "\x1b[00m");
        write(s, "\x1b[25h");
    }
}

void StreamModel::reset(ModelStream& s)
{
    normal(s);
    current = ModelAttributes{};
}

// Named manipulators

void StreamModel::flag_then_gate(ModelStream& s, bool ModelAttributes::*flag, bool value)
{
    current.*flag = value;
    adjust(s);
}

void StreamModel::gate_then_flag(ModelStream& s, bool ModelAttributes::*flag, bool value)
{
    if (gate(s)) {
        current.*flag = value;
        compose(s);
    }
}

void StreamModel::foreground(ModelStream& s, std::string const& sequence)
{
    if (gate(s)) {
        current.foreground = sequence;
        compose(s);
    }
}

void StreamModel::background(ModelStream& s, std::string const& sequence)
{
    if (gate(s)) {
        current.background = sequence;
        compose(s);
    }
}

void StreamModel::write_gated(ModelStream& s, std::string const& sequence)
{
    if (gate(s)) {
        insert(s, sequence);
    }
}

void StreamModel::next(ModelStream& s, int index, bool on_background)
{
    int const number = index >= 0 && index <= 6 ? index : 7;
    if (on_background) {
        background(s, "\x1b[4" + decimal(number) + "m");
    } else {
        foreground(s, "\x1b[3" + decimal(number) + "m");
    }
}

// Control sequences

void StreamModel::fixed_control(ModelStream& s, std::string const& sequence)
{
    if (gate(s)) {
        write(s, sequence);
    }
}

void StreamModel::control(ModelStream& s, int n, char final_byte)
{
    if (gate(s)) {
        write(s, "\x1b[");
        s.os << n;
        write(s, std::string(1, final_byte));
    }
}

void StreamModel::control(ModelStream& s, int row, int col, char final_byte)
{
    if (gate(s)) {
        write(s, "\x1b[");
        s.os << row;
        write(s, ";");
        s.os << col;
        write(s, std::string(1, final_byte));
    }
}

void StreamModel::delay(ModelStream& s, int ms)
{
    if (!gate(s)) {
        return;
    }
    clock_readings += 2; // the start, and one whose value is not used
    long elapsed = model_clock_step_ms;
    do {
        ++clock_readings;
        elapsed += model_clock_step_ms;
    } while (elapsed < ms);
}

// Activity indicators

std::string StreamModel::spinner_frame(std::string const& frames, std::string const& label)
{
    ++spinner_bump;
    return frames.empty() ? label : label + frames[spinner_bump % frames.size()];
}

void StreamModel::spinner(ModelStream& s, std::string const& frames, std::string const& label)
{
    write(s, spinner_frame(frames, label));
}

void StreamModel::status_line(ModelStream& s, Step const& step)
{
    long long const position = step.numbers.at(0);
    long long const start = step.numbers.at(1);
    long long const end = step.numbers.at(2);
    std::string const& done = step.texts.at(0);
    std::string const& todo = step.texts.at(1);
    std::string const& prefix = step.texts.at(2);
    std::string const& suffix = step.texts.at(3);
    std::string const& frames = step.texts.at(4);
    std::string const& spin_label = step.texts.at(5);

    std::string line = prefix;
    if (start < position) {
        line += repeated(done, position - start);
    }
    if (position <= start) {
        line += repeated(todo, end - position);
    } else if (position < end) {
        line += spinner_frame(frames, spin_label);
        line += repeated(todo, end - position - 1);
    }
    write(s, line + suffix);
}

void StreamModel::progress_meter(ModelStream& s, Step const& step)
{
    std::string const& label = step.texts.at(0);
    std::string const& lead = step.texts.at(1);
    std::string const& after = step.texts.at(2);
    std::string const& before = step.texts.at(3);

    write(s, lead + label + " " + before);
    set_decimal(s);
    s.os << percentage(step.numbers.at(0), step.numbers.at(1), step.numbers.at(2));
    write(s, "%" + after);
}

// Hex dumps and themes

std::string StreamModel::byte_dump(std::string const& bytes, std::string const& separator) const
{
    std::string dump;
    for (std::size_t i = 0; i < bytes.size() && (long_dumps || i < 19); ++i) {
        dump += byte_digits(bytes[i]) + separator;
    }
    if (!long_dumps && bytes.size() > 19) {
        dump += " ... (" + decimal(static_cast<long long>(bytes.size())) + " bytes) ";
    }
    return dump;
}

// A colour, the text, and for some roles bold before the text and dark after it.
void StreamModel::themed(ModelStream& s, std::string const& style, Step const& step)
{
    std::map<std::string, std::string> const sequences = {
        {"red", "\x1b[31m"},     {"green", "\x1b[32m"}, {"yellow", "\x1b[33m"}, {"blue", "\x1b[34m"},
        {"magenta", "\x1b[35m"}, {"cyan", "\x1b[36m"},  {"white", "\x1b[37m"}};
    foreground(s, sequences.at(style.substr(0, style.find(' '))));
    bool const is_marked = style.find(" bold dark") != std::string::npos;
    if (is_marked) {
        flag_then_gate(s, &ModelAttributes::bold, true);
    }
    insert(s, step.texts.at(0));
    if (is_marked) {
        flag_then_gate(s, &ModelAttributes::lite, false);
    }
}

// Demonstrations

void StreamModel::lines(ModelStream& s, std::vector<std::string> const& texts)
{
    for (std::string const& line : texts) {
        insert(s, line);
        end_line(s);
    }
}

void StreamModel::heading(ModelStream& s)
{
    reset(s);
    insert(s, "reset ");
    s.colorize_word = 1;
    insert(s, "colorize ");
    flag_then_gate(s, &ModelAttributes::lite, false);
    insert(s, "dark ");
    flag_then_gate(s, &ModelAttributes::bold, false);
    insert(s, "thin ");
    end_line(s);
}

void StreamModel::green_template(ModelStream& s, std::vector<std::string> const& texts)
{
    if (gate(s)) {
        foreground(s, "\x1b[37m");
        background(s, "\x1b[42m");
        lines(s, texts);
    }
}

void StreamModel::supported_m_codes(ModelStream& s)
{
    stdout_is_null = false; // printf needs it
    if (!gate(s)) {
        return;
    }
    heading(s);
    insert(s, " first 108 m codes: ");
    end_line(s);
    for (int code = 0; code <= 108; ++code) {
        char cell_text[32];
        std::snprintf(cell_text, sizeof cell_text, "\x1b[%dm %3d\x1b[m", code, code);
        out.print(cell_text);
        if (code % 10 == 9 || code == 108) {
            out.print("\n");
        }
    }
    end_line(s);
}

void StreamModel::normal_reset(ModelStream& s)
{
    heading(s);
    foreground(s, "\x1b[37m");
    insert(s, "white ");
    background(s, "\x1b[41m");
    insert(s, "on_red ");
    end_line(s);
    gate_then_flag(s, &ModelAttributes::italic, true);
    insert(s, "white ");
    gate_then_flag(s, &ModelAttributes::underline, true);
    insert(s, "on_red ");
    end_line(s);

    lines(s, {" before adjust "});
    adjust(s);
    end_line(s);
    lines(s, {" after adjust ", " before normal "});
    normal(s);
    end_line(s);
    lines(s, {" after normal ", " before adjust "});
    adjust(s);
    end_line(s);
    lines(s, {" after adjust ", " before reset "});
    reset(s);
    end_line(s);
    lines(s, {" after reset ", " before adjust "});
    adjust(s);
    end_line(s);
    lines(s, {" after adjust "});
    end_line(s);
}

void StreamModel::matrix(ModelStream& s)
{
    std::string const names[] = {"black", "red", "green", "yellow", "blue", "magenta", "cyan", "white"};
    foreground(s, "\x1b[37m");
    background(s, "\x1b[40m");
    frills_mode_state(s);
    color_mode_state(s);
    for (int b = 0; b <= 7; ++b) {
        foreground(s, "\x1b[37m");
        background(s, "\x1b[40m");
        insert(s, " on_");
        insert(s, cell(names[b]));
        s.os.flush();
        next(s, b, true);
        for (int f = 0; f <= 7; ++f) {
            next(s, f, false);
            insert(s, " ");
            insert(s, cell(names[f]));
            s.os.flush();
        }
        end_line(s);
    }
    foreground(s, "\x1b[37m");
    background(s, "\x1b[40m");
    end_line(s);
}

// Eight colours on each of eight backgrounds.
void StreamModel::palette_block(ModelStream& s, int first)
{
    for (int b = first; b < first + 8; ++b) {
        background(s, sgr("48;5;", {b}));
        s.os.flush();
        for (int f = first; f < first + 8; ++f) {
            foreground(s, sgr("38;5;", {f}));
            insert(s, "color     ");
            s.os.flush();
        }
        end_line(s);
    }
}

void StreamModel::palette(ModelStream& s)
{
    heading(s);
    lines(s, {" 0-  7:  standard colors (as in ESC [ 30–37 m)"});
    palette_block(s, 0);
    heading(s);
    lines(s, {"8- 15:  high intensity colors (as in ESC [ 90–97 m)"});
    palette_block(s, 8);
    end_line(s);
}

void StreamModel::greyscale(ModelStream& s)
{
    for (int pass = 0; pass < 2; ++pass) {
        if (pass == 0) {
            reset(s);
            insert(s, "reset ");
            s.colorize_word = 1;
            insert(s, "colorize ");
        } else {
            heading(s);
        }
        lines(s, {" 232-255:  grayscale from black to white in 24 steps"});
        for (int b = 0; b <= 7; ++b) {
            background(s, sgr("48;5;", {b}));
            s.os.flush();
            for (int c = 232; c <= 255; ++c) {
                foreground(s, sgr("38;5;", {c}));
                insert(s, " ");
                s.os.unsetf(std::ios_base::basefield | std::ios_base::showbase);
                s.os.setf(std::ios_base::hex);
                s.os << c;
                insert(s, " ");
                s.os.flush();
                if (c == 243 || c == 255) {
                    end_line(s);
                }
            }
        }
    }
}

void StreamModel::cube(ModelStream& s)
{
    heading(s);
    lines(s, {"16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)"});
    for (int r = 0; r <= 15; ++r) {
        background(s, sgr("48;5;", {r}));
        s.os.flush();
        for (int g = 0; g <= 5; ++g) {
            for (int b = 0; b <= 4; ++b) {
                foreground(s, sgr("38;5;", {16 + 36 * r + 6 * g + b}));
                insert(s, cell(decimal(r) + ", " + decimal(g) + ", " + decimal(b)));
                s.os.flush();
            }
            end_line(s);
        }
    }
    end_line(s);
}

void StreamModel::status_pattern(ModelStream& s)
{
    fixed_control(s, "\x1b[25i");
    for (int i = 0; i <= 49; ++i) {
        for (int times = 0; times < 3; ++times) {
            write(s, "\r");
            status_line(s, {"",
                            "",
                            {i, 0, 49},
                            {on_black(36, "#"), on_black(37, "."), on_black(32, "["), on_black(32, "]"), bar_frames,
                             on_black(93, "")}});
            s.os.flush();
            delay(s, 25);
        }
    }
    fixed_control(s, "\x1b[25h");
}

void StreamModel::progress_pattern(ModelStream& s)
{
    fixed_control(s, "\x1b[25i");
    for (int i = 0; i <= 49; ++i) {
        for (int times = 0; times < 3; ++times) {
            write(s, "\r");
            progress_meter(s, {"",
                               "",
                               {i, 0, 49},
                               {on_black(36, "completed"), on_black(32, "("), on_black(32, ")"), on_black(37, "")}});
            s.os.flush();
            delay(s, 25);
        }
    }
    fixed_control(s, "\x1b[25h");
}

void StreamModel::version_short(ModelStream& s)
{
    insert(s, "Hueline ver. ");
    foreground(s, "\x1b[37m");
    insert(s, "0.2.2-r0");
}

void StreamModel::banner(ModelStream& s)
{
    stdout_is_null = false; // printf needs it
    push(s);
    reset(s);
    foreground(s, "\x1b[32m");
    lines(s, {"Kestry Hueline Library (Hueline)"});
    flag_then_gate(s, &ModelAttributes::bold, false);
    insert(s, "hueline version ");
    insert(s, "0.2.2-r0");
    lines(s, {" <hueline@kestry.example>"});
    flag_then_gate(s, &ModelAttributes::lite, false);
    lines(s, {"Copyright (C) 2026 Kestry. All rights reserved."});
    flag_then_gate(s, &ModelAttributes::lite, true);
    foreground(s, "\x1b[32m");
    version_short(s);
    end_line(s);
    end_line(s);

    supported_m_codes(s);
    status_pattern(s);
    write(s, "\r");
    control(s, 0, 'K');
    progress_pattern(s);
    write(s, "\r");
    control(s, 0, 'K');

    flag_then_gate(s, &ModelAttributes::bold, true);
    flag_then_gate(s, &ModelAttributes::lite, true);
    matrix(s);
    flag_then_gate(s, &ModelAttributes::bold, true);
    flag_then_gate(s, &ModelAttributes::lite, false);
    matrix(s);
    flag_then_gate(s, &ModelAttributes::bold, false);
    flag_then_gate(s, &ModelAttributes::lite, true);
    matrix(s);
    flag_then_gate(s, &ModelAttributes::bold, false);
    flag_then_gate(s, &ModelAttributes::lite, false);
    matrix(s);
    gate_then_flag(s, &ModelAttributes::italic, true);
    matrix(s);
    gate_then_flag(s, &ModelAttributes::underline, true);
    matrix(s);
    gate_then_flag(s, &ModelAttributes::blink, true);
    matrix(s);
    reset(s);
    matrix(s);

    greyscale(s);
    cube(s);
    palette(s);
    pull(s);
}

} // namespace hueline::test
