// Streams that fail, throw, have no buffer or a small one; standard output and standard error that
// are full, closed, or a terminal that goes away.

#include "kestry/hueline_stream.hpp"

#include "buffers.hpp"

#include "stream/system_clock.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

std::string const bar_frames = "|/-\\";
std::string const cell = "#";

struct Operation {
    std::string name;
    std::function<void(std::ostream&)> act;
};

Operation plain(std::string const& name, std::ostream& (*manipulator)(std::ostream&))
{
    return {name, [manipulator](std::ostream& os) { os << manipulator; }};
}

// What writes a few hundred bytes at most.
std::vector<Operation> const small_operations = {
    plain("adjust", adjust),
    plain("normal", normal),
    plain("reset", reset),
    plain("push", push),
    plain("pull", pull),
    plain("bold", bold),
    plain("thin", thin),
    plain("dark", dark),
    plain("italic", italic),
    plain("reverse", kestry::Hueline::reverse),
    plain("concealed", concealed),
    plain("red", red),
    plain("on_red", on_red),
    plain("color_mode_state", color_mode_state),
    plain("frills_mode_state", frills_mode_state),
    plain("csi::show", csi::show),
    plain("csi::hide", csi::hide),
    plain("csi::cr", csi::cr),
    plain("csi::lf", csi::lf),
    plain("csi::cls", csi::cls),
    plain("csi::dsr", csi::dsr),
    {"csi::cup", [](std::ostream& os) { os << csi::cup{12, 34}; }},
    {"csi::sgr", [](std::ostream& os) { os << csi::sgr{97}; }},
    {"color", [](std::ostream& os) { os << color{200}; }},
    {"on_rgb", [](std::ostream& os) { os << on_rgb{100, 200, 255}; }},
    {"next", [](std::ostream& os) { kestry::Hueline::next(os, 3, true); }},
    {"spinner", [](std::ostream& os) { os << spinner{bar_frames, "busy "}; }},
    {"status_line", [](std::ostream& os) { os << status_line{3, 0, 9, cell, ".", "[", "]", bar_frames, "!"}; }},
    {"progress_meter", [](std::ostream& os) { os << progress_meter{3, 0, 9, cell, "(", ")", "="}; }},
    {"alert", [](std::ostream& os) { os << ColorTheme::alert("alert"); }},
    {"commandLine", [](std::ostream& os) { os << ColorTheme::commandLine("ls"); }},
    {"path", [](std::ostream& os) { os << ColorTheme::path(std::uint32_t{42}); }},
    {"crc", [](std::ostream& os) { os << DataTheme::crc(std::uint16_t{0xbeef}); }},
    {"request_title", [](std::ostream& os) { os << DataTheme::request_title("title"); }},
    {"HexDump", [](std::ostream& os) { os << HexDump(0xdeadbeefUL); }},
    {"parameters_template", [](std::ostream& os) { os << parameters_template{4}; }},
    plain("platformspecific_template", platformspecific_template),
    plain("colorized_crossplatform_template", colorized_crossplatform_template),
    plain("build_version_short", build_version_short),
};

// What writes thousands of bytes.
std::vector<Operation> const large_operations = {
    plain("test_pattern_supported_m_codes", test_pattern_supported_m_codes),
    plain("test_pattern_normal_reset", test_pattern_normal_reset),
    plain("test_pattern_matrix", test_pattern_matrix),
    plain("test_pattern_256bit", test_pattern_256bit),
    plain("test_pattern_greyscale", test_pattern_greyscale),
    plain("test_pattern_rgb", test_pattern_rgb),
    plain("test_pattern_status_line", test_pattern_status_line),
    plain("test_pattern_progress_line", test_pattern_progress_line),
    plain("build_version", build_version),
};

void perform_everything(std::ostream& os)
{
    for (std::vector<Operation> const* const some : {&small_operations, &large_operations}) {
        for (Operation const& each : *some) {
            each.act(os);
        }
    }
}

// The record as at load, and std::cout as a colorized stream without errors.
void start_anew()
{
    std::cout.exceptions(std::ios_base::goodbit);
    std::cout.clear();
    std::cout << std::dec << reset << push << colorize;
}

// The record, as the next rendition shows it.
std::string record()
{
    SmallBuffer buffer;
    WithBuffer const collected(std::cout, &buffer);
    std::cout << adjust;
    return buffer.text();
}

// How far the spinners have turned does not matter.
std::string without_frames(std::string bytes)
{
    std::replace_if(bytes.begin(), bytes.end(), [](char c) { return bar_frames.find(c) != std::string::npos; }, '|');
    return bytes;
}

// ---------------------------------------------------------------------------------------------
// Failed streams
// ---------------------------------------------------------------------------------------------

TEST(FailedStream, TakesChangesOfTheRecord)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout.setstate(std::ios_base::failbit);
        std::cout << thin << italic << red << on_rgb{1, 2, 3};
        std::cout.clear();
        std::cout << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[3m\e[31m\e[48;2;1;2;3m)");
}

TEST(FailedStream, SavesAndRestoresTheRecord)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout.setstate(std::ios_base::badbit);
        std::cout << red << push << green << pull;
        std::cout.clear();
        std::cout << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m\e[31m)");
}

TEST(FailedStream, Waits)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout.setstate(std::ios_base::failbit);
        advance_clock_by(std::chrono::milliseconds(1));
        std::cout << csi::delay{25};
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "26"); // at 0, 1, ..., 25 ms
}

TEST(FailedStream, PrintsTheCodeGrid)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout.setstate(std::ios_base::failbit);
        std::cout << test_pattern_supported_m_codes;
    });
    EXPECT_EQ(readable(run.out).substr(0, 24), R"(\e[0m   0\e[m\e[1m   1\e)");
}

TEST(FailedStream, AdvancesTheSpinners)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        os.setstate(std::ios_base::failbit);
        os << spinner{bar_frames, ""};
        os.clear();
        os << spinner{bar_frames, ""};
        report(os.str());
    });
    EXPECT_EQ(run.report, "-"); // the slash was drawn in vain
}

TEST(FailedStream, KeepsItsPendingWidth)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout.setstate(std::ios_base::failbit);
        std::cout.width(7);
        std::cout << red << HexDump('A') << csi::cup{1, 2};
        report(std::to_string(std::cout.width()));
    });
    EXPECT_EQ(run.report, "7");
}

// ---------------------------------------------------------------------------------------------
// Buffers
// ---------------------------------------------------------------------------------------------

TEST(NullBuffer, MakesEveryOperationSilent)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize;
        {
            WithBuffer const none(std::cout, nullptr);
            for (Operation const& each : small_operations) {
                each.act(std::cout);
                if (!std::cout.bad()) {
                    report(each.name + " made the stream good");
                }
            }
        }
        std::cout << reset;
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[25h)");
    EXPECT_EQ(run.status, 0);
}

TEST(NullBuffer, EndsNoPattern)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize;
        WithBuffer const none(std::cout, nullptr);
        perform_everything(std::cout);
        report("through");
    });
    EXPECT_EQ(run.report, "through");
    EXPECT_EQ(run.status, 0);
}

// What is wrong when the operation meets a buffer that takes only so many bytes.
std::string findings_of(Operation const& tested, std::size_t bytes, std::string const& all, std::string const& record_of_all)
{
    static SmallBuffer buffer;
    start_anew();
    std::string findings;
    bool was_bad = false;
    {
        WithBuffer const little(std::cout, &buffer);
        buffer.empty(bytes);
        tested.act(std::cout);
        was_bad = std::cout.bad();
    }
    std::string const what = tested.name + " with " + std::to_string(bytes) + " bytes ";
    if (without_frames(buffer.text()) != without_frames(all.substr(0, bytes))) {
        findings += what + "wrote " + readable(buffer.text()) + "\n";
    }
    if (was_bad != (bytes < all.size())) {
        findings += what + (was_bad ? "made the stream bad\n" : "left the stream good\n");
    }
    if (record() != record_of_all) {
        findings += what + "made the record " + readable(record()) + "\n";
    }
    return findings;
}

// What the operation writes where everything is taken.
std::string all_of(Operation const& tested)
{
    static SmallBuffer buffer;
    start_anew();
    WithBuffer const collected(std::cout, &buffer);
    buffer.empty();
    tested.act(std::cout);
    return buffer.text();
}

TEST(BufferOfSoManyBytes, TakesThemAndTheRecordChangesAllTheSame)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize;
        for (Operation const& each : small_operations) {
            std::string const all = all_of(each);
            std::string const record_of_all = record();
            for (std::size_t bytes = 0; bytes <= all.size() + 1; ++bytes) {
                report(findings_of(each, bytes, all, record_of_all));
            }
        }
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(run.status, 0);
}

TEST(BufferOfSoManyBytes, CutsAPatternShortAnywhere)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize;
        for (Operation const& each : large_operations) {
            std::string const all = all_of(each);
            std::string const record_of_all = record();
            std::size_t const step = all.size() / 7 + 1;
            for (std::size_t bytes = 0; bytes < all.size(); bytes += step) {
                report(findings_of(each, bytes, all, record_of_all));
            }
            report(findings_of(each, all.size(), all, record_of_all));
        }
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(run.status, 0);
}

// ---------------------------------------------------------------------------------------------
// Streams that throw
// ---------------------------------------------------------------------------------------------

TEST(ThrowingStream, ThrowsItsOwnExceptionOutOfEveryOperation)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize;
        SmallBuffer none(0);
        for (std::vector<Operation> const* const some : {&small_operations, &large_operations}) {
            for (Operation const& each : *some) {
                WithBuffer const failing(std::cout, &none);
                std::cout.exceptions(std::ios_base::badbit | std::ios_base::failbit);
                bool const writes = each.name != "push" && each.name != "pull";
                try {
                    each.act(std::cout);
                    report(writes ? each.name + " threw nothing\n" : "");
                } catch (std::ios_base::failure const&) {
                    report(writes ? "" : each.name + " threw\n");
                }
            }
        }
        start_anew();
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(run.status, 0);
}

// What a manipulator leaves behind whose first byte throws.
std::string record_after_throwing(std::function<void(std::ostream&)> const& act)
{
    auto const run = on_terminal([&] {
        std::cout << colorize << on_blue;
        SmallBuffer none(0);
        {
            WithBuffer const failing(std::cout, &none);
            std::cout.exceptions(std::ios_base::badbit);
            try {
                act(std::cout);
                report("nothing was thrown ");
            } catch (std::ios_base::failure const&) {
            }
        }
        report(readable(record()));
    });
    return run.report;
}

TEST(ThrowingStream, LeavesTheColourInTheRecord)
{
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << red; }), R"(\e[00m\e[1m\e[31m\e[44m)");
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << color{200}; }), R"(\e[00m\e[1m\e[38;5;200m\e[44m)");
}

TEST(ThrowingStream, LeavesTheAttributeInTheRecord)
{
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << thin; }), R"(\e[00m\e[44m)");
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << underline; }), R"(\e[00m\e[1m\e[4m\e[44m)");
}

TEST(ThrowingStream, EndsResetBeforeTheRecordIsCleared)
{
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << reset; }), R"(\e[00m\e[1m\e[44m)");
}

TEST(ThrowingStream, EndsTheBannerAtItsFirstByte)
{
    EXPECT_EQ(record_after_throwing([](std::ostream& os) { os << build_version; }), R"(\e[00m\e[1m\e[44m)");
}

TEST(ThrowingStream, IsLeftAloneByTheOthers)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cerr << colorize;
        SmallBuffer none(0);
        WithBuffer const failing(std::cout, &none);
        std::cout.exceptions(std::ios_base::badbit);
        std::cerr << red; // std::cout is flushed first, which does not fail
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(run.status, 0) << run.report;
}

// ---------------------------------------------------------------------------------------------
// A full device
// ---------------------------------------------------------------------------------------------

TEST(FullDevice, GetsTheTextAloneAndMakesTheStreamBad)
{
    auto const run = run_with({Sink::full, Sink::terminal}, [] {
        std::cout << colorize << red << "text" << std::flush;
        report(std::cout.bad() ? "bad " : "good ");
        std::cout.clear();
        perform_everything(std::cout);
        report(std::cout.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad bad");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
}

TEST(FullDevice, TakesNoCodeGridAndLeavesTheOtherStreamAsItIs)
{
    auto const run = run_with({Sink::full, Sink::terminal}, [] {
        std::cerr << colorize << test_pattern_supported_m_codes << red;
        report(std::cerr.good() ? "good" : "bad");
    });
    EXPECT_EQ(run.report, "good");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
                                 R"( first 108 m codes: \n\n\e[00m\e[2m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// Closed descriptors
// ---------------------------------------------------------------------------------------------

TEST(ClosedDescriptors, GetNoColourFromAnyOperation)
{
    auto const run = run_with({Sink::closed, Sink::closed}, [] {
        UseColorMode const forced;
        std::cerr << colorize;
        perform_everything(std::cout);
        perform_everything(std::cerr);
        std::clog << colorize;
        perform_everything(std::clog);
        std::cout << colorize << color_mode_state;
        report(std::cout.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
    EXPECT_EQ(run.status, 0);
}

TEST(ClosedDescriptors, AreNoTerminalAndLeaveErrno)
{
    auto const run = run_with({Sink::closed, Sink::closed}, [] {
        std::cout << colorize;
        errno = ENOENT;
        std::cout << red;
        report(_isUsingColor() ? "colour " : "plain ");
        report(errno == ENOENT ? "kept" : "changed");
    });
    EXPECT_EQ(run.report, "plain kept");
}

// The gate asks anew each time.
TEST(ClosedDescriptors, GetColourOnceATerminalIsOpenedThere)
{
    auto const run = run_with({Sink::closed, Sink::terminal}, [] {
        std::cout << colorize << red;
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::cout << red << std::flush;
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// fclose
// ---------------------------------------------------------------------------------------------

TEST(ClosedStdout, GetsNoColour)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::fclose(stdout);
        perform_everything(std::cout);
        report(_isUsingColor() ? "colour" : "plain");
    });
    EXPECT_EQ(run.report, "plain");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}

TEST(ClosedStdout, TakesNoCodeGridAndLeavesStandardErrorAsItIs)
{
    auto const run = on_terminal([] {
        std::cerr << colorize;
        std::fclose(stdout);
        std::cerr << test_pattern_supported_m_codes << red;
        report(std::cerr.good() ? "good" : "bad");
    });
    EXPECT_EQ(run.report, "good");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
                                 R"( first 108 m codes: \n\n\e[00m\e[2m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// Terminals that hang up
// ---------------------------------------------------------------------------------------------

// A terminal as standard output of this process, whose other end is closed, as by a person who closes
// its window, after so many flushes of std::cout.
class HangingUp {
public:
    explicit HangingUp(int flushes_before) : watch(*this, flushes_before), stream_buffer(std::cout, &watch)
    {
        termios raw = {};
        int slave = -1;
        openpty(&master, &slave, nullptr, nullptr, nullptr);
        tcgetattr(slave, &raw);
        cfmakeraw(&raw);
        tcsetattr(slave, TCSANOW, &raw);
        ioctl(slave, TIOCSCTTY, 0);
        fcntl(master, F_SETFL, O_NONBLOCK);
        dup2(slave, STDOUT_FILENO);
        close(slave);
    }

    int flushes() const { return watch.flushes; }
    std::string seen() const { return bytes; }

private:
    // Passes bytes on to the descriptor at each flush, and reads what arrives at the other end.
    class Watch : public SmallBuffer {
    public:
        Watch(HangingUp& terminal, int flushes_before) : hanging(terminal), last(flushes_before) {}

        int flushes = 0;

    private:
        int sync() override
        {
            std::string const bytes = text();
            empty();
            bool const written = write(STDOUT_FILENO, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
            if (hanging.master >= 0) {
                usleep(1000); // what is written takes a moment to the other end
                hanging.receive();
            }
            if (++flushes == last) {
                close(std::exchange(hanging.master, -1));
            }
            return written ? 0 : -1;
        }

        HangingUp& hanging;
        int last;
    };

    void receive()
    {
        char some[4096];
        for (ssize_t n = 0; (n = read(master, some, sizeof some)) > 0;) {
            bytes.append(some, static_cast<std::size_t>(n));
        }
    }

    int master = -1;
    std::string bytes;
    Watch watch;
    WithBuffer stream_buffer;
};

// Keeps the animation from being too fast for its terminal and too slow for a test.
void let_waits_be_short() { advance_clock_by(std::chrono::milliseconds(5)); }

TEST(HangUp, EndsTheWaitingAndTheColourOfAnAnimation)
{
    auto const run = run_with({Sink::pipe, Sink::pipe}, [] {
        std::signal(SIGHUP, SIG_IGN);
        let_waits_be_short();
        HangingUp terminal(9);
        std::cout << colorize << test_pattern_progress_line;
        bool const is_bad = std::cout.bad(); // since the flush after the hang-up
        std::int64_t const readings = clock_readings;
        report(std::to_string(terminal.flushes()) + " flushes, " + std::to_string(readings) + " readings, " +
               (is_bad ? "bad, " : "good, ") + (_isUsingColor() ? "colour" : "plain"));
        report(terminal.seen().find("\x1b[25i\r") == 0 ? ", seen" : ", not seen");
    });
    // Each of the eight waits before it reads the clock at 0, 5, ..., 25 ms.
    EXPECT_EQ(run.report, "10 flushes, 48 readings, bad, plain, seen");
    EXPECT_EQ(run.status, 0);
}

TEST(HangUp, LeavesTheProcessAbleToColourAnotherTerminal)
{
    auto const run = run_with({Sink::pipe, Sink::terminal}, [] {
        std::signal(SIGHUP, SIG_IGN);
        let_waits_be_short();
        {
            HangingUp terminal(3);
            std::cout << colorize << test_pattern_status_line;
        }
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::cout << red << std::flush;
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(run.status, 0);
}

// As any process whose terminal goes away.
TEST(HangUp, EndsAProcessThatDoesNotIgnoreIt)
{
    auto const run = run_with({Sink::pipe, Sink::pipe}, [] {
        std::signal(SIGHUP, SIG_DFL);
        let_waits_be_short();
        HangingUp terminal(3);
        std::cout << colorize << build_version;
    });
    EXPECT_EQ(run.signal, SIGHUP);
}

// ---------------------------------------------------------------------------------------------
// A locale without facets
// ---------------------------------------------------------------------------------------------

// A stream without std::ctype, std::num_put and std::num_get: libstdc++ finds them in init, which this
// base-class constructor does not call. No locale can be made without them.
class WithoutFacets : public std::ostream {
public:
    explicit WithoutFacets(std::streambuf* buffer) : std::ostream(static_cast<std::iostream*>(nullptr)) { rdbuf(buffer); }
};

// What an operation writes to such a stream, and what comes of it.
std::string without_facets(std::function<void(std::ostream&)> const& act)
{
    auto const run = on_terminal([&] {
        SmallBuffer buffer;
        WithoutFacets os(&buffer);
        std::string ending;
        try {
            act(os);
            ending = os.bad() ? "bad" : "good";
        } catch (std::bad_cast const&) {
            ending = "std::bad_cast";
        }
        report(readable(buffer.text()) + '|' + ending);
        report(_isUsingColor() || _getNoFrillsMode() ? "|changed" : "");
    });
    EXPECT_EQ(run.status, 0);
    return run.report;
}

TEST(WithoutFacets, ALineEndIsABadCast)
{
    EXPECT_EQ(without_facets([](std::ostream& os) { os << color_mode_state; }), " use color mode is off |std::bad_cast");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << frills_mode_state; }), " no frills mode is off |std::bad_cast");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << crossplatform_template; }), "this is a cross platform template|std::bad_cast");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << build_version; }), "Kestry Hueline Library (Hueline)|std::bad_cast");
}

TEST(WithoutFacets, ANumberMakesTheStreamBad)
{
    EXPECT_EQ(without_facets([](std::ostream& os) { os << progress_meter{1, 0, 2, cell, "(", ")", "="}; }), "(# =|bad");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << ColorTheme::path(std::uint32_t{42}); }), "|bad");
}

TEST(WithoutFacets, WhatHasNeitherIsWritten)
{
    EXPECT_EQ(without_facets([](std::ostream& os) { os << HexDump(0xdeadbeefUL); }), "deadbeef|good");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << status_line{2, 0, 3, cell, ".", "[", "]", bar_frames, ""}; }), "[##/]|good");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << csi::cr << csi::lf << ColorTheme::alert("alert"); }), R"(\r\nalert|good)");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << platformspecific_template; }), R"(\e[00mthis is a platform specific template|std::bad_cast)");
    EXPECT_EQ(without_facets([](std::ostream& os) { os << build_version_short << red << csi::cup{1, 2}; }), "Hueline ver. 0.2.2-r0|good");
}

} // namespace
