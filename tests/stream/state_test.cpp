#include "kestry/hueline_stream.hpp"

#include "support/isatty_calls.hpp"
#include "support/recorder.hpp"
#include "support/testing.hpp"
#include "standard_streams.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

Sink const every_sink[] = {Sink::terminal, Sink::pipe, Sink::file, Sink::full, Sink::closed};
char const* const sink_names[] = {"terminal", "pipe", "file", "full", "closed"};

char const* name_of(Sink sink) { return sink_names[static_cast<int>(sink)]; }

void report_color() { report(_isUsingColor() ? "color " : "plain "); }

// The index of the colorize word: the one place where colorize puts a 1 into a new stream.
int colorize_index()
{
    std::ostringstream fresh;
    fresh << colorize;
    int index = 0;
    while (index < 100 && fresh.iword(index) != 1) {
        ++index;
    }
    return index;
}

long& colorize_word(std::ostream& os) { return os.iword(colorize_index()); }

void report_word(std::ostream& os) { report(std::to_string(colorize_word(os)) + " "); }

// The gate sees no terminal on a string stream, whatever else holds.
void find_no_terminal() { std::ostringstream() << adjust; }

// ---------------------------------------------------------------------------------------------
// The gate
// ---------------------------------------------------------------------------------------------

TEST(Gate, PassesOnTerminalsOnlyAndTellsSo)
{
    for (StandardStream const& standard : standard_streams) {
        for (Sink const out : every_sink) {
            for (Sink const err : every_sink) {
                SCOPED_TRACE(testing::Message() << standard.name << ", " << name_of(out) << ", " << name_of(err));
                auto const run = run_with({out, err}, [&] {
                    standard.os << colorize << red;
                    report_color();
                });
                bool const passes = (is_out(standard) ? out : err) == Sink::terminal;
                std::string const written = passes ? R"(\e[00m\e[1m\e[31m)" : "";
                EXPECT_EQ(readable(run.out), is_out(standard) ? written : "");
                EXPECT_EQ(readable(run.err), is_out(standard) ? "" : written);
                EXPECT_EQ(run.report, passes ? "color " : "plain ");
            }
        }
    }
}

TEST(Gate, RefusesATerminalThatIsNotColorizedButCountsIt)
{
    for (StandardStream const& standard : standard_streams) {
        auto const run = on_terminal([&] {
            standard.os << red << bold << on_blue << italic << concealed << normal << "x" << reset;
            report_color();
        });
        EXPECT_EQ(readable(run.out + run.err), "x") << standard.name;
        EXPECT_EQ(run.report, "color ") << standard.name;
    }
}

TEST(Gate, RefusesInNoFrillsModeButCountsTheTerminal)
{
    for (StandardStream const& standard : standard_streams) {
        auto const run = on_terminal([&] {
            _setNoFrillsMode(true);
            standard.os << colorize << red << "x";
            report_color();
            _setNoFrillsMode(false);
            report_color();
        });
        EXPECT_EQ(readable(run.out + run.err), "x") << standard.name;
        EXPECT_EQ(run.report, "plain color ") << standard.name;
    }
}

TEST(Gate, FindsNoTerminalOffATerminalInNoFrillsMode)
{
    auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        std::cerr << red;
        report_color();
        _setNoFrillsMode(true);
        std::cout << colorize << red;
        _setNoFrillsMode(false);
        report_color();
    });
    EXPECT_EQ(run.report, "color plain ");
}

TEST(Gate, RefusesAStringStream)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red;
        report_color();
        std::ostringstream os;
        os << colorize << red << "x";
        report(os.str() + " ");
        report_color();
    });
    EXPECT_EQ(run.report, "color x plain ");
}

TEST(Gate, RefusesAnotherStreamThatSharesTheBuffer)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red << "|";
        std::ostream out(std::cout.rdbuf());
        out << colorize << red << "x";
        report_color();
        std::ostream err(std::cerr.rdbuf());
        err << colorize << red << "y";
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m|x)");
    EXPECT_EQ(readable(run.err), "y");
    EXPECT_EQ(run.report, "plain plain ");
}

TEST(Gate, RefusesAFileStreamOnTheTerminal)
{
    auto const run = on_terminal([] {
        std::cout << colorize << adjust << "|" << std::flush;
        std::ofstream terminal("/dev/tty");
        terminal << colorize << red << "x";
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m|x)");
    EXPECT_EQ(run.report, "plain ");
}

TEST(Gate, GoesByTheStreamWhateverItsBuffer)
{
    auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [] {
        std::stringbuf kept;
        std::streambuf* const out = std::cout.rdbuf(&kept);
        std::cout << colorize << red;
        std::cout.rdbuf(out);
        report(readable(kept.str()) + " ");

        std::streambuf* const err = std::cerr.rdbuf(out); // on the terminal, but standard error is a pipe
        std::cerr << colorize << red;
        std::cerr.rdbuf(err);
        report_color();
    });
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.report, R"(\e[00m\e[1m\e[31m plain )");
}

TEST(Gate, AsksAgainEachTime)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red << std::flush;
        int const terminal = dup(1);
        int const nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, 1);
        std::cout << green << std::flush;
        report_color();
        dup2(terminal, 1);
        std::cout << on_blue;
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m\e[00m\e[1m\e[31m\e[44m)");
    EXPECT_EQ(run.report, "plain color ");
}

TEST(Gate, RefusesWhenTheStdioStreamIsNull)
{
    auto const run = on_terminal([] {
        std::cout << colorize << adjust << "|";
        std::cerr << colorize << adjust << "|";
        std::clog << colorize;
        stdout = nullptr;
        std::cout << red;
        report_color();
        std::cerr << adjust;
        report_color();
        stderr = nullptr;
        std::cerr << red;
        report_color();
        std::clog << red;
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m|)");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m|\e[00m\e[1m)");
    EXPECT_EQ(run.report, "plain color plain plain ");
    EXPECT_EQ(run.status, 0);
}

TEST(Gate, RefusesWhenTheStdioStreamIsClosed)
{
    auto const run = on_terminal([] {
        std::cout << colorize << adjust << "|" << std::flush;
        std::fclose(stdout);
        std::cout << red;
        report_color();
        std::cerr << colorize << adjust;
        report_color();
        _exit(0); // a flush of std::cout would reach the closed stdio stream
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m|)");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m)");
    EXPECT_EQ(run.report, "plain color ");
}

TEST(Gate, FollowsTheStdioPointers)
{
    auto const out_only = run_with({.out = Sink::terminal, .err = Sink::pipe}, [] {
        stderr = stdout;
        std::cerr << colorize << red;
        report_color();
    });
    EXPECT_EQ(readable(out_only.err), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(out_only.report, "color ");

    auto const err_only = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        stdout = stderr;
        std::cout << colorize << red;
        report_color();
    });
    EXPECT_EQ(readable(err_only.out), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(err_only.report, "color ");
}

TEST(Gate, FollowsTheDescriptorOfTheStdioStream)
{
    auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        int const terminal = dup(2);
        stdout = fdopen(terminal, "w"); // standard output is not descriptor 1 any more
        std::cout << colorize << red;
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(run.report, "color ");
}

TEST(Gate, LeavesErrno)
{
    for (Sink const err : every_sink) {
        auto const run = run_with({.out = Sink::pipe, .err = err}, [] {
            std::cerr << colorize;
            errno = ENOENT;
            push(std::cerr); // the gate and nothing that writes
            report(std::strerror(errno));
        });
        EXPECT_EQ(run.report, "No such file or directory") << name_of(err);
    }
}

TEST(Gate, LeavesErrnoWhereStdoutAndStderrAreInMemory)
{
    auto const run = on_terminal([] {
        char* text = nullptr;
        std::size_t size = 0;
        std::FILE* const memory = open_memstream(&text, &size); // has no descriptor, as fileno says with EBADF
        auto const ask = [&](std::FILE*& file, std::ostream& os) {
            std::FILE* const before = std::exchange(file, memory);
            errno = ENOENT;
            push(os);
            report(std::strerror(errno));
            file = before;
        };
        ask(stdout, std::cout);
        ask(stderr, std::cerr);
    });
    EXPECT_EQ(run.report, "No such file or directoryNo such file or directory");
}

TEST(Gate, LeavesErrnoForTheTextAfterAColor)
{
    auto const run = on_pipe([] {
        errno = ENOENT;
        std::cerr << colorize << red << std::strerror(errno);
    });
    EXPECT_EQ(run.err, "No such file or directory");
}

TEST(Gate, LeavesErrnoWithoutAnError)
{
    auto const run = on_pipe([] {
        errno = 0;
        push(std::cout);
        report(std::to_string(errno));
    });
    EXPECT_EQ(run.report, "0");
}

TEST(Gate, DoesNotLookAtTheStateOfTheStream)
{
    for (auto const state : {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
        auto const run = on_terminal([state] {
            std::cout << colorize;
            std::cout.setstate(state);
            std::cout << red;
            report_color();
            std::cout.clear();
            std::cout << "|" << adjust;
        });
        EXPECT_EQ(readable(run.out), R"(|\e[00m\e[1m\e[31m)") << state;
        EXPECT_EQ(run.report, "color ") << state;
    }
}

TEST(Gate, AsksIsattyOnceOnAStandardStreamAndNeverElsewhere)
{
    for (Sink const sink : every_sink) {
        auto const run = run_with({sink, sink}, [] {
            auto const count = [](std::ostream& os) {
                isatty_calls = 0;
                push(os);
                report(std::to_string(isatty_calls));
            };
            for (StandardStream const& standard : standard_streams) {
                count(standard.os);
                count(standard.os << colorize);
            }
            _setNoFrillsMode(true);
            count(std::cout);
            _setNoFrillsMode(false);
            std::ostringstream text;
            count(text << colorize);
            std::ostream shared(std::cout.rdbuf());
            count(shared << colorize);
            stdout = nullptr;
            count(std::cout);
        });
        EXPECT_EQ(run.report, "1111111000") << name_of(sink);
    }
}

// ---------------------------------------------------------------------------------------------
// The colorize word
// ---------------------------------------------------------------------------------------------

TEST(Colorize, WritesNothingAndDoesNotRunTheGate)
{
    auto const run = on_terminal([] {
        isatty_calls = 0;
        std::cout << colorize;
        std::cerr << colorize << nocolorize;
        report(std::to_string(isatty_calls) + " ");
        report_color();
        std::cout << push;
        std::ostringstream os;
        os << colorize << nocolorize;
        report_color();
    });
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(run.report, "0 plain color ");
}

TEST(Colorize, ReturnsItsStream)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        report(&colorize(os) == &os ? "same " : "other ");
        report(&nocolorize(os) == &os ? "same " : "other ");
    });
    EXPECT_EQ(run.report, "same same ");
}

TEST(Colorize, IsForOneStream)
{
    for (StandardStream const& colorized : standard_streams) {
        auto const run = on_terminal([&] {
            colorized.os << colorize;
            for (StandardStream const& standard : standard_streams) {
                standard.os << adjust << standard.name;
            }
        });
        std::string expected_out = "cout";
        std::string expected_err = "cerrclog";
        std::string& expected = is_out(colorized) ? expected_out : expected_err;
        expected.insert(expected.find(colorized.name), R"(\e[00m\e[1m)");
        EXPECT_EQ(readable(run.out), expected_out);
        EXPECT_EQ(readable(run.err), expected_err);
    }
}

TEST(Colorize, OfAStringStreamIsNotForTheStandardStreams)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        os << colorize;
        std::cout << adjust << "x";
    });
    EXPECT_EQ(readable(run.out), "x");
}

TEST(Colorize, EndsWithNocolorize)
{
    auto const run = on_terminal(
        [] { std::cout << colorize << red << "a" << nocolorize << green << "b" << colorize << adjust << "c"; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mab\e[00m\e[1m\e[31mc)");
}

TEST(Colorize, MayBeRepeated)
{
    auto const run = on_terminal([] {
        std::cout << colorize << colorize << adjust << nocolorize << adjust << nocolorize << adjust;
        report_word(std::cout);
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m)");
    EXPECT_EQ(run.report, "0 ");
}

TEST(ColorizeWord, IsZeroThenOneThenZero)
{
    auto const run = on_terminal([] {
        report_word(std::cout);
        std::cout << colorize;
        report_word(std::cout);
        std::cout << colorize;
        report_word(std::cout);
        std::cout << nocolorize;
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "0 1 1 0 ");
}

TEST(ColorizeWord, WantsColorUnlessZero)
{
    for (long const word : {1L, 2L, -1L, 256L, LONG_MAX, LONG_MIN}) {
        auto const run = on_terminal([word] {
            colorize_word(std::cout) = word;
            std::cout << adjust;
            report_word(std::cout); // the gate leaves it
        });
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m)") << word;
        EXPECT_EQ(run.report, std::to_string(word) + " ");
    }
}

TEST(ColorizeWord, HasAnIndexOfItsOwn)
{
    auto const run = on_terminal([] {
        int const next_index = std::ios_base::xalloc();
        report(colorize_index() == next_index - 1 ? "own " : "other "); // nothing else in this program takes one
        std::ostringstream os;
        os.iword(next_index) = 5;
        os << colorize << nocolorize << adjust;
        report(std::to_string(os.iword(next_index)));
    });
    EXPECT_EQ(run.report, "own 5");
}

TEST(ColorizeWord, GoesWithTheFormatOfTheStream)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        os << colorize;
        std::cout.copyfmt(os);
        std::cout << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m)");
}

// ---------------------------------------------------------------------------------------------
// _isUsingColor and no-frills mode
// ---------------------------------------------------------------------------------------------

TEST(State, IsPlainAtLoad)
{
    auto const run = on_terminal([] {
        report_color();
        report(_getNoFrillsMode() ? "no frills" : "frills");
    });
    EXPECT_EQ(run.report, "plain frills");
}

TEST(State, OutlivesTheProgramsOwnObjects)
{
    auto const run = on_terminal([] {
        std::cout << colorize << italic;
        std::atexit([] { std::cout << red << "bye"; });
        std::exit(0);
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[3m\e[00m\e[1m\e[3m\e[31mbye)");
}

TEST(IsUsingColor, NeedsATerminalFoundOrColorAskedForAndFrills)
{
    struct {
        bool found;
        bool asked_for;
        bool no_frills;
        char const* expected;
    } const rows[] = {
        {false, false, false, "plain "}, {false, false, true, "plain "}, {false, true, false, "color "},
        {false, true, true, "plain "},   {true, false, false, "color "}, {true, false, true, "plain "},
        {true, true, false, "color "},   {true, true, true, "plain "},
    };
    for (auto const& row : rows) {
        auto const run = on_terminal([&] {
            if (row.asked_for) {
                UseColorMode const mode;
            } else {
                NoColorMode const mode;
            }
            if (row.found) {
                std::cout << push;
            } else {
                find_no_terminal();
            }
            _setNoFrillsMode(row.no_frills);
            report_color();
        });
        EXPECT_EQ(run.report, row.expected) << row.found << row.asked_for << row.no_frills;
    }
}

TEST(IsUsingColor, IsDecidedByTheLastGateAnywhere)
{
    auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        std::cout << push;
        report_color();
        std::cerr << push;
        report_color();
        std::cout << push;
        report_color();
        std::clog << push;
        report_color();
        find_no_terminal();
        report_color();
    });
    EXPECT_EQ(run.report, "plain color plain color plain ");
}

TEST(NoFrillsMode, IsWhatWasSetLast)
{
    auto const run = on_terminal([] {
        for (bool const on : {true, true, false, false, true}) {
            _setNoFrillsMode(on);
            report(_getNoFrillsMode() ? "1" : "0");
        }
    });
    EXPECT_EQ(run.report, "11001");
}

TEST(NoFrillsMode, SuspendsColorAndKeepsWhatWasSetBefore)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red << "a";
        _setNoFrillsMode(true);
        std::cout << green << normal << "b" << reset;
        _setNoFrillsMode(false);
        std::cout << adjust << "c";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mab\e[00m\e[1mc)");
}

// ---------------------------------------------------------------------------------------------
// The two reports in words
// ---------------------------------------------------------------------------------------------

TEST(ColorModeState, IsOnOnAColorizedTerminal)
{
    for (StandardStream const& standard : standard_streams) {
        auto const run = on_terminal([&] { standard.os << colorize << color_mode_state; });
        EXPECT_EQ(readable(run.*standard.bytes), R"( use color mode is on \n)") << standard.name;
        EXPECT_EQ(is_out(standard) ? run.err : run.out, "") << standard.name;
    }
}

TEST(ColorModeState, IsOffElsewhere)
{
    std::string const off = R"( use color mode is off \n (you should not be seeing color) \n)";
    EXPECT_EQ(readable(on_terminal([] { std::cout << color_mode_state; }).out), off);
    EXPECT_EQ(readable(on_pipe([] { std::cout << colorize << color_mode_state; }).out), off);
    EXPECT_EQ(readable(on_pipe([] { std::cerr << colorize << color_mode_state; }).err), off);
    EXPECT_EQ(readable(run_with({.out = Sink::file}, [] { std::cout << colorize << color_mode_state; }).out), off);

    auto const string = on_terminal([] {
        std::ostringstream os;
        os << colorize << color_mode_state;
        report(os.str());
    });
    EXPECT_EQ(readable(string.report), off);
}

TEST(ColorModeState, IsOffInNoFrillsModeAndCountsTheTerminal)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        _setNoFrillsMode(true);
        std::cout << color_mode_state;
        _setNoFrillsMode(false);
        report_color();
    });
    EXPECT_EQ(readable(run.out), R"( use color mode is off \n (you should not be seeing color) \n)");
    EXPECT_EQ(run.report, "color ");
}

TEST(ColorModeState, RunsTheGateOnce)
{
    auto const run = on_terminal([] {
        auto const count = [](std::ostream& os) {
            isatty_calls = 0;
            os << color_mode_state;
            report(std::to_string(isatty_calls) + " ");
            report_color();
        };
        count(std::cout);
        std::ostringstream text;
        count(text);
        count(std::cout << colorize);
    });
    EXPECT_EQ(run.report, "1 color 0 plain 1 color ");
}

TEST(ColorModeState, LeavesTheRendition)
{
    auto const run = on_terminal([] { std::cout << colorize << red << color_mode_state << adjust; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m use color mode is on \n\e[00m\e[1m\e[31m)");
}

TEST(FrillsModeState, TellsTheModeOnAnyStream)
{
    auto const body = [] {
        std::cout << frills_mode_state;
        std::cerr << colorize;
        _setNoFrillsMode(true);
        std::cerr << frills_mode_state;
        std::ostringstream os;
        os << frills_mode_state;
        report(os.str());
        _setNoFrillsMode(false);
        std::cout << frills_mode_state;
    };
    for (auto const& run : {on_terminal(body), on_pipe(body)}) {
        EXPECT_EQ(readable(run.out), R"( no frills mode is off \n no frills mode is off \n)");
        EXPECT_EQ(readable(run.err), R"( no frills mode is on \n)");
        EXPECT_EQ(readable(run.report), R"( no frills mode is on \n)");
    }
}

TEST(FrillsModeState, DoesNotRunTheGate)
{
    auto const run = on_terminal([] {
        isatty_calls = 0;
        std::cout << frills_mode_state;
        report(std::to_string(isatty_calls) + " ");
        report_color();
        std::cout << push;
        std::ostringstream() << frills_mode_state;
        report_color();
    });
    EXPECT_EQ(run.report, "0 plain color ");
}

TEST(StateReports, FlushEachLine)
{
    auto const run = on_terminal([] {
        Recorder recorder(std::cout);
        std::cout << frills_mode_state << color_mode_state << colorize << color_mode_state;
        report(recorder.text());
    });
    EXPECT_EQ(run.report, " no frills mode is off \n\f"
                          " use color mode is off \n\f"
                          " (you should not be seeing color) \n\f"
                          " use color mode is on \n\f");
}

TEST(StateReports, EndLinesAsTheLocaleSays)
{
    class Widening : public std::ctype<char> {
        char do_widen(char c) const override { return c == '\n' ? ';' : c; }
        char const* do_widen(char const* from, char const* end, char* to) const override
        {
            for (; from != end; ++from, ++to) {
                *to = do_widen(*from);
            }
            return end;
        }
    };
    auto const run = on_terminal([] {
        std::ostringstream os;
        os.imbue(std::locale(std::locale::classic(), new Widening));
        os << color_mode_state << frills_mode_state;
        report(os.str());
    });
    EXPECT_EQ(run.report, " use color mode is off ; (you should not be seeing color) ; no frills mode is off ;");
}

TEST(StateReports, SpendAPendingWidthOnTheFirstText)
{
    auto const run = on_pipe([] {
        std::cout << std::setfill('*') << std::setw(22) << color_mode_state;
        std::cout << std::left << std::setw(22) << frills_mode_state;
    });
    EXPECT_EQ(readable(run.out),
              R"(*** use color mode is off \n (you should not be seeing color) \n no frills mode is ***off \n)");
}

TEST(StateReports, ReturnTheirStream)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        for (std::ostream* stream : {static_cast<std::ostream*>(&os), &(std::cout << colorize)}) {
            report(&color_mode_state(*stream) == stream ? "same " : "other ");
            report(&frills_mode_state(*stream) == stream ? "same " : "other ");
        }
    });
    EXPECT_EQ(run.report, "same same same same ");
}

// ---------------------------------------------------------------------------------------------
// Guards
// ---------------------------------------------------------------------------------------------

template <class Guard>
void expect_stays_where_it_is()
{
    EXPECT_FALSE(std::is_copy_constructible_v<Guard>);
    EXPECT_FALSE(std::is_move_constructible_v<Guard>);
    EXPECT_FALSE(std::is_copy_assignable_v<Guard>);
    EXPECT_FALSE(std::is_move_assignable_v<Guard>);
    EXPECT_TRUE(std::is_default_constructible_v<Guard>);
}

TEST(Guards, StayWhereTheyAre)
{
    expect_stays_where_it_is<UseColorMode>();
    expect_stays_where_it_is<NoColorMode>();
    expect_stays_where_it_is<NoFrillsMode>();
    expect_stays_where_it_is<UseFrillsMode>();
}

TEST(UseColorMode, ColorizesCoutAlone)
{
    auto const run = on_terminal([] {
        UseColorMode const mode;
        std::cout << red << "out";
        std::cerr << red << "err";
        std::clog << red << "log";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mout)");
    EXPECT_EQ(readable(run.err), "errlog");
}

TEST(UseColorMode, WritesNothingAndRunsNoGate)
{
    auto const run = on_terminal([] {
        isatty_calls = 0;
        {
            UseColorMode const use;
        }
        {
            NoColorMode const no;
        }
        report(std::to_string(isatty_calls));
    });
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(run.report, "0");
}

TEST(UseColorMode, MeansColorEvenOffATerminal)
{
    auto const run = on_pipe([] {
        UseColorMode const mode;
        report_color();
        std::cout << red << "x";
        report_color();
    });
    EXPECT_EQ(run.out, "x");
    EXPECT_EQ(run.report, "color color ");
}

TEST(UseColorMode, StillMeansColorAfterItsScope)
{
    auto const run = on_pipe([] {
        {
            UseColorMode const mode;
            std::cout << red;
        }
        report_color();
        std::cout << red;
        report_color();
        _setNoFrillsMode(true);
        report_color();
        _setNoFrillsMode(false);
        report_color();
        NoColorMode const no;
        report_color();
    });
    EXPECT_EQ(run.report, "color color plain color plain ");
}

TEST(UseColorMode, TakesColorFromCoutIfNoGateRanInItsScope)
{
    auto const body = [] {
        {
            UseColorMode const mode;
            report_word(std::cout);
        }
        report_word(std::cout);
    };
    EXPECT_EQ(on_terminal(body).report, "1 0 ");
    EXPECT_EQ(on_pipe(body).report, "1 0 "); // no gate has found the pipe
}

TEST(UseColorMode, TakesColorFromCoutIfATerminalWasFoundLast)
{
    auto const run = on_terminal([] {
        std::cout << colorize; // before the scope: not put back
        {
            UseColorMode const mode;
            find_no_terminal();
            std::cout << red << "in";
        }
        report_word(std::cout);
        std::cout << green << "out";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31minout)");
    EXPECT_EQ(run.report, "0 ");
}

TEST(UseColorMode, LeavesCoutColorizedIfNoTerminalWasFoundLast)
{
    auto const run = on_terminal([] {
        {
            UseColorMode const mode;
            std::cout << red << "in";
            find_no_terminal();
        }
        report_word(std::cout);
        std::cout << adjust << "out";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31min\e[00m\e[1m\e[31mout)");
    EXPECT_EQ(run.report, "1 ");
}

TEST(UseColorMode, LooksAtTheTerminalOfAnyStream)
{
    auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        {
            UseColorMode const mode;
            std::cout << push;
        }
        report_word(std::cout);
        {
            UseColorMode const mode;
            std::cout << push;
            std::cerr << push;
        }
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "1 0 ");
}

TEST(UseColorMode, LeavesTheOtherStreams)
{
    auto const run = on_terminal([] {
        std::cerr << colorize;
        {
            UseColorMode const mode;
            std::cout << push;
        }
        report_word(std::cout);
        report_word(std::cerr);
        report_word(std::clog);
    });
    EXPECT_EQ(run.report, "0 1 0 ");
}

TEST(UseColorMode, LeavesWhatTheGateFound)
{
    auto const run = on_terminal([] {
        {
            UseColorMode const outer;
            {
                UseColorMode const inner;
                find_no_terminal();
            }
            report_word(std::cout);
        }
        report_word(std::cout); // the inner end has not made a terminal of it
    });
    EXPECT_EQ(run.report, "1 1 ");
}

TEST(NoColorMode, TakesColorFromCoutAlone)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cerr << colorize;
        NoColorMode const mode;
        report_word(std::cout);
        std::cout << red << "out";
        std::cerr << red << "err";
    });
    EXPECT_EQ(run.report, "0 ");
    EXPECT_EQ(readable(run.out), "out");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31merr)");
}

TEST(NoColorMode, MeansPlainUntilATerminalIsFound)
{
    auto const run = on_terminal([] {
        std::cout << push;
        report_color();
        NoColorMode const mode;
        report_color();
        std::cout << push;
        report_color();
    });
    EXPECT_EQ(run.report, "color plain color ");
}

TEST(NoColorMode, EndsWhatUseColorModeAskedFor)
{
    auto const run = on_pipe([] {
        UseColorMode const use;
        report_color();
        NoColorMode const no;
        report_color();
        std::cout << push;
        report_color();
    });
    EXPECT_EQ(run.report, "color plain plain ");
}

TEST(NoColorMode, LeavesCoutWithoutColorIfNoGateRanInItsScope)
{
    auto const run = on_terminal([] {
        std::cout << colorize << push;
        {
            NoColorMode const mode;
        }
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "0 ");
}

TEST(NoColorMode, ColorizesCoutIfATerminalWasFoundLast)
{
    auto const run = on_terminal([] {
        {
            NoColorMode const mode; // std::cout was not colorized before
            std::cout << red << "in";
        }
        report_word(std::cout);
        std::cout << green << "out";
    });
    EXPECT_EQ(readable(run.out), R"(in\e[00m\e[1m\e[32mout)");
    EXPECT_EQ(run.report, "1 ");
}

TEST(NoColorMode, LeavesCoutWithoutColorIfNoTerminalWasFoundLast)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        {
            NoColorMode const mode;
            std::cout << red;
            find_no_terminal();
        }
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "0 ");
}

TEST(NoColorMode, LooksAtTheTerminalOfAnyStreamInAnyMode)
{
    auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        {
            NoColorMode const mode;
            NoFrillsMode const plain;
            std::clog << push;
        }
        report_word(std::cout);
        report_word(std::clog);
    });
    EXPECT_EQ(run.report, "1 0 ");
}

TEST(NoColorMode, AroundUseColorModeColorizesCout)
{
    auto const run = on_terminal([] {
        {
            NoColorMode const outer;
            {
                UseColorMode const inner;
                report_word(std::cout);
            }
            report_word(std::cout);
        }
        report_word(std::cout); // UseColorMode counts as a terminal that was found
    });
    EXPECT_EQ(run.report, "1 0 1 ");
}

TEST(NoColorMode, InsideUseColorModeLeavesCoutWithoutColor)
{
    auto const run = on_terminal([] {
        {
            UseColorMode const outer;
            {
                NoColorMode const inner;
                report_word(std::cout);
            }
            std::cout << colorize;
        }
        report_word(std::cout); // no terminal was found, so the outer end does nothing
    });
    EXPECT_EQ(run.report, "0 1 ");
}

TEST(NoColorMode, DoesNotCountWhatUseColorModeAskedForInItsScope)
{
    auto const run = on_terminal([] {
        {
            NoColorMode const outer;
            {
                UseColorMode const inner;
            }
            find_no_terminal();
        }
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "0 ");
}

TEST(NoColorMode, LeavesWhatWasAskedForAndFoundInItsScope)
{
    auto const run = on_terminal([] {
        {
            NoColorMode const mode;
            std::cout << push;
        }
        report_color();
        find_no_terminal();
        report_color();
        {
            NoColorMode const outer;
            UseColorMode const inner;
        }
        find_no_terminal();
        report_color();
    });
    EXPECT_EQ(run.report, "color plain color ");
}

template <class Guard>
std::string modes_around(bool before)
{
    return on_terminal([before] {
               auto const tell = [] { report(_getNoFrillsMode() ? "1" : "0"); };
               _setNoFrillsMode(before);
               {
                   Guard const guard;
                   tell();
                   _setNoFrillsMode(!_getNoFrillsMode());
                   tell();
               }
               tell();
           })
        .report;
}

TEST(FrillsGuards, SetTheModeAndPutBackWhatWasBefore)
{
    EXPECT_EQ(modes_around<NoFrillsMode>(false), "100");
    EXPECT_EQ(modes_around<NoFrillsMode>(true), "101");
    EXPECT_EQ(modes_around<UseFrillsMode>(false), "010");
    EXPECT_EQ(modes_around<UseFrillsMode>(true), "011");
}

TEST(FrillsGuards, Nest)
{
    auto const run = on_terminal([] {
        auto const tell = [] { report(_getNoFrillsMode() ? "1" : "0"); };
        _setNoFrillsMode(true);
        {
            UseFrillsMode const outer;
            tell();
            {
                NoFrillsMode const inner;
                tell();
                {
                    NoFrillsMode const innermost;
                    tell();
                }
                tell();
            }
            tell();
        }
        tell();
    });
    EXPECT_EQ(run.report, "011101");
}

TEST(FrillsGuards, DecideWhatIsWritten)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        {
            NoFrillsMode const plain;
            std::cout << red << "a";
            {
                UseFrillsMode const frills;
                std::cout << green << "b";
            }
            std::cout << blue << "c";
        }
        std::cout << adjust << "d";
    });
    EXPECT_EQ(readable(run.out), R"(a\e[00m\e[1m\e[32mbc\e[00m\e[1m\e[32md)");
}

TEST(FrillsGuards, LeaveTheColorState)
{
    auto const run = on_terminal([] {
        std::cout << colorize << push;
        {
            NoFrillsMode const plain;
        }
        {
            UseFrillsMode const frills;
        }
        report_color();
        report_word(std::cout);
    });
    EXPECT_EQ(run.report, "color 1 ");
}

} // namespace
