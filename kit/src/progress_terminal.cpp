#include "progress_display.hpp"

#include "kestry/kit/policy.hpp"

#include "output.hpp"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <utility>

#include <langinfo.h>
#include <locale.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestry::kit::detail {

namespace {

class descriptor_target final : public progress::draw_target {
public:
    explicit descriptor_target(int number) : descriptor(number) {}

    std::chrono::steady_clock::time_point now() override { return std::chrono::steady_clock::now(); }

    extent size() override
    {
        winsize size = {};
        if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0) {
            return {0, 0};
        }
        return {size.ws_col, size.ws_row};
    }

    bool takes_a_frame() override
    {
        pollfd room = {.fd = descriptor, .events = POLLOUT, .revents = 0};
        return ::poll(&room, 1, 0) > 0;
    }

    bool in_foreground() override
    {
        pid_t const foreground = ::tcgetpgrp(descriptor);
        return foreground < 0 || foreground == ::getpgrp(); // not our controlling terminal: nobody else's either
    }

    bool write(std::string_view bytes) override
    {
        no_cancellation const whole;
        return write_all(descriptor, bytes);
    }

private:
    int descriptor;
};

std::string_view variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

bool is_terminal(int descriptor)
{
    int const before = errno;
    bool const is = ::isatty(descriptor) != 0;
    errno = before;
    return is;
}

// What a descriptor leads to: standard output and standard error often are one terminal.
struct destination {
    int descriptor = -1; // -1 for a terminal: any that leads to it does
    dev_t device = 0;
    ino_t file = 0;
    progress::mode shown = progress::mode::live;

    bool operator==(destination const&) const = default;
};

// A terminal's own device: /dev/tty is another name for one.
std::optional<dev_t> terminal_at(int descriptor)
{
    int const before = errno;
    unsigned device = 0;
    struct stat found = {};
    bool const is_known = is_terminal(descriptor) && ::fstat(descriptor, &found) == 0;
    if (is_known && ::ioctl(descriptor, TIOCGDEV, &device) != 0) {
        device = static_cast<unsigned>(found.st_rdev);
    }
    errno = before;
    return is_known ? std::optional<dev_t>(device) : std::nullopt;
}

destination destination_of(int descriptor, progress::mode shown)
{
    if (std::optional<dev_t> const terminal = terminal_at(descriptor)) {
        return {.device = *terminal, .shown = shown};
    }
    struct stat found = {};
    ::fstat(descriptor, &found);
    return {.descriptor = descriptor, .device = found.st_dev, .file = found.st_ino, .shown = shown};
}

// Displays stay to the end of the process, which needs no order of destruction: a handle in a static object, or the
// thread, may look at one at any time.
struct registry {
    pid_t const process = ::getpid();
    std::mutex mutex = {};
    std::vector<std::pair<destination, std::shared_ptr<progress_display>>> displays = {};
};

registry& all_displays()
{
    static auto& all = *new registry;
    return all;
}

// Registered with the first display, so it runs after the destructors of static objects whose constructors use one.
void close_all()
{
    registry& all = all_displays();
    if (all.process != ::getpid()) {
        return;
    }
    std::vector<std::shared_ptr<progress_display>> left;
    {
        std::lock_guard const locked(all.mutex);
        for (auto const& [where, display] : all.displays) {
            left.push_back(display);
        }
    }
    for (auto const& display : left) {
        display->close();
    }
}

// A line that is complete stands above the bars of the terminal that it goes to. Half a line is left to the line that the
// bars leave to others.
bool write_above(int descriptor, std::string_view text) noexcept
{
    registry& all = all_displays();
    if (all.process != ::getpid() || text.back() != '\n') {
        return false;
    }
    std::optional<dev_t> const terminal = terminal_at(descriptor);
    std::shared_ptr<progress_display> display;
    {
        std::lock_guard const locked(all.mutex);
        for (auto const& [known, its] : all.displays) {
            if (known.descriptor < 0 && known.device == terminal && known.shown == progress::mode::live) {
                display = its;
            }
        }
    }
    return display && display->take_line(text.substr(0, text.size() - 1));
}

progress_settings settings_for(int descriptor, progress::options const& how, progress::mode shown)
{
    return {.target = terminal_target(descriptor),
            .shown = shown,
            .drawn_by = how.drawn_by,
            .color = static_cast<bool>(color_policy::from_environment().of(descriptor)),
            .ascii = how.ascii || locale_is_not_utf8(),
            .descriptor = descriptor};
}

} // namespace

bool locale_is_not_utf8()
{
    locale_t const environment = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (environment == nullptr) {
        return true; // as the C locale, which a program then has
    }
    std::string_view const codeset = ::nl_langinfo_l(CODESET, environment);
    bool const is_not = codeset != "UTF-8" && codeset != "utf8";
    ::freelocale(environment);
    return is_not;
}

std::shared_ptr<progress::draw_target> terminal_target(int descriptor)
{
    return std::make_shared<descriptor_target>(descriptor);
}

progress::mode usual_mode(int descriptor)
{
    std::string_view const wanted = variable("HUELINE_PROGRESS");
    if (wanted == "live") {
        return progress::mode::live;
    }
    if (wanted == "plain") {
        return progress::mode::plain;
    }
    if (wanted == "off") {
        return progress::mode::off;
    }
    std::string_view const builds = variable("CI");
    bool const in_a_log = !builds.empty() && builds != "0" && builds != "false";
    bool const is_live = is_terminal(descriptor) && variable("TERM") != "dumb" && !in_a_log;
    return is_live ? progress::mode::live : progress::mode::plain;
}

std::shared_ptr<progress_display> display_for(progress::options const& how, progress::mode shown)
{
    if (how.target) {
        return std::make_shared<progress_display>(progress_settings{.target = how.target,
                                                                    .shown = shown,
                                                                    .drawn_by = how.drawn_by,
                                                                    .color = how.color,
                                                                    .ascii = how.ascii,
                                                                    .descriptor = -1});
    }
    registry& all = all_displays();
    if (all.process != ::getpid()) {
        return nullptr;
    }
    static std::atomic<bool> is_known = false;
    if (!is_known.exchange(true)) { // before the lock: lines are offered under theirs
        std::atexit(close_all);
        offer_lines_to(write_above);
    }
    destination const where = destination_of(how.descriptor, shown);
    std::lock_guard const locked(all.mutex);
    for (auto const& [known, display] : all.displays) {
        // Its descriptor may have been closed, and lead elsewhere now.
        if (known == where && destination_of(display->descriptor(), shown) == where) {
            return display;
        }
    }
    std::erase_if(all.displays, [&where](auto const& known) { return known.first == where; });
    auto display = std::make_shared<progress_display>(settings_for(how.descriptor, how, shown));
    all.displays.emplace_back(where, display);
    return display;
}

} // namespace kestry::kit::detail
