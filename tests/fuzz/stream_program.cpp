// Programs of the whole stream interface on std::cout, std::cerr, std::clog, a stream of its own and
// one that shares std::cout's buffer, in any format, before buffers of any small size.

#include "kestry/hueline_stream.hpp"

#include "program.hpp"

#include "model/stream_library.hpp"
#include "model/stream_model.hpp"

#include <unistd.h>

namespace {

using namespace hueline::fuzz;
using namespace kestry::Hueline;
using hueline::test::flush_mark;
using hueline::test::operations_of_a_program;
using hueline::test::Sink;
using hueline::test::StreamLibrary;
using hueline::test::StreamOperation;

bool out_is_terminal = false;
bool err_is_terminal = false;

bool is_made_up_terminal(int descriptor) { return descriptor == STDERR_FILENO ? err_is_terminal : out_is_terminal; }

// From the right time on: the fuzzer may ask too.
void advance_clock_from_now()
{
    hueline::test::made_up_time = [start = hueline::test::real_time()](std::int64_t n) {
        return start + n * hueline::test::model_clock_step_ms * 1'000'000;
    };
}

std::FILE* const nowhere = std::fopen("/dev/null", "w");

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
        if (records && !received.ends_with(flush_mark)) {
            received += flush_mark;
        }
        return 0;
    }

    std::string room;
    bool records;
    std::string received;
};

class Library : public StreamLibrary {
public:
    explicit Library(Input& input)
        : StreamLibrary(nowhere), out_buffer(input.byte() % 24U, true), err_buffer(input.byte() % 24U, false),
          text_buffer(input.byte(), true)
    {
        hueline::test::is_a_terminal = is_made_up_terminal;
        text.std::ios::rdbuf(&text_buffer);
        second.rdbuf(&out_buffer);
        as_at_load();
    }
    ~Library() override
    {
        program.guards.clear();
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            os->exceptions(std::ios_base::goodbit);
            os->rdbuf(nullptr);
        }
        stdout = stdout_before;
        stderr = stderr_before;
        std::locale::global(std::locale::classic());
    }

    Facts perform(StreamOperation const& operation, Step const& step)
    {
        advance_clock_from_now();
        Facts const facts = StreamLibrary::perform(operation, step);
        hueline::test::made_up_time = nullptr; // the fuzzer's own clock is right
        return facts;
    }

private:
    Received take_received() override { return {out_buffer.take(), err_buffer.take(), text_buffer.take()}; }

    // The process has run other programs before.
    void as_at_load()
    {
        stdout = program.out;
        stderr = program.err;
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

    std::FILE* const stdout_before = stdout;
    std::FILE* const stderr_before = stderr;
    SmallBuffer out_buffer;
    SmallBuffer err_buffer;
    SmallBuffer text_buffer;
};

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
        StreamOperation const* const operation = operation_numbered(input.byte(), operations_of_a_program());
        if (operation == nullptr) {
            continue;
        }
        if (is_a_pattern(operation->name) && ++patterns > 2) {
            break;
        }
        char const* const on = streams[input.byte() % streams.size()];
        Step step = read_step(input, *operation);
        step.on = on;
        program.push_back(step);
        compare(program, model.perform(step).facts, library.perform(*operation, step));
    }
    return 0;
}
