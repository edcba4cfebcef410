#include "support/process.hpp"
#include "support/readable.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#ifdef HUELINE_COVERAGE
extern "C" void __gcov_dump();
#endif

namespace hueline::test {

namespace {

using Clock = std::chrono::steady_clock;

int constexpr status_of_exception = 99;
int constexpr status_of_no_program = 127; // as the shell has it

// Open in a child only.
int report_descriptor = -1;
int question_descriptor = -1;

int checked(int result, char const* call)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), call);
    }
    return result;
}

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int opened) : number(opened) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() { close(); }

    bool is_open() const { return number >= 0; }
    int get() const { return number; }
    int release() { return std::exchange(number, -1); }
    void close()
    {
        if (is_open()) {
            ::close(release());
        }
    }

private:
    int number = -1;
};

// Both ends of what a child writes to, and what came out of it. An end that the sink does not have
// is not open.
struct Channel {
    Descriptor parent_end = {};
    Descriptor child_end = {};
    std::string bytes = {};
    bool at_end = false;
    std::size_t awaited = 0; // how many of the bytes the child has waited for
};

Channel open_pipe()
{
    std::array<int, 2> ends;
    checked(pipe(ends.data()), "pipe");
    return {.parent_end = Descriptor(ends[0]), .child_end = Descriptor(ends[1])};
}

// Each question is one message: the digit of a descriptor, and the bytes that shall have arrived there.
Channel open_questions()
{
    std::array<int, 2> ends;
    checked(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), "socketpair");
    return {.parent_end = Descriptor(ends[0]), .child_end = Descriptor(ends[1])};
}

Channel open_terminal()
{
    int master = -1;
    int slave = -1;
    winsize size = {.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
    checked(openpty(&master, &slave, nullptr, nullptr, &size), "openpty");
    Channel channel = {.parent_end = Descriptor(master), .child_end = Descriptor(slave)};
    termios raw = {};
    checked(tcgetattr(slave, &raw), "tcgetattr");
    cfmakeraw(&raw);
    checked(tcsetattr(slave, TCSANOW, &raw), "tcsetattr");
    return channel;
}

Descriptor open_file(std::string_view contents)
{
    Descriptor file(checked(memfd_create("hueline-test", 0), "memfd_create"));
    for (std::size_t done = 0; done < contents.size();) {
        ssize_t const n = pwrite(file.get(), contents.data() + done, contents.size() - done, static_cast<off_t>(done));
        done += static_cast<std::size_t>(checked(static_cast<int>(n), "pwrite"));
    }
    return file;
}

Channel open_sink(Sink sink)
{
    switch (sink) {
    case Sink::terminal:
        return open_terminal();
    case Sink::pipe:
        return open_pipe();
    case Sink::file:
        return {.child_end = open_file("")};
    case Sink::full:
        return {.child_end = Descriptor(checked(open("/dev/full", O_WRONLY), "/dev/full"))};
    case Sink::closed:
        break;
    }
    return {};
}

// Takes what has arrived, up to the end, which a terminal shows as EIO. The parent's end stays open: to
// close that of a terminal would hang up on a child that has closed its own end and goes on.
void receive(Channel& channel)
{
    std::array<char, 65536> buffer;
    ssize_t const n = read(channel.parent_end.get(), buffer.data(), buffer.size());
    if (n > 0) {
        channel.bytes.append(buffer.data(), static_cast<std::size_t>(n));
    } else if (n == 0 || errno != EINTR) {
        channel.at_end = true;
    }
}

std::string contents_of(Descriptor const& file)
{
    std::string contents;
    std::array<char, 65536> buffer;
    ssize_t n = 0;
    while ((n = pread(file.get(), buffer.data(), buffer.size(), static_cast<off_t>(contents.size()))) > 0) {
        contents.append(buffer.data(), static_cast<std::size_t>(n));
    }
    return contents;
}

// A child that is killed, with its process group, unless it has been waited for.
class Child {
public:
    explicit Child(pid_t forked) : pid(forked) {}
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;
    ~Child()
    {
        if (pid > 0) {
            kill(-pid, SIGKILL);
            kill(pid, SIGKILL); // it may not have come to setsid
            wait();
        }
    }

    void send(int signal) const { kill(pid, signal); }

    int wait()
    {
        int state = 0;
        while (waitpid(pid, &state, 0) < 0 && errno == EINTR) {
        }
        pid = -1;
        return state;
    }

private:
    pid_t pid;
};

void connect(Channel const& channel, int standard_descriptor)
{
    if (channel.child_end.is_open()) {
        dup2(channel.child_end.get(), standard_descriptor);
    } else {
        close(standard_descriptor);
    }
}

// What the test runner ignores or blocks is its own affair.
void restore_signals()
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM}) {
        std::signal(signal, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

struct Channels {
    Channel out;
    Channel err;
    Channel reported;
    Channel questions;

    std::array<Channel*, 4> all() { return {&out, &err, &reported, &questions}; }
};

// Nothing that is thrown here may reach the caller, which would then run twice.
[[noreturn]] void be_child(Channels& channels, Descriptor& input, std::function<int()> const& work) noexcept
{
    setsid();
    for (Channel const* channel : {&channels.out, &channels.err}) {
        if (channel->child_end.is_open()) {
            ioctl(channel->child_end.get(), TIOCSCTTY, 0); // refused if it is no terminal, or the second one
        }
    }
    dup2(input.get(), STDIN_FILENO);
    input.close();
    connect(channels.out, STDOUT_FILENO);
    connect(channels.err, STDERR_FILENO);
    report_descriptor = channels.reported.child_end.release();
    question_descriptor = channels.questions.child_end.release();
    for (Channel* channel : channels.all()) {
        channel->parent_end.close();
        channel->child_end.close();
    }
    restore_signals();
    int const status = work();
#ifdef HUELINE_COVERAGE
    __gcov_dump();
#endif
    _exit(status);
}

// As much as a message can hold of what a child has written.
std::string end_of(std::string_view bytes)
{
    std::size_t constexpr enough = 2000;
    return readable(bytes.substr(bytes.size() - std::min(bytes.size(), enough)));
}

// Waits for bytes and takes them; false once all channels have come to their end.
bool await(Channels& channels, Clock::time_point deadline)
{
    std::array<pollfd, 4> ready = {};
    bool open = false;
    for (std::size_t i = 0; i < ready.size(); ++i) {
        Channel const& channel = *channels.all()[i];
        bool const waits = channel.parent_end.is_open() && !channel.at_end;
        ready[i] = {.fd = waits ? channel.parent_end.get() : -1, .events = POLLIN, .revents = 0}; // poll skips -1
        open = open || waits;
    }
    if (!open) {
        return false;
    }
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) {
        throw std::runtime_error("the child did not end; standard output: " + end_of(channels.out.bytes) +
                                 " standard error: " + end_of(channels.err.bytes) +
                                 " report: " + end_of(channels.reported.bytes));
    }
    poll(ready.data(), ready.size(), static_cast<int>(left));
    for (std::size_t i = 0; i < ready.size(); ++i) {
        if (ready[i].revents != 0) {
            receive(*channels.all()[i]);
        }
    }
    return true;
}

void answer(Channels& channels)
{
    std::string& question = channels.questions.bytes;
    if (question.empty()) {
        return;
    }
    Channel& asked = question[0] == '1' ? channels.out : channels.err;
    std::string_view const wanted = std::string_view(question).substr(1);
    std::size_t const found = asked.bytes.find(wanted, asked.awaited);
    if (found != std::string::npos) {
        asked.awaited = found + wanted.size();
        send(channels.questions.parent_end.get(), "y", 1, MSG_NOSIGNAL);
        question.clear();
    }
}

// Forks; the child ends with the status that work returns.
Outcome run(Sinks sinks, Launch const& launch, std::function<int()> const& work)
{
    Descriptor input = open_file(launch.input);
    Channels channels = {.out = open_sink(sinks.out),
                         .err = open_sink(sinks.err),
                         .reported = open_pipe(),
                         .questions = open_questions()};
    Channel& out = channels.out;

    std::fflush(nullptr); // the child would write it too
    pid_t const pid = checked(fork(), "fork");
    if (pid == 0) {
        be_child(channels, input, work);
    }
    Child child(pid);
    for (Channel* channel : channels.all()) {
        if (channel->parent_end.is_open()) {
            channel->child_end.close(); // else there would be no end to read
        }
    }

    auto const deadline = Clock::now() + launch.time_allowed;
    int interrupts_left = launch.interrupt ? launch.interrupt->times : 0;
    std::size_t searched = 0;
    while (await(channels, deadline)) {
        if (interrupts_left > 0 && out.bytes.find(launch.interrupt->after, searched) != std::string::npos) {
            child.send(launch.interrupt->signal);
            --interrupts_left;
            searched = out.bytes.size();
        }
        answer(channels);
    }

    int const state = child.wait();
    Outcome outcome;
    outcome.out = sinks.out == Sink::file ? contents_of(out.child_end) : out.bytes;
    outcome.err = sinks.err == Sink::file ? contents_of(channels.err.child_end) : channels.err.bytes;
    outcome.report = channels.reported.bytes;
    outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    outcome.signal = WIFSIGNALED(state) ? WTERMSIG(state) : 0;
    return outcome;
}

int run_body(std::function<void()> const& body)
{
    try {
        body();
        std::cout.flush();
        std::clog.flush();
        std::fflush(nullptr);
        return 0;
    } catch (std::exception const& e) {
        report(e.what());
    } catch (char const* text) {
        report(text);
    } catch (...) {
        report("an exception of unknown type");
    }
    return status_of_exception;
}

int become_program(std::vector<std::string> argv, std::vector<std::string> const& environment)
{
    change_environment(environment);
    execvp(argv.at(0).c_str(), pointers_to(argv).data());
    report("cannot run " + argv.at(0) + ": " + std::strerror(errno));
    return status_of_no_program;
}

} // namespace

Outcome run_with(Sinks sinks, std::function<void()> const& body)
{
    return run(sinks, {}, [&] { return run_body(body); });
}

Outcome on_terminal(std::function<void()> const& body) { return run_with(on_terminals, body); }

Outcome on_pipe(std::function<void()> const& body) { return run_with(on_pipes, body); }

void report(std::string_view text)
{
    while (!text.empty()) {
        ssize_t const n = write(report_descriptor, text.data(), text.size());
        if (n < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "report");
        }
        text.remove_prefix(static_cast<std::size_t>(n < 0 ? 0 : n));
    }
}

void await_output(int descriptor, std::string_view bytes)
{
    std::string const question = std::to_string(descriptor) + std::string(bytes);
    checked(static_cast<int>(send(question_descriptor, question.data(), question.size(), MSG_NOSIGNAL)), "send");
    char yes = 0;
    while (recv(question_descriptor, &yes, 1, 0) < 0 && errno == EINTR) {
    }
}

void change_environment(std::vector<std::string> const& changes)
{
    for (std::string const& change : changes) {
        putenv(const_cast<char*>(change.c_str())); // removes a name without "="
    }
}

void forbid_cores()
{
    rlimit const none = {0, 0};
    checked(setrlimit(RLIMIT_CORE, &none), "setrlimit");
}

std::vector<char*> pointers_to(std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

Outcome run_program(Sinks sinks, std::vector<std::string> const& argv, Launch const& launch)
{
    return run(sinks, launch, [&] { return become_program(argv, launch.environment); });
}

} // namespace hueline::test
