#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "support/isatty_calls.hpp"
#include "support/recorder.hpp"
#include "support/grouping.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

#include <sys/resource.h>
#include <sys/socket.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;
using namespace std::string_literals;

std::string const bar_frames = "|/-\\";
std::string const no_frames;

// What a string stream receives in a fresh process, which may use two seconds of processor time.
std::string drawn(std::function<void(std::ostream&)> const& body)
{
    auto const run = on_pipe([&] {
        rlimit const limit = {2, 2};
        setrlimit(RLIMIT_CPU, &limit);
        std::ostringstream os;
        body(os);
        report(os.str());
    });
    EXPECT_EQ(run.status, 0) << run.report;
    EXPECT_EQ(run.signal, 0) << "took too long";
    return run.report;
}

// ---------------------------------------------------------------------------------------------
// Spinner
// ---------------------------------------------------------------------------------------------

TEST(Spinner, StartsAtTheSecondFrameAndGoesRound)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  for (int i = 0; i < 6; ++i) {
                      os << spinner{bar_frames, ""};
                  }
              }),
              R"(/-\|/-)");
}

TEST(Spinner, WritesItsLabelBeforeTheFrame)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << spinner{bar_frames, "busy "} << spinner{bar_frames, "still busy "};
              }),
              "busy /still busy -");
}

TEST(Spinner, TakesFramesOfAnyNumber)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  for (std::string const frames : {"x", "ab", "abc", "abcdefghij"}) { // drawn as 1, 2, 3, 4
                      os << spinner{frames, ""};
                  }
              }),
              "xaae");
}

TEST(Spinner, TakesOneByteAsAFrame)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const frames = "\0\x1b\xe2\n"s;
                  for (int i = 0; i < 4; ++i) {
                      os << spinner{frames, "."};
                  }
              }),
              ".\x1b.\xe2.\n.\0"s);
}

TEST(Spinner, IsTurnedByEachOther)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const letters = "abcdef";
                  std::ostringstream elsewhere;
                  os << spinner{bar_frames, ""} << spinner{letters, ""} << spinner{bar_frames, ""};
                  elsewhere << spinner{letters, ""};
                  os << spinner{letters, ""};
              }),
              R"(/c\f)");
}

TEST(Spinner, DrawsOnlyTheLabelIfThereIsNoFrameAndTurnsAllTheSame)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << spinner{no_frames, "label "} << spinner{no_frames, ""} << spinner{bar_frames, ""};
              }),
              R"(label \)");
}

TEST(Spinner, CountsPastSixteenBits)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::ostringstream elsewhere;
                  std::string const digits = "0123456789";
                  for (int i = 1; i <= 255; ++i) {
                      elsewhere << spinner{digits, ""};
                  }
                  os << spinner{digits, ""} << spinner{digits, ""}; // 256 and 257
                  for (int i = 258; i <= 65535; ++i) {
                      elsewhere << spinner{digits, ""};
                  }
                  os << spinner{digits, ""} << spinner{digits, ""}; // 65536 and 65537
              }),
              "6767");
}

TEST(Spinner, LeavesAWidthPending)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << std::setfill('*') << std::setw(6) << spinner{bar_frames, "a"} << spinner{no_frames, ""} << "b";
              }),
              "a/*****b");
}

TEST(Spinner, KeepsItsTextWhole)
{
    std::string const label = "\0 \x1b[31m \xff\r\n"s;
    EXPECT_EQ(drawn([&](std::ostream& os) { os << spinner{bar_frames, label}; }), label + "/");
}

// ---------------------------------------------------------------------------------------------
// Status line
// ---------------------------------------------------------------------------------------------

std::string const hash = "#";
std::string const no_cell;

// A bar at position, of a fresh process: the spinner shows "/".
std::string bar(int position, int start, int end)
{
    return drawn(
        [&](std::ostream& os) { os << status_line{position, start, end, hash, ".", "[", "]", bar_frames, ""}; });
}

TEST(StatusLine, ShowsTheSpinnerInTheCellAtItsPosition)
{
    EXPECT_EQ(bar(1, 0, 5), "[#/...]");
    EXPECT_EQ(bar(2, 0, 5), "[##/..]");
    EXPECT_EQ(bar(3, 0, 5), "[###/.]");
    EXPECT_EQ(bar(4, 0, 5), "[####/]");
    EXPECT_EQ(bar(11, 10, 13), "[#/.]");
    EXPECT_EQ(bar(-2, -3, 1), "[#/..]");
}

TEST(StatusLine, ShowsOnlyWorkToDoAtItsStart)
{
    EXPECT_EQ(bar(0, 0, 5), "[.....]");
    EXPECT_EQ(bar(10, 10, 13), "[...]");
    EXPECT_EQ(bar(0, 0, 1), "[.]");
}

TEST(StatusLine, ShowsOnlyFinishedWorkAtItsEnd)
{
    EXPECT_EQ(bar(5, 0, 5), "[#####]");
    EXPECT_EQ(bar(13, 10, 13), "[###]");
    EXPECT_EQ(bar(1, 0, 1), "[#]");
}

TEST(StatusLine, GrowsBeforeItsStartAndPastItsEnd)
{
    EXPECT_EQ(bar(-2, 0, 5), "[.......]");
    EXPECT_EQ(bar(7, 10, 13), "[......]");
    EXPECT_EQ(bar(7, 0, 5), "[#######]");
    EXPECT_EQ(bar(15, 10, 13), "[#####]");
}

TEST(StatusLine, ShowsNoCellWhereThereIsNone)
{
    EXPECT_EQ(bar(0, 0, 0), "[]");
    EXPECT_EQ(bar(0, 0, -3), "[]");
    EXPECT_EQ(bar(1, 3, 0), "[]"); // between an end and a later start
    EXPECT_EQ(bar(0, 3, 0), "[]");
    EXPECT_EQ(bar(-1, 3, 0), "[.]");
    EXPECT_EQ(bar(5, 3, 0), "[##]");
}

TEST(StatusLine, WritesItsTextsInOrder)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const done = "<done>";
                  os << status_line{2, 0, 5, done, "<todo>", "<prefix>", "<suffix>", bar_frames, "<label>"} << "\n";
                  os << status_line{0, 0, 2, done, "<todo>", "<prefix>", "<suffix>", bar_frames, "<label>"} << "\n";
                  os << status_line{2, 0, 2, done, "<todo>", "<prefix>", "<suffix>", bar_frames, "<label>"} << "\n";
              }),
              "<prefix><done><done><label>/<todo><todo><suffix>\n"
              "<prefix><todo><todo><suffix>\n"
              "<prefix><done><done><suffix>\n");
}

TEST(StatusLine, TurnsTheSpinnersOnlyWhereItShowsOne)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const digits = "0123456789";
                  for (int position = -1; position <= 6; ++position) { // it shows one at 1, 2 and 3
                      os << status_line{position, 0, 4, hash, ".", "", " ", digits, ""};
                  }
                  os << spinner{digits, ""};
              }),
              "..... .... #1.. ##2. ###3 #### ##### ###### 4");
}

TEST(StatusLine, ShowsNoHeadIfThereIsNoFrameAndTurnsTheSpinnersAllTheSame)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << status_line{2, 0, 5, hash, ".", "[", "]", "", "label"} << spinner{bar_frames, ""};
              }),
              "[##label..]-");
}

TEST(StatusLine, TakesNoTimeForEmptyCells)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  auto const empty = [&os](int position, int start, int end) {
                      os << status_line{position, start, end, no_cell, "", "[", "]", bar_frames, ""};
                  };
                  empty(INT_MIN, INT_MIN, INT_MAX);
                  empty(INT_MIN, INT_MAX, INT_MAX);
                  empty(INT_MAX, INT_MIN, INT_MAX);
                  empty(INT_MAX, INT_MIN, INT_MIN);
                  empty(0, INT_MIN, INT_MAX);
                  empty(INT_MIN + 1, INT_MIN, INT_MAX);
                  empty(INT_MAX - 1, INT_MIN, INT_MAX);
                  empty(INT_MIN, 0, INT_MAX);
              }),
              R"([][][][][/][-][\][])");
}

TEST(StatusLine, CountsItsCellsAtTheEdgesOfInt)
{
    EXPECT_EQ(bar(INT_MAX, INT_MAX - 2, INT_MAX), "[##]");
    EXPECT_EQ(bar(INT_MAX - 1, INT_MAX - 3, INT_MAX), "[##/]");
    EXPECT_EQ(bar(INT_MAX, INT_MAX - 2, INT_MIN), "[##]");
    EXPECT_EQ(bar(INT_MIN, INT_MIN, INT_MIN + 3), "[...]");
    EXPECT_EQ(bar(INT_MIN, INT_MAX, INT_MIN + 3), "[...]");
    EXPECT_EQ(bar(INT_MIN + 1, INT_MIN, INT_MIN + 3), "[#/.]");
    EXPECT_EQ(bar(INT_MAX - 3, INT_MAX, INT_MAX), "[...]");
    EXPECT_EQ(bar(INT_MAX, INT_MAX, INT_MIN), "[]");
    EXPECT_EQ(bar(0, INT_MAX, INT_MIN), "[]");
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << status_line{INT_MAX - 2, INT_MIN, INT_MAX, no_cell, ".", "[", "]", bar_frames, ""};
                  os << status_line{INT_MIN + 2, INT_MIN, INT_MAX, hash, "", "[", "]", bar_frames, ""};
              }),
              "[/.][##-]");
}

TEST(StatusLine, LeavesAWidthPending)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << std::setfill('*') << std::setw(5);
                  os << status_line{1, 0, 3, hash, ".", "[", "]", bar_frames, ""} << "b";
              }),
              "[#/.]****b");
}

TEST(StatusLine, KeepsItsTextsWhole)
{
    std::string const done = "d\0\x1b[31m"s;
    std::string const todo = "t\0\n"s;
    std::string const prefix = "\0p"s;
    std::string const suffix = "\xff\0"s;
    std::string const label = "\x1b[93m\0"s;
    std::string const frames = "a\0"s;
    EXPECT_EQ(drawn([&](std::ostream& os) { os << status_line{2, 0, 5, done, todo, prefix, suffix, frames, label}; }),
              prefix + done + done + label + "\0"s + todo + todo + suffix);
}

// The counts of bytes around which a frame does not fit into one piece any more.
std::size_t const long_sizes[] = {8190, 8191, 8192, 8193, 8194, 16383, 16384, 16385, 20000, 100000};

std::string letters(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += static_cast<char>('a' + i % 23);
    }
    return text;
}

TEST(Frame, IsExactHoweverLong)
{
    for (std::size_t const size : long_sizes) {
        std::string const text = letters(size);
        EXPECT_TRUE(drawn([&](std::ostream& os) { os << spinner{bar_frames, text}; }) == text + "/") << size;
        EXPECT_TRUE(drawn([&](std::ostream& os) {
                        os << status_line{2, 0, 5, text, "t" + text, "p" + text, "s" + text, bar_frames, "l" + text};
                    }) == "p" + text + text + text + "l" + text + "/t" + text + "t" + text + "s" + text)
            << size;
        EXPECT_TRUE(drawn([&](std::ostream& os) {
                        os << progress_meter{1, 0, 2, text, "l" + text, "a" + text, "b" + text};
                    }) == "l" + text + text + " b" + text + "50%a" + text)
            << size;
    }
}

TEST(Frame, IsExactHoweverManyCellsItHas)
{
    for (std::size_t const size : {1U, 3U, 7U, 100U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
        std::string const done = letters(size);
        std::string cells;
        for (int i = 0; i < 300; ++i) {
            cells += done;
        }
        EXPECT_TRUE(drawn([&](std::ostream& os) {
                        os << status_line{300, 0, 10000, done, ".", "[", "]", bar_frames, "label"};
                    }) == "[" + cells + "label/" + std::string(9699, '.') + "]")
            << size;
    }
}

// ---------------------------------------------------------------------------------------------
// Progress meter
// ---------------------------------------------------------------------------------------------

std::string const no_label;

std::string percentage(int position, int start, int end)
{
    return drawn([&](std::ostream& os) { os << progress_meter{position, start, end, no_label, "", "", ""}; });
}

TEST(ProgressMeter, WritesItsTextsInOrder)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const label = "<label>";
                  os << progress_meter{24, 0, 49, label, "<lead>", "<after>", "<before>"};
              }),
              "<lead><label> <before>48%<after>");
    EXPECT_EQ(percentage(24, 0, 49), " 48%");
}

TEST(ProgressMeter, GoesFromZeroToAHundred)
{
    EXPECT_EQ(percentage(0, 0, 49), " 0%");
    EXPECT_EQ(percentage(1, 0, 49), " 2%");
    EXPECT_EQ(percentage(48, 0, 49), " 97%");
    EXPECT_EQ(percentage(49, 0, 49), " 100%");
    EXPECT_EQ(percentage(50, 0, 49), " 102%");
}

TEST(ProgressMeter, MeasuresThePositionItselfAgainstTheWidth)
{
    EXPECT_EQ(percentage(15, 10, 20), " 150%");
    EXPECT_EQ(percentage(10, 10, 20), " 100%");
    EXPECT_EQ(percentage(20, 10, 20), " 200%");
    EXPECT_EQ(percentage(5, -5, 5), " 50%");
}

TEST(ProgressMeter, CutsTowardsZero)
{
    EXPECT_EQ(percentage(199, 0, 200), " 99%");
    EXPECT_EQ(percentage(-1, 0, 49), " -2%");
    EXPECT_EQ(percentage(-199, 0, 200), " -99%");
    EXPECT_EQ(percentage(199, 200, 0), " -99%");
    EXPECT_EQ(percentage(1, 0, 1000), " 0%");
    EXPECT_EQ(percentage(-1, 0, 1000), " 0%");
}

TEST(ProgressMeter, ReckonsInSinglePrecision)
{
    EXPECT_EQ(percentage(29, 0, 100), " 29%"); // 28 in double precision
    EXPECT_EQ(percentage(53, 0, 100), " 52%"); // 53 if it were multiplied first
}

TEST(ProgressMeter, CutsWhatIsNoIntToTheNearest)
{
    EXPECT_EQ(percentage(5, 5, 5), " 2147483647%");
    EXPECT_EQ(percentage(-5, 5, 5), " -2147483648%");
    EXPECT_EQ(percentage(0, 5, 5), " 0%");
    EXPECT_EQ(percentage(INT_MAX, 0, 1), " 2147483647%");
    EXPECT_EQ(percentage(INT_MIN, 0, 1), " -2147483648%");
    EXPECT_EQ(percentage(INT_MAX, 0, -1), " -2147483648%");
    EXPECT_EQ(percentage(INT_MIN, 0, -1), " 2147483647%");
    EXPECT_EQ(percentage(21474836, 0, 1), " 2147483647%");   // 2^31 in single precision
    EXPECT_EQ(percentage(21474834, 0, 1), " 2147483392%");   // 2^31 - 256: the float below
    EXPECT_EQ(percentage(-21474836, 0, 1), " -2147483648%"); // -2^31 itself
    EXPECT_EQ(percentage(-21474834, 0, 1), " -2147483392%");
}

TEST(ProgressMeter, TakesAnyStartAndEnd)
{
    EXPECT_EQ(percentage(INT_MAX, 0, INT_MAX), " 100%");
    EXPECT_EQ(percentage(INT_MIN, 0, INT_MIN), " 100%");
    EXPECT_EQ(percentage(0, INT_MIN, INT_MAX), " 0%");
    EXPECT_EQ(percentage(1, INT_MIN, INT_MAX), " -100%"); // the width is an int, and goes round: -1 here
    EXPECT_EQ(percentage(1, INT_MAX, INT_MIN), " 100%");
    EXPECT_EQ(percentage(INT_MIN, INT_MIN, 0), " 100%");
}

TEST(ProgressMeter, MakesTheStreamDecimal)
{
    auto const run = on_pipe([] {
        for (auto const base :
             {std::ios_base::hex, std::ios_base::oct, std::ios_base::dec, std::ios_base::fmtflags{}}) {
            std::ostringstream os;
            os.setf(base, std::ios_base::basefield);
            os << std::showbase << progress_meter{24, 0, 49, no_label, "", "", ""};
            report(os.str());
            report((os.flags() & std::ios_base::basefield) == std::ios_base::dec ? " dec," : " not dec,");
        }
    });
    EXPECT_EQ(run.report, " 48% dec, 48% dec, 48% dec, 48% dec,");
}

TEST(ProgressMeter, LeavesTheOtherFlagsOfTheStreamAlone)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os << std::hex << std::showbase << std::showpos << std::uppercase << std::left << std::setfill('*');
        auto const others = os.flags() & ~std::ios_base::basefield;
        os << progress_meter{24, 0, 49, no_label, "", "", ""};
        report(os.str() +
               ((os.flags() & ~std::ios_base::basefield) == others && os.fill() == '*' ? " same" : " changed"));
    });
    EXPECT_EQ(run.report, " +48% same");
}

TEST(ProgressMeter, SpendsAPendingWidthOnTheNumber)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const label = "label";
                  os << std::setfill('*') << std::setw(5) << progress_meter{24, 0, 49, label, "(", ")", "before"}
                     << "x";
              }),
              "(label before***48%)x");
}

TEST(ProgressMeter, GroupsDigitsAsTheLocaleOfTheStreamDoes)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os.imbue(grouping_locale());
                  os << progress_meter{150, 0, 1, no_label, "", "", ""};
              }),
              " 1.5.0.0.0%");
}

TEST(ProgressMeter, KeepsItsTextsWhole)
{
    std::string const label = "l\0\x1b[36m"s;
    std::string const lead = "\0\n"s;
    std::string const after = "\xff\0"s;
    std::string const before = "b\0"s;
    EXPECT_EQ(drawn([&](std::ostream& os) { os << progress_meter{1, 0, 2, label, lead, after, before}; }),
              lead + label + " " + before + "50%" + after);
}

TEST(ProgressMeter, DoesNotTurnTheSpinners)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os << progress_meter{1, 0, 2, no_label, "", "", ""} << spinner{bar_frames, ""};
              }),
              " 50%/");
}

// ---------------------------------------------------------------------------------------------
// All of them
// ---------------------------------------------------------------------------------------------

std::string const completed = "completed";

std::ostream& draw_each(std::ostream& os)
{
    return os << spinner{bar_frames, "busy "} << status_line{1, 0, 3, hash, ".", "[", "]", bar_frames, ""}
              << progress_meter{1, 0, 2, completed, "(", ")", csi::color(37)};
}

char const* const each_drawn = "busy /[#-.](completed \x1b[37m50%)";

TEST(Indicator, IsTheSameOnEveryStream)
{
    auto const to_cout = [] { draw_each(std::cout); };
    auto const to_cerr = [] { draw_each(std::cerr); };
    EXPECT_EQ(on_terminal(to_cout).out, each_drawn);
    EXPECT_EQ(on_terminal([] { draw_each(colorize(std::cout)); }).out, each_drawn);
    EXPECT_EQ(run_with({Sink::file, Sink::terminal}, to_cout).out, each_drawn);
    EXPECT_EQ(on_pipe(to_cout).out, each_drawn);
    EXPECT_EQ(on_pipe(to_cerr).err, each_drawn);
    EXPECT_EQ(on_terminal(to_cerr).err, each_drawn);
    EXPECT_EQ(drawn([](std::ostream& os) { draw_each(os); }), each_drawn);
    EXPECT_EQ(on_terminal([] {
                  _setNoFrillsMode(true);
                  draw_each(std::cout);
              }).out,
              each_drawn);
}

TEST(Indicator, NeverAsksForATerminal)
{
    auto const run = on_terminal([] {
        isatty_calls = 0;
        draw_each(colorize(std::cout));
        report(std::to_string(isatty_calls) + (_isUsingColor() ? " yes" : " no"));

        csi::show(std::cout); // finds a terminal
        std::ostringstream no_terminal;
        draw_each(no_terminal);
        report(_isUsingColor() ? " yes" : " no");
    });
    EXPECT_EQ(run.report, "0 no yes");
}

TEST(Indicator, ReturnsItsStream)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        report(&(os << spinner{bar_frames, ""}) == &os ? "" : "spinner ");
        report(&(os << status_line{1, 0, 3, hash, ".", "[", "]", bar_frames, ""}) == &os ? "" : "status_line ");
        report(&(os << progress_meter{1, 0, 2, no_label, "", "", ""}) == &os ? "" : "progress_meter");
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "");
}

TEST(Indicator, NeverFlushes)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        Recorder const recorder(os);
        draw_each(os);
        report(recorder.text());
    });
    EXPECT_EQ(run.report, each_drawn);
}

TEST(Indicator, LeavesTheRecordAlone)
{
    auto const run = on_terminal([] {
        std::cerr << colorize << red;
        draw_each(std::cerr);
        std::cout << colorize << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m)");
}

TEST(Indicator, WritesNothingToAStreamThatHasFailed)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  os.setstate(std::ios_base::failbit);
                  draw_each(os);
                  os.clear();
                  os << spinner{bar_frames, ""}; // two frames were counted
              }),
              R"(\)");
}

// What arrives at a descriptor for standard error, each write(2) in braces.
std::string writes(std::function<void()> const& body)
{
    auto const run = on_pipe([&] {
        int ends[2];
        socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends); // keeps writes apart
        dup2(ends[1], STDERR_FILENO);
        body();
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        char packet[16384];
        for (ssize_t n = 0; (n = read(ends[0], packet, sizeof packet)) > 0;) {
            report("{" + std::string(packet, static_cast<std::size_t>(n)) + "}");
        }
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.report;
}

TEST(Indicator, ReachesAnUnbufferedStreamInOneWriteForEachText)
{
    EXPECT_EQ(writes([] { std::cerr << 'a' << 'b'; }), "{a}{b}"); // so that a write can be told at all
    EXPECT_EQ(writes([] { std::cerr << spinner{bar_frames, "busy "}; }), "{busy /}");
    EXPECT_EQ(writes([] { std::cerr << status_line{2, 0, 5, hash, ".", "[", "]", bar_frames, "!"}; }), "{[##!/..]}");
    EXPECT_EQ(writes([] { std::cerr << progress_meter{1, 0, 2, completed, "(", ")", "before "}; }),
              "{(completed before }{50}{%)}");

    std::string const full(8191, 'x');
    EXPECT_TRUE(writes([&] { std::cerr << spinner{bar_frames, full}; }) == "{" + full + "/}");
    EXPECT_TRUE(writes([&] {
                    std::cerr << spinner{bar_frames, full + "y"};
                }) == "{" + full + "y}{/}"); // too long for one

    std::string const cell = "sixteen letters!";
    std::string cells;
    for (int i = 0; i < 512; ++i) {
        cells += cell;
    }
    EXPECT_TRUE(writes([&] { std::cerr << status_line{512, 0, 512, cell, "", "", "", "", ""}; }) == "{" + cells + "}");
}

// What the stream's buffer is asked for when two indicators are inserted.
std::string calls_of(spinner const& first, status_line const& second)
{
    Journal journal;
    std::ostream(&journal) << first << second;
    return journal.text;
}

TEST(Indicator, WithoutAnyTextIsOneEmptyInsertion)
{
    EXPECT_EQ(drawn([](std::ostream& os) { os << calls_of({"", ""}, {0, 0, 0, "", "", "", "", "", ""}); }), "[][]");
}

TEST(Indicator, WithTextInsertsNothingEmpty)
{
    std::string const large(8193, 'x');
    EXPECT_EQ(drawn([&](std::ostream& os) {
                  os << calls_of({"", "a"}, {0, 0, 1, "", "b", "", "", "", ""});
              }),
              "[a][b]");
    EXPECT_EQ(drawn([&](std::ostream& os) {
                  os << calls_of({"", large}, {0, 0, 0, "", "", large, "", "", ""});
              }),
              '[' + large + "][" + large + ']');
}

TEST(Indicator, WithoutAnyTextFlushesATiedStream)
{
    auto const run = on_pipe([] {
        std::cout << "held";
        std::cerr << spinner{"", ""}; // std::cerr is tied to std::cout
        _exit(0);
    });
    EXPECT_EQ(run.out, "held");
}

TEST(Indicator, IsSeenInPlaceAfterACarriageReturn)
{
    auto const run = on_terminal([] {
        std::cout << "old text" << csi::cr << spinner{bar_frames, csi::color(31) + "busy "};
    });
    Screen const screen{run.out};
    EXPECT_EQ(screen.text(0), "busy /xt");
    EXPECT_EQ(screen.cell(0, 5).foreground.index, 1);
    EXPECT_EQ(screen.cursor(), (Position{0, 6}));
}

} // namespace
