#include "kestry/kit/line.hpp"

#include "output.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <mutex>
#include <new>
#include <typeinfo>

#ifdef __GLIBCXX__
#include <ext/stdio_filebuf.h>
#include <ext/stdio_sync_filebuf.h>
#endif

#include <pthread.h>
#include <unistd.h>

namespace kestry::kit::detail {

// The lock guards them, so they are all lines of one thread.
struct open_lines {
    static line* innermost;

    // The line that is the buffer of a stream now, or else a null pointer.
    static line* on(std::ostream const& os) noexcept
    {
        line* open = innermost;
        while (open != nullptr && &open->held != os.rdbuf()) {
            open = open->outer;
        }
        return open;
    }

    static std::streambuf* own_buffer(std::ostream const& os) noexcept
    {
        line const* const open = on(os);
        return open != nullptr ? open->target : os.rdbuf();
    }

    static void end_all() noexcept
    {
        while (innermost != nullptr) {
            innermost->finish();
        }
    }

    static void forget_all() noexcept
    {
        for (line* open = innermost; open != nullptr; open = open->outer) {
            open->held.forget();
        }
    }
};

constinit line* open_lines::innermost = nullptr;

} // namespace kestry::kit::detail

namespace kestry::kit {

using detail::no_cancellation;
using detail::open_lines;
using detail::output;
using detail::write_all;
using detail::write_line;

namespace {

class same_errno {
public:
    same_errno() noexcept = default;
    ~same_errno() { errno = before; }
    same_errno(same_errno const&) = delete;
    same_errno& operator=(same_errno const&) = delete;

private:
    int before = errno;
};

// std::ios::rdbuf(buffer) clears the state of the stream, and with it what the insertions have set.
class stream_buffer : public std::ios {
public:
    static void set(std::ios& stream, std::streambuf* buffer) { (stream.*&stream_buffer::set_rdbuf)(buffer); }
};

bool is_standard(std::ostream const& os) { return &os == &std::cout || &os == &std::cerr || &os == &std::clog; }

int if_standard(int descriptor) { return descriptor == STDOUT_FILENO || descriptor == STDERR_FILENO ? descriptor : -1; }

// In the middle of a line a stream has that line's buffer, which keeps what it holds: then its own is flushed.
void flush(std::ostream& os) noexcept
{
    try {
        if (open_lines::on(os) != nullptr) {
            open_lines::own_buffer(os)->pubsync();
        } else {
            os.flush();
        }
    } catch (...) { // the state of that stream tells
    }
}

// The descriptor that a buffer writes to, standard output or standard error, or else -1. A program may have given the
// stream another buffer, and std::ios::sync_with_stdio has two for each.
#ifdef __GLIBCXX__
int descriptor_of(std::streambuf& buffer)
{
    using with_stdio = __gnu_cxx::stdio_sync_filebuf<char>;
    using without_stdio = __gnu_cxx::stdio_filebuf<char>;
    if (typeid(buffer) == typeid(with_stdio)) {
        return if_standard(fileno(static_cast<with_stdio&>(buffer).file()));
    }
    if (typeid(buffer) == typeid(without_stdio)) {
        auto& file = static_cast<without_stdio&>(buffer);
        return file.is_open() ? if_standard(file.fd()) : -1;
    }
    return -1;
}
#else
std::streambuf const* const own_of_cout = std::cout.rdbuf();
std::streambuf const* const own_of_cerr = std::cerr.rdbuf();
std::streambuf const* const own_of_clog = std::clog.rdbuf();

int descriptor_of(std::streambuf& buffer)
{
    if (&buffer == own_of_cout) {
        return if_standard(fileno(stdout));
    }
    return &buffer == own_of_cerr || &buffer == own_of_clog ? if_standard(fileno(stderr)) : -1;
}
#endif

} // namespace

// ---------------------------------------------------------------------------------------------
// The text
// ---------------------------------------------------------------------------------------------

line::buffer::buffer(line& of) noexcept : owner(of) { setp(usual, usual + sizeof usual); }

line::buffer::~buffer() { delete[] longer; }

std::string_view line::buffer::text() const noexcept { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }

void line::buffer::forget() noexcept { setp(pbase(), epptr()); }

bool line::buffer::grow() noexcept
{
    auto const size = static_cast<std::size_t>(pptr() - pbase());
    std::size_t const capacity = size * 4;
    if (capacity > INT_MAX) { // pbump takes an int
        return false;
    }
    char* const larger = new (std::nothrow) char[capacity];
    if (larger == nullptr) {
        return false;
    }
    std::memcpy(larger, pbase(), size);
    delete[] longer;
    longer = larger;
    setp(larger, larger + capacity);
    pbump(static_cast<int>(size));
    return true;
}

line::buffer::int_type line::buffer::overflow(int_type c)
{
    if (!grow()) {
        bool const written = owner.put(text());
        forget();
        if (!written) {
            return traits_type::eof();
        }
    }
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
}

int line::buffer::sync()
{
    flush_asked = true;
    return 0;
}

void line::buffer::imbue(std::locale const& locale) { owner.target->pubimbue(locale); }

// ---------------------------------------------------------------------------------------------
// The line
// ---------------------------------------------------------------------------------------------

line::line(std::ostream& stream) noexcept : os(stream), held(*this)
{
    output.lock();
    outer = open_lines::innermost;
    is_standard = kit::is_standard(os);
    beneath = open_lines::on(os);
    open_lines::innermost = this;
    if (beneath != nullptr) {
        target = beneath->target;
        descriptor = beneath->descriptor;
        tied = beneath->tied;
        unbuffered = beneath->unbuffered;
    } else if (os.rdbuf() != nullptr) {
        target = os.rdbuf();
        descriptor = is_standard ? descriptor_of(*target) : -1;
        tied = os.tie(nullptr);
        unbuffered = (os.flags() & std::ios_base::unitbuf) != 0;
        os.unsetf(std::ios_base::unitbuf); // a flush after each insertion would take a sixth of the line's time
    } else {
        return; // without a buffer a stream accepts nothing
    }
    stream_buffer::set(os, &held);
}

line::~line() { finish(); }

void line::finish() noexcept
{
    try {
        end();
    } catch (...) { // the state of the stream tells
    }
}

void line::end()
{
    if (!is_open) {
        return;
    }
    is_open = false;
    same_errno const kept;
    std::lock_guard const locked(output, std::adopt_lock);
    give_back();

    bool written = false;
    std::exception_ptr thrown;
    try {
        written = put(held.text());
    } catch (...) {
        thrown = std::current_exception();
    }
    if (written) {
        return;
    }
    try {
        os.setstate(std::ios_base::badbit);
    } catch (std::ios_base::failure const&) {
        if (thrown != nullptr) {
            std::rethrow_exception(thrown);
        }
        throw;
    }
}

// Lines need not end in the order in which they began: the one that interrupts this one then interrupts the one beneath.
void line::give_back() noexcept
{
    line* interrupting = nullptr;
    line** open = &open_lines::innermost;
    for (; *open != this; open = &(*open)->outer) {
        if ((*open)->beneath == this) {
            interrupting = *open;
        }
    }
    *open = outer;

    if (interrupting != nullptr) {
        interrupting->beneath = beneath;
        return;
    }
    if (os.rdbuf() == &held) { // the program may have given the stream another one meanwhile
        stream_buffer::set(os, beneath != nullptr ? &beneath->held : target);
    }
    if (beneath == nullptr) {
        if (os.tie() == nullptr) {
            os.tie(tied);
        }
        if (unbuffered) {
            os.setf(std::ios_base::unitbuf);
        }
    }
}

// What an insertion of the whole text would do, but whatever state the stream is in: the text was accepted.
bool line::put(std::string_view text)
{
    if (target == nullptr) {
        return true;
    }
    no_cancellation const whole;
    if (tied != nullptr) {
        flush(*tied);
    }
    if (descriptor >= 0) {
        bool const in_order = target->pubsync() != -1;
        return (text.empty() || write_line(descriptor, text)) && in_order;
    }
    auto const size = static_cast<std::streamsize>(text.size());
    bool const taken = text.empty() || target->sputn(text.data(), size) == size;
    bool const flushes = is_standard || unbuffered || held.flush_asked;
    bool const flushed = !flushes || target->pubsync() != -1;
    return taken && flushed;
}

// ---------------------------------------------------------------------------------------------
// The cursor
// ---------------------------------------------------------------------------------------------

namespace {

// DECSET and DECRST 25: no ECMA-48 function
std::string_view constexpr show = "\x1b[?25h";
std::string_view constexpr hide = "\x1b[?25l";

// How many hidden_cursor there are, for each descriptor.
constinit std::array<std::atomic<int>, STDERR_FILENO + 1> hidden = {};

// The descriptor of a terminal that the stream leads to, or else -1.
int terminal_of(std::ostream const& os)
{
    same_errno const kept;
    std::streambuf* const buffer = is_standard(os) ? open_lines::own_buffer(os) : nullptr;
    int const descriptor = buffer != nullptr ? descriptor_of(*buffer) : -1;
    if (descriptor < 0 || isatty(descriptor) == 0) {
        return -1;
    }
    char const* const term = std::getenv("TERM");
    bool const understands = term != nullptr && *term != '\0' && std::string_view(term) != "dumb";
    return understands ? descriptor : -1;
}

std::ostream& to_terminal(std::ostream& os, std::string_view sequence)
{
    std::lock_guard const locked(output);
    if (terminal_of(os) >= 0) {
        os.write(sequence.data(), static_cast<std::streamsize>(sequence.size()));
    }
    return os;
}

void past_stream(std::ostream& os, int descriptor, std::string_view sequence) noexcept
{
    no_cancellation const whole;
    flush(os);
    write_all(descriptor, sequence);
}

// A program that ends by std::exit ends its lines and shows the cursor, as it flushes what stdio holds.
void tidy_at_exit()
{
    if (output.try_lock()) { // else another thread has a line, which is lost as the thread is
        open_lines::end_all();
        output.unlock();
    }
    for (int const descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        if (hidden[static_cast<std::size_t>(descriptor)] > 0) {
            write_all(descriptor, show);
        }
    }
}

// What the parent has composed and hidden, the parent writes and shows.
void start_anew_in_child()
{
    open_lines::forget_all();
    for (auto& count : hidden) {
        count = 0;
    }
}

[[maybe_unused]] bool const registered =
    std::atexit(tidy_at_exit) == 0 && pthread_atfork(nullptr, nullptr, start_anew_in_child) == 0;

} // namespace

std::ostream& hide_cursor(std::ostream& os) { return to_terminal(os, hide); }

std::ostream& show_cursor(std::ostream& os) { return to_terminal(os, show); }

hidden_cursor::hidden_cursor(std::ostream& stream) noexcept : os(stream)
{
    same_errno const kept;
    std::lock_guard const locked(output);
    descriptor = terminal_of(os);
    if (descriptor >= 0 && hidden[static_cast<std::size_t>(descriptor)]++ == 0) {
        past_stream(os, descriptor, hide);
    }
}

hidden_cursor::~hidden_cursor()
{
    if (descriptor < 0) {
        return;
    }
    same_errno const kept;
    std::lock_guard const locked(output);
    auto& count = hidden[static_cast<std::size_t>(descriptor)];
    if (count > 0 && --count == 0) { // none in a child process, where the parent's are forgotten
        past_stream(os, descriptor, show);
    }
}

} // namespace kestry::kit
