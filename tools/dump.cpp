#include "kestry/hueline_stream.hpp"

#include "console.hpp"
#include "dump.hpp"

#include <kestry/kit/hexview.hpp>
#include <kestry/kit/policy.hpp>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace demo {

namespace {

using namespace kestry::Hueline;
namespace kit = kestry::kit;

std::size_t constexpr bytes_per_line = 16;
std::size_t constexpr characters_per_line = 3 * bytes_per_line; // two digits and a separator each
std::size_t constexpr bytes_per_read = 64 * 1024;               // with its dump, what a cache holds
std::uint64_t constexpr mebibyte = 1024 * 1024;

// What there is to read from here on, if the file knows.
std::optional<std::uint64_t> bytes_ahead(int file)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    off_t const position = ::lseek(file, 0, SEEK_CUR); // standard input may have been read from before
    return static_cast<std::uint64_t>(std::max<off_t>(status.st_size - position, 0));
}

// The line on standard error that shows how far a large dump is.
class Progress {
public:
    explicit Progress(std::optional<std::uint64_t> bytes_in_all)
        : size(bytes_in_all), wanted(may_be_wiped() && !_getNoFrillsMode())
    {}
    ~Progress() { wipe(); }
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    // One frame a mebibyte is enough for the eye, and costs nothing.
    void show(std::uint64_t bytes_done)
    {
        std::uint64_t const frame = bytes_done / mebibyte;
        bool const is_large = size.value_or(bytes_done) > mebibyte;
        if (!wanted || !is_large || (stands && frame == last_frame)) {
            return;
        }
        stands = true;
        progress_line_stands(true);
        last_frame = frame;
        draw(bytes_done);
    }

    void wipe()
    {
        if (stands) {
            std::cerr << csi::cr << csi::el{0};
            progress_line_stands(false);
            stands = false;
        }
    }

private:
    // Wiping asks the gate, and the gate asks for a terminal that is to have colour.
    static bool may_be_wiped()
    {
        return ::isatty(STDERR_FILENO) != 0 && kestry::kit::depth_of(std::cerr) != kestry::kit::color_depth::none;
    }

    void draw(std::uint64_t bytes_done) const
    {
        std::cerr << csi::cr;
        if (!size) {
            std::cerr << spinner{frames, "dumped " + std::to_string(bytes_done / mebibyte) + " MiB "};
            return;
        }
        // The file may have grown since it was opened.
        double const part = std::min(static_cast<double>(bytes_done) / static_cast<double>(*size), 1.0);
        int constexpr cells = 30;
        int constexpr steps = 1'000'000; // fine enough for every percent, and an int
        std::string const rest = " of " + std::to_string(*size / mebibyte) + " MiB";
        std::cerr << status_line{static_cast<int>(part * cells), 0, cells, "#", ".", "[", "]", frames, ""}
                  << progress_meter{static_cast<int>(part * steps), 0, steps, "dumped", " ", rest, ""};
    }

    std::string const frames = "|/-\\";
    std::optional<std::uint64_t> const size;
    bool const wanted;
    bool stands = false;
    std::uint64_t last_frame = 0;
};

// The dump ends each byte with a blank; the one at the end of a line becomes the line end.
void write_lines(std::vector<unsigned char> const& bytes)
{
    if (bytes.empty()) {
        return;
    }
    std::string text = HexDump::raw_data(bytes);
    for (std::size_t end = characters_per_line; end < text.size(); end += characters_per_line) {
        text[end - 1] = '\n';
    }
    text.back() = '\n';
    std::cout.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
}

// Writes the lines of bytes that come piece by piece, each as soon as it is full. No bytes are the end.
class Lines {
public:
    void add(std::span<unsigned char const> bytes)
    {
        held.insert(held.end(), bytes.begin(), bytes.end());
        std::size_t const unfinished = bytes.empty() ? 0 : held.size() % bytes_per_line;
        std::vector<unsigned char> const rest(held.end() - static_cast<std::ptrdiff_t>(unfinished), held.end());
        held.resize(held.size() - unfinished);
        write_lines(held);
        held = rest;
    }

private:
    std::vector<unsigned char> held;
};

// The same, as hexdump -C writes them.
class CanonicalLines {
public:
    void add(std::span<unsigned char const> bytes)
    {
        if (bytes.empty()) {
            rows.finish();
        } else {
            rows.write(std::as_bytes(bytes));
        }
        std::cout.flush();
    }

private:
    kit::hex_writer rows{std::cout, {.layout = kit::hex_layout::hexdump_c, .colored = !_getNoFrillsMode()}};
};

// Dumps what there is to read. Returns 0, or why reading failed.
template <class Form>
int dump(int file, Form lines)
{
    Progress progress{bytes_ahead(file)};
    std::uint64_t bytes_done = 0;
    std::vector<unsigned char> bytes(bytes_per_read);
    for (;;) {
        ssize_t const result = ::read(file, bytes.data(), bytes.size());
        int const reason = result < 0 ? errno : 0;
        std::size_t const got = result < 0 ? 0 : static_cast<std::size_t>(result);
        if (output_is_terminal()) {
            progress.wipe(); // likely the same terminal
        }
        lines.add(std::span(bytes).first(got));
        if (got == 0) {
            return reason;
        }
        bytes_done += got;
        progress.show(bytes_done);
    }
}

int dump(int file, DumpForm form)
{
    return form == DumpForm::canonical ? dump(file, CanonicalLines{}) : dump(file, Lines{});
}

// Opens, dumps and closes. Returns 0, or why that failed.
int dump_named(std::string const& name, DumpForm form)
{
    int const file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return errno;
    }
    int const reason = dump(file, form);
    ::close(file);
    return reason;
}

bool dump_file(std::string const& name, DumpForm form)
{
    bool const is_input = name == "-";
    int const reason = is_input ? dump(STDIN_FILENO, form) : dump_named(name, form);
    if (reason != 0) {
        complain("cannot read " + (is_input ? "standard input" : quoted(name)) + ": " + std::strerror(reason));
    }
    return reason == 0;
}

} // namespace

bool dump_files(std::vector<std::string> const& files, DumpForm form)
{
    HexDump::_longDumps = true;
    if (files.empty()) {
        return dump_file("-", form);
    }
    bool all_read = true;
    for (std::string const& name : files) {
        all_read = dump_file(name, form) && all_read;
    }
    return all_read;
}

} // namespace demo
