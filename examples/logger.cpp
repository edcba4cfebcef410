// logger: writes time-stamped lines to standard error, each in the colours of its level.
//
//     logger < lines
//
// A line starts with its level, "error: ", "warning: " or "debug: "; any other line is information. Copy
// class Log: one Log may be used by any number of threads, as long as nothing else uses the string
// interface or localtime(3).
#include <kestry/hueline_classic.hpp>

#include <kestry/kit/policy.hpp>
#include <kestry/kit/text.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <mutex>
#include <string>

namespace {

enum class Level { debug, info, warning, error };

class Log {
public:
    Log(std::ostream& stream, bool in_color) : os(stream) { colors.useColor(in_color); }

    // The whole line in one insertion, so that a stream without a buffer writes it at once and other
    // processes cannot come between. The lock also covers the string interface: its switch has none.
    void write(Level level, std::string const& text)
    {
        std::lock_guard<std::mutex> const lock(mutex);
        std::string const plain = kestry::ColorTheme::defaultOperatingSystemText(); // nothing else ends a colour
        // What a log is told may come from anywhere: no sequence in it recolours the terminal, no line end forges a line.
        os << kestry::Hueline::current_time() + plain + ' ' + themed(level) + plain + ' ' +
                  kestry::kit::escape_untrusted(text, {.keep_tab = true}) + '\n';
        os.flush();
    }

private:
    static std::string themed(Level level)
    {
        switch (level) {
        case Level::debug:
            return kestry::ColorTheme::default_text("debug  ");
        case Level::info:
            return kestry::ColorTheme::info("info   ");
        case Level::warning:
            // No role stands for it: an alert that is not bright.
            return kestry::Hueline::color(kestry::HexColor::red, "warning");
        case Level::error:
            break;
        }
        return kestry::ColorTheme::alert("error  ");
    }

    std::mutex mutex;
    std::ostream& os;
    kestry::Hueline colors; // puts the switch back when the log goes, so it has to live as long
};

// Takes the level off the head of a line.
Level take_level(std::string& line)
{
    struct Head {
        char const* text;
        Level level;
    };
    for (Head const& known :
         {Head{"error: ", Level::error}, {"warning: ", Level::warning}, {"debug: ", Level::debug}}) {
        std::string const head = known.text;
        if (line.compare(0, head.size(), head) == 0) {
            line.erase(0, head.size());
            return known.level;
        }
    }
    return Level::info;
}

} // namespace

int main()
{
    // The string interface asks no terminal: that is for the caller to do.
    Log log(std::cerr, static_cast<bool>(kestry::kit::color_policy::from_environment().err()));
    for (std::string line; std::getline(std::cin, line);) {
        Level const level = take_level(line);
        log.write(level, line);
    }
    if (std::ferror(stdin) != 0) { // std::cin takes an error for the end
        std::cerr << "logger: cannot read standard input: " << std::strerror(errno) << '\n';
        return 1;
    }
}
