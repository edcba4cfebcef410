/// \file
/// What the stream manipulator interface does, in the plainest words that a program allows: slow, and
/// without a line in common with the library. The formatting of texts and numbers, width, fill and
/// error states are those of the standard streams that the model writes to.
#pragma once

#include "model/comparison.hpp"
#include "model/step.hpp"

#include "support/process.hpp"

#include <cstdint>
#include <list>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace hueline::test {

/// How far the clock of the child advances with each reading.
inline constexpr int model_clock_step_ms = 5;

/// What receives a stream's bytes: a descriptor with the C library's buffer before it, or memory.
class ModelSink : public std::streambuf {
public:
    /// buffered: the descriptor is written to when the buffer is flushed, else at once. One that does
    /// not take bytes fails then.
    ModelSink(bool takes_bytes, bool buffered, Marks marked);

    /// Bytes that come from printf, and so past every stream.
    void print(std::string const& text);

    std::string take_arrived();  ///< What the descriptor has received since the last call.
    bool take_used();            ///< Whether any byte has come, even in vain, since the last call.
    std::string take_received(); ///< What the streams have written since the last call, with its marks.

private:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(char const* text, std::streamsize size) override;
    int sync() override;

    bool takes;
    bool buffers;
    Marks marks;
    bool pending = false;
    bool used = false;
    std::string arrived;
    std::string received;
};

/// A stream, and what the library knows about it.
struct ModelStream {
    ModelStream(std::string stream_name, ModelSink& sink) : name(std::move(stream_name)), os(&sink) {}

    std::string name;
    std::ostream os;
    long colorize_word = 0;
};

/// What a guard has to remember.
struct ModelGuard {
    std::string kind;
    bool saved_no_frills;
};

struct ModelAttributes {
    bool bold = true;
    bool lite = true;
    bool italic = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;
    std::string foreground = "";
    std::string background = "";
};

class StreamModel {
public:
    /// marks_on_standard_error: flushes there are not told, pieces if that is what is marked.
    explicit StreamModel(Sinks sinks, Marks marks_on_standard_error = Marks::nothing);

    /// Follows a step and says what has to be seen after it.
    Seen perform(Step const& step);

private:
    struct Operations;

    void act(ModelStream& s, Step const& step);
    ModelStream& stream(std::string const& name);

    // Mode switches
    bool gate(ModelStream& s);
    void color_mode_state(ModelStream& s);
    void frills_mode_state(ModelStream& s);
    void open_guard(std::string const& kind);
    void close_guard(int which);

    // Composition
    void compose(ModelStream& s);
    void adjust(ModelStream& s);
    void push(ModelStream& s);
    void pull(ModelStream& s);
    void normal(ModelStream& s);
    void reset(ModelStream& s);

    // Named manipulators
    void flag_then_gate(ModelStream& s, bool ModelAttributes::*flag, bool value);
    void gate_then_flag(ModelStream& s, bool ModelAttributes::*flag, bool value);
    void foreground(ModelStream& s, std::string const& sequence);
    void background(ModelStream& s, std::string const& sequence);
    void write_gated(ModelStream& s, std::string const& sequence);
    void next(ModelStream& s, int index, bool on_background);

    // Control sequences
    void fixed_control(ModelStream& s, std::string const& sequence);
    void control(ModelStream& s, int n, char final_byte);
    void control(ModelStream& s, int row, int col, char final_byte);
    void delay(ModelStream& s, int ms);

    // Activity indicators
    std::string spinner_frame(std::string const& frames, std::string const& label);
    void spinner(ModelStream& s, std::string const& frames, std::string const& label);
    void status_line(ModelStream& s, Step const& step);
    void progress_meter(ModelStream& s, Step const& step);

    // Hex dumps and themes
    std::string byte_dump(std::string const& bytes, std::string const& separator) const;
    void themed(ModelStream& s, std::string const& style, Step const& step);

    // Demonstrations
    void lines(ModelStream& s, std::vector<std::string> const& texts);
    void heading(ModelStream& s);
    void green_template(ModelStream& s, std::vector<std::string> const& texts);
    void supported_m_codes(ModelStream& s);
    void normal_reset(ModelStream& s);
    void matrix(ModelStream& s);
    void palette_block(ModelStream& s, int first);
    void palette(ModelStream& s);
    void greyscale(ModelStream& s);
    void cube(ModelStream& s);
    void status_pattern(ModelStream& s);
    void progress_pattern(ModelStream& s);
    void version_short(ModelStream& s);
    void banner(ModelStream& s);

    bool out_is_terminal;
    bool err_is_terminal;
    ModelSink out;
    ModelSink err;
    ModelSink memory{true, false, Marks::flushes};
    ModelStream cout{"cout", out};
    ModelStream cerr{"cerr", err};
    ModelStream clog{"clog", err};
    ModelStream text{"text", memory};  // a string stream
    ModelStream second{"second", out}; // another stream with std::cout's buffer

    bool color_active = false;
    bool no_frills = false;
    bool forced_color = false;
    ModelAttributes current;
    ModelAttributes saved;
    std::uint32_t spinner_bump = 0;
    bool long_dumps = false;
    bool stdout_is_null = false;
    bool stderr_is_null = false;
    std::list<ModelGuard> guards;

    // Counted in each step
    int terminal_questions = 0;
    int clock_readings = 0;
    std::string result;
};

} // namespace hueline::test
