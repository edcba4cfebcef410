#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "support/testing.hpp"
#include "support/writes.hpp"

#include <sys/resource.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

std::string const bar_frames = "|/-\\";
std::string const hash = "#";

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

std::string repeated(std::string const& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

TEST(Spinner, CountsPastSixteenBits)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  std::string const digits = "0123456789";
                  std::ostringstream elsewhere;
                  for (int i = 1; i <= 65537; ++i) {
                      (i == 256 || i >= 65536 ? os : elsewhere) << spinner{digits, ""};
                  }
              }),
              "667");
}

struct Bar {
    int position;
    int start;
    int end;
    char const* expected; // the spinner shows "/" in a fresh process
};

TEST(StatusLine, HasACellForEachStep)
{
    Bar const bars[] = {{1, 0, 5, "[#/...]"},
                        {4, 0, 5, "[####/]"},
                        {11, 10, 13, "[#/.]"},
                        {-2, -3, 1, "[#/..]"},
                        {0, 0, 5, "[.....]"},
                        {10, 10, 13, "[...]"},
                        {5, 0, 5, "[#####]"},
                        {13, 10, 13, "[###]"},
                        {-2, 0, 5, "[.......]"},
                        {7, 10, 13, "[......]"},
                        {7, 0, 5, "[#######]"}, // before its start and past its end
                        {0, 0, 0, "[]"},
                        {0, 0, -3, "[]"},
                        {1, 3, 0, "[]"},
                        {0, 3, 0, "[]"},
                        {-1, 3, 0, "[.]"},
                        {5, 3, 0, "[##]"},
                        {INT_MAX, INT_MAX - 2, INT_MAX, "[##]"},
                        {INT_MAX - 1, INT_MAX - 3, INT_MAX, "[##/]"},
                        {INT_MAX, INT_MAX - 2, INT_MIN, "[##]"},
                        {INT_MIN, INT_MIN, INT_MIN + 3, "[...]"},
                        {INT_MIN, INT_MAX, INT_MIN + 3, "[...]"},
                        {INT_MIN + 1, INT_MIN, INT_MIN + 3, "[#/.]"},
                        {INT_MAX - 3, INT_MAX, INT_MAX, "[...]"},
                        {INT_MAX, INT_MAX, INT_MIN, "[]"},
                        {0, INT_MAX, INT_MIN, "[]"}};
    for (Bar const& bar : bars) {
        EXPECT_EQ(drawn([&](std::ostream& os) {
                      os << status_line{bar.position, bar.start, bar.end, hash, ".", "[", "]", bar_frames, ""};
                  }),
                  bar.expected)
            << bar.position << " from " << bar.start << " to " << bar.end;
    }
}

TEST(StatusLine, TakesNoTimeForEmptyCells)
{
    EXPECT_EQ(drawn([](std::ostream& os) {
                  auto const draw = [&os](int position, int start, int end, char const* done, char const* todo) {
                      os << status_line{position, start, end, done, todo, "[", "]", bar_frames, ""};
                  };
                  draw(INT_MIN, INT_MIN, INT_MAX, "", "");
                  draw(INT_MIN, INT_MAX, INT_MAX, "", "");
                  draw(INT_MAX, INT_MIN, INT_MAX, "", "");
                  draw(INT_MAX, INT_MIN, INT_MIN, "", "");
                  draw(0, INT_MIN, INT_MAX, "", "");
                  draw(INT_MIN + 1, INT_MIN, INT_MAX, "", "");
                  draw(INT_MAX - 1, INT_MIN, INT_MAX, "", "");
                  draw(INT_MIN, 0, INT_MAX, "", "");
                  draw(INT_MAX - 2, INT_MIN, INT_MAX, "", ".");
                  draw(INT_MIN + 2, INT_MIN, INT_MAX, "#", "");
              }),
              R"([][][][][/][-][\][][|.][##/])");
}

TEST(StatusLine, IsExactHoweverManyCellsItHas)
{
    for (std::size_t const size : {1U, 3U, 7U, 100U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
        std::string const done = std::string(size - 1, 'x') + 'y';
        EXPECT_TRUE(drawn([&](std::ostream& os) {
                        os << status_line{300, 0, 10000, done, ".", "[", "]", bar_frames, "label"};
                    }) == "[" + repeated(done, 300) + "label/" + std::string(9699, '.') + "]")
            << size;
    }
}

TEST(ProgressMeter, MeasuresThePositionAgainstTheWidth)
{
    Bar const meters[] = {{0, 0, 49, " 0%"},
                          {1, 0, 49, " 2%"},
                          {48, 0, 49, " 97%"},
                          {49, 0, 49, " 100%"},
                          {50, 0, 49, " 102%"},
                          {15, 10, 20, " 150%"},
                          {10, 10, 20, " 100%"},
                          {20, 10, 20, " 200%"},
                          {5, -5, 5, " 50%"},
                          {199, 0, 200, " 99%"},
                          {-1, 0, 49, " -2%"},
                          {-199, 0, 200, " -99%"},
                          {199, 200, 0, " -99%"}, // cut towards 0
                          {1, 0, 1000, " 0%"},
                          {-1, 0, 1000, " 0%"},
                          {29, 0, 100, " 29%"}, // 28 in double precision
                          {53, 0, 100, " 52%"}, // 53 if it were multiplied first
                          {5, 5, 5, " 2147483647%"},
                          {-5, 5, 5, " -2147483648%"},
                          {0, 5, 5, " 0%"},
                          {INT_MAX, 0, 1, " 2147483647%"},
                          {INT_MIN, 0, 1, " -2147483648%"},
                          {INT_MAX, 0, -1, " -2147483648%"},
                          {INT_MIN, 0, -1, " 2147483647%"},
                          {21474836, 0, 1, " 2147483647%"}, // 2^31 in single precision
                          {21474834, 0, 1, " 2147483392%"}, // 2^31 - 256: the float below
                          {-21474836, 0, 1, " -2147483648%"},
                          {-21474834, 0, 1, " -2147483392%"},
                          {INT_MAX, 0, INT_MAX, " 100%"},
                          {INT_MIN, 0, INT_MIN, " 100%"},
                          {0, INT_MIN, INT_MAX, " 0%"},
                          {1, INT_MIN, INT_MAX, " -100%"}, // the width is an int, and goes round: -1 here
                          {1, INT_MAX, INT_MIN, " 100%"},
                          {INT_MIN, INT_MIN, 0, " 100%"}};
    for (Bar const& meter : meters) {
        EXPECT_EQ(drawn([&](std::ostream& os) {
                      os << progress_meter{meter.position, meter.start, meter.end, "", "", "", ""};
                  }),
                  meter.expected)
            << meter.position << " from " << meter.start << " to " << meter.end;
    }
}

TEST(Indicator, ReachesAnUnbufferedStreamInOneWrite)
{
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { std::cerr << 'a' << 'b'; }),
              "[a][b]"); // so that a write can be told at all
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { std::cerr << status_line{0, 0, 4, hash, ".", "{", "}", "", ""}; }),
              "[{....}]");
}

TEST(Indicator, IsInsertedInOnePieceBeforeAndAfterANumberAsLongAsItFits)
{
    auto const pieces = [](auto const& indicator) {
        Journal journal;
        std::ostream(&journal) << indicator;
        return journal.text;
    };
    std::string const completed = "completed";
    EXPECT_EQ(pieces(progress_meter{1, 0, 2, completed, "(", ")", "before "}), "[(completed before ][50][%)]");
    std::string const full(8191, 'x');
    EXPECT_TRUE(pieces(spinner{"/", full}) == "[" + full + "/]");
    EXPECT_TRUE(pieces(spinner{"/", full + "y"}) == "[" + full + "y][/]"); // too long for one
    EXPECT_TRUE(pieces(spinner{"", full + "yz"}) == "[" + full + "yz]");
    std::string const cell = "sixteen letters!";
    EXPECT_TRUE(pieces(status_line{512, 0, 512, cell, "", "", "", "", ""}) == "[" + repeated(cell, 512) + "]");
}

} // namespace
