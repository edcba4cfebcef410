#include "tour_stage.hpp"

#include "console.hpp"
#include "tour_layout.hpp"

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace demo {

using std::cout;

std::string Margin::apply(std::string_view text)
{
    std::string result;
    for (char const c : text) {
        bool const begins = c == '\n' || c == '\r';
        if (at_start && !begins) {
            result += blanks;
        }
        at_start = begins;
        result += c;
    }
    return result;
}

Capture::Capture() : before(cout.rdbuf()) { cout.rdbuf(this); }

Capture::~Capture() { cout.rdbuf(before); }

Capture::int_type Capture::overflow(int_type c)
{
    held += traits_type::to_char_type(c);
    return c;
}

std::streamsize Capture::xsputn(char const* bytes, std::streamsize n)
{
    held.append(bytes, static_cast<std::size_t>(n));
    return n;
}

LiveCapture::LiveCapture(std::size_t margin_columns, std::function<void()> after_flush)
    : margin(margin_columns), after(std::move(after_flush))
{}

int LiveCapture::sync()
{
    std::string const shown = margin.apply(held);
    held.clear();
    auto const size = static_cast<std::streamsize>(shown.size());
    bool const written = before->sputn(shown.data(), size) == size && before->pubsync() == 0;
    after();
    return written ? 0 : -1;
}

BarsOnScreen::extent BarsOnScreen::size()
{
    Extent const whole = output_size();
    return {whole.columns - static_cast<int>(columns), whole.rows};
}

bool BarsOnScreen::takes_a_frame()
{
    pollfd room = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    return ::poll(&room, 1, 0) > 0;
}

bool BarsOnScreen::in_foreground()
{
    pid_t const foreground = ::tcgetpgrp(STDOUT_FILENO);
    return foreground < 0 || foreground == ::getpgrp();
}

// Past std::cout, which another thread may be using.
bool BarsOnScreen::write(std::string_view bytes)
{
    std::string const rows = margin.apply(bytes);
    for (std::string_view rest = rows; !rest.empty();) {
        ssize_t const written = ::write(STDOUT_FILENO, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

bool BarsInText::write(std::string_view bytes)
{
    for (std::string const& line : lines_of(bytes)) {
        if (line.find('%') == std::string::npos) { // of what goes on
            cout << line << '\n';
        }
    }
    return cout.good();
}

} // namespace demo
