#include "output.hpp"

#include "support/testing.hpp"
#include "support/writes.hpp"

#include <kestry/kit/line.hpp>

#include <mutex>

#include <pthread.h>

namespace {

using namespace hueline::test;
using namespace kestry::kit::detail;
using kestry::kit::line;

bool is_free()
{
    bool taken = false;
    std::thread([&] {
        taken = output.try_lock();
        if (taken) {
            output.unlock();
        }
    }).join();
    return taken;
}

TEST(OutputMutex, IsHeldUntilItIsUnlockedAsOftenAsLocked)
{
    EXPECT_TRUE(is_free());
    output.lock();
    EXPECT_TRUE(output.try_lock());
    output.lock();
    EXPECT_FALSE(is_free());
    output.unlock();
    EXPECT_FALSE(is_free());
    output.unlock();
    EXPECT_FALSE(is_free());
    output.unlock();
    EXPECT_TRUE(is_free());
    EXPECT_TRUE(output.try_lock());
    EXPECT_FALSE(is_free());
    output.unlock();
    EXPECT_TRUE(is_free());
}

TEST(OutputMutex, IsHeldByALineUntilItsEnd)
{
    writes_to(STDERR_FILENO, [] {
        line named(std::cerr);
        EXPECT_FALSE(is_free());
        line(std::cerr) << "inner";
        EXPECT_FALSE(is_free());
        named.end();
        EXPECT_TRUE(is_free());
    });
    EXPECT_TRUE(is_free());
}

TEST(OutputMutex, IsFreeInAChildProcess)
{
    auto const run = on_pipe([] { report(is_free() ? "free" : "held"); });
    EXPECT_EQ(run.report, "free");
}

TEST(NoCancellation, EndsWithItsScope)
{
    int state = -1;
    {
        no_cancellation const outer;
        {
            no_cancellation const inner;
        }
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
        EXPECT_EQ(state, PTHREAD_CANCEL_DISABLE);
    }
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
    EXPECT_EQ(state, PTHREAD_CANCEL_ENABLE);
}

TEST(WriteAll, TellsWhyItFailed)
{
    errno = 0;
    EXPECT_FALSE(write_all(-1, "x"));
    EXPECT_EQ(errno, EBADF);
    EXPECT_TRUE(write_all(-1, "")); // nothing to write
}

std::string offered;
bool takes = false;

bool offer(int fd, std::string_view text) noexcept
{
    offered += std::to_string(fd) + ':' + std::string(text) + (is_free() ? " free " : " ");
    return takes;
}

class Hook : public testing::Test {
protected:
    Hook()
    {
        offered.clear();
        offer_lines_to(offer);
    }
    ~Hook() override { offer_lines_to(nullptr); }
};

TEST_F(Hook, WritesLinesInsteadUnderTheLock)
{
    takes = true;
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { line(std::cerr) << "a" << 1; }), "");
    EXPECT_EQ(writes_to(STDOUT_FILENO, [] { line(std::cout) << "b"; }), "");
    EXPECT_EQ(offered, "2:a1 1:b ");
}

TEST_F(Hook, MayLeaveALineAlone)
{
    takes = false;
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { line(std::cerr) << "a"; }), "[a]");
    EXPECT_EQ(offered, "2:a ");
}

TEST_F(Hook, IsNotOfferedALineWithoutText)
{
    takes = true;
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { line(std::cerr) << ""; }), "");
    EXPECT_EQ(offered, "");
}

TEST_F(Hook, IsNotOfferedLinesOfOtherStreams)
{
    takes = true;
    std::ostringstream os;
    line(os) << "a";
    EXPECT_EQ(os.str(), "a");
    EXPECT_EQ(offered, "");
}

TEST_F(Hook, CanBeTakenAway)
{
    takes = true;
    offer_lines_to(nullptr);
    EXPECT_EQ(writes_to(STDERR_FILENO, [] { line(std::cerr) << "a"; }), "[a]");
    EXPECT_EQ(offered, "");
}

} // namespace
