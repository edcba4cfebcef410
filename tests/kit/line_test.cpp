#include <kestry/kit/line.hpp>

#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "support/grouping.hpp"
#include "support/screen.hpp"
#include "kit/pipe.hpp"
#include "support/testing.hpp"
#include "support/writes.hpp"

#ifdef __GLIBCXX__
#include <ext/stdio_filebuf.h>
#endif

#include <pthread.h>
#include <sys/time.h>

#ifdef __SANITIZE_THREAD__
// A child process has no thread to wait for, and a program that exits waits for none.
extern "C" char const* __tsan_default_options() { return "report_thread_leaks=0"; }
#endif

namespace {

using namespace hueline::test;
using kestry::kit::hidden_cursor;
using kestry::kit::hide_cursor;
using kestry::kit::line;
using kestry::kit::show_cursor;

using std::ios_base;

std::string on_out(std::function<void()> const& body) { return readable(writes_to(STDOUT_FILENO, body)); }

std::string on_err(std::function<void()> const& body) { return readable(writes_to(STDERR_FILENO, body)); }

// In a process of its own, with streams that are independent of stdio.
std::string unsynced(std::string (*writes)(std::function<void()> const&), std::function<void()> const& body)
{
    return on_pipe([&] {
               std::ios::sync_with_stdio(false);
               report(writes(body));
           })
        .report;
}

// On terminals that know sequences.
Outcome on_xterm(std::function<void()> const& body)
{
    return on_terminal([&] {
        setenv("TERM", "xterm", 1);
        body();
    });
}

// A stream whose buffer tells what reaches it.
struct Journaled : std::ostream {
    Journaled() : std::ostream(nullptr) { rdbuf(&journal); }

    Journal journal;
};

// What reaches the buffer of a stream.
std::string journaled(std::function<void(std::ostream&)> const& body)
{
    Journaled os;
    body(os);
    return readable(os.journal.text);
}

// Makes standard error the only writer of the pipe.
void write_errors_to(Pipe& to)
{
    dup2(to.in->number, STDERR_FILENO);
    to.in.reset();
}

void write_errors_to_nobody()
{
    Pipe unread;
    unread.out.reset();
    write_errors_to(unread);
}

void insert_ten(std::ostream& os)
{
    os << 1 << ' ' << "two" << ' ' << std::hex << 0xabc << std::dec << ' ' << 'd' << ' ' << 5.5 << '\n';
}

TEST(Line, IsOneWrite)
{
    auto const ten = [](std::ostream& os) { return [&os] { insert_ten(line(os).stream()); }; };
    std::string const write = R"([1 two abc d 5.5\n])";
    EXPECT_EQ(on_err(ten(std::cerr)), write);
    EXPECT_EQ(on_err(ten(std::clog)), write);
    EXPECT_EQ(on_out(ten(std::cout)), write);
    EXPECT_EQ(unsynced(on_err, ten(std::cerr)), write);
    EXPECT_EQ(unsynced(on_err, ten(std::clog)), write);
    EXPECT_EQ(unsynced(on_out, ten(std::cout)), write);
    EXPECT_EQ(on_err([] { line(std::cerr) << "a" << 1 << ' ' << 2.5 << '\n'; }), R"([a1 2.5\n])");
}

TEST(Line, IsWrittenAtItsEndAndNotBefore)
{
    EXPECT_EQ(on_err([] {
                  {
                      line named(std::cerr);
                      named << "a";
                      std::cerr << "b" << std::flush;
                      EXPECT_EQ(::write(STDERR_FILENO, "first", 5), 5);
                  }
                  EXPECT_EQ(::write(STDERR_FILENO, "last", 4), 4);
              }),
              "[first][ab][last]");
}

TEST(Line, IsWrittenByEndOnce)
{
    EXPECT_EQ(on_err([] {
                  line named(std::cerr);
                  named << "a";
                  named.end();
                  EXPECT_EQ(::write(STDERR_FILENO, "between", 7), 7);
                  named << "b";
                  named << "c";
                  named.end();
              }),
              "[a][between][b][c]");
}

TEST(Line, AddsNothing)
{
    EXPECT_EQ(on_err([] { line(std::cerr) << "no line end"; }), "[no line end]");
    EXPECT_EQ(on_err([] { line(std::cerr) << ""; }), "");
    EXPECT_EQ(on_err([] { line const nothing(std::cerr); }), "");
    EXPECT_EQ(on_out([] { line(std::cout) << std::endl; }), R"([\n])");
}

TEST(Line, HoldsAnyLength)
{
    for (std::size_t const size : {1023U, 1024U, 1025U, 4095U, 4096U, 4097U, 100'001U}) {
        std::string const text(size, 'x');
        EXPECT_EQ(on_err([&] { line(std::cerr) << text; }), '[' + text + ']') << size;
        EXPECT_EQ(on_err([&] {
                      line piecewise(std::cerr);
                      for (char const c : text) {
                          piecewise << c;
                      }
                  }),
                  '[' + text + ']')
            << size;
    }
}

TEST(Line, KeepsZeroBytes)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(on_err([] { line(std::cerr) << "a\0b\xff"sv; }), R"([a\x00b\xff])");
}

struct Flags {
    unsigned narrow : 3;
};

struct Counter {
    static const int limit = 7; // not defined: an insertion does not need its address
};

TEST(Line, TakesWhatAStreamTakes)
{
    Flags const flags = {5};
    EXPECT_EQ(on_err([&] { line(std::cerr) << flags.narrow << Counter::limit << std::hex << 10; }), "[57a]");
    EXPECT_EQ(on_err([] { line(std::cerr) << std::showbase << std::hex << 10; }), "[0xa]");
    EXPECT_EQ(on_err([] { line(std::cerr) << std::setw(3) << 'x'; }), "[  x]");
    std::cerr << std::dec << std::noshowbase;
}

TEST(Line, IsColoredByTheManipulators)
{
    auto const run = on_terminal([] {
        using namespace kestry::Hueline;
        std::cout << colorize;
        std::cerr << colorize;
        std::clog << colorize;
        line(std::cout) << red << "out";
        line(std::cerr) << blue << "err" << normal;
        line(std::clog) << csi::cup{3, 7} << "log";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31mout)");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[34merr\e[00m\e[25h\e[3;7Hlog)");
}

TEST(Line, LeavesTheFormatAsTheInsertionsDo)
{
    EXPECT_EQ(on_err([] {
                  line(std::cerr) << std::hex << std::setfill('*') << std::setprecision(3) << 255 << std::setw(6);
                  EXPECT_EQ(std::cerr.width(), 6);
                  std::cerr << 255 << 1.23456;
              }),
              "[ff][****ff][1.23]");
    std::cerr << std::dec << std::setfill(' ') << std::setprecision(6);
}

TEST(Line, SpendsAWidthThatWasPending)
{
    EXPECT_EQ(on_err([] {
                  std::cerr << std::setw(5);
                  line(std::cerr) << "ab"
                                  << "c";
                  EXPECT_EQ(std::cerr.width(), 0);
              }),
              "[   abc]");
}

TEST(Line, PassesALocaleOnToTheStreamsBuffer)
{
    Journaled os;
    line(os) << 12 << ' ', os.imbue(grouping_locale()), os << 1234;
    EXPECT_EQ(os.journal.text, "imbued [12 1.2.3.4]");
    EXPECT_EQ(os.getloc(), os.journal.getloc());
}

TEST(Line, GivesBufferTieAndMaskBack)
{
    std::ostringstream tie;
    for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
        auto* const buffer = os->rdbuf();
        auto* const tied = os->tie(&tie);
        auto const flags = os->flags();
        on_out([&] { on_err([&] { line(*os) << "x"; }); });
        EXPECT_EQ(os->rdbuf(), buffer);
        EXPECT_EQ(os->tie(), &tie);
        EXPECT_EQ(os->flags(), flags);
        EXPECT_EQ(os->exceptions(), ios_base::goodbit);
        EXPECT_EQ(os->rdstate(), ios_base::goodbit);
        os->tie(tied);
    }
}

TEST(Line, LeavesATieAloneThatWasSetInIt)
{
    std::ostringstream before;
    std::ostringstream within;
    std::ostringstream os;
    os.tie(&before);
    {
        line named(os);
        EXPECT_EQ(os.tie(), nullptr);
        os.tie(&within);
    }
    EXPECT_EQ(os.tie(), &within);
}

TEST(Line, LeavesABufferAloneThatWasGivenInIt)
{
    std::ostringstream os;
    std::stringbuf other;
    std::ostream& stream = os;
    {
        line named(os);
        named << "line";
        stream.rdbuf(&other);
        stream << "other";
    }
    EXPECT_EQ(stream.rdbuf(), &other);
    EXPECT_EQ(os.str(), "line");
    EXPECT_EQ(other.str(), "other");
}

TEST(Line, FollowsWhatStdioHolds)
{
    auto const run = on_pipe([] {
        std::printf("a ");
        std::cout << "b ";
        line(std::cout) << "c " << (std::printf("d "), "e ");
        std::printf("f ");
        line(std::cerr) << "1 ";
    });
    EXPECT_EQ(run.out, "a b d c e f ");
}

TEST(Line, FollowsWhatItsStreamHolds)
{
    auto const write_between = [](std::ostream& before, std::ostream& os) {
        before << "before ";
        line(os) << "line";
    };
    EXPECT_EQ(unsynced(on_out, [&] { write_between(std::cout, std::cout); }), "[before ][line]");
    EXPECT_EQ(unsynced(on_err, [&] { write_between(std::clog, std::cerr); }), "[before ][line]");
}

TEST(Line, FlushesTheTiedStreamOnceAndFirst)
{
    Journaled tied;
    Journaled os;
    os.tie(&tied);
    line(os) << (tied << "a", "x") << "y" << 1;
    EXPECT_EQ(tied.journal.text, "[a]/");
    EXPECT_EQ(os.journal.text, "[xy1]");

    std::string const writes = unsynced(on_out, [] {
        std::cout << "out";
        std::string const err = on_err([] { line(std::cerr) << "err"; });
        std::cout << "more" << std::flush << err << std::flush;
    });
    EXPECT_EQ(writes, "[out][more][[err]]");
}

TEST(Line, FlushesATiedStreamThatIsInTheMiddleOfALine)
{
    std::string const writes = unsynced(on_out, [] {
        dup2(STDOUT_FILENO, STDERR_FILENO);
        std::cout << "before";
        line outer(std::cout);
        outer << "outer";
        line(std::cerr) << "inner";
    });
    EXPECT_EQ(writes, "[before][inner][outer]");
}

TEST(Line, HoldsItsOwnTextInSpiteOfFlushes)
{
    EXPECT_EQ(on_out([] { line(std::cout) << "a" << std::flush << "b" << std::endl
                                          << std::unitbuf << "c"; }),
              R"([ab\nc])");
    std::cout << std::nounitbuf;
}

TEST(LineOnAnyStream, IsOneInsertionIntoItsBuffer)
{
    EXPECT_EQ(journaled([](std::ostream& os) { line(os) << 'a' << 1 << ' ' << std::setw(4) << "b"; }), "[a1    b]");
    EXPECT_EQ(journaled([](std::ostream& os) { line(os) << ""; }), "");
}

TEST(LineOnAnyStream, FlushesWhereAnInsertionWould)
{
    EXPECT_EQ(journaled([](std::ostream& os) { line(os) << 'a' << std::endl << "b"; }), R"([a\nb]/)");
    EXPECT_EQ(journaled([](std::ostream& os) { line(os << std::unitbuf) << 'a' << 'b'; }), "[ab]/");
}

TEST(LineOnAnyStream, GoesToAStreamThatSharesABufferWithAStandardOne)
{
    std::ostream second(std::cout.rdbuf());
    EXPECT_EQ(on_out([&] {
                  line(second) << "a" << 1;
                  EXPECT_EQ(::write(STDOUT_FILENO, "before ", 7), 7);
                  second.flush();
              }),
              "[before ][a1]");
}

TEST(LineOnAStandardStream, GoesToABufferThatTheProgramGaveIt)
{
    for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
        Journal journal;
        WithBuffer const redirected(*os, &journal);
        EXPECT_EQ(on_out([&] { EXPECT_EQ(on_err([&] { line(*os) << "a" << 1; }), ""); }), "");
        EXPECT_EQ(journal.text, "[a1]/");
    }
}

#ifdef __GLIBCXX__
TEST(LineOnAStandardStream, GoesToAFileThatTheProgramGaveIt)
{
    Pipe const to;
    __gnu_cxx::stdio_filebuf<char> file(dup(to.in->number), ios_base::out);
    EXPECT_EQ(on_out([&] {
                  WithBuffer const redirected(std::cout, &file);
                  line(std::cout) << "a" << 1;
              }),
              "");
    std::array<char, 8> text = {};
    EXPECT_EQ(read(to.out->number, text.data(), text.size()), 2);
    EXPECT_STREQ(text.data(), "a1");
}

TEST(Cursor, IsLeftAloneOnAnotherDescriptor)
{
    auto const run = on_xterm([] {
        __gnu_cxx::stdio_filebuf<char> other(dup(STDOUT_FILENO), ios_base::out);
        WithBuffer const redirected(std::cout, &other);
        std::cout << hide_cursor << "x";
        hidden_cursor const hidden(std::cout);
        std::cout << "y" << std::flush;
    });
    EXPECT_EQ(run.out, "xy");
}

TEST(LineOnAStandardStream, GoesNowhereWhereABufferIsClosed)
{
    __gnu_cxx::stdio_filebuf<char> closed;
    WithBuffer const redirected(std::cout, &closed);
    EXPECT_EQ(on_out([] { line(std::cout) << "a"; }), "");
    EXPECT_TRUE(std::cout.bad());
}
#endif

TEST(LineOnAnyStream, WithoutABufferAcceptsNothing)
{
    std::ostream os(nullptr);
    line(os) << "a" << 1;
    EXPECT_EQ(os.rdstate(), ios_base::badbit | ios_base::failbit); // as each insertion into a bad stream has it
    EXPECT_EQ(os.rdbuf(), nullptr);
}

TEST(LineThatFails, LeavesTheStateOfTheInsertions)
{
    Journaled os;
    line(os) << "accepted" << static_cast<char const*>(nullptr);
    EXPECT_EQ(os.journal.text, "[accepted]");
    EXPECT_EQ(os.rdstate(), ios_base::badbit);

    line(os) << "refused";
    EXPECT_EQ(os.journal.text, "[accepted]");
    EXPECT_EQ(os.rdstate(), ios_base::badbit | ios_base::failbit); // as each insertion into a bad stream has it

    os.clear(ios_base::eofbit);
    line(os) << "refused";
    EXPECT_EQ(os.journal.text, "[accepted]");
    EXPECT_EQ(os.rdstate() & ~ios_base::failbit, ios_base::eofbit); // which newer libraries add here too
}

TEST(LineThatFails, AcceptsNothingOnAStreamThatHasThrown)
{
    Journaled os;
    os.setstate(ios_base::failbit);
    EXPECT_THROW(os.exceptions(ios_base::failbit), ios_base::failure);
    line const nothing(os);
    EXPECT_EQ(os.rdstate(), ios_base::failbit);
    EXPECT_EQ(os.exceptions(), ios_base::failbit);
}

struct Throws {
    friend std::ostream& operator<<(std::ostream& os, Throws)
    {
        os << "half ";
        throw std::runtime_error("thrown");
    }
};

TEST(LineThatFails, IsWrittenWhileAnExceptionPasses)
{
    EXPECT_EQ(on_err([] { EXPECT_THROW(line(std::cerr) << "a " << Throws{} << "b", std::runtime_error); }),
              "[a half ]");
    EXPECT_EQ(on_err([] { line(std::cerr) << "next"; }), "[next]"); // the lock is free, the buffer given back
}

TEST(LineThatFails, ThrowsInInsertionsAsTheMaskSays)
{
    EXPECT_EQ(on_err([] {
                  std::cerr.exceptions(ios_base::badbit);
                  EXPECT_THROW(line(std::cerr) << "a" << static_cast<char const*>(nullptr) << "b", ios_base::failure);
                  EXPECT_EQ(std::cerr.exceptions(), ios_base::badbit);
                  std::cerr.exceptions(ios_base::goodbit);
                  EXPECT_TRUE(std::cerr.bad());
                  std::cerr.clear();
              }),
              "[a]");
}

TEST(LineThatFails, SetsBadbitWhereTheDeviceIsFullOrClosed)
{
    for (Sink const sink : {Sink::full, Sink::closed}) {
        auto const run = run_with({sink, sink}, [] {
            errno = 0;
            line(std::cerr) << "a";
            line(std::cout) << "a";
            report(std::cerr.rdstate() == ios_base::badbit && std::cout.rdstate() == ios_base::badbit ? "bad" : "?");
            report(errno == 0 ? "" : " errno");
        });
        EXPECT_EQ(run.report, "bad");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(LineThatFails, ThrowsAtEndAndNotWhenDestroyed)
{
    auto const run = run_with({Sink::full, Sink::full}, [] {
        std::cerr.exceptions(ios_base::badbit);
        line(std::cerr) << "destroyed";
        report(std::cerr.bad() ? "bad " : "good ");
        std::cerr.exceptions(ios_base::goodbit);
        std::cerr.clear();
        std::cerr.exceptions(ios_base::badbit);
        line named(std::cerr);
        named << "ended";
        try {
            named.end();
        } catch (ios_base::failure const&) {
            report("thrown ");
        }
        report(std::cerr.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad thrown bad");
    EXPECT_EQ(run.status, 0);
}

TEST(LineThatFails, SetsBadbitWhereABufferTakesTooLittle)
{
    SmallBuffer small(3);
    std::ostream os(&small);
    line(os) << "abc"
             << "d";
    EXPECT_EQ(small.text(), "abc");
    EXPECT_EQ(os.rdstate(), ios_base::badbit);
}

TEST(LineThatFails, SetsBadbitWhereABufferCannotFlush)
{
    Journal journal;
    journal.fails_to_flush = true;
    std::ostream os(&journal);
    line(os) << "a";
    EXPECT_TRUE(os.good());
    line(os) << "b" << std::flush;
    EXPECT_EQ(journal.text, "[a][b]/");
    EXPECT_EQ(os.rdstate(), ios_base::badbit);
}

TEST(LineThatFails, SetsBadbitWhereWhatCameBeforeCannotBeWritten)
{
    auto const run = run_with({Sink::full, Sink::pipe}, [] {
        std::printf("lost");
        line(std::cout) << "";
        report(std::cout.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
}

TEST(LineThatFails, PassesOnWhatABufferThrowsIfTheMaskSaysSo)
{
    Journal journal;
    journal.throws = true;
    std::ostream os(&journal);
    {
        line named(os);
        named << "a";
        EXPECT_NO_THROW(named.end());
    }
    EXPECT_EQ(os.rdstate(), ios_base::badbit);

    os.clear();
    os.exceptions(ios_base::badbit);
    line named(os);
    named << "a";
    EXPECT_THROW(named.end(), BufferFault);
    EXPECT_EQ(os.rdstate(), ios_base::badbit);
    EXPECT_EQ(os.rdbuf(), &journal);
}

TEST(LineThatFails, IsWrittenThoughTheTiedStreamFails)
{
    std::ostream tied(nullptr);
    tied.clear(ios_base::badbit);
    Journal refusing;
    refusing.throws_at_flush = true;
    tied.rdbuf(&refusing);
    tied.exceptions(ios_base::badbit);
    Journaled os;
    os.tie(&tied);
    line named(os);
    named << "a";
    EXPECT_NO_THROW(named.end());
    EXPECT_EQ(os.journal.text, "[a]");
    EXPECT_TRUE(tied.bad());
    EXPECT_TRUE(os.good());
}

TEST(LineThatFails, MakesTheStreamBadWhereNobodyReads)
{
    auto const run = on_pipe([] {
        std::signal(SIGPIPE, SIG_IGN);
        write_errors_to_nobody();
        line(std::cerr) << "a";
        report(std::cerr.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
    EXPECT_EQ(run.status, 0);
}

TEST(LineThatFails, DiesOfSigpipeAsAnInsertionDoes)
{
    auto const run = on_pipe([] {
        write_errors_to_nobody();
        line(std::cerr) << "a";
    });
    EXPECT_EQ(run.signal, SIGPIPE);
}

TEST(Line, KeepsErrno)
{
    on_err([] {
        errno = ERANGE;
        line(std::cerr) << "a";
        EXPECT_EQ(errno, ERANGE);
        std::cerr << hide_cursor; // asks whether a socket is a terminal
        EXPECT_EQ(errno, ERANGE);
        hidden_cursor const hidden(std::cerr);
        EXPECT_EQ(errno, ERANGE);
    });
}

std::string const long_text = [] {
    std::string text;
    for (int i = 0; text.size() < 1'000'000; ++i) {
        text += std::to_string(i) + ' ';
    }
    return text;
}();

// The bytes that arrive in the pipe until it has no writer, or those that are wanted.
std::string read_all(int pipe_end, std::size_t wanted = SIZE_MAX)
{
    std::string all;
    std::array<char, 65536> piece;
    for (ssize_t n = 1; n > 0 && all.size() < wanted;) {
        n = read(pipe_end, piece.data(), std::min(piece.size(), wanted - all.size()));
        all.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    }
    return all;
}

TEST(SlowDescriptor, ThatDoesNotBlockIsWaitedFor)
{
    auto const run = on_pipe([] {
        Pipe to;
        fcntl(to.in->number, F_SETFL, O_NONBLOCK);
        write_errors_to(to);
        std::string all;
        std::thread reader([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20)); // the pipe is full by then
            all = read_all(to.out->number);
        });
        line(std::cerr) << long_text;
        close(STDERR_FILENO);
        reader.join();
        report(std::cerr.good() ? "good " : "bad ");
        report(all == long_text ? "whole" : "cut");
    });
    EXPECT_EQ(run.report, "good whole");
}

extern "C" void ignore(int) {}

TEST(SlowDescriptor, MayBeInterruptedBySignals)
{
    auto const run = on_pipe([] {
        struct sigaction action = {};
        action.sa_handler = ignore; // without SA_RESTART
        sigaction(SIGALRM, &action, nullptr);
        itimerval const often = {.it_interval = {.tv_sec = 0, .tv_usec = 100},
                                 .it_value = {.tv_sec = 0, .tv_usec = 100}};
        setitimer(ITIMER_REAL, &often, nullptr);
        for (int i = 0; i < 20; ++i) {
            line(std::cerr) << long_text;
        }
        report(std::cerr.good() ? "good" : "bad");
    });
    EXPECT_EQ(run.report, "good");
    std::string expected;
    for (int i = 0; i < 20; ++i) {
        expected += long_text;
    }
    EXPECT_TRUE(run.err == expected);
}

TEST(SlowDescriptor, KeepsALineWholeWhoseThreadIsCancelled)
{
    auto const run = on_pipe([] {
        Pipe to;
        write_errors_to(to);
        std::thread writer([] { line(std::cerr) << long_text; });
        std::string const begun = read_all(to.out->number, 1); // the line is on its way
        pthread_cancel(writer.native_handle());
        std::string const all = begun + read_all(to.out->number, long_text.size() - 1);
        writer.join();
        report(all == long_text ? "whole" : "cut");
    });
    EXPECT_EQ(run.report, "whole");
    EXPECT_EQ(run.status, 0);
}

char const* log_to(std::ostream& os)
{
    line(os) << "inner" << 1 << '\n';
    return "after";
}

TEST(LineInALine, IsWrittenFirst)
{
    EXPECT_EQ(on_err([] { line(std::cerr) << "before " << log_to(std::cerr) << '\n'; }),
              R"([inner1\n][before after\n])");
    EXPECT_EQ(on_err([] { line(std::cerr) << "before " << log_to(std::clog) << '\n'; }),
              R"([inner1\n][before after\n])");
    EXPECT_EQ(journaled([](std::ostream& os) { line(os) << "before " << log_to(os); }), R"([inner1\n][before after])");
}

TEST(LineInALine, OfTheSameExpressionLastsAsLong)
{
    EXPECT_EQ(on_err([] { line(std::cerr) << "1" << (line(std::cerr) << "2", "3"); }), "[23][1]");
    EXPECT_EQ(on_err([] { line(std::cerr) << "1" << (line(std::clog) << "2", "3"); }), "[2][13]");
}

TEST(LineInALine, MayGoToTheOtherStream)
{
    std::string out;
    std::string const err = on_err(
        [&] { out = on_out([] { line(std::cerr) << "a " << log_to(std::cout) << (line(std::cout) << "b", " c"); }); });
    EXPECT_EQ(out, R"([inner1\n][b])");
    EXPECT_EQ(err, "[a after c]");
}

TEST(LineInALine, IsOneWriteAtAnyLength)
{
    std::string const text(100'001, 'x');
    EXPECT_EQ(on_out([&] {
                  line outer(std::cout);
                  outer << "outer";
                  line(std::cout) << text << 1;
              }),
              '[' + text + "1][outer]");
}

TEST(LineInALine, FlushesWhatIsTiedToTheStream)
{
    Journaled tied;
    Journaled os;
    os.tie(&tied);
    {
        line outer(os);
        line(os) << "inner";
        EXPECT_EQ(tied.journal.text, "/");
        EXPECT_EQ(os.tie(), nullptr);
    }
    EXPECT_EQ(tied.journal.text, "//");
    EXPECT_EQ(os.tie(), &tied);
}

TEST(LineInALine, IsFlushedWhereTheStreamIsUnbuffered)
{
    Journaled os;
    os << std::unitbuf;
    {
        line outer(os);
        os << "outer";
        line(os) << "inner";
        EXPECT_EQ(os.journal.text, "[inner]/");
    }
    EXPECT_EQ(os.journal.text, "[inner]/[outer]/");
    EXPECT_TRUE(os.flags() & ios_base::unitbuf);
}

TEST(LineInALine, MayEndAfterIt)
{
    Journaled tied;
    Journaled os;
    os.tie(&tied);
    os << std::unitbuf;
    auto first = std::make_unique<line>(os);
    os << "1";
    auto second = std::make_unique<line>(os);
    os << "2";
    auto third = std::make_unique<line>(os);
    os << "3";
    second.reset();
    EXPECT_EQ(os.journal.text, "[2]/");
    first.reset();
    EXPECT_EQ(os.journal.text, "[2]/[1]/");
    os << "4";
    EXPECT_EQ(os.tie(), nullptr);
    third.reset();
    EXPECT_EQ(os.journal.text, "[2]/[1]/[34]/");
    EXPECT_EQ(os.rdbuf(), &os.journal);
    EXPECT_EQ(os.tie(), &tied);
    EXPECT_TRUE(os.flags() & ios_base::unitbuf);
}

TEST(EndOfAProgram, InALineWritesWhatItHolds)
{
    auto const run = on_pipe([] {
        line outer(std::cout);
        outer << "outer";
        line(std::cerr) << "accepted" << (std::exit(3), "not reached");
    });
    EXPECT_EQ(run.out, "outer");
    EXPECT_EQ(run.err, "accepted");
    EXPECT_EQ(run.status, 3);
}

struct SpeaksLast {
    ~SpeaksLast()
    {
        if (speaks) {
            line(std::cerr) << "last" << 1;
        }
    }
    bool speaks = false;
} speaks_last;

TEST(EndOfAProgram, MayStillWriteLines)
{
    auto const run = on_pipe([] {
        speaks_last.speaks = true;
        static SpeaksLast later;
        later.speaks = true;
        std::exit(0);
    });
    EXPECT_EQ(run.err, "last1last1");
}

TEST(EndOfAProgram, WaitsForNoOtherThreadsLine)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "std::exit flushes the standard streams, which races with any thread that still inserts";
#endif
    auto const run = on_pipe([] {
        Pipe begun;
        std::thread([&begun] {
            line lost(std::cerr);
            lost << "lost";
            begun.in.reset();
            pause();
        }).detach();
        read_all(begun.out->number); // until it has the lock
        std::exit(4);
    });
    EXPECT_EQ(run.status, 4);
    EXPECT_EQ(run.err, "");
}

TEST(Fork, FindsNoLineOfAnotherThread)
{
    auto const run = on_pipe([] {
        std::atomic<bool> done = false;
        std::thread busy([&] {
            while (!done) {
                line(std::cout) << "line" << 1 << '\n';
            }
        });
        for (int i = 0; i < 20; ++i) {
            pid_t const child = fork();
            if (child == 0) {
                alarm(10);
                line(std::cout) << "child" << 2 << '\n';
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            report(WIFEXITED(status) ? "." : "stuck ");
        }
        done = true;
        busy.join();
    });
    EXPECT_EQ(run.report, "....................");
    std::istringstream in(run.out);
    int children = 0;
    for (std::string text; std::getline(in, text);) {
        children += text == "child2" ? 1 : 0;
        EXPECT_TRUE(text == "line1" || text == "child2") << readable(text);
    }
    EXPECT_EQ(children, 20);
}

TEST(Fork, LeavesWhatIsComposedToTheParent)
{
    auto const run = on_pipe([] {
        line named(std::cerr);
        named << "composed ";
        pid_t const child = fork();
        if (child == 0) {
            named << "child ";
            std::exit(0);
        }
        waitpid(child, nullptr, 0);
        named << "parent";
    });
    EXPECT_EQ(run.err, "child composed parent");
}

void on_all_streams()
{
    setenv("TERM", "xterm", 1);
    std::cout << hide_cursor << "out" << show_cursor;
    std::cerr << hide_cursor << "err";
    std::clog << "log" << show_cursor;
}

TEST(Cursor, HidesAndShowsOnTerminals)
{
    auto const run = on_terminal(on_all_streams);
    EXPECT_EQ(readable(run.out), R"(\e[?25lout\e[?25h)");
    EXPECT_EQ(readable(run.err), R"(\e[?25lerrlog\e[?25h)");
    EXPECT_TRUE(Screen(run.out).cursor_visible());
    EXPECT_FALSE(Screen("\x1b[?25l").cursor_visible());
}

TEST(Cursor, IsLeftAloneElsewhere)
{
    auto const run = run_with({Sink::pipe, Sink::terminal}, on_all_streams);
    EXPECT_EQ(run.out, "out");
    EXPECT_EQ(readable(run.err), R"(\e[?25lerrlog\e[?25h)");

    auto const other = on_xterm([] {
        std::ostringstream text;
        text << hide_cursor << "x" << show_cursor;
        std::ostream second(std::cout.rdbuf());
        second << hide_cursor << "y" << show_cursor;
        std::stringbuf redirected;
        WithBuffer const with(std::cout, &redirected);
        std::cout << hide_cursor << "z" << show_cursor;
        hidden_cursor const hidden(std::cout);
        report(text.str() + redirected.str());
    });
    EXPECT_EQ(other.report, "xz");
    EXPECT_EQ(readable(other.out), "y");
}

TEST(Cursor, IsLeftAloneOnTerminalsWithoutSequences)
{
    for (char const* term : {"dumb", "", static_cast<char const*>(nullptr)}) {
        auto const run = on_terminal([=] {
            if (term != nullptr) {
                setenv("TERM", term, 1);
            } else {
                unsetenv("TERM");
            }
            std::cout << hide_cursor << "x" << show_cursor;
            hidden_cursor const hidden(std::cerr);
        });
        EXPECT_EQ(run.out, "x");
        EXPECT_EQ(run.err, "");
    }
}

TEST(Cursor, IsPartOfALineAndKeepsAPendingWidth)
{
    auto const run = on_xterm([] {
        line(std::cout) << "a" << hide_cursor << "b";
        std::cout << std::setw(3) << hide_cursor << 1 << show_cursor;
    });
    EXPECT_EQ(readable(run.out), R"(a\e[?25lb\e[?25l  1\e[?25h)");
}

TEST(HiddenCursor, ComesBackAtTheEndOfTheScope)
{
    auto const run = on_xterm([] {
        try {
            std::cout << "a";
            hidden_cursor const hidden(std::cout);
            std::cout << "b";
            throw std::runtime_error("c");
        } catch (std::runtime_error const& e) {
            std::cout << e.what();
        }
    });
    EXPECT_EQ(readable(run.out), R"(a\e[?25lb\e[?25hc)");
}

TEST(HiddenCursor, ComesBackThoughTheStreamHasFailed)
{
    auto const run = on_xterm([] {
        hidden_cursor const hidden(std::cout);
        std::cout.setstate(ios_base::badbit);
    });
    EXPECT_EQ(readable(run.out), R"(\e[?25l\e[?25h)");
}

TEST(HiddenCursor, ComesBackWithTheLastOnItsDescriptor)
{
    auto const run = on_xterm([] {
        hidden_cursor const on_cout(std::cout);
        auto first = std::make_optional<hidden_cursor>(std::cerr);
        auto second = std::make_optional<hidden_cursor>(std::clog);
        first.reset();
        std::cerr << "still hidden";
        second.reset();
        hidden_cursor const third(std::cerr);
    });
    EXPECT_EQ(readable(run.out), R"(\e[?25l\e[?25h)");
    EXPECT_EQ(readable(run.err), R"(\e[?25lstill hidden\e[?25h\e[?25l\e[?25h)");
}

TEST(HiddenCursor, ComesBackWhenTheProgramExits)
{
    auto const run = on_xterm([] {
        hidden_cursor const hidden(std::cerr);
        std::exit(5);
    });
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(readable(run.err), R"(\e[?25l\e[?25h)");
    EXPECT_EQ(run.status, 5);
}

TEST(HiddenCursor, BelongsToTheParent)
{
    auto const run = on_xterm([] {
        std::optional<hidden_cursor> hidden(std::cerr);
        pid_t const child = fork();
        if (child == 0) {
            hidden.reset();
            std::cerr << "child";
            hidden.emplace(std::cerr);
            hidden.reset();
            hidden.emplace(std::cerr);
            hidden.reset();
            std::exit(0);
        }
        waitpid(child, nullptr, 0);
        std::cerr << "parent";
    });
    EXPECT_EQ(readable(run.err), R"(\e[?25lchild\e[?25l\e[?25h\e[?25l\e[?25hparent\e[?25h)");
}

} // namespace
