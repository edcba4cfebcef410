// copy: copies a file and shows how far it is, as a good citizen of the terminal.
//
//     copy SOURCE TARGET
//
// On a terminal, standard error shows a status line and a percentage: fitted to the terminal's width
// whenever it changes, drawn at most 20 times a second, wiped at the end, and wiped with the cursor
// back in sight if a signal ends or stops the program. Redirected, standard error gets a line for each
// tenth. Standard output is left alone. A source without a size, such as a pipe, is copied in silence.
//
// The exit status is 0 if the file was copied, 1 if it was not, and 2 for a wrong command line.
#include <kestry/hueline_stream.hpp>

#include <kestry/kit/policy.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using namespace kestry::Hueline;
using namespace kestry::kit;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

std::string_view constexpr hide_cursor = "\x1b[?25l";         // DECTCEM; csi::hide writes what few terminals know
std::string_view constexpr tidy = "\r\x1b[K\x1b[0m\x1b[?25h"; // an empty line, plain text, a visible cursor

// A signal handler may call write(2), but no stream. A terminal that takes no more cannot be helped.
void write_at_once(std::string_view bytes)
{
    [[maybe_unused]] ssize_t const written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
}

extern "C" void tidy_and_raise(int signal);

void tidy_on(int signal)
{
    struct sigaction action = {};
    action.sa_handler = tidy_and_raise;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    ::sigaction(signal, &action, nullptr);
}

// The signal has its default action again, so raising it does what the sender wanted. A program that was
// stopped comes back from there when it goes on, and is to be as tidy the next time.
extern "C" void tidy_and_raise(int signal)
{
    int const before = errno;
    write_at_once(tidy);
    std::raise(signal);
    tidy_on(signal);
    write_at_once(hide_cursor);
    errno = before;
}

void tidy_on_signals()
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) { // nohup(1) wants it so
            tidy_on(signal);
        }
    }
}

// Columns of the terminal on standard error. Some, a serial line for one, do not know.
int columns()
{
    winsize size = {};
    bool const known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return known ? size.ws_col : 80;
}

class Progress {
public:
    explicit Progress(std::uintmax_t bytes_in_all,
                      color_environment const& surroundings = color_environment::of_process())
        : size(bytes_in_all), on_terminal(surroundings.err_is_terminal && surroundings.term != "dumb"),
          in_colour(color_policy({}, surroundings).err())
    {
        if (on_terminal) {
            tidy_on_signals();
            std::cerr << colorize << hide_cursor; // csi::el asks for colorize
        }
    }
    ~Progress()
    {
        if (on_terminal) {
            write_at_once(tidy);
        }
    }
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    void show(std::uintmax_t bytes_done)
    {
        if (size == 0) {
            return;
        }
        double const part = std::min(static_cast<double>(bytes_done) / static_cast<double>(size), 1.0);
        if (on_terminal) {
            show_frame(part);
        } else {
            show_tenth(static_cast<int>(part * 10));
        }
    }

private:
    void show_frame(double part)
    {
        Clock::time_point const now = Clock::now();
        if (now - last_frame < 50ms) {
            return;
        }
        last_frame = now;

        // The last column stays free: a terminal may go to the next line after it.
        int const cells = columns() - 1 - static_cast<int>(std::string_view("[] 100%").size());
        int constexpr steps = 1000;
        std::cerr << csi::cr;
        if (cells > 0) {
            std::string const start = (in_colour ? csi::color(32) : "") + '[';
            std::string const end = ']' + (in_colour ? csi::color(0) : "");
            std::cerr << status_line{static_cast<int>(part * cells), 0, cells, done, ".", start, end, "|/-\\", ""};
        }
        std::cerr << progress_meter{static_cast<int>(part * steps), 0, steps, no_label, "", "", ""}
                  << csi::el{0}; // the terminal may have been wider for the frame before
    }

    void show_tenth(int tenth)
    {
        if (tenth > last_tenth) {
            last_tenth = tenth;
            std::cerr << progress_meter{tenth, 0, 10, label, "", "\n", ""};
        }
    }

    // The indicators refer to these.
    std::string const done = "#";
    std::string const label = "copied";
    std::string const no_label;

    std::uintmax_t const size;
    bool const on_terminal;
    bool const in_colour;
    Clock::time_point last_frame = {};
    int last_tenth = 0;
};

// Returns what went wrong, or nothing.
std::string copy(std::filesystem::path const& source, std::filesystem::path const& target)
{
    std::error_code error; // a pipe has no size, a target that does not exist yet is no other file
    if (std::filesystem::equivalent(source, target, error)) {
        return "source and target are the same file";
    }
    std::uintmax_t const size = std::filesystem::file_size(source, error);
    std::ifstream input(source, std::ios_base::binary);
    if (!input) {
        return "cannot open the source";
    }
    std::ofstream output(target, std::ios_base::binary);
    if (!output) {
        return "cannot open the target";
    }

    Progress progress(error ? 0 : size);
    std::uintmax_t copied = 0;
    std::vector<char> buffer(65536);
    do {
        input.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        output.write(buffer.data(), input.gcount());
        copied += static_cast<std::uintmax_t>(input.gcount());
        progress.show(copied);
    } while (input && output);

    output.close(); // some file systems say only here that they are full
    if (!output) {
        return "cannot write the target";
    }
    return input.eof() ? "" : "cannot read the source";
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 3) {
        std::cerr << "usage: copy SOURCE TARGET\n";
        return 2;
    }
    std::string const problem = copy(argv[1], argv[2]);
    if (!problem.empty()) {
        std::cerr << "copy: " << problem << '\n';
        return 1;
    }
}
