#include "kestry/kit/line.hpp"

#include "output.hpp"

#include <algorithm>
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
#include <locale>
#include <mutex>
#include <new>
#include <streambuf>
#include <string_view>
#include <typeinfo>

#ifdef __GLIBCXX__
#include <ext/stdio_filebuf.h>
#include <ext/stdio_sync_filebuf.h>
#endif

#include <pthread.h>
#include <unistd.h>

namespace kestry::kit::detail {

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

// The descriptor that a buffer writes to, standard output or standard error, or else -1. A program may have given the
// stream another buffer, and std::ios::sync_with_stdio has two for each.
#ifdef __GLIBCXX__
// By its name: the description of a template's type is hidden in each library, and they are compared by address.
template <typename T>
bool is_a(std::streambuf const& buffer)
{
    return std::string_view(typeid(buffer).name()) == typeid(T).name();
}

int descriptor_of(std::streambuf& buffer)
{
    using with_stdio = __gnu_cxx::stdio_sync_filebuf<char>;
    using without_stdio = __gnu_cxx::stdio_filebuf<char>;
    if (is_a<with_stdio>(buffer)) {
        return if_standard(fileno(static_cast<with_stdio&>(buffer).file()));
    }
    if (is_a<without_stdio>(buffer)) {
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

// A line that has begun: the text, which the stream writes here, and what the stream gets back.
class composition final : public std::streambuf {
public:
    explicit composition(std::ostream& stream) noexcept;
    ~composition() override { delete[] longer; }
    composition(composition const&) = delete;
    composition& operator=(composition const&) = delete;

    void end();
    void finish() noexcept; // as end(), for a destructor

    // The lock guards those that are open, so they all belong to one thread.
    static void finish_all() noexcept;
    static void forget_all() noexcept;

    // The one that is the buffer of a stream now, or else a null pointer.
    static composition* on(std::ostream const& os) noexcept;

    // The stream's own buffer, in the middle of a line too.
    static std::streambuf* beneath_lines(std::ostream const& os) noexcept;

protected:
    int_type overflow(int_type c) override;
    int sync() override;
    void imbue(std::locale const& locale) override;

private:
    std::string_view text() const noexcept { return {pbase(), static_cast<std::size_t>(pptr() - pbase())}; }
    void forget() noexcept { setp(pbase(), epptr()); }
    bool grow() noexcept;
    bool put();
    void give_back() noexcept;

    static composition* innermost;

    std::ostream& os;
    composition* outer;               // that was begun before this one, on any stream
    composition* beneath;             // on the same stream, which this one interrupts
    std::streambuf* target = nullptr; // the stream's own buffer
    std::ostream* tied = nullptr;     // to the stream
    int descriptor = -1;              // that target writes to, if it is standard output or standard error
    bool unbuffered = false;          // std::unitbuf was set
    bool flush_asked = false;
    bool is_open = true;
    char* longer = nullptr;
    char usual[1024];
};

constinit composition* composition::innermost = nullptr;

composition* composition::on(std::ostream const& os) noexcept
{
    composition* open = innermost;
    while (open != nullptr && open != os.rdbuf()) {
        open = open->outer;
    }
    return open;
}

std::streambuf* composition::beneath_lines(std::ostream const& os) noexcept
{
    composition const* const open = composition::on(os);
    return open != nullptr ? open->target : os.rdbuf();
}

namespace {

void flush(std::ostream& os) noexcept
{
    try {
        if (composition::on(os) != nullptr) { // which keeps what it holds
            composition::beneath_lines(os)->pubsync();
        } else {
            os.flush();
        }
    } catch (...) { // the state of that stream tells
    }
}

} // namespace

// ---------------------------------------------------------------------------------------------
// The text
// ---------------------------------------------------------------------------------------------

bool composition::grow() noexcept
{
    auto const size = text().size();
    auto const capacity = size * 4;
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

composition::int_type composition::overflow(int_type c)
{
    if (!grow()) {
        bool const written = put();
        forget();
        if (!written) {
            return traits_type::eof();
        }
    }
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
}

int composition::sync()
{
    flush_asked = true;
    return 0;
}

void composition::imbue(std::locale const& locale) { target->pubimbue(locale); }

// What an insertion of the whole text would do, but whatever state the stream is in: the text was accepted.
bool composition::put()
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
        return (text().empty() || write_line(descriptor, text())) && in_order;
    }
    auto const size = static_cast<std::streamsize>(text().size());
    bool const taken = size == 0 || target->sputn(pbase(), size) == size;
    bool const flushes = is_standard(os) || unbuffered || flush_asked;
    bool const flushed = !flushes || target->pubsync() != -1;
    return taken && flushed;
}

// ---------------------------------------------------------------------------------------------
// Begin and end
// ---------------------------------------------------------------------------------------------

composition::composition(std::ostream& stream) noexcept : os(stream)
{
    output.lock();
    setp(usual, usual + sizeof usual);
    outer = innermost;
    beneath = on(os);
    innermost = this;
    if (beneath != nullptr) {
        target = beneath->target;
        descriptor = beneath->descriptor;
        tied = beneath->tied;
        unbuffered = beneath->unbuffered;
    } else if (os.rdbuf() != nullptr) {
        target = os.rdbuf();
        descriptor = is_standard(os) ? descriptor_of(*target) : -1;
        tied = os.tie(nullptr);
        unbuffered = (os.flags() & std::ios_base::unitbuf) != 0;
        os.unsetf(std::ios_base::unitbuf); // a flush after each insertion would take a sixth of the line's time
    } else {
        return; // without a buffer a stream accepts nothing
    }
    stream_buffer::set(os, this);
}

void composition::end()
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
        written = put();
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

// Lines need not end in the order in which they began: the one that interrupts this one may come to interrupt the one
// beneath.
void composition::give_back() noexcept
{
    composition* interrupting = nullptr;
    composition** open = &innermost;
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
    if (os.rdbuf() == this) { // the program may have given the stream another one meanwhile
        stream_buffer::set(os, beneath != nullptr ? beneath : target);
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

void composition::finish() noexcept
{
    try {
        end();
    } catch (...) { // the state of the stream tells
    }
}

void composition::finish_all() noexcept
{
    while (innermost != nullptr) {
        innermost->finish();
    }
}

void composition::forget_all() noexcept
{
    for (composition* open = innermost; open != nullptr; open = open->outer) {
        open->forget();
    }
}

} // namespace kestry::kit::detail

namespace kestry::kit {

using namespace detail;

line::line(std::ostream& stream) noexcept : os(stream), composed(new (place) composition(stream))
{
    static_assert(sizeof(composition) <= sizeof place && alignof(composition) <= alignof(std::max_align_t));
}

line::~line()
{
    composed->finish();
    composed->~composition();
}

void line::end() { composed->end(); }

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
    std::streambuf* const buffer = is_standard(os) ? composition::beneath_lines(os) : nullptr;
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
        composition::finish_all();
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
    composition::forget_all();
    for (auto& count : hidden) {
        count = 0;
    }
}

[[maybe_unused]] bool const registered =
    std::atexit(tidy_at_exit) == 0 && pthread_atfork(nullptr, nullptr, start_anew_in_child) == 0;

} // namespace

bool detail::is_cursor_hidden() noexcept
{
    return std::any_of(hidden.begin(), hidden.end(), [](auto const& count) { return count > 0; });
}

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
