// How the animations wait. What a pattern writes is told by the model, and what is seen of it in screen/.

#include "kestry/hueline_stream.hpp"

#include "support/clock.hpp"
#include "support/recorder.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

TEST(Animation, Waits25MillisecondsAfterEachFrame)
{
    for (auto const pattern : {test_pattern_status_line, test_pattern_progress_line}) {
        auto const run = on_terminal([&] {
            advance_clock_by(std::chrono::milliseconds(1));
            pattern(colorize(std::cout));
            report(std::to_string(clock_readings));
        });
        EXPECT_EQ(run.report, "3900"); // 150 waits of 25 ms, each begun with a reading
    }
}

TEST(Animation, FlushesEachFrameBeforeItWaits)
{
    for (auto const pattern : {test_pattern_status_line, test_pattern_progress_line}) {
        auto const run = on_terminal([&] {
            Recorder const recorder(std::cout);
            std::string too_late;
            made_up_time = [&](std::int64_t n) {
                too_late += recorder.text().ends_with(flush_mark) ? "" : "late ";
                return n * 30'000'000;
            };
            clock_readings = 0;
            pattern(colorize(std::cout));
            report(too_late);
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.report, "");
    }
}

} // namespace
